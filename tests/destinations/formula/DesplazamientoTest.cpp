// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "destinations/xls/formula/Compilador.h"
#include "destinations/xls/formula/Descompilador.h"
#include "destinations/xls/formula/Desplazamiento.h"
#include "tests/destinations/formula/LibroDePrueba.h"

namespace bn::xls {
namespace {

/// The R1C1 text of a copy of the formula, from row 10, column 5, that far away.
std::string copia(const std::string& formula, int32_t filas, int32_t columnas) {
    LibroDePrueba libro;
    const auto rgce = aplicarDesplazamiento(compilar(formula, {9, 4}, libro), filas, columnas);
    if (!rgce) return "no se entiende";
    return descompilar(*rgce, {9 + filas, 4 + columnas}, libro).value_or("=?");
}

TEST(Desplazamiento, ACopyReadsTheSameInR1C1Notation) {
    for (const char* formula :
         {"=R[-1]C[-1]", "=R1C1", "=R[1]C2", "=R3C[-2]", "=SUM(R[-3]C:R[-1]C)", "=SUM(R1C:R[-1]C)",
          "='Otra hoja'!R[-1]C+Hoja1!R1C1", "=SUM(Hoja1!R[-2]C:R[-1]C[1])", "=SUM(C[-1])",
          "=SUM(R[-1])", "=SUM(C1:C2)", "=IF(RC[-1]>0,RC[-1],\"\")", "=total+1"}) {
        EXPECT_EQ(copia(formula, 7, 3), formula);
        EXPECT_EQ(copia(formula, -2, -1), formula);
        EXPECT_EQ(copia(formula, 0, 0), formula);
    }
}

TEST(Desplazamiento, WhatLeavesTheSheetBecomesABrokenReference) {
    EXPECT_EQ(copia("=R[-5]C", -5, 0), "=#REF!");
    EXPECT_EQ(copia("=RC[-2]+R1C1", 0, -3), "=#REF!+R1C1");
    EXPECT_EQ(copia("=SUM(R[-5]C:R[-1]C)", -5, 0), "=SUM(#REF!)");
    EXPECT_EQ(copia("=Hoja1!R[-5]C", -5, 0), "=Hoja1!#REF!");
    EXPECT_EQ(copia("=R[1]C", 65525, 0), "=R[1]C");
    EXPECT_EQ(copia("=R[1]C", 65526, 0), "=#REF!");
    EXPECT_EQ(copia("=RC[1]", 0, 250), "=RC[1]");
    EXPECT_EQ(copia("=RC[1]", 0, 251), "=#REF!");
}

TEST(Desplazamiento, ABrokenReferenceKeepsItsClassAndLength) {
    EXPECT_EQ(aplicarDesplazamiento(Rgce{0x44, 0, 0, 0, 0xC0}, -1, 0), (Rgce{0x4A, 0, 0, 0, 0xC0}));
    const Rgce area{0x65, 0, 0, 1, 0, 0, 0xC0, 0, 0xC0};
    EXPECT_EQ(aplicarDesplazamiento(area, -1, 0)->at(0), 0x6B);
    EXPECT_EQ(aplicarDesplazamiento(Rgce{0x3A, 0, 0, 0, 0, 0, 0xC0}, -1, 0)->at(0), 0x3C);
    EXPECT_EQ(aplicarDesplazamiento(Rgce{0x5B, 0, 0, 0, 0, 1, 0, 0, 0xC0, 0, 0xC0}, -1, 0)->at(0),
              0x5D);
}

TEST(Desplazamiento, AnAreaStaysInOrderWhenItsMovingEndPassesTheFixedOne) {
    EXPECT_EQ(copia("=SUM(R9C1:R[-1]C1)", -5, 0), "=SUM(R[-1]C1:R9C1)");
}

TEST(Desplazamiento, FormulasOfOtherRecordsAndUnknownOnesAreNotMoved) {
    EXPECT_EQ(aplicarDesplazamiento(Rgce{0x01, 0, 0, 0, 0}, 1, 1), std::nullopt);
    EXPECT_EQ(aplicarDesplazamiento(Rgce{0x4C, 0, 0, 0, 0xC0}, 1, 1), std::nullopt);
    EXPECT_EQ(aplicarDesplazamiento(Rgce{0x26, 0, 0, 0, 0, 5, 0, 0x24, 0, 0, 0, 0}, 1, 1),
              std::nullopt);
    EXPECT_EQ(aplicarDesplazamiento(Rgce{0x44, 0, 0, 0, 0, 0xFF}, 1, 1), std::nullopt);
    EXPECT_EQ(aplicarDesplazamiento(Rgce{0x44, 0, 0}, 1, 1), std::nullopt);
    EXPECT_EQ(aplicarDesplazamiento(Rgce{0x44, 0, 0, 0, 0x01}, 1, 1), std::nullopt);
}

TEST(Desplazamiento, SharedFormulasCountFromTheirCell) {
    LibroDePrueba libro;
    // One row up (FFFF) and one column left (FF), both relative.
    const Rgce rgce{0x4C, 0xFF, 0xFF, 0xFF, 0xC0};
    EXPECT_EQ(descompilar(rgce, {9, 4}, libro), "=R[-1]C[-1]");
    EXPECT_EQ(descompartir(rgce, {9, 4}), (Rgce{0x44, 8, 0, 3, 0xC0}));
    EXPECT_EQ(descompartir(rgce, {0, 0}), (Rgce{0x44, 0xFF, 0xFF, 0xFF, 0xC0}));
    EXPECT_EQ(descompilar(rgce, {0, 0}, libro), "=R[65535]C[255]");
}

TEST(Desplazamiento, UnsharingKeepsFixedCoordinatesAndClasses) {
    LibroDePrueba libro;
    // SUM of the rows from the first to the one above, this column, as an area with one fixed end.
    const Rgce rgce{0x2D, 0, 0, 0xFF, 0xFF, 0, 0x40, 0, 0xC0, 0x19, 0x10, 0, 0};
    EXPECT_EQ(descompilar(rgce, {9, 4}, libro), "=SUM(R1C:R[-1]C)");
    const Rgce suelta{0x25, 0, 0, 8, 0, 4, 0x40, 4, 0xC0, 0x19, 0x10, 0, 0};
    EXPECT_EQ(descompartir(rgce, {9, 4}), suelta);
    EXPECT_EQ(descompartir(Rgce{0x6C, 1, 0, 2, 0}, {9, 4}), (Rgce{0x64, 1, 0, 2, 0}));
    EXPECT_EQ(descompartir(Rgce{0x1E, 1, 0, 0x44, 1, 0, 2, 0, 0x03}, {9, 4}),
              (Rgce{0x1E, 1, 0, 0x44, 1, 0, 2, 0, 0x03}));
}

TEST(Desplazamiento, UnsharingRefusesWhatItDoesNotUnderstand) {
    EXPECT_EQ(descompartir(Rgce{0x01, 0, 0, 0, 0}, {0, 0}), std::nullopt);
    EXPECT_EQ(descompartir(Rgce{0x4C, 0, 0, 0}, {0, 0}), std::nullopt);
    EXPECT_EQ(descompartir(Rgce{0xFF}, {0, 0}), std::nullopt);
}

}  // namespace
}  // namespace bn::xls
