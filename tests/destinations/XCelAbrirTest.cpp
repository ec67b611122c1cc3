// SPDX-License-Identifier: MIT
// Opening, saving and letting go of a workbook.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "destinations/XCel.h"
#include "platform/Ficheros.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/ExcelDePrueba.h"

namespace bn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using Textos = std::vector<std::string>;

const std::string kLibro = "C:/Datos/Pesadas.xls";

class XCelAbrir : public testing::Test {
 protected:
    void SetUp() override {
        LibroSimulado libro;
        libro.hojas = {{"Resumen", {}}, {"Pesadas Añó", {}}, {"Última", {}}};
        libro.hojas[1].celdas[{1, 1}] = std::string("vieja");
        disco()[kLibro] = libro;
    }
    std::map<std::string, LibroSimulado>& disco() { return plataforma.excel.disco; }
    Textos& mensajes() { return plataforma.mensajes; }
    Textos ordenes() { return plataforma.excel.ordenes(); }
    void esperarNadaVivo() {
        EXPECT_EQ(plataforma.excel.objetosVivos, 0);
        EXPECT_EQ(plataforma.excel.instanciasAbiertas, 0);
    }

    prueba::CarpetaTemporal carpeta;
    PlataformaConExcel plataforma{carpeta.ruta()};
    XCel xcel{plataforma};
};

// HayExcel

TEST_F(XCelAbrir, FindsTheApplicationByIdentifierAndLeavesNothingOpen) {
    EXPECT_TRUE(xcel.HayExcel());
    EXPECT_THAT(plataforma.excel.porIdentificador, ElementsAre(true));
    EXPECT_THAT(ordenes(), ElementsAre("Application[1].Quit"));
    EXPECT_THAT(mensajes(), IsEmpty());
    esperarNadaVivo();
}

TEST_F(XCelAbrir, AnswersNoWithoutAWordWhenThereIsNoApplication) {
    plataforma.excel.errorAlArrancar = "no hay";
    EXPECT_FALSE(xcel.HayExcel());
    EXPECT_THAT(mensajes(), IsEmpty());
    esperarNadaVivo();
}

TEST_F(XCelAbrir, FindsTheApplicationEvenIfItWillNotQuit) {
    plataforma.excel.fallar("Application.Quit", "ocupada");
    EXPECT_TRUE(xcel.HayExcel());
    EXPECT_THAT(mensajes(), IsEmpty());
    EXPECT_EQ(plataforma.excel.objetosVivos, 0);
}

TEST_F(XCelAbrir, AskingForTheApplicationLeavesAnOpenWorkbookAlone) {
    ASSERT_TRUE(xcel.AbrirParaLeer(kLibro, ""));
    EXPECT_TRUE(xcel.HayExcel());
    EXPECT_EQ(xcel.NombreHoja(), "Resumen");
    EXPECT_EQ(plataforma.excel.instanciasAbiertas, 1);
}

// AbrirParaEscribir

TEST_F(XCelAbrir, OpensForWritingByClassWithoutPrompts) {
    xcel.AbrirParaEscribir(kLibro, "Pesadas Añó", true);
    EXPECT_THAT(plataforma.excel.porIdentificador, ElementsAre(false));
    EXPECT_THAT(ordenes(),
                ElementsAre("Application[1].DisplayAlerts=False", "Workbooks.Open " + kLibro));
    EXPECT_EQ(xcel.NombreHoja(), "Pesadas Añó");
    EXPECT_THAT(mensajes(), IsEmpty());
}

TEST_F(XCelAbrir, FindsTheSheetWhateverItsLetterCaseAndKeepsItsName) {
    xcel.AbrirParaEscribir(kLibro, "pesadas aÑÓ", true);
    EXPECT_EQ(xcel.NombreHoja(), "Pesadas Añó");
    xcel.Guardar("");
    EXPECT_THAT(disco()[kLibro].nombresDeHojas(), ElementsAre("Resumen", "Pesadas Añó", "Última"));
}

TEST_F(XCelAbrir, IsOtherwiseExactAboutTheSheetsName) {
    xcel.AbrirParaEscribir(kLibro, "Pesadas Añó ", true);
    EXPECT_EQ(xcel.ListaDeHojas().size(), 4U);
    xcel.Cerrar();
    xcel.AbrirParaEscribir(kLibro, "Pesadas Ano", true);
    EXPECT_EQ(xcel.ListaDeHojas().size(), 4U);
}

