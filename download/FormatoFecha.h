// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace bn::formato {

/// A date or time code: its lower-case letter (0 when there is none; 'a' for the AM/PM family) and
/// how many characters of the picture it takes.
struct Codigo {
    char letra = 0;
    std::size_t largo = 0;
};

/// The longest code at the beginning of the text: "yyy" begins with "yy", "ddddddd" with "dddddd".
Codigo leerCodigo(std::string_view texto);

/// Formats a date serial with a date picture. "m" and "mm" are minutes when the code before them is
/// an hour. Seconds are rounded once, for the whole serial. A serial outside the years 100 to 9999
/// comes out as a plain number.
std::string formatearFecha(double serie, std::string_view formato);

}  // namespace bn::formato
