// SPDX-License-Identifier: MIT
// Every record the engine writes, byte for byte.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "destinations/xls/Bytes.h"
#include "destinations/xls/Disposicion.h"
#include "destinations/xls/Edicion.h"
#include "destinations/xls/Hojas.h"
#include "tests/destinations/xls/Ayudas.h"

namespace bn::xls::prueba {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(RegistrosEscritos, ANumberThatFitsTheShortFormIsAnRk) {
    LibroDePrueba l;
    escribirCelda(l.hoja, 0, 0, 5.0);
    EXPECT_THAT(datosDe(l.deHoja(), id::kRk), ElementsAre("00 00 00 00 0F 00 16 00 00 00"));
}

TEST(RegistrosEscritos, ANumberThatDoesNotFitTheShortFormIsANumber) {
    LibroDePrueba l;
    escribirCelda(l.hoja, 2, 1, 0.1234567);
    std::string esperado = "02 00 01 00 0F 00 ";
    std::string doble;
    ponerDoble(doble, 0.1234567);
    EXPECT_THAT(datosDe(l.deHoja(), id::kNumber), ElementsAre(esperado + hex(doble)));
}

TEST(RegistrosEscritos, MinusZeroKeepsItsSignAsANumber) {
    LibroDePrueba l;
    escribirCelda(l.hoja, 0, 0, -0.0);
    EXPECT_THAT(datosDe(l.deHoja(), id::kNumber),
                ElementsAre("00 00 00 00 0F 00 00 00 00 00 00 00 00 80"));
}

TEST(RegistrosEscritos, ShortNumbersSideBySideShareOneMulRk) {
    LibroDePrueba l;
    escribirCelda(l.hoja, 1, 3, int32_t{1});
    escribirCelda(l.hoja, 1, 4, int32_t{-2});
    EXPECT_THAT(datosDe(l.deHoja(), id::kMulRk),
                ElementsAre("01 00 03 00 0F 00 06 00 00 00 0F 00 FA FF FF FF 04 00"));
    EXPECT_THAT(datosDe(l.deHoja(), id::kRk), IsEmpty());
}

TEST(RegistrosEscritos, AnEmptyCellWithAFormatIsABlank) {
    LibroDePrueba l;
    alinear(l.hoja, {4, 4, 2, 2}, Alineacion::kIzquierda);
    EXPECT_THAT(datosDe(l.deHoja(), id::kBlank), ElementsAre("04 00 02 00 10 00"));
}

TEST(RegistrosEscritos, EmptyCellsSideBySideShareOneMulBlank) {
    LibroDePrueba l;
    alinear(l.hoja, {4, 4, 2, 4}, Alineacion::kDerecha);
    EXPECT_THAT(datosDe(l.deHoja(), id::kMulBlank),
                ElementsAre("04 00 02 00 10 00 10 00 10 00 04 00"));
}

TEST(RegistrosEscritos, ATextIsALabelSstIntoTheStringTable) {
    LibroDePrueba l;
    escribirCelda(l.hoja, 0, 0, std::string("AB"));
    escribirCelda(l.hoja, 1, 0, std::string("Ž"));
    escribirCelda(l.hoja, 2, 0, std::string("AB"));
    EXPECT_THAT(datosDe(l.deHoja(), id::kLabelSst),
                ElementsAre("00 00 00 00 0F 00 00 00 00 00", "01 00 00 00 0F 00 01 00 00 00",
                            "02 00 00 00 0F 00 00 00 00 00"));
    EXPECT_THAT(datosDe(l.globales(), id::kSst),
                ElementsAre("03 00 00 00 02 00 00 00 02 00 00 41 42 01 00 01 7D 01"));
}

TEST(RegistrosEscritos, TheStringTableIsFollowedByItsIndex) {
    LibroDePrueba l;
    escribirCelda(l.hoja, 0, 0, std::string("AB"));
    const std::string flujo = flujoDe(l.libro->serializar());
    const auto globales = l.globales();
    const size_t sst = buscarRegistro(globales, id::kSst);
    ASSERT_EQ(globales[sst + 1].id, id::kExtSst);
    const Vista indice(globales[sst + 1].datos);
    EXPECT_EQ(indice.size(), 10U);
    EXPECT_EQ(indice.u16(0), 8U);
    EXPECT_EQ(indice.u16(6), 12U);
    EXPECT_EQ(flujo.substr(indice.u32(2), 5), std::string("\x02\0\0AB", 5));
}

TEST(RegistrosEscritos, ALogicalValueAndAnErrorAreBoolErr) {
    LibroDePrueba l;
    escribirCelda(l.hoja, 0, 0, true);
    escribirCelda(l.hoja, 1, 0, false);
    escribirCelda(l.hoja, 2, 0, std::string("#N/A"));
    EXPECT_THAT(datosDe(l.deHoja(), id::kBoolErr),
                ElementsAre("00 00 00 00 0F 00 01 00", "01 00 00 00 0F 00 00 00",
                            "02 00 00 00 0F 00 2A 01"));
}

TEST(RegistrosEscritos, AFormulaIsAFormulaStillToBeCalculated) {
    LibroDePrueba l;
    escribirCelda(l.hoja, 0, 1, std::string("=1+2"));
    EXPECT_THAT(datosDe(l.deHoja(), id::kFormula),
                ElementsAre("00 00 01 00 0F 00 00 00 00 00 00 00 00 00 01 00 00 00 00 00 "
                            "07 00 1E 01 00 1E 02 00 03"));
    const auto registros = l.deHoja();
    EXPECT_EQ(registros[1].id, id::kUncalced);
    EXPECT_EQ(hex(registros[1].datos), "00 00");
}

TEST(RegistrosEscritos, ARowWithCellsHasARowOfTheDefaultHeight) {
    LibroDePrueba l;
    escribirCelda(l.hoja, 6, 2, 1.0);
    escribirCelda(l.hoja, 6, 5, 1.0);
    EXPECT_THAT(datosDe(l.deHoja(), id::kRow),
                ElementsAre("06 00 02 00 06 00 FF 00 00 00 00 00 00 01 0F 00"));
}

TEST(RegistrosEscritos, DimensionsEncloseTheCells) {
    LibroDePrueba l;
    escribirCelda(l.hoja, 6, 2, 1.0);
    escribirCelda(l.hoja, 9, 5, 1.0);
    EXPECT_THAT(datosDe(l.deHoja(), id::kDimensions),
                ElementsAre("06 00 00 00 0A 00 00 00 02 00 06 00 00 00"));
}

TEST(RegistrosEscritos, AColumnsWidthIsInParts256OfTheDigit0) {
    LibroDePrueba l;
    anchoDeColumnas(l.hoja, {0, kFilas - 1, 3, 3}, 12.5);
    EXPECT_THAT(datosDe(l.deHoja(), id::kColInfo),
                ElementsAre("03 00 03 00 80 0C 0F 00 02 00 00 00"));
}

TEST(RegistrosEscritos, AColumnOfNoWidthIsHidden) {
    LibroDePrueba l;
    anchoDeColumnas(l.hoja, {0, kFilas - 1, 0, 0}, 0);
    EXPECT_THAT(datosDe(l.deHoja(), id::kColInfo),
                ElementsAre("00 00 00 00 00 00 0F 00 03 00 00 00"));
}

TEST(RegistrosEscritos, PageBreaksAreSortedAndSpanTheSheet) {
    LibroDePrueba l;
    saltoDePagina(l.hoja, 40);
    saltoDePagina(l.hoja, 11);
    saltoDePagina(l.hoja, 40);
    EXPECT_THAT(datosDe(l.deHoja(), id::kHorizontalPageBreaks),
                ElementsAre("02 00 0B 00 00 00 FF 00 28 00 00 00 FF 00"));
}

TEST(RegistrosEscritos, AnOwnNumberFormatIsAFormatAndAnXf) {
    LibroDePrueba l;
    formatoNumerico(l.hoja, {0, 0, 0, 0}, "0.000");
    EXPECT_THAT(datosDe(l.globales(), id::kFormat), ElementsAre("A4 00 05 00 00 30 2E 30 30 30"));
    const auto xfs = datosDe(l.globales(), id::kXf);
    ASSERT_EQ(xfs.size(), 17U);
    EXPECT_EQ(xfs[16], "00 00 A4 00 01 00 20 00 00 04 00 00 00 00 00 00 00 00 C0 20");
}

TEST(RegistrosEscritos, AnAlignmentIsAnXf) {
    LibroDePrueba l;
    alinear(l.hoja, {0, 0, 0, 0}, Alineacion::kDerecha);
    const auto xfs = datosDe(l.globales(), id::kXf);
    ASSERT_EQ(xfs.size(), 17U);
    EXPECT_EQ(xfs[16], "00 00 00 00 01 00 23 00 00 10 00 00 00 00 00 00 00 00 C0 20");
}

TEST(RegistrosEscritos, ANameOfANumberIsAName) {
    LibroDePrueba l;
    l.libro->tocar();
    l.libro->nombres().agregar("bnU", {0x1E, 0x19, 0x00});
    EXPECT_THAT(datosDe(l.globales(), id::kName),
                ElementsAre("00 00 00 03 03 00 00 00 00 00 00 00 00 00 00 62 6E 55 1E 19 00"));
}

TEST(RegistrosEscritos, AReferenceToASheetMakesSupBookAndExternSheet) {
    LibroDePrueba l;
    l.libro->tocar();
    EXPECT_EQ(l.libro->librosExternos().xti(0, 0, 1), 0);
    EXPECT_EQ(l.libro->librosExternos().xti(0, 0, 1), 0);
    EXPECT_THAT(datosDe(l.globales(), id::kSupBook), ElementsAre("01 00 01 04"));
    EXPECT_THAT(datosDe(l.globales(), id::kExternSheet), ElementsAre("01 00 00 00 00 00 00 00"));
}

TEST(RegistrosEscritos, AnAddedSheetIsABoundSheetAndATabId) {
    LibroDePrueba l;
    const auto nueva = anadirHoja(*l.libro, l.hoja);
    renombrarHoja(*nueva, "Año");
    const std::string fichero = l.libro->serializar();
    const auto hojas = datosDe(registrosDe(fichero, 0), id::kBoundSheet);
    ASSERT_EQ(hojas.size(), 2U);
    EXPECT_EQ(hojas[1].substr(12), "00 00 03 00 41 F1 6F");
    EXPECT_EQ(Vista(deHex(hojas[1])).u32(0), subflujos(flujoDe(fichero))[2].inicio);
    EXPECT_THAT(datosDe(registrosDe(fichero, 0), id::kTabId), ElementsAre("01 00 02 00"));
}

TEST(RegistrosEscritos, CopiedMergedCellsAreAMergedCells) {
    const auto libro = Libro::abrir(muestra("s5_poi"), 2024);
    Hoja& hoja = *libro->hojas()[0];
    hoja.celdas->cola().insert(hoja.celdas->cola().end() - 1,
                               Registro{id::kMergedCells, deHex("0100 0000 0100 0200 0400")});
    copiar(hoja, {0, 1, 0, 255}, hoja, 500, 0);
    EXPECT_THAT(datosDe(registrosDe(libro->serializar(), 1), id::kMergedCells),
                testing::Contains("01 00 F4 01 F5 01 02 00 04 00"));
}

}  // namespace
}  // namespace bn::xls::prueba
