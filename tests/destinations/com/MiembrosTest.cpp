// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <windows.h>

#include <string>
#include <vector>

#include "tests/destinations/com/ConSustituto.h"

// Which members XCel calls through Automation, with what and in which order.

namespace bn::prueba {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

using Lineas = std::vector<std::string>;

/// What every road says before it opens anything: which process it is, and that nobody is to be
/// asked, nothing run, and nobody else attended.
const Lineas kComienzo{
    "Application.Hwnd",
    "Application.DisplayAlerts = BOOL False",
    "Application.AutomationSecurity = I4 3",
    "Application.EnableEvents = BOOL False",
    "Application.IgnoreRemoteRequests = BOOL True",
    "Application.Workbooks",
};

const Lineas kFinal{"Application.IgnoreRemoteRequests = BOOL False", "Application.Quit",
                    "Application: fin"};

/// With links left alone, passwords that answer the question for one, and without the advice to
/// open it read-only.
std::string apertura(const std::string& libro) {
    return "Workbooks.Open(BSTR \"" + libro +
           "\", I4 0, , , BSTR \"bnDX5 sin clave\", BSTR \"bnDX5 sin clave\", BOOL True)";
}

Lineas juntas(Lineas unas, const Lineas& otras) {
    unas.insert(unas.end(), otras.begin(), otras.end());
    return unas;
}

class MiembrosDeExcel : public ConSustituto {
 protected:
    void abrir() {
        crearLibro("Pesadas.xls", {});
        excel().AbrirParaEscribir(ruta("Pesadas.xls"), "Pesadas", true);
        diario();
    }
};

TEST_F(MiembrosDeExcel, HayExcelStartsAnInstanceAndQuitsIt) {
    EXPECT_TRUE(excel().HayExcel());
    EXPECT_THAT(diario(), ElementsAre("Application.Hwnd", "Application.Quit", "Application: fin"));
}

TEST_F(MiembrosDeExcel, HayExcelIsFalseWhenNoneCanBeStarted) {
    ordenar("ausente");
    EXPECT_FALSE(excel().HayExcel());
    EXPECT_THAT(plataforma_.mensajes, IsEmpty());
}

TEST_F(MiembrosDeExcel, HayExcelGoesByTheIdentifierAndOpeningByTheClass) {
    crearLibro("Pesadas.xls", {});
    ASSERT_EQ(RegDeleteTreeW(HKEY_CLASSES_ROOT, L"Excel.Application"), ERROR_SUCCESS);
    EXPECT_FALSE(excel().HayExcel());
    EXPECT_TRUE(excel().AbrirParaLeer(ruta("Pesadas.xls"), ""));
    excel().Cerrar();
}

TEST_F(MiembrosDeExcel, AnApplicationUnderTheIdentifierOpensWithItsOwnClass) {
    crearLibro("Pesadas.xls", {});
    alServidor("DllUnregisterServer");
    EXPECT_FALSE(excel().HayExcel());
    EXPECT_FALSE(excel().AbrirParaLeer(ruta("Pesadas.xls"), ""));
    EXPECT_EQ(plataforma_.mensajes.size(), 1U);
    alServidor("DllRegistrarCompatible");
    EXPECT_TRUE(excel().HayExcel());
    EXPECT_TRUE(excel().AbrirParaLeer(ruta("Pesadas.xls"), ""));
    excel().Cerrar();
}

TEST_F(MiembrosDeExcel, AMissingWorkbookBecomesANewOneWithTheSheetAlone) {
    const std::string libro = ruta("Nuevo.xls");
    excel().AbrirParaEscribir(libro, "Pesadas", true);
    EXPECT_THAT(diario(), ElementsAreArray(juntas(kComienzo, {apertura(libro) + " ! 80020009",
                                                              "Application.Workbooks",
                                                              "Workbooks.Add",
                                                              "Workbook.Worksheets",
                                                              "Sheets._NewEnum",
                                                              "Sheets.Next",
                                                              "Sheets.Next",
                                                              "Worksheet.Name",
                                                              "Workbook.Worksheets",
                                                              "Sheets.Count",
                                                              "Sheets.Item(I4 1)",
                                                              "Sheets.Add(, Worksheet)",
                                                              "Worksheet.Name = BSTR \"Pesadas\"",
                                                              "Worksheet.Name",
                                                              "Workbook.Worksheets",
                                                              "Sheets._NewEnum",
                                                              "Sheets.Next",
                                                              "Sheets.Next",
                                                              "Sheets.Next",
                                                              "Worksheet.Name",
                                                              "Worksheet.Delete",
                                                              "Worksheet.Name"})));
    EXPECT_THAT(excel().ListaDeHojas(), ElementsAre("Pesadas"));
}

TEST_F(MiembrosDeExcel, AnExistingSheetIsTakenAndErasedOnlyWhenAsked) {
    crearLibro("Pesadas.xls", {{std::string("x")}});
    const std::string libro = ruta("Pesadas.xls");
    excel().AbrirParaEscribir(libro, "PESADAS", false);
    EXPECT_THAT(diario(),
                ElementsAreArray(juntas(
                    kComienzo, {apertura(libro), "Workbook.ReadOnly", "Workbook.Worksheets",
                                "Sheets._NewEnum", "Sheets.Next", "Sheets.Next", "Worksheet.Name",
                                "Worksheet.Cells", "Range[todas].ClearContents"})));
    EXPECT_EQ(excel().Celda(1, 1), Variante(std::string()));
    EXPECT_EQ(excel().NombreHoja(), "Pesadas");
}

TEST_F(MiembrosDeExcel, ReadingWithoutASheetTakesTheFirst) {
    crearLibro("Pesadas.xls", {});
    const std::string libro = ruta("Pesadas.xls");
    EXPECT_TRUE(excel().AbrirParaLeer(libro, ""));
    EXPECT_THAT(diario(),
                ElementsAreArray(juntas(
                    kComienzo, {apertura(libro), "Workbook.Worksheets", "Sheets.Item(I4 1)"})));
}

TEST_F(MiembrosDeExcel, AnAbsentSheetClosesAndQuitsWithAnEmptyMessage) {
    crearLibro("Pesadas.xls", {});
    EXPECT_FALSE(excel().AbrirParaLeer(ruta("Pesadas.xls"), "Otra"));
    const std::vector<std::string> lineas = diario();
    ASSERT_GE(lineas.size(), 4U);
    EXPECT_THAT(Lineas(lineas.end() - 4, lineas.end()),
                ElementsAreArray(juntas({"Workbook.Close"}, kFinal)));
    EXPECT_THAT(plataforma_.mensajes, ElementsAre(""));
}

TEST_F(MiembrosDeExcel, ATemplateMakesANewWorkbook) {
    crearLibro("Plantilla.xls", {});
    const std::string plantilla = ruta("Plantilla.xls");
    excel().AbrirPlantilla(plantilla);
    EXPECT_THAT(diario(),
                ElementsAreArray(juntas(
                    kComienzo, {"Workbooks.Add(BSTR \"" + plantilla + "\")",
                                "Application.Workbooks", "Workbooks.Item(I4 1)", "Workbook.Name",
                                "Workbook.Worksheets", "Sheets.Item(I4 1)", "Worksheet.Name"})));
    EXPECT_THAT(plataforma_.mensajes, IsEmpty());
}

TEST_F(MiembrosDeExcel, SheetsAreListedAndChangedByName) {
    abrir();
    EXPECT_THAT(excel().ListaDeHojas(), ElementsAre("Pesadas"));
    EXPECT_THAT(diario(), ElementsAre("Workbook.Worksheets", "Sheets._NewEnum", "Sheets.Next",
                                      "Sheets.Next", "Worksheet.Name"));
    EXPECT_TRUE(excel().EstablecerHoja("pesadas"));
    EXPECT_FALSE(excel().EstablecerHoja("Otra"));
}

TEST_F(MiembrosDeExcel, ACellIsSelected) {
    abrir();
    excel().IrA(7, 2);
    EXPECT_THAT(diario(), ElementsAre("Worksheet.Cells", "Range[todas].Item(I4 7, I4 2)",
                                      "Range[B7].Select"));
}

TEST_F(MiembrosDeExcel, WidthIsSetOnlyAboveZeroByTheAdjustments) {
    abrir();
    excel().AjusteColumnaDerecha(3, 0);
    excel().AjusteColumnaIzquierda(4, 12.5F);
    excel().AnchoColumna(5, 0);
    EXPECT_THAT(
        diario(),
        ElementsAre("Worksheet.Columns(I4 3)", "Range[columna 3].HorizontalAlignment = I4 -4152",
                    "Worksheet.Columns(I4 4)", "Range[columna 4].HorizontalAlignment = I4 -4131",
                    "Range[columna 4].ColumnWidth = R8 12.5", "Worksheet.Columns(I4 5)",
                    "Range[columna 5].ColumnWidth = R8 0"));
}

TEST_F(MiembrosDeExcel, AColumnIsMadeNumericDateOrPadded) {
    abrir();
    excel().ColumnaNumerica(1);
    excel().ColumnaFecha(2);
    excel().ColumnaNumCero(3, 5);
    EXPECT_THAT(
        diario(),
        ElementsAre("Worksheet.Columns(I4 1)",
                    "Range[columna 1].NumberFormat = BSTR \"#,##0.00;#,-##0.00;#\"",
                    "Range[columna 1].HorizontalAlignment = I4 -4152", "Worksheet.Columns(I4 2)",
                    "Range[columna 2].NumberFormat = BSTR \"dd/mm/yyyy\"",
                    "Range[columna 2].HorizontalAlignment = I4 -4108", "Worksheet.Columns(I4 3)",
                    "Range[columna 3].HorizontalAlignment = I4 -4108",
                    "Range[columna 3].NumberFormat = BSTR \"00000\""));
}

TEST_F(MiembrosDeExcel, OneCellIsAligned) {
    abrir();
    excel().AjusteCeldaIzquierda(2, 3);
    EXPECT_THAT(diario(), ElementsAre("Worksheet.Cells", "Range[todas].Item(I4 2, I4 3)",
                                      "Range[C2].HorizontalAlignment = I4 -4131"));
}

TEST_F(MiembrosDeExcel, AHeaderIsRepeatedAtAPageStart) {
    abrir();
    excel().ReplicarCabecera(3, 40);
    EXPECT_THAT(diario(), ElementsAre("Worksheet.Rows(BSTR \"1:3\")", "Range[1:3].Select",
                                      "Application.Selection", "Range[seleccion].Copy",
                                      "Worksheet.Range(BSTR \"A40\")", "Range[A40].Select",
                                      "Worksheet.Paste", "Application.CutCopyMode = BOOL False",
                                      "Worksheet.HPageBreaks", "Application.ActiveCell",
                                      "HPageBreaks.Add(Before:=Range[celda activa])"));
}

TEST_F(MiembrosDeExcel, APageBreaksAboveARow) {
    abrir();
    excel().SaltoPagina(12);
    EXPECT_THAT(diario(), ElementsAre("Worksheet.HPageBreaks", "Worksheet.Rows(I4 12)",
                                      "HPageBreaks.Add(Before:=Range[12:12])"));
}

TEST_F(MiembrosDeExcel, ANameIsAddedThenReadThenChanged) {
    abrir();
    excel().ValorNombre("bnUltima", int32_t{12});
    EXPECT_THAT(diario(),
                ElementsAre("Workbook.Names", "Names._NewEnum", "Names.Next", "Workbook.Names",
                            "Names.Add(RefersTo:=BSTR \"=12\", Name:=BSTR \"bnUltima\")"));
    EXPECT_EQ(excel().ValorNombre("BNULTIMA"), Variante(std::string("12")));
    EXPECT_THAT(diario(), ElementsAre("Workbook.Names", "Names._NewEnum", "Names.Next",
                                      "Names.Next", "Name.Name", "Name.RefersTo"));
    excel().ValorNombre("bnUltima", std::string("13"));
    EXPECT_THAT(diario(), ElementsAre("Workbook.Names", "Names._NewEnum", "Names.Next",
                                      "Names.Next", "Name.Name", "Name.RefersTo = BSTR \"=13\""));
    EXPECT_EQ(excel().ValorNombre("otro"), Variante());
}

TEST_F(MiembrosDeExcel, PrintingGivesCopiesAndCollate) {
    abrir();
    excel().Imprimir();
    EXPECT_THAT(diario(), ElementsAre("Worksheet.PrintOut(, , I4 1, , , , BOOL True)"));
}

TEST_F(MiembrosDeExcel, ThePreviewShowsTheApplication) {
    abrir();
    excel().PrintPreview();
    EXPECT_THAT(diario(), ElementsAre("Application.Visible = BOOL True", "Worksheet.PrintPreview"));
}

TEST_F(MiembrosDeExcel, SavingGivesTheAccessModeThenQuits) {
    abrir();
    excel().Guardar("");
    EXPECT_THAT(diario(), ElementsAreArray(juntas({"Workbook.CheckCompatibility = BOOL False",
                                                   "Workbook.SaveAs(BSTR \"" + ruta("Pesadas.xls") +
                                                       "\", , , , , , I4 1)"},
                                                  kFinal)));
}

TEST_F(MiembrosDeExcel, ClosingQuitsAndSavesNothing) {
    abrir();
    excel().Celda(1, 1, std::string("x"));
    excel().Cerrar();
    EXPECT_THAT(diario(), ElementsAreArray(kFinal));
    EXPECT_EQ(leerCelda("Pesadas.xls", 1, 1), Variante(std::string()));
}

}  // namespace
}  // namespace bn::prueba
