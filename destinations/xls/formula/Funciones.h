// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>

namespace bn::xls {

/// One worksheet function. Classes: 'R' a reference, 'V' a single value, 'A' an array; 'P' (of a
/// parameter) whatever the function itself is asked for, a reference otherwise.
struct Funcion {
    uint16_t numero = 0;
    std::string_view nombre;
    uint8_t minimo = 0;  // arguments
    uint8_t maximo = 0;  // equal to minimo: the file does not store their count
    char resultado = 'V';
    std::string_view parametros;  // the last one holds for all that follow
    bool volatil = false;

    char parametro(size_t i) const {
        return parametros.empty() ? 'V'
                                  : parametros[i < parametros.size() ? i : parametros.size() - 1];
    }
};

/// By its English name in upper case; nullptr when unknown.
const Funcion* buscarFuncion(std::string_view nombre);

/// By its number in the file; nullptr when unknown.
const Funcion* buscarFuncion(uint16_t numero);

inline constexpr uint8_t kMaximoDeArgumentos = 30;
inline constexpr uint16_t kFuncionSi = 1;
inline constexpr uint16_t kFuncionSuma = 4;

}  // namespace bn::xls
