// SPDX-License-Identifier: MIT
#include <QAbstractButton>
#include <algorithm>

#include "app/Version.h"
#include "tests/ventanas/VentanaPrincipalDePrueba.h"

namespace bn {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

const QColor kVerde(0, 128, 0);
const QColor kGris(192, 192, 192);
const QColor kAzul(0, 0, 255);

/// What the window shows of the states of a download.
class fDescargaEstados : public VentanaPrincipalDePrueba {
 protected:
    /// The visible buttons of the row, from left to right.
    std::vector<std::string> botones() const {
        std::vector<QWidget*> visibles;
        for (const char* nombre : {"cmdLimp", "cmdAbor", "cmdDesc", "cmdMini", "cmdCerr"}) {
            if (seVe(nombre)) visibles.push_back(&control(nombre));
        }
        std::sort(visibles.begin(), visibles.end(),
                  [](QWidget* a, QWidget* b) { return a->x() < b->x(); });
        std::vector<std::string> nombres;
        for (auto* boton : visibles) nombres.push_back(boton->objectName().toStdString());
        return nombres;
    }
    std::vector<std::string> fases() const {
        std::vector<std::string> visibles;
        for (const char* nombre : {"lbFase1", "lbFase2", "lbRx", "lbFase3", "lbGu"}) {
            if (seVe(nombre)) visibles.push_back(nombre);
        }
        return visibles;
    }
    void colores(const QColor& primera, const QColor& segunda, const QColor& tercera) const {
        EXPECT_EQ(color("lbFase1"), primera);
        EXPECT_EQ(color("lbFase2"), segunda);
        EXPECT_EQ(color("lbRx"), segunda);
        EXPECT_EQ(color("lbFase3"), tercera);
        EXPECT_EQ(color("lbGu"), tercera);
    }
};

TEST_F(fDescargaEstados, IdleOffersToCloseHideAndDownload) {
    soloTexto();
    abrir();
    EXPECT_THAT(botones(), ElementsAre("cmdCerr", "cmdMini", "cmdDesc"));
    EXPECT_THAT(fases(), IsEmpty());
    EXPECT_FALSE(seVe("frResul"));
    EXPECT_EQ(control<QAbstractButton>("cmdDesc").text().remove('&'), "Descargar ahora");
    EXPECT_EQ(control<QAbstractButton>("cmdMini").text().remove('&'), "Ocultar ventana");
    EXPECT_EQ(control<QAbstractButton>("ckInicio").text().remove('&'), "Ejec. al inicio");
    EXPECT_EQ(control<QAbstractButton>("ckMini").text().remove('&'), "Ejec. minimizado");
    EXPECT_EQ(rotulo("lbVer"), std::string("ver. ") + kVersion);
}

TEST_F(fDescargaEstados, RequestingShowsTheFirstPhaseInGreen) {
    soloTexto();
    abrir();
    pulsar("cmdDesc");
    EXPECT_EQ(plataforma.puerto().enviado, prueba::kAck) << "the request character by default";
    EXPECT_THAT(botones(), ElementsAre("cmdCerr", "cmdMini", "cmdDesc"));
    EXPECT_THAT(fases(), ElementsAre("lbFase1"));
    EXPECT_EQ(rotulo("lbFase1"), "Pidiendo pesadas");
    EXPECT_EQ(color("lbFase1"), kVerde);
    EXPECT_FALSE(seVe("frResul"));
}

TEST_F(fDescargaEstados, ReceivingCountsInGreenAndCanOnlyBeHiddenOrInterrupted) {
    soloTexto();
    abrir();
    pulsar("cmdDesc");
    recibir(pesada(1));
    EXPECT_THAT(botones(), ElementsAre("cmdMini", "cmdAbor"));
    EXPECT_THAT(fases(), ElementsAre("lbFase1", "lbFase2", "lbRx"));
    EXPECT_EQ(rotulo("lbFase2"), "Recibiendo pesadas:");
    EXPECT_EQ(rotulo("lbRx"), "1");
    EXPECT_EQ(color("lbFase1"), kGris);
    EXPECT_EQ(color("lbFase2"), kVerde);
    EXPECT_EQ(color("lbRx"), kVerde);
    EXPECT_FALSE(seVe("frResul"));
    recibir(pesada(2));
    EXPECT_EQ(rotulo("lbRx"), "2");
    EXPECT_FALSE(control<QAction>("mnCerrar").isEnabled()) << "no way round the missing button";
    EXPECT_FALSE(control<QAction>("mnDescarga").isEnabled());
}

TEST_F(fDescargaEstados, SavingIsPaintedBeforeItHoldsTheWindow) {
    soloTexto();
    abrir();
    struct Testigo : QObject {
        std::function<void()> alPintar;
        bool eventFilter(QObject*, QEvent* evento) override {
            if (evento->type() == QEvent::Paint) alPintar();
            return false;
        }
    } testigo;
    std::vector<std::string> botonesAlGuardar;
    QColor segunda;
    QColor tercera;
    testigo.alPintar = [&] {
        if (!seVe("lbGu") || seVe("frResul") || std::filesystem::exists(texto)) return;
        botonesAlGuardar = botones();
        segunda = color("lbRx");
        tercera = color("lbGu");
    };
    ventana->installEventFilter(&testigo);
    descargar(1);
    EXPECT_THAT(botonesAlGuardar, ElementsAre("cmdMini"));
    EXPECT_EQ(segunda, kGris);
    EXPECT_EQ(tercera, kVerde);
    EXPECT_EQ(rotulo("lbFase3"), "Guardando pesadas");
}

TEST_F(fDescargaEstados, FinishedTellsHowManyHaveArrived) {
    soloTexto();
    abrir();
    descargar(3);
    QApplication::processEvents();
    EXPECT_THAT(botones(), ElementsAre("cmdCerr", "cmdMini", "cmdDesc", "cmdLimp"));
    EXPECT_THAT(fases(), ElementsAre("lbFase1", "lbFase2", "lbRx", "lbFase3", "lbGu"));
    colores(kGris, kGris, kGris);
    EXPECT_TRUE(seVe("frResul"));
    EXPECT_TRUE(seVe("lbResulBien"));
    EXPECT_FALSE(seVe("lbResulMal"));
    EXPECT_FALSE(seVe("lbMensaje"));
    EXPECT_EQ(rotulo("lbResulBien"), "3 pesadas.\nRecibidas correctamente.");
    EXPECT_EQ(rotulo("lbRx"), "3");
    EXPECT_THAT(prueba::leerFichero(texto), HasSubstr("1234BCD  0000003 "));
    EXPECT_THAT(plataforma.mensajes, IsEmpty());
}

TEST_F(fDescargaEstados, FinishedWithNothingSaysSo) {
    soloTexto();
    abrir();
    descargar(0);
    EXPECT_EQ(rotulo("lbResulBien"), "No se han recibido pesadas");
    EXPECT_TRUE(seVe("lbResulBien"));
    EXPECT_FALSE(std::filesystem::exists(texto));
}

TEST_F(fDescargaEstados, FailedExplainsItInTheFrameAndNotInABox) {
    soloTexto();
    abrir();
    pulsar("cmdDesc");
    callar();
    QApplication::processEvents();
    EXPECT_THAT(botones(), ElementsAre("cmdCerr", "cmdMini", "cmdDesc", "cmdLimp"));
    EXPECT_THAT(fases(), SizeIs(5));
    colores(kGris, kGris, kGris);
    EXPECT_TRUE(seVe("frResul"));
    EXPECT_FALSE(seVe("lbResulBien"));
    EXPECT_TRUE(seVe("lbResulMal"));
    EXPECT_TRUE(seVe("lbMensaje"));
    EXPECT_EQ(rotulo("lbMensaje"), "El indicador no contesta a las peticiones");
    EXPECT_THAT(plataforma.mensajes, IsEmpty());
}

TEST_F(fDescargaEstados, APortThatCannotBeOpenedIsExplainedInTheFrame) {
    soloTexto();
    abrir();
    plataforma.puerto().errorAlAbrir = "/dev/ttyS0: no existe";
    pulsar("cmdDesc");
    plataforma.avanzar(10);
    EXPECT_EQ(rotulo("lbMensaje"), "No se puede iniciar el canal:\n/dev/ttyS0: no existe");
    EXPECT_TRUE(seVe("lbMensaje"));
}

TEST_F(fDescargaEstados, AnInterruptedDownloadKeepsWhatHasArrived) {
    soloTexto();
    abrir();
    pulsar("cmdDesc");
    recibir(pesada(1));
    pulsar("cmdAbor");
    recibir(pesada(2));
    EXPECT_EQ(rotulo("lbMensaje"),
              "La descarga de pesadas ha sido interrumpida desde el ordenador");
    EXPECT_TRUE(seVe("lbResulMal"));
    EXPECT_THAT(prueba::leerFichero(texto), HasSubstr(" 0000001 "));
}

TEST_F(fDescargaEstados, AVisiblePhaseKeepsItsColourInTheNextDownload) {
    soloTexto();
    abrir();
    descargar(1);
    pulsar("cmdDesc");
    EXPECT_THAT(fases(), ElementsAre("lbFase1"));
    EXPECT_EQ(color("lbFase1"), kGris);
    EXPECT_FALSE(seVe("frResul"));
    recibir(pesada(1));
    EXPECT_EQ(color("lbFase2"), kVerde);
}

TEST_F(fDescargaEstados, ClearingGoesBackToIdle) {
    soloTexto();
    abrir();
    descargar(1);
    pulsar("cmdLimp");
    EXPECT_THAT(botones(), ElementsAre("cmdCerr", "cmdMini", "cmdDesc"));
    EXPECT_THAT(fases(), IsEmpty());
    EXPECT_FALSE(seVe("frResul"));
    pulsar("cmdDesc");
    EXPECT_EQ(color("lbFase1"), kVerde);
}

TEST_F(fDescargaEstados, TheFocusStaysInTheRowOfButtons) {
    soloTexto();
    abrir();
    const auto foco = [&] { return ventana->focusWidget()->objectName().toStdString(); };
    EXPECT_EQ(foco(), "cmdDesc");
    pulsar("cmdDesc");
    EXPECT_EQ(foco(), "cmdDesc");
    recibir(pesada(1));
    EXPECT_EQ(foco(), "cmdMini") << "a second Enter must not interrupt";
    terminar(1);
    EXPECT_EQ(foco(), "cmdDesc");
    control("cmdLimp").setFocus();
    pulsar("cmdLimp");
    EXPECT_EQ(foco(), "cmdDesc");
}

TEST_F(fDescargaEstados, NoTextIsCutInAnyStateAtAnyTextSize) {
    const QFont deSiempre = QApplication::font();
    for (const double aumento : {1.0, 1.5, 2.0}) {
        QFont letra = deSiempre;
        letra.setPointSizeF(deSiempre.pointSizeF() * aumento);
        QApplication::setFont(letra);
        soloTexto("30;False");
        abrir();
        const auto comprobar = [&](const char* cuando) {
            QApplication::processEvents();
            EXPECT_TRUE(ventana->rect().contains(ventana->childrenRect()));
            for (const auto* w : ventana->findChildren<QWidget*>()) {
                const bool conTexto = qobject_cast<const QAbstractButton*>(w) != nullptr ||
                                      qobject_cast<const QLabel*>(w) != nullptr;
                if (!conTexto || !w->isVisible()) continue;
                EXPECT_GE(w->width(), w->minimumSizeHint().width())
                    << w->objectName().toStdString() << " when " << cuando << " at " << aumento;
                const int alto = w->hasHeightForWidth() ? w->heightForWidth(w->width())
                                                        : w->minimumSizeHint().height();
                EXPECT_GE(w->height(), alto)
                    << w->objectName().toStdString() << " when " << cuando << " at " << aumento;
            }
        };
        comprobar("idle");
        pulsarEtiqueta("lbAuto");
        comprobar("held");
        pulsar("cmdDesc");
        comprobar("requesting");
        recibir(pesada(1));
        comprobar("receiving");
        terminar(1);
        comprobar("finished");
        plataforma.puerto().errorAlAbrir =
            "/dev/serial/by-id/usb-FTDI_FT232R_USB_UART_A50285BI-if00-port0: acceso denegado";
        pulsar("cmdDesc");
        plataforma.avanzar(10);
        comprobar("failed");
        ventana.reset();
    }
    QApplication::setFont(deSiempre);
}

TEST_F(fDescargaEstados, AutomaticDownloadsStartAtTheEndOfTheCountdown) {
    soloTexto("3;False");
    abrir();
    EXPECT_TRUE(seVe("lbSeg"));
    EXPECT_EQ(rotulo("lbSeg"), "3");
    EXPECT_EQ(color("lbSeg"), kAzul);
    segundos(2);
    EXPECT_EQ(rotulo("lbSeg"), "1");
    EXPECT_EQ(plataforma.puerto().enviado, "");
    segundos(1);
    EXPECT_EQ(rotulo("lbSeg"), "0");
    EXPECT_THAT(fases(), ElementsAre("lbFase1"));
    terminar(0);
    EXPECT_EQ(rotulo("lbSeg"), "3") << "counted from the end of the download";
    segundos(2);
    EXPECT_EQ(rotulo("lbSeg"), "1");
}

TEST_F(fDescargaEstados, AFailureRestartsTheCountdownAsWell) {
    soloTexto("30;False");
    abrir();
    segundos(5);
    pulsar("cmdDesc");
    callar();
    EXPECT_EQ(rotulo("lbSeg"), "30");
    segundos(4);
    EXPECT_EQ(rotulo("lbSeg"), "26");
    pulsar("cmdLimp");
    EXPECT_EQ(rotulo("lbSeg"), "30") << "so does clearing";
}

TEST_F(fDescargaEstados, ACountdownThatEndsInABusyDownloadStartsAgainAtOnce) {
    soloTexto("2;False");
    abrir();
    pulsar("cmdDesc");
    recibir(pesada(1));
    plataforma.avanzar(500);
    recibir(pesada(2));
    plataforma.avanzar(500);
    recibir(pesada(3));
    plataforma.avanzar(500);
    recibir(pesada(4));
    plataforma.avanzar(500);
    EXPECT_EQ(rotulo("lbSeg"), "2");
    EXPECT_EQ(rotulo("lbRx"), "4") << "the running download goes on";
    EXPECT_THAT(botones(), ElementsAre("cmdMini", "cmdAbor"));
}

TEST_F(fDescargaEstados, PressingTheCountdownHoldsItAndPressingAgainLosesNoSecond) {
    soloTexto("30;False");
    abrir();
    segundos(4);
    pulsarEtiqueta("lbAuto");
    EXPECT_EQ(rotulo("lbSeg"), "(retenida)");
    EXPECT_NE(color("lbSeg"), kAzul);
    EXPECT_NE(color("lbAuto"), kAzul);
    segundos(60);
    EXPECT_EQ(rotulo("lbSeg"), "(retenida)");
    pulsarEtiqueta("lbAuto");
    EXPECT_EQ(rotulo("lbSeg"), "26");
    EXPECT_EQ(color("lbSeg"), kAzul);
    EXPECT_EQ(color("lbAuto"), kAzul);
    segundos(1);
    EXPECT_EQ(rotulo("lbSeg"), "25");
}

TEST_F(fDescargaEstados, WithoutAPeriodTheCountdownIsDisabledAndCannotBeResumed) {
    soloTexto("0;False");
    abrir();
    EXPECT_EQ(rotulo("lbSeg"), "(deshabi.)");
    pulsarEtiqueta("lbAuto");
    EXPECT_EQ(rotulo("lbSeg"), "(deshabi.)");
    segundos(100);
    EXPECT_EQ(plataforma.puerto().enviado, "");
}

}  // namespace
}  // namespace bn
