// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <windows.h>

#include <fstream>
#include <functional>

#include "destinations/excel/com/EnUso.h"
#include "platform/Ficheros.h"
#include "tests/destinations/com/ConSustituto.h"

// What opening and saving a workbook asks of the application, by its version; and workbooks that
// somebody else has open.

namespace bn::prueba {
namespace {

using excel::com::estaProtegidoContraEscritura;
using excel::com::usuarioDelLibro;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using Clase = excel::ErrorDeApertura::Clase;

class AperturaDeExcel : public ConSustituto {
 protected:
    /// Saves a new workbook of one weighing; what the application was told to save.
    std::string guardarNuevo(const std::string& nombre) {
        excel().AbrirParaEscribir(ruta(nombre), "Pesadas", true);
        excel().Celda(1, 1, std::string("1234BCD"));
        excel().Guardar("");
        return guardado();
    }
    std::string guardado() {
        for (const std::string& linea : diario()) {
            if (linea.starts_with("Workbook.SaveAs")) return linea;
        }
        return "no se ha guardado";
    }
    std::string saveAs(const std::string& nombre, const std::string& formato) const {
        return "Workbook.SaveAs(BSTR \"" + ruta(nombre) + "\", " + formato + ", , , , , I4 1)";
    }

    /// What is said of a workbook that is opened to be written; "" when there is nothing to say.
    std::string motivoDe(const std::string& nombre) {
        const auto aplicacion = plataforma_.nuevaAplicacionExcel(false);
        const auto libro = aplicacion->Workbooks()->Open(ruta(nombre));
        try {
            libro->exigirLibre();
            return "";
        } catch (const excel::ErrorDeApertura& e) {
            EXPECT_EQ(e.clase(), Clase::kSano);
            return e.what();
        }
    }

