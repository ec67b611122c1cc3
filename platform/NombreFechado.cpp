// SPDX-License-Identifier: MIT
#include "platform/NombreFechado.h"

#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>

#include "platform/Ficheros.h"

namespace bn {

namespace {

std::string sello(double fechaHora) {
    using namespace std::chrono;
    constexpr sys_days kOrigen = 1899y / December / 30;
    const auto instante = kOrigen + seconds(std::llround(fechaHora * 86400.0));
    const auto dia = floor<days>(instante);
    const year_month_day fecha{dia};
    const hh_mm_ss hora{instante - dia};
    std::array<char, 64> texto{};
    std::snprintf(texto.data(), texto.size(), "%04d%02u%02u-%02d%02d%02d",
                  static_cast<int>(fecha.year()), static_cast<unsigned>(fecha.month()),
                  static_cast<unsigned>(fecha.day()), static_cast<int>(hora.hours().count()),
                  static_cast<int>(hora.minutes().count()),
                  static_cast<int>(hora.seconds().count()));
    return texto.data();
}

}  // namespace

std::filesystem::path nombreFechado(Disco& disco, const std::filesystem::path& comienzo,
                                    double fechaHora, const std::string& final) {
    std::filesystem::path base = comienzo;
    base += sello(fechaHora);
    std::filesystem::path libre = base;
    libre += final;
    for (int n = 2; ficheros::existe(disco, libre); ++n) {
        libre = base;
        libre += "-" + std::to_string(n) + final;
    }
    return libre;
}

}  // namespace bn
