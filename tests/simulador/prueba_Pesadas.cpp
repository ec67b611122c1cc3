// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

#include "tools/simulador/Pesadas.h"
#include "tools/simulador/Tramas.h"

namespace bn::simulador {
namespace {

constexpr int kMuchas = 3000;

// Each character as its class: '9' a digit, anything else as it is; the blanks in front taken off.
std::string forma(std::string campo) {
    campo.erase(0, campo.find_first_not_of(' '));
    for (char& c : campo) {
        if (c >= '0' && c <= '9') c = '9';
    }
    return campo;
}

bool esEntero(const std::string& campo) {
    return forma(campo) == std::string(forma(campo).size(), '9');
}

bool esPeso(const std::string& campo) {
    std::string resto = forma(campo);
    if (resto.front() == '-') resto.erase(0, 1);
    const std::size_t punto = resto.find('.');
    const std::string decimales = punto == std::string::npos ? "9" : resto.substr(punto + 1);
    const std::string enteros = resto.substr(0, punto);
    return !enteros.empty() && esEntero(enteros) && (decimales == "9" || decimales == "99");
}

TEST(Pesadas, SameSeedGivesTheSameWeighings) {
    Pesadas una(7, Forma::kLarga);
    Pesadas otra(7, Forma::kLarga);
    Pesadas distinta(8, Forma::kLarga);
    bool iguales = true;
    for (int i = 0; i < 100; ++i) {
        const std::string datos = una.siguiente();
        EXPECT_EQ(datos, otra.siguiente());
        iguales = iguales && datos == distinta.siguiente();
    }
    EXPECT_FALSE(iguales);
}

TEST(Pesadas, GeneratorGivesThePublishedSequence) {
    // SplitMix64 from 0 starts with E220A8397B1DCDAF, 6E789E6AA1B965F4, 06C45D188009454F.
    Azar azar(0);
    EXPECT_EQ(azar.menorQue(0x10000), 0xE220U);
    EXPECT_EQ(azar.menorQue(0x10000), 0x6E78U);
    EXPECT_EQ(azar.menorQue(0x10000), 0x06C4U);
}

TEST(Pesadas, EveryFieldOfEveryWeighingHasItsPlaceAndItsForm) {
    Pesadas larga(1, Forma::kLarga);
    for (int i = 0; i < kMuchas; ++i) {
        const std::string datos = larga.siguiente();
        ASSERT_EQ(datos.size(), 74U);
        EXPECT_TRUE(esEntero(datos.substr(9, 7))) << datos;
        for (const std::size_t donde : {17U, 26U, 35U}) {
            EXPECT_TRUE(esEntero(datos.substr(donde, 8))) << datos;
        }
        EXPECT_TRUE(esPeso(datos.substr(44, 7))) << datos;
        EXPECT_TRUE(esPeso(datos.substr(52, 7))) << datos;
        EXPECT_EQ(forma(datos.substr(60, 14)), "99/99/99 99:99") << datos;
        for (const std::size_t donde : {8U, 16U, 25U, 34U, 43U, 51U, 59U}) {
            EXPECT_EQ(datos[donde], ' ') << datos;
        }
    }
}

TEST(Pesadas, ShortFormEndsWithTheNetWeight) {
    Pesadas corta(1, Forma::kCorta);
    for (int i = 0; i < 100; ++i) EXPECT_EQ(corta.siguiente().size(), 59U);
}

TEST(Pesadas, OddWeighingsComeSometimes) {
    Pesadas pesadas(1, Forma::kLarga);
    int acentos = 0;
    int sinMatricula = 0;
    int sinAlbaran = 0;
    int conDecimales = 0;
    int negativas = 0;
    for (int i = 0; i < kMuchas; ++i) {
        const std::string datos = pesadas.siguiente();
        const std::string matricula = datos.substr(0, 8);
        acentos += std::any_of(matricula.begin(), matricula.end(),
                               [](char c) { return static_cast<unsigned char>(c) > 127; });
        sinMatricula += matricula == std::string(8, ' ');
        sinAlbaran += datos.substr(9, 7) == std::string(7, ' ');
        conDecimales += datos.find('.') != std::string::npos;
        negativas += datos[52] == '-';
    }
    for (const int cuenta : {acentos, sinMatricula, sinAlbaran, conDecimales, negativas}) {
        EXPECT_GT(cuenta, 0);
        EXPECT_LT(cuenta, kMuchas / 2);
    }
}

TEST(Pesadas, NoWeighingHasACheckCharacterThatEndsTheFrameEarly) {
    Pesadas pesadas(3, Forma::kCorta);
    std::set<char> vistos;
    for (int i = 0; i < 20 * kMuchas; ++i) vistos.insert(control(pesadas.siguiente()));
    EXPECT_GT(vistos.size(), 20U);
    EXPECT_EQ(vistos.count('\r'), 0U);
}

}  // namespace
}  // namespace bn::simulador
