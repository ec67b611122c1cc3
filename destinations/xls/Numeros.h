// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>

namespace bn::xls {

/// The short form of a number, where it holds the number exactly.
std::optional<uint32_t> aRk(double numero);

/// The number of a short form.
double deRk(uint32_t rk);

/// A single-precision number as the decimal number a person would read it as: 12.35f gives 12.35.
double comoDecimal(float numero);

}  // namespace bn::xls
