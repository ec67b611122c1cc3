// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QPushButton>

#include "destinations/EdiExc.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/ExcelDePrueba.h"
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

class EdiExcTest : public testing::Test {
 protected:
    EdiExcTest() { cfg.LibroExcel((carpeta / "Pesadas.xls").string()); }

    std::vector<std::string> lista() const {
        std::vector<std::string> hojas;
        for (int i = 0; i < lst.count(); ++i) hojas.push_back(lst.itemText(i).toStdString());
        return hojas;
    }

    prueba::CarpetaTemporal carpeta;
    PlataformaConExcel plataforma{carpeta.ruta()};
    bn::Setup cfg{plataforma};
    EdiExc d{plataforma};
    QTableWidget& grd = control<QTableWidget>(d, "grd");
    QComboBox& lst = control<QComboBox>(d, "lstHoja");
};

TEST_F(EdiExcTest, ShowsTheSettingsInItsControls) {
    cfg.ColumnaExcel(4, 0);
    manejar(d, cfg, [&] {
        EXPECT_EQ(control<QLineEdit>(d, "txLibro").text().toStdString(), cfg.LibroExcel());
        EXPECT_EQ(lst.currentText(), "Pesadas");
        ASSERT_EQ(grd.rowCount(), 8);
        ASSERT_EQ(grd.columnCount(), 4);
        EXPECT_TRUE(grd.isColumnHidden(3));
        EXPECT_EQ(grd.columnWidth(0), 18);
        EXPECT_EQ(grd.columnWidth(2), 32);
        EXPECT_EQ(celda(grd, 0, 0), "·");
        EXPECT_EQ(celda(grd, 0, 1), "Fecha Hora");
        EXPECT_EQ(celda(grd, 0, 2), "A");
        EXPECT_EQ(celda(grd, 7, 1), "Peso Neto");
        EXPECT_EQ(celda(grd, 4, 0), "");
        EXPECT_EQ(celda(grd, 4, 2), "");
        EXPECT_FALSE(grd.item(4, 0)->icon().isNull());
    });
}

TEST_F(EdiExcTest, SwitchesARowByAPressOnItsMark) {
    EXPECT_TRUE(manejar(d, cfg, [&] {
        pulsarCelda(grd, 3, 0);
        EXPECT_EQ(celda(grd, 3, 0), "");
        EXPECT_EQ(celda(grd, 3, 2), "");
        EXPECT_EQ(celda(grd, 3, 3), "D");
        pulsarCelda(grd, 3, 0);
        EXPECT_EQ(celda(grd, 3, 0), "·");
        EXPECT_EQ(celda(grd, 3, 2), "D");
        pulsarCelda(grd, 5, 0);
        pulsarCelda(grd, 6, 1);
        EXPECT_EQ(celda(grd, 6, 0), "·") << "only the mark switches";
        pulsar(d, "Acepto");
    }));
    EXPECT_EQ(cfg.ColumnaExcel(3), 4);
    EXPECT_EQ(cfg.ColumnaExcel(5), 0);
}

TEST_F(EdiExcTest, SwitchesTheCurrentRowFromTheKeyboard) {
    manejar(d, cfg, [&] {
        grd.setFocus();
        QTest::keyClick(&grd, Qt::Key_Down);
        QTest::keyClick(&grd, Qt::Key_Space, Qt::ControlModifier);
        EXPECT_EQ(celda(grd, 1, 0), "");
        QTest::keyClick(&grd, Qt::Key_Space, Qt::ControlModifier);
        EXPECT_EQ(celda(grd, 1, 2), "B");
    });
}

TEST_F(EdiExcTest, SelectsTheWholeCurrentRow) {
    manejar(d, cfg, [&] {
        pulsarCelda(grd, 2, 2);
        EXPECT_EQ(grd.currentRow(), 2);
        EXPECT_TRUE(grd.item(2, 0)->isSelected());
        EXPECT_TRUE(grd.item(2, 1)->isSelected());
        EXPECT_TRUE(grd.item(2, 2)->isSelected());
        EXPECT_FALSE(grd.item(1, 1)->isSelected());
    });
}

TEST_F(EdiExcTest, TypesLettersIntoTheCurrentRow) {
    manejar(d, cfg, [&] {
        pulsarCelda(grd, 0, 1);
        teclear(grd, "abc");
        EXPECT_EQ(celda(grd, 0, 2), "AB");
        QTest::keyClick(&grd, Qt::Key_Backspace);
        EXPECT_EQ(celda(grd, 0, 2), "A");
        QTest::keyClick(&grd, Qt::Key_Down);
        EXPECT_EQ(grd.currentRow(), 1);
        QTest::keyClick(&grd, Qt::Key_Up);
        teclear(grd, "C");
        EXPECT_EQ(celda(grd, 0, 2), "C");
        teclear(grd, "+");
        EXPECT_EQ(celda(grd, 0, 2), "D");
        teclear(grd, "--");
        EXPECT_EQ(celda(grd, 0, 2), "B");
        teclear(grd, "pm1*");
        EXPECT_EQ(grd.currentRow(), 0) << "letters never search";
        QTest::keyClick(&grd, Qt::Key_Delete);
        EXPECT_EQ(celda(grd, 0, 2), "");
        teclear(grd, "X ");
        EXPECT_EQ(celda(grd, 0, 2), "");
    });
}

