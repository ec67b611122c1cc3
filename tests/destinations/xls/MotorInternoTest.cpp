// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "destinations/xls/MotorInterno.h"
#include "platform/Ficheros.h"
#include "tests/destinations/xls/Ayudas.h"

namespace bn::xls::prueba {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// 15 March 2023, 06:07:08.
constexpr double kAhora = 45000 + (6 * 3600 + 7 * 60 + 8) / 86400.0;

class MotorInterno : public testing::Test {
 protected:
    std::string ruta(const std::string& nombre) const {
        return ficheros::aTexto(carpeta_.ruta() / ficheros::aRuta(nombre));
    }

    std::vector<std::string> nombres() const {
        std::vector<std::string> lista;
        for (const auto& entrada : std::filesystem::directory_iterator(carpeta_.ruta())) {
            lista.push_back(ficheros::aTexto(entrada.path().filename()));
        }
        std::sort(lista.begin(), lista.end());
        return lista;
    }

    static std::string errorDe(const std::function<void()>& accion) {
        try {
            accion();
        } catch (const excel::ErrorExcel& error) {
            return error.what();
        }
        return "no error";
    }

    static Variante celda(excel::Worksheet& hoja, int32_t fila, int32_t columna) {
        return hoja.Cells()->Item(fila, columna)->FormulaR1C1();
    }

