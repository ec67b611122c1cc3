// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace bn::xls {

/// The Workbook stream of a workbook that holds one empty worksheet of that name.
std::string flujoDeLibroNuevo(const std::string& hoja);

/// The substream of an empty worksheet.
std::string subflujoDeHojaNueva();

}  // namespace bn::xls
