// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "destinations/excel/com/Areas.h"

namespace bn::excel::com {
namespace {

using testing::ElementsAre;

std::vector<std::string> textos(const std::vector<PosicionDeCelda>& celdas) {
    CeldasEnCola cola;
    for (const PosicionDeCelda& celda : celdas) cola.emplace(celda, 1.0);
    std::vector<std::string> referencias;
    for (const Area& area : rectangulos(cola)) referencias.push_back(referencia(area));
    return referencias;
}

TEST(AreasDeCeldas, AreNamedByTheirCorners) {
    EXPECT_EQ(referencia(Area{{1, 1}, {1, 1}}), "A1");
    EXPECT_EQ(referencia(Area{{2, 26}, {512, 27}}), "Z2:AA512");
    EXPECT_EQ(referencia(Area{{1, 702}, {32767, 703}}), "ZZ1:AAA32767");
    EXPECT_EQ(referencia(Area{{1048576, 16384}, {1048576, 16384}}), "XFD1048576");
}

TEST(AreasDeCeldas, EndWhereTheLargestSheetEnds) {
    EXPECT_TRUE(estaEnLaHoja({1, 1}));
    EXPECT_TRUE(estaEnLaHoja({1048576, 16384}));
    EXPECT_FALSE(estaEnLaHoja({0, 1}));
    EXPECT_FALSE(estaEnLaHoja({1, 0}));
    EXPECT_FALSE(estaEnLaHoja({-1, 1}));
    EXPECT_FALSE(estaEnLaHoja({1048577, 1}));
    EXPECT_FALSE(estaEnLaHoja({1, 16385}));
}

TEST(AreasDeCeldas, RowsOfTheSameColumnsJoinIntoOneRectangle) {
    EXPECT_THAT(textos({{3, 1}, {3, 2}, {4, 1}, {4, 2}, {5, 1}, {5, 2}}), ElementsAre("A3:B5"));
}

TEST(AreasDeCeldas, ACellThatWasNotSetIsNeverInside) {
    EXPECT_THAT(textos({{1, 1}, {1, 3}, {2, 1}, {2, 3}}), ElementsAre("A1:A2", "C1:C2"));
    EXPECT_THAT(textos({{1, 1}, {1, 2}, {2, 1}}), ElementsAre("A1:B1", "A2"));
    EXPECT_THAT(textos({{1, 1}, {3, 1}}), ElementsAre("A1", "A3"));
}

TEST(AreasDeCeldas, ARectangleHoldsNoMoreThanOneCallShouldCarry) {
    std::vector<PosicionDeCelda> celdas;
    for (int32_t fila = 1; fila <= 2500; ++fila) {
        for (int32_t columna = 1; columna <= 8; ++columna) celdas.push_back({fila, columna});
    }
    EXPECT_THAT(textos(celdas), ElementsAre("A1:H2048", "A2049:H2500"));
}

TEST(AreasDeCeldas, ATextTooLongForABlockStandsAlone) {
    CeldasEnCola cola;
    for (int32_t fila = 1; fila <= 3; ++fila) {
        cola.emplace(PosicionDeCelda{fila, 1}, std::string("x"));
        cola.emplace(PosicionDeCelda{fila, 2}, std::string(fila == 2 ? 912 : 911, 'x'));
        cola.emplace(PosicionDeCelda{fila, 3}, std::string("x"));
    }
    std::vector<std::string> referencias;
    for (const Area& area : rectangulos(cola)) referencias.push_back(referencia(area));
    EXPECT_THAT(referencias, ElementsAre("A1:C1", "A2", "B2", "C2", "A3:C3"));
}

}  // namespace
}  // namespace bn::excel::com
