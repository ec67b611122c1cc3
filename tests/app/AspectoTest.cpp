// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/Aspecto.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/PlataformaDePrueba.h"

namespace bn {
namespace {

TEST(Aspecto, EachStateHasItsButtonsItsPhaseAndItsResult) {
    using enum Boton;
    struct Fila {
        int32_t estado;
        std::vector<Boton> botones;
        int32_t fase;
        Resultado resultado;
    };
    const std::vector<Fila> tabla = {
        {0, {kCerr, kMini, kDesc}, 0, Resultado::kOculto},
        {1, {kCerr, kMini, kDesc}, 1, Resultado::kOculto},
        {2, {kMini, kAbor}, 2, Resultado::kOculto},
        {3, {kMini}, 3, Resultado::kOculto},
        {4, {kCerr, kMini, kDesc, kLimp}, 4, Resultado::kBien},
        {5, {kCerr, kMini, kDesc, kLimp}, 4, Resultado::kMal},
    };
    for (const auto& fila : tabla) {
        const Aspecto& aspecto = aspectoDeEstado(fila.estado);
        EXPECT_EQ(aspecto.botones, fila.botones) << fila.estado;
        EXPECT_EQ(aspecto.fase, fila.fase) << fila.estado;
        EXPECT_EQ(aspecto.resultado, fila.resultado) << fila.estado;
    }
}

TEST(Aspecto, AnUnknownStateLooksIdle) {
    for (const int32_t estado : {-1, 6, 2147483647, -2147483647 - 1}) {
        EXPECT_EQ(aspectoDeEstado(estado).fase, 0) << estado;
        EXPECT_EQ(aspectoDeEstado(estado).botones, aspectoDeEstado(0).botones) << estado;
    }
}

TEST(Aspecto, TheResultTellsHowManyWeighings) {
    EXPECT_EQ(textoDeResultado(0), "No se han recibido pesadas");
    EXPECT_EQ(textoDeResultado(1), "1 pesadas.\nRecibidas correctamente.");
    EXPECT_EQ(textoDeResultado(12345), "12345 pesadas.\nRecibidas correctamente.");
}

class Rotulos : public testing::Test {
 protected:
    prueba::CarpetaTemporal carpeta;
    PlataformaDePrueba plataforma{carpeta.ruta()};
};

TEST_F(Rotulos, ThePortShowsItsNumberItsParametersAndTheFramingCodes) {
    bn::Setup cfg(plataforma);
    EXPECT_EQ(rotuloDeCanal(cfg).find("Canal: 1  9600,N,8,1"), 0U);
    EXPECT_NE(rotuloDeCanal(cfg).find("CI:2   CF:3"), std::string::npos);
    cfg.canal(16);
    cfg.Params("300,e,7,2");
    cfg.CaracterInicial(std::string(1, '\0'));
    cfg.CaracterFinal("\xFF");
    EXPECT_EQ(rotuloDeCanal(cfg).find("Canal: 16  300,e,7,2"), 0U);
    EXPECT_NE(rotuloDeCanal(cfg).find("CI:0   CF:255"), std::string::npos);
}

TEST_F(Rotulos, TheDestinationsShowWhereTheyAre) {
    bn::Setup cfg(plataforma);
    cfg.LibroExcel("C:/Año/Pesadas.xls");
    cfg.HojaExcel("Enero");
    cfg.ArchivoTexto("C:/Año/Pesadas.txt");
    EXPECT_EQ(rotuloDeExcel(cfg).find("Hoja Excel:    C:/Año/Pesadas.xls"), 0U);
    EXPECT_NE(rotuloDeExcel(cfg).find("Enero"), std::string::npos);
    EXPECT_EQ(rotuloDeTexto(cfg), "Texto plano:  C:/Año/Pesadas.txt");
}

TEST_F(Rotulos, ADestinationNotInUseShowsNoPath) {
    bn::Setup cfg(plataforma);
    cfg.UsoExcel(false);
    cfg.UsoTexto(false);
    EXPECT_EQ(rotuloDeExcel(cfg), "Hoja Excel:    ");
    EXPECT_EQ(rotuloDeTexto(cfg), "Texto plano:  ");
}

TEST(TextoDePendientes, CountsTheWeighingsInGoodSpanishAndSaysWhy) {
    EXPECT_EQ(textoDePendientes(0, ""), "");
    EXPECT_EQ(textoDePendientes(1, "Falta sitio."), "1 pesada pendiente de guardar. Falta sitio.");
    EXPECT_EQ(textoDePendientes(12, ""), "12 pesadas pendientes de guardar.");
}

}  // namespace
}  // namespace bn
