// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <set>

#include "download/Tramos.h"
#include "tests/soporte/FicheroSimulado.h"

namespace bn {
namespace {

TEST(Tramos, NewHoldNothing) {
    const Tramos nada;
    EXPECT_TRUE(nada.vacio());
    EXPECT_EQ(nada.cuantos(), 0U);
    EXPECT_EQ(nada.texto(), "");
    EXPECT_FALSE(nada.contiene(0));
}

TEST(Tramos, JoinRunsThatTouchOrOverlap) {
    Tramos unos;
    unos.anadir(0, 2);
    unos.anadir(5, 6);
    EXPECT_EQ(unos.texto(), "0-1,5");
    unos.anadir(2, 5);
    EXPECT_EQ(unos.texto(), "0-5");
    unos.anadir(3, 9);
    EXPECT_EQ(unos.texto(), "0-8");
    unos.anadir(4, 4);
    EXPECT_EQ(unos.cuantos(), 9U) << "an empty run adds nothing";
}

TEST(Tramos, HoldWhatASetHoldsWhateverTheOrder) {
    Azar azar(7);
    for (int vez = 0; vez < 200; ++vez) {
        Tramos unos;
        std::set<std::size_t> esperados;
        for (int i = 0; i < 12; ++i) {
            const std::size_t desde = azar.hasta(40);
            const std::size_t hasta = desde + azar.hasta(6);
            unos.anadir(desde, hasta);
            for (std::size_t n = desde; n < hasta; ++n) esperados.insert(n);
        }
        EXPECT_EQ(unos.cuantos(), esperados.size());
        for (std::size_t n = 0; n < 50; ++n) EXPECT_EQ(unos.contiene(n), esperados.contains(n));
        EXPECT_EQ(Tramos::deTexto(unos.texto()), unos);
    }
}

TEST(Tramos, TakeInOthers) {
    Tramos unos = *Tramos::deTexto("0-3,9");
    unos.anadir(*Tramos::deTexto("4,7-8"));
    EXPECT_EQ(unos.texto(), "0-4,7-9");
}

TEST(Tramos, AreNotReadFromWhatIsNoList) {
    for (const char* texto :
         {"x", "-", "1-", "-1", "3-2", "1--2", ",", "1,,2", " 1", "1 ", "1.5", "0x1",
          "99999999999999999999", "18446744073709551615", "0-18446744073709551615"}) {
        EXPECT_EQ(Tramos::deTexto(texto), std::nullopt) << texto;
    }
    EXPECT_EQ(Tramos::deTexto(""), Tramos());
}

}  // namespace
}  // namespace bn
