// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "tools/simulador/Ritmo.h"

namespace bn::simulador {
namespace {

using namespace std::chrono_literals;

Ritmo ritmo(const char* parametros) { return Ritmo(leerParametros(parametros).value()); }

TEST(Ritmo, AByteTakesStartDataParityAndStopBits) {
    EXPECT_EQ(ritmo("9600,N,8,1").duracion(960), 1s);
    EXPECT_EQ(ritmo("9600,E,8,1").duracion(9600), 11s);
    EXPECT_EQ(ritmo("1200,O,7,2").duracion(1200), 11s);
    EXPECT_EQ(ritmo("19200,N,7,1").duracion(19200), 9s);
}

TEST(Ritmo, ALineWithoutPaceTakesNoTime) {
    EXPECT_EQ(Ritmo().duracion(1000), 0ns);
    const auto plan = Ritmo().plan({{.bytes = std::string(79, 'x')}}, false);
    ASSERT_EQ(plan.size(), 1U);
    EXPECT_EQ(plan[0].cuando, 0ns);
}

TEST(Ritmo, NoByteArrivesBeforeItsTimeAndTheLastOneJustThen) {
    const Ritmo linea = ritmo("9600,N,8,1");
    std::size_t bytes = 0;
    const auto plan = linea.plan({{.bytes = std::string(79, 'x')}}, false);
    for (const Trozo& trozo : plan) {
        bytes += trozo.bytes.size();
        EXPECT_LE(trozo.bytes.size(), 8U);
        EXPECT_EQ(trozo.cuando, linea.duracion(bytes));
    }
    EXPECT_EQ(bytes, 79U);
    EXPECT_EQ(plan.back().bytes.size(), 8U);
}

TEST(Ritmo, ARealPortIsGivenEachPieceWhenItsTurnComes) {
    const Ritmo linea = ritmo("9600,N,8,1");
    const auto plan = linea.plan({{.bytes = std::string(20, 'x')}}, true);
    ASSERT_EQ(plan.size(), 3U);
    EXPECT_EQ(plan[0].cuando, 0ns);
    EXPECT_EQ(plan[1].cuando, linea.duracion(4));
    EXPECT_EQ(plan[2].cuando, linea.duracion(12));
}

TEST(Ritmo, PausesAddToTheTimeOfWhatFollows) {
    const Ritmo linea = ritmo("9600,N,8,1");
    const auto plan = linea.plan({{.bytes = "abc"}, {.pausa = 300ms, .bytes = "de"}}, false);
    ASSERT_EQ(plan.size(), 2U);
    EXPECT_EQ(plan[0].cuando, linea.duracion(3));
    EXPECT_EQ(plan[1].cuando, 300ms + linea.duracion(5));
}

TEST(Ritmo, ParametersThatAreNotUnderstoodAreRefused) {
    for (const char* texto : {"", "9600", "9600,", "9600,N,8", "9600,N,8,1,", "9600,n,8,1",
                              "9600,N,9,1", "9600,N,8,3", "14400,N,8,1", ",N,8,1", "9600;N;8;1"}) {
        EXPECT_FALSE(leerParametros(texto).has_value()) << texto;
    }
}

}  // namespace
}  // namespace bn::simulador
