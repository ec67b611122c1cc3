// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>
#include <QMenu>
#include <QSystemTrayIcon>
#include <QTimer>

#include "platform/Evento.h"

namespace bn {

/// The icon in the notification area. A desktop without one is told by disponible: everything else
/// then does nothing.
class Bandeja {
 public:
    /// The menu pops up at a press of a mouse button.
    Bandeja(const QIcon& gancho, QMenu& menu);

    static bool disponible();
    /// Puts the icon in place; nothing when it is there.
    void poner();
    void quitar();
    /// A passing notification beside the icon.
    void avisar(const QString& titulo, const QString& texto);

    Evento<> DblClick;

 private:
    void mSys_MouseDown(QSystemTrayIcon::ActivationReason motivo);

    QSystemTrayIcon icono_;
    QMenu& menu_;
    QTimer espera_;  // a first press may be the beginning of a double click
};

}  // namespace bn
