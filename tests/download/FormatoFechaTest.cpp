// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>

#include "download/Formato.h"

namespace bn {
namespace {

// Serials counted by hand from 30 December 1899.
constexpr double kSieteDeMarzoDe2024 = 45358;  // a Thursday
constexpr double kHora = 1.0 / 24;
constexpr double kSegundo = 1.0 / 86400;

FechaOle alas(double dia, int hora, int minuto, int segundo) {
    return {dia + hora * kHora + minuto * 60 * kSegundo + segundo * kSegundo};
}

const FechaOle kMomento = alas(kSieteDeMarzoDe2024, 17, 4, 9);

TEST(FormatoFecha, FormatsTheDefaultDateOfALine) {
    EXPECT_EQ(formatear(kMomento, "dd/mm/yyyy hh:nn"), "07/03/2024 17:04");
    EXPECT_EQ(formatear(FechaOle{0}, "dd/mm/yyyy hh:nn"), "30/12/1899 00:00");
}

TEST(FormatoFecha, KnowsEveryDayCode) {
    EXPECT_EQ(formatear(kMomento, "d"), "7");
    EXPECT_EQ(formatear(kMomento, "dd"), "07");
    EXPECT_EQ(formatear(kMomento, "ddd"), "jue");
    EXPECT_EQ(formatear(kMomento, "dddd"), "jueves");
    EXPECT_EQ(formatear(kMomento, "ddddd"), "07/03/2024");
    EXPECT_EQ(formatear(kMomento, "dddddd"), "jueves, 7 de marzo de 2024");
    EXPECT_EQ(formatear(kMomento, "ddddddd"), "jueves, 7 de marzo de 20247");
}

TEST(FormatoFecha, KnowsEveryMonthAndYearCode) {
    EXPECT_EQ(formatear(kMomento, "m"), "3");
    EXPECT_EQ(formatear(kMomento, "mm"), "03");
    EXPECT_EQ(formatear(kMomento, "mmm"), "mar");
    EXPECT_EQ(formatear(kMomento, "mmmm"), "marzo");
    EXPECT_EQ(formatear(kMomento, "q"), "1");
    EXPECT_EQ(formatear(kMomento, "y"), "67");
    EXPECT_EQ(formatear(kMomento, "yy"), "24");
    EXPECT_EQ(formatear(kMomento, "yyy"), "2467");
    EXPECT_EQ(formatear(kMomento, "yyyy"), "2024");
    EXPECT_EQ(formatear(FechaOle{37257}, "yy"), "02");
}

TEST(FormatoFecha, KnowsEveryTimeCode) {
    EXPECT_EQ(formatear(kMomento, "h"), "17");
    EXPECT_EQ(formatear(kMomento, "hh"), "17");
    EXPECT_EQ(formatear(kMomento, "n"), "4");
    EXPECT_EQ(formatear(kMomento, "nn"), "04");
    EXPECT_EQ(formatear(kMomento, "s"), "9");
    EXPECT_EQ(formatear(kMomento, "ss"), "09");
    EXPECT_EQ(formatear(kMomento, "ttttt"), "17:04:09");
    EXPECT_EQ(formatear(kMomento, "h:n:s"), "17:4:9");
    EXPECT_EQ(formatear(alas(0, 8, 5, 0), "h hh"), "8 08");
}

TEST(FormatoFecha, SpellsEveryMonthInSpanish) {
    const std::array<const char*, 12> nombres = {"enero",      "febrero", "marzo",     "abril",
                                                 "mayo",       "junio",   "julio",     "agosto",
                                                 "septiembre", "octubre", "noviembre", "diciembre"};
    for (int mes = 0; mes < 12; ++mes) {
        const FechaOle fecha{45292 + 15 + mes * 30.4375};
        const std::string nombre = nombres[static_cast<std::size_t>(mes)];
        EXPECT_EQ(formatear(fecha, "mmmm"), nombre);
        EXPECT_EQ(formatear(fecha, "mmm"), nombre.substr(0, 3));
        EXPECT_EQ(formatear(fecha, "q"), std::to_string(mes / 3 + 1));
    }
}

TEST(FormatoFecha, SpellsEveryDayInSpanishWindows1252) {
    const std::array<const char*, 7> nombres = {"domingo",
                                                "lunes",
                                                "martes",
                                                "mi\xE9rcoles",
                                                "jueves",
                                                "viernes",
                                                "s\xE1"
                                                "bado"};
    for (int dia = 0; dia < 7; ++dia) {
        const FechaOle fecha{45354.0 + dia};  // 3 March 2024, a Sunday
        const std::string nombre = nombres[static_cast<std::size_t>(dia)];
        EXPECT_EQ(formatear(fecha, "dddd"), nombre);
        EXPECT_EQ(formatear(fecha, "ddd"), nombre.substr(0, 3));
        EXPECT_EQ(formatear(fecha, "w"), std::to_string(dia + 1));
    }
}

TEST(FormatoFecha, TheFirstWeekHoldsTheFirstOfJanuary) {
    EXPECT_EQ(formatear(FechaOle{45292}, "ww"), "1");   // Monday 1 January 2024
    EXPECT_EQ(formatear(FechaOle{45297}, "ww"), "1");   // Saturday 6
    EXPECT_EQ(formatear(FechaOle{45298}, "ww"), "2");   // Sunday 7
    EXPECT_EQ(formatear(FechaOle{45657}, "ww"), "53");  // 31 December 2024
    EXPECT_EQ(formatear(FechaOle{44562}, "ww"), "1");   // Saturday 1 January 2022
    EXPECT_EQ(formatear(FechaOle{44563}, "ww"), "2");   // Sunday 2
    EXPECT_EQ(formatear(FechaOle{36526}, "ww"), "1");   // Saturday 1 January 2000, a leap year
    EXPECT_EQ(formatear(FechaOle{36891}, "ww"), "54");  // Sunday 31 December 2000
}

TEST(FormatoFecha, CountsTheDaysOfTheYear) {
    EXPECT_EQ(formatear(FechaOle{45292}, "y"), "1");
    EXPECT_EQ(formatear(FechaOle{45657}, "y"), "366");
    EXPECT_EQ(formatear(FechaOle{45291}, "y"), "365");
}

TEST(FormatoFecha, AnMAfterAnHourIsMinutes) {
    EXPECT_EQ(formatear(kMomento, "hh:mm"), "17:04");
    EXPECT_EQ(formatear(kMomento, "h:m"), "17:4");
    EXPECT_EQ(formatear(kMomento, "hhmm"), "1704");
    EXPECT_EQ(formatear(kMomento, "hh \"h\" mm"), "17 h 04");
    EXPECT_EQ(formatear(kMomento, "dd/mm/yyyy hh:mm:ss"), "07/03/2024 17:04:09");
    EXPECT_EQ(formatear(kMomento, "hh:mm mm"), "17:04 03");
    EXPECT_EQ(formatear(kMomento, "hh mmm"), "17 mar");
    EXPECT_EQ(formatear(kMomento, "hh dd mm"), "17 07 03");
    EXPECT_EQ(formatear(kMomento, "mm:ss"), "03:09");
}

TEST(FormatoFecha, HalfDayMarksSetTheTwelveHourClock) {
    EXPECT_EQ(formatear(kMomento, "hh:mm:ss am/pm"), "05:04:09 pm");
    EXPECT_EQ(formatear(kMomento, "hh:mm:ss AM/PM"), "05:04:09 PM");
    EXPECT_EQ(formatear(kMomento, "h:nn A/P"), "5:04 P");
    EXPECT_EQ(formatear(kMomento, "h:nn a/p"), "5:04 p");
    EXPECT_EQ(formatear(kMomento, "h:nn AMPM"), "5:04 PM");
    EXPECT_EQ(formatear(kMomento, "AM/PM h"), "PM 5");
    EXPECT_EQ(formatear(alas(0, 0, 30, 0), "h:nn AM/PM"), "12:30 AM");
    EXPECT_EQ(formatear(alas(0, 11, 59, 0), "h:nn AM/PM"), "11:59 AM");
    EXPECT_EQ(formatear(alas(0, 12, 0, 0), "h:nn AM/PM"), "12:00 PM");
    EXPECT_EQ(formatear(alas(0, 23, 0, 0), "h ampm"), "11 PM");
    EXPECT_EQ(formatear(kMomento, "hh \"a/p\""), "17 a/p");
}

TEST(FormatoFecha, TheGeneralDateShowsOnlyWhatThereIs) {
    EXPECT_EQ(formatear(kMomento, "c"), "07/03/2024 17:04:09");
    EXPECT_EQ(formatear(FechaOle{kSieteDeMarzoDe2024}, "c"), "07/03/2024");
    EXPECT_EQ(formatear(alas(0, 8, 30, 0), "c"), "08:30:00");
    EXPECT_EQ(formatear(FechaOle{0}, "c"), "00:00:00");
    EXPECT_EQ(formatear(kMomento, ""), "07/03/2024 17:04:09");
    EXPECT_EQ(formatear(FechaOle{kSieteDeMarzoDe2024}, ""), "07/03/2024");
    EXPECT_EQ(formatear(alas(0, 8, 30, 0), ""), "08:30:00");
}

TEST(FormatoFecha, CodesAreReadInAnyLetterCase) {
    EXPECT_EQ(formatear(kMomento, "DD/MM/YYYY HH:NN:SS"), "07/03/2024 17:04:09");
    EXPECT_EQ(formatear(kMomento, "Dddd Mmmm"), "jueves marzo");
    EXPECT_EQ(formatear(kMomento, "TTTTT"), "17:04:09");
}

TEST(FormatoFecha, WhatIsNoCodeStandsForItself) {
    EXPECT_EQ(formatear(kMomento, "d-m-yy"), "7-3-24");
    EXPECT_EQ(formatear(kMomento, "d.m.yy"), "7.3.24");
    EXPECT_EQ(formatear(kMomento, "d \"de\" mmmm"), "7 de marzo");
    EXPECT_EQ(formatear(kMomento, "d \\d\\e mmmm"), "7 de marzo");
    EXPECT_EQ(formatear(kMomento, "yyyy-mm-dd\\Thh:nn:ss"), "2024-03-07T17:04:09");
    EXPECT_EQ(formatear(kMomento, "dd#0%@"), "07#0%@");
    EXPECT_EQ(formatear(kMomento, "hh tttt"), "17 tttt");
    EXPECT_EQ(formatear(kMomento, "hh a"), "17 a");
}

TEST(FormatoFecha, RoundsToWholeSecondsOnceAndCarriesIntoTheNextDay) {
    EXPECT_EQ(formatear(FechaOle{0.999999}, "dd/mm/yyyy hh:nn:ss"), "31/12/1899 00:00:00");
    EXPECT_EQ(formatear(FechaOle{45291.9999999}, "dd/mm/yyyy hh:nn:ss"), "01/01/2024 00:00:00");
    EXPECT_EQ(formatear(FechaOle{45358 + 59.6 * kSegundo}, "hh:nn"), "00:01");
    EXPECT_EQ(formatear(FechaOle{45358 + 59.4 * kSegundo}, "hh:nn:ss"), "00:00:59");
    EXPECT_EQ(formatear(FechaOle{45358.0000001}, "c"), "07/03/2024");
}

TEST(FormatoFecha, EverySecondOfADayComesBackWhole) {
    for (int segundo = 0; segundo < 86400; segundo += 61) {
        const int hora = segundo / 3600;
        const int minuto = segundo / 60 % 60;
        std::array<char, 16> esperado{};
        std::snprintf(esperado.data(), esperado.size(), "%02d:%02d:%02d", hora, minuto,
                      segundo % 60);
        ASSERT_EQ(formatear(alas(kSieteDeMarzoDe2024, hora, minuto, segundo % 60), "hh:nn:ss"),
                  esperado.data());
    }
}

TEST(FormatoFecha, BeforeDayZeroTheFractionIsStillTheTimeOfDay) {
    EXPECT_EQ(formatear(FechaOle{-1.25}, "dd/mm/yyyy hh:nn"), "29/12/1899 06:00");
    EXPECT_EQ(formatear(FechaOle{-1}, "dddd"), "viernes");
    EXPECT_EQ(formatear(FechaOle{-1.999999}, "dd/mm/yyyy hh:nn"), "30/12/1899 00:00");
}

TEST(FormatoFecha, TheYears100To9999AreDatesAndOthersPlainNumbers) {
    EXPECT_EQ(formatear(FechaOle{-657434}, "dd/mm/yyyy"), "01/01/0100");
    EXPECT_EQ(formatear(FechaOle{2958465}, "dd/mm/yyyy"), "31/12/9999");
    EXPECT_EQ(formatear(FechaOle{-657435}, "dd/mm/yyyy"), "-657435");
    EXPECT_EQ(formatear(FechaOle{2958466}, "dd/mm/yyyy"), "2958466");
    EXPECT_EQ(formatear(FechaOle{2958465.9999999}, "dd/mm/yyyy"), "2958465,9999999");
    EXPECT_EQ(formatear(FechaOle{1e300}, "c"), "1E+300");
    EXPECT_EQ(formatear(FechaOle{std::nan("")}, "dd"), "NAN");
    EXPECT_EQ(formatear(FechaOle{std::numeric_limits<double>::infinity()}, ""), "INF");
}

TEST(FormatoFecha, LeapYearsFollowTheCentury) {
    EXPECT_EQ(formatear(FechaOle{60}, "dd/mm/yyyy"), "28/02/1900");
    EXPECT_EQ(formatear(FechaOle{61}, "dd/mm/yyyy"), "01/03/1900");
    EXPECT_EQ(formatear(FechaOle{36585}, "dd/mm/yyyy"), "29/02/2000");
}

TEST(FormatoFecha, ANumberWithADatePictureIsASerial) {
    EXPECT_EQ(formatear(45358.5, "dd/mm/yyyy hh:nn"), "07/03/2024 12:00");
    EXPECT_EQ(formatear(int32_t{45358}, "dd/mm/yyyy"), "07/03/2024");
    EXPECT_EQ(formatear(0.25f, "hh:nn"), "06:00");
    EXPECT_EQ(formatear(true, "dd/mm/yyyy"), "29/12/1899");
    EXPECT_EQ(formatear(std::string("45358,5"), "dd/mm/yyyy hh:nn"), "07/03/2024 12:00");
}

TEST(FormatoFecha, ATextThatIsNoNumberAndNothingPassADatePictureBy) {
    EXPECT_EQ(formatear(std::string("1234ABC"), "dd/mm/yyyy"), "1234ABC");
    EXPECT_EQ(formatear(std::string(400, '9'), "dd/mm/yyyy"), "INF");
    EXPECT_EQ(formatear(std::monostate{}, "dd/mm/yyyy"), "");
}

}  // namespace
}  // namespace bn
