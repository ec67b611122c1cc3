// SPDX-License-Identifier: MIT
// What the wrapper tells of a workbook that it could not open.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "destinations/XCel.h"
#include "platform/Ficheros.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/ExcelDePrueba.h"

namespace bn {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

std::string muestra(const std::string& nombre) {
    return prueba::leerFichero(std::filesystem::path(BN_MUESTRAS) / (nombre + ".xls"));
}

template <class Plataforma>
class ConLibro : public testing::Test {
 protected:
    void poner(const std::string& bytes) { prueba::escribirFichero(libro, bytes); }
    void abrir() { xcel.AbrirParaEscribir(ruta, "Pesadas", true); }

    prueba::CarpetaTemporal carpeta;
    std::filesystem::path libro = carpeta / "Pesadas.xls";
    std::string ruta = ficheros::aTexto(libro);
    Plataforma plataforma{carpeta.ruta()};
    XCel xcel{plataforma};
};

// Over the embedded engine

using XCelMotivo = ConLibro<PlataformaDePrueba>;

TEST_F(XCelMotivo, IsEmptyWhenTheWorkbookOpensOrThereIsNone) {
    for (int vez = 0; vez < 2; ++vez) {  // it does not exist; it does
        abrir();
        EXPECT_EQ(xcel.enLugarDe(), EnLugarDe::kNada);
        EXPECT_EQ(xcel.motivo(), "");
        EXPECT_TRUE(xcel.enHojaPedida());
        xcel.Guardar("");
        EXPECT_TRUE(xcel.conservado().empty());
    }
}

TEST_F(XCelMotivo, TellsWhatIsNoWorkbookOrADamagedOne) {
    const std::vector<std::pair<std::string, std::string>> casos = {
        {"no es un libro", "no es un libro de Excel"},
        {"", "vacío"},
        {"<html><table></table></html>", "HTML"},
        {"PK\x03\x04 otra cosa", "archivo comprimido"},
        {muestra("s5_poi").substr(0, 20000), "dañado"}};
    for (const auto& [bytes, causa] : casos) {
        poner(bytes);
        abrir();
        EXPECT_EQ(xcel.enLugarDe(), EnLugarDe::kDanado) << causa;
        EXPECT_THAT(xcel.motivo(), AllOf(HasSubstr(ruta), HasSubstr(causa)));
        EXPECT_FALSE(plataforma.esLibroSano(libro)) << causa;
        xcel.Cerrar();
    }
}

TEST_F(XCelMotivo, TellsASoundWorkbookThatIsNotOurs) {
    const std::vector<std::pair<std::string, std::string>> casos = {
        {muestra("s5b_encrypted"), "protegido con contraseña"},
        {muestra("s4c_biff5_book"), "anterior a Excel 97"},
        {std::string("\x09\x00\x04\x00\x02\x00\x10\x00", 8), "anterior a Excel 97"},
        {"PK\x03\x04 [Content_Types].xml xl/workbook.xml", "XLSX"},
        {"PK\x03\x04 mimetypeapplication/vnd.oasis.opendocument.spreadsheet", "ODF"},
        {"<?xml version=\"1.0\"?><Workbook xmlns=\"urn:schemas-microsoft-com:office:spreadsheet\">",
         "XML"}};
    for (const auto& [bytes, causa] : casos) {
        poner(bytes);
        abrir();
        EXPECT_EQ(xcel.enLugarDe(), EnLugarDe::kSano) << causa;
        EXPECT_THAT(xcel.motivo(), AllOf(HasSubstr(ruta), HasSubstr(causa)));
        EXPECT_TRUE(plataforma.esLibroSano(libro)) << causa;
        EXPECT_EQ(xcel.ListaDeHojas(), (std::vector<std::string>{"Pesadas"})) << "as designed";
        xcel.Cerrar();
        EXPECT_EQ(prueba::leerFichero(libro), bytes);
    }
    EXPECT_THAT(plataforma.mensajes, IsEmpty());
}

TEST_F(XCelMotivo, TakesWhatCannotBeReadForSound) {
    std::filesystem::create_directory(libro);
    abrir();
    EXPECT_EQ(xcel.enLugarDe(), EnLugarDe::kSano);
    EXPECT_THAT(xcel.motivo(), HasSubstr(ruta));
    xcel.Cerrar();
}

TEST_F(XCelMotivo, NamesTheCopyThatSavingKept) {
    plataforma.horaActual = 45000.5;
    poner("no es un libro");
    abrir();
    EXPECT_TRUE(xcel.conservado().empty()) << "nothing has been saved yet";
    xcel.Guardar("");
    EXPECT_EQ(xcel.conservado(), carpeta / "Pesadas.xls.20230315-120000.bak");
    abrir();
    EXPECT_TRUE(xcel.conservado().empty());
    xcel.Guardar("");
    EXPECT_TRUE(xcel.conservado().empty());
}

TEST_F(XCelMotivo, TellsWhyReadingFailed) {
    EXPECT_FALSE(xcel.AbrirParaLeer(ruta, ""));
    EXPECT_THAT(xcel.motivo(), AllOf(HasSubstr(ruta), HasSubstr("no existe")));
    abrir();
    xcel.Guardar("");
    EXPECT_FALSE(xcel.AbrirParaLeer(ruta, "Otra"));
    EXPECT_THAT(xcel.motivo(), AllOf(HasSubstr(ruta), HasSubstr("\"Otra\"")));
    EXPECT_THAT(plataforma.mensajes, ElementsAre("")) << "the box stays as it was";
    EXPECT_TRUE(xcel.AbrirParaLeer(ruta, "Pesadas"));
    EXPECT_EQ(xcel.motivo(), "");
    xcel.Cerrar();
}

TEST_F(XCelMotivo, TellsANameThatNoSheetCanHave) {
    const std::string largo(32, 'x');
    xcel.AbrirParaEscribir(ruta, largo, true);
    EXPECT_FALSE(xcel.enHojaPedida());
    EXPECT_THAT(xcel.motivo(), AllOf(HasSubstr(ruta), HasSubstr(largo), HasSubstr("31")));
    xcel.Cerrar();
}

TEST_F(XCelMotivo, TellsWhoHasTheWorkbookOpenAndWritesNothingOverIt) {
    plataforma.horaActual = 45000.5;
    abrir();
    xcel.Guardar("");
    const std::string antes = prueba::leerFichero(libro);
    prueba::escribirFichero(carpeta / ".~lock.Pesadas.xls#", "Ana Pérez,ana,pc-oficina,f,u;");
    abrir();
    EXPECT_EQ(xcel.enLugarDe(), EnLugarDe::kSano);
    EXPECT_THAT(xcel.motivo(), AllOf(HasSubstr(ruta), HasSubstr("Ana Pérez")));
    xcel.Celda(1, 1, 1.0);
    EXPECT_THROW(xcel.Guardar(""), excel::ErrorExcel);
    xcel.Cerrar();
    EXPECT_EQ(prueba::leerFichero(libro), antes);
    EXPECT_TRUE(xcel.AbrirParaLeer(ruta, "")) << "its sheets can still be listed";
    xcel.Cerrar();
}

TEST_F(XCelMotivo, TellsOfAWorkbookOpenedElsewhereWhileItWasWritten) {
    abrir();
    xcel.Celda(1, 1, 1.0);
    prueba::escribirFichero(carpeta / ".~lock.Pesadas.xls#", ",ana,pc-oficina,f,u;");
    EXPECT_THROW(xcel.Guardar(""), excel::ErrorExcel);
    EXPECT_FALSE(std::filesystem::exists(libro));
    std::filesystem::remove(carpeta / ".~lock.Pesadas.xls#");
    xcel.Guardar("");
    EXPECT_TRUE(std::filesystem::exists(libro));
}

// Over an application that says little

class XCelSinRazones : public ConLibro<PlataformaConExcel> {
 protected:
    ExcelDePrueba& excel() { return plataforma.excel; }
    void esperarNadaAbierto() {
        EXPECT_THROW(xcel.Celda(1, 1, 1.0), excel::ErrorExcel);
        EXPECT_THROW(xcel.Guardar(""), excel::ErrorExcel);
        EXPECT_EQ(excel().objetosVivos, 0);
        EXPECT_EQ(excel().instanciasAbiertas, 0);
    }
};

TEST_F(XCelSinRazones, OurOwnReaderSaysWhatTheFileIs) {
    poner(muestra("s5_poi"));
    abrir();
    EXPECT_EQ(xcel.enLugarDe(), EnLugarDe::kSano);
    EXPECT_THAT(xcel.motivo(), AllOf(HasSubstr(ruta), HasSubstr("No se encuentra")));
    xcel.Cerrar();
    poner("no es un libro");
    abrir();
    EXPECT_EQ(xcel.enLugarDe(), EnLugarDe::kDanado);
    EXPECT_THAT(xcel.motivo(), HasSubstr(ruta));
    xcel.Cerrar();
    std::filesystem::remove(libro);
    abrir();
    EXPECT_EQ(xcel.enLugarDe(), EnLugarDe::kNada);
    EXPECT_EQ(xcel.motivo(), "");
}

TEST_F(XCelSinRazones, TellsThatItDoesNotStart) {
    excel().errorAlArrancar = "Error 429";
    abrir();
    EXPECT_THAT(xcel.motivo(), HasSubstr("Error 429"));
    EXPECT_THAT(plataforma.mensajes, ElementsAre("Error 429"));
    esperarNadaAbierto();
}

TEST_F(XCelSinRazones, WithoutItsWorkbooksNothingIsMadeInstead) {
    poner(muestra("s5_poi"));
    excel().fallar("Application.Workbooks", "Llamada rechazada");
    abrir();
    EXPECT_THAT(xcel.motivo(), AllOf(HasSubstr(ruta), HasSubstr("Llamada rechazada")));
    EXPECT_THAT(plataforma.mensajes, ElementsAre("Llamada rechazada"));
    EXPECT_THAT(excel().ordenes(), Not(Contains("Workbooks.Add")));
    EXPECT_EQ(excel().ordenes().back(), "Application[1].Quit");
    esperarNadaAbierto();
}

TEST_F(XCelSinRazones, WithoutAWalkOverItsSheetsNoneIsAdded) {
    for (const std::string miembro : {"Workbook.Worksheets", "Sheets.enumerar", "Worksheet.Name"}) {
        ponerLibro(excel(), ruta, {"Pesadas", "Otra"});
        excel().fallar(miembro, "Llamada rechazada");
        abrir();
        EXPECT_THAT(xcel.motivo(), AllOf(HasSubstr(ruta), HasSubstr("Llamada rechazada")));
        EXPECT_FALSE(xcel.enHojaPedida());
        EXPECT_THAT(excel().ordenes(), Not(Contains(HasSubstr("Sheets.Add")))) << miembro;
        esperarNadaAbierto();
    }
    EXPECT_THAT(plataforma.mensajes, IsEmpty());
}

TEST_F(XCelSinRazones, TellsOfASheetThatCannotBeAddedOrNamed) {
    for (const std::string miembro : {"Sheets.Add", "Worksheet.Name="}) {
        ponerLibro(excel(), ruta, {"Otra"});
        excel().fallar(miembro, "Libro protegido");
        abrir();
        EXPECT_FALSE(xcel.enHojaPedida()) << miembro;
        EXPECT_THAT(xcel.motivo(), AllOf(HasSubstr("\"Pesadas\""), HasSubstr("Libro protegido")));
        xcel.Cerrar();
    }
}

TEST_F(XCelSinRazones, IsLetGoWhenItDoesNotQuit) {
    ponerLibro(excel(), ruta, {"Pesadas"});
    for (const bool guardando : {false, true}) {
        abrir();
        excel().fallar("Application.Quit", "ocupada");
        EXPECT_THROW(guardando ? xcel.Guardar("") : xcel.Cerrar(), excel::ErrorExcel);
        EXPECT_EQ(excel().objetosVivos, 0);
        EXPECT_THROW(xcel.NombreHoja(), excel::ErrorExcel);
    }
}

TEST_F(XCelSinRazones, ANewAttemptForgetsWhatTheLastOneTold) {
    poner("no es un libro");
    abrir();
    xcel.Guardar("");
    EXPECT_FALSE(xcel.conservado().empty());
    abrir();
    EXPECT_EQ(xcel.enLugarDe(), EnLugarDe::kNada);
    EXPECT_EQ(xcel.motivo(), "");
    EXPECT_TRUE(xcel.conservado().empty());
}

}  // namespace
}  // namespace bn
