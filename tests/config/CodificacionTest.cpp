// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "config/Codificacion.h"

namespace bn {
namespace {

std::string todosLosBytes() {
    std::string bytes;
    for (int i = 0; i < 256; ++i) {
        bytes.push_back(static_cast<char>(i));
    }
    return bytes;
}

TEST(Codificacion, EveryByteOfWindows1252SurvivesTheWayToUtf8AndBack) {
    const std::string bytes = todosLosBytes();
    const std::string utf8 = cp1252AUtf8(bytes);
    EXPECT_TRUE(esUtf8Valido(utf8));
    EXPECT_TRUE(cabeEnCp1252(utf8));
    EXPECT_EQ(utf8ACp1252(utf8), bytes);
    EXPECT_EQ(utf8AU32(utf8).size(), 256U);
}

TEST(Codificacion, TheUpperHalfHasItsPublishedCharacters) {
    EXPECT_EQ(cp1252AUtf8("\x80\x82\x83\x84\x85\x86\x87\x88\x89\x8A\x8B\x8C\x8E"), "€‚ƒ„…†‡ˆ‰Š‹ŒŽ");
    EXPECT_EQ(cp1252AUtf8("\x91\x92\x93\x94\x95\x96\x97\x98\x99\x9A\x9B\x9C\x9E\x9F"),
              "‘’“”•–—˜™š›œžŸ");
    EXPECT_EQ(cp1252AUtf8("\xA0\xBF\xD1\xF1\xFF"), "\u00A0¿Ññÿ");
}

TEST(Codificacion, TheFiveUndefinedCodesStandForControlCharacters) {
    EXPECT_EQ(cp1252AUtf8("\x81\x8D\x8F\x90\x9D"), "\xC2\x81\xC2\x8D\xC2\x8F\xC2\x90\xC2\x9D");
    EXPECT_EQ(utf8ACp1252("\xC2\x81\xC2\x9D"), "\x81\x9D");
    EXPECT_EQ(utf8ACp1252("\xC2\x80\xC2\x9F"), "??");
}

TEST(Codificacion, WhatWindows1252LacksBecomesAQuestionMark) {
    EXPECT_EQ(utf8ACp1252("a→b"), "a?b");
    EXPECT_EQ(utf8ACp1252("😀"), "?");
    EXPECT_EQ(utf8ACp1252("x\xFFy"), "x?y");
    EXPECT_FALSE(cabeEnCp1252("a→b"));
    EXPECT_FALSE(cabeEnCp1252("x\xFFy"));
    EXPECT_TRUE(cabeEnCp1252("Báscula ñ €"));
    EXPECT_TRUE(cabeEnCp1252(""));
}

TEST(Codificacion, OnlyStrictUtf8IsValid) {
    for (const char* bueno : {"", "abc", "ñ", "€", "😀", "\xED\x9F\xBF", "\xEE\x80\x80",
                              "\xF4\x8F\xBF\xBF", "\xEF\xBF\xBD"}) {
        EXPECT_TRUE(esUtf8Valido(bueno)) << bueno;
    }
    for (const char* malo :
         {"\x80", "\xC3", "\xC0\x80", "\xC1\xBF", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xED\xBF\xBF",
          "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFE", "\xFF", "\xE2\x82",
          "\xE2\x28\xA1", "a\xF0\x9F\x98", "\xC3\xC3\xB1"}) {
        EXPECT_FALSE(esUtf8Valido(malo)) << malo;
    }
    EXPECT_TRUE(esUtf8Valido(std::string_view("a\0b", 3)));
}

TEST(Codificacion, AnInvalidByteBecomesTheReplacementCharacterAndTheRestIsKept) {
    EXPECT_EQ(utf8AU32("a\xFF\xC3\xB1"), U"a\xFFFDñ");
    EXPECT_EQ(utf8AU32("\xE2\x82"), U"\xFFFD\xFFFD");
    EXPECT_EQ(utf8AU32("\xC3"
                       "A"),
              U"\xFFFD"
              U"A");
    EXPECT_EQ(utf8AU16("\xFF"), u"\xFFFD");
}

TEST(Codificacion, EveryCodePointSurvivesTheWayThroughUtf8AndUtf16) {
    for (char32_t codigo = 0; codigo <= 0x10FFFF; codigo += codigo < 0x3000 ? 1 : 7) {
        if (codigo >= 0xD800 && codigo <= 0xDFFF) {
            continue;
        }
        const std::u32string uno(1, codigo);
        const std::string utf8 = u32AUtf8(uno);
        ASSERT_EQ(utf8AU32(utf8), uno) << static_cast<uint32_t>(codigo);
        ASSERT_EQ(u16AUtf8(utf8AU16(utf8)), utf8) << static_cast<uint32_t>(codigo);
        ASSERT_EQ(utf8AU16(utf8).size(), codigo < 0x10000 ? 1U : 2U);
    }
}

TEST(Codificacion, WhatIsNoCodePointBecomesTheReplacementCharacter) {
    EXPECT_EQ(u32AUtf8(std::u32string{0xD800, 0x110000, 0xFFFFFFFF}), "\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(u16AUtf8(std::u16string{0xD83D, 0xDE00}), "😀");
    EXPECT_EQ(u16AUtf8(std::u16string{0xD83D}), "\uFFFD");
    EXPECT_EQ(u16AUtf8(std::u16string{0xDE00, 0xD83D}), "\uFFFD\uFFFD");
    EXPECT_EQ(u16AUtf8(std::u16string{0xD83D, 'a'}), "\uFFFDa");
    EXPECT_EQ(u16AUtf8(std::u16string{0xD83D, 0xD83D, 0xDE00}), "\uFFFD😀");
}

TEST(Codificacion, CapitalsOfSpanishAndOtherLatinLetters) {
    EXPECT_EQ(mayusculas("abcxyz 0189 ñáéíóúüç"), "ABCXYZ 0189 ÑÁÉÍÓÚÜÇ");
    EXPECT_EQ(mayusculas("àèìòùâêîôûäëïöåæøœšžýÿðþãõ"), "ÀÈÌÒÙÂÊÎÔÛÄËÏÖÅÆØŒŠŽÝŸÐÞÃÕ");
    EXPECT_EQ(mayusculas("ąćęłńśźżčďěňřťůőűğışțăāēģķ"), "ĄĆĘŁŃŚŹŻČĎĚŇŘŤŮŐŰĞIŞȚĂĀĒĢĶ");
    EXPECT_EQ(mayusculas("ŀľ"), "ĿĽ");
    EXPECT_EQ(mayusculas("αβγςσώ жёя ếửơư"), "ΑΒΓΣΣΏ ЖЁЯ ẾỬƠƯ");
}

TEST(Codificacion, WhatHasNoCapitalStaysAsItIs) {
    EXPECT_EQ(mayusculas("ÑÁŸŒŠŽĄŁİĸ ß÷×ªº¿¡€ [{|}]@`_ 😀"), "ÑÁŸŒŠŽĄŁİĸ ß÷×ªº¿¡€ [{|}]@`_ 😀");
    EXPECT_EQ(mayusculas(""), "");
    EXPECT_EQ(mayusculas(std::string_view("a\0b", 3)), std::string("A\0B", 3));
    EXPECT_EQ(mayusculas("a\xFF"), "A\uFFFD");
}

}  // namespace
}  // namespace bn
