// SPDX-License-Identifier: MIT
#include "ventanas/TeclasNumericas.h"

#include <QKeyEvent>
#include <utility>

#include "config/UtilTexto.h"

namespace bn {

TeclasNumericas::TeclasNumericas(QLineEdit& caja, std::function<bool()> activo)
    : QObject(&caja), activo_(std::move(activo)) {
    caja.installEventFilter(this);
}

bool TeclasNumericas::eventFilter(QObject* objeto, QEvent* evento) {
    if (evento->type() == QEvent::KeyPress && (!activo_ || activo_())) {
        const auto* tecla = static_cast<QKeyEvent*>(evento);
        const auto orden = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
        const auto codigos = tecla->text().toUcs4();
        // The Delete key's own character lies above the control keys.
        if (!(tecla->modifiers() & orden) && tecla->key() != Qt::Key_Delete && !codigos.isEmpty() &&
            !utiltexto::teclaNumerica(codigos.front())) {
            return true;
        }
    }
    return QObject::eventFilter(objeto, evento);
}

}  // namespace bn
