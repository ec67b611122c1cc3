// SPDX-License-Identifier: MIT
#include "ventanas/EtiquetaElidida.h"

#include <QEvent>
#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>
#include <algorithm>

namespace bn {

namespace {

constexpr int kAnchuraMaxima = 100;  // characters

}  // namespace

/// A window grows with its texts, but not beyond the screen.
QSize EtiquetaElidida::sizeHint() const {
    const QSize entera = QLabel::sizeHint();
    return {std::min(entera.width(), fontMetrics().averageCharWidth() * kAnchuraMaxima),
            entera.height()};
}

QSize EtiquetaElidida::minimumSizeHint() const {
    return {fontMetrics().averageCharWidth() * 8, QLabel::minimumSizeHint().height()};
}

void EtiquetaElidida::paintEvent(QPaintEvent* /*evento*/) {
    QPainter pintor(this);
    const QString visible =
        fontMetrics().elidedText(text(), Qt::ElideMiddle, contentsRect().width());
    style()->drawItemText(&pintor, contentsRect(), static_cast<int>(alignment()), palette(),
                          isEnabled(), visible, foregroundRole());
}

bool EtiquetaElidida::event(QEvent* evento) {
    if (evento->type() != QEvent::ToolTip) return QLabel::event(evento);
    QToolTip::showText(static_cast<QHelpEvent*>(evento)->globalPos(), text(), this);
    return true;
}

}  // namespace bn
