// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace bn::prueba {

/// What has come of one seed: the whole program, some hours between an indicator and its files.
struct ResultadoMundo {
    int64_t descargas = 0;
    int64_t correctas = 0;
    int64_t registros = 0;
    int64_t muertes = 0;    ///< killed
    int64_t cortes = 0;     ///< ended by the power
    int64_t cierres = 0;    ///< closed by a person, or by the system
    int64_t retiradas = 0;  ///< of the text file by its reader
    int64_t averiasDeDisco = 0;
    int64_t averiasDeExcel = 0;
    /// Records lost or doubled by what nobody at this end of the line can tell: cause and times.
    std::map<std::string, int> disculpas;
    /// What must never happen.
    std::vector<std::string> faltas;
    /// Everything that has happened, for a reader; only when asked for.
    std::vector<std::string> traza;

    /// All of it but what is to be read by itself.
    void sumar(const ResultadoMundo& otro);
};

/// The same seed gives the same run.
ResultadoMundo simularMundo(uint64_t semilla, bool conTraza);

}  // namespace bn::prueba
