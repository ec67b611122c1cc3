// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace bn::simulador {

/// Pseudo-random numbers (SplitMix64): the same seed gives the same run on every compiler, which
/// the distributions of the standard library do not promise.
class Azar {
 public:
    explicit Azar(uint64_t semilla) : estado_(semilla) {}

    /// From 0 to cuantos - 1; cuantos at least 1.
    uint32_t menorQue(uint32_t cuantos) {
        return static_cast<uint32_t>(((siguiente() >> 32U) * cuantos) >> 32U);
    }

    /// From minimo to maximo, both included.
    int32_t entre(int32_t minimo, int32_t maximo) {
        return minimo + static_cast<int32_t>(menorQue(static_cast<uint32_t>(maximo - minimo) + 1U));
    }

    /// True in so many cases of a million.
    bool ocurre(uint32_t porMillon) { return menorQue(1'000'000) < porMillon; }

 private:
    uint64_t siguiente() {
        estado_ += 0x9E3779B97F4A7C15U;
        uint64_t z = estado_;
        z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9U;
        z = (z ^ (z >> 27U)) * 0x94D049BB133111EBU;
        return z ^ (z >> 31U);
    }

    uint64_t estado_;
};

}  // namespace bn::simulador
