// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/simulador/Averias.h"

namespace bn::simulador {

/// The line's parameters, as in "9600,N,8,1".
struct Parametros {
    int32_t baudios = 9600;
    char paridad = 'N';  // N, E or O
    int32_t bits = 8;    // 7 or 8
    int32_t parada = 1;  // stop bits, 1 or 2
};

/// Nothing when the text is not understood.
std::optional<Parametros> leerParametros(std::string_view texto);

/// Bytes that go to the line together, and when, counted from the start of the transmission.
struct Trozo {
    std::chrono::nanoseconds cuando{0};
    std::string bytes;
};

/// When each byte of a transmission is due, so that it takes exactly as long as on a real line.
class Ritmo {
 public:
    /// A line that takes no time.
    Ritmo() = default;
    explicit Ritmo(const Parametros& parametros);

    /// The time so many bytes take on the line.
    std::chrono::nanoseconds duracion(std::size_t bytes) const;
    /// The transmission in small pieces, each due when its last byte has arrived (a pseudo-terminal
    /// delivers at once) or, alSalir, when its first byte starts to leave (a real port paces
    /// itself).
    std::vector<Trozo> plan(const Envio& envio, bool alSalir) const;

 private:
    int64_t bitsPorByte_ = 0;
    int64_t baudios_ = 1;
};

}  // namespace bn::simulador
