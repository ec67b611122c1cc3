// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "destinations/excel/ObjectModel.h"
#include "destinations/xls/Bytes.h"
#include "destinations/xls/Edicion.h"
#include "destinations/xls/Hojas.h"
#include "tests/destinations/xls/Ayudas.h"

namespace bn::xls::prueba {
namespace {

std::vector<std::string> nombres(Libro& libro) {
    std::vector<std::string> lista;
    for (const auto& hoja : libro.hojas()) lista.push_back(hoja->nombre);
    return lista;
}

TEST(Hojas, AnAddedOneStandsBehindTheOneAskedForAlsoWhenReadAgain) {
    LibroDePrueba l;
    anadirHoja(*l.libro, l.hoja);
    anadirHoja(*l.libro, l.hoja);
    EXPECT_THAT(nombres(*l.libro), testing::ElementsAre("Hoja1", "Hoja3", "Hoja2"));
    const auto leido = Libro::abrir(l.libro->serializar(), 2024);
    EXPECT_THAT(nombres(*leido), testing::ElementsAre("Hoja1", "Hoja3", "Hoja2"));
}

TEST(Hojas, ARenamedOneKeepsItsContents) {
    const auto libro = Libro::abrir(muestra("s5_poi"), 2024);
    renombrarHoja(*libro->hojas()[1], "Ñandú 2024 €");
    const auto leido = Libro::abrir(libro->serializar(), 2024);
    EXPECT_EQ(leido->hojas()[1]->nombre, "Ñandú 2024 €");
    EXPECT_EQ(leerCelda(*leido->hojas()[1], 0, 0), leerCelda(*libro->hojas()[1], 0, 0));
}

TEST(Hojas, ANameThatIsNotAllowedOrTakenIsRefused) {
    LibroDePrueba l;
    anadirHoja(*l.libro, l.hoja);
    const std::string largo(32, 'x');
    for (const std::string nombre : {"", "a/b", "a\\b", "a?b", "a*b", "a[b", "a]b", "a:b", "'a",
                                     "a'", "HOJA2", largo.c_str()}) {
        EXPECT_THROW(renombrarHoja(l.hoja, nombre), excel::ErrorExcel) << nombre;
    }
    EXPECT_NO_THROW(renombrarHoja(l.hoja, "HOJA1"));
    EXPECT_EQ(l.hoja.nombre, "HOJA1");
}

TEST(Hojas, TheLastVisibleOneStays) {
    LibroDePrueba l;
    EXPECT_THROW(borrarHoja(l.hoja), excel::ErrorExcel);
    const auto otra = anadirHoja(*l.libro, l.hoja);
    otra->oculta = true;
    EXPECT_THROW(borrarHoja(l.hoja), excel::ErrorExcel);
}

TEST(Hojas, ADeletedOneTakesItsTraceFromTheGlobals) {
    LibroDePrueba l;
    const auto segunda = anadirHoja(*l.libro, l.hoja);
    const auto tercera = anadirHoja(*l.libro, *segunda);
    escribirCelda(*tercera, 0, 0, std::string("=Hoja1!R1C1+Hoja2!R1C1"));
    borrarHoja(*l.libro->hojas()[0]);
    const auto leido = Libro::abrir(l.libro->serializar(), 2024);
    EXPECT_THAT(nombres(*leido), testing::ElementsAre("Hoja2", "Hoja3"));
    // A reference to a sheet that is gone cannot be put into words; it must not point at another.
    EXPECT_EQ(leerCelda(*leido->hojas()[1], 0, 0), Variante(std::string(kIndescifrable)));
    const auto globales = registrosDe(l.libro->serializar(), 0);
    EXPECT_THAT(datosDe(globales, id::kTabId), testing::ElementsAre("02 00 03 00"));
    EXPECT_THAT(datosDe(globales, id::kSupBook), testing::ElementsAre("02 00 01 04"));
    EXPECT_THAT(datosDe(globales, id::kExternSheet),
                testing::ElementsAre("02 00 00 00 FF FF FF FF 00 00 00 00 00 00"));
    const Vista ventana(globales[buscarRegistro(globales, id::kWindow1)].datos);
    EXPECT_EQ(ventana.u16(10), 0U);
    const auto hoja = registrosDe(l.libro->serializar(), 1);
    EXPECT_EQ(Vista(hoja[buscarRegistro(hoja, id::kWindow2)].datos).u16(0) & 0x600, 0x600);
}

TEST(Hojas, OneAddedInTheMiddleMovesTheReferencesToTheOthers) {
    LibroDePrueba l;
    const auto segunda = anadirHoja(*l.libro, l.hoja);
    escribirCelda(l.hoja, 0, 0, std::string("=Hoja2!R1C1"));
    anadirHoja(*l.libro, l.hoja);
    EXPECT_EQ(leerCelda(l.hoja, 0, 0), Variante(std::string("=Hoja2!R1C1")));
}

TEST(Hojas, LocalNamesOfADeletedOneKeepTheirPlace) {
    const auto libro = Libro::abrir(muestra("s5_poi"), 2024);
    const uint16_t cuantos = libro->nombres().cuantos();
    uint16_t hoja = 0;
    for (uint16_t i = 1; i <= cuantos; ++i) hoja = std::max(hoja, libro->nombres().leer(i).hoja);
    ASSERT_GT(hoja, 0);
    borrarHoja(*libro->hojas()[hoja - 1U]);
    const auto leido = Libro::abrir(libro->serializar(), 2024);
    EXPECT_EQ(leido->nombres().cuantos(), cuantos);
    for (uint16_t i = 1; i <= cuantos; ++i) {
        EXPECT_LE(leido->nombres().leer(i).hoja, leido->hojas().size());
    }
}

}  // namespace
}  // namespace bn::xls::prueba
