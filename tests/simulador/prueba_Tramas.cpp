// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>

#include "tools/simulador/Tramas.h"

namespace bn::simulador {
namespace {

TEST(Tramas, CounterFrameIsStartDataEndCheckLineFeedCarriageReturn) {
    // '0' ^ '0' ^ '1' ^ '2' = 3
    EXPECT_EQ(trama("0012", {}), std::string("\x02"
                                             "0012\x03\x03\n\r"));
}

TEST(Tramas, ShortWeighingFrameMatchesOneWorkedOutByHand) {
    const std::string datos = "1234BCD  0000001 00000002          00000003 0012.50 0030000";
    ASSERT_EQ(datos.size(), 59U);
    // Equal characters cancel out. Left over: 1^2^3^4 = 04, B^C^D = 45, 1 = 31, 2 = 32, 3 = 33,
    // 1^2^.^5 = 18, 3 = 33; the zeros are 6+7+7+3+6 = 29, an odd number: 30; the blanks
    // 2+1+10+1+1 = 15, odd too: 20. All together: 4A.
    EXPECT_EQ(trama(datos, {}), "\x02" + datos + "\x03\x4A\n\r");
}

TEST(Tramas, FramingCharactersAreTheOnesGiven) {
    const Caracteres caracteres{.inicial = '\0', .final = '\xFF', .peticion = 'P'};
    EXPECT_EQ(trama("0000", caracteres), std::string("\0"
                                                     "0000\xFF\0\n\r",
                                                     9));
}

TEST(Tramas, CheckOfBytesAbove127StaysAByte) {
    EXPECT_EQ(control("\xD1\x80"), '\x51');
    EXPECT_EQ(control(""), '\0');
}

TEST(Tramas, CounterHasAtLeastTheDigitsAskedForAndNeverMoreThanFive) {
    EXPECT_EQ(datosContador(0, 4), "0000");
    EXPECT_EQ(datosContador(12, 5), "00012");
    EXPECT_EQ(datosContador(12345, 4), "12345");
    EXPECT_EQ(datosContador(123456, 4), "99999");
}

}  // namespace
}  // namespace bn::simulador
