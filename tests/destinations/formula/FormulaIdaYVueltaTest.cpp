// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>

#include "destinations/excel/ObjectModel.h"
#include "destinations/xls/formula/Compilador.h"
#include "destinations/xls/formula/Descompilador.h"
#include "destinations/xls/formula/Numeros.h"
#include "tests/destinations/formula/LibroDePrueba.h"

namespace bn::xls {
namespace {

constexpr PosicionCelda kCelda{99, 19};

std::string vuelta(const std::string& formula, PosicionCelda celda = kCelda) {
    LibroDePrueba libro;
    return descompilar(compilar(formula, celda, libro), celda, libro).value_or("=?");
}

TEST(FormulaIdaYVuelta, EveryFormReadsBackAsItWasWritten) {
    for (const char* formula : {"=1",
                                "=1.5",
                                "=0.1",
                                "=123456789012345",
                                "=1E+21",
                                "=0.000001",
                                "=\"\"",
                                "=\"a\"\"b\"",
                                "=\"ñ€𝄞\"",
                                "=TRUE",
                                "=#N/A",
                                "=#NULL!",
                                "=R1C1",
                                "=RC",
                                "=R[1]C[-1]",
                                "=R[-99]C[-19]",
                                "=R5C[2]",
                                "=SUM(R1C1:R2C2)",
                                "=SUM(R1C1:R1C1)",
                                "=SUM(C1)",
                                "=SUM(C1:C3)",
                                "=SUM(C)",
                                "=SUM(R)",
                                "=SUM(R[-1])",
                                "=SUM(R1:R3)",
                                "=SUM(C[-1]:C)",
                                "=Hoja1!R1C1",
                                "='Otra hoja'!R[1]C:R[2]C",
                                "='O''Brien'!RC",
                                "=SUM('Hoja1:Otra hoja'!R1C1)",
                                "=total",
                                "=último_mes+total",
                                "=1+2*3",
                                "=(1+2)*3",
                                "=((1))",
                                "=-1",
                                "=--1",
                                "=+1",
                                "=-2^2",
                                "=2^-2",
                                "=-(2^2)",
                                "=5%",
                                "=-5%",
                                "=5%%",
                                "=1-2-3",
                                "=1-(2-3)",
                                "=2^3^4",
                                "=2^(3^4)",
                                "=1&2&\"x\"",
                                "=1<>2",
                                "=1<=2",
                                "=(1=2)=(3>=4)",
                                "=IF(R1C1>0,R1C1,-R1C1)",
                                "=IF(TRUE,1)",
                                "=IF(TRUE,,2)",
                                "=IF(IF(1,2,3),IF(4,5),6)",
                                "=ROUND(AVERAGE(C1),2)",
                                "=TODAY()-DATE(2003,1,31)",
                                "=VLOOKUP(RC1,Hoja1!C1:C3,2,FALSE)",
                                "=SUMIF(C1,\">0\",C2)",
                                "=COUNTIF(C1,\"x\")",
                                "=LEFT(R1C1,2)&MID(R1C1,3,1)",
                                "=SUM(1,R1C1,R1C1:R2C2,,3)",
                                "=INDEX(C1,2,)",
                                "=TRUE()",
                                "=CHOOSE(2,R1C1,\"b\",3)",
                                "=ERROR.TYPE(#N/A)",
                                "= 1 + 2",
                                "=( 1  )",
                                "=SUM( 1, 2 )",
                                "=IF( 1, 2, 3 )",
                                "=1 %",
                                "=- 1",
                                "=\n1 +\n 2",
                                "=Hoja1!#REF!",
                                "=SUM(Hoja1!#REF!,1)"}) {
        EXPECT_EQ(vuelta(formula), formula);
    }
}

TEST(FormulaIdaYVuelta, SpellingIsMadeUniform) {
    EXPECT_EQ(vuelta("=sum(r1c1:r2c2)"), "=SUM(R1C1:R2C2)");
    EXPECT_EQ(vuelta("=R[0]C[0]"), "=RC");
    EXPECT_EQ(vuelta("=R[+1]C"), "=R[1]C");
    EXPECT_EQ(vuelta("=1.50"), "=1.5");
    EXPECT_EQ(vuelta("=1e3"), "=1000");
    EXPECT_EQ(vuelta("=hoja1!r1c1"), "=Hoja1!R1C1");
    EXPECT_EQ(vuelta("=SUM(R2C2:R1C1)"), "=SUM(R1C1:R2C2)");
    EXPECT_EQ(vuelta("=SUM(C1:C1)"), "=SUM(C1)");
    EXPECT_EQ(vuelta("=SUM (1)"), "=SUM(1)");
    EXPECT_EQ(vuelta("=TOTAL"), "=total");
    EXPECT_EQ(vuelta("=1234567890123456789"), "=1234567890123450000");
}

TEST(FormulaIdaYVuelta, TextsOfTheGreatestLengthSurvive) {
    const std::string largo(255, 'x');
    EXPECT_EQ(vuelta("=\"" + largo + "\""), "=\"" + largo + "\"");
}

/// A formula of every form that the compiler writes, in its uniform spelling.
class Generador {
 public:
    explicit Generador(uint32_t semilla) : azar_(semilla) {}

