// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace bn::excel::com {

/// True when the file cannot be written whoever has it open: marked read-only, or not permitted to
/// this user.
bool estaProtegidoContraEscritura(const std::string& libro);

/// Who has a workbook open, by the file that the application keeps beside it meanwhile ("~$" and
/// the workbook's name); "" when there is none, or nothing in it.
std::string usuarioDelLibro(const std::string& libro);

}  // namespace bn::excel::com
