// SPDX-License-Identifier: MIT
// What stands at the desk, without its window.
#include "tests/app/PuestoDePrueba.h"

namespace bn {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr int32_t kCincoMinutos = 5 * 60 * 1000;

TEST_F(PuestoPrueba, DownloadsWhenAPersonWantsIt) {
    configurar(0, true, true);
    arrancar();
    descargar({1, 2});
    EXPECT_EQ(puesto->controlador().Estado(), 4);
    EXPECT_THAT(enTexto(), ElementsAre(1, 2));
    EXPECT_THAT(enHoja(), ElementsAre(1, 2));
    EXPECT_EQ(pendientes(), 0);
    EXPECT_EQ(motivo(), "");
    EXPECT_THAT(sobras(), IsEmpty());
    EXPECT_THAT(plataforma.mensajes, IsEmpty());
}

TEST_F(PuestoPrueba, DoesNotStartOverADownloadThatRuns) {
    configurar(0, true, true);
    arrancar();
    ASSERT_TRUE(puesto->descargar());
    EXPECT_FALSE(puesto->descargar());
    EXPECT_THAT(plataforma.mensajes, IsEmpty());
}

TEST_F(PuestoPrueba, TheCountdownStartsDownloadsAndBeginsAgainAfterEach) {
    configurar(30, false, true);
    arrancar();
    EXPECT_EQ(puesto->cuenta().texto(), "30");
    pasar(30'000);
    EXPECT_EQ(puesto->controlador().Estado(), 1);
    llegan({1});
    EXPECT_EQ(puesto->controlador().Estado(), 4);
    EXPECT_EQ(puesto->cuenta().texto(), "30");
    EXPECT_THAT(enTexto(), ElementsAre(1));
}

TEST_F(PuestoPrueba, WhatFailsUnaskedIsShownAndToldOutsideAndStopsNothing) {
    configurar(30, true, true);
    arrancar();
    disco.esconder(oficina);
    const Descarga* const primero = &puesto->controlador();
    pasar(30'000);
    llegan({1, 2});
    EXPECT_EQ(puesto->controlador().Estado(), 3) << "the failed call has only just unwound";
    pasar(1);
    EXPECT_EQ(puesto->controlador().Estado(), 0);
    EXPECT_EQ(plataforma.excel.instanciasAbiertas, 0);
    EXPECT_THAT(enHoja(), ElementsAre(1, 2)) << "it had no part in the failure";
    EXPECT_EQ(pendientes(), 2);
    EXPECT_THAT(motivo(), HasSubstr("Pesadas.txt"));
    EXPECT_THAT(motivo(), HasSubstr("carpeta"));
    EXPECT_THAT(plataforma.mensajes, IsEmpty());
    EXPECT_THAT(fuera, ElementsAre(motivo()));
    EXPECT_TRUE(puesto->cuenta().enMarcha());
    (void)primero;

    pasar(30'000);
    llegan({3});
    pasar(1);
    EXPECT_EQ(pendientes(), 3);
    EXPECT_THAT(enHoja(), ElementsAre(1, 2, 3));
    EXPECT_THAT(fuera, SizeIs(1)) << "the same cause is not told again";

    disco.esconder(oficina, false);
    pasar(30'000);
    llegan({4});
    EXPECT_EQ(puesto->controlador().Estado(), 4);
    EXPECT_EQ(pendientes(), 0);
    EXPECT_THAT(enTexto(), ElementsAre(1, 2, 3, 4));
    EXPECT_THAT(enHoja(), ElementsAre(1, 2, 3, 4));
    pasar(30'000);
    llegan({});
    EXPECT_THAT(sobras(), IsEmpty());
    EXPECT_THAT(plataforma.mensajes, IsEmpty());
}

TEST_F(PuestoPrueba, WhatAPersonAskedForIsToldInAMessageOnceAllIsInOrderAgain) {
    configurar(0, true, true);
    arrancar();
    disco.esconder(oficina);
    ASSERT_TRUE(puesto->descargar());
    bool enOrden = false;
    puesto->cambio.conectar([&] { enOrden = puesto->controlador().Estado() == 0; });
    llegan({1});
    EXPECT_THAT(plataforma.mensajes, IsEmpty());
    pasar(1);
    ASSERT_THAT(plataforma.mensajes, SizeIs(1));
    EXPECT_THAT(plataforma.mensajes[0], HasSubstr("No se han podido guardar las pesadas"));
    EXPECT_THAT(plataforma.mensajes[0], HasSubstr("Pesadas.txt"));
    EXPECT_THAT(plataforma.mensajes[0], HasSubstr("1 pesada pendiente"));
    EXPECT_TRUE(enOrden);
    EXPECT_EQ(plataforma.excel.instanciasAbiertas, 0);
    EXPECT_THAT(fuera, IsEmpty()) << "told once";
    EXPECT_THAT(enHoja(), ElementsAre(1));
}

TEST_F(PuestoPrueba, AFailureThatIsOverByTheSecondTryNeedsNoMessage) {
    configurar(0, true, true);
    arrancar();
    plataforma.excel.fallar("Application.Quit", "El servidor ha fallado");
    descargar({1, 2});
    pasar(1);
    pasar(kCincoMinutos);
    EXPECT_EQ(pendientes(), 0) << motivo();
    EXPECT_THAT(enHoja(), ElementsAre(1, 2)) << "saved once, although the quitting failed";
    EXPECT_THAT(enTexto(), ElementsAre(1, 2));
}

TEST_F(PuestoPrueba, SavesAtTheStartWhatAKilledProgramLeft) {
    configurar(0, true, true);
    arrancar();
    ASSERT_TRUE(puesto->descargar());
    recibir(datos(1));
    recibir(datos(2));
    matar();
    arrancar();
    EXPECT_EQ(pendientes(), 2);
    EXPECT_NE(motivo(), "");
    EXPECT_THAT(enTexto(), IsEmpty()) << "the window is to stand first";
    pasar(1);
    EXPECT_THAT(enTexto(), ElementsAre(1, 2));
    EXPECT_THAT(enHoja(), ElementsAre(1, 2));
    EXPECT_EQ(pendientes(), 0);
    descargar({3});
    EXPECT_THAT(enTexto(), ElementsAre(1, 2, 3));
    EXPECT_THAT(sobras(), IsEmpty());
}

TEST_F(PuestoPrueba, ALineWhoseFlushHasFailedCountsOnlyOnceItIsOnTheDisk) {
    const auto vuelcaLineas = [this](const Operacion& operacion) {
        return operacion.tipo == Operacion::Tipo::kVolcar && operacion.ruta == lineas;
    };
    for (const bool repasa : {false, true}) {
        for (std::uint64_t semilla = 0; semilla < 8; ++semilla) {
            disco.crearCarpeta(oficina);
            if (disco.existe(lineas)) disco.quitar(lineas);
            configurar(0, false, true);
            arrancar();
            disco.fallar(ErrorFichero::Causa::kAveria, vuelcaLineas);
            descargar({1, 2});
            pasar(1);
            EXPECT_EQ(pendientes(), 2);
            if (repasa) pasar(kCincoMinutos);
            EXPECT_EQ(pendientes(), repasa ? 0 : 2);
            disco.cortarCorriente(semilla);
            puesto.reset();
            disco.revivir();
            arrancar();
            pasar(1);
            EXPECT_THAT(enTexto(), ElementsAre(1, 2)) << repasa << " " << semilla;
            puesto.reset();
        }
    }
}

TEST_F(PuestoPrueba, ATextFileWhoseFolderIsAwayHasNotBeenTakenByItsReader) {
    configurar(0, false, true);
    arrancar();
    disco.fallar(ErrorFichero::Causa::kAveria, [this](const Operacion& operacion) {
        return operacion.tipo == Operacion::Tipo::kVolcar && operacion.ruta == lineas;
    });
    descargar({1, 2});
    pasar(1);
    EXPECT_EQ(pendientes(), 2);
    disco.esconder(oficina);
    pasar(kCincoMinutos);
    EXPECT_EQ(pendientes(), 2);
    disco.esconder(oficina, false);
    pasar(kCincoMinutos);
    EXPECT_EQ(pendientes(), 0);
    EXPECT_THAT(enTexto(), ElementsAre(1, 2)) << "they stood there all the time";
}

TEST_F(PuestoPrueba, TriesAgainWhenNothingHasBeenTriedForFiveMinutes) {
    configurar(0, false, true);
    arrancar();
    disco.esconder(oficina);
    descargar({1});
    pasar(1);
    disco.esconder(oficina, false);
    pasar(kCincoMinutos - 1000);
    EXPECT_THAT(enTexto(), IsEmpty());
    pasar(1000);
    EXPECT_THAT(enTexto(), ElementsAre(1));
    EXPECT_EQ(pendientes(), 0);
    EXPECT_THAT(fuera, IsEmpty());
}

TEST_F(PuestoPrueba, TheFiveMinutesDoNotDisturbADownload) {
    configurar(0, false, true);
    arrancar();
    disco.esconder(oficina);
    descargar({1});
    pasar(1);
    disco.esconder(oficina, false);
    puesto->configuracion().Timeout(32000);
    pasar(kCincoMinutos - 1000);
    ASSERT_TRUE(puesto->descargar());
    recibir(datos(2));
    pasar(2000);
    EXPECT_EQ(puesto->controlador().Estado(), 2);
    EXPECT_THAT(enTexto(), IsEmpty());
    recibir("0001");
    EXPECT_THAT(enTexto(), ElementsAre(1, 2)) << "the oldest first";
}

TEST_F(PuestoPrueba, SavesNowWhenAPersonWantsItAndTellsWhyNot) {
    configurar(0, false, true);
    arrancar();
    disco.esconder(oficina);
    descargar({1});
    pasar(1);
    plataforma.mensajes.clear();
    puesto->guardarPendientes();
    ASSERT_THAT(plataforma.mensajes, SizeIs(1));
    EXPECT_THAT(plataforma.mensajes[0], HasSubstr("1 pesada pendiente"));
    disco.esconder(oficina, false);
    puesto->guardarPendientes();
    EXPECT_THAT(plataforma.mensajes, SizeIs(1));
    EXPECT_THAT(enTexto(), ElementsAre(1));
}

TEST_F(PuestoPrueba, BoxesOfTheSpreadsheetBecomeTheWindowsTextWhileNobodyAsked) {
    configurar(30, true, false);
    arrancar();
    plataforma.excel.errorAlArrancar = "Error 429";
    pasar(30'000);
    llegan({1});
    pasar(1);
    EXPECT_THAT(plataforma.mensajes, IsEmpty());
    std::string todo = motivo();
    for (const auto& aviso : puesto->avisos()) todo += "\n" + aviso;
    EXPECT_THAT(todo, HasSubstr("Error 429"));
    plataforma.excel.errorAlArrancar.clear();
    pasar(kCincoMinutos);
    EXPECT_THAT(enHoja(), ElementsAre(1));
    EXPECT_THAT(puesto->avisos(), IsEmpty());
}

TEST_F(PuestoPrueba, WithoutADestinationTheWeighingsWaitForOne) {
    configurar(0, false, false);
    arrancar();
    descargar({1, 2});
    EXPECT_EQ(puesto->controlador().Estado(), 4);
    EXPECT_EQ(puesto->controlador().numRecibidas(), 2);
    EXPECT_EQ(pendientes(), 2);
    EXPECT_THAT(motivo(), HasSubstr("marque"));
    EXPECT_THAT(fuera, IsEmpty()) << "no failure";
    puesto->configuracion().UsoTexto(true);
    descargar({3});
    EXPECT_THAT(enTexto(), ElementsAre(1, 2, 3));
    EXPECT_EQ(pendientes(), 0);
}

TEST_F(PuestoPrueba, ASpreadsheetMissingAtOneStartHoldsItsWeighingsUntilItIsBack) {
    configurar(0, true, true);
    plataforma.excel.errorAlArrancar = "Error 429";
    arrancar();
    EXPECT_FALSE(puesto->hayExcel());
    EXPECT_FALSE(puesto->configuracion().UsoExcel());
    descargar({1, 2});
    EXPECT_EQ(puesto->controlador().Estado(), 4);
    EXPECT_THAT(enTexto(), ElementsAre(1, 2));
    EXPECT_EQ(pendientes(), 2);
    EXPECT_THAT(motivo(), HasSubstr("MS Excel"));
    EXPECT_THAT(fuera, IsEmpty());
    puesto.reset();
    plataforma.excel.errorAlArrancar.clear();
    arrancar();
    EXPECT_TRUE(puesto->configuracion().UsoExcel());
    pasar(1);
    EXPECT_THAT(enHoja(), ElementsAre(1, 2));
    EXPECT_THAT(enTexto(), ElementsAre(1, 2));
    EXPECT_EQ(pendientes(), 0);
}

TEST_F(PuestoPrueba, AWorksheetThatAPersonSwitchedOffStaysOff) {
    configurar(0, false, true);
    plataforma.excel.errorAlArrancar = "Error 429";
    arrancar();
    puesto.reset();
    plataforma.excel.errorAlArrancar.clear();
    arrancar();
    EXPECT_FALSE(puesto->configuracion().UsoExcel());
    descargar({1});
    EXPECT_EQ(pendientes(), 0);
}

TEST_F(PuestoPrueba, MayNotBeClosedWhileWeighingsArriveOrAreSaved) {
    configurar(0, true, true);
    arrancar();
    std::vector<bool> alGuardar;
    puesto->CambioEstado.conectar([&](int32_t& estado) {
        if (estado == 3) alGuardar.push_back(puesto->puedeCerrarse());
    });
    EXPECT_TRUE(puesto->puedeCerrarse());
    ASSERT_TRUE(puesto->descargar());
    EXPECT_TRUE(puesto->puedeCerrarse()) << "nothing has been acknowledged";
    recibir(datos(1));
    EXPECT_FALSE(puesto->puedeCerrarse());
    recibir("0001");
    EXPECT_THAT(alGuardar, ElementsAre(false));
    EXPECT_TRUE(puesto->puedeCerrarse());
}

TEST_F(PuestoPrueba, EndedInTheMiddleItAcknowledgesNothingMoreAndLosesNothing) {
    configurar(0, true, true);
    arrancar();
    ASSERT_TRUE(puesto->descargar());
    recibir(datos(1));
    puesto.reset();
    EXPECT_THROW(plataforma.puerto(), std::logic_error) << "the port is gone";
    arrancar();
    pasar(1);
    EXPECT_THAT(enTexto(), ElementsAre(1));
    EXPECT_THAT(enHoja(), ElementsAre(1));
}

TEST_F(PuestoPrueba, AnErrorOutsideASavePassSavesWhatHadArrivedAndTellsTheWindow) {
    configurar(30, false, true);
    arrancar();
    pasar(30'000);
    recibir(datos(1));
    puesto->PesadaRecibida.conectar([](pesaDX5&) { throw std::runtime_error("sin memoria"); });
    recibir(datos(2));
    pasar(1);
    EXPECT_EQ(puesto->controlador().Estado(), 0);
    EXPECT_THAT(enTexto(), ElementsAre(1, 2));
    EXPECT_EQ(pendientes(), 0);
    EXPECT_THAT(puesto->avisos(), ElementsAre(HasSubstr("sin memoria")));
    EXPECT_THAT(fuera, ElementsAre(HasSubstr("sin memoria")));
    EXPECT_THAT(plataforma.mensajes, IsEmpty());
    EXPECT_TRUE(puesto->cuenta().enMarcha());
}

TEST_F(PuestoPrueba, AnErrorOfAClickIsToldAndLeavesADownloadAlone) {
    configurar(0, false, true);
    arrancar();
    ASSERT_TRUE(puesto->descargar());
    recibir(datos(1));
    puesto->atender([] { throw std::runtime_error("acceso denegado"); });
    EXPECT_THAT(plataforma.mensajes, ElementsAre("Se ha producido un error:\nacceso denegado"));
    recibir("0001");
    EXPECT_EQ(puesto->controlador().Estado(), 4);
}

TEST_F(PuestoPrueba, WhatCannotBePutAsideKeepsTheNextDownloadFromStartingAndIsToldOnce) {
    configurar(30, false, true);
    arrancar();
    disco.esconder(oficina);
    pasar(30'000);
    llegan({1});
    pasar(1);
    fuera.clear();
    disco.fallar(ErrorFichero::Causa::kSinPermiso, Operacion::Tipo::kRenombrar,
                 DiscoSimulado::kSiempre);
    EXPECT_FALSE(puesto->descargar());
    EXPECT_THAT(puesto->avisos(), ElementsAre(HasSubstr("No se puede empezar otra descarga")));
    EXPECT_THAT(disco.contenido(programa / "bnGuardo.txt"), HasSubstr(datos(1)));
    pasar(120'000);
    EXPECT_TRUE(puesto->cuenta().enMarcha());
    EXPECT_THAT(fuera, SizeIs(1));
    EXPECT_THAT(plataforma.mensajes, IsEmpty());
    disco.sanar();
    pasar(31'000);
    llegan({2});
    EXPECT_THAT(enTexto(), ElementsAre(1, 2));
    EXPECT_EQ(pendientes(), 0);
}

TEST_F(PuestoPrueba, DiscardsOnlyWhatItHasKept) {
    configurar(0, false, true);
    arrancar();
    disco.esconder(oficina);
    descargar({1, 2});
    pasar(1);
    plataforma.mensajes.clear();
    disco.fallar(ErrorFichero::Causa::kLleno, Operacion::Tipo::kNuevo, DiscoSimulado::kSiempre);
    EXPECT_FALSE(puesto->descartarPendientes());
    EXPECT_THAT(plataforma.mensajes, SizeIs(1));
    EXPECT_EQ(pendientes(), 2);
    disco.sanar();
    disco.esconder(oficina);
    EXPECT_TRUE(puesto->descartarPendientes());
    EXPECT_EQ(pendientes(), 0);
    EXPECT_EQ(disco.contenido(programa / "bnDescartadas-20230315-120000.txt"),
              datos(1) + "\r\n" + datos(2) + "\r\n");
}

/// A week of automatic downloads, with the office's drive away every night.
TEST_F(PuestoPrueba, AWeekWithTheDestinationAwayAtNightNeedsNobody) {
    constexpr int32_t kPeriodo = 600;
    constexpr int32_t kDescargasAlDia = 24 * 3600 / kPeriodo;
    configurar(kPeriodo, true, true);
    arrancar();
    std::vector<int32_t> todas;
    for (int32_t descarga = 0; descarga < 7 * kDescargasAlDia; ++descarga) {
        const int32_t hora = descarga % kDescargasAlDia * 24 / kDescargasAlDia;
        const bool deNoche = hora >= 20 || hora < 6;
        disco.esconder(oficina, deNoche);
        plataforma.excel.errorAlArrancar = deNoche ? "No se encuentra el servidor" : "";
        for (int32_t segundos = 0; puesto->controlador().Estado() != 1; ++segundos) {
            ASSERT_LE(segundos, kPeriodo + 10) << "the countdown stands still";
            pasar(1000);
        }
        todas.push_back(descarga + 1);
        llegan({todas.back()});
        pasar(1);
    }
    disco.esconder(oficina, false);
    plataforma.excel.errorAlArrancar.clear();
    pasar(kPeriodo * 1000);
    llegan({});
    EXPECT_EQ(pendientes(), 0) << motivo();
    EXPECT_EQ(enTexto(), todas);
    EXPECT_EQ(enHoja(), todas);
    EXPECT_THAT(plataforma.mensajes, IsEmpty());
    EXPECT_LE(fuera.size(), 2U * 8U) << "once a night, and once for each cause";
    EXPECT_THAT(sobras(), IsEmpty());
}

}  // namespace
}  // namespace bn
