// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>

#include "destinations/excel/ObjectModel.h"
#include "destinations/xls/formula/Compilador.h"
#include "destinations/xls/formula/Descompilador.h"
#include "tests/destinations/formula/LibroDePrueba.h"

namespace bn::xls {
namespace {

std::string mensaje(const std::string& formula) {
    LibroDePrueba libro;
    try {
        compilar(formula, {0, 0}, libro);
    } catch (const excel::ErrorExcel& e) {
        return e.what();
    }
    return "";
}

std::string repetir(const std::string& texto, size_t veces) {
    std::string resultado;
    for (size_t i = 0; i < veces; ++i) resultado += texto;
    return resultado;
}

TEST(ErroresDeFormula, WhatIsNoFormulaIsRefused) {
    for (const char* formula : {"",
                                "1",
                                "=",
                                "= ",
                                "=+",
                                "=1+",
                                "=*1",
                                "=1 2",
                                "=(1",
                                "=1)",
                                "=()",
                                "=\"a",
                                "=1..2",
                                "=1E",
                                "=1E+",
                                "=1a",
                                "=12ABC",
                                "=R1C1 R2C2",
                                "=R1C1:",
                                "=R1C1:R3",
                                "=R1C1:Hoja1!R1C1",
                                "=(R1C1,R2C2)",
                                "=#NADA!",
                                "=SUM(1",
                                "=SUM(1;2)",
                                "=R[C1",
                                "=R[1C1",
                                "=R[x]C",
                                "=R[]C",
                                "='Hoja1'R1C1",
                                "='Hoja1!R1C1",
                                "=Hoja1!",
                                "=Hoja1!total",
                                "=A1",
                                "={1,2}",
                                "=1%%+",
                                "=@R1C1",
                                "=1,2",
                                "=R1C1!R1C1",
                                "=\t1"}) {
        EXPECT_NE(mensaje(formula), "") << formula;
    }
}

TEST(ErroresDeFormula, SayInSpanishWhatIsWrongAndWhere) {
    EXPECT_EQ(mensaje("=(1"),
              "La fórmula no es correcta: falta un paréntesis de cierre (posición 4).");
    EXPECT_EQ(mensaje("=NADA(1)"),
              "La fórmula no es correcta: no se conoce la función NADA (posición 6).");
    EXPECT_EQ(mensaje("=\"ñ\"+"), "La fórmula no es correcta: falta un valor (posición 6).");
    EXPECT_EQ(mensaje("=nada"), "La fórmula no es correcta: no existe el nombre \"nada\".");
    EXPECT_EQ(mensaje("=Ajena!R1C1"), "La fórmula no es correcta: no existe la hoja \"Ajena\".");
    EXPECT_EQ(mensaje("=R70000C1"), "La referencia R70000 está fuera de la hoja.");
}

TEST(ErroresDeFormula, ReferencesOutsideTheSheetAreRefused) {
    for (const char* formula : {"=R0C1", "=R1C0", "=R65537C1", "=R1C257", "=R[65536]C", "=RC[256]",
                                "=RC[-256]", "=R99999999999999999999C1", "=C257", "=R0"}) {
        EXPECT_NE(mensaje(formula), "") << formula;
    }
    EXPECT_EQ(mensaje("=R[65535]C[255]"), "");
}

TEST(ErroresDeFormula, ArgumentsMustBeAsManyAsTheFunctionTakes) {
    for (const char* formula : {"=SUM()", "=IF(1)", "=IF(1,2,3,4)", "=ABS()", "=ABS(1,2)", "=PI(1)",
                                "=ROUND(1)", "=VLOOKUP(1,2)"}) {
        EXPECT_NE(mensaje(formula), "") << formula;
    }
    EXPECT_EQ(mensaje("=SUM(1" + repetir(",1", 29) + ")"), "");
    EXPECT_NE(mensaje("=SUM(1" + repetir(",1", 30) + ")"), "");
}

TEST(ErroresDeFormula, LengthsHaveTheirLimits) {
    EXPECT_EQ(mensaje("=\"" + repetir("a", 255) + "\""), "");
    EXPECT_NE(mensaje("=\"" + repetir("a", 256) + "\""), "");
    // Each "+1" takes four bytes, the first number three: 1799 bytes, then 1803.
    EXPECT_EQ(mensaje("=1" + repetir("+1", 449)), "");
    EXPECT_NE(mensaje("=1" + repetir("+1", 450)), "");
}

TEST(ErroresDeFormula, DepthIsRefusedBeforeItCanExhaustTheStack) {
    EXPECT_EQ(mensaje("=" + repetir("(", 60) + "1" + repetir(")", 60)), "");
    for (const char* pieza : {"(", "-", "+", "SUM(", "IF(1,", "-(", "1+("}) {
        EXPECT_NE(mensaje("=" + repetir(pieza, 100000)), "") << pieza;
        EXPECT_NE(mensaje("=" + repetir(pieza, 1000) + "1"), "") << pieza;
    }
    EXPECT_NE(mensaje("=1" + repetir("%", 5000)), "");
    EXPECT_NE(mensaje("=" + repetir("(", 100000) + "1" + repetir(")", 100000)), "");
}

TEST(ErroresDeFormula, NumbersOutsideWhatACellHoldsAreRefused) {
    EXPECT_NE(mensaje("=1E309"), "");
    EXPECT_NE(mensaje("=1E-309"), "");
    EXPECT_EQ(mensaje("=1E308"), "");
}

TEST(ErroresDeFormula, BrokenTextEncodingIsRefused) {
    EXPECT_NE(mensaje("=\"\xFF\""), "");
    EXPECT_NE(mensaje("=\"\xC3"), "");
}

}  // namespace
}  // namespace bn::xls
