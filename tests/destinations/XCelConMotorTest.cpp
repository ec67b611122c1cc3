// SPDX-License-Identifier: MIT
// The wrapper over the embedded engine: real files.
#include <gtest/gtest.h>

#include <string>
#include <utility>
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

std::string muestra(const std::string& nombre) {
    return prueba::leerFichero(std::filesystem::path(BN_MUESTRAS) / (nombre + ".xls"));
}

TEST_F(XCelConMotor, KeepsAsideEveryKindOfFileItCannotOpen) {
    const std::string bueno = muestra("s5_poi");
    const std::vector<std::pair<std::string, std::string>> ficheros = {
        {"antiguo", muestra("s4c_biff5_book")},
        {"cifrado", muestra("s5b_encrypted")},
        {"cortado", bueno.substr(0, bueno.size() / 2)},
        {"xlsx", "PK\x03\x04 un libro de otra clase"},
        {"pagina", "<html><table><tr><td>1</td></tr></table></html>"},
        {"vacio", ""}};
    for (const auto& [nombre, bytes] : ficheros) {
        prueba::escribirFichero(carpeta / (nombre + ".xls"), bytes);
        excel.AbrirParaEscribir(ruta(nombre + ".xls"), "Pesadas", true);
        excel.Celda(1, 1, int32_t{7});
        EXPECT_EQ(prueba::leerFichero(carpeta / (nombre + ".xls")), bytes) << nombre;
        excel.Guardar("");
        EXPECT_EQ(prueba::leerFichero(carpeta / (nombre + ".xls.20251209-120000.bak")), bytes);
        ASSERT_TRUE(excel.AbrirParaLeer(ruta(nombre + ".xls"), "Pesadas")) << nombre;
        EXPECT_EQ(excel.Celda(1, 1), Variante(7.0)) << nombre;
        excel.Cerrar();
    }
    EXPECT_TRUE(plataforma.mensajes.empty());
}

TEST_F(XCelConMotor, LeavesNothingBesideAWorkbookItCouldOpen) {
    prueba::escribirFichero(carpeta / "p.xls", muestra("s5_poi"));
    excel.AbrirParaEscribir(ruta("p.xls"), "log", true);
    excel.Celda(300, 1, 1.0);
    excel.Guardar("");
    size_t cuantos = 0;
    for (const auto& fichero : std::filesystem::directory_iterator(carpeta.ruta())) {
        cuantos += fichero.is_regular_file() ? 1 : 0;
    }
    EXPECT_EQ(cuantos, 1U);
}

TEST_F(XCelConMotor, ChangesNothingOnTheDiskWhenClosedWithoutSaving) {
    prueba::escribirFichero(carpeta / "p.xls", muestra("s3_lo_chart"));
    excel.AbrirParaEscribir(ruta("p.xls"), "Third", false);
    excel.Celda(1, 1, 1.0);
    excel.Cerrar();
    EXPECT_EQ(prueba::leerFichero(carpeta / "p.xls"), muestra("s3_lo_chart"));
}

TEST_F(XCelConMotor, GivesTheSameBytesForTheSameInput) {
    for (const std::string nombre : {"a.xls", "b.xls"}) {
        excel.AbrirParaEscribir(ruta(nombre), "Pesadas", true);
        for (int16_t fila = 1; fila <= 40; ++fila) {
            excel.Celda(fila, 1, FechaOle{45000.5 + fila});
            excel.Celda(fila, 2, "M" + std::to_string(fila % 7));
            excel.Celda(fila, 3, 100.5F + static_cast<float>(fila));
        }
        excel.Guardar("");
        plataforma.horaActual += 1.25;
    }
    EXPECT_EQ(prueba::leerFichero(carpeta / "a.xls"), prueba::leerFichero(carpeta / "b.xls"));
}

TEST_F(XCelConMotor, LeavesACellAsItWasWhenAFormulaCannotBeCompiled) {
    excel.AbrirParaEscribir(ruta("a.xls"), "Una", true);
    excel.Celda(1, 1, std::string("antes"));
    for (const std::string formula : {"=1+", "=NOHAY(1)", "=(1", "=sin_definir*2"}) {
        EXPECT_THROW(excel.Celda(1, 1, formula), excel::ErrorExcel) << formula;
        EXPECT_EQ(excel.Celda(1, 1), Variante(std::string("antes"))) << formula;
    }
    excel.Celda(1, 1, std::string("=IF(RC[1]>3,SUM(R1C3:R9C3),\"no\")"));
    excel.Guardar("");
    ASSERT_TRUE(excel.AbrirParaLeer(ruta("a.xls"), ""));
    EXPECT_EQ(excel.Celda(1, 1), Variante(std::string("=IF(RC[1]>3,SUM(R1C3:R9C3),\"no\")")));
    excel.Cerrar();
}

TEST_F(XCelConMotor, CountsDaysFrom1904InAWorkbookThatDoesSo) {
    prueba::escribirFichero(carpeta / "p.xls", muestra("s6_handmade"));
    excel.AbrirParaEscribir(ruta("p.xls"), "Main", true);
    excel.Celda(500, 1, FechaOle{45000.5});
    EXPECT_EQ(excel.Celda(500, 1), Variante(43538.5));
    excel.Cerrar();
}

}  // namespace
}  // namespace bn
