// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "destinations/xls/formula/Contexto.h"

namespace bn::xls {

/// The tokens of a formula in English R1C1 notation, leading "=" included, for a FORMULA record at
/// that cell. Throws excel::ErrorExcel, in Spanish, for whatever cannot be compiled; the number of
/// a sheet that it asked the context for before may then have been added to the workbook.
Rgce compilar(std::string_view formulaR1C1, PosicionCelda celda, ContextoFormula& contexto);

/// The tokens of a defined name's RefersTo text (A1 notation, leading "=" included) for a NAME
/// record. A reference without a sheet is one into hojaActiva; relative ones count from the first
/// cell. Throws excel::ErrorExcel as compilar does.
Rgce compilarNombre(std::string_view refersTo, const std::string& hojaActiva,
                    ContextoFormula& contexto);

}  // namespace bn::xls
