// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QClipboard>
#include <QDir>
#include <QGuiApplication>

#include "destinations/EdiTxt.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/PlataformaDePrueba.h"
#include "tests/ventanas/ManejarDialogo.h"

namespace bn {
namespace {

using prueba::celda;
using prueba::control;
using prueba::escribir;
using prueba::manejar;
using prueba::pulsar;
using prueba::pulsarCelda;
using prueba::teclear;

class EdiTxtTest : public testing::Test {
 protected:
    EdiTxtTest() { cfg.ArchivoTexto((carpeta / "Pesadas.txt").string()); }

    void esperarCelda(int fila, int columna) const {
        EXPECT_EQ(grd.currentRow(), fila);
        EXPECT_EQ(grd.currentColumn(), columna);
        EXPECT_TRUE(txEd.isVisible());
        EXPECT_TRUE(txEd.hasFocus());
        EXPECT_EQ(txEd.text().toStdString(), celda(grd, fila, columna));
        const QRect sitio = grd.visualItemRect(grd.item(fila, columna));
        EXPECT_TRUE(txEd.geometry().contains(sitio.center()));
    }
    void tecla(Qt::Key cual, Qt::KeyboardModifiers con = {}) { QTest::keyClick(&txEd, cual, con); }
    void alPrincipio() { txEd.setCursorPosition(0); }
    void alFinal() { txEd.setCursorPosition(static_cast<int>(txEd.text().size())); }

