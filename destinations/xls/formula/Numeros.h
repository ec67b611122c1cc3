// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace bn::xls {

/// The value of digits with an optional decimal point and an optional exponent ("12", ".5",
/// "1.5E-3"), kept to 15 significant digits as a worksheet does. Nothing when the text is anything
/// else, or the number lies outside what a cell can hold.
std::optional<double> leerNumero(std::string_view texto);

/// A finite number in English notation with 15 significant digits at most, as a formula shows it.
std::string escribirNumero(double valor);

}  // namespace bn::xls
