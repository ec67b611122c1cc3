// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <span>
#include <string>

#include "destinations/xls/formula/Contexto.h"

namespace bn::xls {

/// The English R1C1 text, leading "=" included, of the tokens of a FORMULA or SHRFMLA record as
/// seen from that cell; nothing when they cannot be put into words (the caller then shows
/// kIndescifrable). A formula that is only a PtgExp has its words in the record it points to: see
/// anclaCompartida.
std::optional<std::string> descompilar(std::span<const uint8_t> rgce, PosicionCelda celda,
                                       ContextoFormula& contexto);

/// The RefersTo text (A1 notation, leading "=" included) of the tokens of a NAME record; nothing
/// when they cannot be put into words.
std::optional<std::string> descompilarNombre(std::span<const uint8_t> rgce,
                                             ContextoFormula& contexto);

}  // namespace bn::xls
