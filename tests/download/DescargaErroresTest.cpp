// SPDX-License-Identifier: MIT
// Errors, and what arrives at awkward moments.
#include "tests/download/DescargaDePrueba.h"

namespace bn {
namespace {

using prueba::leerFichero;
using prueba::trama;
using testing::ElementsAre;
using testing::IsEmpty;
using Textos = std::vector<std::string>;

TEST_F(DescargaPrueba, AWeighingThatCannotBeStoredEndsTheDownloadUnacknowledged) {
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no disk is full here";
    empezar();
    llegaPesada(1);
    const std::string guardado = leerFichero(almacen);
    std::filesystem::remove(almacen);
    std::filesystem::create_symlink("/dev/full", almacen);
    ocurrido();
    enviado();
    alCambiar = [&](int32_t estado) {  // the disk recovers
        if (estado != 3) return;
        std::filesystem::remove(almacen);
        prueba::escribirFichero(almacen, guardado);
    };
    llegaPesada(2);
    EXPECT_THAT(ocurrido(), ElementsAre("estado 3", "estado 5"));
    EXPECT_EQ(des.Explicacion(), kInterrumpida);
    EXPECT_EQ(des.numRecibidas(), 1);
    EXPECT_EQ(enviado(), "");
    EXPECT_EQ(leerFichero(texto), linea(1));
}

TEST_F(DescargaPrueba, AnErrorOfTheSavePassReachesWhoeverDeliveredTheSummary) {
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no disk is full here";
    std::filesystem::create_symlink("/dev/full", texto);
    empezar();
    llegaPesada(1);
    ocurrido();
    enviado();
    EXPECT_THROW(llegaContador("0001"), ErrorFichero);
    EXPECT_THAT(ocurrido(), ElementsAre("estado 3"));
    EXPECT_EQ(des.Estado(), 3);
    EXPECT_EQ(des.numRecibidas(), 1);
    EXPECT_FALSE(des.iniciarProceso());
    EXPECT_EQ(leerFichero(almacen), datos(1) + "\r\n");
    EXPECT_EQ(enviado(), "") << "the counter record is acknowledged after the save pass";
}

TEST_F(DescargaPrueba, NeverCallsADownloadCorrectWhoseStoreCannotBeReadBack) {
    empezar();
    llegaPesada(1);
    ocurrido();
    std::filesystem::remove(almacen);
    EXPECT_THROW(llegaContador("0001"), ErrorFichero);
    EXPECT_THAT(ocurrido(), ElementsAre("estado 3"));
}

TEST_F(DescargaPrueba, AnErrorOfTheSavePassAfterASilenceLeavesTheTimer) {
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no disk is full here";
    std::filesystem::create_symlink("/dev/full", texto);
    empezar();
    llegaPesada(1);
    EXPECT_THROW(silencio(), ErrorFichero);
    EXPECT_EQ(des.Estado(), 3);
    EXPECT_NO_THROW(plataforma.avanzar(60000)) << "the channel is at rest";
}

TEST_F(DescargaPrueba, QuitsAWorkbookLeftOpenByAFailedSavePass) {
    cfg->UsoExcel(true);
    {
        Descarga otra(plataforma);
        otra.DatosCfg(cfg);
        ASSERT_TRUE(otra.iniciarProceso());
        llegaPesada(1);
        plataforma.excel.fallar("Workbook.SaveAs", "disco lleno");
        EXPECT_THROW(llegaContador("0001"), excel::ErrorExcel);
        EXPECT_EQ(plataforma.excel.instanciasAbiertas, 0) << "before anybody is told";
    }
    EXPECT_EQ(plataforma.excel.objetosVivos, 0);
}

TEST_F(DescargaPrueba, LetsGoOfTheSettingsItWasGiven) {
    std::weak_ptr<bn::Setup> ajustes = cfg;
    {
        Descarga otra(plataforma);
        otra.DatosCfg(std::make_shared<bn::Setup>(plataforma));
        otra.DatosCfg(cfg);
        EXPECT_GT(ajustes.use_count(), 2);
    }
    EXPECT_EQ(ajustes.use_count(), 2) << "the fixture's own and its controller's";
}

TEST_F(DescargaPrueba, ClosesThePortWhenItGoes) {
    auto otra = std::make_unique<Descarga>(plataforma);
    otra->DatosCfg(cfg);
    ASSERT_TRUE(otra->iniciarProceso());
    otra.reset();
    EXPECT_NO_THROW(plataforma.avanzar(10000)) << "nor does its timer fire any more";
    EXPECT_THROW(plataforma.puerto(), std::logic_error);
}

TEST_F(DescargaPrueba, WhatArrivesInOneBurstIsHandledFrameByFrame) {
    empezar();
    plataforma.puerto().recibir(trama(datos(1)) + trama(datos(2)));
    EXPECT_EQ(des.numRecibidas(), 1);
    plataforma.puerto().recibir("");
    EXPECT_EQ(des.numRecibidas(), 2);
}

TEST_F(DescargaPrueba, FramesThatArriveWhileOneIsHandledWaitForTheirTurn) {
    bool primera = true;
    Textos alVolver;
    des.PesadaRecibida.conectar([&](pesaDX5&) {
        if (!std::exchange(primera, false)) return;
        llegaPesada(2);
        llegaContador("0002");
        alVolver = sucesos;
    });
    empezar();
    llegaPesada(1);
    EXPECT_THAT(alVolver, ElementsAre("estado 1", "estado 2", "pesada 1 van 1"));
    EXPECT_EQ(des.Estado(), 4);
    EXPECT_EQ(leerFichero(texto), linea(1) + linea(2));
}

}  // namespace
}  // namespace bn
