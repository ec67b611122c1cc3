// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QMenu>
#include <QPushButton>

#include "link/EdiCom.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/PlataformaDePrueba.h"
#include "tests/ventanas/ManejarDialogo.h"

namespace bn {
namespace {

using prueba::control;
using prueba::escribir;
using prueba::manejar;
using prueba::pulsar;

class EdiComTest : public testing::Test {
 protected:
    std::string texto(const char* caja) const {
        return control<QLineEdit>(d, caja).text().toStdString();
    }

    prueba::CarpetaTemporal carpeta;
    PlataformaDePrueba plataforma{carpeta.ruta()};
    bn::Setup cfg{plataforma};
    EdiCom d{plataforma};
};

TEST_F(EdiComTest, ShowsTheSettingsInItsControls) {
    manejar(d, cfg, [&] {
        EXPECT_EQ(texto("txCan"), "1");
        EXPECT_EQ(texto("txParms"), "9600,N,8,1");
        EXPECT_EQ(texto("txCI"), "2");
        EXPECT_EQ(texto("txCF"), "3");
        EXPECT_EQ(texto("txPet"), "6");
        EXPECT_EQ(texto("txTmO"), "600");
        EXPECT_EQ(texto("txRet"), "4");
        EXPECT_EQ(texto("txAutom"), "30");
        EXPECT_TRUE(control<QCheckBox>(d, "ckAutom").isChecked());
        EXPECT_TRUE(control<QFrame>(d, "frAutom").isVisible());
    });
}

TEST_F(EdiComTest, StoresWhatIsTypedWhenAccepted) {
    EXPECT_TRUE(manejar(d, cfg, [&] {
        escribir(d, "txCan", "16");
        escribir(d, "txParms", "19200,E,7,2");
        escribir(d, "txCI", "A");
        escribir(d, "txCF", "13");
        escribir(d, "txPet", "5");
        escribir(d, "txTmO", "700");
        escribir(d, "txRet", "9");
        escribir(d, "txAutom", "45");
        pulsar(d, "Acepto");
    }));
    EXPECT_EQ(cfg.canal(), 16);
    EXPECT_EQ(cfg.Params(), "19200,E,7,2");
    EXPECT_EQ(cfg.CaracterInicial(), "A");
    EXPECT_EQ(cfg.CaracterFinal(), "\r");
    EXPECT_EQ(cfg.CaracterPeticion(), "\x05");
    EXPECT_EQ(cfg.Timeout(), 700);
    EXPECT_EQ(cfg.MaxRetrys(), 9);
    EXPECT_EQ(cfg.AutoCadaXSegs(), 45);
    EXPECT_TRUE(plataforma.mensajes.empty());
    EXPECT_FALSE(std::filesystem::exists(carpeta / "bnDX5.ini")) << "saving is the caller's";
}

TEST_F(EdiComTest, StoresNothingWhenCancelled) {
    EXPECT_FALSE(manejar(d, cfg, [&] {
        escribir(d, "txCan", "9");
        pulsar(d, "Cancelo");
    }));
    EXPECT_EQ(cfg.canal(), 1);
    EXPECT_FALSE(manejar(d, cfg, [&] {
        EXPECT_EQ(texto("txCan"), "1") << "filled anew";
        escribir(d, "txCan", "9");
        QTest::keyClick(d.focusWidget(), Qt::Key_Escape);
        EXPECT_FALSE(d.isVisible());
    }));
    EXPECT_EQ(cfg.canal(), 1);
}

TEST_F(EdiComTest, AcceptsWithEnterInAField) {
    EXPECT_TRUE(manejar(d, cfg, [&] {
        escribir(d, "txRet", "7");
        QTest::keyClick(d.focusWidget(), Qt::Key_Return);
        EXPECT_FALSE(d.isVisible());
    }));
    EXPECT_EQ(cfg.MaxRetrys(), 7);
}

TEST_F(EdiComTest, TellsEachFailureAndStaysOpenUntilItIsMended) {
    EXPECT_TRUE(manejar(d, cfg, [&] {
        const auto probar = [&](const char* caja, const QString& malo, const std::string& mensaje,
                                const QString& bueno) {
            escribir(d, caja, malo);
            pulsar(d, "Acepto");
            ASSERT_FALSE(plataforma.mensajes.empty()) << caja;
            EXPECT_EQ(plataforma.mensajes.back(), mensaje);
            EXPECT_TRUE(d.isVisible());
            escribir(d, caja, bueno);
        };
        probar("txCan", "17", "El canal indicado es incorrecto", "2");
        probar("txParms", "14400,N,8,1", "La velocidad especificada es incorrecta", "9600,N,8,1");
        probar("txParms", "9600,n,8,1", "Alguno de los parámetros indicados es incorrecto",
               "9600,N,8,1");
        probar("txCI", "AB", "Alguno de los  caracteres especificados es incorrecto", "2");
        probar("txTmO", "32001", "El valor del 'time out' es incorrecto", "600");
        probar("txRet", "33", "El número de 'retrys' es incorrecto", "4");
        probar("txAutom", "0", "El valor de los segundos de descarga automátrica, es incorrecto",
               "30");
        pulsar(d, "Acepto");
    }));
    EXPECT_EQ(plataforma.mensajes.size(), 7U);
    EXPECT_EQ(cfg.canal(), 2);
}

TEST_F(EdiComTest, HidesThePeriodWhileAutomaticDownloadIsOff) {
    EXPECT_TRUE(manejar(d, cfg, [&] {
        auto& ck = control<QCheckBox>(d, "ckAutom");
        auto& fr = control<QFrame>(d, "frAutom");
        ck.setFocus();
        QTest::keyClick(&ck, Qt::Key_Space);
        EXPECT_FALSE(fr.isVisible());
        QTest::keyClick(&ck, Qt::Key_Space);
        EXPECT_TRUE(fr.isVisible());
        QTest::keyClick(&ck, Qt::Key_Space);
        pulsar(d, "Acepto");
    }));
    EXPECT_EQ(cfg.AutoCadaXSegs(), 0);
    manejar(d, cfg, [&] {
        EXPECT_FALSE(control<QFrame>(d, "frAutom").isVisible());
        EXPECT_EQ(texto("txAutom"), "");
    });
}

TEST_F(EdiComTest, TellsAPeriodThatIsTooLongAndStoresTheRest) {
    EXPECT_TRUE(manejar(d, cfg, [&] {
        escribir(d, "txCan", "3");
        escribir(d, "txAutom", "40000");
        pulsar(d, "Acepto");
    }));
    ASSERT_EQ(plataforma.mensajes.size(), 1U);
    EXPECT_NE(plataforma.mensajes.front().find("40000"), std::string::npos);
    EXPECT_EQ(cfg.canal(), 3);
    EXPECT_EQ(cfg.AutoCadaXSegs(), 30);
}

TEST_F(EdiComTest, LetsOnlyDigitsIntoTheNumericFields) {
    manejar(d, cfg, [&] {
        for (const char* caja : {"txCan", "txTmO", "txRet"}) {
            escribir(d, caja, "a1-b.2ñ");
            EXPECT_EQ(texto(caja), "12") << caja;
            QTest::keyClick(&control<QLineEdit>(d, caja), Qt::Key_Backspace);
            EXPECT_EQ(texto(caja), "1") << caja;
        }
    });
}

TEST_F(EdiComTest, GoesThroughItsControlsInTheOrderTheyAreSeen) {
    manejar(d, cfg, [&] {
        const std::vector<std::string> orden = {"txCan",   "cmdPuertos", "txParms", "txCI",
                                                "txCF",    "txPet",      "txTmO",   "txRet",
                                                "ckAutom", "txAutom",    "Acepto",  "Cancelo"};
        EXPECT_EQ(prueba::recorridoConTab(d, Qt::Key_Tab), orden);
    });
}

TEST_F(EdiComTest, PutsTheChannelOfTheDeviceChosen) {
    d.puertos = [] {
        return std::vector<PuertoPresente>{{"/dev/ttyS4", "Puerto serie", 5},
                                           {"/dev/ttyUSB0", "Adaptador", 0}};
    };
    manejar(d, cfg, [&] {
        auto& menu = control<QMenu>(d, "mnPuertos");
        emit menu.aboutToShow();
        ASSERT_EQ(menu.actions().size(), 2);
        EXPECT_TRUE(menu.actions()[0]->text().contains("/dev/ttyS4"));
        EXPECT_FALSE(menu.actions()[1]->isEnabled());
        EXPECT_TRUE(menu.actions()[1]->text().contains("Adaptador"));
        menu.actions()[0]->trigger();
        EXPECT_EQ(texto("txCan"), "5");
    });
}

TEST_F(EdiComTest, SaysThatThereIsNoDevice) {
    d.puertos = [] { return std::vector<PuertoPresente>{}; };
    auto& menu = control<QMenu>(d, "mnPuertos");
    emit menu.aboutToShow();
    ASSERT_EQ(menu.actions().size(), 1);
    EXPECT_FALSE(menu.actions()[0]->isEnabled());
}

TEST_F(EdiComTest, HasNoSystemFrameAndAcceptsByDefault) {
    EXPECT_TRUE(d.windowFlags().testFlag(Qt::FramelessWindowHint));
    EXPECT_TRUE(control<QPushButton>(d, "Acepto").isDefault());
    EXPECT_EQ(d.findChildren<QFrame*>("lineaDeBorde").size(), 4);
}

TEST(EdiComEnEscritorioOscuro, StillWritesDarkOnLight) {
    const QPalette antes = QApplication::palette();
    QApplication::setPalette(
        QPalette(Qt::white, Qt::black, Qt::white, Qt::black, Qt::gray, Qt::white, Qt::black));
    const prueba::CarpetaTemporal carpeta;
    PlataformaDePrueba plataforma(carpeta.ruta());
    EdiCom d(plataforma);
    d.ensurePolished();
    for (const auto* caja : d.findChildren<QLineEdit*>()) {
        EXPECT_LT(caja->palette().color(QPalette::Text).lightness(), 100);
    }
    EXPECT_LT(control<QCheckBox>(d, "ckAutom").palette().color(QPalette::WindowText).lightness(),
              100);
    EXPECT_GT(d.palette().color(QPalette::Window).lightness(), 200);
    QApplication::setPalette(antes);
}

TEST_F(EdiComTest, MovesWhenItsBackgroundIsDragged) {
    manejar(d, cfg, [&] {
        const QPoint antes = d.pos();
        auto& grupo = control<QFrame>(d, "frGrupo");
        QTest::mousePress(&grupo, Qt::LeftButton, {}, QPoint(5, 5));
        QMouseEvent mueve(QEvent::MouseMove, QPointF(25, 15), grupo.mapToGlobal(QPointF(25, 15)),
                          Qt::NoButton, Qt::LeftButton, {});
        QCoreApplication::sendEvent(&grupo, &mueve);
        QTest::mouseRelease(&grupo, Qt::LeftButton, {}, QPoint(25, 15));
        EXPECT_EQ(d.pos(), antes + QPoint(20, 10));
    });
}

}  // namespace
}  // namespace bn
