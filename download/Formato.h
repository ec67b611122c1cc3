// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "destinations/excel/Variante.h"

namespace bn {

/// Formats a value with a picture: numeric, date-time, text or a named format, with Spanish
/// conventions on every machine. Weeks start on Sunday, the first week holds 1 January. Picture,
/// texts and result are Windows-1252. An empty picture gives the value's plain text. Never throws
/// for a strange picture: what is not understood stands for itself.
std::string formatear(const Variante& valor, const std::string& formatoCp1252);

}  // namespace bn
