// SPDX-License-Identifier: MIT
// What becomes of weighings that could not be saved, as the controller's owner sees it.
#include <optional>
#include <tuple>

#include "tests/download/DescargaDePrueba.h"

namespace bn {
namespace {

using prueba::ficherosQueEmpiezan;
using prueba::leerFichero;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Textos = std::vector<std::string>;

class PendientesPrueba : public DescargaPrueba {
 protected:
    void SetUp() override {
        DescargaPrueba::SetUp();
        cfg->UsoExcel(true);
        cfg->LibroExcel(kLibro);
        cfg->HojaExcel("Pesadas");
        ponerLibro(plataforma.excel, kLibro, {"Pesadas"});
        relevar();
    }
    void relevar() {
        otra.reset();
        otra.emplace(plataforma);
        otra->DatosCfg(cfg);
    }
    /// One download of these; false when its pass has failed, and the controller has been replaced.
    bool descargar(const std::vector<int32_t>& albaranes) {
        EXPECT_TRUE(otra->iniciarProceso()) << testing::PrintToString(otra->avisos());
        for (const int32_t albaran : albaranes) llegaPesada(albaran);
        try {
            llegaContador("000" + std::to_string(albaranes.size()));
            return true;
        } catch (const std::exception&) {
            const auto memoria = otra->memoria();
            relevar();
            otra->memoria(memoria);
            return false;
        }
    }
    /// The delivery note numbers in the sheet, from the first row on.
    std::vector<int32_t> hoja(const std::string& libro = kLibro, int16_t columna = 3) {
        std::vector<int32_t> numeros;
        const HojaSimulada& una = plataforma.excel.disco[libro].hoja("Pesadas");
        for (int32_t fila = 1; una.celdas.contains({fila, columna}); ++fila) {
            numeros.push_back(std::get<int32_t>(una.celda(fila, columna)));
        }
        return numeros;
    }
    static std::string lineas(const std::vector<int32_t>& albaranes) {
        std::string todas;
        for (const int32_t albaran : albaranes) todas += linea(albaran);
        return todas;
    }
    void sinCarpetaDeTexto() { cfg->ArchivoTexto(ficheros::aTexto(carpeta / "no" / "P.txt")); }
    void conCarpetaDeTexto() { cfg->ArchivoTexto(ficheros::aTexto(texto)); }
    Textos enLaCarpeta() { return ficherosQueEmpiezan(carpeta.ruta(), "bn"); }

