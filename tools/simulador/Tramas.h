// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace bn::simulador {

inline constexpr char kAck = '\x06';
inline constexpr char kNak = '\x15';
inline constexpr char kRetornoCarro = '\r';
inline constexpr char kAvanceLinea = '\n';

/// The three characters the indicator and the computer have to agree on.
struct Caracteres {
    char inicial = '\x02';
    char final = '\x03';
    char peticion = '\x06';
};

/// The exclusive-or of all data bytes.
char control(std::string_view datos);

/// Start, data, end, check, line feed, carriage return.
std::string trama(std::string_view datos, const Caracteres& caracteres);

/// The data of a counter record: at least so many digits, never more than five.
std::string datosContador(int32_t cuantas, int32_t digitos);

}  // namespace bn::simulador