TEST_F(XCelAbrir, UsesTheFirstOfTwoSheetsThatMatch) {
    disco()[kLibro].hojas = {{"Otra", {}}, {"PESADAS", {}}, {"pesadas", {}}};
    xcel.AbrirParaEscribir(kLibro, "Pesadas", true);
    EXPECT_EQ(xcel.NombreHoja(), "PESADAS");
}

TEST_F(XCelAbrir, KeepsTheContentsWhenAskedTo) {
    xcel.AbrirParaEscribir(kLibro, "Pesadas Añó", true);
    EXPECT_EQ(xcel.Celda(1, 1), Variante(std::string("vieja")));
}

TEST_F(XCelAbrir, ErasesOnlyTheContentsOfTheSheetOtherwise) {
    disco()[kLibro].hojas[0].celdas[{5, 5}] = 1.0;
    xcel.AbrirParaEscribir(kLibro, "Pesadas Añó", false);
    EXPECT_THAT(ordenes(), ElementsAre("Application[1].DisplayAlerts=False",
                                       "Workbooks.Open " + kLibro, "Range[todas].ClearContents"));
    EXPECT_EQ(xcel.Celda(1, 1), Variante(std::string()));
    xcel.Guardar("");
    EXPECT_EQ(disco()[kLibro].hoja("Resumen").celda(5, 5), Variante(1.0));
}

TEST_F(XCelAbrir, AddsAMissingSheetAfterTheLast) {
    xcel.AbrirParaEscribir(kLibro, "Báscula", false);
    EXPECT_THAT(ordenes(),
                ElementsAre("Application[1].DisplayAlerts=False", "Workbooks.Open " + kLibro,
                            "Sheets.Add After Última", "Worksheet[HojaAñadida].Name=Báscula"))
        << "nothing to erase in a new sheet, nothing to delete in an old workbook";
    EXPECT_EQ(xcel.ListaDeHojas(), (Textos{"Resumen", "Pesadas Añó", "Última", "Báscula"}));
    EXPECT_EQ(xcel.NombreHoja(), "Báscula");
}

TEST_F(XCelAbrir, AMissingFileBecomesAWorkbookOfThatOneSheet) {
    xcel.AbrirParaEscribir("nuevo.xls", "Pesadas", true);
    EXPECT_THAT(ordenes(),
                ElementsAre("Application[1].DisplayAlerts=False", "Workbooks.Open nuevo.xls",
                            "Workbooks.Add", "Sheets.Add After Hoja3",
                            "Worksheet[HojaAñadida].Name=Pesadas", "Worksheet[Hoja1].Delete",
                            "Worksheet[Hoja2].Delete", "Worksheet[Hoja3].Delete"));
    EXPECT_EQ(disco().count("nuevo.xls"), 0U) << "it reaches the disk when it is saved";
    xcel.Guardar("");
    EXPECT_THAT(disco()["nuevo.xls"].nombresDeHojas(), ElementsAre("Pesadas"));
    EXPECT_THAT(mensajes(), IsEmpty());
}

TEST_F(XCelAbrir, ANewWorkbookMayAlreadyHaveTheSheetAsked) {
    xcel.AbrirParaEscribir("nuevo.xls", "HOJA2", true);
    xcel.Guardar("");
    EXPECT_THAT(disco()["nuevo.xls"].nombresDeHojas(), ElementsAre("Hoja2"));
}

TEST_F(XCelAbrir, ANewWorkbookStillHoldsOneSheetWhenTheNameIsRefused) {
    plataforma.excel.fallar("Worksheet.Name=", "nombre no válido");
    xcel.AbrirParaEscribir("nuevo.xls", "a/b", true);
    EXPECT_EQ(xcel.ListaDeHojas().size(), 1U);
    EXPECT_THAT(mensajes(), IsEmpty());
}

TEST_F(XCelAbrir, OneSheetThatWillNotGoDoesNotKeepTheOthers) {
    plataforma.excel.fallar("Worksheet.Delete", "protegida", 2);
    xcel.AbrirParaEscribir("nuevo.xls", "Pesadas", true);
    EXPECT_EQ(xcel.ListaDeHojas(), (Textos{"Hoja2", "Pesadas"}));
}

TEST_F(XCelAbrir, SaysWhyTheApplicationDoesNotStart) {
    plataforma.excel.errorAlArrancar = "Error 429";
    xcel.AbrirParaEscribir(kLibro, "Pesadas", true);
    EXPECT_THAT(mensajes(), ElementsAre("Error 429"));
    EXPECT_THROW(xcel.Celda(1, 1), excel::ErrorExcel);
    esperarNadaVivo();
}

