// SPDX-License-Identifier: MIT
#include "destinations/xls/Numeros.h"

#include <bit>
#include <charconv>
#include <cmath>

namespace bn::xls {
namespace {

constexpr double kLimiteEntero = 536870912.0;  // 2^29: the integers of a short form are 30 bits
constexpr uint32_t kEntero = 2;
constexpr uint32_t kCentesimas = 1;

uint32_t rkEntero(double entero) {
    return static_cast<uint32_t>(static_cast<int32_t>(entero)) << 2 | kEntero;
}

}  // namespace

std::optional<uint32_t> aRk(double numero) {
    if (!std::isfinite(numero) || (numero == 0 && std::signbit(numero))) return std::nullopt;
    if (std::fabs(numero) < kLimiteEntero && numero == std::trunc(numero)) return rkEntero(numero);
    const auto bits = std::bit_cast<uint64_t>(numero);
    if ((bits & 0x3FFFFFFFFU) == 0) return static_cast<uint32_t>(bits >> 32);
    const double centesimas = std::nearbyint(numero * 100);
    if (std::fabs(centesimas) < kLimiteEntero && centesimas / 100 == numero) {
        return rkEntero(centesimas) | kCentesimas;
    }
    return std::nullopt;
}

double deRk(uint32_t rk) {
    const double numero = (rk & kEntero) != 0 ? static_cast<double>(static_cast<int32_t>(rk) >> 2)
                                              : std::bit_cast<double>(uint64_t{rk & ~3U} << 32);
    return (rk & kCentesimas) != 0 ? numero / 100 : numero;
}

double comoDecimal(float numero) {
    char texto[64];
    const auto fin = std::to_chars(texto, texto + sizeof texto, numero).ptr;
    double doble = numero;
    std::from_chars(texto, fin, doble);
    return doble;
}

}  // namespace bn::xls