    prueba::CarpetaTemporal carpeta;
    PlataformaDePrueba plataforma{carpeta.ruta()};
    bn::Setup cfg{plataforma};
    EdiTxt d{plataforma};
    QTableWidget& grd = control<QTableWidget>(d, "grd");
    QLineEdit& txEd = control<QLineEdit>(d, "txEd");
};

TEST_F(EdiTxtTest, ShowsTheSettingsInItsControls) {
    cfg.Posicion(5, 0);
    manejar(d, cfg, [&] {
        EXPECT_EQ(control<QLineEdit>(d, "txLibro").text().toStdString(), cfg.ArchivoTexto());
        ASSERT_EQ(grd.rowCount(), 9);
        ASSERT_EQ(grd.columnCount(), 6);
        EXPECT_TRUE(grd.isColumnHidden(5));
        EXPECT_EQ(celda(grd, 0, 1), "Campo");
        EXPECT_EQ(celda(grd, 0, 2), "Formato");
        EXPECT_EQ(celda(grd, 0, 3), "Pos");
        EXPECT_EQ(celda(grd, 0, 4), "Lon");
        EXPECT_EQ(celda(grd, 1, 0), "·");
        EXPECT_EQ(celda(grd, 1, 1), "Fecha Hora");
        EXPECT_EQ(celda(grd, 1, 2), "dd/mm/yyyy hh:nn");
        EXPECT_EQ(celda(grd, 1, 3), "1");
        EXPECT_EQ(celda(grd, 1, 4), "16");
        EXPECT_EQ(celda(grd, 8, 1), "Peso Neto");
        for (const int columna : {0, 2, 3, 4}) EXPECT_EQ(celda(grd, 6, columna), "");
        EXPECT_FALSE(txEd.isVisible());
    });
}

TEST_F(EdiTxtTest, EditsTheCellThatIsClicked) {
    manejar(d, cfg, [&] {
        pulsarCelda(grd, 3, 3);
        esperarCelda(3, 3);
        EXPECT_TRUE(txEd.alignment().testFlag(Qt::AlignRight));
        EXPECT_EQ(txEd.maxLength(), 2);
        pulsarCelda(grd, 2, 2);
        esperarCelda(2, 2);
        EXPECT_TRUE(txEd.alignment().testFlag(Qt::AlignLeft));
        EXPECT_EQ(txEd.maxLength(), 80);
        pulsarCelda(grd, 4, 1);
        esperarCelda(4, 2);
        EXPECT_EQ(celda(grd, 4, 0), "·") << "the name does not switch";
        pulsarCelda(grd, 0, 3);
        esperarCelda(4, 2);
    });
}

TEST_F(EdiTxtTest, SwitchesAFieldByAClickOnItsMark) {
    manejar(d, cfg, [&] {
        pulsarCelda(grd, 1, 0);
        EXPECT_EQ(celda(grd, 1, 0), "");
        esperarCelda(1, 2);
        EXPECT_EQ(txEd.text(), "");
        EXPECT_EQ(celda(grd, 1, 5), "dd/mm/yyyy hh:nn|1|16");
        pulsarCelda(grd, 1, 0);
        EXPECT_EQ(celda(grd, 1, 0), "·");
        esperarCelda(1, 2);
        EXPECT_EQ(txEd.text(), "dd/mm/yyyy hh:nn");
        EXPECT_EQ(celda(grd, 1, 3), "1");
        EXPECT_EQ(celda(grd, 1, 4), "16");
    });
}

TEST_F(EdiTxtTest, SwitchesTheFieldFromTheKeyboard) {
    manejar(d, cfg, [&] {
        pulsarCelda(grd, 2, 3);
        tecla(Qt::Key_Space, Qt::ControlModifier);
        EXPECT_EQ(celda(grd, 2, 0), "");
        esperarCelda(2, 3);
        tecla(Qt::Key_Space, Qt::ControlModifier);
        EXPECT_EQ(celda(grd, 2, 3), "18");
        esperarCelda(2, 3);
    });
}

TEST_F(EdiTxtTest, CopiesEachChangeIntoTheCell) {
    manejar(d, cfg, [&] {
        pulsarCelda(grd, 3, 2);
        teclear(txEd, "0,0 ñ");
        EXPECT_EQ(celda(grd, 3, 2), "0,0 ñ");
        tecla(Qt::Key_Backspace);
        EXPECT_EQ(celda(grd, 3, 2), "0,0 ");
        EXPECT_EQ(celda(grd, 2, 2), "");
    });
}

TEST_F(EdiTxtTest, TakesTwoDigitsInPositionAndWidth) {
    manejar(d, cfg, [&] {
        for (const int columna : {3, 4}) {
            pulsarCelda(grd, 3, columna);
            tecla(Qt::Key_Delete);
            teclear(txEd, "a1.-2 3");
            EXPECT_EQ(celda(grd, 3, columna), "12");
            QGuiApplication::clipboard()->setText("9z");
            txEd.selectAll();
            txEd.paste();
            EXPECT_EQ(celda(grd, 3, columna), "9");
            EXPECT_EQ(txEd.text(), "9");
        }
    });
}

TEST_F(EdiTxtTest, MovesUpAndDownBetweenTheFields) {
    manejar(d, cfg, [&] {
        pulsarCelda(grd, 1, 3);
        tecla(Qt::Key_Up);
        esperarCelda(1, 3);
        for (int fila = 2; fila <= 8; ++fila) {
            tecla(Qt::Key_Down);
            esperarCelda(fila, 3);
        }
        tecla(Qt::Key_Down);
        esperarCelda(8, 3);
        tecla(Qt::Key_Up);
        esperarCelda(7, 3);
    });
}

TEST_F(EdiTxtTest, MovesLeftOnlyFromTheBeginningOfTheText) {
    manejar(d, cfg, [&] {
        pulsarCelda(grd, 3, 4);
        alFinal();
        tecla(Qt::Key_Left);
        esperarCelda(3, 4);
        EXPECT_EQ(txEd.cursorPosition(), 0);
        tecla(Qt::Key_Left);
        esperarCelda(3, 3);
        alPrincipio();
        tecla(Qt::Key_Left);
        esperarCelda(3, 2);
        alPrincipio();
        tecla(Qt::Key_Left);
        esperarCelda(3, 2);
    });
}

TEST_F(EdiTxtTest, MovesRightOnlyFromTheEndOfTheText) {
    manejar(d, cfg, [&] {
        pulsarCelda(grd, 3, 2);
        alPrincipio();
        tecla(Qt::Key_Right);
        esperarCelda(3, 2);
        EXPECT_EQ(txEd.cursorPosition(), 1);
        alFinal();
        tecla(Qt::Key_Right);
        esperarCelda(3, 3);
        txEd.setSelection(1, 1);
        tecla(Qt::Key_Right);
        esperarCelda(3, 4);
        alFinal();
        tecla(Qt::Key_Right);
        esperarCelda(3, 4);
    });
}

TEST_F(EdiTxtTest, SelectsWithShiftInsideTheText) {
    manejar(d, cfg, [&] {
        pulsarCelda(grd, 3, 3);
        alFinal();
        tecla(Qt::Key_Left, Qt::ShiftModifier);
        esperarCelda(3, 3);
        EXPECT_EQ(txEd.selectedText(), "7");
    });
}

TEST_F(EdiTxtTest, KeepsTheSelectionToTheCurrentCell) {
    manejar(d, cfg, [&] {
        pulsarCelda(grd, 3, 3);
        tecla(Qt::Key_Down);
        const auto elegidas = grd.selectionModel()->selectedIndexes();
        ASSERT_EQ(elegidas.size(), 1);
        EXPECT_EQ(elegidas[0].row(), 4);
        EXPECT_EQ(elegidas[0].column(), 3);
    });
}

TEST_F(EdiTxtTest, HidesTheEditorWhenTheFocusLeavesTheGrid) {
    manejar(d, cfg, [&] {
        pulsarCelda(grd, 3, 3);
        control<QLineEdit>(d, "txLibro").setFocus();
        EXPECT_FALSE(txEd.isVisible());
        grd.setFocus();
        esperarCelda(3, 3);
    });
}

TEST_F(EdiTxtTest, EntersTheCellsThatAProgramMakesCurrent) {
    manejar(d, cfg, [&] {
        grd.setCurrentCell(5, 4);
        esperarCelda(5, 4);
        grd.setCurrentCell(6, 0);
        EXPECT_EQ(celda(grd, 6, 0), "");
        esperarCelda(6, 2);
    });
}

TEST_F(EdiTxtTest, GoesThroughItsControlsBothWays) {
    manejar(d, cfg, [&] {
        const std::vector<std::string> orden = {"txLibro", "cmdLibro", "txEd", "Acepto", "Cancelo"};
        EXPECT_EQ(prueba::recorridoConTab(d, Qt::Key_Tab), orden);
        const std::vector<std::string> alReves = {"txLibro", "Cancelo", "Acepto", "txEd",
                                                  "cmdLibro"};
        EXPECT_EQ(prueba::recorridoConTab(d, Qt::Key_Backtab), alReves);
    });
}

TEST_F(EdiTxtTest, TellsEachFailureAndStaysOpen) {
    EXPECT_FALSE(manejar(d, cfg, [&] {
        const auto esperar = [&](const std::string& mensaje) {
            pulsar(d, "Acepto");
            ASSERT_FALSE(plataforma.mensajes.empty());
            EXPECT_EQ(plataforma.mensajes.back(), mensaje);
            EXPECT_TRUE(d.isVisible());
        };
        escribir(d, "txLibro", "");
        esperar("La carpeta especificada no existe");
        escribir(d, "txLibro", QString::fromStdString((carpeta / "Pesadas.TXT").string()));
        esperar("El nombre del Fichero es incorrecto");
        escribir(d, "txLibro", QString::fromStdString((carpeta / "Pesadas.txt").string()));
        pulsarCelda(grd, 8, 3);
        teclear(txEd, "62");
        esperar("Hay posiciones de campo repetidas");
        EXPECT_EQ(celda(grd, 8, 3), "62");
    }));
    EXPECT_EQ(plataforma.mensajes.size(), 3U);
    EXPECT_EQ(cfg.Posicion(7), 70);
}

TEST_F(EdiTxtTest, StoresWhatWasEditedWithEnterInTheEditor) {
    EXPECT_TRUE(manejar(d, cfg, [&] {
        pulsarCelda(grd, 2, 0);
        pulsarCelda(grd, 8, 3);
        teclear(txEd, "72");
        tecla(Qt::Key_Right);
        teclear(txEd, "9");
        tecla(Qt::Key_Return);
        EXPECT_FALSE(d.isVisible());
    }));
    EXPECT_EQ(cfg.Posicion(1), 0);
    EXPECT_EQ(cfg.Posicion(7), 72);
    EXPECT_EQ(cfg.Largo(7), 9);
    EXPECT_FALSE(std::filesystem::exists(carpeta / "bnDX5.ini"));
}

TEST_F(EdiTxtTest, StoresNothingWhenCancelled) {
    EXPECT_FALSE(manejar(d, cfg, [&] {
        pulsarCelda(grd, 1, 0);
        escribir(d, "txLibro", "x");
        pulsar(d, "Cancelo");
    }));
    EXPECT_FALSE(manejar(d, cfg, [&] {
        EXPECT_EQ(celda(grd, 1, 0), "·") << "filled anew";
        pulsarCelda(grd, 1, 2);
        tecla(Qt::Key_Escape);
        EXPECT_FALSE(d.isVisible());
    }));
    EXPECT_EQ(cfg.Posicion(0), 1);
    EXPECT_EQ(cfg.ArchivoTexto(), (carpeta / "Pesadas.txt").string());
}

TEST_F(EdiTxtTest, PutsTheFileLookedFor) {
    d.elegirFichero() = [](const QString&) { return QStringLiteral("/tmp/otro.txt"); };
    manejar(d, cfg, [&] {
        pulsar(d, "cmdLibro");
        EXPECT_EQ(control<QLineEdit>(d, "txLibro").text(),
                  QDir::toNativeSeparators(QStringLiteral("/tmp/otro.txt")));
    });
}

TEST_F(EdiTxtTest, ShowsTheLineAgainAtEachEdit) {
    d.VistaPrevia([](const FormularioTxt& f) { return "pos " + f.celda(0, 3); });
    manejar(d, cfg, [&] {
        auto& vista = control<ReglaDeLinea>(d, "vistaPrevia");
        EXPECT_TRUE(vista.isVisible());
        EXPECT_EQ(vista.linea(), "pos 1");
        pulsarCelda(grd, 1, 3);
        teclear(txEd, "7");
        EXPECT_EQ(vista.linea(), "pos 7");
        EXPECT_EQ(vista.accessibleDescription(), "pos 7");
        pulsarCelda(grd, 1, 0);
        EXPECT_EQ(vista.linea(), "pos ");
    });
}

TEST_F(EdiTxtTest, HasNoPreviewUntilItIsGivenOne) {
    manejar(d, cfg, [&] { EXPECT_FALSE(control<ReglaDeLinea>(d, "vistaPrevia").isVisible()); });
}

}  // namespace
}  // namespace bn
