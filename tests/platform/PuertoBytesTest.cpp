// SPDX-License-Identifier: MIT
#include <array>
#include <asio/io_context.hpp>
#include <string>
#include <thread>

#include "platform/asio/Linea.h"
#include "tests/platform/PuertoEnPrueba.h"

namespace bn {
namespace {

TEST_F(Puerto, CarriesEveryByteValueUnchangedToTheProgram) {
    const auto puerto = abierto();
    const std::string todos = bytesVariados(1024);
    ASSERT_EQ(linea_.escribir(todos), todos.size());
    EXPECT_EQ(recibir(*puerto, todos.size()), todos);
}

TEST_F(Puerto, CarriesEveryByteValueUnchangedToTheLine) {
    const auto puerto = abierto();
    const std::string todos = bytesVariados(1024);
    puerto->Output(todos);
    EXPECT_EQ(linea_.leer(todos.size()), todos);
}

TEST_F(Puerto, EchoesNothingOfWhatArrives) {
    const auto puerto = abierto();
    linea_.escribir("abc\r\n\x03\x04");
    EXPECT_EQ(recibir(*puerto, 7), "abc\r\n\x03\x04");
    puerto->Output("fin");
    EXPECT_EQ(linea_.leer(3), "fin");
}

TEST_F(Puerto, RaisesOnCommForASingleByteWithTheReceiveEvent) {
    const auto puerto = abierto();
    linea_.escribir("x");
    ASSERT_TRUE(cola_.hasta([&] { return avisos_ > 0; }));
    EXPECT_EQ(avisos_, 1);
    EXPECT_EQ(puerto->CommEvent(), kComEvReceive);
    EXPECT_EQ(puerto->Input(), "x");
    EXPECT_EQ(puerto->Input(), "");
}

TEST_F(Puerto, RaisesOnCommOnTheThreadThatEmptiesTheQueue) {
    const auto puerto = abierto();
    std::thread::id hilo;
    puerto->OnComm.conectar([&] { hilo = std::this_thread::get_id(); });
    linea_.escribir("x");
    ASSERT_TRUE(cola_.hasta([&] { return avisos_ > 0; }));
    EXPECT_EQ(hilo, std::this_thread::get_id());
}

TEST_F(Puerto, TellsOfEachChunkEvenWhenItsBytesWereTakenWithAnEarlierOne) {
    const auto puerto = abierto();
    linea_.escribir("uno\r");
    ASSERT_TRUE(cola_.esperarAvisos(1));
    linea_.escribir("dos\r");
    ASSERT_TRUE(cola_.esperarAvisos(2));
    EXPECT_EQ(puerto->Input(), "uno\rdos\r");
    cola_.vaciar();
    EXPECT_EQ(avisos_, 2);
}

TEST_F(Puerto, ANotificationOfDiscardedBytesIsNotDelivered) {
    const auto puerto = abierto();
    linea_.escribir("viejo");
    ASSERT_TRUE(cola_.esperarAvisos(1));
    puerto->InBufferCount(0);
    linea_.escribir("nuevo");
    ASSERT_TRUE(cola_.esperarAvisos(2));
    cola_.vaciar();
    EXPECT_EQ(avisos_, 1);
    EXPECT_EQ(puerto->Input(), "nuevo");
}

TEST_F(Puerto, TellsOfEachCarriageReturnOfAChunkAndOfARestWithout) {
    const auto puerto = abierto();
    linea_.escribir("uno\rdos\r");
    ASSERT_TRUE(cola_.hasta([&] { return avisos_ == 2; }));
    linea_.escribir("tres\r\rcua");
    ASSERT_TRUE(cola_.hasta([&] { return avisos_ == 5; }));
    linea_.escribir("tro");
    ASSERT_TRUE(cola_.hasta([&] { return avisos_ == 6; }));
    EXPECT_EQ(puerto->Input(), "uno\rdos\rtres\r\rcuatro");
    EXPECT_FALSE(cola_.esperarAvisos(1, std::chrono::milliseconds(50))) << "and of nothing twice";
}

TEST_F(Puerto, NoNotificationOfAChunkIsDeliveredOnceItIsDiscarded) {
    const auto puerto = abierto();
    puerto->OnComm.conectar([&] { puerto->InBufferCount(0); });
    linea_.escribir("uno\rdos\rtres\r");
    ASSERT_TRUE(cola_.esperarAvisos(3));
    cola_.vaciar();
    EXPECT_EQ(avisos_, 1);
}

TEST_F(Puerto, ADiscardForgetsAllThatHasArrivedAlsoRightAfterSending) {
    const auto puerto = abierto();
    linea_.escribir("viejo");
    ASSERT_TRUE(cola_.esperarAvisos(1));
    puerto->Output("?");
    linea_.escribir("nuevo");
    ASSERT_TRUE(cola_.esperarAvisos(2));
    puerto->InBufferCount(0);
    EXPECT_EQ(puerto->Input(), "");
    cola_.vaciar();
    EXPECT_EQ(avisos_, 0);
}

TEST_F(Puerto, SendingForgetsNothing) {
    const auto puerto = abierto();
    linea_.escribir("viejo");
    ASSERT_TRUE(cola_.esperarAvisos(1));
    puerto->Output("?");
    cola_.vaciar();
    EXPECT_EQ(avisos_, 1);
    EXPECT_EQ(puerto->Input(), "viejo");
}

TEST_F(Puerto, DiscardsAlsoWhatTheSystemStillHolds) {
    asio::io_context contexto;
    const auto linea = abrirLinea(contexto, linea_.dispositivo(), AjustesLinea{});
    linea_.escribir("viejo");
    ASSERT_TRUE(linea_.esperarPendientes(5));
    linea->descartarRecibido();
    std::array<char, 16> leido{};
    EXPECT_EQ(linea->leer(leido.data(), leido.size()), 0U);
    linea_.escribir("nuevo");
    ASSERT_TRUE(linea_.esperarPendientes(5));
    ASSERT_EQ(linea->leer(leido.data(), leido.size()), 5U);
    EXPECT_STREQ(leido.data(), "nuevo");
}

TEST_F(Puerto, TakesWhatTheLineHoldsWithoutWaitingForTheHelperThread) {
    const auto puerto = abierto();
    std::string recibido;
    for (int vez = 0; vez < 200; ++vez) {
        linea_.escribir("trama\r");
        puerto->recogerPendiente();  // or the helper thread was first: either way it is there
        cola_.vaciar();
        recibido += puerto->Input();
    }
    ASSERT_TRUE(cola_.hasta([&] {
        recibido += puerto->Input();
        return recibido.size() == 1200;
    }));
    EXPECT_GE(avisos_, 1);
    for (std::size_t i = 0; i < recibido.size(); i += 6)
        EXPECT_EQ(recibido.substr(i, 6), "trama\r");
}

TEST_F(Puerto, HearsTheLineAgainAfterDiscardingAFloodThatHadStoppedIt) {
    const auto puerto = abierto();
    llenar(bytesVariados(kMega));
    puerto->InBufferCount(0);
    // What the system still had in reserve comes first, then what is sent now.
    ASSERT_TRUE(llegaASer([&] { return linea_.escribir("!") == 1; }));
    std::string recibido;
    EXPECT_TRUE(cola_.hasta([&] {
        recibido += puerto->Input();
        return recibido.ends_with('!');
    }));
    EXPECT_LT(recibido.size(), 64U * 1024);
}

TEST_F(Puerto, OnlyZeroDiscards) {
    const auto puerto = abierto();
    linea_.escribir("x");
    ASSERT_TRUE(cola_.esperarAvisos(1));
    puerto->InBufferCount(1);
    EXPECT_EQ(puerto->Input(), "x");
}

TEST_F(Puerto, ForgetsWhatArrivedBeforeItWasOpened) {
    {
        const auto anterior = abierto();  // leaves the line raw: bytes count at once
    }
    linea_.escribir("viejo");
    ASSERT_TRUE(linea_.esperarPendientes(5));
    const auto puerto = abierto();
    linea_.escribir("nuevo");
    EXPECT_EQ(recibir(*puerto, 5), "nuevo");
}

TEST_F(Puerto, ABytesNotificationOfAnEarlierOpeningIsNotDelivered) {
    const auto puerto = abierto();
    linea_.escribir("viejo");
    ASSERT_TRUE(cola_.esperarAvisos(1));
    puerto->PortOpen(false);
    puerto->PortOpen(true);
    cola_.vaciar();
    EXPECT_EQ(avisos_, 0);
    EXPECT_EQ(puerto->Input(), "");
}

TEST_F(Puerto, ANotificationThatOutlivesThePortDoesNothing) {
    auto puerto = abierto();
    linea_.escribir("x");
    ASSERT_TRUE(cola_.esperarAvisos(1));
    puerto.reset();
    EXPECT_EQ(cola_.vaciar(), 1U);
    EXPECT_EQ(avisos_, 0);
}

TEST_F(Puerto, CanBeClosedAndOpenedFromItsOwnNotification) {
    const auto puerto = abierto();
    puerto->OnComm.conectar([&] {
        puerto->PortOpen(false);
        puerto->PortOpen(true);
        puerto->Output("otra");
    });
    linea_.escribir("x");
    ASSERT_TRUE(cola_.hasta([&] { return avisos_ == 1; }));
    EXPECT_TRUE(puerto->PortOpen());
    EXPECT_EQ(linea_.leer(4), "otra");
}

}  // namespace
}  // namespace bn
