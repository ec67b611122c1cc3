// SPDX-License-Identifier: MIT
#include "ventanas/MarcoPlano.h"

#include <QApplication>
#include <QEvent>
#include <QMouseEvent>
#include <QWindow>

#include "ventanas/Estilo.h"

namespace bn {

void MarcoPlano::poner(QWidget& ventana) {
    new MarcoPlano(ventana);  // the window is its parent
}

MarcoPlano::MarcoPlano(QWidget& ventana) : QObject(&ventana), ventana_(ventana) {
    ventana.setWindowFlag(Qt::FramelessWindowHint);
    // The whole program's, message boxes included: a window's own palette stops at children with a
    // style sheet, and on a dark desktop these would write white on white.
    QApplication::setPalette(estilo::paleta());
    ventana.setStyleSheet(estilo::hoja());
    for (auto& linea : lineas_) {
        linea = new QFrame(&ventana);
        linea->setObjectName(QStringLiteral("lineaDeBorde"));
    }
    ventana.installEventFilter(this);
    colocarLineas();
}

void MarcoPlano::colocarLineas() {
    const int ancho = ventana_.width();
    const int alto = ventana_.height();
    lineas_[0]->setGeometry(0, 0, ancho, 1);
    lineas_[1]->setGeometry(0, alto - 1, ancho, 1);
    lineas_[2]->setGeometry(0, 0, 1, alto);
    lineas_[3]->setGeometry(ancho - 1, 0, 1, alto);
    for (auto* linea : lineas_) linea->raise();
}

bool MarcoPlano::eventFilter(QObject* objeto, QEvent* evento) {
    if (evento->type() == QEvent::Resize || evento->type() == QEvent::Show) colocarLineas();
    if (arrastrar(evento)) return true;
    return QObject::eventFilter(objeto, evento);
}

/// A press that reaches the window itself was on its background.
bool MarcoPlano::arrastrar(QEvent* evento) {
    switch (evento->type()) {
        case QEvent::MouseButtonPress: {
            const auto* raton = static_cast<QMouseEvent*>(evento);
            if (raton->button() != Qt::LeftButton) return false;
            QWindow* sistema = ventana_.windowHandle();
            if (sistema != nullptr && sistema->startSystemMove()) return true;
            asidero_ = raton->globalPosition().toPoint() - ventana_.pos();
            return true;
        }
        case QEvent::MouseMove:
            if (!asidero_) return false;
            ventana_.move(static_cast<QMouseEvent*>(evento)->globalPosition().toPoint() -
                          *asidero_);
            return true;
        case QEvent::MouseButtonRelease:
            asidero_.reset();
            return false;
        default:
            return false;
    }
}

}  // namespace bn
