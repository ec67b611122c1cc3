// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "config/Setup.h"
#include "download/LineaTexto.h"
#include "link/pesaDX5.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/PlataformaDePrueba.h"
#include "tests/soporte/TramasDePrueba.h"

namespace bn {
namespace {

using prueba::PesadaDePrueba;

struct Sitio {
    int32_t campo;
    int16_t posicion;
    int16_t largo;
    std::string formato;
};

class LineaTexto : public testing::Test {
 protected:
    LineaTexto() {
        registro.fechaHora = "15/03/23 12:00";
        registro.matricula = "AB12";
    }
    /// The line with these fields only.
    std::string linea(const std::vector<Sitio>& sitios) {
        for (int32_t campo = 0; campo < kCamposPesada; ++campo) cfg.Posicion(campo, 0);
        for (const auto& sitio : sitios) {
            cfg.Posicion(sitio.campo, sitio.posicion);
            cfg.Largo(sitio.campo, sitio.largo);
            cfg.Formato(sitio.campo, sitio.formato);
        }
        return linea();
    }
    std::string linea() {
        pesaDX5 pesada(plataforma);
        EXPECT_EQ(pesada.DatosValidos(registro.datos()), 1);
        return lineaTexto(pesada, cfg);
    }

    prueba::CarpetaTemporal carpeta;
    PlataformaDePrueba plataforma{carpeta.ruta()};
    bn::Setup cfg{plataforma};
    PesadaDePrueba registro;
};

TEST_F(LineaTexto, TheDefaultLayoutGives76Characters) {
    EXPECT_EQ(linea(),
              "15/03/2023 12:00 AB12     0000057 00000011 00000022 00000033      13     100");
    EXPECT_EQ(linea().size(), 76U);
}

TEST_F(LineaTexto, FillsWithBlanksUpToALaterField) {
    const std::string texto =
        linea({{kFechaHora, 1, 16, "dd/mm/yyyy hh:nn"}, {kPesoTara, 30, 7, "######0"}});
    EXPECT_EQ(texto, "15/03/2023 12:00" + std::string(13, ' ') + "     13");
    EXPECT_EQ(texto.size(), 36U);
}

TEST_F(LineaTexto, StartsWithBlanksWhenNothingStandsFirst) {
    EXPECT_EQ(linea({{kMatricula, 4, 4, ""}}), "   AB12");
}

TEST_F(LineaTexto, AddsNothingBehindTheLastField) {
    EXPECT_EQ(linea({{kMatricula, 1, 4, ""}}), "AB12");
    EXPECT_EQ(linea({{kMatricula, 1, 6, ""}}), "AB12  ") << "its own width is part of the field";
}

TEST_F(LineaTexto, PutsAFieldRightBehindTheLine) {
    EXPECT_EQ(linea({{kMatricula, 1, 4, ""}, {kAlbaran, 5, 3, "000"}}), "AB12057");
}

TEST_F(LineaTexto, AFieldThatRunsPastTheEndDropsWhatStoodFromItsPosition) {
    EXPECT_EQ(linea({{kMatricula, 1, 4, ""}, {kAlbaran, 3, 5, "00000"}}), "AB00057");
}

TEST_F(LineaTexto, AFieldThatEndsWithTheLineOverwritesItsTail) {
    EXPECT_EQ(linea({{kMatricula, 1, 8, ""}, {kAlbaran, 6, 3, "000"}}), "AB12 057");
}

TEST_F(LineaTexto, AFieldInsideTheLineOverwritesItsOwnSpanOnly) {
    EXPECT_EQ(linea({{kMatricula, 1, 8, ""}, {kAlbaran, 2, 2, "00"}}), "A572    ");
    EXPECT_EQ(linea({{kMatricula, 20, 4, ""}, {kAlbaran, 1, 3, "000"}}), "057                AB12");
}

TEST_F(LineaTexto, FieldsArePlacedInTheirOwnOrderNotInThatOfTheirPositions) {
    // The plate comes first although it stands behind: the note number wins where they meet.
    EXPECT_EQ(linea({{kMatricula, 3, 4, ""}, {kAlbaran, 1, 4, "0000"}}), "005712");
    EXPECT_EQ(linea({{kFechaHora, 3, 4, "yyyy"}, {kMatricula, 1, 4, ""}}), "AB1223");
}

TEST_F(LineaTexto, AFieldOfNoWidthStillFillsUpToItsPosition) {
    prueba::escribirFichero(carpeta / "bnDX5.ini",
                            "[Texto]\r\nColumnas=0,0;5,0;0,0;0,0;0,0;0,0;0,0;0,0\r\n");
    const bn::Setup leida(plataforma);
    pesaDX5 pesada(plataforma);
    pesada.DatosValidos(registro.datos());
    EXPECT_EQ(lineaTexto(pesada, leida), "    ");
}

TEST_F(LineaTexto, PositionsAndWidthsOutOfRangeInTheFileDoNoHarm) {
    prueba::escribirFichero(
        carpeta / "bnDX5.ini",
        "[Texto]\r\nColumnas=-5,16;1,-8;300,2;0,9;0,0;0,0;0,0;0,0\r\nFormatos=yyyy;;00;0;;;;\r\n");
    const bn::Setup leida(plataforma);
    pesaDX5 pesada(plataforma);
    pesada.DatosValidos(registro.datos());
    EXPECT_EQ(lineaTexto(pesada, leida), std::string(299, ' ') + "57");
}

TEST_F(LineaTexto, CutsTextsOnTheRight) {
    EXPECT_EQ(linea({{kMatricula, 1, 2, ""}}), "AB");
    EXPECT_EQ(linea({{kFechaHora, 1, 10, "dd/mm/yyyy hh:nn"}}), "15/03/2023");
}

TEST_F(LineaTexto, ANumberThatDoesNotFitIsFilledWithHashes) {
    registro.albaran = "1234567";
    registro.neto = "12345.6";
    EXPECT_EQ(linea({{kAlbaran, 1, 6, "0000000"}}), "######");
    EXPECT_EQ(linea({{kAlbaran, 1, 7, "0000000"}}), "1234567");
    EXPECT_EQ(linea({{kPesoNeto, 2, 4, "######0"}}), " ####");
}

TEST_F(LineaTexto, NumbersStandAtTheRightOfEveryNumericField) {
    for (int32_t campo = kAlbaran; campo <= kPesoNeto; ++campo) {
        const std::string texto = linea({{campo, 1, 12, "0"}});
        EXPECT_EQ(texto.size(), 12U) << campo;
        EXPECT_EQ(texto.front(), ' ') << campo;
        EXPECT_NE(texto.back(), ' ') << campo;
    }
}

TEST_F(LineaTexto, WeightsAreFormattedWithADecimalComma) {
    EXPECT_EQ(linea({{kPesoTara, 1, 9, "#,##0.00"}}), "    12,50");
    EXPECT_EQ(linea({{kPesoNeto, 1, 9, "0.0"}}), "    100,3");
}

TEST_F(LineaTexto, AnEmptyPictureGivesThePlainValue) {
    EXPECT_EQ(linea({{kPesoTara, 1, 6, ""}}), "  12,5");
    EXPECT_EQ(linea({{kCodigoC, 1, 4, ""}}), "  33");
}

TEST_F(LineaTexto, APictureOfTheSettingsMayHoldSpanishLetters) {
    EXPECT_EQ(linea({{kAlbaran, 1, 5, "\"ñ€\"0"}}),
              " \xF1\x80"
              "57");
}

TEST_F(LineaTexto, ARecordThatDoesNotParseGivesEmptyAndZeroValues) {
    pesaDX5 pesada(plataforma);
    ASSERT_EQ(pesada.DatosValidos("x"), 0);
    EXPECT_EQ(lineaTexto(pesada, cfg),
              "30/12/1899 00:00          0000000 00000000 00000000 00000000       0       0");
}

TEST_F(LineaTexto, WithoutPositionsTheLineIsEmpty) { EXPECT_EQ(linea({}), ""); }

}  // namespace
}  // namespace bn