TEST_F(XCelAbrir, SaysWhyNoWorkbookCanBeMade) {
    plataforma.excel.fallar("Workbooks.Add", "Sin memoria");
    xcel.AbrirParaEscribir("nuevo.xls", "Pesadas", true);
    EXPECT_THAT(mensajes(), ElementsAre("Sin memoria")) << "not why the file could not be opened";
    EXPECT_THAT(ordenes().back(), "Application[1].Quit");
    EXPECT_THROW(xcel.Guardar(""), excel::ErrorExcel);
    esperarNadaVivo();
}

TEST_F(XCelAbrir, ARefusedDisplayAlertsStopsNothing) {
    plataforma.excel.fallar("Application.DisplayAlerts=", "no");
    xcel.AbrirParaEscribir(kLibro, "Última", true);
    EXPECT_EQ(xcel.NombreHoja(), "Última");
    EXPECT_THAT(mensajes(), IsEmpty());
}

TEST_F(XCelAbrir, OpeningAgainLetsTheEarlierInstanceGoWithoutQuittingIt) {
    xcel.AbrirParaEscribir(kLibro, "Resumen", true);
    xcel.AbrirParaEscribir(kLibro, "Última", true);
    EXPECT_THAT(ordenes(), Not(testing::Contains("Application[1].Quit")));
    EXPECT_EQ(plataforma.excel.instanciasAbiertas, 2);
    EXPECT_EQ(plataforma.excel.objetosVivos, 3) << "application, workbook and worksheet";
    EXPECT_EQ(xcel.NombreHoja(), "Última");
    xcel.Cerrar();
    EXPECT_EQ(ordenes().back(), "Application[2].Quit");
    EXPECT_EQ(plataforma.excel.objetosVivos, 0);
}

// AbrirParaLeer

TEST_F(XCelAbrir, ReadsTheFirstSheetWhenNoneIsNamed) {
    EXPECT_TRUE(xcel.AbrirParaLeer(kLibro, ""));
    EXPECT_EQ(xcel.NombreHoja(), "Resumen");
    EXPECT_THAT(plataforma.excel.porIdentificador, ElementsAre(false));
    EXPECT_THAT(ordenes(),
                ElementsAre("Application[1].DisplayAlerts=False", "Workbooks.Open " + kLibro));
}

TEST_F(XCelAbrir, ReadsTheSheetWhateverItsLetterCase) {
    EXPECT_TRUE(xcel.AbrirParaLeer(kLibro, "ÚLTIMA"));
    EXPECT_EQ(xcel.NombreHoja(), "Última");
}

TEST_F(XCelAbrir, ReadingNeverMakesAWorkbook) {
    EXPECT_FALSE(xcel.AbrirParaLeer("nuevo.xls", ""));
    EXPECT_THAT(ordenes(), ElementsAre("Application[1].DisplayAlerts=False",
                                       "Workbooks.Open nuevo.xls", "Application[1].Quit"));
    EXPECT_THAT(mensajes(), IsEmpty()) << "the caller tells the user";
    esperarNadaVivo();
}

TEST_F(XCelAbrir, AMissingSheetGivesAnEmptyMessageAndClosesWithoutSaving) {
    EXPECT_FALSE(xcel.AbrirParaLeer(kLibro, "Ninguna"));
    EXPECT_THAT(mensajes(), ElementsAre(""));
    EXPECT_THAT(ordenes(),
                ElementsAre("Application[1].DisplayAlerts=False", "Workbooks.Open " + kLibro,
                            "Workbook.Close", "Application[1].Quit"));
    EXPECT_THROW(xcel.NombreHoja(), excel::ErrorExcel);
    esperarNadaVivo();
}

TEST_F(XCelAbrir, SheetsThatCannotBeReadGiveTheReason) {
    plataforma.excel.fallar("Workbook.Worksheets", "Libro protegido");
    EXPECT_FALSE(xcel.AbrirParaLeer(kLibro, "Resumen"));
    EXPECT_THAT(mensajes(), ElementsAre("Libro protegido"));
    esperarNadaVivo();
}

TEST_F(XCelAbrir, ReadingSaysWhyTheApplicationDoesNotStart) {
    plataforma.excel.errorAlArrancar = "Error 429";
    EXPECT_FALSE(xcel.AbrirParaLeer(kLibro, ""));
    EXPECT_THAT(mensajes(), ElementsAre("Error 429"));
    esperarNadaVivo();
}

