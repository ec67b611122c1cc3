// SPDX-License-Identifier: MIT
// What an open workbook lets itself be asked and told.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "destinations/XCel.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/ExcelDePrueba.h"

namespace bn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Textos = std::vector<std::string>;

const std::string kLibro = "Pesadas.xls";

class XCelHoja : public testing::Test {
 protected:
    void SetUp() override {
        LibroSimulado libro;
        libro.hojas = {{"Enero", {}}, {"Año", {}}};
        libro.nombres = {{"bnÚltima", "=12"}, {"Otro", "=Enero!R1C1"}};
        plataforma.excel.disco[kLibro] = libro;
        xcel.AbrirParaEscribir(kLibro, "Enero", true);
        plataforma.excel.olvidar();
    }
    Textos ordenes() { return plataforma.excel.ordenes(); }
    const LibroSimulado& guardado() {
        xcel.Guardar("");
        return plataforma.excel.disco[kLibro];
    }

    prueba::CarpetaTemporal carpeta;
    PlataformaConExcel plataforma{carpeta.ruta()};
    XCel xcel{plataforma};
};

TEST_F(XCelHoja, ListsTheSheetsInTheirOrderAndChangesNothing) {
    EXPECT_EQ(xcel.ListaDeHojas(), (Textos{"Enero", "Año"}));
    EXPECT_THAT(ordenes(), IsEmpty());
    EXPECT_EQ(xcel.NombreHoja(), "Enero");
}

TEST_F(XCelHoja, MovesToASheetWhateverItsLetterCase) {
    EXPECT_TRUE(xcel.EstablecerHoja("AÑO"));
    EXPECT_EQ(xcel.NombreHoja(), "Año");
    EXPECT_TRUE(xcel.EstablecerHoja("enero"));
    EXPECT_EQ(xcel.NombreHoja(), "Enero");
}

TEST_F(XCelHoja, StaysWhereItIsWhenThereIsNoSuchSheet) {
    EXPECT_FALSE(xcel.EstablecerHoja("Febrero"));
    EXPECT_FALSE(xcel.EstablecerHoja(""));
    EXPECT_EQ(xcel.NombreHoja(), "Enero");
    EXPECT_THAT(plataforma.mensajes, IsEmpty());
}

TEST_F(XCelHoja, WritesCellsOfTheCurrentSheetWithTheirOwnType) {
    xcel.EstablecerHoja("Año");
    xcel.Celda(3, 2, std::string("1234 ÑÑÑ"));
    xcel.Celda(3, 3, 41);
    xcel.Celda(3, 4, 12.5F);
    xcel.Celda(3, 5, FechaOle{45000.5});
    xcel.Celda(32767, 702, 1.5);
    EXPECT_THAT(
        ordenes(),
        ElementsAre("Range[3,2].FormulaR1C1=\"1234 ÑÑÑ\"", "Range[3,3].FormulaR1C1=int 41",
                    "Range[3,4].FormulaR1C1=float 12.5", "Range[3,5].FormulaR1C1=fecha 45000.5",
                    "Range[32767,702].FormulaR1C1=double 1.5"));
    EXPECT_EQ(guardado().hoja("Enero").celdas.size(), 0U);
}

TEST_F(XCelHoja, ReadsBackWhatACellHolds) {
    xcel.Celda(2, 1, 41);
    EXPECT_EQ(xcel.Celda(2, 1), Variante(41));
    EXPECT_EQ(xcel.Celda(1, 2), Variante(std::string())) << "an empty cell gives an empty text";
}

TEST_F(XCelHoja, AFailingCellReachesTheCallerAndLeavesTheWorkbookOpen) {
    plataforma.excel.fallar("Range.FormulaR1C1=", "protegida");
    EXPECT_THROW(xcel.Celda(1, 1, 1), excel::ErrorExcel);
    EXPECT_THROW(xcel.Celda(0, 1), excel::ErrorExcel);
    EXPECT_NO_THROW(xcel.Celda(1, 1, 1));
    EXPECT_THAT(plataforma.mensajes, IsEmpty());
}

TEST_F(XCelHoja, SelectsACell) {
    xcel.IrA(4, 7);
    EXPECT_THAT(ordenes(), ElementsAre("Range[4,7].Select"));
}

struct CasoDeFormato {
    std::string que;
    std::function<void(XCel&)> hacer;
    Textos ordenes;
};

