// SPDX-License-Identifier: MIT
#include "destinations/EdiExc.h"
#include "destinations/EdiTxt.h"
#include "link/EdiCom.h"
#include "tests/ventanas/VentanaPrincipalDePrueba.h"

namespace bn {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

/// What the window's controls do.
class fDescargaControles : public VentanaPrincipalDePrueba {
 protected:
    std::string enLaCarpeta(const char* nombre) const { return ficheros::aTexto(carpeta / nombre); }
    QCheckBox& casilla(const char* nombre) const { return control<QCheckBox>(nombre); }
};

TEST_F(fDescargaControles, CaptionsDescribeThePortAndTheDestinations) {
    configurar("30;False", {"Canal=3", "Param=19200,E,7,2", "Caracteres=40;41;0;5"});
    abrir();
    EXPECT_EQ(rotulo("lbCanal"), "Canal: 3  19200,E,7,2   CI:40   CF:41");
    EXPECT_THAT(rotulo("lbExcel"), StartsWith("Hoja Excel:    " + enLaCarpeta("Pesadas.xls")));
    EXPECT_THAT(rotulo("lbTexto"), StartsWith("Texto plano:  "));
    EXPECT_EQ(rotulo("lbSeg"), "30");
}

TEST_F(fDescargaControles, ChecksShowTheSettings) {
    configurar("30;False", {"[Excel]", "Uso=True", "[Texto]", "Uso=False"});
    plataforma.arranque = true;
    abrir();
    EXPECT_TRUE(casilla("ckXcel").isChecked());
    EXPECT_FALSE(casilla("ckTxto").isChecked());
    EXPECT_TRUE(casilla("ckInicio").isChecked());
    EXPECT_FALSE(casilla("ckMini").isChecked());
    for (const char* nombre : {"vXcel", "cmdXcel"}) EXPECT_TRUE(sePuede(nombre)) << nombre;
    for (const char* nombre : {"vTxto", "cmdTxto"}) EXPECT_FALSE(sePuede(nombre)) << nombre;
    EXPECT_FALSE(seVe("frNoXcel"));
}

TEST_F(fDescargaControles, SwitchingADestinationStoresItAndItsButtonsFollow) {
    configurar("0;False", {"[Excel]", "Uso=True", "[Texto]", "Uso=False"});
    abrir();
    pulsar("ckXcel");
    EXPECT_FALSE(sePuede("vXcel"));
    EXPECT_FALSE(sePuede("cmdXcel"));
    EXPECT_FALSE(control<QAction>("mnExcel").isEnabled());
    EXPECT_THAT(ini(), HasSubstr("[Excel]\r\nUso=False\r\n"));
    pulsar("ckTxto");
    EXPECT_TRUE(sePuede("vTxto"));
    EXPECT_TRUE(sePuede("cmdTxto"));
    EXPECT_TRUE(control<QAction>("MnTexto").isEnabled());
    EXPECT_THAT(ini(), HasSubstr("[Texto]\r\nUso=True\r\n"));
    EXPECT_THAT(rotulo("lbTexto"), HasSubstr("Pesadas.txt"));
    pulsar("ckXcel");
    pulsar("ckTxto");
    EXPECT_TRUE(sePuede("cmdXcel"));
    EXPECT_FALSE(sePuede("cmdTxto"));
    EXPECT_THAT(ini(), HasSubstr("[Excel]\r\nUso=True\r\n"));
    EXPECT_THAT(ini(), HasSubstr("[Texto]\r\nUso=False\r\n"));
}

TEST_F(fDescargaControles, WithoutASpreadsheetItsControlsGiveWayToANotice) {
    configurar("0;False", {"[Excel]", "Uso=True"});
    plataforma.motor = "ninguno";
    abrir();
    EXPECT_TRUE(seVe("frNoXcel"));
    EXPECT_EQ(control("frNoXcel").findChild<QLabel*>()->text().toStdString(),
              "Este equipo no dispone de MS Excel (R)");
    for (const char* nombre : {"ckXcel", "lbExcel", "vXcel", "cmdXcel"}) {
        EXPECT_FALSE(seVe(nombre)) << nombre;
        EXPECT_FALSE(sePuede(nombre)) << nombre;
    }
    EXPECT_FALSE(casilla("ckXcel").isChecked());
    EXPECT_FALSE(control<QAction>("mnExcel").isEnabled());
    ventana.reset();
    EXPECT_FALSE(bn::Setup(plataforma).UsoExcel()) << "stored";
}

TEST_F(fDescargaControles, ViewingOpensTheDocuments) {
    configurar("0;False", {"[Excel]", "Uso=True", "Libro=/libros/a.xls", "[Texto]", "Uso=True",
                           "Destino=/textos/b.txt"});
    abrir();
    pulsar("vXcel");
    pulsar("vTxto");
    pulsar("imgLink");
    ASSERT_THAT(plataforma.abiertos, SizeIs(3));
    EXPECT_EQ(plataforma.abiertos[0], "/libros/a.xls");
    EXPECT_EQ(plataforma.abiertos[1], "/textos/b.txt");
    EXPECT_THAT(plataforma.abiertos[2], StartsWith("http"));
    EXPECT_THAT(plataforma.mensajes, IsEmpty());
}

TEST_F(fDescargaControles, OnlyAMissingDocumentIsTold) {
    configurar("0;False", {"[Excel]", "Uso=True", "Libro=/libros/a.xls", "[Texto]", "Uso=True",
                           "Destino=/textos/b.txt"});
    abrir();
    plataforma.respuestaAbrir = 2;
    pulsar("vXcel");
    pulsar("vTxto");
    pulsar("imgLink");
    EXPECT_THAT(plataforma.mensajes, ElementsAre("No existe el fichero '/libros/a.xls' ",
                                                 "No existe el fichero '/textos/b.txt' "));
    for (const int32_t otra : {0, 3, 5, 31, 32, 33}) {
        plataforma.respuestaAbrir = otra;
        pulsar("vXcel");
        pulsar("vTxto");
    }
    EXPECT_THAT(plataforma.mensajes, SizeIs(2));
}

TEST_F(fDescargaControles, StartingHiddenIsStored) {
    configurar("30;False");
    abrir();
    pulsar("ckMini");
    EXPECT_THAT(ini(), HasSubstr("Autom=30;True\r\n"));
    pulsar("ckMini");
    EXPECT_THAT(ini(), HasSubstr("Autom=30;False\r\n"));
}

TEST_F(fDescargaControles, StartsHiddenWhenTheSettingsWantIt) {
    configurar("30;True");
    ventana = std::make_unique<fDescarga>(plataforma);
    ventana->presentar();
    EXPECT_TRUE(casilla("ckMini").isChecked());
    EXPECT_TRUE(!ventana->isVisible() || ventana->isMinimized());
    ventana->volverAVer();
    EXPECT_TRUE(ventana->isVisible());
    EXPECT_FALSE(ventana->isMinimized());
}

TEST_F(fDescargaControles, StartingAtLogonFollowsItsCheck) {
    abrir();
    pulsar("ckInicio");
    EXPECT_TRUE(plataforma.arranque);
    pulsar("ckInicio");
    EXPECT_FALSE(plataforma.arranque);
}

TEST_F(fDescargaControles, StartAtLogonThatCannotBeChangedIsToldAndShownAsItIs) {
    abrir();
    plataforma.errorEnArranque = "Inicio de sesión: acceso denegado";
    pulsar("ckInicio");
    EXPECT_FALSE(casilla("ckInicio").isChecked());
    EXPECT_THAT(plataforma.mensajes, ElementsAre(HasSubstr("acceso denegado"))) << "told once";
    plataforma.errorEnArranque.clear();
    pulsar("ckInicio");
    EXPECT_TRUE(plataforma.arranque);
    plataforma.errorEnArranque = "Inicio de sesión: acceso denegado";
    pulsar("ckInicio");
    EXPECT_TRUE(casilla("ckInicio").isChecked()) << "still starts at logon";
    EXPECT_THAT(plataforma.mensajes, SizeIs(2));
}

TEST_F(fDescargaControles, HidingWithoutANotificationAreaMinimises) {
    abrir();
    ASSERT_FALSE(QSystemTrayIcon::isSystemTrayAvailable()) << "not on this platform";
    pulsar("cmdMini");
    EXPECT_TRUE(ventana->isMinimized());
    EXPECT_TRUE(ventana->isVisible()) << "on the task bar, from where it can be brought back";
    elegir("mnVerEllo");
    EXPECT_FALSE(ventana->isMinimized());
    EXPECT_TRUE(ventana->isVisible());
}

TEST_F(fDescargaControles, ClosingEndsTheProgram) {
    for (const bool porElMenu : {false, true}) {
        abrir();
        bool vencido = false;
        QTimer::singleShot(0, ventana.get(), [&] {
            if (porElMenu) {
                elegir("mnCerrar");
            } else {
                pulsar("cmdCerr");
            }
        });
        QTimer::singleShot(5000, ventana.get(), [&] {
            vencido = true;
            QCoreApplication::exit(1);
        });
        EXPECT_EQ(QApplication::exec(), 0);
        EXPECT_FALSE(vencido);
        EXPECT_FALSE(ventana->isVisible());
        ventana.reset();
    }
}

TEST_F(fDescargaControles, ClosingWritesTheSettings) {
    abrir();
    ASSERT_FALSE(std::filesystem::exists(carpeta / "bnDX5.ini"));
    ventana.reset();
    EXPECT_THAT(ini(), HasSubstr("[General]\r\nCanal=1\r\n"));
}

TEST_F(fDescargaControles, TheCommunicationDialogHoldsTheCountdownWhileItIsOpen) {
    configurar("30;False");
    abrir();
    segundos(4);
    enDialogo<EdiCom>([&](EdiCom& d) {
        EXPECT_EQ(rotulo("lbSeg"), "(retenida)");
        segundos(100);
        prueba::escribir(d, "txCan", "7");
        prueba::pulsar(d, "Cancelo");
    });
    pulsar("cmdCom");
    ASSERT_EQ(dialogos, 1);
    EXPECT_EQ(rotulo("lbSeg"), "26") << "goes on where it was";
    EXPECT_THAT(rotulo("lbCanal"), StartsWith("Canal: 1 "));
    EXPECT_THAT(ini(), Not(HasSubstr("Canal=7")));
}

TEST_F(fDescargaControles, AHeldCountdownStaysHeldAfterACancelledDialog) {
    configurar("30;False");
    abrir();
    pulsarEtiqueta("lbAuto");
    enDialogo<EdiCom>([&](EdiCom& d) { prueba::pulsar(d, "Cancelo"); });
    elegir("MnComunica");
    ASSERT_EQ(dialogos, 1);
    EXPECT_EQ(rotulo("lbSeg"), "(retenida)");
}

TEST_F(fDescargaControles, AHeldCountdownStaysHeldAfterAnAcceptedDialog) {
    configurar("30;False");
    abrir();
    pulsarEtiqueta("lbAuto");
    enDialogo<EdiCom>([&](EdiCom& d) {
        prueba::escribir(d, "txAutom", "45");
        prueba::pulsar(d, "Acepto");
    });
    elegir("MnComunica");
    EXPECT_EQ(rotulo("lbSeg"), "(retenida)");
    segundos(100);
    EXPECT_FALSE(seVe("lbFase1"));
    enDialogo<EdiCom>([&](EdiCom& d) {
        prueba::pulsar(d, "ckAutom");
        prueba::pulsar(d, "Acepto");
    });
    elegir("MnComunica");
    EXPECT_EQ(rotulo("lbSeg"), "(deshabi.)") << "there is nothing left to hold";
    ASSERT_EQ(dialogos, 2);
}

TEST_F(fDescargaControles, AnAcceptedCommunicationDialogIsStoredAndShown) {
    configurar("30;False");
    abrir();
    enDialogo<EdiCom>([&](EdiCom& d) {
        prueba::escribir(d, "txCan", "7");
        prueba::escribir(d, "txAutom", "45");
        prueba::pulsar(d, "Acepto");
    });
    elegir("MnComunica");
    ASSERT_EQ(dialogos, 1);
    EXPECT_THAT(ini(), HasSubstr("Canal=7\r\n"));
    EXPECT_THAT(ini(), HasSubstr("Autom=45;False\r\n"));
    EXPECT_THAT(rotulo("lbCanal"), StartsWith("Canal: 7  "));
    EXPECT_EQ(rotulo("lbSeg"), "45");
}

TEST_F(fDescargaControles, SwitchingAutomaticDownloadsOffDisablesTheCountdown) {
    configurar("30;False");
    abrir();
    enDialogo<EdiCom>([&](EdiCom& d) {
        prueba::pulsar(d, "ckAutom");
        prueba::pulsar(d, "Acepto");
    });
    pulsar("cmdCom");
    ASSERT_EQ(dialogos, 1);
    EXPECT_EQ(rotulo("lbSeg"), "(deshabi.)");
    EXPECT_THAT(ini(), HasSubstr("Autom=0;False\r\n"));
}

TEST_F(fDescargaControles, APeriodThatIsTooLongIsToldAndTheWindowGoesOn) {
    configurar("30;False");
    abrir();
    enDialogo<EdiCom>([&](EdiCom& d) {
        prueba::escribir(d, "txCan", "7");
        prueba::escribir(d, "txAutom", "40000");
        prueba::pulsar(d, "Acepto");
    });
    pulsar("cmdCom");
    QApplication::processEvents();
    ASSERT_EQ(dialogos, 1);
    ASSERT_THAT(plataforma.mensajes, SizeIs(1));
    EXPECT_THAT(plataforma.mensajes[0], HasSubstr("40000"));
    EXPECT_THAT(rotulo("lbCanal"), StartsWith("Canal: 7  "));
    EXPECT_THAT(ini(), HasSubstr("Canal=7\r\n"));
    EXPECT_EQ(rotulo("lbSeg"), "30");
    descargar(0);
    EXPECT_EQ(rotulo("lbResulBien"), "No se han recibido pesadas");
}

TEST_F(fDescargaControles, TheSpreadsheetDialogIsStoredOnlyWhenAccepted) {
    configurar("0;False", {"[Excel]", "Uso=True"});
    abrir();
    for (const bool acepta : {false, true}) {
        enDialogo<EdiExc>([&](EdiExc& d) {
            prueba::control<QComboBox>(d, "lstHoja").setEditText("Camiones");
            prueba::pulsar(d, acepta ? "Acepto" : "Cancelo");
        });
        if (acepta) {
            elegir("mnExcel");
        } else {
            pulsar("cmdXcel");
        }
        EXPECT_EQ(ini().find("Camiones") != std::string::npos, acepta);
        EXPECT_EQ(rotulo("lbExcel").find("Camiones") != std::string::npos, acepta);
    }
    EXPECT_EQ(dialogos, 2);
}

TEST_F(fDescargaControles, TheTextDialogIsStoredOnlyWhenAccepted) {
    configurar("0;False", {"[Texto]", "Uso=True"});
    abrir();
    for (const bool acepta : {false, true}) {
        enDialogo<EdiTxt>([&](EdiTxt& d) {
            prueba::escribir(d, "txLibro", QString::fromStdString(enLaCarpeta("Camiones.txt")));
            prueba::pulsar(d, acepta ? "Acepto" : "Cancelo");
        });
        if (acepta) {
            elegir("MnTexto");
        } else {
            pulsar("cmdTxto");
        }
        EXPECT_EQ(ini().find("Camiones.txt") != std::string::npos, acepta);
        EXPECT_EQ(rotulo("lbTexto").find("Camiones.txt") != std::string::npos, acepta);
    }
    EXPECT_EQ(dialogos, 2);
}

TEST_F(fDescargaControles, TheMenuDownloadsAsTheButtonDoes) {
    soloTexto();
    abrir();
    elegir("mnDescarga");
    EXPECT_EQ(plataforma.puerto().enviado, prueba::kAck);
    EXPECT_TRUE(seVe("lbFase1"));
}

TEST_F(fDescargaControles, SettingsThatCannotBeUnderstoodStopTheStart) {
    configurar("30;False", {"TimeOut=99999999999;4"});
    const std::string antes = ini();
    try {
        const fDescarga imposible(plataforma);
        FAIL() << "started";
    } catch (const std::exception& error) {
        EXPECT_THAT(error.what(), HasSubstr("bnDX5.ini"));
        EXPECT_THAT(error.what(), HasSubstr("99999999999"));
    }
    EXPECT_EQ(ini(), antes) << "left for somebody to mend";
}

}  // namespace
}  // namespace bn
