// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "app/Guardia.h"
#include "app/PlataformaVigilada.h"
#include "app/Rescate.h"
#include "download/Descarga.h"
#include "platform/Ficheros.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/ExcelDePrueba.h"
#include "tests/soporte/TramasDePrueba.h"

namespace bn {
namespace {

using prueba::PesadaDePrueba;
using prueba::trama;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

class PlataformaVigiladaPrueba : public testing::Test {
 protected:
    prueba::CarpetaTemporal carpeta;
    PlataformaConExcel exterior{carpeta.ruta()};
    Rescate rescate{exterior};
    bool enDescarga = false;
    Guardia guardia{exterior, rescate, [this] { return enDescarga; }};
    PlataformaVigilada vigilada{exterior, [this](const auto& aviso) { guardia.atender(aviso); }};
};

TEST_F(PlataformaVigiladaPrueba, PassesOnEverythingElse) {
    exterior.horaActual = 45000.5;
    exterior.documentos = "/casa/Documentos";
    exterior.respuestaAbrir = 2;
    EXPECT_EQ(vigilada.carpetaPrograma(), carpeta.ruta());
    EXPECT_EQ(vigilada.ahora(), 45000.5);
    EXPECT_EQ(vigilada.carpetaEspecial(5), "/casa/Documentos");
    EXPECT_EQ(vigilada.carpetaEspecial(6), "");
    EXPECT_EQ(vigilada.abrirDocumento("x.xls"), 2);
    EXPECT_THAT(exterior.abiertos, ElementsAre("x.xls"));
    vigilada.mensajeCritico("hola");
    EXPECT_THAT(exterior.mensajes, ElementsAre("hola"));
    vigilada.nuevaAplicacionExcel(true)->Quit();
    vigilada.nuevaAplicacionExcel(false)->Quit();
    EXPECT_THAT(exterior.excel.porIdentificador, ElementsAre(true, false));
}

TEST_F(PlataformaVigiladaPrueba, ItsPortsAreTheOutsidesPorts) {
    const auto puerto = vigilada.nuevoPuerto();
    puerto->CommPort(4);
    puerto->Settings("300,N,8,1");
    puerto->PortOpen(true);
    puerto->Output("abc");
    EXPECT_TRUE(puerto->PortOpen());
    EXPECT_EQ(exterior.puerto().numero, 4);
    EXPECT_EQ(exterior.puerto().ajustes, "300,N,8,1");
    EXPECT_EQ(exterior.puerto().enviado, "abc");
    std::string recibido;
    puerto->OnComm.conectar([&] { recibido += puerto->Input(); });
    exterior.puerto().recibir("xyz");
    EXPECT_EQ(recibido, "xyz");
    exterior.puerto().evento = 7;
    EXPECT_EQ(puerto->CommEvent(), 7);
    exterior.puerto().errorAlAbrir = "no";
    EXPECT_THROW(puerto->PortOpen(true), ErrorPuerto);
    puerto->PortOpen(false);
    EXPECT_FALSE(exterior.puerto().PortOpen());
}

TEST_F(PlataformaVigiladaPrueba, ItsPortsDiscardWhatWasReceived) {
    const auto puerto = vigilada.nuevoPuerto();
    puerto->PortOpen(true);
    exterior.puerto().recibir("xyz");
    puerto->InBufferCount(0);
    EXPECT_EQ(puerto->Input(), "");
}

TEST_F(PlataformaVigiladaPrueba, AnErrorOfAPortsHandlerNeverLeaves) {
    const auto puerto = vigilada.nuevoPuerto();
    puerto->PortOpen(true);
    puerto->OnComm.conectar([] { throw std::runtime_error("fallo del puerto"); });
    EXPECT_NO_THROW(exterior.puerto().recibir("x"));
    ASSERT_THAT(exterior.mensajes, SizeIs(1));
    EXPECT_THAT(exterior.mensajes[0], HasSubstr("fallo del puerto"));
}

TEST_F(PlataformaVigiladaPrueba, AnErrorOfATimersHandlerNeverLeaves) {
    const auto temporizador = vigilada.nuevoTemporizador();
    temporizador->Timer.conectar([] { throw std::runtime_error("fallo del reloj"); });
    temporizador->Interval(100);
    EXPECT_FALSE(temporizador->Enabled());
    temporizador->Enabled(true);
    EXPECT_TRUE(temporizador->Enabled());
    EXPECT_NO_THROW(exterior.avanzar(1000));
    ASSERT_THAT(exterior.mensajes, SizeIs(1)) << "the other nine are dropped";
    EXPECT_THAT(exterior.mensajes[0], HasSubstr("fallo del reloj"));
}

TEST_F(PlataformaVigiladaPrueba, PortsAndTimersMayGoBeforeTheirNotifications) {
    auto temporizador = vigilada.nuevoTemporizador();
    int disparos = 0;
    temporizador->Timer.conectar([&] { ++disparos; });
    temporizador->Interval(100);
    temporizador->Enabled(true);
    temporizador.reset();
    exterior.avanzar(1000);
    EXPECT_EQ(disparos, 0);
}

/// From the indicator's last frame to the message box and a new controller.
TEST_F(PlataformaVigiladaPrueba, NothingReceivedIsLostWhenTheSavePassFails) {
    exterior.horaActual = 45000.5;
    auto cfg = std::make_shared<bn::Setup>(vigilada);
    cfg->LibroExcel("Pesadas.xls");
    cfg->ArchivoTexto(ficheros::aTexto(carpeta / "Pesadas.txt"));
    auto des = std::make_unique<Descarga>(vigilada);
    des->DatosCfg(cfg);
    enDescarga = true;
    ASSERT_TRUE(des->iniciarProceso());
    const std::string datos = PesadaDePrueba().datos();
    exterior.puerto().recibir(trama(datos));
    exterior.excel.fallar("Workbook.SaveAs", "El disco está lleno");
    EXPECT_NO_THROW(exterior.puerto().recibir(trama("0001")));
    ASSERT_THAT(exterior.mensajes, SizeIs(1));
    EXPECT_THAT(exterior.mensajes[0], HasSubstr("El disco está lleno"));
    EXPECT_EQ(prueba::leerFichero(carpeta / "bnGuardo-20230315-120000.txt"), datos + "\r\n");

    des = nullptr;
    EXPECT_EQ(exterior.excel.instanciasAbiertas, 0) << "the workbook is let go with its owner";
    des = std::make_unique<Descarga>(vigilada);
    des->DatosCfg(cfg);
    guardia.reanudar();
    ASSERT_TRUE(des->iniciarProceso());
    exterior.puerto().recibir(trama("0000"));
    EXPECT_EQ(des->Estado(), 4);
}

}  // namespace
}  // namespace bn
