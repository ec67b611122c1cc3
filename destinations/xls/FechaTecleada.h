// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string_view>

#include "destinations/xls/EntradaTecleada.h"

namespace bn::xls {

/// A date, a time of day, or both, typed in English (United States) notation: its serial number and
/// number format. Nothing when the text is neither. Parameters as in interpretarEntrada.
std::optional<EntradaNumero> leerFechaHora(std::string_view texto, bool fechas1904, int anioActual);

}  // namespace bn::xls
