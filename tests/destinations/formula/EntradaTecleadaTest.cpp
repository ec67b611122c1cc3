// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "destinations/xls/EntradaTecleada.h"

namespace bn::xls {
namespace {

Entrada entrada(const std::string& texto) { return interpretarEntrada(texto, false, false, 2003); }

struct Caso {
    const char* texto;
    double valor;
    const char* formato;
};

/// Writes a failure that names the text typed.
void espera(const Caso& caso) {
    SCOPED_TRACE(caso.texto);
    const Entrada e = entrada(caso.texto);
    const auto* numero = std::get_if<EntradaNumero>(&e);
    ASSERT_NE(numero, nullptr) << "read as alternative " << e.index();
    EXPECT_DOUBLE_EQ(numero->valor, caso.valor);
    EXPECT_EQ(numero->formato, caso.formato);
}

void esperaTexto(const std::string& texto) {
    EXPECT_EQ(entrada(texto), Entrada(EntradaTexto{texto, false})) << texto;
}

TEST(EntradaTecleada, NothingTypedEmptiesTheCell) {
    EXPECT_EQ(entrada(""), Entrada(EntradaVacia{}));
    EXPECT_EQ(interpretarEntrada("", true, false, 2003), Entrada(EntradaVacia{}));
}

TEST(EntradaTecleada, NumbersAreRead) {
    for (const Caso& caso : {Caso{"5", 5, ""},
                             {"+5", 5, ""},
                             {"-5", -5, ""},
                             {"- 5", -5, ""},
                             {"(5)", -5, ""},
                             {"0.5", .5, ""},
                             {".5", .5, ""},
                             {"5.", 5, ""},
                             {"-.5", -.5, ""},
                             {"007", 7, ""},
                             {" 5 ", 5, ""},
                             {"5 ", 5, ""},
                             {"(5.25)", -5.25, ""},
                             {"12345678", 12345678, ""},
                             {"0", 0, ""}}) {
        espera(caso);
    }
}

TEST(EntradaTecleada, ThousandsAreReadOnlyWhenGroupedRight) {
    espera({"1,234", 1234, "#,##0"});
    espera({"12,345,678", 12345678, "#,##0"});
    espera({"1,234.5", 1234.5, "#,##0.00"});
    espera({"-1,234", -1234, "#,##0"});
    espera({"(1,234)", -1234, "#,##0"});
    for (const char* texto : {"1,23", "12,34", "1,2345", "1,,234", ",123", "1,234,56", "1234,567",
                              "1.234,5", "1,", "1.5,000", "12,5", "3,14"}) {
        esperaTexto(texto);
    }
}

TEST(EntradaTecleada, ScientificNotationIsRead) {
    espera({"1e5", 100000, "0.00E+00"});
    espera({"1E5", 100000, "0.00E+00"});
    espera({"1.5E-3", 0.0015, "0.00E+00"});
    espera({"-2E+10", -2e10, "0.00E+00"});
    espera({" 1e9", 1e9, "0.00E+00"});
    for (const char* texto : {"1E", "E5", "1E+", "1E5.5", "1E5E5", "1 E5", "1E999", "1E-999"}) {
        esperaTexto(texto);
    }
}

TEST(EntradaTecleada, PercentagesAreDividedByAHundred) {
    espera({"5%", .05, "0%"});
    espera({"5 %", .05, "0%"});
    espera({"%5", .05, "0%"});
    espera({"5.5%", .055, "0.00%"});
    espera({"-5%", -.05, "0%"});
    espera({"(5%)", -.05, "0%"});
    espera({"1,234%", 12.34, "0%"});
    for (const char* texto : {"%", "5%%", "%5%", "5%5"}) esperaTexto(texto);
}

TEST(EntradaTecleada, DollarAmountsAreRead) {
    const char* entero = "$#,##0_);[Red]($#,##0)";
    const char* centavos = "$#,##0.00_);[Red]($#,##0.00)";
    for (const Caso& caso : {Caso{"$5", 5, entero},
                             {"-$5", -5, entero},
                             {"$-5", -5, entero},
                             {"($5)", -5, entero},
                             {"$ 5", 5, entero},
                             {"$1,234", 1234, entero},
                             {"$5.25", 5.25, centavos}}) {
        espera(caso);
    }
    for (const char* texto : {"$", "$$5", "5$", "$5%", "€5", "5 €"}) esperaTexto(texto);
}

TEST(EntradaTecleada, SignsThatAreNoNumbersStayText) {
    for (const char* texto :
         {"+",  "-",   "(",   ")", "()",  "(5",    "5)",   "(-5)",  "((5))", "--5",
          "5-", "+-5", "1 2", ".", "..5", "1.2.3", "0x10", "1_000", " ",     "  "}) {
        esperaTexto(texto);
    }
}

TEST(EntradaTecleada, DigitsPastTheFifteenthCountAsZero) {
    espera({"1234567890123456", 1234567890123450.0, ""});
    espera({"0.12345678901234567", 0.123456789012345, ""});
}

TEST(EntradaTecleada, NumbersBeyondADoubleStayText) {
    esperaTexto("1" + std::string(309, '0'));
    espera({"1E307", 1e307, "0.00E+00"});
}

TEST(EntradaTecleada, PlatesStayTextUnlessTheyReadAsNumbers) {
    for (const char* texto : {"1234ABC", "1234 ABC", "M-1234-AB", "SE1234Z", "R1234BCD", "E56",
                              "1234BCD", "B-1234", "1234 P", "0000BBB", "MAR 1234"}) {
        esperaTexto(texto);
    }
    espera({"1234E56", 1234e56, "0.00E+00"});
    EXPECT_EQ(entrada("'1234E56"), Entrada(EntradaTexto{"1234E56", true}));
}

TEST(EntradaTecleada, FractionsNeedAWholeNumberInFront) {
    espera({"0 1/2", .5, "# ?/?"});
    espera({"1 3/4", 1.75, "# ?/?"});
    espera({"-1 1/2", -1.5, "# ?/?"});
    espera({"2 5/16", 2.3125, "# ?\?/?\?"});
    for (const char* texto : {"0 1/0", "0 /2", "0 1/", "a 1/2", "1 2/3/4"}) esperaTexto(texto);
}

TEST(EntradaTecleada, LogicalAndErrorValuesAreReadInAnyCase) {
    EXPECT_EQ(entrada("TRUE"), Entrada(EntradaLogica{true}));
    EXPECT_EQ(entrada("true"), Entrada(EntradaLogica{true}));
    EXPECT_EQ(entrada("False"), Entrada(EntradaLogica{false}));
    EXPECT_EQ(entrada("#N/A"), Entrada(EntradaError{0x2A}));
    EXPECT_EQ(entrada("#n/a"), Entrada(EntradaError{0x2A}));
    EXPECT_EQ(entrada("#DIV/0!"), Entrada(EntradaError{0x07}));
    EXPECT_EQ(entrada("#NULL!"), Entrada(EntradaError{0x00}));
    EXPECT_EQ(entrada("#VALUE!"), Entrada(EntradaError{0x0F}));
    EXPECT_EQ(entrada("#REF!"), Entrada(EntradaError{0x17}));
    EXPECT_EQ(entrada("#NAME?"), Entrada(EntradaError{0x1D}));
    EXPECT_EQ(entrada("#NUM!"), Entrada(EntradaError{0x24}));
    for (const char* texto : {"TRUEX", "VERDADERO", "#N/A!", "#N/D", "TRU"}) esperaTexto(texto);
}

TEST(EntradaTecleada, AnApostropheKeepsAnyText) {
    EXPECT_EQ(entrada("'5"), Entrada(EntradaTexto{"5", true}));
    EXPECT_EQ(entrada("'=R1C1"), Entrada(EntradaTexto{"=R1C1", true}));
    EXPECT_EQ(entrada("''5"), Entrada(EntradaTexto{"'5", true}));
    EXPECT_EQ(entrada("'"), Entrada(EntradaTexto{"", true}));
}

TEST(EntradaTecleada, ATextCellKeepsAnyText) {
    for (const char* texto : {"5", "1/2", "TRUE", "=R1C1", "#N/A", " 5 "}) {
        EXPECT_EQ(interpretarEntrada(texto, true, false, 2003),
                  Entrada(EntradaTexto{texto, false}));
    }
    EXPECT_EQ(interpretarEntrada("'5", true, false, 2003), Entrada(EntradaTexto{"5", true}));
}

TEST(EntradaTecleada, AnEqualSignBeginsAFormula) {
    EXPECT_EQ(entrada("=R1C1+1"), Entrada(EntradaFormula{"=R1C1+1"}));
    EXPECT_EQ(entrada("=12ABC"), Entrada(EntradaFormula{"=12ABC"}));
    esperaTexto("=");
    esperaTexto(" =1");
    esperaTexto("+R1C1");
}

TEST(EntradaTecleada, DatesAreReadMonthFirst) {
    for (const Caso& caso : {Caso{"1/2/2003", 37623, "m/d/yyyy"},
                             {"1-2-2003", 37623, "m/d/yyyy"},
                             {"01/02/2003", 37623, "m/d/yyyy"},
                             {"1/2/03", 37623, "m/d/yyyy"},
                             {"1-2/03", 37623, "m/d/yyyy"},
                             {"1/2/3", 37623, "m/d/yyyy"},
                             {"2003-01-31", 37652, "m/d/yyyy"},
                             {"2003/1/31", 37652, "m/d/yyyy"},
                             {"12/31/9999", 2958465, "m/d/yyyy"},
                             {"1/2", 37623, "d-mmm"},
                             {"1-2", 37623, "d-mmm"},
                             {"2/29/2004", 38046, "m/d/yyyy"}}) {
        espera(caso);
    }
    for (const char* texto : {"13/1/2003", "31/12/2003", "2/29/2003", "4/31/2003", "0/1/2003",
                              "1/0/2003", "1/2/203", "1/2/20033", "1/1/1899", "1/1/10000", "13/1",
                              "001/2/2003", "1//2", "1/2/", "/1/2", "1.2.2003", "1/2-"}) {
        esperaTexto(texto);
    }
}

TEST(EntradaTecleada, ANumberThatIsNoDayOfTheMonthIsAYear) {
    espera({"1/50", 18264, "mmm-yy"});
    espera({"12-34", 12754, "mmm-yy"});
    espera({"Dec 32", 12024, "mmm-yy"});
    espera({"Jan-03", 37624, "d-mmm"});
    espera({"1/2003", 37622, "mmm-yy"});
    espera({"2003-1", 37622, "mmm-yy"});
    espera({"Jan 2003", 37622, "mmm-yy"});
    espera({"Feb 29", 47150, "mmm-yy"});  // the year 2029
}

TEST(EntradaTecleada, MonthNamesAreRead) {
    for (const Caso& caso : {Caso{"Jan 5, 2003", 37626, "d-mmm-yy"},
                             {"January 5, 2003", 37626, "d-mmm-yy"},
                             {"jan 5,2003", 37626, "d-mmm-yy"},
                             {"5 Jan 2003", 37626, "d-mmm-yy"},
                             {"5-Jan-03", 37626, "d-mmm-yy"},
                             {"5/JAN/2003", 37626, "d-mmm-yy"},
                             {"5 January 2003", 37626, "d-mmm-yy"},
                             {"5 Jan", 37626, "d-mmm"},
                             {"5-jan", 37626, "d-mmm"},
                             {"Jan 5", 37626, "d-mmm"},
                             {"January 5", 37626, "d-mmm"},
                             {"MARCH1", 37681, "d-mmm"},
                             {"SEPT2", 37866, "d-mmm"},
                             {"OCT-4", 37898, "d-mmm"}}) {
        espera(caso);
    }
    for (const char* texto : {"Jan", "5 Ene", "Ene 5", "Jan 5 2003", "Jan-5 2003", "Jan-5/2003",
                              "32 Jan", "30 Feb 2003", "Janu 5", "5 Jan 203", "Jan 5,"}) {
        esperaTexto(texto);
    }
}

TEST(EntradaTecleada, TwoDigitYearsTurnAtThirty) {
    espera({"1/1/00", 36526, "m/d/yyyy"});
    espera({"1/1/29", 47119, "m/d/yyyy"});
    espera({"1/1/30", 10959, "m/d/yyyy"});
    espera({"1/1/99", 36161, "m/d/yyyy"});
}

TEST(EntradaTecleada, TheDayThatNeverWasIsNumberSixty) {
    espera({"1/1/1900", 1, "m/d/yyyy"});
    espera({"2/28/1900", 59, "m/d/yyyy"});
    espera({"2/29/1900", 60, "m/d/yyyy"});
    espera({"3/1/1900", 61, "m/d/yyyy"});
    esperaTexto("2/30/1900");
}

TEST(EntradaTecleada, WorkbooksOf1904CountFromThere) {
    const auto de1904 = [](const char* texto) {
        return interpretarEntrada(texto, false, true, 2003);
    };
    EXPECT_EQ(de1904("1/1/1904"), Entrada(EntradaNumero{0, "m/d/yyyy"}));
    EXPECT_EQ(de1904("1/2/2003"), Entrada(EntradaNumero{37623 - 1462, "m/d/yyyy"}));
    EXPECT_EQ(de1904("12/31/1903"), Entrada(EntradaTexto{"12/31/1903", false}));
    EXPECT_EQ(de1904("12:00"), Entrada(EntradaNumero{0.5, "h:mm"}));
}

TEST(EntradaTecleada, TimesAreRead) {
    for (const Caso& caso : {Caso{"12:30", 12.5 / 24, "h:mm"},
                             {"0:00", 0, "h:mm"},
                             {"6:00:45", 21645.0 / 86400, "h:mm:ss"},
                             {"23:59:59", 86399.0 / 86400, "h:mm:ss"},
                             {"25:00", 25.0 / 24, "[h]:mm:ss"},
                             {"24:00", 1, "[h]:mm:ss"},
                             {"12:30 PM", 12.5 / 24, "h:mm AM/PM"},
                             {"12:30 AM", .5 / 24, "h:mm AM/PM"},
                             {"1:30 pm", 13.5 / 24, "h:mm AM/PM"},
                             {"5 PM", 17.0 / 24, "h:mm AM/PM"},
                             {"1 p", 13.0 / 24, "h:mm AM/PM"},
                             {"1:02:03 PM", 46923.0 / 86400, "h:mm:ss AM/PM"},
                             {"12:", .5, "h:mm"},
                             {"12:30.5", 750.5 / 86400, "mm:ss.0"},
                             {"1:02:03.25", 3723.25 / 86400, "mm:ss.0"}}) {
        espera(caso);
    }
    for (const char* texto : {"12:60", "12:30:60", "13:00 PM", "12:30PM", "5PM", "10000:00", ":30",
                              "12:30:", "1:2:3:4", "12:30 XM", "13 PM", "-12:30"}) {
        esperaTexto(texto);
    }
}

TEST(EntradaTecleada, ADateAndATimeAreReadInEitherOrder) {
    for (const Caso& caso : {Caso{"1/2/03 12:30", 37623 + 12.5 / 24, "m/d/yyyy h:mm"},
                             {"12:30 1/2/03", 37623 + 12.5 / 24, "m/d/yyyy h:mm"},
                             {"1/2/2003 12:30:45", 37623 + 45045.0 / 86400, "m/d/yyyy h:mm"},
                             {"1/2/03 1:30 PM", 37623 + 13.5 / 24, "m/d/yyyy h:mm"},
                             {"Jan 2, 2003 6:00", 37623.25, "m/d/yyyy h:mm"},
                             {"2003-01-02  18:00", 37623.75, "m/d/yyyy h:mm"}}) {
        espera(caso);
    }
    for (const char* texto : {"31/12/2003 12:30", "1/2/03 25:00", "1/2/03 12:60", "1/2/03T12:30"}) {
        esperaTexto(texto);
    }
}

TEST(EntradaTecleada, ABlankInFrontKeepsDatesAndTimesTexts) {
    for (const char* texto : {" 1/2", " 12:30", " Jan 5", " 0 1/2", " 1 p"}) esperaTexto(texto);
    espera({"1/2 ", 37623, "d-mmm"});
}

TEST(EntradaTecleada, RandomTextsAreAlwaysReadSomehow) {
    std::mt19937 azar(7);
    const std::string signos = "0123456789012345/-:., $%()+'=#EJanMarPTRUE\xC3\xB1\xFF";
    for (int i = 0; i < 200000; ++i) {
        std::string texto;
        for (size_t n = azar() % 14; n > 0; --n) texto += signos[azar() % signos.size()];
        const Entrada e = interpretarEntrada(texto, false, azar() % 2 == 0, 2003);
        EXPECT_EQ(std::holds_alternative<EntradaVacia>(e), texto.empty());
        if (const auto* t = std::get_if<EntradaTexto>(&e)) {
            EXPECT_EQ((t->apostrofo ? "'" : "") + t->texto, texto);
        }
    }
}

TEST(EntradaTecleada, LongTextsTakeNoLongTime) {
    for (const char c : {'1', ',', '/', ' ', '(', '-', 'a', 'J', '%', '.'}) {
        const std::string largo(1000000, c);
        const Entrada e = entrada(largo);
        EXPECT_TRUE(std::holds_alternative<EntradaTexto>(e)) << c;
    }
}

}  // namespace
}  // namespace bn::xls
