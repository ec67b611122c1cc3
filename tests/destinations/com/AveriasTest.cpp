// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <map>

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

TEST_F(AveriasDeExcel, ABusyApplicationIsAskedAgainForTheIdentifiersToo) {
    ordenar("ocupado=?Workbooks.Open,4 ocupado=?Application.Quit,2");
    EXPECT_TRUE(leer());
    excel().Cerrar();
    EXPECT_THAT(diario(), Contains("Application.Quit"));
}

TEST_F(AveriasDeExcel, AnApplicationThatStaysBusyTakesThePatienceOnceAndOnceMoreToQuit) {
    ordenar(
        "ocupado=Application.DisplayAlerts=,1000000 ocupado=Application.Workbooks,1000000 "
        "ocupado=Application.Quit,1000000");
    EXPECT_FALSE(leer());
    const std::vector<std::string> lineas = diario();
    EXPECT_THAT(lineas, Contains(HasSubstr("Application.DisplayAlerts")).Times(testing::Gt(5)));
    EXPECT_THAT(lineas, Not(Contains(HasSubstr("Application.Workbooks"))));
    EXPECT_THAT(lineas, Contains(HasSubstr("Application.Quit")).Times(testing::Gt(5)));
}

TEST_F(AveriasDeExcel, AnApplicationThatWasBusyForTooLongIsStillQuit) {
    ordenar("ocupado=Application.Workbooks,1000000 ocupado=Application.Quit,3");
    EXPECT_FALSE(leer());
    EXPECT_THAT(diario(), Contains("Application.Quit"));
}

TEST_F(AveriasDeExcel, PatienceComesBackWithTheFirstCallThatIsAttended) {
    ordenar("ocupado=Application.EnableEvents=,20 ocupado=Workbook.Worksheets,5");
    plataforma_.paciencia.limite = std::chrono::milliseconds(40);
    EXPECT_FALSE(leer()) << "twenty times are more than it is asked";
    ordenar("ocupado=Application.Hwnd,1000000 ocupado=Workbook.Worksheets,5");
    EXPECT_TRUE(leer());
    excel().Cerrar();
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
    diario();
    abrir();
    const std::vector<std::string> lineas = diario();
    ASSERT_GT(lineas.size(), 5U);
    EXPECT_THAT(std::vector(lineas.begin(), lineas.begin() + 4),
                ElementsAre("Application.DisplayAlerts = BOOL False",
                            "Application.IgnoreRemoteRequests = BOOL False", "Application.Quit",
                            "Application: fin"));
}

/// The roads that start an application, from the first call to the last.
class CaminosDeExcel : public AveriasDeExcel {
 protected:
    void SetUp() override {
        AveriasDeExcel::SetUp();
        const auto escribir = [this](const std::string& libro, const std::string& hoja) {
            return [this, libro, hoja](XCel& otra) {
                otra.AbrirParaEscribir(ruta(libro), hoja, false);
                otra.ValorNombre("bnUltima");
                otra.Celda(1, 1);
                otra.Celda(1, 1, std::string("x"));
                otra.Guardar(ruta("Copia.xls"));
            };
        };
        const auto leerHoja = [this](const std::string& hoja) {
            return [this, hoja](XCel& otra) {
                if (!otra.AbrirParaLeer(ruta("Pesadas.xls"), hoja)) return;
                otra.ListaDeHojas();
                otra.Cerrar();
            };
        };
        caminos_ = {
            {"existente", escribir("Pesadas.xls", "Pesadas")},
            {"otra hoja", escribir("Pesadas.xls", "Otra")},
            {"libro nuevo", escribir("Nuevo.xls", "Pesadas")},
            {"leer", leerHoja("Pesadas")},
            {"leer la primera", leerHoja("")},
            {"leer sin hoja", leerHoja("Ausente")},
            {"plantilla",
             [this](XCel& otra) {
                 otra.AbrirPlantilla(ruta("Pesadas.xls"));
                 otra.Guardar(ruta("Copia.xls"));
             }},
            {"hay", [](XCel& otra) { otra.HayExcel(); }},
        };
    }

    /// Goes down a road, to its end or to the first error, and releases everything.
    void recorrer(const std::function<void(XCel&)>& camino) {
        XCel otra(plataforma_);
        mensajeDe([&] { camino(otra); });
    }

    std::map<std::string, std::function<void(XCel&)>> caminos_;
};

