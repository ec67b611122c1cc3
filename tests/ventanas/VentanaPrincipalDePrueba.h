// SPDX-License-Identifier: MIT
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QSystemTrayIcon>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/fDescarga.h"
#include "config/Setup.h"
#include "platform/Ficheros.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/PlataformaDePrueba.h"
#include "tests/soporte/TramasDePrueba.h"
#include "tests/ventanas/ManejarDialogo.h"

namespace bn {

/// The main window beside a scripted indicator, in a folder of its own. abrir brings it up; until
/// then the test may write its settings.
class VentanaPrincipalDePrueba : public testing::Test {
 protected:
    VentanaPrincipalDePrueba() { plataforma.documentos = ficheros::aTexto(carpeta.ruta()); }

    /// The settings file: a period, then further lines, a section's name among them.
    void configurar(const std::string& autom, const std::vector<std::string>& lineas = {}) {
        std::string ini = "[General]\r\nAutom=" + autom + "\r\n";
        for (const auto& linea : lineas) ini += linea + "\r\n";
        prueba::escribirFichero(carpeta / "bnDX5.ini", ini);
    }
    void soloTexto(const std::string& autom = "0;False") {
        configurar(autom, {"[Excel]", "Uso=False", "[Texto]", "Uso=True",
                           "Destino=" + ficheros::aTexto(texto)});
    }
    fDescarga& abrir() {
        ventana = std::make_unique<fDescarga>(plataforma);
        ventana->presentar();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(ventana.get()));
        return *ventana;
    }

    template <class Control = QWidget>
    Control& control(const char* nombre) const {
        return prueba::control<Control>(*ventana, nombre);
    }
    void pulsar(const char* boton) { prueba::pulsar(*ventana, boton); }
    void elegir(const char* entrada) { control<QAction>(entrada).trigger(); }
    void pulsarEtiqueta(const char* nombre) {
        QTest::mouseClick(&control<QLabel>(nombre), Qt::LeftButton);
    }
    std::string rotulo(const char* nombre) const {
        return control<QLabel>(nombre).text().toStdString();
    }
    QColor color(const char* nombre) const {
        return control<QLabel>(nombre).palette().color(QPalette::WindowText);
    }
    bool seVe(const char* nombre) const { return control(nombre).isVisible(); }
    bool sePuede(const char* nombre) const { return control(nombre).isEnabled(); }

    /// Does something while the dialog that the next action opens is up, then makes sure it closes.
    template <class Dialogo>
    void enDialogo(std::function<void(Dialogo&)> guion) {
        QTimer::singleShot(0, ventana.get(), [this, guion] {
            auto* dialogo = dynamic_cast<Dialogo*>(QApplication::activeModalWidget());
            ++dialogos;
            EXPECT_NE(dialogo, nullptr);
            if (dialogo == nullptr) return;
            EXPECT_TRUE(QTest::qWaitForWindowActive(dialogo));
            guion(*dialogo);
            if (dialogo->isVisible()) dialogo->reject();
        });
    }

    static std::string pesada(int32_t albaran) {
        prueba::PesadaDePrueba p;
        p.albaran = std::to_string(albaran);
        p.fechaHora = "15/03/23 12:00";
        return prueba::trama(p.datos());
    }
    void recibir(const std::string& bytes) { plataforma.puerto().recibir(bytes); }
    /// The indicator's counter record, which ends the exchange.
    void terminar(int32_t cuantas) {
        recibir(prueba::trama((cuantas < 10 ? "000" : "00") + std::to_string(cuantas)));
    }
    /// A whole download of so many weighings, below 100.
    void descargar(int32_t cuantas) {
        pulsar("cmdDesc");
        for (int32_t i = 1; i <= cuantas; ++i) recibir(pesada(i));
        terminar(cuantas);
    }
    /// The indicator keeps silent until the attempts are used up.
    void callar() { plataforma.avanzar(600 * 4); }
    void segundos(int32_t cuantos) { plataforma.avanzar(1000 * cuantos); }
    std::string ini() const { return prueba::leerFichero(carpeta / "bnDX5.ini"); }

    prueba::CarpetaTemporal carpeta;
    PlataformaDePrueba plataforma{carpeta.ruta()};
    std::filesystem::path texto = carpeta / "Pesadas.txt";
    std::unique_ptr<fDescarga> ventana;
    int dialogos = 0;
};

}  // namespace bn
