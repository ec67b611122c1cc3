// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "destinations/excel/ObjectModel.h"
#include "destinations/xls/Bytes.h"
#include "destinations/xls/Disposicion.h"
#include "destinations/xls/Edicion.h"
#include "tests/destinations/xls/Ayudas.h"

namespace bn::xls::prueba {
namespace {

const Variante kVacia = std::string();

uint16_t xfDe(Hoja& hoja, int32_t fila, int32_t columna) {
    return std::as_const(hoja.celdas->tabla()).buscar(fila, columna)->xf;
}

TEST(Edicion, GivesBackWhatItTook) {
    LibroDePrueba l;
    const Variante valores[] = {std::string("Ñandú €"), 12.5, int32_t{-7}, true};
    for (int i = 0; i < 4; ++i) escribirCelda(l.hoja, i, 0, valores[i]);
    EXPECT_EQ(leerCelda(l.hoja, 0, 0), Variante(std::string("Ñandú €")));
    EXPECT_EQ(leerCelda(l.hoja, 1, 0), Variante(12.5));
    EXPECT_EQ(leerCelda(l.hoja, 2, 0), Variante(-7.0));
    EXPECT_EQ(leerCelda(l.hoja, 3, 0), Variante(true));
    EXPECT_EQ(leerCelda(l.hoja, 4, 0), kVacia);
    EXPECT_EQ(leerCelda(l.hoja, 65535, 255), kVacia);
}

TEST(Edicion, ASinglePrecisionWeightIsTheDecimalThatWasWeighed) {
    LibroDePrueba l;
    escribirCelda(l.hoja, 0, 0, 12.35F);
    EXPECT_EQ(leerCelda(l.hoja, 0, 0), Variante(12.35));
}

TEST(Edicion, ATextIsTakenAsATypedEntry) {
    LibroDePrueba l;
    escribirCelda(l.hoja, 0, 0, std::string("12.5"));
    escribirCelda(l.hoja, 0, 1, std::string("TRUE"));
    escribirCelda(l.hoja, 0, 2, std::string("'12"));
    escribirCelda(l.hoja, 0, 3, std::string("#N/A"));
    escribirCelda(l.hoja, 0, 4, std::string("25%"));
    EXPECT_EQ(leerCelda(l.hoja, 0, 0), Variante(12.5));
    EXPECT_EQ(leerCelda(l.hoja, 0, 1), Variante(true));
    EXPECT_EQ(leerCelda(l.hoja, 0, 2), Variante(std::string("12")));
    EXPECT_EQ(leerCelda(l.hoja, 0, 3), Variante(std::string("#N/A")));
    EXPECT_EQ(leerCelda(l.hoja, 0, 4), Variante(0.25));
    EXPECT_FALSE(l.libro->formatos().esGeneral(xfDe(l.hoja, 0, 4)));
}

TEST(Edicion, ACellFormattedAsTextKeepsEveryTextAsItIs) {
    LibroDePrueba l;
    formatoNumerico(l.hoja, {0, 0, 0, 0}, "@");
    escribirCelda(l.hoja, 0, 0, std::string("0012"));
    EXPECT_EQ(leerCelda(l.hoja, 0, 0), Variante(std::string("0012")));
}

TEST(Edicion, ADateInAGeneralCellTakesOnADateFormatAndInAnyOtherKeepsItsOwn) {
    LibroDePrueba l;
    formatoNumerico(l.hoja, {0, 0, 1, 1}, "0.00");
    escribirCelda(l.hoja, 0, 0, FechaOle{45000.5});
    escribirCelda(l.hoja, 0, 1, FechaOle{45000.5});
    EXPECT_EQ(leerCelda(l.hoja, 0, 0), Variante(45000.5));
    EXPECT_THAT(datosDe(l.globales(), id::kFormat),
                testing::Contains(testing::EndsWith(hex("dd/mm/yyyy hh:mm"))));
    EXPECT_TRUE(l.libro->formatos().esFecha(xfDe(l.hoja, 0, 0)));
    EXPECT_FALSE(l.libro->formatos().esFecha(xfDe(l.hoja, 0, 1)));
}

TEST(Edicion, WritingKeepsTheCellsFormat) {
    LibroDePrueba l;
    alinear(l.hoja, {0, 0, 0, 0}, Alineacion::kCentro);
    const uint16_t xf = xfDe(l.hoja, 0, 0);
    const Variante valores[] = {1.5, 0.1234567, std::string("x"), true, std::string("=1"), kVacia};
    for (const Variante& valor : valores) {
        escribirCelda(l.hoja, 0, 0, valor);
        EXPECT_EQ(xfDe(l.hoja, 0, 0), xf);
    }
}

TEST(Edicion, ANewCellTakesItsRowsFormatElseItsColumns) {
    LibroDePrueba l;
    formatoNumerico(l.hoja, {0, kFilas - 1, 1, 1}, "0.00");
    formatoNumerico(l.hoja, {3, 3, 0, 255}, "0.000");
    escribirCelda(l.hoja, 0, 1, 1.0);
    escribirCelda(l.hoja, 3, 1, 1.0);
    const uint16_t deColumna = xfDe(l.hoja, 0, 1);
    const uint16_t deFila = xfDe(l.hoja, 3, 1);
    EXPECT_NE(deColumna, kXfPorDefecto);
    EXPECT_NE(deFila, kXfPorDefecto);
    EXPECT_NE(deFila, deColumna);
}

TEST(Edicion, EmptyingACellLeavesNothingButAFormatOfItsOwn) {
    LibroDePrueba l;
    escribirCelda(l.hoja, 0, 0, 1.0);
    escribirCelda(l.hoja, 0, 0, kVacia);
    EXPECT_EQ(std::as_const(l.hoja.celdas->tabla()).buscar(0, 0), nullptr);
    alinear(l.hoja, {0, 0, 0, 0}, Alineacion::kDerecha);
    escribirCelda(l.hoja, 0, 0, 1.0);
    escribirCelda(l.hoja, 0, 0, Variante());
    EXPECT_EQ(leerCelda(l.hoja, 0, 0), kVacia);
    EXPECT_EQ(datosDe(l.deHoja(), id::kBlank).size(), 1U);
}

TEST(Edicion, WhatACellCannotHoldIsRefusedAndTheOldValueStays) {
    LibroDePrueba l;
    escribirCelda(l.hoja, 0, 0, 7.0);
    EXPECT_THROW(escribirCelda(l.hoja, 0, 0, std::numeric_limits<double>::quiet_NaN()),
                 excel::ErrorExcel);
    EXPECT_THROW(escribirCelda(l.hoja, 0, 0, std::numeric_limits<float>::infinity()),
                 excel::ErrorExcel);
    EXPECT_THROW(escribirCelda(l.hoja, 0, 0, FechaOle{std::numeric_limits<double>::infinity()}),
                 excel::ErrorExcel);
    EXPECT_THROW(escribirCelda(l.hoja, 0, 0, std::string(40000, 'x')), excel::ErrorExcel);
    EXPECT_THROW(escribirCelda(l.hoja, 0, 0, std::string("=1+")), excel::ErrorExcel);
    EXPECT_EQ(leerCelda(l.hoja, 0, 0), Variante(7.0));
}

TEST(Edicion, AFormulaReadsInR1C1) {
    LibroDePrueba l;
    escribirCelda(l.hoja, 4, 4, std::string("=SUM(R[-4]C:R[-1]C)"));
    EXPECT_EQ(leerCelda(l.hoja, 4, 4), Variante(std::string("=SUM(R[-4]C:R[-1]C)")));
}

TEST(Edicion, TheStringTableCountsItsUses) {
    LibroDePrueba l;
    escribirCelda(l.hoja, 0, 0, std::string("a"));
    escribirCelda(l.hoja, 0, 1, std::string("a"));
    escribirCelda(l.hoja, 0, 1, std::string("b"));
    escribirCelda(l.hoja, 0, 1, 5.0);
    const auto sst = datosDe(l.globales(), id::kSst);
    ASSERT_EQ(sst.size(), 1U);
    EXPECT_THAT(sst[0], testing::StartsWith("01 00 00 00 02 00 00 00"));
}

TEST(Edicion, ClearingAnAreaKeepsItsFormatsAndTouchesNothingElse) {
    LibroDePrueba l;
    formatoNumerico(l.hoja, {0, kFilas - 1, 0, 0}, "0.00");
    for (int i = 0; i < 3; ++i) escribirCelda(l.hoja, i, 0, 1.0 * i);
    vaciar(l.hoja, {1, 1, 0, 255});
    EXPECT_EQ(leerCelda(l.hoja, 0, 0), Variante(0.0));
    EXPECT_EQ(leerCelda(l.hoja, 1, 0), kVacia);
    EXPECT_EQ(leerCelda(l.hoja, 2, 0), Variante(2.0));
    vaciar(l.hoja, {0, kFilas - 1, 0, kColumnas - 1});
    escribirCelda(l.hoja, 2, 0, 1.0);
    EXPECT_NE(xfDe(l.hoja, 2, 0), kXfPorDefecto);
}

TEST(Edicion, AColumnsFormatReachesItsCellsAndTheRowsThatHaveTheirOwn) {
    LibroDePrueba l;
    formatoNumerico(l.hoja, {5, 5, 0, 255}, "0.0");
    escribirCelda(l.hoja, 0, 2, 1.0);
    alinear(l.hoja, {0, kFilas - 1, 2, 2}, Alineacion::kDerecha);
    const auto alineacion = [&](int32_t fila) {
        return Vista(deHex(datosDe(l.globales(), id::kXf)[xfDe(l.hoja, fila, 2)])).u8(6) & 7;
    };
    EXPECT_EQ(alineacion(0), 3);
    EXPECT_EQ(alineacion(5), 3);
}

TEST(Edicion, AColumnIsCutOutOfAWiderRecord) {
    LibroDePrueba l;
    l.hoja.celdas->cabeza().insert(
        l.hoja.celdas->cabeza().begin() +
            static_cast<ptrdiff_t>(buscarRegistro(l.hoja.celdas->cabeza(), id::kDimensions)),
        Registro{id::kColInfo, deHex("0200 0600 0010 0F00 0400 0000")});
    anchoDeColumnas(l.hoja, {0, kFilas - 1, 4, 4}, 20);
    EXPECT_THAT(datosDe(l.deHoja(), id::kColInfo),
                testing::ElementsAre("02 00 03 00 00 10 0F 00 04 00 00 00",
                                     "04 00 04 00 00 14 0F 00 06 00 00 00",
                                     "05 00 06 00 00 10 0F 00 04 00 00 00"));
    EXPECT_THROW(anchoDeColumnas(l.hoja, {0, kFilas - 1, 4, 4}, -1), excel::ErrorExcel);
    EXPECT_THROW(anchoDeColumnas(l.hoja, {0, kFilas - 1, 4, 4}, 256), excel::ErrorExcel);
}

TEST(Edicion, PageBreaksEndAtTheirLimit) {
    LibroDePrueba l;
    for (int i = 1; i <= 1026; ++i) saltoDePagina(l.hoja, i);
    EXPECT_THROW(saltoDePagina(l.hoja, 2000), excel::ErrorExcel);
    EXPECT_NO_THROW(saltoDePagina(l.hoja, 500));
    EXPECT_THROW(saltoDePagina(l.hoja, 0), excel::ErrorExcel);
}

TEST(Copia, TakesValuesFormatsAndRowHeightsAlong) {
    LibroDePrueba l;
    escribirCelda(l.hoja, 0, 0, std::string("Fecha"));
    alinear(l.hoja, {0, 0, 0, 0}, Alineacion::kCentro);
    escribirCelda(l.hoja, 1, 1, 12.5);
    Fila& fila = l.hoja.celdas->tabla().crearFila(0);
    const std::string alta = deHex("0000 0000 0100 5802 0000 0000 4001 0F00");
    std::copy(alta.begin(), alta.end(), fila.registro.begin());
    fila.tieneRegistro = true;
    escribirCelda(l.hoja, 20, 7, std::string("estorba"));
    copiar(l.hoja, {0, 1, 0, 255}, l.hoja, 20, 0);
    EXPECT_EQ(leerCelda(l.hoja, 20, 0), Variante(std::string("Fecha")));
    EXPECT_EQ(xfDe(l.hoja, 20, 0), xfDe(l.hoja, 0, 0));
    EXPECT_EQ(leerCelda(l.hoja, 21, 1), Variante(12.5));
    EXPECT_EQ(leerCelda(l.hoja, 20, 7), kVacia);
    EXPECT_THAT(datosDe(l.deHoja(), id::kRow),
                testing::Contains("14 00 00 00 01 00 58 02 00 00 00 00 40 01 0F 00"));
}

TEST(Copia, MovesRelativeReferencesAlong) {
    LibroDePrueba l;
    escribirCelda(l.hoja, 1, 1, std::string("=R[-1]C+R1C1"));
    copiar(l.hoja, {0, 1, 0, 255}, l.hoja, 10, 0);
    EXPECT_EQ(leerCelda(l.hoja, 11, 1), Variante(std::string("=R[-1]C+R1C1")));
}

TEST(Copia, MayOverlapItsSource) {
    LibroDePrueba l;
    for (int i = 0; i < 4; ++i) escribirCelda(l.hoja, i, 0, 1.0 * i);
    copiar(l.hoja, {0, 3, 0, 255}, l.hoja, 1, 0);
    for (int i = 0; i < 4; ++i) EXPECT_EQ(leerCelda(l.hoja, i + 1, 0), Variante(1.0 * i));
}

TEST(Copia, DoesNotLeaveTheSheet) {
    LibroDePrueba l;
    EXPECT_THROW(copiar(l.hoja, {0, 1, 0, 255}, l.hoja, 65535, 0), excel::ErrorExcel);
    EXPECT_THROW(copiar(l.hoja, {0, 1, 0, 255}, l.hoja, 5, 1), excel::ErrorExcel);
    EXPECT_THROW(copiar(l.hoja, {0, 0, 0, 0}, *LibroDePrueba().libro->hojas()[0], 5, 1),
                 excel::ErrorExcel);
}

// A1:A3 share the formula "the cell to the right, times two", kept behind A1.
std::shared_ptr<Libro> conCompartida() {
    LibroDePrueba l;
    TablaDeCeldas& tabla = l.hoja.celdas->tabla();
    for (int i = 0; i < 3; ++i) {
        std::string registros;
        std::string datos =
            deHex("0000 0000 0F00 0000000000000000 0800 00000000 0500 01 0000 0000");
        cambiar16(datos, 0, static_cast<uint32_t>(i));
        ponerRegistro(registros, id::kFormula, datos);
        if (i == 0) {
            ponerRegistro(registros, id::kShrFmla,
                          deHex("0000 0200 00 00 00 03 0900 4C 0000 01C0 1E 0200 05"));
        }
        Celda& celda = tabla.crear(i, 0, 15);
        celda.tipo = TipoCelda::kCruda;
        celda.valor = tabla.guardarCrudo(registros);
    }
    l.hoja.celdas->anotarFormula();
    l.hoja.tocada = true;
    return Libro::abrir(l.libro->serializar(), 2024);
}

TEST(FormulasCompartidas, ReadAsTheFormulaOfEachCell) {
    const auto libro = conCompartida();
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(leerCelda(*libro->hojas()[0], i, 0), Variante(std::string("=RC[1]*2")));
    }
}

TEST(FormulasCompartidas, KeepWorkingWhenTheirFirstCellIsOverwritten) {
    const auto libro = conCompartida();
    escribirCelda(*libro->hojas()[0], 0, 0, 1.0);
    const std::string copia = libro->serializar();
    EXPECT_TRUE(datosDe(registrosDe(copia, 1), id::kShrFmla).empty());
    const auto leido = Libro::abrir(copia, 2024);
    EXPECT_EQ(leerCelda(*leido->hojas()[0], 0, 0), Variante(1.0));
    EXPECT_EQ(leerCelda(*leido->hojas()[0], 1, 0), Variante(std::string("=RC[1]*2")));
    EXPECT_EQ(leerCelda(*leido->hojas()[0], 2, 0), Variante(std::string("=RC[1]*2")));
}

TEST(FormulasCompartidas, LoseOneCellWithoutHarmToTheOthers) {
    const auto libro = conCompartida();
    escribirCelda(*libro->hojas()[0], 1, 0, std::string("x"));
    EXPECT_EQ(leerCelda(*libro->hojas()[0], 0, 0), Variante(std::string("=RC[1]*2")));
    EXPECT_EQ(leerCelda(*libro->hojas()[0], 2, 0), Variante(std::string("=RC[1]*2")));
}

TEST(FormulasCompartidas, AreCopiedAsTheFormulaOfEachCell) {
    const auto libro = conCompartida();
    copiar(*libro->hojas()[0], {1, 1, 0, 255}, *libro->hojas()[0], 30, 0);
    EXPECT_EQ(leerCelda(*libro->hojas()[0], 30, 0), Variante(std::string("=RC[1]*2")));
}

TEST(FormulasDeMatriz, ChangeOnlyAsAWhole) {
    const auto libro = Libro::abrir(muestra("s3_lo_chart"), 2024);
    for (const auto& hoja : libro->hojas()) {
        if (hoja->celdas->areasIndivisibles().empty()) continue;
        const Area area = hoja->celdas->areasIndivisibles()[0];
        ASSERT_LT(area.fila0, area.fila1);
        EXPECT_THROW(escribirCelda(*hoja, area.fila1, area.columna0, 1.0), excel::ErrorExcel);
        EXPECT_THROW(vaciar(*hoja, {area.fila0, area.fila0, area.columna0, area.columna0}),
                     excel::ErrorExcel);
        vaciar(*hoja, area);
        EXPECT_NO_THROW(escribirCelda(*hoja, area.fila1, area.columna0, 1.0));
        return;
    }
    FAIL() << "the sample holds no array formula";
}

}  // namespace
}  // namespace bn::xls::prueba
