// SPDX-License-Identifier: MIT
#include "ventanas/Iconos.h"

#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <array>

namespace bn {

namespace {

constexpr qreal kLado = 16;  // all shapes are drawn on a square of 16 by 16
constexpr QColor kTrazo{70, 84, 99};
constexpr QColor kAcento{11, 92, 173};
constexpr QColor kRelleno{255, 213, 122};
constexpr QColor kContorno{166, 118, 22};

void dibujarMarca(QPainter& pintor, bool marcada) {
    const QRectF caja(2.5, 2.5, 11, 11);
    pintor.setPen(QPen(marcada ? kAcento : kTrazo, 1));
    pintor.setBrush(marcada ? kAcento : QColor(Qt::white));
    pintor.drawRoundedRect(caja, 2, 2);
    if (!marcada) return;
    pintor.setPen(QPen(Qt::white, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const std::array<QPointF, 3> trazo = {QPointF(5, 8.2), QPointF(7.2, 10.4), QPointF(11, 5.8)};
    pintor.drawPolyline(trazo.data(), static_cast<int>(trazo.size()));
}

void dibujarCarpeta(QPainter& pintor) {
    QPainterPath forma(QPointF(1.5, 4));
    for (const QPointF punto : {QPointF(6, 4), QPointF(7.5, 5.5), QPointF(14.5, 5.5),
                                QPointF(14.5, 13), QPointF(1.5, 13)}) {
        forma.lineTo(punto);
    }
    forma.closeSubpath();
    pintor.setPen(QPen(kContorno, 1, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    pintor.setBrush(kRelleno);
    pintor.drawPath(forma);
    pintor.drawLine(QPointF(1.5, 7.5), QPointF(14.5, 7.5));
}

/// A nine-pin plug.
void dibujarPuerto(QPainter& pintor) {
    QPainterPath forma(QPointF(1.5, 4.5));
    for (const QPointF punto : {QPointF(14.5, 4.5), QPointF(12.5, 11.5), QPointF(3.5, 11.5)}) {
        forma.lineTo(punto);
    }
    forma.closeSubpath();
    pintor.setPen(QPen(kTrazo, 1.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    pintor.setBrush(Qt::NoBrush);
    pintor.drawPath(forma);
    pintor.setPen(Qt::NoPen);
    pintor.setBrush(kTrazo);
    for (int i = 0; i < 5; ++i) pintor.drawEllipse(QPointF(4 + 2 * i, 6.8), 0.7, 0.7);
    for (int i = 0; i < 4; ++i) pintor.drawEllipse(QPointF(5 + 2 * i, 9.3), 0.7, 0.7);
}

class Motor : public QIconEngine {
 public:
    explicit Motor(Icono cual) : cual_(cual) {}

    QIconEngine* clone() const override { return new Motor(cual_); }  // the icon is its owner

    void paint(QPainter* pintor, const QRect& sitio, QIcon::Mode modo, QIcon::State) override {
        pintor->save();
        pintor->setRenderHint(QPainter::Antialiasing);
        if (modo == QIcon::Disabled) pintor->setOpacity(0.4);
        pintor->translate(sitio.topLeft());
        pintor->scale(sitio.width() / kLado, sitio.height() / kLado);
        dibujar(*pintor);
        pintor->restore();
    }

    QPixmap pixmap(const QSize& medida, QIcon::Mode modo, QIcon::State estado) override {
        QPixmap imagen(medida);
        imagen.fill(Qt::transparent);
        QPainter pintor(&imagen);
        paint(&pintor, QRect({}, medida), modo, estado);
        return imagen;
    }

 private:
    void dibujar(QPainter& pintor) const {
        switch (cual_) {
            case Icono::kMarcado:
                return dibujarMarca(pintor, true);
            case Icono::kSinMarcar:
                return dibujarMarca(pintor, false);
            case Icono::kCarpeta:
                return dibujarCarpeta(pintor);
            case Icono::kPuerto:
                return dibujarPuerto(pintor);
        }
    }

    Icono cual_;
};

}  // namespace

QIcon icono(Icono cual) { return QIcon(new Motor(cual)); }

}  // namespace bn
