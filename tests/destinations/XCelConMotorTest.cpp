// SPDX-License-Identifier: MIT
// The wrapper over the embedded engine: real files.
#include <gtest/gtest.h>

#include <string>
#include <variant>
#include <vector>

#include "destinations/XCel.h"
#include "platform/Ficheros.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/PlataformaDePrueba.h"

namespace bn {
namespace {

class XCelConMotor : public testing::Test {
 protected:
    void SetUp() override { plataforma.horaActual = 46000.5; }  // 2025-12-09 12:00:00

    std::string ruta(const std::string& nombre) const { return ficheros::aTexto(carpeta / nombre); }

    prueba::CarpetaTemporal carpeta;
    PlataformaDePrueba plataforma{carpeta.ruta()};
    XCel excel{plataforma};
};

TEST_F(XCelConMotor, CanBeStarted) {
    EXPECT_TRUE(excel.HayExcel());
    EXPECT_TRUE(plataforma.mensajes.empty());
}

TEST_F(XCelConMotor, MakesANewWorkbookWithTheOneSheetAsked) {
    excel.AbrirParaEscribir(ruta("Pesadas.xls"), "Báscula", true);
    excel.Celda(1, 1, FechaOle{46000.25});
    excel.Celda(1, 2, std::string("Ñ-1234"));
    excel.Celda(1, 3, int32_t{57});
    excel.Celda(1, 4, 12.35F);
    EXPECT_FALSE(std::filesystem::exists(carpeta / "Pesadas.xls")) << "first on disk at Guardar";
    excel.Guardar("");
    ASSERT_TRUE(excel.AbrirParaLeer(ruta("Pesadas.xls"), "BÁSCULA"));
    EXPECT_EQ(excel.ListaDeHojas(), (std::vector<std::string>{"Báscula"}));
    EXPECT_EQ(excel.NombreHoja(), "Báscula");
    EXPECT_EQ(excel.Celda(1, 1), Variante(46000.25));
    EXPECT_EQ(excel.Celda(1, 2), Variante(std::string("Ñ-1234")));
    EXPECT_EQ(excel.Celda(1, 3), Variante(57.0));
    EXPECT_EQ(excel.Celda(1, 4), Variante(12.35));
    EXPECT_EQ(excel.Celda(2, 1), Variante(std::string()));
    excel.Cerrar();
}

TEST_F(XCelConMotor, AddsAMissingSheetLastAndKeepsTheOthers) {
    excel.AbrirParaEscribir(ruta("a.xls"), "Una", true);
    excel.Celda(3, 2, std::string("se queda"));
    excel.Guardar("");
    excel.AbrirParaEscribir(ruta("a.xls"), "Otra", true);
    excel.Celda(1, 1, 1.5);
    excel.Guardar("");
    ASSERT_TRUE(excel.AbrirParaLeer(ruta("a.xls"), ""));
    EXPECT_EQ(excel.ListaDeHojas(), (std::vector<std::string>{"Una", "Otra"}));
    EXPECT_EQ(excel.Celda(3, 2), Variante(std::string("se queda")));
    EXPECT_TRUE(excel.EstablecerHoja("otra"));
    EXPECT_EQ(excel.Celda(1, 1), Variante(1.5));
    excel.Cerrar();
}

TEST_F(XCelConMotor, ErasesTheContentsWhenTheyAreNotToBeKept) {
    excel.AbrirParaEscribir(ruta("a.xls"), "Una", true);
    excel.Celda(3, 2, std::string("se va"));
    excel.Guardar("");
    excel.AbrirParaEscribir(ruta("a.xls"), "UNA", false);
    EXPECT_EQ(excel.NombreHoja(), "Una");
    EXPECT_EQ(excel.Celda(3, 2), Variante(std::string()));
    excel.Cerrar();
}

TEST_F(XCelConMotor, HoldsDefinedNames) {
    excel.AbrirParaEscribir(ruta("a.xls"), "Una", true);
    EXPECT_EQ(excel.ValorNombre("bnUltima"), Variante());
    excel.ValorNombre("bnUltima", int32_t{12});
    EXPECT_EQ(excel.ValorNombre("BNULTIMA"), Variante(std::string("12")));
    excel.ValorNombre("bnUltima", int32_t{13});
    excel.Guardar("");
    ASSERT_TRUE(excel.AbrirParaLeer(ruta("a.xls"), ""));
    EXPECT_EQ(excel.ValorNombre("bnUltima"), Variante(std::string("13")));
    excel.Cerrar();
}

TEST_F(XCelConMotor, KeepsTheFileItCouldNotOpenBesideTheOneThatTakesItsPlace) {
    prueba::escribirFichero(carpeta / "p.xls", "no es un libro");
    excel.AbrirParaEscribir(ruta("p.xls"), "Pesadas", true);
    EXPECT_TRUE(plataforma.mensajes.empty());
    excel.Celda(1, 1, 1.0);
    excel.Guardar("");
    EXPECT_EQ(prueba::leerFichero(carpeta / "p.xls.20251209-120000.bak"), "no es un libro");
    ASSERT_TRUE(excel.AbrirParaLeer(ruta("p.xls"), "Pesadas"));
    excel.Cerrar();
}

TEST_F(XCelConMotor, TellsWhatItCannotDo) {
    excel.AbrirParaEscribir(ruta("a.xls"), "Una", true);
    EXPECT_THROW(excel.Imprimir(), excel::ErrorExcel);
    EXPECT_THROW(excel.PrintPreview(), excel::ErrorExcel);
    EXPECT_THROW(excel.Celda(0, 1), excel::ErrorExcel);
    EXPECT_THROW(excel.Celda(1, 257, 1.0), excel::ErrorExcel);
    EXPECT_THROW(excel.Guardar(ruta("no/hay/carpeta.xls")), excel::ErrorExcel);
    excel.Cerrar();
}

TEST_F(XCelConMotor, RepeatsTheHeaderWithItsFormatsAndBreaksThePageThere) {
    excel.AbrirParaEscribir(ruta("a.xls"), "Una", true);
    excel.Celda(1, 1, std::string("Matrícula"));
    excel.Celda(2, 1, std::string("-----"));
    excel.ReplicarCabecera(2, 40);
    excel.SaltoPagina(60);
    EXPECT_EQ(excel.Celda(40, 1), Variante(std::string("Matrícula")));
    EXPECT_EQ(excel.Celda(41, 1), Variante(std::string("-----")));
    excel.Guardar("");
}

}  // namespace
}  // namespace bn
