// SPDX-License-Identifier: MIT
#include <QMessageBox>
#include <QPushButton>

#include "tests/ventanas/VentanaPrincipalDePrueba.h"

namespace bn {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

/// What the window shows of weighings that wait, and what it lets the user do about them.
class fDescargaPendientes : public VentanaPrincipalDePrueba {
 protected:
    const std::filesystem::path oficina = carpeta / "oficina";

    /// The text file's folder is missing.
    void sinOficina(const std::string& autom = "0;False") {
        configurar(autom, {"[Excel]", "Uso=False", "[Texto]", "Uso=True",
                           "Destino=" + ficheros::aTexto(oficina / "Pesadas.txt")});
        abrir();
    }
    void ponerOficina() { ASSERT_TRUE(std::filesystem::create_directory(oficina)); }
    void unMomento() { plataforma.avanzar(1); }
    std::string lineas() const { return prueba::leerFichero(oficina / "Pesadas.txt"); }
    /// Answers the question that the next action asks.
    void responder(const char* boton) {
        QTimer::singleShot(0, ventana.get(), [this, boton] {
            auto* caja = dynamic_cast<QMessageBox*>(QApplication::activeModalWidget());
            ++dialogos;
            ASSERT_NE(caja, nullptr);
            pregunta = caja->text().toStdString();
            enLaPregunta = caja->defaultButton() ? caja->defaultButton()->text().toStdString() : "";
            for (QAbstractButton* uno : caja->buttons()) {
                if (uno->text() == QString::fromUtf8(boton)) return uno->click();
            }
            caja->reject();
        });
    }
    std::string pregunta;
    std::string enLaPregunta;
};

TEST_F(fDescargaPendientes, NothingIsShownWhileNothingWaits) {
    soloTexto();
    abrir();
    for (const char* nombre : {"frPend", "lbPend", "cmdPend", "lbAviso"}) {
        EXPECT_FALSE(seVe(nombre)) << nombre;
    }
    EXPECT_FALSE(control<QAction>("mnPend").isEnabled());
    EXPECT_FALSE(control<QAction>("mnDescartar").isEnabled());
    descargar(2);
    EXPECT_FALSE(seVe("frPend"));
}

TEST_F(fDescargaPendientes, AFailedPassOfADownloadThatNobodyAskedForIsShownWithoutAMessage) {
    sinOficina("30;False");
    segundos(30);
    recibir(pesada(1));
    terminar(1);
    unMomento();
    EXPECT_TRUE(seVe("lbPend"));
    EXPECT_TRUE(seVe("cmdPend"));
    EXPECT_EQ(control<QAbstractButton>("cmdPend").text().remove('&'), "Guardar ahora");
    EXPECT_THAT(rotulo("lbPend"), StartsWith("1 pesada pendiente de guardar."));
    EXPECT_THAT(rotulo("lbPend"), HasSubstr("oficina"));
    EXPECT_THAT(plataforma.mensajes, IsEmpty());
    EXPECT_TRUE(seVe("cmdDesc"));
    EXPECT_TRUE(seVe("cmdCerr"));
    EXPECT_FALSE(seVe("lbFase1"));
    EXPECT_EQ(rotulo("lbSeg"), "30");
    ponerOficina();
    segundos(30);
    terminar(0);
    EXPECT_FALSE(seVe("frPend"));
    EXPECT_THAT(lineas(), HasSubstr(" 0000001 "));
}

TEST_F(fDescargaPendientes, AUsersOwnDownloadGetsAMessageAndTheWindowWorksOn) {
    sinOficina();
    descargar(1);
    unMomento();
    ASSERT_THAT(plataforma.mensajes, SizeIs(1));
    const std::string& mensaje = plataforma.mensajes[0];
    EXPECT_THAT(mensaje, StartsWith("No se han podido guardar las pesadas:\n"));
    EXPECT_THAT(mensaje, HasSubstr("oficina"));
    EXPECT_EQ(mensaje.find("oficina"), mensaje.rfind("oficina")) << "the cause, once";
    ponerOficina();
    pulsar("cmdDesc");
    recibir(pesada(2));
    terminar(1);
    EXPECT_EQ(rotulo("lbResulBien"), "1 pesadas.\nRecibidas correctamente.");
    EXPECT_THAT(lineas(), HasSubstr(" 0000001 "));
    EXPECT_THAT(lineas(), HasSubstr(" 0000002 "));
    EXPECT_THAT(plataforma.mensajes, SizeIs(1));
}

TEST_F(fDescargaPendientes, TheButtonAndTheMenuSaveNow) {
    for (const bool porMenu : {false, true}) {
        sinOficina();
        descargar(1);
        unMomento();
        plataforma.mensajes.clear();
        const auto guardar = [&] { porMenu ? elegir("mnPend") : pulsar("cmdPend"); };
        guardar();
        ASSERT_THAT(plataforma.mensajes, SizeIs(1));
        EXPECT_THAT(plataforma.mensajes[0], HasSubstr("oficina"));
        EXPECT_TRUE(seVe("lbPend"));
        ponerOficina();
        guardar();
        EXPECT_THAT(plataforma.mensajes, SizeIs(1));
        EXPECT_FALSE(seVe("lbPend"));
        EXPECT_THAT(lineas(), HasSubstr(" 0000001 "));
        ventana.reset();
        std::filesystem::remove_all(oficina);
    }
}

TEST_F(fDescargaPendientes, CannotSaveOrDiscardWhileADownloadRuns) {
    sinOficina();
    descargar(1);
    unMomento();
    pulsar("cmdDesc");
    EXPECT_FALSE(sePuede("cmdPend"));
    EXPECT_FALSE(control<QAction>("mnPend").isEnabled());
    EXPECT_FALSE(control<QAction>("mnDescartar").isEnabled());
    callar();
    EXPECT_TRUE(sePuede("cmdPend"));
}

TEST_F(fDescargaPendientes, DiscardingAsksFirstAndTheHarmlessAnswerIsTheDefault) {
    sinOficina();
    descargar(2);
    unMomento();
    responder("&Cancelar");
    elegir("mnDescartar");
    EXPECT_THAT(pregunta, HasSubstr("2 pesadas"));
    EXPECT_EQ(enLaPregunta, "&Cancelar");
    EXPECT_TRUE(seVe("lbPend"));
    EXPECT_THAT(prueba::ficherosQueEmpiezan(carpeta.ruta(), "bnDescartadas-"), IsEmpty());
    responder("&Descartar");
    elegir("mnDescartar");
    EXPECT_FALSE(seVe("lbPend"));
    const auto copias = prueba::ficherosQueEmpiezan(carpeta.ruta(), "bnDescartadas-");
    ASSERT_THAT(copias, SizeIs(1));
    EXPECT_THAT(prueba::leerFichero(carpeta / copias[0]), HasSubstr("1234BCD"));
    EXPECT_EQ(dialogos, 2);
}

TEST_F(fDescargaPendientes, WithoutADestinationItSaysWhatToTick) {
    configurar("0;False", {"[Excel]", "Uso=False", "[Texto]", "Uso=False",
                           "Destino=" + ficheros::aTexto(texto)});
    abrir();
    descargar(2);
    EXPECT_EQ(rotulo("lbResulBien"), "2 pesadas.\nRecibidas correctamente.");
    EXPECT_THAT(rotulo("lbPend"), StartsWith("2 pesadas pendientes de guardar."));
    EXPECT_THAT(rotulo("lbPend"), HasSubstr("marque «Hoja Excel» o «Texto plano»"));
    pulsar("ckTxto");
    pulsar("cmdPend");
    EXPECT_FALSE(seVe("lbPend"));
    EXPECT_THAT(prueba::leerFichero(texto), HasSubstr(" 0000002 "));
}

TEST_F(fDescargaPendientes, ADestinationUntickedWithWeighingsWaitingSaysSoAtOnce) {
    sinOficina();
    descargar(1);
    unMomento();
    EXPECT_THAT(rotulo("lbPend"), HasSubstr("oficina"));
    pulsar("ckTxto");
    EXPECT_THAT(rotulo("lbPend"), HasSubstr("se marque otra vez «Texto plano»"));
    pulsar("ckTxto");
    EXPECT_THAT(rotulo("lbPend"), HasSubstr("oficina"));
}

TEST_F(fDescargaPendientes, TheWindowTakesRoomForWhatWaitsAndGivesItBack) {
    sinOficina();
    const QSize antes = ventana->size();
    descargar(1);
    unMomento();
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(ventana->width(), antes.width());
    EXPECT_GT(ventana->height(), antes.height());
    ponerOficina();
    pulsar("cmdPend");
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(ventana->size(), antes);
}

TEST_F(fDescargaPendientes, WhatAKilledProgramLeftIsSavedAtTheStartWithoutAWord) {
    soloTexto();
    abrir();
    pulsar("cmdDesc");
    recibir(pesada(7));
    ventana.reset();
    abrir();
    EXPECT_TRUE(seVe("lbPend"));
    unMomento();
    EXPECT_FALSE(seVe("lbPend"));
    EXPECT_THAT(prueba::leerFichero(texto), HasSubstr(" 0000007 "));
    EXPECT_THAT(plataforma.mensajes, IsEmpty());
}

TEST_F(fDescargaPendientes, CannotBeClosedWhileWeighingsArriveAndSaysSo) {
    soloTexto();
    abrir();
    pulsar("cmdDesc");
    recibir(pesada(1));
    EXPECT_FALSE(ventana->close());
    EXPECT_TRUE(ventana->isVisible());
    EXPECT_THAT(rotulo("lbAviso"), HasSubstr("No se puede cerrar"));
    EXPECT_TRUE(seVe("lbAviso"));
    recibir(pesada(2));
    terminar(2);
    EXPECT_FALSE(seVe("lbAviso"));
    EXPECT_THAT(prueba::leerFichero(texto), HasSubstr(" 0000002 "));
    EXPECT_TRUE(ventana->close());
}

TEST_F(fDescargaPendientes, TheEndOfTheSessionIsObeyedAndNothingIsLost) {
    soloTexto();
    abrir();
    pulsar("cmdDesc");
    recibir(pesada(1));
    ventana->obedecer();
    EXPECT_TRUE(ventana->close());
    ventana.reset();
    abrir();
    unMomento();
    EXPECT_THAT(prueba::leerFichero(texto), HasSubstr(" 0000001 "));
}

}  // namespace
}  // namespace bn
