// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>

namespace bn {

/// The small pictures of the dialogs.
enum class Icono {
    kMarcado,    ///< a field that is written
    kSinMarcar,  ///< a field that is not
    kCarpeta,
    kPuerto,
};

/// Drawn anew for each size, so that it is sharp at any scale.
QIcon icono(Icono cual);

}  // namespace bn
