// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <span>

#include "destinations/xls/formula/Contexto.h"

namespace bn::xls {

/// A FORMULA record's tokens for a copy of the cell that many rows and columns further on: relative
/// references move along, what leaves the sheet becomes #REF!. Nothing when the tokens are not
/// understood as a whole, or hand over to another record (PtgExp, PtgTbl).
std::optional<Rgce> aplicarDesplazamiento(std::span<const uint8_t> rgce, int32_t filas,
                                          int32_t columnas);

/// A SHRFMLA record's tokens as the ones of a FORMULA record of its own in that cell. Nothing when
/// they are not understood as a whole.
std::optional<Rgce> descompartir(std::span<const uint8_t> rgce, PosicionCelda celda);

}  // namespace bn::xls
