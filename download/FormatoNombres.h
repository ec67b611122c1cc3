// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string_view>

#include "download/FormatoPartes.h"

namespace bn::formato {

/// The picture that a named format stands for, and its kind. "General Number" is an empty picture
/// of the kind number.
struct FormatoConNombre {
    Clase clase = Clase::kNumero;
    std::string_view formato;
};

/// Looks a named format up ("General Number", "Short Date"...), in any letter case.
std::optional<FormatoConNombre> buscarNombre(std::string_view nombre);

}  // namespace bn::formato