    std::string formula() { return "=" + expresion(4); }

 private:
    int hasta(int n) { return std::uniform_int_distribution<int>(0, n)(azar_); }
    template <size_t N>
    const char* uno(const char* const (&lista)[N]) {
        return lista[static_cast<size_t>(hasta(static_cast<int>(N) - 1))];
    }

    std::string blancos() { return hasta(9) == 0 ? uno({" ", "  ", "\n", " \n "}) : ""; }

    std::string coordenada(char letra, int actual, int limite) {
        const std::string texto(1, letra);
        switch (hasta(2)) {
            case 0:
                return texto;
            case 1:
                return texto + std::to_string(hasta(limite - 1) + 1);
            default: {
                const int distancia = hasta(limite - 1) - actual;
                return distancia == 0 ? texto : texto + "[" + std::to_string(distancia) + "]";
            }
        }
    }

    std::string celda() { return coordenada('R', 99, 65536) + coordenada('C', 19, 256); }

    std::string area() {
        const int fila = hasta(60000), columna = hasta(200);
        const auto punto = [](int f, int c) {
            return "R" + std::to_string(f + 1) + "C" + std::to_string(c + 1);
        };
        return punto(fila, columna) + ":" + punto(fila + hasta(99), columna + hasta(9));
    }

    std::string hoja() { return uno({"", "", "Hoja1!", "'Otra hoja'!", "'O''Brien'!"}); }

    std::string numero() {
        if (hasta(1) == 0) return std::to_string(hasta(99999));
        return escribirNumero(hasta(1000000) / 1000.0 * std::pow(10.0, hasta(40) - 20));
    }

    std::string operando() {
        switch (hasta(5)) {
            case 0:
                return numero();
            case 1:
                return uno({"\"\"", "\"a b\"", "\"\"\"\"", "\"ñ\"", "\"€\"", "\"=R1C1\""});
            case 2:
                return uno({"TRUE", "FALSE", "#N/A", "#VALUE!", "total", "último_mes"});
            default:
                return hoja() + celda();
        }
    }

    std::string argumento(int hondura) {
        switch (hasta(4)) {
            case 0:
                return hoja() + area();
            case 1:
                return uno({"C3", "R7", "C1:C2", "R2:R9", "C", "R"});
            default:
                return expresion(hondura);
        }
    }

    std::string funcion(int hondura) {
        if (hasta(3) == 0) return "TODAY()";
        if (hasta(3) == 0) {
            return "IF(" + expresion(hondura) + "," + argumento(hondura) +
                   (hasta(1) == 0 ? "" : "," + blancos() + argumento(hondura)) + blancos() + ")";
        }
        std::string texto = uno({"SUM(", "AVERAGE(", "COUNT(", "MIN(", "MAX(", "AND("});
        texto += argumento(hondura);
        for (int i = hasta(3); i > 0; --i) texto += "," + (hasta(5) == 0 ? "" : argumento(hondura));
        return texto + blancos() + ")";
    }

    std::string expresion(int hondura) {
        if (hondura == 0) return blancos() + operando();
        switch (hasta(5)) {
            case 0:
                return blancos() + "(" + expresion(hondura - 1) + blancos() + ")";
            case 1:
                return blancos() + uno({"-", "+"}) + expresion(hondura - 1);
            case 2:
                return blancos() + funcion(hondura - 1);
            case 3:
                return blancos() + operando() + "%";
            default:
                return expresion(hondura - 1) + blancos() +
                       uno({"+", "-", "*", "/", "^", "&", "<", "<=", "=", ">", ">=", "<>"}) +
                       expresion(hondura - 1);
        }
    }