// AbrirPlantilla

TEST_F(XCelAbrir, StartsFromATemplateAtItsFirstSheet) {
    xcel.AbrirPlantilla("C:/modelo.xlt");
    EXPECT_THAT(ordenes(), ElementsAre("Application[1].DisplayAlerts=False",
                                       "Workbooks.Add Template C:/modelo.xlt"));
    EXPECT_EQ(xcel.NombreHoja(), "Hoja1");
    EXPECT_THAT(mensajes(), IsEmpty());
}

TEST_F(XCelAbrir, ATemplateIsSavedUnderItsWorkbooksName) {
    xcel.AbrirPlantilla("C:/modelo.xlt");
    xcel.Guardar("");
    EXPECT_EQ(disco().count("Libro1"), 1U);
    EXPECT_EQ(disco()["Libro1"].plantilla, "C:/modelo.xlt");
}

TEST_F(XCelAbrir, AFailedTemplateGivesAnEmptyMessageAfterQuitting) {
    plataforma.excel.fallar("Workbooks.Add", "No existe la plantilla");
    xcel.AbrirPlantilla("C:/modelo.xlt");
    EXPECT_THAT(mensajes(), ElementsAre(""));
    EXPECT_EQ(ordenes().back(), "Application[1].Quit");
    esperarNadaVivo();
}

TEST_F(XCelAbrir, ATemplateSaysWhyTheApplicationDoesNotStart) {
    plataforma.excel.errorAlArrancar = "Error 429";
    xcel.AbrirPlantilla("C:/modelo.xlt");
    EXPECT_THAT(mensajes(), ElementsAre("Error 429"));
    esperarNadaVivo();
}

// Guardar, Cerrar, the end

TEST_F(XCelAbrir, SavesWhereItWasOpenedAndQuits) {
    xcel.AbrirParaEscribir(kLibro, "Resumen", true);
    plataforma.excel.olvidar();
    xcel.Guardar("");
    EXPECT_THAT(ordenes(),
                ElementsAre("Workbook.SaveAs " + kLibro + " AccessMode 1", "Application[1].Quit"));
    esperarNadaVivo();
}

TEST_F(XCelAbrir, SavesElsewhereWhenToldTo) {
    xcel.AbrirParaEscribir(kLibro, "Resumen", false);
    xcel.Celda(1, 1, Variante(7));
    xcel.Guardar("D:/copia.xls");
    EXPECT_EQ(disco()["D:/copia.xls"].hoja("Resumen").celda(1, 1), Variante(7));
    EXPECT_EQ(disco()[kLibro].hoja("Resumen").celda(1, 1), Variante());
}

TEST_F(XCelAbrir, ClosesWithoutSaving) {
    xcel.AbrirParaEscribir(kLibro, "Resumen", true);
    xcel.Celda(1, 1, Variante(7));
    plataforma.excel.olvidar();
    xcel.Cerrar();
    EXPECT_THAT(ordenes(), ElementsAre("Application[1].Quit"));
    EXPECT_EQ(disco()[kLibro].hoja("Resumen").celda(1, 1), Variante());
    esperarNadaVivo();
}

TEST_F(XCelAbrir, AWorkbookThatCannotBeSavedReachesTheCallerAndIsQuitInTheEnd) {
    {
        XCel otra(plataforma);
        otra.AbrirParaEscribir(kLibro, "Resumen", true);
        plataforma.excel.fallar("Workbook.SaveAs", "Disco lleno");
        EXPECT_THROW(otra.Guardar(""), excel::ErrorExcel);
        EXPECT_EQ(plataforma.excel.instanciasAbiertas, 1);
        EXPECT_NO_THROW(otra.Guardar("D:/otro.xls")) << "the caller may try again";
        otra.AbrirParaEscribir(kLibro, "Resumen", true);
    }
    esperarNadaVivo();
}

TEST_F(XCelAbrir, NothingStaysOpenBehindTheObject) {
    auto otra = std::make_unique<XCel>(plataforma);
    otra->AbrirParaEscribir(kLibro, "Resumen", true);
    plataforma.excel.fallar("Application.Quit", "ocupada");
    EXPECT_NO_THROW(otra.reset());
    EXPECT_EQ(plataforma.excel.objetosVivos, 0);
}

