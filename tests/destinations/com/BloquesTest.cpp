// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <algorithm>

#include "destinations/excel/com/ExcelCom.h"
#include "tests/destinations/com/ConSustituto.h"

// Cells by blocks: with the results of single calls, and far fewer of them.

namespace bn::prueba {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string texto(const Variante& valor) {
    const auto* cadena = std::get_if<std::string>(&valor);
    return cadena ? *cadena : "no es un texto";
}

class CeldasDeExcel : public ConSustituto {
 protected:
    void abrir(const std::vector<std::vector<Variante>>& filas = {}) {
        crearLibro("Pesadas.xls", filas);
        excel().AbrirParaEscribir(ruta("Pesadas.xls"), "Pesadas", true);
        llamadas();
    }
};

TEST_F(CeldasDeExcel, ARowIsWrittenInOneRectangleWithItsTypes) {
    abrir();
    excel().Celda(3, 1, FechaOle{45000.5});
    excel().Celda(3, 2, std::string("1234 BCD"));
    excel().Celda(3, 3, int32_t{57});
    excel().Celda(3, 4, 12.5F);
    EXPECT_THAT(diario(), IsEmpty()) << "nothing needs them yet";
    excel().NombreHoja();
    EXPECT_THAT(diario(), ElementsAre("Worksheet.Range(BSTR \"A3:D3\")",
                                      "Range[A3:D3].FormulaR1C1 = matriz 1x4 {DATE 45000.5; BSTR "
                                      "\"1234 BCD\"; I4 57; R4 12.5}",
                                      "Worksheet.Name"));
}

TEST_F(CeldasDeExcel, ASingleCellIsWrittenAsItself) {
    abrir();
    excel().Celda(9, 28, std::string("solo"));
    excel().NombreHoja();
    EXPECT_THAT(diario(), ElementsAre("Worksheet.Range(BSTR \"AB9\")",
                                      "Range[AB9].FormulaR1C1 = BSTR \"solo\"", "Worksheet.Name"));
}

TEST_F(CeldasDeExcel, WhatStandsBetweenTheColumnsIsNeverTouched) {
    abrir({{std::string("a"), std::string("=R[1]C"), std::string("b")}});
    for (int16_t fila = 1; fila <= 3; ++fila) {
        excel().Celda(fila, 1, int32_t{fila});
        excel().Celda(fila, 3, int32_t{fila});
    }
    excel().Guardar("");
    EXPECT_EQ(leerCelda("Pesadas.xls", 1, 2), Variante(std::string("=R[1]C")));
    for (const std::string& linea : diario()) EXPECT_EQ(linea.find("A1:C"), std::string::npos);
}

TEST_F(CeldasDeExcel, AWrittenCellIsReadBackAsTheApplicationTookIt) {
    abrir();
    excel().Celda(1, 1, std::string("=1+1"));
    excel().Celda(1, 2, std::string("texto"));
    EXPECT_EQ(texto(excel().Celda(1, 2)), "texto");
    EXPECT_EQ(texto(excel().Celda(1, 1)), "=1+1");
    EXPECT_EQ(texto(excel().Celda(1, 3)), "");
}

TEST_F(CeldasDeExcel, ACellReadBeforeIsReadAnewOnceWritten) {
    abrir({{std::string("antes")}});
    EXPECT_EQ(texto(excel().Celda(1, 1)), "antes");
    excel().Celda(1, 1, std::string("ahora"));
    EXPECT_EQ(texto(excel().Celda(1, 1)), "ahora");
    excel().Celda(1, 1, Variante());
    EXPECT_EQ(texto(excel().Celda(1, 1)), "");
}

TEST_F(CeldasDeExcel, AnUntouchedCellIsReadWithoutWritingTheQueue) {
    abrir({{std::string("x")}});
    EXPECT_EQ(texto(excel().Celda(1, 1)), "x");
    llamadas();
    excel().Celda(2, 1, std::string("y"));
    EXPECT_EQ(texto(excel().Celda(1, 1)), "x");
    EXPECT_THAT(llamadas(), IsEmpty());
}

TEST_F(CeldasDeExcel, ACellSetTwiceIsSetTwice) {
    abrir();
    excel().Celda(1, 1, FechaOle{45000});
    excel().Celda(1, 1, int32_t{3});
    EXPECT_EQ(excel().Celda(1, 1), Variante(3.0));
    EXPECT_THAT(diario(),
                ElementsAre("Worksheet.Range(BSTR \"A1\")", "Range[A1].FormulaR1C1 = DATE 45000",
                            "Worksheet.Range(BSTR \"A1\")", "Range[A1].FormulaR1C1 = I4 3",
                            "Worksheet.Range(BSTR \"A1:P64\")", "Range[A1:P64].FormulaR1C1"));
}

TEST_F(CeldasDeExcel, ManyCellsSetTwiceAreStillWrittenInBlocks) {
    abrir();
    for (int16_t fila = 1; fila <= 500; ++fila) {
        excel().Celda(fila, 1, FechaOle{45000});
        excel().Celda(fila, 2, std::string("x"));
        excel().Celda(fila, 1, int32_t{fila});
    }
    excel().NombreHoja();
    EXPECT_THAT(diario(), testing::SizeIs(testing::Le(5U)));
    EXPECT_EQ(excel().Celda(500, 1), Variante(500.0));
    EXPECT_EQ(excel().Celda(1, 1), Variante(1.0));
}

TEST_F(CeldasDeExcel, TheQueueIsWrittenBeforeSaving) {
    abrir();
    excel().Celda(1, 1, std::string("x"));
    excel().Guardar("");
    const std::vector<std::string> lineas = diario();
    ASSERT_EQ(lineas.size(), 7U);
    EXPECT_EQ(lineas[1], "Range[A1].FormulaR1C1 = BSTR \"x\"");
    EXPECT_EQ(lineas[3].substr(0, 15), "Workbook.SaveAs");
    EXPECT_EQ(texto(leerCelda("Pesadas.xls", 1, 1)), "x");
}

TEST_F(CeldasDeExcel, TwoObjectsOfOneSheetSeeTheSameCells) {
    abrir({{std::string("x")}});
    const auto aplicacion = plataforma_.nuevaAplicacionExcel(false);
    const auto libro = aplicacion->Workbooks()->Open(ruta("Pesadas.xls"));
    const auto una = libro->Worksheets()->Item(1);
    const auto otra = libro->Worksheets()->Item(1);
    EXPECT_EQ(texto(otra->Cells()->Item(1, 1)->FormulaR1C1()), "x");
    una->Cells()->Item(1, 1)->FormulaR1C1(std::string("y"));
    EXPECT_EQ(texto(otra->Cells()->Item(1, 1)->FormulaR1C1()), "y");
    otra->Cells()->Item(1, 1)->FormulaR1C1(std::string("z"));
    otra->Cells()->Item(2, 1)->FormulaR1C1(std::string("w"));
    EXPECT_EQ(texto(una->Cells()->Item(1, 1)->FormulaR1C1()), "z");
    una->Cells()->ClearContents();
    EXPECT_EQ(texto(otra->Cells()->Item(2, 1)->FormulaR1C1()), "");
}

TEST_F(CeldasDeExcel, ACellOutlivesItsSheetObject) {
    abrir();
    const auto aplicacion = plataforma_.nuevaAplicacionExcel(false);
    const auto libro = aplicacion->Workbooks()->Open(ruta("Pesadas.xls"));
    const auto celda = libro->Worksheets()->Item(1)->Cells()->Item(4, 2);
    celda->FormulaR1C1(int32_t{8});
    EXPECT_EQ(texto(libro->Worksheets()->Item(1)->Range("B4")->FormulaR1C1()),
              texto(celda->FormulaR1C1()));
    EXPECT_NE(texto(celda->FormulaR1C1()), "");
}

TEST_F(CeldasDeExcel, LongTextsGoOneByOne) {
    abrir();
    const std::string largo(2000, 'x');
    excel().Celda(1, 1, std::string("a"));
    excel().Celda(1, 2, largo);
    excel().Celda(1, 3, std::string("b"));
    excel().Guardar("");
    EXPECT_EQ(texto(leerCelda("Pesadas.xls", 1, 1)), "a");
    EXPECT_EQ(texto(leerCelda("Pesadas.xls", 1, 2)), largo);
    EXPECT_EQ(texto(leerCelda("Pesadas.xls", 1, 3)), "b");
}

TEST_F(CeldasDeExcel, ACellOutsideEverySheetIsLeftToTheApplication) {
    abrir();
    EXPECT_THROW(excel().Celda(0, 1, int32_t{1}), excel::ErrorExcel);
    EXPECT_THROW(excel().Celda(1, 0), excel::ErrorExcel);
    EXPECT_THROW(excel().Celda(-1, 1), excel::ErrorExcel);
}

TEST_F(CeldasDeExcel, AColumnThatTheSheetLacksFailsWhenItIsWritten) {
    abrir();
    excel().Celda(1, 702, int32_t{1});
    EXPECT_THROW(excel().Guardar(""), excel::ErrorExcel);
}

TEST_F(CeldasDeExcel, TheLastColumnsAreReadWithoutCrossingTheEdge) {
    abrir();
    excel().Celda(1, 256, std::string("IV"));
    EXPECT_EQ(texto(excel().Celda(1, 256)), "IV");
    EXPECT_EQ(texto(excel().Celda(2, 256)), "");
    EXPECT_EQ(texto(excel().Celda(32767, 256)), "");
}

TEST_F(CeldasDeExcel, CellsAreReadOneByOneFromAnApplicationThatGivesNoArray) {
    ordenar("sinmatriz");
    abrir({{std::string("a"), std::string("b")}, {std::string("c")}});
    EXPECT_EQ(texto(excel().Celda(1, 1)), "a");
    EXPECT_EQ(texto(excel().Celda(1, 2)), "b");
    EXPECT_EQ(texto(excel().Celda(2, 1)), "c");
    EXPECT_EQ(texto(excel().Celda(3, 1)), "");
}

TEST_F(CeldasDeExcel, TheLastColumnsThatCanBeNamedAreReadWithoutGoingBeyond) {
    abrir();
    EXPECT_THROW(excel().Celda(1, 702), excel::ErrorExcel) << "this sheet has fewer";
    EXPECT_THAT(diario(), testing::Contains(testing::HasSubstr("\"ZM1:ZZ64\"")));
}

TEST_F(CeldasDeExcel, ScatteredReadingGivesWhatSingleCallsWould) {
    std::vector<std::vector<Variante>> filas;
    for (int32_t fila = 1; fila <= 300; ++fila) {
        std::vector<Variante> valores;
        for (int32_t columna = 1; columna <= 40; ++columna) {
            valores.emplace_back("f" + std::to_string(fila) + "c" + std::to_string(columna));
        }
        filas.push_back(valores);
    }
    abrir(filas);
    uint32_t azar = 12345;
    for (int vez = 0; vez < 2000; ++vez) {
        azar = azar * 1664525U + 1013904223U;
        const auto fila = static_cast<int16_t>(1 + (azar >> 8) % 320);
        const auto columna = static_cast<int16_t>(1 + (azar >> 20) % 45);
        const bool dentro = fila <= 300 && columna <= 40;
        const std::string esperado =
            dentro ? "f" + std::to_string(fila) + "c" + std::to_string(columna) : "";
        ASSERT_EQ(texto(excel().Celda(fila, columna)), esperado) << fila << ',' << columna;
    }
}

}  // namespace
}  // namespace bn::prueba
