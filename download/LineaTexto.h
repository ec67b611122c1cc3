// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <string>

#include "config/Setup.h"
#include "link/pesaDX5.h"

namespace bn {

/// The line of the text destination for one weighing, without its line end: each field formatted,
/// fitted to its width and put at its position. Windows-1252.
std::string lineaTexto(const pesaDX5& pesada, const Setup& cfg);

/// The same under a layout of its own.
std::string lineaTexto(const pesaDX5& pesada,
                       const std::array<CampoDeTexto, kCamposPesada>& campos);

}  // namespace bn
