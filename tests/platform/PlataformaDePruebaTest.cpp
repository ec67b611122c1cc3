// SPDX-License-Identifier: MIT
// The fake itself: every other test believes it.
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "destinations/excel/ObjectModel.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/PlataformaDePrueba.h"

namespace bn {
namespace {

class Falsa : public testing::Test {
 protected:
    std::unique_ptr<Temporizador> temporizador(int32_t intervalo, const std::string& nombre) {
        auto nuevo = plataforma.nuevoTemporizador();
        nuevo->Interval(intervalo);
        nuevo->Timer.conectar([this, nombre] { orden += nombre; });
        return nuevo;
    }
    std::unique_ptr<MSComm> puertoAbierto() {
        auto nuevo = plataforma.nuevoPuerto();
        nuevo->PortOpen(true);
        return nuevo;
    }
    std::string ocurrido() { return std::exchange(orden, {}); }

    prueba::CarpetaTemporal carpeta;
    PlataformaDePrueba plataforma{carpeta.ruta()};
    std::string orden;
};

TEST_F(Falsa, ATimerIsDisabledWhenNew) {
    const auto a = temporizador(10, "a");
    EXPECT_FALSE(a->Enabled());
    plataforma.avanzar(1000);
    EXPECT_EQ(ocurrido(), "");
}

TEST_F(Falsa, ATimerRepeatsWhileEnabled) {
    const auto a = temporizador(10, "a");
    a->Enabled(true);
    plataforma.avanzar(9);
    EXPECT_EQ(ocurrido(), "");
    plataforma.avanzar(1);
    EXPECT_EQ(ocurrido(), "a");
    plataforma.avanzar(35);
    EXPECT_EQ(ocurrido(), "aaa");
    a->Enabled(false);
    plataforma.avanzar(1000);
    EXPECT_EQ(ocurrido(), "");
}

TEST_F(Falsa, TimersFireInTheOrderOfTheirTimes) {
    const auto lento = temporizador(30, "l");
    const auto rapido = temporizador(20, "r");
    lento->Enabled(true);
    rapido->Enabled(true);
    plataforma.avanzar(60);
    EXPECT_EQ(ocurrido(), "rlrlr") << "20, 30, 40, then both at 60 in the order created";
}

TEST_F(Falsa, EnablingStartsAWholeIntervalButNotASecondTime) {
    const auto a = temporizador(10, "a");
    a->Enabled(true);
    plataforma.avanzar(6);
    a->Enabled(true);
    plataforma.avanzar(4);
    EXPECT_EQ(ocurrido(), "a") << "it was enabled already";
    plataforma.avanzar(6);
    a->Enabled(false);
    a->Enabled(true);
    plataforma.avanzar(9);
    EXPECT_EQ(ocurrido(), "");
    plataforma.avanzar(1);
    EXPECT_EQ(ocurrido(), "a");
}

TEST_F(Falsa, ANewIntervalStartsAnew) {
    const auto a = temporizador(10, "a");
    a->Enabled(true);
    plataforma.avanzar(6);
    a->Interval(20);
    plataforma.avanzar(19);
    EXPECT_EQ(ocurrido(), "");
    plataforma.avanzar(1);
    EXPECT_EQ(ocurrido(), "a");
}

TEST_F(Falsa, ATimerMayStopAnotherOrItselfWhileItFires) {
    const auto a = temporizador(10, "a");
    auto b = temporizador(10, "b");
    a->Timer.conectar([&] {
        b->Enabled(false);
        a->Enabled(false);
    });
    a->Enabled(true);
    b->Enabled(true);
    plataforma.avanzar(100);
    EXPECT_EQ(ocurrido(), "a");
}

TEST_F(Falsa, ATimerMayVanishWhileAnotherFires) {
    const auto a = temporizador(10, "a");
    auto b = temporizador(10, "b");
    a->Timer.conectar([&] { b.reset(); });
    a->Enabled(true);
    b->Enabled(true);
    plataforma.avanzar(10);
    EXPECT_EQ(ocurrido(), "a");
}

TEST_F(Falsa, DisablingDropsATickThatWaited) {
    const auto a = temporizador(10, "a");
    const auto puerto = puertoAbierto();
    puerto->OnComm.conectar([&] {
        plataforma.avanzar(10);  // time passes while a message box is open
        a->Enabled(false);
        a->Enabled(true);
    });
    a->Enabled(true);
    plataforma.puerto().recibir("x");
    EXPECT_EQ(ocurrido(), "") << "enabled again, it waits a whole interval";
    plataforma.avanzar(10);
    EXPECT_EQ(ocurrido(), "a");
}

TEST_F(Falsa, TimeSpentInsideAHandlerWaitsItsTurn) {
    const auto a = temporizador(10, "a");
    const auto puerto = puertoAbierto();
    puerto->OnComm.conectar([&] {
        orden += "(";
        plataforma.avanzar(10);
        orden += ")";
    });
    a->Enabled(true);
    plataforma.puerto().recibir("x");
    EXPECT_EQ(ocurrido(), "()a");
}

TEST_F(Falsa, TheClockOnTheWallStaysAsSet) {
    plataforma.horaActual = 45000.5;
    plataforma.avanzar(60000);
    EXPECT_EQ(plataforma.ahora(), 45000.5);
}

TEST_F(Falsa, OneBurstIsOneNotification) {
    const auto puerto = puertoAbierto();
    puerto->OnComm.conectar([&] { orden += "[" + puerto->Input() + "]"; });
    plataforma.puerto().recibir("abc");
    plataforma.puerto().recibir("d");
    EXPECT_EQ(ocurrido(), "[abc][d]");
    EXPECT_EQ(puerto->CommEvent(), 2);
    EXPECT_EQ(puerto->Input(), "");
}

TEST_F(Falsa, WhatArrivesWhileAHandlerRunsWaits) {
    const auto puerto = puertoAbierto();
    puerto->OnComm.conectar([&] {
        const std::string recibido = puerto->Input();
        orden += "(" + recibido;
        if (recibido == "a") plataforma.puerto().recibir("b");
        orden += ")";
    });
    plataforma.puerto().recibir("a");
    EXPECT_EQ(ocurrido(), "(a)(b)");
}

TEST_F(Falsa, AnErrorOfAHandlerReachesWhoeverSends) {
    const auto puerto = puertoAbierto();
    bool falla = true;
    puerto->OnComm.conectar([&] {
        if (falla) throw std::runtime_error("fallo");
        orden += puerto->Input();
    });
    EXPECT_THROW(plataforma.puerto().recibir("a"), std::runtime_error);
    falla = false;
    plataforma.puerto().recibir("b");
    EXPECT_EQ(ocurrido(), "ab") << "nothing stays locked, nothing is lost";
}

TEST_F(Falsa, APortThatIsClosedHearsNothing) {
    const auto puerto = plataforma.nuevoPuerto();
    puerto->OnComm.conectar([&] { orden += "x"; });
    plataforma.puerto().recibir("a");
    puerto->PortOpen(true);
    EXPECT_EQ(puerto->Input(), "");
    plataforma.puerto().recibir("b");
    puerto->InBufferCount(0);
    EXPECT_EQ(puerto->Input(), "");
    plataforma.puerto().recibir("c");
    puerto->PortOpen(false);
    puerto->PortOpen(true);
    EXPECT_EQ(puerto->Input(), "") << "opening starts with an empty buffer";
    EXPECT_EQ(ocurrido(), "xx");
}

TEST_F(Falsa, ThePortIsTheLastOneMade) {
    EXPECT_THROW(plataforma.puerto(), std::logic_error);
    const auto primero = plataforma.nuevoPuerto();
    {
        const auto segundo = plataforma.nuevoPuerto();
        segundo->Output("b");
        EXPECT_EQ(plataforma.puerto().enviado, "b");
    }
    EXPECT_THROW(plataforma.puerto(), std::logic_error);
}

TEST_F(Falsa, EachStepOfOpeningFailsOnDemand) {
    const auto puerto = plataforma.nuevoPuerto();
    plataforma.puerto().errorEnNumero = "n";
    EXPECT_THROW(puerto->CommPort(1), ErrorPuerto);
    plataforma.puerto().errorEnAjustes = "a";
    EXPECT_THROW(puerto->Settings("x"), ErrorPuerto);
    plataforma.puerto().errorAlAbrir = "o";
    EXPECT_THROW(puerto->PortOpen(true), ErrorPuerto);
    EXPECT_FALSE(puerto->PortOpen());
    EXPECT_NO_THROW(puerto->PortOpen(false));
}

TEST_F(Falsa, WithoutABackendThereIsNoSpreadsheet) {
    plataforma.motor = "ninguno";
    EXPECT_THROW(plataforma.nuevaAplicacionExcel(true), excel::ErrorExcel);
    EXPECT_THROW(plataforma.nuevaAplicacionExcel(false), excel::ErrorExcel);
}

}  // namespace
}  // namespace bn
