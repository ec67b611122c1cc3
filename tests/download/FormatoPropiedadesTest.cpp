// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <string_view>

#include "download/Formato.h"

namespace bn {
namespace {

// Always the same sequence, so that a failure can be repeated.
class Azar {
 public:
    std::size_t hasta(std::size_t limite) { return generador_() % limite; }

    std::string formato() {
        static constexpr std::array<std::string_view, 50> kPiezas = {
            "0",   "#",    ".",      ",",      "%", "E+", "E-", "e+0", "e-#",   ";",
            "\\",  "\"",   "\"ab\"", "$",      "-", "(",  " ",  "c",   "d",     "dd",
            "ddd", "dddd", "ddddd",  "dddddd", "w", "ww", "m",  "mm",  "mmm",   "mmmm",
            "q",   "y",    "yy",     "yyyy",   "h", "hh", "n",  "s",   "ttttt", "AM/PM",
            "a/p", "AMPM", "@",      "&",      "<", ">",  "!",  "/",   ":",     "\xF1"};
        std::string resultado;
        for (std::size_t i = hasta(12); i > 0; --i) resultado += kPiezas[hasta(kPiezas.size())];
        return resultado;
    }

    std::string bytes() {
        std::string resultado;
        for (std::size_t i = hasta(20); i > 0; --i) resultado += static_cast<char>(hasta(256));
        return resultado;
    }

    double numero() {
        switch (hasta(4)) {
            case 0:
                return std::bit_cast<double>(generador_());
            case 1:
                return std::ldexp(static_cast<double>(hasta(1000)), -static_cast<int>(hasta(12)));
            case 2:
                return static_cast<double>(static_cast<int64_t>(hasta(8000000))) - 4000000.0;
            default:
                return static_cast<double>(hasta(100000)) / 1000.0 - 50.0;
        }
    }

    Variante valor() {
        switch (hasta(7)) {
            case 0:
                return std::monostate{};
            case 1:
                return bytes();
            case 2:
                return numero();
            case 3:
                return static_cast<float>(static_cast<double>(hasta(1000000)) / 100 - 5000);
            case 4:
                return static_cast<int32_t>(static_cast<uint32_t>(generador_()));
            case 5:
                return hasta(2) == 0;
            default:
                return FechaOle{numero()};
        }
    }

 private:
    std::mt19937_64 generador_{20240307};
};

TEST(FormatoPropiedades, NoPictureAndNoValueMakeItFailOrGrowWithoutLimit) {
    Azar azar;
    for (int i = 0; i < 200000; ++i) {
        const std::string formato = azar.hasta(8) == 0 ? azar.bytes() : azar.formato();
        const std::string salida = formatear(azar.valor(), formato);
        // 309 digits, their thousands points, and the longest name for each character.
        ASSERT_LE(salida.size(), 500 + 40 * formato.size()) << formato;
    }
}

TEST(FormatoPropiedades, LongPicturesTakeTimeInProportion) {
    for (const std::string pieza : {"0", "#,", "%", "\"", "\\", "E+", "a", ";", "@", "dd", "AM"}) {
        std::string formato;
        while (formato.size() < 200000) formato += pieza;
        EXPECT_LE(formatear(12345.678, formato).size(), 6 * formato.size() + 500) << pieza;
        EXPECT_LE(formatear(FechaOle{45358.7}, "d" + formato).size(), 6 * formato.size());
        EXPECT_LE(formatear(std::string("12AB"), "@" + formato).size(), formato.size() + 10);
    }
    const std::string largo(200000, '7');
    EXPECT_EQ(formatear(largo, "0"), largo);
}

TEST(FormatoPropiedades, WholeNumbersComeBackFromTheirOwnDigits) {
    Azar azar;
    for (int i = 0; i < 20000; ++i) {
        const auto numero = static_cast<int32_t>(azar.hasta(4294967296U) - 2147483648U);
        ASSERT_EQ(formatear(numero, "0"), std::to_string(numero));
        ASSERT_EQ(formatear(static_cast<double>(numero), "0"), std::to_string(numero));
        ASSERT_EQ(formatear(numero, ""), std::to_string(numero));
    }
}

TEST(FormatoPropiedades, ThousandthsRoundToHundredthsAsInWholeArithmetic) {
    for (int64_t milesimas = -20005; milesimas <= 20005; ++milesimas) {
        const int64_t absoluto = milesimas < 0 ? -milesimas : milesimas;
        const int64_t centesimas = (absoluto + 5) / 10;
        std::string esperado = milesimas < 0 && centesimas != 0 ? "-" : "";
        esperado += std::to_string(centesimas / 100) + ',';
        esperado += static_cast<char>('0' + centesimas / 10 % 10);
        esperado += static_cast<char>('0' + centesimas % 10);
        ASSERT_EQ(formatear(static_cast<double>(milesimas) / 1000, "0.00"), esperado);
        ASSERT_EQ(formatear(static_cast<float>(milesimas) / 1000, "0.00"), esperado);
    }
}

TEST(FormatoPropiedades, ConsecutiveDaysAreConsecutiveDates) {
    int dia = 1;
    int mes = 1;
    int anio = 100;
    for (int serie = -657434; serie <= 2958465; ++serie) {
        if (serie % 7 == 0) {
            const int leido =
                std::stoi(formatear(FechaOle{static_cast<double>(serie)}, "yyyymmdd"));
            ASSERT_EQ(leido, anio * 10000 + mes * 100 + dia) << serie;
        }
        const bool bisiesto = anio % 4 == 0 && (anio % 100 != 0 || anio % 400 == 0);
        const std::array<int, 12> largos = {
            31, bisiesto ? 29 : 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
        if (++dia > largos[static_cast<std::size_t>(mes - 1)]) {
            dia = 1;
            if (++mes > 12) {
                mes = 1;
                ++anio;
            }
        }
    }
    EXPECT_EQ(anio, 10000);
}

}  // namespace
}  // namespace bn
