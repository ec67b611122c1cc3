// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "download/Formato.h"

namespace bn {
namespace {

std::string texto(const std::string& valor, const std::string& formato) {
    return formatear(valor, formato);
}

TEST(FormatoTexto, AnEmptyPictureLeavesTheTextAsItIs) {
    EXPECT_EQ(texto("1234ABC", ""), "1234ABC");
    EXPECT_EQ(texto(" 0012 ", ""), " 0012 ");
    EXPECT_EQ(texto("", ""), "");
}

TEST(FormatoTexto, AtSignsAlignToTheRightWithBlanks) {
    EXPECT_EQ(texto("ABC", "@@@@@"), "  ABC");
    EXPECT_EQ(texto("ABC", "@@@"), "ABC");
    EXPECT_EQ(texto("", "@@@"), "   ");
}

TEST(FormatoTexto, AmpersandsShowNothingWithoutACharacter) {
    EXPECT_EQ(texto("ABC", "&&&&&"), "ABC");
    EXPECT_EQ(texto("", "&&&"), "");
    EXPECT_EQ(texto("AB", "&@@@"), " AB");
    EXPECT_EQ(texto("AB", "@&@@"), " AB");
}

TEST(FormatoTexto, AnExclamationMarkFillsFromTheLeft) {
    EXPECT_EQ(texto("ABC", "!@@@@@"), "ABC  ");
    EXPECT_EQ(texto("ABC", "@@@@@!"), "ABC  ");
    EXPECT_EQ(texto("ABC", "!@-@-@-&"), "A-B-C-");
}

TEST(FormatoTexto, LiteralsStandBetweenThePlaceholders) {
    EXPECT_EQ(texto("1234ABC", "@@@@-@@@"), "1234-ABC");
    EXPECT_EQ(texto("4ABC", "@@@@-@@@"), "   4-ABC");
    EXPECT_EQ(texto("AB", "@\"x@\"@"), "Ax@B");
    EXPECT_EQ(texto("AB", "@\\@@"), "A@B");
    EXPECT_EQ(texto("F", "!0&"), "0F");
}

TEST(FormatoTexto, SurplusCharactersComeOutWhereTheFillingEnds) {
    EXPECT_EQ(texto("1234ABC", "@@@"), "1234ABC");
    EXPECT_EQ(texto("12345", "@-@"), "1234-5");
    EXPECT_EQ(texto("12345", "!@-@"), "1-2345");
    EXPECT_EQ(texto("12345", "(&)"), "(12345)");
}

TEST(FormatoTexto, ForcesLetterCaseInWindows1252) {
    EXPECT_EQ(texto("HELLO", "<"), "hello");
    EXPECT_EQ(texto("This is it", ">"), "THIS IS IT");
    EXPECT_EQ(texto("\xF1\xE1\xFC\xE7\x9A\x9C\x9E\xFF", ">"), "\xD1\xC1\xDC\xC7\x8A\x8C\x8E\x9F");
    EXPECT_EQ(texto("\xD1\xC1\xDC\xC7\x8A\x8C\x8E\x9F", "<"), "\xF1\xE1\xFC\xE7\x9A\x9C\x9E\xFF");
    EXPECT_EQ(texto("\xD7\xF7\xDF\x80\xBF", ">"), "\xD7\xF7\xDF\x80\xBF");
    EXPECT_EQ(texto("\xD7\xF7\xDF\x80\xBF", "<"), "\xD7\xF7\xDF\x80\xBF");
    EXPECT_EQ(texto("1234abc", ">@@@@ @@@@"), " 123 4ABC");
    EXPECT_EQ(texto("aB", "<>"), "AB");
}

TEST(FormatoTexto, TheSecondSectionIsForEmptyTextsAndNothing) {
    const std::string formato = "@@@@;\"sin dato\"";
    EXPECT_EQ(texto("AB", formato), "  AB");
    EXPECT_EQ(texto("", formato), "sin dato");
    EXPECT_EQ(formatear(std::monostate{}, formato), "sin dato");
    EXPECT_EQ(texto("", "@@@@;"), "");
    EXPECT_EQ(formatear(std::monostate{}, "@@@@"), "");
}

TEST(FormatoTexto, OtherValuesTakeTheirPlainText) {
    EXPECT_EQ(formatear(int32_t{123}, "@@@@@"), "  123");
    EXPECT_EQ(formatear(12.5, "!@@@@@@"), "12,5  ");
    EXPECT_EQ(formatear(12.35f, "&"), "12,35");
    EXPECT_EQ(formatear(true, ">"), "VERDADERO");
    EXPECT_EQ(formatear(FechaOle{45358}, "@@@@@@@@@@@@"), "  07/03/2024");
}

TEST(FormatoTexto, TheFirstSymbolDecidesTheKindOfAPicture) {
    EXPECT_EQ(formatear(5.0, "0@"), "5@");
    EXPECT_EQ(texto("AB", "@@00"), "AB00");
    EXPECT_EQ(formatear(FechaOle{45358}, "dd@"), "07@");
    EXPECT_EQ(formatear(5.0, "\"dd @\"0"), "dd @5");
    EXPECT_EQ(formatear(5.0, "(Tara) 0"), "(Tara) 5");
    EXPECT_EQ(formatear(-5.0, "$"), "-$");
}

}  // namespace
}  // namespace bn
