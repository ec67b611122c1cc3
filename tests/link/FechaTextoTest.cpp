// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "link/FechaTexto.h"

namespace bn {
namespace {

// 1 January 2003 is day 37622 counted from 30 December 1899.
constexpr double k1Enero2003 = 37622;

TEST(ReconocerFecha, TakesDayMonthYearAndTime) {
    EXPECT_DOUBLE_EQ(reconocerFecha("01/01/03 12:00").value(), k1Enero2003 + 0.5);
    EXPECT_DOUBLE_EQ(reconocerFecha("02/01/03 00:00").value(), k1Enero2003 + 1);
    EXPECT_DOUBLE_EQ(reconocerFecha("01/02/03 06:00").value(), k1Enero2003 + 31 + 0.25);
}

TEST(ReconocerFecha, TakesOneDigitWhereTwoMayStand) {
    EXPECT_DOUBLE_EQ(reconocerFecha("1/1/03 6:0").value(), k1Enero2003 + 0.25);
}

TEST(ReconocerFecha, TakesSeconds) {
    EXPECT_DOUBLE_EQ(reconocerFecha("1/1/03 0:0:43").value(), k1Enero2003 + 43 / 86400.0);
}

TEST(ReconocerFecha, TakesThreeSeparators) {
    for (const char* texto : {"01/01/2003", "01-01-2003", "01.01.2003"}) {
        EXPECT_DOUBLE_EQ(reconocerFecha(texto).value(), k1Enero2003) << texto;
    }
    EXPECT_FALSE(reconocerFecha("01/01-2003"));
}

TEST(ReconocerFecha, TakesATimeAloneAsDayZero) {
    EXPECT_DOUBLE_EQ(reconocerFecha("18:00").value(), 0.75);
    EXPECT_DOUBLE_EQ(reconocerFecha("18:00:00").value(), 0.75);
}

TEST(ReconocerFecha, PutsTwoDigitYearsUpTo29IntoTheNewCentury) {
    EXPECT_DOUBLE_EQ(reconocerFecha("1/1/00").value(), 36526);
    EXPECT_DOUBLE_EQ(reconocerFecha("31/12/29").value(), 47483);
    EXPECT_DOUBLE_EQ(reconocerFecha("1/1/30").value(), 10959);
    EXPECT_DOUBLE_EQ(reconocerFecha("31/12/99").value(), 36525);
}

TEST(ReconocerFecha, TurnsToMonthDayOnlyWhenDayMonthIsImpossible) {
    EXPECT_DOUBLE_EQ(reconocerFecha("05/04/03").value(), k1Enero2003 + 94);   // 5 April
    EXPECT_DOUBLE_EQ(reconocerFecha("04/25/03").value(), k1Enero2003 + 114);  // 25 April
    EXPECT_FALSE(reconocerFecha("25/25/03"));
}

TEST(ReconocerFecha, TakesRealCalendarDatesOnly) {
    EXPECT_TRUE(reconocerFecha("29/02/04"));
    EXPECT_FALSE(reconocerFecha("29/02/03"));
    EXPECT_FALSE(reconocerFecha("31/04/03"));
    EXPECT_FALSE(reconocerFecha("00/01/03"));
    EXPECT_FALSE(reconocerFecha("01/00/03"));
}

TEST(ReconocerFecha, TakesRealTimesOnly) {
    EXPECT_TRUE(reconocerFecha("1/1/03 23:59:59"));
    EXPECT_FALSE(reconocerFecha("1/1/03 24:00"));
    EXPECT_FALSE(reconocerFecha("1/1/03 12:60"));
    EXPECT_FALSE(reconocerFecha("1/1/03 12:00:60"));
}

TEST(ReconocerFecha, IgnoresSurroundingBlanks) {
    EXPECT_DOUBLE_EQ(reconocerFecha("  1/1/03 12:00  ").value(), k1Enero2003 + 0.5);
}

TEST(ReconocerFecha, CountsTheTimeForwardBeforeTheOriginToo) {
    EXPECT_DOUBLE_EQ(reconocerFecha("29/12/1899 06:00").value(), -1.25);
}

TEST(ReconocerFecha, RefusesEverythingElse) {
    const std::vector<std::string> textos = {
        "",
        " ",
        "hoy",
        "1/1",
        "1/1/3",
        "1/1/103",
        "1/1/12345",
        "123/1/03",
        "1/123/03",
        "1/1/03x",
        "1/1/03 12",
        "1/1/03 12",
        "12:",
        "1/1/03 12:00:",
        "1/1/0312:00",
        "1/1/03 a:00",
        "1//03",
        "/1/1/03",
        "1/1/03/04",
        "1/1/03 -1:00",
        "1/1/03 123:00",
        "1:2:3:4",
        "+1/1/03",
    };
    for (const auto& texto : textos) {
        EXPECT_FALSE(reconocerFecha(texto)) << '"' << texto << '"';
    }
}

}  // namespace
}  // namespace bn