    static inline const std::string kLibro = "Pesadas.xls";
    std::optional<Descarga> otra;
};

TEST_F(PendientesPrueba, WithoutFailureNothingWaitsAndNothingIsLeftOver) {
    EXPECT_TRUE(descargar({1, 2}));
    EXPECT_EQ(otra->numPendientes(), 0);
    EXPECT_EQ(otra->motivoPendientes(), "");
    EXPECT_TRUE(otra->guardarPendientes());
    EXPECT_THAT(enLaCarpeta(), ElementsAre("bnGuardo.nota", "bnGuardo.txt"));
}

TEST_F(PendientesPrueba, AFailureWithNothingPendingEndsThePassForBothAndWaitsWithItsReason) {
    sinCarpetaDeTexto();
    EXPECT_FALSE(descargar({1, 2}));
    EXPECT_THAT(hoja(), IsEmpty());
    EXPECT_EQ(otra->numPendientes(), 2);
    EXPECT_THAT(otra->motivoPendientes(), HasSubstr("vuelva a crearla"));
    EXPECT_TRUE(otra->hayFallo());
}

TEST_F(PendientesPrueba, AskedForEachDestinationIsServedByItself) {
    sinCarpetaDeTexto();
    descargar({1, 2});
    EXPECT_FALSE(otra->guardarPendientes());
    EXPECT_THAT(hoja(), ElementsAre(1, 2));
    EXPECT_EQ(otra->numPendientes(), 2);
    conCarpetaDeTexto();
    EXPECT_TRUE(otra->guardarPendientes());
    EXPECT_THAT(hoja(), ElementsAre(1, 2)) << "once";
    EXPECT_EQ(leerFichero(texto), lineas({1, 2}));
    EXPECT_FALSE(otra->hayFallo());
}

TEST_F(PendientesPrueba, WithPendingOnesANewDownloadServesEachDestinationTheOldestFirst) {
    sinCarpetaDeTexto();
    descargar({1});
    EXPECT_FALSE(descargar({2, 3}));
    EXPECT_THAT(hoja(), ElementsAre(1, 2, 3));
    EXPECT_FALSE(descargar({4}));
    EXPECT_EQ(otra->numPendientes(), 4);
    EXPECT_THAT(enLaCarpeta(), Contains("bnGuardo-000001.txt"));
    EXPECT_THAT(enLaCarpeta(), Contains("bnGuardo-000002.nota"));
    conCarpetaDeTexto();
    EXPECT_TRUE(descargar({5}));
    EXPECT_EQ(leerFichero(texto), lineas({1, 2, 3, 4, 5}));
    EXPECT_THAT(hoja(), ElementsAre(1, 2, 3, 4, 5));
    EXPECT_THAT(enLaCarpeta(), ElementsAre("bnGuardo.nota", "bnGuardo.txt"));
}

TEST_F(PendientesPrueba, TheNamedRowIsLookedForOnceForAllBatches) {
    plataforma.excel.disco[kLibro].nombres = {{"bnUltima", "=10"}};
    for (const int32_t albaran : {1, 2}) {
        plataforma.excel.fallar("Workbook.SaveAs", "disco lleno");
        descargar({albaran});
    }
    plataforma.excel.olvidar();
    EXPECT_TRUE(descargar({3}));
    const auto& una = plataforma.excel.disco[kLibro].hoja("Pesadas");
    EXPECT_EQ(una.celda(10, 3), Variante(1));
    EXPECT_EQ(una.celda(11, 3), Variante(2));
    EXPECT_EQ(una.celda(12, 3), Variante(3));
}

TEST_F(PendientesPrueba, AnExcelWhoseQuitFailsAfterAGoodSaveHasThemOnce) {
    plataforma.excel.fallar("Application.Quit", "no sale");
    EXPECT_FALSE(descargar({1, 2}));
    EXPECT_THAT(hoja(), ElementsAre(1, 2));
    EXPECT_EQ(otra->numPendientes(), 2);
    EXPECT_TRUE(otra->guardarPendientes());
    EXPECT_THAT(hoja(), ElementsAre(1, 2));
    EXPECT_EQ(leerFichero(texto), lineas({1, 2}));
}

TEST_F(PendientesPrueba, AnExcelWhoseQuitAlwaysFailsHasThemOnceToo) {
    for (int32_t vez = 1; vez <= 20; ++vez) plataforma.excel.fallar("Application.Quit", "no", vez);
    for (const int32_t albaran : {1, 2, 3}) descargar({albaran});
    otra->guardarPendientes();
    EXPECT_THAT(hoja(), ElementsAre(1, 2, 3));
    EXPECT_TRUE(otra->guardarPendientes());
}

using Llamada = std::tuple<const char*, int32_t>;
class HojaAveriada : public PendientesPrueba, public testing::WithParamInterface<Llamada> {};

TEST_P(HojaAveriada, AtAnyCallLosesAndDoublesNothing) {
    const auto& [miembro, vez] = GetParam();
    plataforma.excel.fallar(miembro, "ha fallado", vez);
    descargar({1, 2});
    EXPECT_EQ(otra->numPendientes() > 0, !otra->motivoPendientes().empty());
    descargar({3});
    for (int32_t i = 0; i < 3 && !otra->guardarPendientes(); ++i) continue;
    EXPECT_EQ(otra->numPendientes(), 0);
    EXPECT_THAT(hoja(), ElementsAre(1, 2, 3));
    EXPECT_EQ(leerFichero(texto), lineas({1, 2, 3}));
    EXPECT_EQ(plataforma.excel.objetosVivos, 0);
}

INSTANTIATE_TEST_SUITE_P(
    EnCadaLlamada, HojaAveriada,
    testing::Combine(testing::Values("Application.DisplayAlerts=", "Application.Workbooks",
                                     "Workbook.Worksheets", "Sheets.enumerar", "Worksheet.Name",
                                     "Workbook.Names", "Names.enumerar", "Worksheet.Range",
                                     "Range.FormulaR1C1", "Range.FormulaR1C1=", "Workbook.SaveAs",
                                     "Application.Quit"),
                     testing::Values(1, 2, 3, 11)));

TEST_F(PendientesPrueba, AnExcelThatCannotBeStartedLeavesThemPending) {
    plataforma.excel.errorAlArrancar = "Error 429";
    EXPECT_FALSE(descargar({1}));
    EXPECT_FALSE(otra->guardarPendientes());
    EXPECT_EQ(leerFichero(texto), lineas({1}));
    EXPECT_THAT(otra->motivoPendientes(), HasSubstr("hoja de cálculo"));
    plataforma.excel.errorAlArrancar.clear();
    EXPECT_TRUE(otra->guardarPendientes());
    EXPECT_THAT(hoja(), ElementsAre(1));
}

TEST_F(PendientesPrueba, AFullSheetKeepsWhatFitsAndTheRestGoesToAnother) {
    auto& celdas = plataforma.excel.disco[kLibro].hojas[0].celdas;
    for (int32_t fila = 1; fila <= 32766; ++fila) celdas[{fila, 3}] = 0;
    EXPECT_FALSE(descargar({1, 2}));
    EXPECT_EQ(plataforma.excel.disco[kLibro].hoja("Pesadas").celda(32767, 3), Variante(1));
    EXPECT_EQ(otra->numPendientes(), 1);
    EXPECT_FALSE(otra->guardarPendientes());
    EXPECT_EQ(otra->numPendientes(), 1);
    EXPECT_THAT(otra->motivoPendientes(), HasSubstr("Empiece otra hoja u otro libro"));
    ponerLibro(plataforma.excel, "Otro.xls", {"Pesadas"});
    cfg->LibroExcel("Otro.xls");
    EXPECT_TRUE(otra->guardarPendientes());
    EXPECT_THAT(hoja("Otro.xls"), ElementsAre(2));
    EXPECT_EQ(leerFichero(texto), lineas({1, 2}));
}

TEST_F(PendientesPrueba, TheRestOfABatchDoesNotGoOverItsOwnRowsWhereTheWorkbookNamesOne) {
    plataforma.excel.disco[kLibro].nombres = {{"bnUltima", "=32767"}};
    EXPECT_FALSE(descargar({1, 2}));
    for (int vez = 0; vez < 2; ++vez) {
        EXPECT_FALSE(otra->guardarPendientes());
        EXPECT_EQ(plataforma.excel.disco[kLibro].hoja("Pesadas").celda(32767, 3), Variante(1));
        EXPECT_THAT(otra->motivoPendientes(), HasSubstr("Empiece otra hoja u otro libro"));
    }
    EXPECT_EQ(leerFichero(texto), lineas({1, 2}));
    plataforma.excel.disco[kLibro].nombres = {{"bnUltima", "=40"}};
    EXPECT_TRUE(otra->guardarPendientes());
    EXPECT_EQ(plataforma.excel.disco[kLibro].hoja("Pesadas").celda(40, 3), Variante(2));
    EXPECT_EQ(plataforma.excel.disco[kLibro].hoja("Pesadas").celda(32767, 3), Variante(1));
}

// Settings that have changed by the next pass

TEST_F(PendientesPrueba, WhatHasArrivedDoesNotGoOutAgainWhateverTheSettingsSayNow) {
    plataforma.excel.fallar("Workbook.SaveAs", "disco lleno");
    EXPECT_FALSE(descargar({1, 2}));
    EXPECT_EQ(leerFichero(texto), lineas({1, 2}));
    const auto otro = carpeta / "Otro.txt";
    cfg->ArchivoTexto(ficheros::aTexto(otro));
    cfg->ColumnaExcel(2, 12);
    EXPECT_TRUE(descargar({3}));
    EXPECT_EQ(leerFichero(texto), lineas({1, 2}));
    EXPECT_EQ(leerFichero(otro), lineas({3}));
    EXPECT_THAT(hoja(kLibro, 12), ElementsAre(1, 2, 3));
}

TEST_F(PendientesPrueba, WhatWasSavedUnderOtherSettingsIsFoundWhereItIs) {
    plataforma.excel.fallar("Application.Quit", "no sale");
    EXPECT_FALSE(descargar({1, 2}));
    ponerLibro(plataforma.excel, "Otro.xls", {"Pesadas"});
    cfg->LibroExcel("Otro.xls");
    EXPECT_TRUE(descargar({3}));
    EXPECT_THAT(hoja(), ElementsAre(1, 2));
    EXPECT_THAT(hoja("Otro.xls"), ElementsAre(3));
}

// Destinations that are not ticked

TEST_F(PendientesPrueba, WithNoneTickedTheyWaitForOne) {
    cfg->UsoExcel(false);
    cfg->UsoTexto(false);
    EXPECT_TRUE(descargar({1}));
    EXPECT_EQ(otra->Estado(), 4);
    EXPECT_EQ(otra->numPendientes(), 1);
    EXPECT_THAT(otra->motivoPendientes(), HasSubstr("marque"));
    EXPECT_FALSE(otra->hayFallo());
    EXPECT_TRUE(descargar({2}));
    cfg->UsoTexto(true);
    conCarpetaDeTexto();
    EXPECT_TRUE(otra->guardarPendientes());
    EXPECT_EQ(leerFichero(texto), lineas({1, 2}));
}

TEST_F(PendientesPrueba, AnUntickedDestinationKeepsItsWaitingOnesAndIsNoFailure) {
    plataforma.excel.fallar("Workbook.SaveAs", "disco lleno");
    EXPECT_FALSE(descargar({1}));
    cfg->UsoExcel(false);
    EXPECT_TRUE(descargar({2})) << "and the new one does not go there";
    EXPECT_EQ(otra->numPendientes(), 1);
    EXPECT_THAT(otra->motivoPendientes(), HasSubstr("«Hoja Excel»"));
    EXPECT_FALSE(otra->hayFallo());
    cfg->UsoExcel(true);
    EXPECT_TRUE(otra->guardarPendientes());
    EXPECT_THAT(hoja(), ElementsAre(1));
    EXPECT_EQ(leerFichero(texto), lineas({1, 2}));
}

TEST_F(PendientesPrueba, ExcelMissingAtOneStartIsStillOneOfTheirDestinations) {
    cfg->ExcelEnFalta(true);
    EXPECT_TRUE(descargar({1}));
    EXPECT_EQ(leerFichero(texto), lineas({1}));
    EXPECT_EQ(otra->numPendientes(), 1);
    EXPECT_THAT(otra->motivoPendientes(), HasSubstr("no dispone de MS Excel"));
    cfg->ExcelEnFalta(false);
    EXPECT_TRUE(descargar({2}));
    EXPECT_THAT(hoja(), ElementsAre(1, 2));
    EXPECT_EQ(leerFichero(texto), lineas({1, 2}));
}

TEST_F(PendientesPrueba, SettingsTakenAwayDuringADownloadAreMadeAnew) {
    EXPECT_TRUE(otra->iniciarProceso());
    llegaPesada(1);
    otra->DatosCfg(nullptr);
    cfg->Update();
    llegaContador("0001");
    EXPECT_EQ(otra->Estado(), 4);
    EXPECT_EQ(leerFichero(texto), lineas({1}));
}

// Short records

TEST_F(PendientesPrueba, ShortRecordsKeepTheClockOfTheirFirstPassInBothDestinations) {
    plataforma.horaActual = 46000.25;
    plataforma.excel.fallar("Workbook.SaveAs", "disco lleno");
    ASSERT_TRUE(otra->iniciarProceso());
    plataforma.puerto().recibir(prueba::trama(prueba::PesadaDePrueba().datos()));
    EXPECT_THROW(llegaContador("0001"), excel::ErrorExcel);
    relevar();
    plataforma.horaActual = 46003.75;
    EXPECT_TRUE(otra->guardarPendientes());
    const auto& una = plataforma.excel.disco[kLibro].hoja("Pesadas");
    EXPECT_EQ(una.celda(1, 1), Variante(FechaOle{46000.25}));
    EXPECT_EQ(leerFichero(texto).substr(0, 16), "09/12/2025 06:00");
}

// Discarding

TEST_F(PendientesPrueba, DiscardedOnesAreKeptInADatedFileAndWaitNoMore) {
    plataforma.horaActual = 45000.5;
    sinCarpetaDeTexto();
    descargar({1});
    descargar({2});
    EXPECT_TRUE(otra->descartarPendientes());
    EXPECT_EQ(otra->numPendientes(), 0);
    EXPECT_EQ(otra->motivoPendientes(), "");
    EXPECT_EQ(leerFichero(carpeta / "bnDescartadas-20230315-120000.txt"),
              datos(1) + "\r\n" + datos(2) + "\r\n");
    conCarpetaDeTexto();
    EXPECT_TRUE(descargar({3}));
    EXPECT_EQ(leerFichero(texto), lineas({3}));
    EXPECT_THAT(enLaCarpeta(),
                ElementsAre("bnDescartadas-20230315-120000.txt", "bnGuardo.nota", "bnGuardo.txt"));
}

TEST_F(PendientesPrueba, WithNothingToDiscardNoFileIsMade) {
    descargar({1});
    EXPECT_TRUE(otra->descartarPendientes());
    EXPECT_THAT(enLaCarpeta(), ElementsAre("bnGuardo.nota", "bnGuardo.txt"));
}

TEST_F(PendientesPrueba, NeitherSavesNorDiscardsWhileADownloadRuns) {
    sinCarpetaDeTexto();
    descargar({1});
    Textos respuestas;
    const auto preguntar = [&](int32_t estado) {
        respuestas.push_back(std::to_string(estado) + (otra->guardarPendientes() ? " sí" : " no") +
                             (otra->descartarPendientes() ? " sí" : " no"));
    };
    otra->CambioEstado.conectar([&](int32_t& estado) {
        if (estado >= 1 && estado <= 3) preguntar(estado);
    });
    ASSERT_TRUE(otra->iniciarProceso());
    llegaPesada(2);
    EXPECT_EQ(otra->numPendientes(), 1) << "those of ended downloads";
    EXPECT_THROW(llegaContador("0001"), ErrorFichero);
    EXPECT_THAT(respuestas, ElementsAre("1 no no", "2 no no", "3 no no"));
    EXPECT_EQ(otra->Estado(), 3);
    EXPECT_EQ(otra->numPendientes(), 2);
}

TEST_F(PendientesPrueba, SavingThemLeavesStateCountAndExplanationAlone) {
    sinCarpetaDeTexto();
    descargar({1});
    ASSERT_TRUE(otra->iniciarProceso());
    silencio();
    ASSERT_EQ(otra->Estado(), 5);
    Textos cambios;
    otra->CambioEstado.conectar([&](int32_t&) { cambios.emplace_back("cambio"); });
    EXPECT_FALSE(otra->guardarPendientes());
    conCarpetaDeTexto();
    EXPECT_TRUE(otra->guardarPendientes());
    EXPECT_EQ(otra->Estado(), 5);
    EXPECT_EQ(otra->numRecibidas(), 0);
    EXPECT_EQ(otra->Explicacion(), kNoContesta);
    EXPECT_THAT(cambios, IsEmpty());
}

// What the folder holds from before

TEST_F(PendientesPrueba, DatedCopiesOfEarlierVersionsAreLeftAlone) {
    const auto copia = carpeta / "bnGuardo-20230315-120000.txt";
    prueba::escribirFichero(copia, datos(7) + "\r\n");
    relevar();
    EXPECT_EQ(otra->numPendientes(), 0);
    EXPECT_TRUE(descargar({1}));
    EXPECT_EQ(leerFichero(copia), datos(7) + "\r\n");
    EXPECT_EQ(leerFichero(texto), lineas({1}));
}

TEST_F(PendientesPrueba, AStoreWithTheMarkOfAnEarlierVersionHasNotArrived) {
    prueba::escribirFichero(almacen, datos(7) + "\r\n" + datos(8) + "\r\n");
    prueba::escribirFichero(carpeta / "bnGuardo.marca", "");
    prueba::escribirFichero(texto, linea(7));
    relevar();
    EXPECT_EQ(otra->numPendientes(), 2);
    EXPECT_TRUE(descargar({9}));
    EXPECT_EQ(leerFichero(texto), lineas({7, 8, 9})) << "what stands there is looked up";
    EXPECT_THAT(hoja(), ElementsAre(7, 8, 9));
    EXPECT_THAT(enLaCarpeta(), ElementsAre("bnGuardo.nota", "bnGuardo.txt"));
}

TEST_F(PendientesPrueba, AFailedDownloadWithoutWeighingsBlocksNothingOnceItsStoreOpensAgain) {
    ASSERT_TRUE(otra->iniciarProceso());
    std::filesystem::remove(almacen);
    std::filesystem::create_directory(almacen);
    silencio();
    EXPECT_FALSE(otra->iniciarProceso());
    EXPECT_THAT(otra->avisos(), ElementsAre(HasSubstr("No se puede empezar otra descarga")));
    std::filesystem::remove(almacen);
    EXPECT_TRUE(otra->iniciarProceso());
}

TEST_F(PendientesPrueba, ADownloadWithNothingStoredIsCorrectEvenIfItsStoreHasVanished) {
    ASSERT_TRUE(otra->iniciarProceso());
    std::filesystem::remove(almacen);
    llegaContador("0009");
    EXPECT_EQ(otra->Estado(), 4);
    EXPECT_EQ(otra->numPendientes(), 0);
}

}  // namespace
}  // namespace bn
