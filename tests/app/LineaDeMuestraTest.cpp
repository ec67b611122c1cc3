// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "app/LineaDeMuestra.h"
#include "config/Setup.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/PlataformaDePrueba.h"

namespace bn {
namespace {

class LineaDeMuestraTest : public testing::Test {
 protected:
    LineaDeMuestraTest() {
        const bn::Setup cfg(plataforma);
        f.cargar(cfg);
    }

    prueba::CarpetaTemporal carpeta;
    PlataformaDePrueba plataforma{carpeta.ruta()};
    FormularioTxt f;
};

TEST_F(LineaDeMuestraTest, ShowsTheLineOfTheDefaultLayout) {
    EXPECT_EQ(lineaDeMuestra(plataforma, f),
              "14/03/2024 10:25 1234BCD  0000057 00000011 00000022 00000033   12340   25660");
}

TEST_F(LineaDeMuestraTest, FollowsEachEdit) {
    for (int campo = 1; campo < 8; ++campo) f.alternar(campo);
    f.escribir(0, FormularioTxt::kPosicion, "3");
    f.escribir(0, FormularioTxt::kLargo, "5");
    f.escribir(0, FormularioTxt::kFormato, "hh:nn");
    EXPECT_EQ(lineaDeMuestra(plataforma, f), "  10:25");
    f.alternar(0);
    EXPECT_EQ(lineaDeMuestra(plataforma, f), "");
}

TEST_F(LineaDeMuestraTest, GivesUtf8) {
    f.escribir(2, FormularioTxt::kFormato, "0\"ñ\"");
    EXPECT_NE(lineaDeMuestra(plataforma, f).find("ñ"), std::string::npos);
}

TEST_F(LineaDeMuestraTest, WritesNothing) {
    std::filesystem::remove(carpeta / "bnDX5.ini");
    lineaDeMuestra(plataforma, f);
    EXPECT_TRUE(std::filesystem::is_empty(carpeta.ruta()));
}

}  // namespace
}  // namespace bn