TEST_F(XCelAbrir, EverythingFailsWhileNothingIsOpen) {
    for (int vez = 0; vez < 2; ++vez) {  // before the first workbook, and after it
        EXPECT_THROW(xcel.ListaDeHojas(), excel::ErrorExcel);
        EXPECT_THROW(xcel.EstablecerHoja("Resumen"), excel::ErrorExcel);
        EXPECT_THROW(xcel.NombreHoja(), excel::ErrorExcel);
        EXPECT_THROW(xcel.Celda(1, 1), excel::ErrorExcel);
        EXPECT_THROW(xcel.Celda(1, 1, Variante(1)), excel::ErrorExcel);
        EXPECT_THROW(xcel.IrA(1, 1), excel::ErrorExcel);
        EXPECT_THROW(xcel.AnchoColumna(1, 1), excel::ErrorExcel);
        EXPECT_THROW(xcel.AjusteCeldaIzquierda(1, 1), excel::ErrorExcel);
        EXPECT_THROW(xcel.ReplicarCabecera(1, 1), excel::ErrorExcel);
        EXPECT_THROW(xcel.SaltoPagina(1), excel::ErrorExcel);
        EXPECT_THROW(xcel.ValorNombre("x"), excel::ErrorExcel);
        EXPECT_THROW(xcel.ValorNombre("x", Variante(1)), excel::ErrorExcel);
        EXPECT_THROW(xcel.Imprimir(), excel::ErrorExcel);
        EXPECT_THROW(xcel.PrintPreview(), excel::ErrorExcel);
        EXPECT_THROW(xcel.Guardar("x.xls"), excel::ErrorExcel);
        EXPECT_THROW(xcel.Cerrar(), excel::ErrorExcel);
        if (vez > 0) break;
        ASSERT_TRUE(xcel.AbrirParaLeer(kLibro, ""));
        xcel.Cerrar();
    }
    EXPECT_THAT(mensajes(), IsEmpty());
}

// A file that exists and cannot be opened is overwritten, so it is kept first.

class XCelCopia : public XCelAbrir {
 protected:
    void SetUp() override {
        plataforma.horaActual = 45000.5;  // 15 March 2023, noon
        prueba::escribirFichero(roto, "no es un libro");
    }
    Textos copias() { return prueba::ficherosQueEmpiezan(carpeta.ruta(), "Pesadas.xls."); }

    std::filesystem::path roto = carpeta / "Pesadas.xls";
};

TEST_F(XCelCopia, KeepsAFileThatCouldNotBeOpenedBesideTheNewOne) {
    xcel.AbrirParaEscribir(ficheros::aTexto(roto), "Pesadas", true);
    EXPECT_THAT(copias(), IsEmpty()) << "nothing is touched before it is saved";
    xcel.Guardar("");
    EXPECT_THAT(copias(), ElementsAre("Pesadas.xls.20230315-120000.bak"));
    EXPECT_EQ(prueba::leerFichero(carpeta / copias()[0]), "no es un libro");
    EXPECT_EQ(disco().count(ficheros::aTexto(roto)), 1U);
    EXPECT_THAT(mensajes(), IsEmpty());
}

TEST_F(XCelCopia, KeepsBothFilesOfOneSecond) {
    for (int vez = 0; vez < 2; ++vez) {
        xcel.AbrirParaEscribir(ficheros::aTexto(roto), "Pesadas", true);
        xcel.Guardar("");
        disco().clear();
    }
    EXPECT_EQ(copias().size(), 2U);
}

TEST_F(XCelCopia, KeepsNothingOfAWorkbookThatOpened) {
    disco()[ficheros::aTexto(roto)].hojas = {{"Pesadas", {}}};
    xcel.AbrirParaEscribir(ficheros::aTexto(roto), "Pesadas", true);
    xcel.Guardar("");
    EXPECT_THAT(copias(), IsEmpty());
}

TEST_F(XCelCopia, KeepsNothingWhenItSavesElsewhereOrNotAtAll) {
    xcel.AbrirParaEscribir(ficheros::aTexto(roto), "Pesadas", true);
    xcel.Guardar(ficheros::aTexto(carpeta / "otro.xls"));
    xcel.AbrirParaEscribir(ficheros::aTexto(roto), "Pesadas", true);
    xcel.Cerrar();
    EXPECT_THAT(copias(), IsEmpty());
}

TEST_F(XCelCopia, KeepsNothingWhereThereIsNoFile) {
    std::filesystem::remove(roto);
    xcel.AbrirParaEscribir(ficheros::aTexto(roto), "Pesadas", true);
    xcel.Guardar("");
    EXPECT_THAT(copias(), IsEmpty());
}

}  // namespace
}  // namespace bn
