// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tools/simulador/Azar.h"
#include "tools/simulador/Tramas.h"

namespace bn::simulador {

/// What can go wrong with one transmission, in the order it is drawn; kRespuesta is drawn apart,
/// when an answer of the computer arrives.
enum class Averia {
    kControl,
    kRuido,
    kCorte,
    kRetorno,
    kCola,
    kGoteo,
    kPausa,
    kRespuesta,
    kNinguna
};

inline constexpr std::size_t kNumeroAverias = 8;

/// The fault's name in the options and in the summary.
std::string_view nombre(Averia averia);

/// How often each fault comes (cases in a million), and its measures.
struct AjustesAverias {
    std::array<uint32_t, kNumeroAverias> porMillon{};
    int32_t seguidas = 2;  // faults in a row on one record; a rate of a million knows no limit
    std::chrono::milliseconds pausa{300};
    std::chrono::milliseconds goteo{3};
};

/// A stretch of bytes, and the pause before it.
struct Tramo {
    std::chrono::milliseconds pausa{0};
    std::string bytes;
};

using Envio = std::vector<Tramo>;

/// Draws the faults and damages the frames; the same seed gives the same faults.
class Averias {
 public:
    Averias(uint64_t semilla, const AjustesAverias& ajustes) : azar_(semilla), ajustes_(ajustes) {}

    /// The fault of a transmission whose record has already had so many in a row.
    Averia sortear(int32_t yaSeguidas);
    /// Whether the answer that has just arrived is lost.
    bool pierdeRespuesta(int32_t yaSeguidas);
    /// The frame as it goes out with that fault.
    Envio aplicar(Averia averia, const std::string& trama, const Caracteres& caracteres);

 private:
    bool ocurre(Averia averia, int32_t yaSeguidas);
    std::string ruido(const Caracteres& caracteres);
    Envio conControlMalo(std::string trama);
    Envio conRetorno(std::string trama);
    Envio gotaAGota(const std::string& trama) const;
    Envio conPausa(const std::string& trama);

    Azar azar_;
    AjustesAverias ajustes_;
};

}  // namespace bn::simulador