TEST_F(CaminosDeExcel, EveryCallMayFailAndTheApplicationIsStillQuit) {
    for (const auto& [nombre, camino] : caminos_) {
        ordenar("");
        diario();
        recorrer(camino);
        const std::size_t llamadas = this->llamadas().size();
        for (std::size_t llamada = 1; llamada <= llamadas; ++llamada) {
            ordenar("falla=" + std::to_string(llamada));
            recorrer(camino);
            const std::vector<std::string> lineas = diario();
            ASSERT_THAT(lineas, Contains("Application.Quit")) << nombre << ' ' << llamada;
            ASSERT_EQ(lineas.back(), "Application: fin") << nombre << ' ' << llamada;
        }
    }
}

TEST_F(CaminosDeExcel, AnyMemberMayFailForEverAndTheApplicationIsStillQuit) {
    for (const char* miembro : {"Application.Hwnd",
                                "Application.DisplayAlerts=",
                                "Application.AutomationSecurity=",
                                "Application.EnableEvents=",
                                "Application.IgnoreRemoteRequests=",
                                "Application.Version",
                                "Workbook.CheckCompatibility=",
                                "Application.Workbooks",
                                "Workbooks.Open",
                                "Workbooks.Add",
                                "Workbook.Worksheets",
                                "Sheets._NewEnum",
                                "Sheets.Next",
                                "Sheets.Count",
                                "Sheets.Item",
                                "Sheets.Add",
                                "Worksheet.Name",
                                "Worksheet.Name=",
                                "Worksheet.Range",
                                "Workbook.Names",
                                "Range.FormulaR1C1",
                                "Range.FormulaR1C1=",
                                "Workbook.SaveAs",
                                "Workbook.Close"}) {
        for (const auto& [nombre, camino] : caminos_) {
            ordenar(std::string("falla=") + miembro);
            recorrer(camino);
            const std::vector<std::string> lineas = diario();
            ASSERT_THAT(lineas, Contains("Application.Quit")) << nombre << ' ' << miembro;
            ASSERT_EQ(lineas.back(), "Application: fin") << nombre << ' ' << miembro;
        }
    }
}

TEST_F(AveriasDeExcel, AWorkbookThatCanBeNeitherOpenedNorAddedIsToldOnceAndHoldsNothing) {
    ordenar("falla=Workbooks.Open falla=Workbooks.Add");
    abrir();
    EXPECT_THAT(plataforma_.mensajes, ElementsAre("Fallo pedido en Workbooks.Add (ñ €)"));
    EXPECT_EQ(diario().back(), "Application: fin");
    EXPECT_THROW(excel().Celda(1, 1), excel::ErrorExcel);
}

TEST_F(AveriasDeExcel, ABlockRefusedOnceIsWrittenWithTheOthersBeforeSaving) {
    ordenar("falla=Range.FormulaR1C1=,2");
    abrir();
    excel().Celda(2, 1, std::string("a"));
    excel().Celda(2, 3, std::string("b"));
    EXPECT_THROW(excel().NombreHoja(), excel::ErrorExcel);
    excel().Celda(3, 1, std::string("c"));
    excel().Guardar("");
    EXPECT_EQ(leerCelda("Pesadas.xls", 2, 1), Variante(std::string("a")));
    EXPECT_EQ(leerCelda("Pesadas.xls", 2, 3), Variante(std::string("b")));
    EXPECT_EQ(leerCelda("Pesadas.xls", 3, 1), Variante(std::string("c")));
    EXPECT_EQ(leerCelda("Pesadas.xls", 4, 1), Variante(std::string()));
}

TEST_F(AveriasDeExcel, ARefusedBlockNamesTheRowTheColumnAndTheValue) {
    ordenar("rechaza=mala");
    abrir();
    for (int16_t fila = 2; fila <= 40; ++fila) {
        excel().Celda(fila, 27, FechaOle{45000.5});
        excel().Celda(fila, 28, fila == 30 ? std::string("mala") : std::string("buena"));
    }
    EXPECT_EQ(mensajeDe([this] { excel().NombreHoja(); }),
              "No se puede escribir \"mala\" en la fila 30, columna AB: No se admite");
}

