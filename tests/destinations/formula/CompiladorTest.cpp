// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "destinations/xls/formula/Compilador.h"
#include "tests/destinations/formula/LibroDePrueba.h"

namespace bn::xls {
namespace {

constexpr PosicionCelda kCelda{9, 4};  // row 10, column 5

Rgce tokens(const std::string& formula, PosicionCelda celda = kCelda) {
    LibroDePrueba libro;
    return compilar(formula, celda, libro);
}

TEST(Compilador, WritesIntegersAsWordsAndOtherNumbersAsDoubles) {
    EXPECT_EQ(tokens("=0"), (Rgce{0x1E, 0, 0}));
    EXPECT_EQ(tokens("=65535"), (Rgce{0x1E, 0xFF, 0xFF}));
    EXPECT_EQ(tokens("=65536"), (Rgce{0x1F, 0, 0, 0, 0, 0, 0, 0xF0, 0x40}));
    EXPECT_EQ(tokens("=1.5"), (Rgce{0x1F, 0, 0, 0, 0, 0, 0, 0xF8, 0x3F}));
    EXPECT_EQ(tokens("=.5"), (Rgce{0x1F, 0, 0, 0, 0, 0, 0, 0xE0, 0x3F}));
    EXPECT_EQ(tokens("=1E2"), (Rgce{0x1E, 100, 0}));
    EXPECT_EQ(tokens("=2.0"), (Rgce{0x1E, 2, 0}));
}

TEST(Compilador, WritesTextsInTheNarrowestWidth) {
    EXPECT_EQ(tokens("=\"ab\""), (Rgce{0x17, 2, 0, 'a', 'b'}));
    EXPECT_EQ(tokens("=\"\""), (Rgce{0x17, 0, 0}));
    EXPECT_EQ(tokens("=\"a\"\"b\""), (Rgce{0x17, 3, 0, 'a', '"', 'b'}));
    EXPECT_EQ(tokens("=\"ñ\""), (Rgce{0x17, 1, 0, 0xF1}));
    EXPECT_EQ(tokens("=\"€a\""), (Rgce{0x17, 2, 1, 0xAC, 0x20, 'a', 0}));
}

TEST(Compilador, WritesLogicalAndErrorValues) {
    EXPECT_EQ(tokens("=TRUE"), (Rgce{0x1D, 1}));
    EXPECT_EQ(tokens("=false"), (Rgce{0x1D, 0}));
    EXPECT_EQ(tokens("=#N/A"), (Rgce{0x1C, 0x2A}));
    EXPECT_EQ(tokens("=#DIV/0!"), (Rgce{0x1C, 0x07}));
    EXPECT_EQ(tokens("=#REF!"), (Rgce{0x1C, 0x17}));
}

TEST(Compilador, WritesCellsWithTheirRelativeFlags) {
    EXPECT_EQ(tokens("=R1C1"), (Rgce{0x44, 0, 0, 0, 0}));
    EXPECT_EQ(tokens("=R65536C256"), (Rgce{0x44, 0xFF, 0xFF, 0xFF, 0}));
    EXPECT_EQ(tokens("=R[1]C[-1]"), (Rgce{0x44, 10, 0, 3, 0xC0}));
    EXPECT_EQ(tokens("=RC"), (Rgce{0x44, 9, 0, 4, 0xC0}));
    EXPECT_EQ(tokens("=R3C"), (Rgce{0x44, 2, 0, 4, 0x40}));
    EXPECT_EQ(tokens("=RC2"), (Rgce{0x44, 9, 0, 1, 0x80}));
    EXPECT_EQ(tokens("=rc2"), (Rgce{0x44, 9, 0, 1, 0x80}));
}

TEST(Compilador, RelativeReferencesGoRoundTheEdges) {
    EXPECT_EQ(tokens("=R[-1]C[-1]", {0, 0}), (Rgce{0x44, 0xFF, 0xFF, 0xFF, 0xC0}));
    EXPECT_EQ(tokens("=R[1]C[1]", {65535, 255}), (Rgce{0x44, 0, 0, 0, 0xC0}));
}

TEST(Compilador, WritesAreasFromTheirTopLeftCorner) {
    const Rgce esperado{0x25, 0, 0, 1, 0, 0, 0, 1, 0, 0x19, 0x10, 0, 0};
    EXPECT_EQ(tokens("=SUM(R1C1:R2C2)"), esperado);
    EXPECT_EQ(tokens("=SUM(R2C2:R1C1)"), esperado);
    EXPECT_EQ(tokens("=SUM(R2C1:R1C2)"), esperado);
}

TEST(Compilador, WritesWholeColumnsAndRowsAsAreas) {
    EXPECT_EQ(tokens("=SUM(C2)"), (Rgce{0x25, 0, 0, 0xFF, 0xFF, 1, 0, 1, 0, 0x19, 0x10, 0, 0}));
    EXPECT_EQ(tokens("=SUM(C2:C3)"), (Rgce{0x25, 0, 0, 0xFF, 0xFF, 1, 0, 2, 0, 0x19, 0x10, 0, 0}));
    EXPECT_EQ(tokens("=SUM(R3)"), (Rgce{0x25, 2, 0, 2, 0, 0, 0, 0xFF, 0, 0x19, 0x10, 0, 0}));
    EXPECT_EQ(tokens("=SUM(C)"),
              (Rgce{0x25, 0, 0, 0xFF, 0xFF, 4, 0x40, 4, 0x40, 0x19, 0x10, 0, 0}));
}

TEST(Compilador, WritesReferencesIntoOtherSheets) {
    LibroDePrueba libro;
    libro.xtis = {{"Hoja1", "Hoja1"}};
    EXPECT_EQ(compilar("='Otra hoja'!R1C2", kCelda, libro), (Rgce{0x5A, 1, 0, 0, 0, 1, 0}));
    EXPECT_EQ(compilar("=hoja1!R1C2", kCelda, libro), (Rgce{0x5A, 0, 0, 0, 0, 1, 0}));
    EXPECT_EQ(compilar("=SUM('O''Brien'!R1C1:R2C2)", kCelda, libro),
              (Rgce{0x3B, 2, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0x19, 0x10, 0, 0}));
    EXPECT_EQ(compilar("=SUM('Hoja1:Otra hoja'!R1C1)", kCelda, libro),
              (Rgce{0x3A, 3, 0, 0, 0, 0, 0, 0x19, 0x10, 0, 0}));
    EXPECT_EQ(compilar("=Hoja1!#REF!", kCelda, libro), (Rgce{0x5C, 0, 0, 0, 0, 0, 0}));
}

TEST(Compilador, WritesDefinedNamesByTheirPlace) {
    EXPECT_EQ(tokens("=TOTAL"), (Rgce{0x43, 1, 0, 0, 0}));
    EXPECT_EQ(tokens("=AVERAGE(Último_Mes)"), (Rgce{0x23, 2, 0, 0, 0, 0x42, 1, 5, 0}));
}

TEST(Compilador, OperatorsFollowTheirOperands) {
    EXPECT_EQ(tokens("=1+2*3"), (Rgce{0x1E, 1, 0, 0x1E, 2, 0, 0x1E, 3, 0, 0x05, 0x03}));
    EXPECT_EQ(tokens("=1-2-3"), (Rgce{0x1E, 1, 0, 0x1E, 2, 0, 0x04, 0x1E, 3, 0, 0x04}));
    EXPECT_EQ(tokens("=(1+2)/3"), (Rgce{0x1E, 1, 0, 0x1E, 2, 0, 0x03, 0x15, 0x1E, 3, 0, 0x06}));
    EXPECT_EQ(tokens("=1&2+3"), (Rgce{0x1E, 1, 0, 0x1E, 2, 0, 0x1E, 3, 0, 0x03, 0x08}));
    EXPECT_EQ(tokens("=1<2&3"), (Rgce{0x1E, 1, 0, 0x1E, 2, 0, 0x1E, 3, 0, 0x08, 0x09}));
}

TEST(Compilador, PowerGoesFromTheLeft) {
    EXPECT_EQ(tokens("=2^3^4"), (Rgce{0x1E, 2, 0, 0x1E, 3, 0, 0x07, 0x1E, 4, 0, 0x07}));
}

TEST(Compilador, ASignBindsTighterThanPowerAndPercent) {
    EXPECT_EQ(tokens("=-2^2"), (Rgce{0x1E, 2, 0, 0x13, 0x1E, 2, 0, 0x07}));
    EXPECT_EQ(tokens("=2^-2"), (Rgce{0x1E, 2, 0, 0x1E, 2, 0, 0x13, 0x07}));
    EXPECT_EQ(tokens("=-5%"), (Rgce{0x1E, 5, 0, 0x13, 0x14}));
    EXPECT_EQ(tokens("=2^5%"), (Rgce{0x1E, 2, 0, 0x1E, 5, 0, 0x14, 0x07}));
    EXPECT_EQ(tokens("=-+1"), (Rgce{0x1E, 1, 0, 0x12, 0x13}));
}

TEST(Compilador, EveryComparisonHasItsToken) {
    const std::pair<const char*, uint8_t> signos[] = {{"<", 0x09},  {"<=", 0x0A}, {"=", 0x0B},
                                                      {">=", 0x0C}, {">", 0x0D},  {"<>", 0x0E}};
    for (const auto& [signo, id] : signos) {
        EXPECT_EQ(tokens("=1" + std::string(signo) + "2"), (Rgce{0x1E, 1, 0, 0x1E, 2, 0, id}));
    }
}

TEST(Compilador, ASumOfOneArgumentIsAnAttribute) {
    EXPECT_EQ(tokens("=SUM(R1C1)"), (Rgce{0x24, 0, 0, 0, 0, 0x19, 0x10, 0, 0}));
    EXPECT_EQ(tokens("=SUM(R1C1,2)"), (Rgce{0x24, 0, 0, 0, 0, 0x1E, 2, 0, 0x42, 2, 4, 0}));
}

TEST(Compilador, FunctionsOfFixedArityDoNotStoreIt) {
    EXPECT_EQ(tokens("=ABS(R1C1)"), (Rgce{0x44, 0, 0, 0, 0, 0x41, 24, 0}));
    EXPECT_EQ(tokens("=round(1,2)"), (Rgce{0x1E, 1, 0, 0x1E, 2, 0, 0x41, 27, 0}));
    EXPECT_EQ(tokens("=PI()"), (Rgce{0x41, 19, 0}));
}

TEST(Compilador, TheFiveNamedFunctionsCarryTheirNumbers) {
    EXPECT_EQ(tokens("=COUNT(R1C1)"), (Rgce{0x24, 0, 0, 0, 0, 0x42, 1, 0, 0}));
    EXPECT_EQ(tokens("=AVERAGE(R1C1)"), (Rgce{0x24, 0, 0, 0, 0, 0x42, 1, 5, 0}));
    EXPECT_EQ(tokens("=MIN(R1C1)"), (Rgce{0x24, 0, 0, 0, 0, 0x42, 1, 6, 0}));
    EXPECT_EQ(tokens("=MAX(R1C1)"), (Rgce{0x24, 0, 0, 0, 0, 0x42, 1, 7, 0}));
}

TEST(Compilador, IfJumpsPastTheBranchNotTaken) {
    EXPECT_EQ(tokens("=IF(R1C1,2,3)"),
              (Rgce{0x44, 0,    0, 0,    0,            // condition
                    0x19, 0x02, 7, 0,                  // to the third argument
                    0x1E, 2,    0, 0x19, 0x08, 10, 0,  // behind the call, less one
                    0x1E, 3,    0, 0x19, 0x08, 3,  0, 0x42, 3, 1, 0}));
    EXPECT_EQ(tokens("=IF(TRUE,2)"),
              (Rgce{0x1D, 1, 0x19, 0x02, 7, 0, 0x1E, 2, 0, 0x19, 0x08, 3, 0, 0x42, 2, 1, 0}));
}

TEST(Compilador, BranchesOfIfKeepReferencesAsReferences) {
    const Rgce rgce = tokens("=IF(R1C1,R1C2,R1C3)");
    EXPECT_EQ(rgce[0], 0x44);
    EXPECT_EQ(rgce[9], 0x24);
    EXPECT_EQ(rgce[18], 0x24);
}

TEST(Compilador, OperandsAreValuesUnlessAnArrayIsAskedFor) {
    EXPECT_EQ(tokens("=SUM(R1C1*2)"), (Rgce{0x44, 0, 0, 0, 0, 0x1E, 2, 0, 0x05, 0x19, 0x10, 0, 0}));
    EXPECT_EQ(tokens("=SUMPRODUCT(R1C1*ABS(R1C2))"),
              (Rgce{0x64, 0, 0, 0, 0, 0x64, 0, 0, 1, 0, 0x61, 24, 0, 0x05, 0x42, 1, 228, 0}));
    EXPECT_EQ(tokens("=INDEX(C1,2)+1"), (Rgce{0x25, 0, 0,    0xFF, 0xFF, 0, 0,    0, 0, 0x1E,
                                              2,    0, 0x42, 2,    29,   0, 0x1E, 1, 0, 0x03}));
    EXPECT_EQ(tokens("=SUM(INDEX(C1,2))")[12], 0x22);
}

TEST(Compilador, MarksFormulasThatMustAlwaysBeRecalculated) {
    EXPECT_EQ(tokens("=TODAY()"), (Rgce{0x19, 0x01, 0, 0, 0x41, 221, 0}));
    EXPECT_EQ(tokens("=1+NOW()"), (Rgce{0x19, 0x01, 0, 0, 0x1E, 1, 0, 0x41, 74, 0, 0x03}));
}

TEST(Compilador, KeepsBlanksAsAttributes) {
    EXPECT_EQ(tokens("= 1  + 2"), (Rgce{0x19, 0x40, 0, 1, 0x1E, 1, 0, 0x19, 0x40, 0, 1, 0x1E, 2, 0,
                                        0x19, 0x40, 0, 2, 0x03}));
    EXPECT_EQ(tokens("=( 1 )"), (Rgce{0x19, 0x40, 0, 1, 0x1E, 1, 0, 0x19, 0x40, 4, 1, 0x15}));
}

TEST(Compilador, WritesArgumentsLeftOut) {
    EXPECT_EQ(tokens("=ROUND(1,)"), (Rgce{0x1E, 1, 0, 0x16, 0x41, 27, 0}));
}

TEST(Compilador, AsksForNoSheetBeforeTheWholeTextIsAFormula) {
    LibroDePrueba libro;
    EXPECT_ANY_THROW(compilar("=Hoja1!R1C1+", kCelda, libro));
    EXPECT_TRUE(libro.xtis.empty());
}

}  // namespace
}  // namespace bn::xls
