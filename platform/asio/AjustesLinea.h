// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

namespace bn {

/// How the characters travel on a serial line.
struct AjustesLinea {
    int32_t velocidad = 9600;  ///< baud: 300, 600, 1200, 2400, 4800, 9600 or 19200
    char paridad = 'N';        ///< 'N' none, 'E' even, 'O' odd
    int16_t bitsDatos = 8;     ///< 7 or 8
    int16_t bitsParada = 1;    ///< 1 or 2
};

/// Reads "speed,parity,data bits,stop bits" as in "9600,N,8,1", the parity in any letter case and
/// nothing else around them. Throws ErrorPuerto, which quotes the text.
AjustesLinea leerAjustesLinea(const std::string& texto);

}  // namespace bn
