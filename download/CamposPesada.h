// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "destinations/excel/Variante.h"
#include "link/pesaDX5.h"

namespace bn {

/// The value of a field of a weighing (CampoPesada), with its own type; the plate as it came over
/// the line, Windows-1252.
Variante valorDeCampo(const pesaDX5& pesada, int32_t campo);

/// Numbers stand at the right of their width in the text line, the others at the left.
bool esCampoNumerico(int32_t campo);

}  // namespace bn
