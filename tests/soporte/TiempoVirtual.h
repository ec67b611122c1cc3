// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <utility>

namespace bn::prueba {

/// Microseconds of virtual time.
using Micros = int64_t;
inline constexpr Micros kMilisegundo = 1000;

/// What is to happen, in order of time and, at one moment, of asking.
class TiempoVirtual {
 public:
    Micros ahora() const { return ahora_; }
    void en(Micros cuando, std::function<void()> que) { cola_.emplace(cuando, std::move(que)); }
    /// Lets the next thing happen; false when nothing is left.
    bool paso() {
        if (cola_.empty()) return false;
        auto siguiente = cola_.extract(cola_.begin());
        ahora_ = siguiente.key();
        siguiente.mapped()();
        return true;
    }

 private:
    Micros ahora_ = 0;
    std::multimap<Micros, std::function<void()>> cola_;
};

/// Chance that is the same on every system.
class Azar {
 public:
    explicit Azar(uint64_t semilla) : estado_(semilla) { estado_ = bruto(); }
    uint64_t bruto() {
        estado_ += 0x9E3779B97F4A7C15U;
        uint64_t z = estado_;
        z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9U;
        z = (z ^ (z >> 27U)) * 0x94D049BB133111EBU;
        return z ^ (z >> 31U);
    }
    /// Both ends included.
    int64_t entre(int64_t desde, int64_t hasta) {
        return desde + static_cast<int64_t>(bruto() % static_cast<uint64_t>(hasta - desde + 1));
    }
    bool sale(double probabilidad) {
        return static_cast<double>(bruto() >> 11U) * 0x1.0p-53 < probabilidad;
    }

 private:
    uint64_t estado_;
};

}  // namespace bn::prueba