    /// The file that the application keeps beside an open workbook.
    void dejarAviso(const std::string& nombre, const std::string& bytes) {
        std::ofstream(carpeta_ / ("~$" + nombre), std::ios::binary) << bytes;
    }
};

TEST_F(AperturaDeExcel, ANewWorkbookSaysItsFormatFrom2007On) {
    for (const char* version : {"12.0", "14.0", "16.0"}) {
        ordenar(std::string("version=") + version);
        const std::string nombre = std::string("Nuevo ") + version + ".xls";
        EXPECT_EQ(guardarNuevo(nombre), saveAs(nombre, "I4 56"));
        EXPECT_EQ(leerCelda(nombre, 1, 1), Variante(std::string("1234BCD"))) << version;
    }
}

TEST_F(AperturaDeExcel, ANewWorkbookSaysNothingToOlderVersions) {
    for (const char* version : {"9.0", "10.0", "11.0"}) {
        ordenar(std::string("version=") + version);
        const std::string nombre = std::string("Nuevo ") + version + ".xls";
        EXPECT_EQ(guardarNuevo(nombre), saveAs(nombre, ""));
        EXPECT_EQ(leerCelda(nombre, 1, 1), Variante(std::string("1234BCD"))) << version;
    }
}

TEST_F(AperturaDeExcel, TheExtensionCountsInAnyLetterCase) {
    EXPECT_EQ(guardarNuevo("Nuevo.XLS"), saveAs("Nuevo.XLS", "I4 56"));
    EXPECT_EQ(guardarNuevo("Otro.Xls"), saveAs("Otro.Xls", "I4 56"));
}

TEST_F(AperturaDeExcel, UnderAnotherExtensionTheFormatIsTheApplicationsOwn) {
    EXPECT_EQ(guardarNuevo("Nuevo.xlsx"), saveAs("Nuevo.xlsx", ""));
    EXPECT_EQ(guardarNuevo("xls"), saveAs("xls", ""));
}

TEST_F(AperturaDeExcel, AWorkbookThatWasOpenedKeepsItsFormat) {
    crearLibro("Pesadas.xls", {});
    EXPECT_EQ(guardarNuevo("Pesadas.xls"), saveAs("Pesadas.xls", ""));
}

TEST_F(AperturaDeExcel, AWorkbookMadeAfterATemplateIsANewOne) {
    crearLibro("Plantilla.xls", {});
    excel().AbrirPlantilla(ruta("Plantilla.xls"));
    excel().Guardar(ruta("Nuevo.xls"));
    EXPECT_EQ(guardado(), saveAs("Nuevo.xls", "I4 56"));
}

TEST_F(AperturaDeExcel, OldVersionsAreNotAskedForWhatTheyLack) {
    ordenar("version=9.0");
    crearLibro("Pesadas.xls", {});
    guardarNuevo("Pesadas.xls");
    guardarNuevo("Otro.xls");
    EXPECT_EQ(leerCelda("Pesadas.xls", 1, 1), Variante(std::string("1234BCD")));
    EXPECT_EQ(leerCelda("Otro.xls", 1, 1), Variante(std::string("1234BCD")));
    EXPECT_THAT(plataforma_.mensajes, IsEmpty());
}

TEST_F(AperturaDeExcel, WhatTheApplicationRefusesOfItsComfortDoesNotStopTheWork) {
    ordenar("falla=Application.Hwnd falla=Application.IgnoreRemoteRequests=,2");
    crearLibro("Pesadas.xls", {});
    guardarNuevo("Pesadas.xls");
    EXPECT_EQ(leerCelda("Pesadas.xls", 1, 1), Variante(std::string("1234BCD")));
}

TEST_F(AperturaDeExcel, MacrosThatCannotBeStoppedStopTheWork) {
    crearLibro("Pesadas.xls", {});
    ordenar("falla=Application.AutomationSecurity=");
    EXPECT_FALSE(excel().AbrirParaLeer(ruta("Pesadas.xls"), ""));
    EXPECT_THAT(diario(), Not(Contains(HasSubstr("Workbooks.Open"))));
}

TEST_F(AperturaDeExcel, OtherProgramsAreAttendedAgainOnEveryRoad) {
    crearLibro("Pesadas.xls", {});
    const std::vector<std::function<void()>> caminos{
        [this] { guardarNuevo("Pesadas.xls"); },
        [this] { guardarNuevo("Nuevo.xls"); },
        [this] {
            if (excel().AbrirParaLeer(ruta("Pesadas.xls"), "")) excel().Cerrar();
        },
        [this] { excel().AbrirParaLeer(ruta("Pesadas.xls"), "Ausente"); },
        [this] { excel().AbrirParaLeer(ruta("Ausente.xls"), ""); },
        [this] { plataforma_.nuevaAplicacionExcel(false)->Workbooks()->Add(); },
    };
    for (const auto& camino : caminos) {
        diario();
        ordenar("falla=Workbook.Worksheets,9");  // none of them gets that far
        camino();
        EXPECT_THAT(diario(), Not(Contains("Application: deja de atender")));
    }
}

TEST_F(AperturaDeExcel, AnAlertThatCannotBeSwitchedOffIsAnErrorAtOpening) {
    crearLibro("Pesadas.xls", {});
    ordenar("falla=Application.DisplayAlerts=,1");
    EXPECT_FALSE(excel().AbrirParaLeer(ruta("Pesadas.xls"), ""));
    EXPECT_THAT(diario(),
                AllOf(Not(Contains("Application.Workbooks")), Contains("Application.Quit")));
    excel().AbrirParaEscribir(ruta("Pesadas.xls"), "Pesadas", true);
    EXPECT_THAT(plataforma_.mensajes,
                ElementsAre("Fallo pedido en Application.DisplayAlerts (ñ €)"));
}

TEST_F(AperturaDeExcel, AFailedOpenSaysWhatTheApplicationSays) {
    crearLibro("Pesadas.xls", {});
    ordenar("falla=Workbooks.Open");
    const auto aplicacion = plataforma_.nuevaAplicacionExcel(false);
    const auto libros = aplicacion->Workbooks();
    try {
        libros->Open(ruta("Pesadas.xls"));
        FAIL() << "it was to be refused";
    } catch (const excel::ErrorDeApertura&) {
        FAIL() << "the application does not say why";
    } catch (const excel::ErrorExcel& e) {
        EXPECT_STREQ(e.what(), "Fallo pedido en Workbooks.Open (ñ €)");
    }
}

TEST_F(AperturaDeExcel, AWorkbookThatSomebodyElseHasIsInUse) {
    crearLibro("Pesadas.xls", {});
    EXPECT_EQ(motivoDe("Pesadas.xls"), "");
    ordenar("sololectura");
    EXPECT_THAT(motivoDe("Pesadas.xls"),
                AllOf(HasSubstr("está en uso"), HasSubstr(ruta("Pesadas.xls"))));
}

TEST_F(AperturaDeExcel, WhoeverHasItIsNamedAsTheApplicationTells) {
    crearLibro("Pesadas.xls", {});
    ordenar("sololectura=Marta");
    EXPECT_THAT(motivoDe("Pesadas.xls"), HasSubstr("está en uso: lo tiene abierto Marta."));
}

TEST_F(AperturaDeExcel, WhoeverHasItIsNamedByTheFileBesideIt) {
    crearLibro("Pesadas.xls", {});
    std::string aviso("\x05M.Gil", 6);
    aviso.resize(55, ' ');
    aviso += std::string("\x05\0M\0u\0\xf1\0o\0z\0", 12);
    aviso.resize(165, ' ');
    dejarAviso("Pesadas.xls", aviso);
    ordenar("sololectura falla=Workbook.WriteReservedBy");
    EXPECT_THAT(motivoDe("Pesadas.xls"), HasSubstr("está en uso: lo tiene abierto Muñoz."));
}

TEST_F(AperturaDeExcel, AWorkbookInUseCanStillBeRead) {
    crearLibro("Pesadas.xls", {{std::string("x")}});
    ordenar("sololectura=Marta");
    EXPECT_TRUE(excel().AbrirParaLeer(ruta("Pesadas.xls"), "Pesadas"));
    EXPECT_EQ(excel().Celda(1, 1), Variante(std::string("x")));
    excel().Cerrar();
}

TEST_F(AperturaDeExcel, AFileThatNobodyMayWriteIsNotInUse) {
    crearLibro("Pesadas.xls", {});
    const std::wstring archivo = (carpeta_ / "Pesadas.xls").wstring();
    EXPECT_FALSE(estaProtegidoContraEscritura(ruta("Pesadas.xls")));
    ASSERT_TRUE(SetFileAttributesW(archivo.c_str(), FILE_ATTRIBUTE_READONLY));
    EXPECT_TRUE(estaProtegidoContraEscritura(ruta("Pesadas.xls")));
    ordenar("sololectura");
    EXPECT_EQ(motivoDe("Pesadas.xls"), "");
    SetFileAttributesW(archivo.c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(AperturaDeExcel, ANewWorkbookIsNobodyElses) {
    ordenar("sololectura");
    const auto aplicacion = plataforma_.nuevaAplicacionExcel(false);
    EXPECT_NO_THROW(aplicacion->Workbooks()->Add()->exigirLibre());
}

TEST_F(AperturaDeExcel, TheFileBesideAWorkbookIsReadWhateverIsInIt) {
    const std::string libro = ruta("Pesadas.xls");
    EXPECT_EQ(usuarioDelLibro(libro), "");
    dejarAviso("Pesadas.xls", std::string("\x05"
                                          "Ram\xf3n",
                                          6));
    EXPECT_EQ(usuarioDelLibro(libro), "Ramón") << "only the old half";
    dejarAviso("Pesadas.xls", "");
    EXPECT_EQ(usuarioDelLibro(libro), "");
    dejarAviso("Pesadas.xls", std::string(165, '\xff'));
    EXPECT_EQ(usuarioDelLibro(libro), "") << "no length of a name";
    dejarAviso("Pesadas.xls", std::string("\x20"
                                          "Ana",
                                          4));
    EXPECT_EQ(usuarioDelLibro(libro), "Ana") << "cut short";
}

}  // namespace
}  // namespace bn::prueba
