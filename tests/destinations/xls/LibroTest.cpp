// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "destinations/excel/ObjectModel.h"
#include "destinations/xls/Bytes.h"
#include "destinations/xls/Edicion.h"
#include "destinations/xls/Hojas.h"
#include "destinations/xls/Libro.h"
#include "tests/destinations/xls/Ayudas.h"

namespace bn::xls::prueba {
namespace {

using testing::HasSubstr;

std::string motivo(const std::string& fichero) {
    try {
        Libro::abrir(fichero, 2024);
    } catch (const excel::ErrorExcel& error) {
        return error.what();
    }
    return "opened";
}

class MuestraLegible : public testing::TestWithParam<std::string> {};

TEST_P(MuestraLegible, SavedUntouchedKeepsItsWorkbookStreamByteForByte) {
    const std::string original = muestra(GetParam());
    const std::string copia = Libro::abrir(original, 2024)->serializar();
    EXPECT_EQ(flujoDe(copia), flujoDe(original));
}

TEST_P(MuestraLegible, TheSameEditGivesTheSameBytes) {
    const auto editar = [&] {
        const auto libro = Libro::abrir(muestra(GetParam()), 2024);
        escribirCelda(*libro->hojas()[0], 900, 1, std::string("texto"));
        escribirCelda(*libro->hojas()[0], 900, 2, FechaOle{45000.5});
        return libro->serializar();
    };
    EXPECT_EQ(editar(), editar());
}

// Only the touched sheet's table, index and size, the string table and positions may differ.
TEST_P(MuestraLegible, AnEditKeepsEveryOtherRecord) {
    const std::string original = muestra(GetParam());
    const auto libro = Libro::abrir(original, 2024);
    escribirCelda(*libro->hojas()[0], 900, 1, std::string("texto nuevo"));
    const std::string copia = libro->serializar();
    const auto cambia = [](uint16_t numero) {
        constexpr uint16_t kCambian[] = {
            id::kBoundSheet, id::kSst,      id::kContinue,   id::kExtSst,   id::kIndex,
            id::kDbCell,     id::kRow,      id::kDimensions, id::kUncalced, id::kMulRk,
            id::kRk,         id::kMulBlank, id::kBlank,      id::kLabelSst};
        return std::find(std::begin(kCambian), std::end(kCambian), numero) != std::end(kCambian);
    };
    const size_t cuantos = subflujos(flujoDe(original)).size();
    ASSERT_EQ(subflujos(flujoDe(copia)).size(), cuantos);
    for (size_t i = 0; i < cuantos; ++i) {
        std::vector<std::string> antes;
        std::vector<std::string> despues;
        for (const Registro& r : registrosDe(original, i)) {
            if (!cambia(r.id)) antes.push_back(std::to_string(r.id) + " " + hex(r.datos));
        }
        for (const Registro& r : registrosDe(copia, i)) {
            if (!cambia(r.id)) despues.push_back(std::to_string(r.id) + " " + hex(r.datos));
        }
        // Records that a writer put between cells stand behind them now.
        std::sort(antes.begin(), antes.end());
        std::sort(despues.begin(), despues.end());
        EXPECT_EQ(antes, despues) << "substream " << i;
    }
}

INSTANTIATE_TEST_SUITE_P(Todas, MuestraLegible, testing::ValuesIn(muestrasLegibles()));

TEST(Libro, ASheetBuiltAnewFromItsCellsIsTheOneThatWasRead) {
    for (const std::string nombre : {"s3_lo_chart"}) {
        const std::string original = muestra(nombre);
        const auto libro = Libro::abrir(original, 2024);
        for (const auto& hoja : libro->hojas()) {
            if (!hoja->esDeCalculo()) continue;
            EXPECT_EQ(hoja->celdas->serializar(hoja->posicion, false), hoja->original)
                << nombre << " " << hoja->nombre;
        }
    }
}

TEST(Libro, AnUntouchedSheetsIndexMovesWithIt) {
    const std::string original = muestra("s4_gnumeric");
    const auto libro = Libro::abrir(original, 2024);
    escribirCelda(*libro->hojas()[0], 0, 0, std::string(3000, 'x'));
    const std::string flujo = flujoDe(libro->serializar());
    const auto bordes = subflujos(flujo);
    for (size_t i = 1; i < bordes.size(); ++i) {
        const auto registros = registrosDe(libro->serializar(), i);
        const size_t indice = buscarRegistro(registros, id::kIndex);
        ASSERT_LT(indice, registros.size());
        const Vista datos(registros[indice].datos);
        for (size_t pos = 16; pos + 4 <= datos.size(); pos += 4) {
            EXPECT_EQ(Vista(flujo).u16(datos.u32(pos)), id::kDbCell);
        }
    }
}

TEST(Libro, FormulasAreMarkedAsPendingOnceACellChanges) {
    const auto libro = Libro::abrir(muestra("s3_lo_chart"), 2024);
    escribirCelda(*libro->hojas()[0], 300, 0, 1.0);
    const std::string copia = libro->serializar();
    size_t marcadas = 0;
    for (size_t i = 0; i < libro->hojas().size(); ++i) {
        const bool formulas = libro->hojas()[i]->celdas->tieneFormulas();
        const auto registros = registrosDe(copia, i + 1);
        EXPECT_EQ(registros[1].id == id::kUncalced, formulas);
        marcadas += formulas ? 1 : 0;
    }
    EXPECT_GT(marcadas, 0U);
}

TEST(Libro, AnEditedWorkbookDropsItsTwinForOlderVersions) {
    const auto libro = Libro::abrir(muestra("s4b_gnumeric_dual"), 2024);
    EXPECT_TRUE(Compuesto::abrir(libro->serializar()).buscar("Book"));
    escribirCelda(*libro->hojas()[0], 0, 0, 1.0);
    EXPECT_FALSE(Compuesto::abrir(libro->serializar()).buscar("Book"));
}

TEST(Libro, AWorkbookOf1904CountsItsDatesFromThere) {
    const auto libro = Libro::abrir(muestra("s6_handmade"), 2024);
    ASSERT_TRUE(libro->fechas1904());
    escribirCelda(*libro->hojas()[0], 500, 0, FechaOle{45000});
    EXPECT_EQ(leerCelda(*libro->hojas()[0], 500, 0), Variante(45000.0 - 1462));
}

TEST(Libro, SaysWhyItRefusesAFile) {
    EXPECT_THAT(motivo(""), HasSubstr("vacío"));
    EXPECT_THAT(motivo("PK\x03\x04xlsx"), HasSubstr("XLSX"));
    EXPECT_THAT(motivo("\xEF\xBB\xBF <html>"), HasSubstr("HTML"));
    EXPECT_THAT(motivo("a;b;c"), HasSubstr("no es un libro de Excel"));
    EXPECT_THAT(motivo(deHex("0908 1000 0000")), HasSubstr("anterior a Excel 97"));
    EXPECT_THAT(motivo(muestra("s4c_biff5_book")), HasSubstr("anterior a Excel 97"));
    EXPECT_THAT(motivo(muestra("s5b_encrypted")), HasSubstr("protegido con contraseña"));
    EXPECT_THAT(motivo(muestra("s5_poi").substr(0, 20000)), HasSubstr("dañado"));
    EXPECT_THAT(motivo(Compuesto::nuevo().serializar()), HasSubstr("dañado"));
}

TEST(Libro, AStreamOfAnOlderVersionUnderTheNewNameIsRefused) {
    Compuesto compuesto = Compuesto::nuevo();
    compuesto.flujo(1, deHex("0908 0800 0005 0500 0000 0000 0A00 0000"));
    EXPECT_THAT(motivo(compuesto.serializar()), HasSubstr("anterior a Excel 97"));
}

TEST(Libro, ANewWorkbookOpensAgain) {
    const auto libro = Libro::nuevo(2024);
    const auto leido = Libro::abrir(libro->serializar(), 2024);
    ASSERT_EQ(leido->hojas().size(), 1U);
    EXPECT_EQ(leido->hojas()[0]->nombre, "Hoja1");
    EXPECT_GE(flujoDe(libro->serializar()).size(), 4096U);
}

TEST(Libro, SavingTwiceGivesTheSameFile) {
    LibroDePrueba l;
    escribirCelda(l.hoja, 0, 0, std::string("uno"));
    const std::string primero = l.libro->serializar();
    EXPECT_EQ(l.libro->serializar(), primero);
    escribirCelda(l.hoja, 0, 1, std::string("dos"));
    EXPECT_NE(l.libro->serializar(), primero);
}

}  // namespace
}  // namespace bn::xls::prueba
