// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>

/// The small pictures on the main window's buttons, drawn at every size a screen may want.
namespace bn::iconos {

QIcon ajustes();  ///< edit the settings of
QIcon ver();      ///< open for viewing
QIcon enlace();   ///< a web page

}  // namespace bn::iconos
