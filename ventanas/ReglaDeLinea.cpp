// SPDX-License-Identifier: MIT
#include "ventanas/ReglaDeLinea.h"

#include <QFontDatabase>
#include <QPainter>
#include <algorithm>

namespace bn {

namespace {

constexpr int kMargen = 8;
constexpr int kColumnasVisibles = 80;
constexpr int kDecena = 10;
constexpr QColor kCifras{110, 120, 130};
constexpr QColor kRaya{180, 191, 202};
constexpr QColor kTramo{213, 230, 247};

}  // namespace

ReglaDeLinea::ReglaDeLinea(QWidget* padre) : QWidget(padre) {
    setObjectName(QStringLiteral("vistaPrevia"));
    setAccessibleName(QStringLiteral("Vista previa de la línea"));
    QFont letra = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    letra.setPointSizeF(font().pointSizeF());
    setFont(letra);
}

void ReglaDeLinea::mostrar(const QString& linea, int desde, int largo) {
    linea_ = linea;
    desde_ = desde;
    largo_ = largo;
    setAccessibleDescription(linea);
    resize(sizeHint());
    update();
}

int ReglaDeLinea::izquierdaDe(int columna) const {
    return kMargen + (columna - 1) * fontMetrics().horizontalAdvance(QLatin1Char('0'));
}

QSize ReglaDeLinea::sizeHint() const {
    const int columnas = std::max(
        {kColumnasVisibles, static_cast<int>(linea_.size()), largo_ > 0 ? desde_ + largo_ - 1 : 0});
    return {izquierdaDe(columnas + 1) + kMargen, fontMetrics().height() * 3};
}

/// A number every ten columns, a longer tick every five.
void ReglaDeLinea::pintarRegla(QPainter& pintor) const {
    const int alto = fontMetrics().height();
    const int base = alto + alto / 2;
    const int ultima = (width() - 2 * kMargen) / fontMetrics().horizontalAdvance(QLatin1Char('0'));
    for (int columna = 1; columna <= ultima; ++columna) {
        const int ancho = izquierdaDe(columna + 1) - izquierdaDe(columna);
        const int centro = izquierdaDe(columna) + ancho / 2;
        const bool decena = columna % kDecena == 0;
        const int raya = decena ? alto / 2 : columna % (kDecena / 2) == 0 ? alto / 3 : alto / 6;
        pintor.setPen(kRaya);
        pintor.drawLine(centro, base - raya, centro, base);
        if (!decena && columna != 1) continue;
        pintor.setPen(kCifras);
        pintor.drawText(QRect(centro - 2 * ancho, 0, 4 * ancho, alto), Qt::AlignCenter,
                        QString::number(columna));
    }
    pintor.setPen(kRaya);
    pintor.drawLine(kMargen, base, izquierdaDe(ultima + 1), base);
}

void ReglaDeLinea::paintEvent(QPaintEvent* /*evento*/) {
    QPainter pintor(this);
    const int alto = fontMetrics().height();
    const int arriba = alto + alto / 2;
    pintor.fillRect(rect(), palette().color(QPalette::Base));
    if (largo_ > 0) {
        pintor.fillRect(QRect(izquierdaDe(desde_), arriba + 1,
                              izquierdaDe(desde_ + largo_) - izquierdaDe(desde_), height()),
                        kTramo);
    }
    pintarRegla(pintor);
    pintor.setPen(palette().color(QPalette::Text));
    // One by one: no kerning or substituted glyph may shift the columns.
    for (int i = 0; i < linea_.size(); ++i) {
        const int ancho = izquierdaDe(i + 2) - izquierdaDe(i + 1);
        pintor.drawText(QRect(izquierdaDe(i + 1) - ancho, arriba, 3 * ancho, height() - arriba),
                        Qt::AlignCenter, QString(linea_.at(i)));
    }
}

}  // namespace bn
