// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "destinations/excel/ObjectModel.h"
#include "destinations/xls/Bytes.h"
#include "destinations/xls/Compuesto.h"
#include "tests/destinations/xls/Ayudas.h"

namespace bn::xls::prueba {
namespace {

std::string conFlujo(const std::string& contenido) {
    Compuesto compuesto = Compuesto::nuevo();
    compuesto.flujo(compuesto.buscar("Workbook").value(), contenido);
    return compuesto.serializar();
}

std::string relleno(size_t largo) {
    std::string bytes(largo, '\0');
    for (size_t i = 0; i < largo; ++i) bytes[i] = static_cast<char>(i * 7 + i / 251);
    return bytes;
}

class FlujosDeTodosLosTamanos : public testing::TestWithParam<size_t> {};

TEST_P(FlujosDeTodosLosTamanos, ComeBackAsTheyWereWritten) {
    const std::string contenido = relleno(GetParam());
    const std::string fichero = conFlujo(contenido);
    EXPECT_EQ(fichero.size() % 512, 0U);
    const Compuesto leido = Compuesto::abrir(fichero);
    EXPECT_EQ(leido.flujo(leido.buscar("workBOOK").value()), contenido);
    EXPECT_EQ(leido.serializar(), fichero);
}

// The edges of a mini sector, of the mini stream, of a FAT sector, and of the header's FAT list.
INSTANTIATE_TEST_SUITE_P(Bordes, FlujosDeTodosLosTamanos,
                         testing::Values(0, 1, 63, 64, 65, 4095, 4096, 4097, 65024, 65536,
                                         109 * 128 * 512 - 2048, 109 * 128 * 512, 8'900'000,
                                         21'000'000));

TEST(Compuesto, AFileOfMoreThan109FatSectorsListsTheRestInDifatSectors) {
    const std::string fichero = conFlujo(relleno(8'900'000));
    const Vista cabecera(fichero);
    const uint32_t sectoresFat = cabecera.u32(44);
    EXPECT_EQ(sectoresFat, 137U);
    EXPECT_EQ(cabecera.u32(72), 1U);
    const Vista difat(std::string_view(fichero).substr((cabecera.u32(68) + 1U) * 512, 512));
    EXPECT_EQ(difat.u32(0), cabecera.u32(76 + 4 * 108) + 1);
    EXPECT_EQ(difat.u32(508), 0xFFFFFFFEU);
}

TEST(Compuesto, StreamsOfSamplesComeBackByteForByte) {
    for (const std::string& nombre : muestrasLegibles()) {
        const std::string original = muestra(nombre);
        const Compuesto antes = Compuesto::abrir(original);
        const Compuesto despues = Compuesto::abrir(antes.serializar());
        for (size_t i = 0; i < 200; ++i) {
            std::string a;
            std::string b;
            try {
                a = antes.flujo(i);
            } catch (const std::out_of_range&) {
                break;
            }
            b = despues.flujo(i);
            EXPECT_EQ(a, b) << nombre << " stream " << i;
        }
    }
}

TEST(Compuesto, ARemovedStreamIsGoneAndTheOthersAreFound) {
    Compuesto compuesto = Compuesto::abrir(muestra("s4b_gnumeric_dual"));
    compuesto.quitar(compuesto.buscar("Book").value());
    const Compuesto leido = Compuesto::abrir(compuesto.serializar());
    EXPECT_FALSE(leido.buscar("Book"));
    EXPECT_TRUE(leido.buscar("Workbook"));
    EXPECT_TRUE(leido.buscar("\x05SummaryInformation"));
}

TEST(Compuesto, WhatIsNoCompoundFileIsRefused) {
    EXPECT_THROW(Compuesto::abrir(""), excel::ErrorExcel);
    EXPECT_THROW(Compuesto::abrir("PK\x03\x04"), excel::ErrorExcel);
    EXPECT_THROW(Compuesto::abrir(muestra("s5_poi").substr(0, 600)), excel::ErrorExcel);
}

TEST(Compuesto, AChainInACircleIsRefused) {
    std::string fichero = conFlujo(relleno(50'000));
    const Vista vista(fichero);
    const size_t fat = (vista.u32(76) + 1U) * 512;
    cambiar32(fichero, fat + 4 * 20, 5);
    EXPECT_THROW(Compuesto::abrir(fichero), excel::ErrorExcel);
}

TEST(Compuesto, ADirectoryOrFatListInACircleIsRefused) {
    std::string fichero = conFlujo(relleno(50'000));
    const uint32_t directorio = Vista(fichero).u32(48);
    const size_t fat = (Vista(fichero).u32(76) + 1U) * 512;
    cambiar32(fichero, fat + 4 * size_t{directorio}, directorio);
    EXPECT_THROW(Compuesto::abrir(fichero), excel::ErrorExcel);
    std::string largo = conFlujo(relleno(8'900'000));
    const uint32_t difat = Vista(largo).u32(68);
    cambiar32(largo, (difat + 1U) * 512 + 508, difat);
    EXPECT_THROW(Compuesto::abrir(largo), excel::ErrorExcel);
}

TEST(Compuesto, ASizeThatLiesIsRefused) {
    std::string fichero = conFlujo(relleno(5000));
    const size_t directorio = (Vista(fichero).u32(48) + 1U) * 512;
    cambiar32(fichero, directorio + 128 + 120, 0x7FFFFFFF);
    EXPECT_THROW(Compuesto::abrir(fichero), excel::ErrorExcel);
}

}  // namespace
}  // namespace bn::xls::prueba
