// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <variant>

namespace bn {

/// A date-time as Automation carries it: days since 30 December 1899, the fraction the time of day.
struct FechaOle {
    double dias = 0;
    friend bool operator==(const FechaOle&, const FechaOle&) = default;
};

/// A value on its way to or from a cell. monostate is "nothing"; texts are UTF-8.
using Variante = std::variant<std::monostate, std::string, double, float, int32_t, bool, FechaOle>;

}  // namespace bn
