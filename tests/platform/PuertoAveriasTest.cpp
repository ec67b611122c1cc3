// SPDX-License-Identifier: MIT
#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <iostream>
#include <string>
#include <vector>

#include "tests/platform/PuertoEnPrueba.h"

namespace bn {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

double segundosDeProcesador() {
    rusage uso{};
    ::getrusage(RUSAGE_SELF, &uso);
    const auto segundos = [](const timeval& t) {
        return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) / 1e6;
    };
    return segundos(uso.ru_utime) + segundos(uso.ru_stime);
}

TEST_F(Puerto, AVanishedDeviceClosesItselfWithoutSpinning) {
    const auto puerto = abierto();
    linea_.desaparecer();
    ASSERT_TRUE(llegaASer([&] { return !puerto->PortOpen(); }));
    const double antes = segundosDeProcesador();
    EXPECT_FALSE(cola_.esperarAvisos(1, milliseconds(300)));
    EXPECT_LT(segundosDeProcesador() - antes, 0.05);
    puerto->Output("nadie escucha");
    puerto->InBufferCount(0);
    EXPECT_EQ(puerto->Input(), "");
    EXPECT_EQ(avisos_, 0);
}

TEST_F(Puerto, AVanishedDeviceIsNoticedByWhoeverSendsFirst) {
    const auto puerto = abierto();
    linea_.desaparecer();
    puerto->Output("x");
    EXPECT_TRUE(llegaASer([&] { return !puerto->PortOpen(); }));
    puerto->Output("y");
}

TEST_F(Puerto, OpensAnewAfterItsDeviceHasVanished) {
    PseudoTerminal otra;
    std::string dispositivo = linea_.dispositivo();
    PuertoAsio puerto([this](std::function<void()> aviso) { cola_.poner(std::move(aviso)); },
                      [&](int16_t) { return dispositivo; });
    puerto.PortOpen(true);
    linea_.desaparecer();
    ASSERT_TRUE(llegaASer([&] { return !puerto.PortOpen(); }));
    EXPECT_THROW(puerto.PortOpen(true), ErrorPuerto);
    dispositivo = otra.dispositivo();
    puerto.PortOpen(true);
    EXPECT_TRUE(puerto.PortOpen());
    puerto.Output("hola");
    EXPECT_EQ(otra.leer(4), "hola");
}

TEST_F(Puerto, KeepsWhatArrivedBeforeTheDeviceVanished) {
    const auto puerto = abierto();
    linea_.escribir("trama\r");
    ASSERT_TRUE(cola_.esperarAvisos(1));
    linea_.desaparecer();
    ASSERT_TRUE(llegaASer([&] { return !puerto->PortOpen(); }));
    cola_.vaciar();
    EXPECT_EQ(avisos_, 1);
    EXPECT_EQ(puerto->Input(), "trama\r");
}

TEST_F(Puerto, NeitherSendingNorClosingWaitsForALineThatTakesNothing) {
    auto puerto = abierto();
    const auto antes = steady_clock::now();
    puerto->Output(bytesVariados(kMega));
    puerto->Output("y más");
    EXPECT_TRUE(puerto->PortOpen());
    puerto->PortOpen(false);
    puerto.reset();
    EXPECT_LT(steady_clock::now() - antes, milliseconds(500));
}

TEST_F(Puerto, SendsInOrderWhatTheLineTakesOnlyLittleByLittle) {
    const auto puerto = abierto();
    const std::string largo = bytesVariados(60 * 1024);
    puerto->Output(largo.substr(0, 50000));
    puerto->Output(largo.substr(50000));
    EXPECT_EQ(linea_.leer(largo.size()), largo);
}

TEST_F(Puerto, KeepsOnlySoMuchForALineThatTakesNothing) {
    const auto puerto = abierto();
    puerto->Output(bytesVariados(kMega));
    // What the port keeps and what the system keeps.
    const std::string llegado = linea_.leer(64 * 1024);
    EXPECT_GE(llegado.size(), 64U * 1024);
    puerto->Output("\xFF#fin#\xFF");
    std::string resto = llegado;
    EXPECT_TRUE(llegaASer([&] {
        resto += linea_.leerYa();
        return resto.ends_with("\xFF#fin#\xFF");
    }));
    EXPECT_LT(resto.size(), 200U * 1024);
}

TEST_F(Puerto, AnAnswerSentJustBeforeClosingStillGoesOut) {
    const auto puerto = abierto();
    puerto->Output("\x06");
    puerto->PortOpen(false);
    EXPECT_EQ(linea_.leer(1), "\x06");
}

TEST_F(Puerto, AFloodIsHeldBackAndLosesNothingOnceDrained) {
    const auto puerto = abierto();
    const std::string torrente = bytesVariados(kMega);
    std::size_t escritos = llenar(torrente);
    EXPECT_LT(escritos, kMega / 2);
    std::string recibido;
    EXPECT_LE((recibido = puerto->Input()).size(), 68U * 1024);
    ASSERT_TRUE(llegaASer([&] {
        cola_.vaciar();
        recibido += puerto->Input();
        escritos += linea_.escribir(torrente.substr(escritos));
        return recibido.size() == kMega;
    }));
    EXPECT_TRUE(recibido == torrente);
}

TEST_F(Puerto, CanBeDestroyedAtAnyMomentOfAFlood) {
    const std::string torrente = bytesVariados(20000);
    for (int vuelta = 0; vuelta < 100; ++vuelta) {
        auto puerto = abierto();
        linea_.escribir(torrente.substr(0, static_cast<std::size_t>(vuelta) * 200));
        puerto->Output(torrente.substr(0, 100));
        if (vuelta % 2 == 0) {
            cola_.esperarAvisos(vuelta > 0 ? 1 : 0);
        }
        const auto antes = steady_clock::now();
        puerto.reset();
        EXPECT_LT(steady_clock::now() - antes, milliseconds(500));
        avisos_ = 0;
        cola_.vaciar();
        EXPECT_EQ(avisos_, 0);
        linea_.leerYa();
    }
}

TEST_F(Puerto, AnswersAByteWellWithinAMillisecondAsARule) {
    const auto puerto = abierto();
    puerto->OnComm.conectar([&] {
        puerto->Input();
        puerto->Output("\x06");
    });
    std::vector<double> microsegundos;
    for (int i = 0; i < 200; ++i) {
        const auto antes = steady_clock::now();
        linea_.escribir("x");
        ASSERT_TRUE(cola_.hasta([&] { return avisos_ > i; }));
        ASSERT_EQ(linea_.leer(1), "\x06");
        microsegundos.push_back(
            std::chrono::duration<double, std::micro>(steady_clock::now() - antes).count());
    }
    std::nth_element(microsegundos.begin(), microsegundos.begin() + 100, microsegundos.end());
    RecordProperty("median_us", std::to_string(microsegundos[100]));
    std::cout << "median turnaround: " << microsegundos[100] << " us\n";
    EXPECT_LT(microsegundos[100], 1000.0);
}

}  // namespace
}  // namespace bn
