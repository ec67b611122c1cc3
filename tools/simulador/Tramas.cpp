// SPDX-License-Identifier: MIT
#include "tools/simulador/Tramas.h"

#include <algorithm>
#include <cstddef>

namespace bn::simulador {

char control(std::string_view datos) {
    unsigned suma = 0;
    for (const char c : datos) suma ^= static_cast<unsigned char>(c);
    return static_cast<char>(suma);
}

std::string trama(std::string_view datos, const Caracteres& caracteres) {
    std::string bytes;
    bytes.reserve(datos.size() + 5);
    bytes += caracteres.inicial;
    bytes += datos;
    bytes += caracteres.final;
    bytes += control(datos);
    bytes += kAvanceLinea;  // this order, unusual, is the indicator's
    bytes += kRetornoCarro;
    return bytes;
}

std::string datosContador(int32_t cuantas, int32_t digitos) {
    const std::string cifras = std::to_string(std::clamp(cuantas, 0, 99999));
    const auto ancho = static_cast<std::size_t>(digitos);
    return cifras.size() >= ancho ? cifras : std::string(ancho - cifras.size(), '0') + cifras;
}

}  // namespace bn::simulador
