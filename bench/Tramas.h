// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace bn::banco {

inline const std::string kDatosLargos =
    "1234BCD  0000057 00000011 00000022 00000033 0012.50 0100.25 08/01/24 09:15";
inline const std::string kDatosCortos = kDatosLargos.substr(0, 59);
inline const std::string kDatosContador = "0012";

/// The frame as the indicator sends it.
inline std::string trama(const std::string& datos) {
    unsigned char control = 0;
    for (const char c : datos) control = static_cast<unsigned char>(control ^ c);
    return '\x02' + datos + '\x03' + static_cast<char>(control) + "\n\r";
}

}  // namespace bn::banco