TEST_F(XCelHoja, FormatsColumnsAndCellsInTheOrderAsked) {
    const std::vector<CasoDeFormato> casos = {
        {"right, with a width",
         [](XCel& x) { x.AjusteColumnaDerecha(3, 12.5F); },
         {"Range[columna 3].HorizontalAlignment=-4152",
          "Range[columna 3].ColumnWidth=double 12.5"}},
        {"right, width 0",
         [](XCel& x) { x.AjusteColumnaDerecha(3, 0); },
         {"Range[columna 3].HorizontalAlignment=-4152"}},
        {"right, negative width",
         [](XCel& x) { x.AjusteColumnaDerecha(3, -1); },
         {"Range[columna 3].HorizontalAlignment=-4152"}},
        {"left, with a width",
         [](XCel& x) { x.AjusteColumnaIzquierda(4, 9); },
         {"Range[columna 4].HorizontalAlignment=-4131", "Range[columna 4].ColumnWidth=double 9"}},
        {"left, width 0",
         [](XCel& x) { x.AjusteColumnaIzquierda(4, 0); },
         {"Range[columna 4].HorizontalAlignment=-4131"}},
        {"one cell",
         [](XCel& x) { x.AjusteCeldaIzquierda(5, 6); },
         {"Range[5,6].HorizontalAlignment=-4131"}},
        {"width", [](XCel& x) { x.AnchoColumna(2, 8); }, {"Range[columna 2].ColumnWidth=double 8"}},
        {"width 0",
         [](XCel& x) { x.AnchoColumna(2, 0); },
         {"Range[columna 2].ColumnWidth=double 0"}},
        {"negative width",
         [](XCel& x) { x.AnchoColumna(2, -3); },
         {"Range[columna 2].ColumnWidth=double -3"}},
        {"numbers",
         [](XCel& x) { x.ColumnaNumerica(7); },
         {"Range[columna 7].NumberFormat=#,##0.00;#,-##0.00;#",
          "Range[columna 7].HorizontalAlignment=-4152"}},
        {"dates",
         [](XCel& x) { x.ColumnaFecha(1); },
         {"Range[columna 1].NumberFormat=dd/mm/yyyy",
          "Range[columna 1].HorizontalAlignment=-4108"}},
        {"zeros",
         [](XCel& x) { x.ColumnaNumCero(5, 7); },
         {"Range[columna 5].HorizontalAlignment=-4108", "Range[columna 5].NumberFormat=0000000"}},
        {"page break",
         [](XCel& x) { x.SaltoPagina(40); },
         {"HPageBreaks.Add Before Range[fila 40]"}},
        {"print",
         [](XCel& x) { x.Imprimir(); },
         {"Worksheet[Enero].PrintOut Copies 1 Collate True"}},
        {"preview",
         [](XCel& x) { x.PrintPreview(); },
         {"Application[1].Visible=True", "Worksheet[Enero].PrintPreview"}},
    };
    for (const auto& caso : casos) {
        plataforma.excel.olvidar();
        caso.hacer(xcel);
        EXPECT_EQ(ordenes(), caso.ordenes) << caso.que;
    }
}

TEST_F(XCelHoja, RepeatsTheHeaderStepByStep) {
    xcel.ReplicarCabecera(3, 61);
    EXPECT_THAT(ordenes(),
                ElementsAre("Range[filas 1:3].Select", "Range[Selection].Copy", "Range[A61].Select",
                            "Worksheet[Enero].Paste", "Application[1].CutCopyMode=False",
                            "HPageBreaks.Add Before Range[ActiveCell]"));
}

TEST_F(XCelHoja, AFailureHalfwayThroughTheHeaderReachesTheCaller) {
    plataforma.excel.fallar("Worksheet.Paste", "no cabe");
    EXPECT_THROW(xcel.ReplicarCabecera(3, 61), excel::ErrorExcel);
    EXPECT_EQ(ordenes().back(), "Worksheet[Enero].Paste");
}

TEST_F(XCelHoja, GivesWhatANameHoldsWithoutItsEqualsSign) {
    EXPECT_EQ(xcel.ValorNombre("bnÚltima"), Variante(std::string("12")));
    EXPECT_EQ(xcel.ValorNombre("BNúLTIMA"), Variante(std::string("12")));
    EXPECT_EQ(xcel.ValorNombre("otro"), Variante(std::string("Enero!R1C1")));
    EXPECT_THAT(ordenes(), IsEmpty());
}

TEST_F(XCelHoja, GivesNothingForANameThatIsMissing) {
    EXPECT_EQ(xcel.ValorNombre("bnUltima"), Variante());
    EXPECT_EQ(xcel.ValorNombre(""), Variante());
}

TEST_F(XCelHoja, ChangesANameThatExists) {
    xcel.ValorNombre("BNÚLTIMA", 25);
    EXPECT_THAT(ordenes(), ElementsAre("Name[bnÚltima].RefersTo==25"));
    EXPECT_EQ(xcel.ValorNombre("bnÚltima"), Variante(std::string("25")));
}

TEST_F(XCelHoja, AddsANameThatIsMissing) {
    xcel.ValorNombre("bnUltima", std::string("Enero!$A$3"));
    EXPECT_THAT(ordenes(), ElementsAre("Names.Add Name bnUltima RefersTo =Enero!$A$3"));
    EXPECT_EQ(guardado().nombres.size(), 3U);
}

TEST_F(XCelHoja, KeepsNoObjectOfTheOperationsAlive) {
    xcel.Celda(1, 1, 1);
    xcel.Celda(1, 1);
    xcel.ListaDeHojas();
    xcel.ValorNombre("x", 1);
    xcel.ReplicarCabecera(1, 2);
    xcel.SaltoPagina(3);
    EXPECT_EQ(plataforma.excel.objetosVivos, 3) << "application, workbook and worksheet";
    xcel.Cerrar();
    EXPECT_EQ(plataforma.excel.objetosVivos, 0);
    EXPECT_EQ(plataforma.excel.instanciasAbiertas, 0);
}

}  // namespace
}  // namespace bn
