// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <limits>

#include "download/Formato.h"

namespace bn {
namespace {

TEST(FormatoNumerico, FormatsTheDefaultFieldsOfALine) {
    EXPECT_EQ(formatear(int32_t{123}, "0000000"), "0000123");
    EXPECT_EQ(formatear(int32_t{7}, "00000000"), "00000007");
    EXPECT_EQ(formatear(12.5f, "######0"), "13");
    EXPECT_EQ(formatear(12340.0f, "######0"), "12340");
    EXPECT_EQ(formatear(0.0f, "######0"), "0");
    EXPECT_EQ(formatear(int32_t{0}, "0000000"), "0000000");
}

TEST(FormatoNumerico, ShowsNothingForAZeroWithNumberSignsOnly) {
    EXPECT_EQ(formatear(int32_t{0}, "#####"), "");
    EXPECT_EQ(formatear(int32_t{0}, "##"), "");
    EXPECT_EQ(formatear(int32_t{30}, "#####"), "30");
    EXPECT_EQ(formatear(0.4, "#"), "");
}

TEST(FormatoNumerico, NeverCutsDigitsLeftOfTheDecimalPoint) {
    EXPECT_EQ(formatear(int32_t{12345678}, "0000000"), "12345678");
    EXPECT_EQ(formatear(int32_t{12345}, "#"), "12345");
    EXPECT_EQ(formatear(1234.5, ".00"), "1234,50");
    EXPECT_EQ(formatear(std::numeric_limits<int32_t>::min(), "0"), "-2147483648");
    EXPECT_EQ(formatear(std::numeric_limits<int32_t>::max(), "#,##0"), "2.147.483.647");
}

TEST(FormatoNumerico, RoundsHalvesAwayFromZeroOnTheDecimalValue) {
    EXPECT_EQ(formatear(2.675, "0.00"), "2,68");
    EXPECT_EQ(formatear(1.005, "0.00"), "1,01");
    EXPECT_EQ(formatear(0.5, "0"), "1");
    EXPECT_EQ(formatear(1.5, "0"), "2");
    EXPECT_EQ(formatear(2.5, "0"), "3");
    EXPECT_EQ(formatear(-2.5, "0"), "-3");
    EXPECT_EQ(formatear(0.49999, "0"), "0");
    EXPECT_EQ(formatear(12.35f, "0.0"), "12,4");
    EXPECT_EQ(formatear(0.07, "0.0"), "0,1");
    EXPECT_EQ(formatear(0.04, "0.0"), "0,0");
    EXPECT_EQ(formatear(0.005, "0.00"), "0,01");
}

TEST(FormatoNumerico, CarriesARoundingThroughEveryNine) {
    EXPECT_EQ(formatear(9.995, "0.00"), "10,00");
    EXPECT_EQ(formatear(999.5, "#,##0"), "1.000");
    EXPECT_EQ(formatear(0.999, "0.00"), "1,00");
    EXPECT_EQ(formatear(99.96, "0.0#"), "99,96");
    EXPECT_EQ(formatear(99.999, "0.0#"), "100,0");
}

TEST(FormatoNumerico, NeverShowsAMinusZero) {
    EXPECT_EQ(formatear(-0.4, "0"), "0");
    EXPECT_EQ(formatear(-0.0, "0"), "0");
    EXPECT_EQ(formatear(-0.004, "0.00"), "0,00");
    EXPECT_EQ(formatear(-0.4, "#"), "");
    EXPECT_EQ(formatear(-0.4, "0;(0)"), "0");
    EXPECT_EQ(formatear(-0.4, "0;-0"), "0");
    EXPECT_EQ(formatear(-0.0f, "0.0"), "0,0");
    EXPECT_EQ(formatear(-0.0, ""), "0");
}

TEST(FormatoNumerico, FillsTheDecimalPlaces) {
    EXPECT_EQ(formatear(5.0, "0.00"), "5,00");
    EXPECT_EQ(formatear(5.25, "0.0###"), "5,25");
    EXPECT_EQ(formatear(5.0, "0.0###"), "5,0");
    EXPECT_EQ(formatear(5.0, "0.#0"), "5,00");
    EXPECT_EQ(formatear(0.0625, "0.0000"), "0,0625");
    EXPECT_EQ(formatear(334.9, "###0.00"), "334,90");
}

TEST(FormatoNumerico, KeepsTheDecimalSeparatorThatThePictureHas) {
    EXPECT_EQ(formatear(5.0, "#.##"), "5,");
    EXPECT_EQ(formatear(0.5, "#.##"), ",5");
    EXPECT_EQ(formatear(0.0, "#.##"), ",");
    EXPECT_EQ(formatear(7.2, "0."), "7,");
}

TEST(FormatoNumerico, ShowsZerosFromTheFirstZeroPlaceOn) {
    EXPECT_EQ(formatear(int32_t{5}, "0#"), "05");
    EXPECT_EQ(formatear(int32_t{5}, "#0#"), "05");
    EXPECT_EQ(formatear(int32_t{5}, "##0"), "5");
}

TEST(FormatoNumerico, GroupsThousandsWithAPoint) {
    EXPECT_EQ(formatear(5459.4, "##,##0.00"), "5.459,40");
    EXPECT_EQ(formatear(1234567.0, "#,##0"), "1.234.567");
    EXPECT_EQ(formatear(1234567.0, "#,#"), "1.234.567");
    EXPECT_EQ(formatear(999.0, "#,##0"), "999");
    EXPECT_EQ(formatear(-1234.0, "#,##0"), "-1.234");
    EXPECT_EQ(formatear(int32_t{5}, "000,000"), "000.005");
    EXPECT_EQ(formatear(1234567.0, "0,0.0"), "1.234.567,0");
    EXPECT_EQ(formatear(1234567.0, "#,,##0"), "1.234.567");
    EXPECT_EQ(formatear(123456.0, "#,##0\\ \\k\\g"), "123.456 kg");
}

TEST(FormatoNumerico, ScalesByThousandsWithCommasBeforeTheDecimalPoint) {
    EXPECT_EQ(formatear(100000000.0, "##0,,"), "100");
    EXPECT_EQ(formatear(999.0, "##0,,"), "0");
    EXPECT_EQ(formatear(1900000.0, "0,,.0"), "1,9");
    EXPECT_EQ(formatear(1900000.0, "0,,"), "2");
    EXPECT_EQ(formatear(12345678.0, "#,##0,"), "12.346");
    EXPECT_EQ(formatear(1500.0, "0.0,"), "1500,0");
    EXPECT_EQ(formatear(-499.0, "0,"), "0");
    EXPECT_EQ(formatear(-500.0, "0,"), "-1");
}

TEST(FormatoNumerico, MultipliesByAHundredWithPercent) {
    EXPECT_EQ(formatear(5.0, "0.00%"), "500,00%");
    EXPECT_EQ(formatear(0.125, "0%"), "13%");
    EXPECT_EQ(formatear(0.29, "0.0%"), "29,0%");
    EXPECT_EQ(formatear(0.5, "%0"), "%50");
    EXPECT_EQ(formatear(-0.5, "0%"), "-50%");
    EXPECT_EQ(formatear(0.5, "0\\%"), "1%");
}

TEST(FormatoNumerico, WritesScientificNotation) {
    EXPECT_EQ(formatear(12345.0, "0.00E+00"), "1,23E+04");
    EXPECT_EQ(formatear(1000.0, "0.00E+00"), "1,00E+03");
    EXPECT_EQ(formatear(0.001, "0.00E+00"), "1,00E-03");
    EXPECT_EQ(formatear(0.00012345, "0.00E-00"), "1,23E-04");
    EXPECT_EQ(formatear(12345.0, "0.00E-00"), "1,23E04");
    EXPECT_EQ(formatear(12345.0, "0.0e+0"), "1,2e+4");
    EXPECT_EQ(formatear(12345.0, "0.0e-0"), "1,2e4");
    EXPECT_EQ(formatear(12345.0, "0.00E+###"), "1,23E+4");
    EXPECT_EQ(formatear(12345.0, "0.00E+000"), "1,23E+004");
    EXPECT_EQ(formatear(9.96, "0.0E+0"), "1,0E+1");
    EXPECT_EQ(formatear(12345.0, "##0.0E+0"), "123,5E+2");
    EXPECT_EQ(formatear(-12345.0, "0.00E+00"), "-1,23E+04");
    EXPECT_EQ(formatear(0.0, "0.00E+00"), "0,00E+00");
    EXPECT_EQ(formatear(1e300, "0.0E+00"), "1,0E+300");
}

TEST(FormatoNumerico, TakesAnEWithoutDigitPlacesAsALetter) {
    EXPECT_EQ(formatear(5.0, "0E"), "5E");
    EXPECT_EQ(formatear(5.0, "0 E+"), "5 E+");
    EXPECT_EQ(formatear(5.0, "0E+x"), "5E+x");
}

TEST(FormatoNumerico, ShowsLiteralsWhereTheyStand) {
    EXPECT_EQ(formatear(5.0, "$0"), "$5");
    EXPECT_EQ(formatear(5.0, "+0 (-)"), "+5 (-)");
    EXPECT_EQ(formatear(-5.0, "$0"), "-$5");
    EXPECT_EQ(formatear(int32_t{123456}, "000-000"), "123-456");
    EXPECT_EQ(formatear(int32_t{1234567}, "000-000"), "1234-567");
    EXPECT_EQ(formatear(int32_t{19}, "\\####\\#"), "#19#");
    EXPECT_EQ(formatear(int32_t{19}, "\"##\"###\"##\""), "##19##");
    EXPECT_EQ(formatear(5.0, "0\" kg\""), "5 kg");
    EXPECT_EQ(formatear(5.0, "0 kg"), "5 kg");
    EXPECT_EQ(formatear(5.0, "0\\\\"), "5\\");
    EXPECT_EQ(formatear(1230.0, "00:00"), "12:30");
    EXPECT_EQ(formatear(1203.0, "00/00"), "12/03");
    EXPECT_EQ(formatear(5.0, "0 \x80"), "5 \x80");
}

TEST(FormatoNumerico, SurvivesUnfinishedQuotesAndBackslashes) {
    EXPECT_EQ(formatear(5.0, "0\"kg"), "5kg");
    EXPECT_EQ(formatear(5.0, "0\\"), "5\\");
    EXPECT_EQ(formatear(5.0, "0\""), "5");
}

TEST(FormatoNumerico, TheSecondSectionIsForNegatives) {
    EXPECT_EQ(formatear(1234.0, "$#,##0;($#,##0)"), "$1.234");
    EXPECT_EQ(formatear(-1234.0, "$#,##0;($#,##0)"), "($1.234)");
    EXPECT_EQ(formatear(0.0, "$#,##0;($#,##0)"), "$0");
    EXPECT_EQ(formatear(-5.0, "0;0"), "5");
}

TEST(FormatoNumerico, TheThirdSectionIsForZeros) {
    const std::string formato = "0.0;-0.0;\\z\\e\\r\\o";
    EXPECT_EQ(formatear(1.0, formato), "1,0");
    EXPECT_EQ(formatear(-1.0, formato), "-1,0");
    EXPECT_EQ(formatear(0.0, formato), "zero");
    EXPECT_EQ(formatear(-0.01, formato), "zero");
}

TEST(FormatoNumerico, AMissingSectionGivesWayToTheFirst) {
    const std::string formato = "$#,##0;;\\Z\\e\\r\\o";
    EXPECT_EQ(formatear(5.0, formato), "$5");
    EXPECT_EQ(formatear(-5.0, formato), "-$5");
    EXPECT_EQ(formatear(0.0, formato), "Zero");
    EXPECT_EQ(formatear(0.0, "0.0;(0.0);"), "0,0");
    EXPECT_EQ(formatear(-5.0, "0;"), "-5");
    EXPECT_EQ(formatear(5.5, ";(0)"), "5,5");
}

TEST(FormatoNumerico, TheFourthSectionIsForNothing) {
    EXPECT_EQ(formatear(std::monostate{}, "0;-0;0;\\N\\a\\d\\a"), "Nada");
    EXPECT_EQ(formatear(std::monostate{}, "0;-0;0;\"sin dato\""), "sin dato");
    EXPECT_EQ(formatear(std::monostate{}, "0;-0;0"), "");
    EXPECT_EQ(formatear(std::monostate{}, "0"), "");
    EXPECT_EQ(formatear(std::monostate{}, ""), "");
    EXPECT_EQ(formatear(7.0, "0;-0;0;\"sin dato\""), "7");
}

TEST(FormatoNumerico, ASemicolonInQuotesPartsNothing) {
    EXPECT_EQ(formatear(-5.0, "0\";\";(0)"), "(5)");
    EXPECT_EQ(formatear(5.0, "0\\;;(0)"), "5;");
}

TEST(FormatoNumerico, DropsSectionsBeyondTheFourth) {
    EXPECT_EQ(formatear(5.0, "0;1;2;3;4;5"), "5");
    EXPECT_EQ(formatear(std::monostate{}, "0;\"b\";\"c\";\"d\";\"e\""), "d");
}

TEST(FormatoNumerico, AnEmptyPictureGivesThePlainNumber) {
    EXPECT_EQ(formatear(1234.5, ""), "1234,5");
    EXPECT_EQ(formatear(12.35f, ""), "12,35");
    EXPECT_EQ(formatear(int32_t{-120}, ""), "-120");
    EXPECT_EQ(formatear(0.25, ""), "0,25");
    EXPECT_EQ(formatear(0.001, ""), "0,001");
    EXPECT_EQ(formatear(100000000000000.0, ""), "100000000000000");
    EXPECT_EQ(formatear(1e15, ""), "1E+15");
    EXPECT_EQ(formatear(1.5e-7, ""), "1,5E-07");
}

TEST(FormatoNumerico, ABooleanIsMinusOneOrZero) {
    EXPECT_EQ(formatear(true, "0"), "-1");
    EXPECT_EQ(formatear(false, "0"), "0");
    EXPECT_EQ(formatear(true, "\"alta\";\"baja\";\"nada\""), "baja");
    EXPECT_EQ(formatear(true, ""), "Verdadero");
    EXPECT_EQ(formatear(false, ""), "Falso");
}

TEST(FormatoNumerico, ADateIsItsSerialNumber) {
    EXPECT_EQ(formatear(FechaOle{45358.5}, "0.00"), "45358,50");
    EXPECT_EQ(formatear(FechaOle{45358.5}, "#,##0"), "45.359");
}

TEST(FormatoNumerico, ATextThatReadsAsANumberIsFormattedAsOne) {
    EXPECT_EQ(formatear(std::string("123"), "0000000"), "0000123");
    EXPECT_EQ(formatear(std::string(" -12,5 "), "0.00"), "-12,50");
    EXPECT_EQ(formatear(std::string("12.5"), "0.00"), "12,50");
    EXPECT_EQ(formatear(std::string("+7"), "00"), "07");
    EXPECT_EQ(formatear(std::string("0,05"), "0.0"), "0,1");
    EXPECT_EQ(formatear(std::string("000"), "0;-0;\\c\\e\\r\\o"), "cero");
    EXPECT_EQ(formatear(std::string("12345678901234567890123"), "#,##0"),
              "12.345.678.901.234.567.890.123");
}

TEST(FormatoNumerico, ATextThatIsNoNumberStaysAsItIs) {
    for (const char* texto : {"1234ABC", "", " ", "-", ",", "1,2,3", "1 2", "1e5", "0x1F", "--1"}) {
        EXPECT_EQ(formatear(std::string(texto), "0000000"), texto);
    }
}

TEST(FormatoNumerico, NumbersThatCannotBeWrittenInDigitsDoNotFail) {
    constexpr double kInfinito = std::numeric_limits<double>::infinity();
    EXPECT_EQ(formatear(kInfinito, "0.00"), "INF");
    EXPECT_EQ(formatear(-kInfinito, "0.00"), "-INF");
    EXPECT_EQ(formatear(std::numeric_limits<double>::quiet_NaN(), "0"), "NAN");
    EXPECT_EQ(formatear(std::numeric_limits<float>::infinity(), ""), "INF");
}

TEST(FormatoNumerico, VeryLargeAndVerySmallNumbersKeepTheirDigits) {
    EXPECT_EQ(formatear(1e22, "0"), "1" + std::string(22, '0'));
    EXPECT_EQ(formatear(std::numeric_limits<double>::max(), "0").size(), 309U);
    EXPECT_EQ(formatear(std::numeric_limits<double>::denorm_min(), "0.00"), "0,00");
    EXPECT_EQ(formatear(std::numeric_limits<float>::max(), "0").size(), 39U);
}

}  // namespace
}  // namespace bn