    std::mt19937 azar_;
};

TEST(FormulaIdaYVuelta, RandomFormulasReadBackExactly) {
    Generador generador(5);
    size_t cuantas = 0;
    for (int i = 0; i < 20000; ++i) {
        const std::string formula = generador.formula();
        LibroDePrueba libro;
        Rgce rgce;
        try {
            rgce = compilar(formula, kCelda, libro);
        } catch (const excel::ErrorExcel& e) {
            ASSERT_NE(std::string(e.what()).find("demasiado larga"), std::string::npos)
                << formula << "\n"
                << e.what();
            continue;
        }
        ASSERT_EQ(descompilar(rgce, kCelda, libro), formula);
        ++cuantas;
    }
    EXPECT_GT(cuantas, 19000U);
}

TEST(FormulaIdaYVuelta, RandomTextsEitherCompileAndReadBackToTheSameTokensOrAreRefused) {
    std::mt19937 azar(11);
    const std::string signos = "RC[]-+*/^&<>=()\",'!:;#%. 0123456789EeSUMIFtotalHoja1\n";
    size_t compiladas = 0;
    for (int i = 0; i < 200000; ++i) {
        std::string formula = "=";
        for (size_t n = azar() % 12; n > 0; --n) formula += signos[azar() % signos.size()];
        LibroDePrueba libro;
        try {
            const Rgce rgce = compilar(formula, kCelda, libro);
            const auto texto = descompilar(rgce, kCelda, libro);
            ASSERT_TRUE(texto) << formula;
            ASSERT_EQ(compilar(*texto, kCelda, libro), rgce) << formula << " / " << *texto;
            ++compiladas;
        } catch (const excel::ErrorExcel& e) {
            ASSERT_STRNE(e.what(), "");
        }
    }
    EXPECT_GT(compiladas, 1000U);
}

TEST(FormulaIdaYVuelta, ParenthesesLeftOutByOtherWritersAreShownWhereTheyMatter) {
    LibroDePrueba libro;
    const auto leida = [&](const Rgce& rgce) { return descompilar(rgce, kCelda, libro); };
    EXPECT_EQ(leida({0x1E, 1, 0, 0x1E, 2, 0, 0x03, 0x1E, 3, 0, 0x05}), "=(1+2)*3");
    EXPECT_EQ(leida({0x1E, 1, 0, 0x1E, 2, 0, 0x1E, 3, 0, 0x04, 0x04}), "=1-(2-3)");
    EXPECT_EQ(leida({0x1E, 1, 0, 0x1E, 2, 0, 0x07, 0x13}), "=-(1^2)");
}

TEST(FormulaIdaYVuelta, FormulasOfTheWorksheetAndOfOtherWritersRead) {
    LibroDePrueba libro;
    libro.xtis = {{"Hoja1", "Hoja1"}, {"Otra hoja", "Otra hoja"}};
    // The unused bytes of a sum hold anything; a negative number may be one constant.
    EXPECT_EQ(descompilar(Rgce{0x23, 1, 0, 0, 0, 0x19, 0x10, 0xF2, 0x0A}, kCelda, libro),
              "=SUM(total)");
    EXPECT_EQ(descompilarNombre(Rgce{0x1F, 0, 0, 0, 0, 0, 0, 0xF0, 0xBF}, libro), "=-1");
    // Rows and columns to repeat on every page.
    const Rgce titulos{0x29, 23,   0, 0x3B, 1, 0, 0, 0, 0xFF, 0xFF, 0,    0, 0,
                       0,    0x3B, 1, 0,    0, 0, 0, 0, 0,    0,    0xFF, 0, 0x10};
    EXPECT_EQ(descompilarNombre(titulos, libro), "='Otra hoja'!$A:$A,'Otra hoja'!$1:$1");
    // A choice, with its table of jumps.
    const Rgce eleccion{0x1E, 2,    0,  0x19, 0x04, 2, 0, 6,    0,    13, 0, 20,   0, 0x1E, 7, 0,
                        0x19, 0x08, 10, 0,    0x1E, 8, 0, 0x19, 0x08, 3,  0, 0x42, 3, 100,  0};
    EXPECT_EQ(descompilar(eleccion, kCelda, libro), "=CHOOSE(2,7,8)");
}

TEST(FormulaIdaYVuelta, ReadsReferenceOperatorsOfOtherWriters) {
    LibroDePrueba libro;
    const auto leida = [&](const Rgce& rgce) { return descompilar(rgce, kCelda, libro); };
    const Rgce una{0x24, 0, 0, 0, 0}, otra{0x24, 1, 0, 1, 0};
    const auto con = [&](uint8_t operador) {
        Rgce rgce{0x29, 11, 0};
        rgce.insert(rgce.end(), una.begin(), una.end());
        rgce.insert(rgce.end(), otra.begin(), otra.end());
        rgce.insert(rgce.end(), {operador, 0x42, 1, 5, 0});
        return rgce;
    };
    EXPECT_EQ(leida(con(0x11)), "=AVERAGE(R1C1:R2C2)");
    EXPECT_EQ(leida(con(0x0F)), "=AVERAGE(R1C1 R2C2)");
    EXPECT_EQ(leida(con(0x10)), "=AVERAGE((R1C1,R2C2))");
}

TEST(FormulaIdaYVuelta, WhatCannotBeReadIsToldAndNeverEmpty) {
    LibroDePrueba libro;
    for (const Rgce& rgce : {Rgce{},
                             Rgce{0x01, 0, 0, 0, 0},
                             Rgce{0x02, 0, 0, 0, 0},
                             Rgce{0x03},
                             Rgce{0x16},
                             Rgce{0x1E, 1, 0, 0x1E, 2, 0},
                             Rgce{0x20, 0, 0, 0, 0, 0, 0, 0},
                             Rgce{0x41, 0xFF, 0xFF},
                             Rgce{0x42, 2, 4, 0},
                             Rgce{0x42, 1, 0xFF, 0},
                             Rgce{0x43, 9, 0, 0, 0},
                             Rgce{0x5A, 7, 0, 0, 0, 0, 0},
                             Rgce{0x59, 0, 0, 1, 0, 0, 0},
                             Rgce{0x1C, 99},
                             Rgce{0x44, 0, 0, 0, 0x01},
                             Rgce{0x1F, 0, 0, 0, 0, 0, 0, 0xF0, 0x7F},
                             Rgce{0x19, 0x10, 0, 0},
                             Rgce{0x15},
                             Rgce{0x14},
                             Rgce{0x13},
                             Rgce{0x16, 0x15}}) {
        EXPECT_EQ(descompilar(rgce, kCelda, libro), std::nullopt);
    }
}

TEST(FormulaIdaYVuelta, RepeatedSignsOfHostileFilesTakeNoLongTime) {
    LibroDePrueba libro;
    Rgce rgce{0x1E, 1, 0};
    rgce.resize(8000, 0x13);
    EXPECT_EQ(descompilar(rgce, kCelda, libro)->size(), 7999U);
    rgce.resize(60000, 0x13);
    EXPECT_EQ(descompilar(rgce, kCelda, libro), std::nullopt);
}

TEST(FormulaIdaYVuelta, NumbersReadInFifteenDigits) {
    EXPECT_EQ(escribirNumero(0.1), "0.1");
    EXPECT_EQ(escribirNumero(1.0 / 3), "0.333333333333333");
    EXPECT_EQ(escribirNumero(1e20), "100000000000000000000");
    EXPECT_EQ(escribirNumero(1e21), "1E+21");
    EXPECT_EQ(escribirNumero(-1.25e-10), "-1.25E-10");
    EXPECT_EQ(escribirNumero(-0.0), "0");
    EXPECT_EQ(escribirNumero(1e-5), "0.00001");
    EXPECT_EQ(escribirNumero(999999999999999.9), "1000000000000000");
    EXPECT_EQ(leerNumero("1234567890123456"), 1234567890123450.0);
    EXPECT_EQ(leerNumero("0.00012345678901234567"), 0.000123456789012345);
    EXPECT_EQ(leerNumero(std::string(400, '0') + "1"), 1.0);
    EXPECT_EQ(leerNumero("1E99999999999999999999"), std::nullopt);
    EXPECT_EQ(leerNumero(""), std::nullopt);
    EXPECT_EQ(leerNumero("."), std::nullopt);
    EXPECT_EQ(leerNumero("1 "), std::nullopt);
}

}  // namespace
}  // namespace bn::xls
