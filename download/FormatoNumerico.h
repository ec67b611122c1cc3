// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "download/FormatoDecimal.h"

namespace bn::formato {

/// Formats a number with a numeric picture of one to four sections: all (or positive), negative,
/// zero, nothing. A missing section gives way to the first one; an empty first one shows the number
/// with no format. What rounds to zero is shown as a zero, never as "-0".
std::string formatearNumero(const Decimal& valor, std::string_view formato);

/// The fourth section, that of "nothing"; empty when there is none.
std::string formatearNada(std::string_view formato);

}  // namespace bn::formato
