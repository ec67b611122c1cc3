// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <random>

#include "destinations/xls/formula/Descompilador.h"
#include "destinations/xls/formula/Desplazamiento.h"
#include "destinations/xls/formula/Funciones.h"
#include "destinations/xls/formula/Tokens.h"
#include "tests/destinations/formula/LibroDePrueba.h"

namespace bn::xls {
namespace {

Rgce conRelleno(Rgce principio) {
    principio.resize(600, 0);
    return principio;
}

TEST(Tokens, EveryTokenHasTheLengthOfTheFormat) {
    const std::pair<uint8_t, size_t> longitudes[] = {
        {0x01, 5}, {0x02, 5}, {0x03, 1}, {0x08, 1}, {0x0E, 1}, {0x0F, 1},
        {0x10, 1}, {0x11, 1}, {0x14, 1}, {0x15, 1}, {0x16, 1}, {0x18, 6},
        {0x19, 4}, {0x1C, 2}, {0x1D, 2}, {0x1E, 3}, {0x1F, 9}};
    for (const auto& [id, n] : longitudes) EXPECT_EQ(longitudDeToken(conRelleno({id})), n) << +id;
    const std::pair<uint8_t, size_t> conClase[] = {
        {0x20, 8}, {0x21, 3}, {0x22, 4}, {0x23, 5}, {0x24, 5},  {0x25, 9}, {0x26, 7},
        {0x27, 7}, {0x28, 7}, {0x29, 3}, {0x2A, 5}, {0x2B, 9},  {0x2C, 5}, {0x2D, 9},
        {0x2E, 3}, {0x2F, 3}, {0x39, 7}, {0x3A, 7}, {0x3B, 11}, {0x3C, 7}, {0x3D, 11}};
    for (const auto& [id, n] : conClase) {
        for (const int clase : {0, 0x20, 0x40}) {
            const auto token = static_cast<uint8_t>(id + clase);
            EXPECT_EQ(longitudDeToken(conRelleno({token})), n) << +token;
        }
    }
}

TEST(Tokens, TextsAndChoicesAreAsLongAsTheySay) {
    EXPECT_EQ(longitudDeToken(conRelleno({0x17, 4, 0})), 7U);
    EXPECT_EQ(longitudDeToken(conRelleno({0x17, 4, 1})), 11U);
    EXPECT_EQ(longitudDeToken(conRelleno({0x17, 255, 1})), 513U);
    EXPECT_EQ(longitudDeToken(conRelleno({0x19, 0x04, 3, 0})), 12U);
    EXPECT_EQ(longitudDeToken(conRelleno({0x19, 0x02, 3, 0})), 4U);
}

TEST(Tokens, UnknownOrCutTokensHaveNoLength) {
    for (const int id : {0x00, 0x1A, 0x1B, 0x30, 0x38, 0x3E, 0x3F, 0x58, 0x80, 0xA4, 0xFF}) {
        EXPECT_EQ(longitudDeToken(conRelleno({static_cast<uint8_t>(id)})), 0U) << id;
    }
    EXPECT_EQ(longitudDeToken({}), 0U);
    EXPECT_EQ(longitudDeToken(Rgce{0x44, 0, 0, 0}), 0U);
    EXPECT_EQ(longitudDeToken(Rgce{0x17}), 0U);
    EXPECT_EQ(longitudDeToken(Rgce{0x17, 2, 0, 'a'}), 0U);
    EXPECT_EQ(longitudDeToken(Rgce{0x19, 0x04, 0xFF, 0xFF}), 0U);
    EXPECT_EQ(longitudDeToken(Rgce{0x19, 0x04}), 0U);
}

TEST(Tokens, AWalkSeesEveryTokenOnceAndTellsWhetherItCameToTheEnd) {
    const Rgce rgce{0x1E, 1, 0, 0x17, 1, 0, 'a', 0x08};
    std::vector<size_t> lugares;
    const auto anotar = [&](size_t pos, std::span<const uint8_t>) {
        lugares.push_back(pos);
        return true;
    };
    EXPECT_TRUE(recorrerTokens(rgce, anotar));
    EXPECT_EQ(lugares, (std::vector<size_t>{0, 3, 7}));
    EXPECT_FALSE(recorrerTokens(Rgce{0x1E, 1}, anotar));
    EXPECT_FALSE(recorrerTokens(rgce, [](size_t pos, auto) { return pos != 3; }));
}

TEST(Tokens, AFormulaThatHandsOverNamesItsCell) {
    EXPECT_EQ(anclaCompartida(Rgce{0x01, 0x34, 0x12, 7, 0}), (PosicionCelda{0x1234, 7}));
    EXPECT_EQ(anclaCompartida(Rgce{0x02, 1, 0, 7, 0}), (PosicionCelda{1, 7}));
    EXPECT_EQ(anclaCompartida(Rgce{0x01, 1, 0, 0, 1}), std::nullopt);
    EXPECT_EQ(anclaCompartida(Rgce{0x1E, 1, 0}), std::nullopt);
    EXPECT_EQ(referirAAncla({0x1234, 7}), (Rgce{0x01, 0x34, 0x12, 7, 0}));
}

TEST(Tokens, FunctionsAreFoundByNameAndByNumber) {
    const std::pair<const char*, uint16_t> funciones[] = {
        {"COUNT", 0},   {"IF", 1},        {"SUM", 4},       {"AVERAGE", 5}, {"MIN", 6},
        {"MAX", 7},     {"ABS", 24},      {"INT", 25},      {"ROUND", 27},  {"MID", 31},
        {"LEN", 32},    {"AND", 36},      {"OR", 37},       {"NOT", 38},    {"DATE", 65},
        {"NOW", 74},    {"VLOOKUP", 102}, {"LEFT", 115},    {"RIGHT", 116}, {"COUNTA", 169},
        {"TODAY", 221}, {"SUMIF", 345},   {"COUNTIF", 346}, {"VARA", 367}};
    for (const auto& [nombre, numero] : funciones) {
        ASSERT_NE(buscarFuncion(nombre), nullptr) << nombre;
        EXPECT_EQ(buscarFuncion(nombre)->numero, numero);
        ASSERT_NE(buscarFuncion(numero), nullptr) << nombre;
        EXPECT_EQ(buscarFuncion(numero)->nombre, nombre);
    }
    EXPECT_EQ(buscarFuncion("SUMA"), nullptr);
    EXPECT_EQ(buscarFuncion(255), nullptr);
    EXPECT_EQ(buscarFuncion(9999), nullptr);
}

/// Bytes that look like tokens more often than chance would have it.
Rgce azar(std::mt19937& generador) {
    std::uniform_int_distribution<int> byte(0, 255), id(0x01, 0x7F), largo(0, 60), moneda(0, 3);
    Rgce rgce;
    for (int i = largo(generador); i > 0; --i) {
        rgce.push_back(static_cast<uint8_t>(moneda(generador) == 0   ? id(generador)
                                            : moneda(generador) == 0 ? byte(generador)
                                                                     : moneda(generador)));
    }
    return rgce;
}

TEST(Tokens, RandomBytesNeverCrashAnyReader) {
    std::mt19937 generador(20261121);
    LibroDePrueba libro;
    libro.xtis = {{"Hoja1", "Hoja1"}};
    size_t leidas = 0;
    for (int i = 0; i < 100000; ++i) {
        const Rgce rgce = azar(generador);
        const auto texto = descompilar(rgce, {5, 5}, libro);
        if (texto) {
            ++leidas;
            EXPECT_EQ(texto->at(0), '=');
        }
        descompilarNombre(rgce, libro);
        descompartir(rgce, {65535, 255});
        aplicarDesplazamiento(rgce, INT32_MAX, INT32_MIN);
        anclaCompartida(rgce);
    }
    EXPECT_GT(leidas, 0U);
}

TEST(Tokens, EveryPrefixOfEveryByteIsReadSafely) {
    LibroDePrueba libro;
    for (int id = 0; id < 256; ++id) {
        for (size_t n = 1; n < 14; ++n) {
            Rgce rgce(n, 0xFF);
            rgce[0] = static_cast<uint8_t>(id);
            EXPECT_LE(longitudDeToken(rgce), n);
            descompilar(rgce, {0, 0}, libro);
        }
    }
}

}  // namespace
}  // namespace bn::xls
