// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <algorithm>

#include "tests/destinations/com/ConSustituto.h"

// A busy application, one that fails, and one that is not there: on every road it ends.

namespace bn::prueba {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class AveriasDeExcel : public ConSustituto {
 protected:
    void SetUp() override {
        ConSustituto::SetUp();
        crearLibro("Pesadas.xls", {{std::string("x")}});
    }
    void abrir() { excel().AbrirParaEscribir(ruta("Pesadas.xls"), "Pesadas", true); }
    bool leer() { return excel().AbrirParaLeer(ruta("Pesadas.xls"), "Pesadas"); }

    static std::string mensajeDe(const std::function<void()>& paso) {
        try {
            paso();
        } catch (const excel::ErrorExcel& e) {
            return e.what();
        }
        return "no ha fallado";
    }
};

TEST_F(AveriasDeExcel, ABusyApplicationIsAskedAgain) {
    ordenar("ocupado=Workbooks.Open,5 ocupado=Sheets.Next,3 ocupado=Application.Quit,4");
    EXPECT_TRUE(leer());
    EXPECT_EQ(excel().ListaDeHojas(), std::vector<std::string>{"Pesadas"});
    excel().Cerrar();
    const std::vector<std::string> lineas = diario();
    EXPECT_THAT(lineas, Contains(HasSubstr("Workbooks.Open")).Times(6));
    EXPECT_THAT(lineas, Contains("Application.Quit"));
    EXPECT_EQ(lineas.back(), "Application: fin");
}

TEST_F(AveriasDeExcel, ABusyApplicationIsNotAskedForEver) {
    ordenar("ocupado=Workbooks.Open,1000000");
    EXPECT_FALSE(leer());
    const std::vector<std::string> lineas = diario();
    EXPECT_THAT(lineas, Contains(HasSubstr("Workbooks.Open")).Times(testing::Gt(5)));
    EXPECT_THAT(lineas, Contains("Application.Quit"));
    EXPECT_EQ(lineas.back(), "Application: fin");
}

TEST_F(AveriasDeExcel, ABusyApplicationLosesNoCell) {
    ordenar("ocupado=Range.FormulaR1C1=,4 ocupado=Workbook.SaveAs,2");
    abrir();
    excel().Celda(2, 1, std::string("y"));
    excel().Guardar("");
    EXPECT_EQ(leerCelda("Pesadas.xls", 2, 1), Variante(std::string("y")));
}

TEST_F(AveriasDeExcel, AnAbsentApplicationIsToldOnce) {
    ordenar("ausente");
    abrir();
    EXPECT_EQ(plataforma_.mensajes.size(), 1U);
    EXPECT_THROW(excel().Celda(1, 1), excel::ErrorExcel);
    EXPECT_FALSE(leer());
    EXPECT_EQ(plataforma_.mensajes.size(), 2U);
    EXPECT_THAT(diario(), IsEmpty());
}

TEST_F(AveriasDeExcel, TheDescriptionIsTheApplicationsOwn) {
    ordenar("falla=Workbook.SaveAs");
    abrir();
    EXPECT_EQ(mensajeDe([this] { excel().Guardar(""); }), "Fallo pedido en Workbook.SaveAs (ñ €)");
}

TEST_F(AveriasDeExcel, WithoutADescriptionTheSystemsIsTaken) {
    ordenar("muda=Workbook.SaveAs");
    abrir();
    const std::string mensaje = mensajeDe([this] { excel().Guardar(""); });
    EXPECT_THAT(mensaje, Not(HasSubstr("Fallo pedido")));
    EXPECT_THAT(mensaje, Not(IsEmpty()));
    EXPECT_NE(mensaje, "no ha fallado");
}

TEST_F(AveriasDeExcel, AFailedSaveLeavesNoProcessBehind) {
    ordenar("falla=Workbook.SaveAs");
    abrir();
    EXPECT_THROW(excel().Guardar(""), excel::ErrorExcel);
    abrir();
    EXPECT_THAT(diario(), Contains("Application: fin"));
}

TEST_F(AveriasDeExcel, EveryCallMayFailAndTheApplicationStillEnds) {
    int fallos = 0;
    for (int llamada = 1; llamada <= 40; ++llamada) {
        ordenar("falla=" + std::to_string(llamada));
        {
            XCel otra(plataforma_);
            const std::string mensaje = mensajeDe([&] {
                otra.AbrirParaEscribir(ruta("Pesadas.xls"), "Otra", false);
                otra.ValorNombre("bnUltima");
                otra.Celda(1, 1, std::string("x"));
                otra.Guardar(ruta("Copia.xls"));
            });
            if (mensaje != "no ha fallado") ++fallos;
        }
        const std::vector<std::string> lineas = diario();
        ASSERT_EQ(lineas.back(), "Application: fin") << llamada;
        ASSERT_THAT(lineas, Contains("Application.Quit")) << llamada;
    }
    EXPECT_GT(fallos, 5);
}

TEST_F(AveriasDeExcel, AnInstanceThatNobodyQuitIsQuitWhenReleased) {
    {
        const auto aplicacion = plataforma_.nuevaAplicacionExcel(false);
        aplicacion->Workbooks()->Add();
    }
    EXPECT_THAT(diario(), ElementsAre("Application.Workbooks", "Workbooks.Add",
                                      "Application.DisplayAlerts = BOOL False", "Application.Quit",
                                      "Application: fin"));
}

TEST_F(AveriasDeExcel, AfterQuitEveryObjectAnswersWithAnErrorAndWithoutACall) {
    auto aplicacion = plataforma_.nuevaAplicacionExcel(false);
    const auto libro = aplicacion->Workbooks()->Open(ruta("Pesadas.xls"));
    const auto hoja = libro->Worksheets()->Item(1);
    const auto celda = hoja->Cells()->Item(1, 1);
    aplicacion->Quit();
    diario();
    EXPECT_THROW(hoja->Name(), excel::ErrorExcel);
    EXPECT_THROW(hoja->Cells(), excel::ErrorExcel);
    EXPECT_THROW(celda->FormulaR1C1(), excel::ErrorExcel);
    EXPECT_THROW(celda->FormulaR1C1(int32_t{1}), excel::ErrorExcel);
    EXPECT_THROW(libro->SaveAs("x", 1), excel::ErrorExcel);
    EXPECT_THROW(aplicacion->Quit(), excel::ErrorExcel);
    EXPECT_THAT(diario(), IsEmpty());
}

TEST_F(AveriasDeExcel, AnObjectThatOutlivesItsApplicationIsSafe) {
    auto aplicacion = plataforma_.nuevaAplicacionExcel(false);
    const auto libro = aplicacion->Workbooks()->Open(ruta("Pesadas.xls"));
    const auto celda = libro->Worksheets()->Item(1)->Cells()->Item(1, 1);
    celda->FormulaR1C1(std::string("y"));
    aplicacion.reset();
    EXPECT_THROW(libro->Name(), excel::ErrorExcel);
    EXPECT_THROW(celda->FormulaR1C1(), excel::ErrorExcel);
}

TEST_F(AveriasDeExcel, ARefusedBlockStaysQueuedSoThatNothingIsSavedWithoutIt) {
    ordenar("falla=Range.FormulaR1C1=");
    abrir();
    excel().Celda(1, 1, std::string("perdida"));
    EXPECT_EQ(mensajeDe([this] { excel().NombreHoja(); }),
              "Fallo pedido en Range.FormulaR1C1 (ñ €)");
    EXPECT_THROW(excel().Guardar(""), excel::ErrorExcel);
    excel().Cerrar();
    EXPECT_EQ(leerCelda("Pesadas.xls", 1, 1), Variante(std::string("x")));
}

}  // namespace
}  // namespace bn::prueba