    Carpeta carpeta_;
    std::unique_ptr<excel::Application> aplicacion_ =
        nuevaAplicacionInterna([] { return kAhora; }, discoDelSistema());
};

TEST_F(MotorInterno, ANewWorkbookHoldsOneSheetAndIsSavedWhereAsked) {
    const auto libro = aplicacion_->Workbooks()->Add();
    EXPECT_EQ(libro->Name(), "Libro1");
    EXPECT_EQ(libro->Worksheets()->Count(), 1);
    libro->Worksheets()->Item(1)->Cells()->Item(2, 3)->FormulaR1C1(std::string("hola"));
    libro->SaveAs(ruta("año.xls"), 1);
    EXPECT_EQ(libro->Name(), "año.xls");
    const auto leido = aplicacion_->Workbooks()->Open(ruta("año.xls"));
    EXPECT_EQ(celda(*leido->Worksheets()->Item(1), 2, 3), Variante(std::string("hola")));
    EXPECT_THAT(nombres(), ElementsAre("año.xls"));
}

TEST_F(MotorInterno, AMissingWorkbookDoesNotExist) {
    EXPECT_THAT(errorDe([&] { aplicacion_->Workbooks()->Open(ruta("no.xls")); }),
                HasSubstr("no existe"));
    EXPECT_THROW(aplicacion_->Workbooks()->Open(carpeta_.ruta().string()), excel::ErrorExcel);
}

TEST_F(MotorInterno, AFileItOpenedIsSimplyReplaced) {
    escribirFichero(carpeta_ / "p.xls", muestra("s4_gnumeric"));
    const auto libro = aplicacion_->Workbooks()->Open(ruta("p.xls"));
    libro->Worksheets()->Item(1)->Cells()->Item(1, 1)->FormulaR1C1(5.0);
    libro->SaveAs(ruta("p.xls"), 1);
    EXPECT_THAT(nombres(), ElementsAre("p.xls"));
}

TEST_F(MotorInterno, AFailedSaveLeavesTheOldFileWhereItWas) {
    std::filesystem::create_directory(carpeta_ / "p.xls");
    const auto libro = aplicacion_->Workbooks()->Add();
    EXPECT_THROW(libro->SaveAs(ruta("p.xls"), 1), excel::ErrorExcel);
    EXPECT_THROW(libro->SaveAs(ruta("no/hay/p.xls"), 1), excel::ErrorExcel);
    EXPECT_THAT(nombres(), ElementsAre("p.xls"));
}

TEST_F(MotorInterno, AWorkbookMadeAfterATemplateIsNamedAfterIt) {
    escribirFichero(carpeta_ / "Informe.xls", muestra("s3_lo_chart"));
    const auto libro = aplicacion_->Workbooks()->Add(ruta("Informe.xls"));
    EXPECT_EQ(libro->Name(), "Informe1");
    EXPECT_EQ(aplicacion_->Workbooks()->Item(1)->Name(), "Informe1");
    EXPECT_THROW(aplicacion_->Workbooks()->Add(ruta("no.xls")), excel::ErrorExcel);
}

TEST_F(MotorInterno, OnlyWorksheetsAreCounted) {
    escribirFichero(carpeta_ / "p.xls", muestra("s1_perl_writeexcel"));
    const auto hojas = aplicacion_->Workbooks()->Open(ruta("p.xls"))->Worksheets();
    EXPECT_EQ(hojas->Count(), 4);
    EXPECT_EQ(hojas->enumerar().size(), 4U);
    EXPECT_THROW(hojas->Item(0), excel::ErrorExcel);
    EXPECT_THROW(hojas->Item(5), excel::ErrorExcel);
}

TEST_F(MotorInterno, CellsEndWhereTheSheetEnds) {
    const auto hoja = aplicacion_->Workbooks()->Add()->Worksheets()->Item(1);
    EXPECT_NO_THROW(hoja->Cells()->Item(65536, 256)->FormulaR1C1(1.0));
    for (const auto& [fila, columna] : {std::pair(65537, 1),
                                        {1, 257},
                                        {0, 1},
                                        {1, 0},
                                        {-1, 1},
                                        {INT32_MAX, INT32_MAX},
                                        {INT32_MIN, 1}}) {
        EXPECT_THAT(errorDe([&, f = fila, c = columna] { hoja->Cells()->Item(f, c); }),
                    HasSubstr("65.536 filas y 256 columnas"));
    }
    EXPECT_THROW(hoja->Columns(257), excel::ErrorExcel);
    EXPECT_THROW(hoja->Rows(65537), excel::ErrorExcel);
    EXPECT_THROW(hoja->Range("A65537"), excel::ErrorExcel);
}

TEST_F(MotorInterno, ReferencesAreReadInTheirUsualForms) {
    const auto hoja = aplicacion_->Workbooks()->Add()->Worksheets()->Item(1);
    hoja->Range("c12")->FormulaR1C1(1.0);
    hoja->Range("$B$2:D3")->Item(1, 1)->FormulaR1C1(2.0);
    EXPECT_EQ(celda(*hoja, 12, 3), Variante(1.0));
    EXPECT_EQ(celda(*hoja, 2, 2), Variante(2.0));
    EXPECT_NO_THROW(hoja->Rows("1:3"));
    for (const char* mala : {"", "A", "12", "A1:", "A1:B", "A1B2", ":", "A1:3", "1.5", "A-1",
                             "AAAAAAAAAAAAAA1", "A99999999999999"}) {
        EXPECT_THROW(hoja->Range(mala), excel::ErrorExcel) << mala;
    }
    EXPECT_THROW(hoja->Rows("A1"), excel::ErrorExcel);
}

TEST_F(MotorInterno, TheHeaderIsRepeatedWithItsFormatsAndAPageBreak) {
    const auto libro = aplicacion_->Workbooks()->Add();
    const auto hoja = libro->Worksheets()->Item(1);
    hoja->Cells()->Item(1, 1)->FormulaR1C1(std::string("Pesadas"));
    hoja->Cells()->Item(2, 2)->FormulaR1C1(std::string("Neto"));
    hoja->Cells()->Item(2, 2)->HorizontalAlignment(excel::kAlinearDerecha);
    hoja->Rows("1:2")->Select();
    aplicacion_->Selection()->Copy();
    hoja->Range("A40")->Select();
    hoja->Paste();
    aplicacion_->CutCopyMode(false);
    hoja->HPageBreaks()->Add(*aplicacion_->ActiveCell());
    EXPECT_EQ(celda(*hoja, 40, 1), Variante(std::string("Pesadas")));
    EXPECT_EQ(celda(*hoja, 41, 2), Variante(std::string("Neto")));
    EXPECT_THROW(hoja->Paste(), excel::ErrorExcel);
    libro->SaveAs(ruta("p.xls"), 1);
    const auto registros = registrosDe(leerFichero(carpeta_ / "p.xls"), 1);
    EXPECT_THAT(datosDe(registros, id::kHorizontalPageBreaks),
                ElementsAre("01 00 27 00 00 00 FF 00"));
    EXPECT_THAT(datosDe(registros, id::kLabelSst),
                testing::Contains("28 00 01 00 10 00 01 00 00 00"));
}

TEST_F(MotorInterno, HasNothingToPrintWith) {
    const auto hoja = aplicacion_->Workbooks()->Add()->Worksheets()->Item(1);
    EXPECT_THAT(errorDe([&] { hoja->PrintOut(1, true); }), HasSubstr("no puede imprimir"));
    EXPECT_THAT(errorDe([&] { hoja->PrintPreview(); }), HasSubstr("no puede imprimir"));
}

TEST_F(MotorInterno, NothingAnswersOnceItHasQuit) {
    const auto libros = aplicacion_->Workbooks();
    const auto libro = libros->Add();
    const auto hoja = libro->Worksheets()->Item(1);
    const auto rango = hoja->Cells()->Item(1, 1);
    aplicacion_->Quit();
    const std::function<void()> acciones[] = {[&] { aplicacion_->Workbooks(); },
                                              [&] { aplicacion_->Selection(); },
                                              [&] { libros->Add(); },
                                              [&] { libros->Item(1); },
                                              [&] { libro->Name(); },
                                              [&] { libro->SaveAs(ruta("p.xls"), 1); },
                                              [&] { libro->Names(); },
                                              [&] { hoja->Name(); },
                                              [&] { hoja->Cells(); },
                                              [&] { hoja->Delete(); },
                                              [&] { rango->FormulaR1C1(); },
                                              [&] { rango->FormulaR1C1(1.0); },
                                              [&] { rango->Select(); },
                                              [&] { rango->ClearContents(); }};
    for (const auto& accion : acciones) EXPECT_THROW(accion(), excel::ErrorExcel);
    EXPECT_TRUE(nombres().empty());
}

TEST_F(MotorInterno, ObjectsThatOutliveItAnswerWithAnError) {
    const auto libro = aplicacion_->Workbooks()->Add();
    const auto hoja = libro->Worksheets()->Item(1);
    aplicacion_.reset();
    EXPECT_THROW(libro->Worksheets(), excel::ErrorExcel);
    EXPECT_THROW(hoja->Cells(), excel::ErrorExcel);
}

TEST_F(MotorInterno, AClosedWorkbookOrADeletedSheetAnswersWithAnError) {
    const auto libro = aplicacion_->Workbooks()->Add();
    const auto primera = libro->Worksheets()->Item(1);
    const auto segunda = libro->Worksheets()->Add(*primera);
    primera->Delete();
    EXPECT_THROW(primera->Name(), excel::ErrorExcel);
    EXPECT_EQ(segunda->Name(), "Hoja2");
    libro->Close();
    EXPECT_THROW(segunda->Name(), excel::ErrorExcel);
    EXPECT_THROW(libro->Name(), excel::ErrorExcel);
    EXPECT_THROW(aplicacion_->Workbooks()->Item(1), excel::ErrorExcel);
}

}  // namespace
}  // namespace bn::xls::prueba
