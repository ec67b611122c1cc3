// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "destinations/xls/Libro.h"

namespace bn::xls {

/// Adds an empty worksheet behind another sheet, under the first free name "Hoja1", "Hoja2"...
std::shared_ptr<Hoja> anadirHoja(Libro& libro, const Hoja& tras);

/// Throws ErrorExcel when the name is not allowed or taken.
void renombrarHoja(Hoja& hoja, const std::string& nombre);

/// References to the sheet become #REF!. Throws ErrorExcel for the last visible sheet.
void borrarHoja(Hoja& hoja);

}  // namespace bn::xls
