// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QLineEdit>
#include <QTableWidget>
#include <QTimer>
#include <QtTest>

namespace bn::prueba {

template <class Control>
Control& control(const QWidget& ventana, const char* nombre) {
    auto* encontrado = ventana.findChild<Control*>(QLatin1String(nombre));
    if (encontrado == nullptr) throw std::logic_error(std::string("no control ") + nombre);
    return *encontrado;
}

/// Opens the dialog, runs the script on it, and cancels it if the script has not closed it: no
/// failed assertion leaves it open.
template <class Dialogo, class Cfg, class Guion>
bool manejar(Dialogo& dialogo, Cfg& cfg, Guion guion) {
    QTimer::singleShot(0, &dialogo, [&] {
        EXPECT_TRUE(QTest::qWaitForWindowActive(&dialogo));
        guion();
        if (dialogo.isVisible()) dialogo.reject();
    });
    return dialogo.Abrir(cfg);
}

inline void pulsar(QWidget& ventana, const char* boton) {
    QTest::mouseClick(&control<QAbstractButton>(ventana, boton), Qt::LeftButton);
}

/// Types characters, any of them: QTest's own keyClicks knows only ASCII.
inline void teclear(QWidget& donde, const QString& texto) {
    for (const QChar letra : texto) {
        if (letra.unicode() < 128) {
            QTest::keyClicks(&donde, letra);
            continue;
        }
        for (const auto tipo : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent evento(tipo, letra.toUpper().unicode(), {}, letra);
            QCoreApplication::sendEvent(&donde, &evento);
        }
    }
}

/// Types over whatever the box holds.
inline void escribir(QWidget& ventana, const char* caja, const QString& texto) {
    auto& linea = control<QLineEdit>(ventana, caja);
    linea.setFocus();
    linea.selectAll();
    QTest::keyClick(&linea, Qt::Key_Delete);
    teclear(linea, texto);
}

inline void pulsarCelda(QTableWidget& grd, int fila, int columna) {
    const QRect sitio = grd.visualItemRect(grd.item(fila, columna));
    QTest::mouseClick(grd.viewport(), Qt::LeftButton, {}, sitio.center());
}

inline std::string celda(const QTableWidget& grd, int fila, int columna) {
    return grd.item(fila, columna)->text().toStdString();
}

/// The names of the controls that Tab goes through, from the one with the focus, once around.
inline std::vector<std::string> recorridoConTab(QWidget& ventana, Qt::Key tecla) {
    std::vector<std::string> nombres;
    QWidget* primero = ventana.focusWidget();
    for (int i = 0; i < 30; ++i) {
        nombres.push_back(ventana.focusWidget()->objectName().toStdString());
        QTest::keyClick(ventana.focusWidget(), tecla);
        if (ventana.focusWidget() == primero) break;
    }
    return nombres;
}

}  // namespace bn::prueba
