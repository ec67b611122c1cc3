// SPDX-License-Identifier: MIT
#pragma once

#include <QAction>
#include <QMenu>
#include <QWidget>

namespace bn {

/// The pop-up menu of the notification area and of the window's background; nothing of what its
/// entries do. Each carries its member's name as its object name.
struct MenuAcciones {
    /// The menu belongs to the window.
    explicit MenuAcciones(QWidget& ventana);

    QMenu* MnAcciones = nullptr;
    QAction* mnVerEllo = nullptr;
    QAction* mnDescarga = nullptr;
    QAction* MnComunica = nullptr;
    QAction* mnExcel = nullptr;
    QAction* MnTexto = nullptr;
    QAction* mnPend = nullptr;
    QAction* mnDescartar = nullptr;
    QAction* mnCerrar = nullptr;

 private:
    QAction* entrada(const char* nombre, const char* texto);
};

}  // namespace bn
