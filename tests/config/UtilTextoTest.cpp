// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <limits>

#include "config/UtilTexto.h"

namespace bn::utiltexto {
namespace {

using testing::ElementsAre;

TEST(UtilTexto, AListGrowsWithoutASeparatorBeforeItsFirstItem) {
    std::string lista;
    anadirALista(lista, "2", ";", true);
    anadirALista(lista, "3", ";", false);
    anadirALista(lista, "84", "; ", false);
    EXPECT_EQ(lista, "2;3; 84");
}

TEST(UtilTexto, AnEmptyItemKeepsItsPlaceInAList) {
    std::string lista;
    anadirALista(lista, "", ";", true);
    anadirALista(lista, "", ";", false);
    anadirALista(lista, "a", ";", false);
    anadirALista(lista, "", ";", false);
    EXPECT_EQ(lista, ";;a;");
    EXPECT_THAT(partir(lista, ';', 99), ElementsAre("", "", "a", ""));
}

TEST(UtilTexto, SacarPrimeroTakesOneTokenAndLeavesTheRest) {
    std::string texto = "9600,N,,1";
    EXPECT_EQ(sacarPrimero(texto, ","), "9600");
    EXPECT_EQ(texto, "N,,1");
    EXPECT_EQ(sacarPrimero(texto, ","), "N");
    EXPECT_EQ(sacarPrimero(texto, ","), "");
    EXPECT_EQ(texto, "1");
    EXPECT_EQ(sacarPrimero(texto, ","), "1");
    EXPECT_EQ(texto, "");
    EXPECT_EQ(sacarPrimero(texto, ","), "");
}

TEST(UtilTexto, SacarPrimeroKnowsLongSeparatorsAndTakesAllWithoutOne) {
    std::string texto = "a\nb\r\nc";
    EXPECT_EQ(sacarPrimero(texto, "\r\n"), "a\nb");
    EXPECT_EQ(texto, "c");
    texto = "a;b";
    EXPECT_EQ(sacarPrimero(texto, ""), "a;b");
    EXPECT_EQ(texto, "");
}

TEST(UtilTexto, PartirLeavesOutWhatIsTooMuch) {
    EXPECT_THAT(partir("a;b;c", ';', 2), ElementsAre("a", "b"));
    EXPECT_THAT(partir("a", ';', 2), ElementsAre("a"));
    EXPECT_THAT(partir("", ';', 2), ElementsAre(""));
    EXPECT_THAT(partir("a;", ';', 2), ElementsAre("a", ""));
}

TEST(UtilTexto, BooleansHaveATextThatIsReadBack) {
    EXPECT_EQ(deBooleano(true), "True");
    EXPECT_EQ(deBooleano(false), "False");
    EXPECT_TRUE(aBooleano(deBooleano(true)));
    EXPECT_FALSE(aBooleano(deBooleano(false)));
}

TEST(UtilTexto, BooleansAreAlsoReadAsOtherProgramsAndPeopleWriteThem) {
    for (const char* texto : {"True", "TRUE", "true", "Verdadero", "verdadero", "1", "-1", "Sí",
                              "sí", "SÍ", " True ", "\tSí"}) {
        EXPECT_TRUE(aBooleano(texto)) << texto;
    }
    for (const char* texto : {"False", "Falso", "0", "No", "", " ", "tru", "truee", "2", "+1",
                              "verdad", "\xED", "Tr ue"}) {
        EXPECT_FALSE(aBooleano(texto)) << texto;
    }
}

TEST(UtilTexto, NumeroInicialTakesTheLongestNumberAtTheStart) {
    EXPECT_EQ(numeroInicial("12abc"), 12);
    EXPECT_EQ(numeroInicial(" -3.5x"), -3.5);
    EXPECT_EQ(numeroInicial("\t +7"), 7);
    EXPECT_EQ(numeroInicial("1e2"), 100);
    EXPECT_EQ(numeroInicial("1E-2"), 0.01);
    EXPECT_EQ(numeroInicial("1e"), 1);
    EXPECT_EQ(numeroInicial("1e+"), 1);
    EXPECT_EQ(numeroInicial(".5"), 0.5);
    EXPECT_EQ(numeroInicial("-.5"), -0.5);
    EXPECT_EQ(numeroInicial("5."), 5);
    EXPECT_EQ(numeroInicial("1.2.3"), 1.2);
    EXPECT_EQ(numeroInicial("3,5"), 3);
    EXPECT_EQ(numeroInicial("0x10"), 0);
    EXPECT_EQ(numeroInicial("007"), 7);
    EXPECT_EQ(numeroInicial(std::string_view("1\0002", 3)), 1);
}

TEST(UtilTexto, NumeroInicialIsZeroWithoutANumber) {
    for (const char* texto : {"", " ", "abc", "-", "+", ".", "-.", "--1", "+-1", "- 1", "e5", "inf",
                              "nan", "infinity", "ñ1", ",5", "=1"}) {
        EXPECT_EQ(numeroInicial(texto), 0) << texto;
    }
}

TEST(UtilTexto, NumeroInicialStaysFiniteOrderedAndQuickWithOutrageousNumbers) {
    constexpr double kMaximo = std::numeric_limits<double>::max();
    EXPECT_EQ(numeroInicial("1e999"), kMaximo);
    EXPECT_EQ(numeroInicial("-1e999"), -kMaximo);
    EXPECT_EQ(numeroInicial(std::string(400, '9')), kMaximo);
    EXPECT_NEAR(numeroInicial("1e-999"), 0, 1e-300);
    EXPECT_NEAR(numeroInicial("0." + std::string(400, '0') + "1"), 0, 1e-300);
    const auto inicio = std::chrono::steady_clock::now();
    EXPECT_EQ(numeroInicial(std::string(1 << 20, '9')), kMaximo);
    EXPECT_LT(std::chrono::steady_clock::now() - inicio, std::chrono::seconds(5));
}

TEST(UtilTexto, RedondearParSendsHalvesToTheEvenNeighbour) {
    EXPECT_EQ(redondearPar(0.5), 0);
    EXPECT_EQ(redondearPar(1.5), 2);
    EXPECT_EQ(redondearPar(2.5), 2);
    EXPECT_EQ(redondearPar(-0.5), 0);
    EXPECT_EQ(redondearPar(-1.5), -2);
    EXPECT_EQ(redondearPar(-2.5), -2);
    EXPECT_EQ(redondearPar(2.4999), 2);
    EXPECT_EQ(redondearPar(2.5001), 3);
    EXPECT_EQ(redondearPar(32767.5), 32768);
}

TEST(UtilTexto, EsNumericoWantsASignDigitsAndOneSeparatorAtMost) {
    for (const char* texto : {"1", "007", "-1", "+1", "1.5", "1,5", ".5", ",5", "5.", "5,", " 12 ",
                              "\t1", "-,5", "0000000000000000000000"}) {
        EXPECT_TRUE(esNumerico(texto)) << texto;
    }
    for (const char* texto : {"", " ", "-", ".", ",", "-.", "1.2.3", "1.000,5", "1 2", "- 1", "1-",
                              "--1", "1e2", "A", "0x1", "1\xA0", "1\n", "½"}) {
        EXPECT_FALSE(esNumerico(texto)) << texto;
    }
}

TEST(UtilTexto, TeclaNumericaLetsDigitsAndControlKeysThrough) {
    for (char32_t tecla = 0; tecla < 0x200; ++tecla) {
        const bool esperado = tecla < 32 || (tecla >= '0' && tecla <= '9');
        EXPECT_EQ(teclaNumerica(tecla), esperado) << static_cast<uint32_t>(tecla);
    }
    EXPECT_FALSE(teclaNumerica(U'٣'));
}

TEST(Coincide, WithoutSpecialCharactersTextsMustBeEqual) {
    EXPECT_TRUE(coincide("", ""));
    EXPECT_TRUE(coincide("abc]", "abc]"));
    EXPECT_FALSE(coincide("abc", "ABC"));
    EXPECT_FALSE(coincide("abc", "ab"));
    EXPECT_FALSE(coincide("ab", "abc"));
    EXPECT_FALSE(coincide("", "a"));
    EXPECT_FALSE(coincide("a", ""));
}

TEST(Coincide, AnAsteriskStandsForAnyRunAlsoNone) {
    EXPECT_TRUE(coincide("", "*"));
    EXPECT_TRUE(coincide("", "***"));
    EXPECT_TRUE(coincide("abc", "*"));
    EXPECT_TRUE(coincide("Pesadas.xls", "*.xls"));
    EXPECT_TRUE(coincide(".xls", "*.xls"));
    EXPECT_FALSE(coincide("Pesadas.XLS", "*.xls"));
    EXPECT_FALSE(coincide("Pesadas.xlsx", "*.xls"));
    EXPECT_TRUE(coincide("a.xls.xls", "*.xls"));
    EXPECT_TRUE(coincide("abcabd", "*ab?"));
    EXPECT_TRUE(coincide("xaybz", "*a*b*"));
    EXPECT_FALSE(coincide("xbya", "*a*b*"));
}

TEST(Coincide, AQuestionMarkIsOneCharacterAndANumberSignOneDigit) {
    EXPECT_TRUE(coincide("a", "?"));
    EXPECT_FALSE(coincide("", "?"));
    EXPECT_FALSE(coincide("ab", "?"));
    EXPECT_TRUE(coincide("\xFF", "?"));
    EXPECT_TRUE(coincide(std::string_view("\0", 1), "?"));
    EXPECT_TRUE(coincide("7", "#"));
    EXPECT_FALSE(coincide("x", "#"));
    EXPECT_FALSE(coincide("#", "#"));
    EXPECT_FALSE(coincide("", "#"));
}

TEST(Coincide, AListIsOneOfItsCharacters) {
    EXPECT_TRUE(coincide("N,8,1", "[NEO],[78],[12]"));
    EXPECT_TRUE(coincide("E,7,2", "[NEO],[78],[12]"));
    EXPECT_FALSE(coincide("n,8,1", "[NEO],[78],[12]"));
    EXPECT_FALSE(coincide("N,9,1", "[NEO],[78],[12]"));
    EXPECT_FALSE(coincide("N,8", "[NEO],[78],[12]"));
    EXPECT_FALSE(coincide("N,8,1,", "[NEO],[78],[12]"));
    EXPECT_FALSE(coincide("", "[NEO]"));
    EXPECT_TRUE(coincide("*", "[*?#[]"));
    EXPECT_TRUE(coincide("[", "[*?#[]"));
}

TEST(Coincide, AListMayHoldRangesAndMayBeNegated) {
    EXPECT_TRUE(coincide("M", "[A-Z]"));
    EXPECT_TRUE(coincide("A", "[A-Z]"));
    EXPECT_TRUE(coincide("Z", "[A-Z]"));
    EXPECT_FALSE(coincide("m", "[A-Z]"));
    EXPECT_FALSE(coincide("-", "[A-Z]"));
    EXPECT_TRUE(coincide("5", "[A-Z0-9]"));
    EXPECT_TRUE(coincide("-", "[A-]"));
    EXPECT_TRUE(coincide("-", "[-A]"));
    EXPECT_TRUE(coincide("\xF1", "[\xE0-\xFF]"));
    EXPECT_FALSE(coincide("M", "[Z-A]"));
    EXPECT_TRUE(coincide("D", "[!ABC]"));
    EXPECT_FALSE(coincide("B", "[!A-C]"));
    EXPECT_FALSE(coincide("", "[!A]"));
    EXPECT_TRUE(coincide("!", "[A!]"));
    EXPECT_FALSE(coincide("a", "[]"));
}

TEST(Coincide, AListThatIsNeverClosedMatchesNothing) {
    for (const char* patron : {"[", "[A", "*[", "[*", "?[A-"}) {
        for (const char* texto : {"", "[", "A", "[A", "xA", "[*"}) {
            EXPECT_FALSE(coincide(texto, patron)) << texto << " " << patron;
        }
    }
}

TEST(Coincide, ManyAsterisksDoNotExplode) {
    std::string patron;
    for (int i = 0; i < 50; ++i) {
        patron += "a*";
    }
    const auto inicio = std::chrono::steady_clock::now();
    EXPECT_FALSE(coincide(std::string(20000, 'a'), "*" + patron + "b"));
    EXPECT_TRUE(coincide(std::string(1 << 20, 'a'), "*a"));
    EXPECT_LT(std::chrono::steady_clock::now() - inicio, std::chrono::seconds(5));
}

}  // namespace
}  // namespace bn::utiltexto
