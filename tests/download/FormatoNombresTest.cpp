// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <array>
#include <string>

#include "download/Formato.h"

namespace bn {
namespace {

const FechaOle kTarde{45358 + 17.0 / 24 + 4.0 / 1440};  // 7 March 2024, 17:04

TEST(FormatoNombres, GeneralNumberHasNoThousands) {
    EXPECT_EQ(formatear(1234567.5, "General Number"), "1234567,5");
    EXPECT_EQ(formatear(-0.25, "General Number"), "-0,25");
    EXPECT_EQ(formatear(true, "General Number"), "-1");
    EXPECT_EQ(formatear(FechaOle{45358.5}, "General Number"), "45358,5");
}

TEST(FormatoNombres, CurrencyIsInEuros) {
    EXPECT_EQ(formatear(1234.5, "Currency"), "1.234,50 \x80");
    EXPECT_EQ(formatear(-1234.5, "Currency"), "-1.234,50 \x80");
    EXPECT_EQ(formatear(0.0, "Currency"), "0,00 \x80");
}

TEST(FormatoNombres, FixedStandardPercentAndScientificHaveTwoDecimals) {
    EXPECT_EQ(formatear(1234.567, "Fixed"), "1234,57");
    EXPECT_EQ(formatear(0.5, "Fixed"), "0,50");
    EXPECT_EQ(formatear(1234.567, "Standard"), "1.234,57");
    EXPECT_EQ(formatear(-0.5, "Standard"), "-0,50");
    EXPECT_EQ(formatear(0.1234, "Percent"), "12,34%");
    EXPECT_EQ(formatear(123456.0, "Scientific"), "1,23E+05");
}

TEST(FormatoNombres, BooleanNamesAreSpanish) {
    EXPECT_EQ(formatear(true, "Yes/No"), "S\xED");
    EXPECT_EQ(formatear(false, "Yes/No"), "No");
    EXPECT_EQ(formatear(true, "True/False"), "Verdadero");
    EXPECT_EQ(formatear(false, "True/False"), "Falso");
    EXPECT_EQ(formatear(true, "On/Off"), "Activado");
    EXPECT_EQ(formatear(false, "On/Off"), "Desactivado");
    EXPECT_EQ(formatear(0.4, "Yes/No"), "S\xED");
    EXPECT_EQ(formatear(-7.0, "Yes/No"), "S\xED");
    EXPECT_EQ(formatear(int32_t{0}, "On/Off"), "Desactivado");
}

TEST(FormatoNombres, DatesPutTheDayBeforeTheMonth) {
    EXPECT_EQ(formatear(kTarde, "General Date"), "07/03/2024 17:04:00");
    EXPECT_EQ(formatear(kTarde, "Long Date"), "jueves, 7 de marzo de 2024");
    EXPECT_EQ(formatear(kTarde, "Medium Date"), "07-mar-24");
    EXPECT_EQ(formatear(kTarde, "Short Date"), "07/03/2024");
    EXPECT_EQ(formatear(FechaOle{45358}, "General Date"), "07/03/2024");
}

TEST(FormatoNombres, TimesAreLongMediumAndShort) {
    EXPECT_EQ(formatear(kTarde, "Long Time"), "17:04:00");
    EXPECT_EQ(formatear(kTarde, "Medium Time"), "05:04 PM");
    EXPECT_EQ(formatear(kTarde, "Short Time"), "17:04");
}

TEST(FormatoNombres, AreReadInAnyLetterCase) {
    EXPECT_EQ(formatear(5.0, "FIXED"), "5,00");
    EXPECT_EQ(formatear(5.0, "general number"), "5");
    EXPECT_EQ(formatear(kTarde, "short date"), "07/03/2024");
}

TEST(FormatoNombres, TakeTextsLikeThePicturesTheyStandFor) {
    EXPECT_EQ(formatear(std::string("1234,5"), "Standard"), "1.234,50");
    EXPECT_EQ(formatear(std::string("1234ABC"), "Standard"), "1234ABC");
    EXPECT_EQ(formatear(std::string("45358"), "Short Date"), "07/03/2024");
    EXPECT_EQ(formatear(std::string("00123,50"), "General Number"), "123,5");
}

TEST(FormatoNombres, ShowNothingForNothing) {
    const std::array<const char*, 5> nombres = {"General Number", "Currency", "Yes/No",
                                                "General Date", "Short Time"};
    for (const char* nombre : nombres) EXPECT_EQ(formatear(std::monostate{}, nombre), "");
}

}  // namespace
}  // namespace bn
