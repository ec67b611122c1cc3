// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "app/Guardia.h"
#include "app/PlataformaVigilada.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/ExcelDePrueba.h"

namespace bn {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

class PlataformaVigiladaPrueba : public testing::Test {
 protected:
    prueba::CarpetaTemporal carpeta;
    PlataformaConExcel exterior{carpeta.ruta()};
    Guardia guardia;
    std::vector<std::string> averias;
    std::vector<std::string> mensajes;
    PlataformaVigilada vigilada{exterior, [this](const auto& aviso) { guardia.atender(aviso); },
                                [this](const auto& texto) { mensajes.push_back(texto); }};
    void SetUp() override {
        guardia.averia.conectar([this](const std::string& error) { averias.push_back(error); });
    }
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
    vigilada.avisar("hola");
    EXPECT_THAT(exterior.mensajes, ElementsAre("hola"));
    EXPECT_EQ(&vigilada.disco(), &exterior.disco());
    vigilada.nuevaAplicacionExcel(true)->Quit();
    vigilada.nuevaAplicacionExcel(false)->Quit();
    EXPECT_THAT(exterior.excel.porIdentificador, ElementsAre(true, false));
}

TEST_F(PlataformaVigiladaPrueba, ItsMessagesGoWhereItsOwnerSendsThem) {
    vigilada.mensajeCritico("hola");
    EXPECT_THAT(mensajes, ElementsAre("hola"));
    EXPECT_THAT(exterior.mensajes, SizeIs(0));
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
    EXPECT_THAT(averias, ElementsAre("fallo del puerto"));
}

TEST_F(PlataformaVigiladaPrueba, AnErrorOfATimersHandlerNeverLeaves) {
    const auto temporizador = vigilada.nuevoTemporizador();
    temporizador->Timer.conectar([] { throw std::runtime_error("fallo del reloj"); });
    temporizador->Interval(100);
    EXPECT_FALSE(temporizador->Enabled());
    temporizador->Enabled(true);
    EXPECT_TRUE(temporizador->Enabled());
    EXPECT_NO_THROW(exterior.avanzar(1000));
    EXPECT_THAT(averias, ElementsAre("fallo del reloj")) << "the other nine are dropped";
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

}  // namespace
}  // namespace bn