TEST_F(AveriasDeExcel, ARefusedSingleCellIsNamedWithItsValueAsItIsRead) {
    ordenar("falla=Range.FormulaR1C1=");
    abrir();
    excel().Celda(7, 3, 12.5);
    EXPECT_THAT(mensajeDe([this] { excel().NombreHoja(); }),
                HasSubstr("\"12,5\" en la fila 7, columna C: Fallo pedido"));
    excel().Cerrar();
    abrir();
    excel().Celda(8, 4, FechaOle{45000.5});
    EXPECT_THAT(mensajeDe([this] { excel().NombreHoja(); }),
                HasSubstr("/2023 12:00:00\" en la fila 8, columna D: Fallo"));
}

TEST_F(AveriasDeExcel, ABlockThatIsOnlyRefusedAsOneIsWrittenCellByCell) {
    ordenar("falla=Range.FormulaR1C1=,1");
    abrir();
    excel().Celda(2, 1, std::string("a"));
    excel().Celda(2, 2, std::string("b"));
    excel().Celda(3, 1, std::string("c"));
    excel().Celda(3, 2, std::string("d"));
    excel().Guardar("");
    EXPECT_EQ(leerCelda("Pesadas.xls", 2, 1), Variante(std::string("a")));
    EXPECT_EQ(leerCelda("Pesadas.xls", 3, 2), Variante(std::string("d")));
}

TEST_F(AveriasDeExcel, ABusyApplicationIsNotAskedForEachCellOfABlock) {
    ordenar("ocupado=Range.FormulaR1C1=,1000000");
    abrir();
    excel().Celda(2, 1, std::string("a"));
    excel().Celda(2, 2, std::string("b"));
    EXPECT_THAT(mensajeDe([this] { excel().NombreHoja(); }), Not(HasSubstr("fila")));
    EXPECT_THAT(diario(), Not(Contains(HasSubstr("Range[A2].FormulaR1C1"))));
}

TEST_F(AveriasDeExcel, AnApplicationThatIsStartingOrJustEndingIsWaitedFor) {
    ordenar("ausente=6");
    EXPECT_TRUE(excel().HayExcel());
    ordenar("ausente=6");
    EXPECT_TRUE(leer());
    excel().Cerrar();
}

TEST_F(AveriasDeExcel, AFirstCallThatIsRefusedIsMadeAgain) {
    ordenar("ocupado=1,4");
    EXPECT_TRUE(leer());
    excel().Cerrar();
}

TEST_F(AveriasDeExcel, AFailedQuitLosesNothingOfWhatIsWrittenAfterIt) {
    ordenar("falla=Application.Quit,1");
    const auto aplicacion = plataforma_.nuevaAplicacionExcel(false);
    const auto libro = aplicacion->Workbooks()->Open(ruta("Pesadas.xls"));
    const auto celda = libro->Worksheets()->Item(1)->Cells()->Item(1, 1);
    celda->FormulaR1C1(std::string("vieja"));
    EXPECT_THROW(aplicacion->Quit(), excel::ErrorExcel);
    celda->FormulaR1C1(std::string("nueva"));
    EXPECT_EQ(celda->FormulaR1C1(), Variante(std::string("nueva")));
    aplicacion->Quit();
}

TEST_F(AveriasDeExcel, AnInstanceIsQuitThoughItsQuestionsCannotBeSwitchedOff) {
    ordenar("falla=Application.DisplayAlerts=");
    plataforma_.nuevaAplicacionExcel(false)->Workbooks()->Add();
    EXPECT_THAT(diario(), Contains("Application.Quit"));
}

TEST_F(AveriasDeExcel, AnInstanceThatNobodyQuitIsQuitWhenReleased) {
    {
        const auto aplicacion = plataforma_.nuevaAplicacionExcel(false);
        aplicacion->Workbooks()->Add();
    }
    const std::vector<std::string> lineas = diario();
    ASSERT_GT(lineas.size(), 5U);
    EXPECT_THAT(std::vector(lineas.end() - 5, lineas.end()),
                ElementsAre("Workbooks.Add", "Application.DisplayAlerts = BOOL False",
                            "Application.IgnoreRemoteRequests = BOOL False", "Application.Quit",
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
    EXPECT_THAT(mensajeDe([this] { excel().NombreHoja(); }),
                HasSubstr("Fallo pedido en Range.FormulaR1C1 (ñ €)"));
    EXPECT_THROW(excel().Guardar(""), excel::ErrorExcel);
    excel().Cerrar();
    EXPECT_EQ(leerCelda("Pesadas.xls", 1, 1), Variante(std::string("x")));
}

}  // namespace
}  // namespace bn::prueba
