// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace bn::formato {

/// A number as the decimal digits its user sees, 0.d1d2d3... times ten to the power of punto. The
/// digits neither begin nor end with a zero; zero has none. Rounding works on these digits, never
/// on the binary value, so 2.675 is a half and not a little less.
struct Decimal {
    bool negativo = false;
    std::ptrdiff_t punto = 0;
    std::string digitos;

    /// True for zero, whatever its sign.
    bool esCero() const { return digitos.empty(); }
    /// Rounds to so many digits after the decimal point, halves away from zero.
    void redondear(std::ptrdiff_t decimales);
};

/// The shortest decimal that reads back as the same number; nothing for infinity and not-a-number.
std::optional<Decimal> aDecimal(double valor);
std::optional<Decimal> aDecimal(float valor);
Decimal aDecimal(int32_t valor);

/// The number a whole text stands for: sign, digits and at most one separator ("," or "."), blanks
/// around ignored; nothing when it is anything else.
std::optional<Decimal> leerDecimal(std::string_view texto);

/// The nearest double.
double aDoble(const Decimal& valor);

/// The number with no format: decimal comma, no thousands, scientific when very large or very
/// small.
std::string textoGeneral(const Decimal& valor);
/// The same; infinity and not-a-number give "INF", "-INF" and "NAN".
std::string textoGeneral(double valor);

}  // namespace bn::formato