TEST_F(EdiExcTest, CarriesTheLettersDownWithEnterWithoutAccepting) {
    manejar(d, cfg, [&] {
        pulsarCelda(grd, 2, 1);
        QTest::keyClick(&grd, Qt::Key_Return);
        EXPECT_TRUE(d.isVisible());
        EXPECT_EQ(grd.currentRow(), 3);
        EXPECT_EQ(celda(grd, 3, 2), "C");
        pulsarCelda(grd, 7, 1);
        QTest::keyClick(&grd, Qt::Key_Enter);
        EXPECT_EQ(grd.currentRow(), 0);
        EXPECT_EQ(celda(grd, 0, 2), "H");
        pulsarCelda(grd, 5, 0);
        QTest::keyClick(&grd, Qt::Key_Return);
        EXPECT_TRUE(d.isVisible());
        EXPECT_EQ(grd.currentRow(), 5) << "an unchecked row ignores the keyboard";
    });
}

TEST_F(EdiExcTest, TellsEachFailureAndStaysOpen) {
    EXPECT_FALSE(manejar(d, cfg, [&] {
        const auto esperar = [&](const std::string& mensaje) {
            pulsar(d, "Acepto");
            ASSERT_FALSE(plataforma.mensajes.empty());
            EXPECT_EQ(plataforma.mensajes.back(), mensaje);
            EXPECT_TRUE(d.isVisible());
        };
        escribir(d, "txLibro", "Pesadas.xls");
        esperar("La carpeta especificada no existe");
        escribir(d, "txLibro", QString::fromStdString((carpeta / "Pesadas.XLS").string()));
        esperar("El nombre del Fichero es incorrecto");
        escribir(d, "txLibro", QString::fromStdString((carpeta / "Pesadas.xls").string()));
        lst.setEditText("Hoja1");
        esperar("El nombre de la Hoja es incorrecto");
        lst.setEditText("Hoja2");
        pulsarCelda(grd, 0, 1);
        QTest::keyClick(&grd, Qt::Key_Delete);
        esperar("Hay columnas de campo sin especificar");
        teclear(grd, "B");
        esperar("Hay columnas de campo repetidas");
    }));
    EXPECT_EQ(plataforma.mensajes.size(), 5U);
    EXPECT_EQ(cfg.HojaExcel(), "Pesadas");
}

TEST_F(EdiExcTest, StoresWhatWasEdited) {
    EXPECT_TRUE(manejar(d, cfg, [&] {
        escribir(d, "txLibro", QString::fromStdString((carpeta / "Otro.xls").string()));
        lst.lineEdit()->selectAll();
        QTest::keyClicks(lst.lineEdit(), "pes");
        pulsarCelda(grd, 7, 1);
        teclear(grd, "ZZ");
        lst.setFocus();
        QTest::keyClick(lst.lineEdit(), Qt::Key_Return);
        EXPECT_FALSE(d.isVisible());
    }));
    EXPECT_EQ(cfg.LibroExcel(), (carpeta / "Otro.xls").string());
    EXPECT_EQ(cfg.HojaExcel(), "pes");
    EXPECT_EQ(cfg.ColumnaExcel(7), 702);
    EXPECT_FALSE(std::filesystem::exists(carpeta / "bnDX5.ini"));
}

TEST_F(EdiExcTest, StoresNothingWhenCancelled) {
    EXPECT_FALSE(manejar(d, cfg, [&] {
        pulsarCelda(grd, 0, 0);
        lst.setEditText("Otra");
        pulsar(d, "Cancelo");
    }));
    EXPECT_EQ(cfg.ColumnaExcel(0), 1);
    EXPECT_EQ(cfg.HojaExcel(), "Pesadas");
    EXPECT_FALSE(manejar(d, cfg, [&] { QTest::keyClick(&grd, Qt::Key_Escape); }));
}

TEST_F(EdiExcTest, ListsTheSheetsOfTheBook) {
    ponerLibro(plataforma.excel, cfg.LibroExcel(), {"Hoja2", "Otra"});
    manejar(d, cfg, [&] {
        EXPECT_EQ(lista(), (std::vector<std::string>{"Hoja2", "Otra"}));
        EXPECT_EQ(lst.currentText(), "Pesadas");
    });
    EXPECT_EQ(plataforma.excel.instanciasAbiertas, 0);
}

TEST_F(EdiExcTest, ListsTheSheetsOfTheBookLookedFor) {
    const std::string otro = (carpeta / "Otro.xls").string();
    ponerLibro(plataforma.excel, otro, {"Z"});
    QString preguntado;
    d.elegirFichero() = [&](const QString& actual) {
        preguntado = actual;
        return QString::fromStdString(otro);
    };
    manejar(d, cfg, [&] {
        EXPECT_TRUE(lista().empty());
        lst.setEditText("a medias");
        pulsar(d, "cmdLibro");
        EXPECT_EQ(preguntado.toStdString(), cfg.LibroExcel());
        EXPECT_EQ(control<QLineEdit>(d, "txLibro").text().toStdString(), otro);
        EXPECT_EQ(lista(), (std::vector<std::string>{"Z"}));
        EXPECT_EQ(lst.currentText(), "a medias");
        d.elegirFichero() = [](const QString&) { return QString(); };
        pulsar(d, "cmdLibro");
        EXPECT_EQ(control<QLineEdit>(d, "txLibro").text().toStdString(), otro);
    });
}

TEST_F(EdiExcTest, LeavesTheListAloneWithoutASpreadsheetApplication) {
    plataforma.excel.errorAlArrancar = "no";
    manejar(d, cfg, [&] { EXPECT_TRUE(lista().empty()); });
    EXPECT_TRUE(plataforma.mensajes.empty());
}

TEST_F(EdiExcTest, GoesThroughItsControlsInTheOrderTheyAreSeen) {
    manejar(d, cfg, [&] {
        const std::vector<std::string> orden = {"txLibro", "cmdLibro", "lstHoja",
                                                "grd",     "Acepto",   "Cancelo"};
        EXPECT_EQ(prueba::recorridoConTab(d, Qt::Key_Tab), orden);
    });
}

}  // namespace
}  // namespace bn
