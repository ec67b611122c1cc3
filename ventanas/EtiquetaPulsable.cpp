// SPDX-License-Identifier: MIT
#include "ventanas/EtiquetaPulsable.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFocusRect>

namespace bn {

EtiquetaPulsable::EtiquetaPulsable(const QString& texto, QWidget* padre) : QLabel(texto, padre) {
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::PointingHandCursor);
}

void EtiquetaPulsable::mousePressEvent(QMouseEvent* evento) {
    if (evento->button() == Qt::LeftButton && alPulsar) {
        alPulsar();
    } else {
        QLabel::mousePressEvent(evento);
    }
}

void EtiquetaPulsable::keyPressEvent(QKeyEvent* evento) {
    const int tecla = evento->key();
    if ((tecla == Qt::Key_Space || tecla == Qt::Key_Return || tecla == Qt::Key_Enter) && alPulsar) {
        alPulsar();
    } else {
        QLabel::keyPressEvent(evento);
    }
}

void EtiquetaPulsable::paintEvent(QPaintEvent* evento) {
    QLabel::paintEvent(evento);
    if (!hasFocus()) return;
    QPainter pintor(this);
    pintor.setPen(palette().color(QPalette::Highlight));
    pintor.drawRect(rect().adjusted(0, 0, -1, -1));
}

}  // namespace bn
