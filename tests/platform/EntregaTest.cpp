// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "platform/Entrega.h"
#include "platform/Evento.h"

namespace bn {
namespace {

TEST(Evento, CallsItsHandlersInTheOrderConnected) {
    Evento<int> evento;
    std::string orden;
    evento.conectar([&](int n) { orden += "a" + std::to_string(n); });
    evento.conectar([&](int n) { orden += "b" + std::to_string(n); });
    evento(1);
    evento(2);
    EXPECT_EQ(orden, "a1b1a2b2");
}

TEST(Evento, WithoutHandlersNothingHappens) {
    const Evento<int> evento;
    EXPECT_NO_THROW(evento(1));
}

TEST(Evento, HandlersShareWhatIsPassedByReference) {
    Evento<int&, bool&> evento;
    evento.conectar([](int& n, bool&) { n += 1; });
    evento.conectar([](int& n, bool& b) { b = n == 2; });
    int n = 1;
    bool b = false;
    evento(n, b);
    EXPECT_EQ(n, 2);
    EXPECT_TRUE(b);
}

TEST(Evento, WhatAHandlerThrowsReachesTheRaiserAndStopsTheRest) {
    Evento<> evento;
    bool segundo = false;
    evento.conectar([] { throw std::runtime_error("fallo"); });
    evento.conectar([&] { segundo = true; });
    EXPECT_THROW(evento(), std::runtime_error);
    EXPECT_FALSE(segundo);
}

TEST(Evento, AHandlerConnectedMeanwhileIsCalledFromTheNextTimeOn) {
    Evento<> evento;
    int nuevos = 0;
    evento.conectar([&] {
        for (int i = 0; i < 100; ++i) evento.conectar([&] { ++nuevos; });
    });
    evento();
    EXPECT_EQ(nuevos, 0);
    evento();
    EXPECT_EQ(nuevos, 100);
}

TEST(Entrega, DeliversAtOnce) {
    Entrega entrega;
    bool entregado = false;
    entrega.entregar([&] {
        entregado = true;
        EXPECT_TRUE(entrega.ocupada());
    });
    EXPECT_TRUE(entregado);
    EXPECT_FALSE(entrega.ocupada());
    EXPECT_TRUE(entrega.vacia());
}

TEST(Entrega, WhatArrivesMeanwhileWaitsItsTurnInOrder) {
    Entrega entrega;
    std::string orden;
    entrega.entregar([&] {
        orden += "(1";
        entrega.entregar([&] {
            orden += "(2";
            entrega.entregar([&] { orden += "4"; });
            orden += ")";
        });
        entrega.entregar([&] { orden += "3"; });
        EXPECT_FALSE(entrega.vacia());
        entrega.vaciar();  // as the event loop of a message box would
        orden += ")";
    });
    EXPECT_EQ(orden, "(1)(2)34");
    EXPECT_TRUE(entrega.vacia());
}

TEST(Entrega, AnErrorReachesTheCallerAndThoseBehindItWait) {
    Entrega entrega;
    std::string orden;
    EXPECT_THROW(entrega.entregar([&] {
        entrega.entregar([&] { orden += "2"; });
        throw std::runtime_error("fallo");
    }),
                 std::runtime_error);
    EXPECT_FALSE(entrega.ocupada());
    EXPECT_EQ(orden, "");
    EXPECT_FALSE(entrega.vacia());
    entrega.entregar([&] { orden += "3"; });
    EXPECT_EQ(orden, "23");
}

TEST(Entrega, LetsGoOfANotificationOnceItIsDelivered) {
    Entrega entrega;
    auto dato = std::make_shared<int>(1);
    entrega.entregar([dato] {});
    EXPECT_EQ(dato.use_count(), 1);
}

}  // namespace
}  // namespace bn
