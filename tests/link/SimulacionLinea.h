// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace bn::prueba {

/// What has come of one seed: some downloads from a simulated indicator over a simulated line.
struct ResultadoSimulacion {
    int descargas = 0;
    int correctas = 0;
    int registros = 0;
    /// Records lost or doubled by what nobody at this end of the line can tell: cause and times.
    std::map<std::string, int> disculpas;
    /// The same without such a cause, and whatever else must never happen.
    std::vector<std::string> faltas;
    /// Everything that has happened, for a reader; only when asked for.
    std::vector<std::string> traza;
};

/// The same seed gives the same run.
ResultadoSimulacion simularLinea(uint64_t semilla, bool conTraza);

}  // namespace bn::prueba
