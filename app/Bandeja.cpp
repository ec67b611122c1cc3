// SPDX-License-Identifier: MIT
#include "app/Bandeja.h"

#include <QApplication>
#include <QCursor>

namespace bn {

Bandeja::Bandeja(const QIcon& gancho, QMenu& menu) : icono_(gancho), menu_(menu) {
    icono_.setToolTip(QStringLiteral("Indicador Balnor DX5"));
    icono_.setContextMenu(&menu);
    espera_.setSingleShot(true);
    QObject::connect(&espera_, &QTimer::timeout, &espera_, [this] { menu_.popup(QCursor::pos()); });
    QObject::connect(&icono_, &QSystemTrayIcon::activated, &icono_,
                     [this](QSystemTrayIcon::ActivationReason motivo) { mSys_MouseDown(motivo); });
}

bool Bandeja::disponible() { return QSystemTrayIcon::isSystemTrayAvailable(); }

void Bandeja::poner() {
    if (disponible()) icono_.show();
}

void Bandeja::quitar() { icono_.hide(); }

void Bandeja::avisar(const QString& titulo, const QString& texto) {
    if (icono_.isVisible()) icono_.showMessage(titulo, texto, QSystemTrayIcon::Warning);
}

void Bandeja::mSys_MouseDown(QSystemTrayIcon::ActivationReason motivo) {
    switch (motivo) {
        case QSystemTrayIcon::DoubleClick:
            espera_.stop();
            DblClick();
            break;
        case QSystemTrayIcon::Trigger:
        case QSystemTrayIcon::MiddleClick:
            espera_.start(QApplication::doubleClickInterval());
            break;
        default:
            break;  // the right button brings the menu up by itself
    }
}

}  // namespace bn
