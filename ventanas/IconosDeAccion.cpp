// SPDX-License-Identifier: MIT
#include "ventanas/IconosDeAccion.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <cmath>
#include <functional>
#include <numbers>

namespace bn::iconos {

namespace {

constexpr double kLado = 16.0;  // the drawings' own units
constexpr QColor kTinta{45, 66, 89};
constexpr QColor kTenue{176, 184, 193};

using Dibujo = std::function<void(QPainter&)>;

QPixmap pintar(int lado, const QColor& color, const Dibujo& dibujo) {
    QPixmap imagen(lado, lado);
    imagen.fill(Qt::transparent);
    QPainter pintor(&imagen);
    pintor.setRenderHint(QPainter::Antialiasing);
    pintor.scale(lado / kLado, lado / kLado);
    pintor.setPen(QPen(color, 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    dibujo(pintor);
    return imagen;
}

QIcon icono(const Dibujo& dibujo) {
    QIcon resultado;
    for (const int lado : {16, 24, 32, 48, 64}) {
        resultado.addPixmap(pintar(lado, kTinta, dibujo), QIcon::Normal);
        resultado.addPixmap(pintar(lado, kTenue, dibujo), QIcon::Disabled);
    }
    return resultado;
}

}  // namespace

QIcon ajustes() {
    return icono([](QPainter& pintor) {
        pintor.drawEllipse(QPointF(8, 8), 2.1, 2.1);
        pintor.drawEllipse(QPointF(8, 8), 4.4, 4.4);
        for (int diente = 0; diente < 8; ++diente) {
            const double angulo = diente * std::numbers::pi / 4;
            const QPointF hacia(std::cos(angulo), std::sin(angulo));
            pintor.drawLine(QPointF(8, 8) + hacia * 4.8, QPointF(8, 8) + hacia * 6.6);
        }
    });
}

QIcon ver() {
    return icono([](QPainter& pintor) {
        QPainterPath ojo(QPointF(1.5, 8));
        ojo.quadTo(QPointF(8, 1.2), QPointF(14.5, 8));
        ojo.quadTo(QPointF(8, 14.8), QPointF(1.5, 8));
        pintor.drawPath(ojo);
        pintor.setBrush(pintor.pen().color());
        pintor.drawEllipse(QPointF(8, 8), 1.7, 1.7);
    });
}

QIcon enlace() {
    return icono([](QPainter& pintor) {
        pintor.drawEllipse(QPointF(8, 8), 6, 6);
        pintor.drawEllipse(QPointF(8, 8), 2.6, 6);
        pintor.drawLine(QPointF(2, 8), QPointF(14, 8));
    });
}

}  // namespace bn::iconos
