// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <span>

#include "destinations/xls/formula/Contexto.h"

namespace bn::xls {

/// The length of the first token of rgce, its identifier included; 0 when the token is unknown, or
/// does not fit into the bytes there are.
size_t longitudDeToken(std::span<const uint8_t> rgce);

/// Shows every token, with its offset, to visitar until that answers false. Answers true when the
/// tokens filled the bytes exactly and none was refused.
bool recorrerTokens(std::span<const uint8_t> rgce,
                    const std::function<bool(size_t, std::span<const uint8_t>)>& visitar);

/// The cell before the SHRFMLA, ARRAY or TABLE record that a formula made only of PtgExp or PtgTbl
/// hands over to; nothing for any other formula.
std::optional<PosicionCelda> anclaCompartida(std::span<const uint8_t> rgce);

/// The tokens that stand for "see the record behind that cell" (PtgExp).
Rgce referirAAncla(PosicionCelda ancla);

}  // namespace bn::xls
