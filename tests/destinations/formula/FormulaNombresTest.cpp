// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <bit>
#include <string>

#include "destinations/excel/ObjectModel.h"
#include "destinations/xls/formula/Compilador.h"
#include "destinations/xls/formula/Descompilador.h"
#include "tests/destinations/formula/LibroDePrueba.h"

namespace bn::xls {
namespace {

class FormulaNombres : public ::testing::Test {
 protected:
    Rgce tokens(const std::string& refersTo) { return compilarNombre(refersTo, "Hoja1", libro); }
    std::string leida(const Rgce& rgce) { return descompilarNombre(rgce, libro).value_or("=?"); }

    LibroDePrueba libro;
};

TEST_F(FormulaNombres, ConstantsReadBackAsTheyWereWritten) {
    for (const char* valor : {"=12", "=1.5", "=-3", "=70000", "=-0.25", "=\"texto\"",
                              "=\"dice \"\"hola\"\"\"", "=TRUE", "=FALSE", "=#N/A", "=\"€\""}) {
        EXPECT_EQ(leida(tokens(valor)), valor);
    }
}

TEST_F(FormulaNombres, ConstantsHaveTheTokensOfTheFormat) {
    EXPECT_EQ(tokens("=12"), (Rgce{0x1E, 12, 0}));
    EXPECT_EQ(tokens("=-3"), (Rgce{0x1E, 3, 0, 0x13}));
    EXPECT_EQ(tokens("=TRUE"), (Rgce{0x1D, 1}));
    EXPECT_EQ(tokens("=\"ab\""), (Rgce{0x17, 2, 0, 'a', 'b'}));
    EXPECT_EQ(tokens("=70000").at(0), 0x1F);
}

TEST_F(FormulaNombres, CellsAndAreasAlwaysNameTheirSheet) {
    EXPECT_EQ(tokens("=Hoja1!$A$1"), (Rgce{0x3A, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(tokens("=$B$3"), (Rgce{0x3A, 0, 0, 2, 0, 1, 0}));
    EXPECT_EQ(tokens("='Otra hoja'!$A$1:$B$2"), (Rgce{0x3B, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0}));
    EXPECT_EQ(leida(tokens("=$B$3")), "=Hoja1!$B$3");
}

TEST_F(FormulaNombres, ReferencesReadBackInA1Notation) {
    for (const char* valor :
         {"=Hoja1!$A$1", "='Otra hoja'!$A$1:$B$2", "='O''Brien'!$IV$65536", "=Hoja1!$A:$C",
          "=Hoja1!$1:$2", "=Hoja1!$AA$10", "=Hoja1!$Z$1", "=Hoja1!$AZ$1", "=Hoja1!$BA$1",
          "='Hoja1:Otra hoja'!$A$1", "=SUM(Hoja1!$A$1:$A$9)+1", "=Hoja1!#REF!", "=total*2",
          "=Hoja1!A1", "=Hoja1!B$2", "=Hoja1!$C3"}) {
        EXPECT_EQ(leida(tokens(valor)), valor);
    }
}

TEST_F(FormulaNombres, LowerCaseReadsBackInUpperCase) {
    EXPECT_EQ(leida(tokens("=hoja1!$a$1")), "=Hoja1!$A$1");
    EXPECT_EQ(leida(tokens("=true")), "=TRUE");
}

TEST_F(FormulaNombres, NumbersOfOtherWritersRead) {
    const auto bits = std::bit_cast<uint64_t>(-12.5);
    Rgce rgce{0x1F};
    for (unsigned i = 0; i < 8; ++i) rgce.push_back(static_cast<uint8_t>(bits >> (8 * i)));
    EXPECT_EQ(leida(rgce), "=-12.5");
}

TEST_F(FormulaNombres, WhatIsNoReferenceOrValueIsRefused) {
    for (const char* valor : {"", "=", "12", "=12,5", "=Ajena!$A$1", "=Hoja1!R1C1", "=nada",
                              "=$A$65537", "=$IW$1", "=$A", "=Hoja1!$A$0", "=1:70000"}) {
        EXPECT_THROW(tokens(valor), excel::ErrorExcel) << valor;
    }
}

TEST_F(FormulaNombres, WhatCannotBeReadIsTold) {
    EXPECT_EQ(leida({0x3A, 9, 0, 0, 0, 0, 0}), "=?");
    EXPECT_EQ(leida({0x20, 0, 0, 0, 0, 0, 0, 0}), "=?");
    EXPECT_EQ(leida({}), "=?");
}

TEST_F(FormulaNombres, SheetsThatLookLikeSomethingElseAreQuoted) {
    libro.hojas = {"A1", "R1C1", "RC", "C", "2003", "Año", "a-b", "Hoja.1", "IV65536", "ABCD1"};
    libro.xtis.clear();
    const std::string esperadas[] = {"'A1'", "'R1C1'", "'RC'",   "'C'",       "'2003'",
                                     "Año",  "'a-b'",  "Hoja.1", "'IV65536'", "ABCD1"};
    for (size_t i = 0; i < libro.hojas.size(); ++i) {
        const Rgce rgce = tokens("='" + libro.hojas[i] + "'!$A$1");
        EXPECT_EQ(leida(rgce), "=" + esperadas[i] + "!$A$1");
        EXPECT_EQ(tokens(leida(rgce)), rgce);
    }
}

}  // namespace
}  // namespace bn::xls
