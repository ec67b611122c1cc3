// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "tools/simulador/Azar.h"

namespace bn::simulador {

enum class Forma { kCorta, kLarga };

/// Makes up the weighings of a day at the weighbridge, always the same ones for the same seed.
class Pesadas {
 public:
    Pesadas(uint64_t semilla, Forma forma) : azar_(semilla), forma_(forma) {}

    /// The data of the next weighing: 59 (short) or 74 (long) Windows-1252 bytes.
    std::string siguiente();

 private:
    std::string componer();
    std::string matricula();
    std::string albaran();
    std::string codigo();
    std::string peso(int32_t kilos, bool decimales);
    std::string fechaHora() const;

    Azar azar_;
    Forma forma_;
    int32_t numeroAlbaran_ = 0;
    int64_t minutos_ = 0;  // since the first morning
};

}  // namespace bn::simulador
