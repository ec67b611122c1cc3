// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string_view>

namespace bn {

/// The date-time that the indicator prints: "d/m/y h:m[:s]", one or two digits each, year of two
/// (00 to 29 are 20xx) or four digits, separators "/", "-" or "."; either half may be missing. Day
/// comes before month, unless only the other order is possible. Days since 30 December 1899;
/// nothing when it is not a real date and time.
std::optional<double> reconocerFecha(std::string_view texto);

}  // namespace bn
