// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QPalette>
#include <QString>

/// The one flat look of the program's windows. Its colours are its own on every desktop, light or
/// dark, so that the colours that mean something always stand on the same ground.
namespace bn::estilo {

inline constexpr QColor kVerde{0, 128, 0};        ///< the phase in progress, a good result
inline constexpr QColor kGris{192, 192, 192};     ///< the phases that are over
inline constexpr QColor kAzul{0, 0, 255};         ///< the countdown while it runs
inline constexpr QColor kApagado{110, 120, 130};  ///< the countdown held or disabled
inline constexpr QColor kRojo{176, 32, 32};       ///< a bad result

QPalette paleta();
QString hoja();

}  // namespace bn::estilo
