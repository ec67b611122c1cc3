// SPDX-License-Identifier: MIT
// The channel against a simulated indicator over a line that fails in every way, seed by seed.
#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <map>
#include <string>

#include "tests/link/SimulacionLinea.h"

namespace bn {
namespace {

using prueba::ResultadoSimulacion;
using prueba::simularLinea;

constexpr uint64_t kSemillas = 1500;

uint64_t deEntorno(const char* nombre, uint64_t sinElla) {
    const char* const valor = std::getenv(nombre);
    return valor == nullptr ? sinElla : std::strtoull(valor, nullptr, 10);
}

std::string trazaDe(uint64_t semilla) {
    std::string texto = "seed " + std::to_string(semilla) + "\n";
    for (const std::string& linea : simularLinea(semilla, true).traza) texto += linea + "\n";
    return texto;
}

// BN_SEMILLA=n BN_SEMILLAS=m run m seeds from n on.
TEST(SimulacionDeLaLinea, LosesAndDoublesNothingButWhatTheProtocolCannotTell) {
    const uint64_t primera = deEntorno("BN_SEMILLA", 1);
    const uint64_t cuantas = deEntorno("BN_SEMILLAS", kSemillas);
    ResultadoSimulacion total;
    for (uint64_t semilla = primera; semilla < primera + cuantas; ++semilla) {
        const ResultadoSimulacion uno = simularLinea(semilla, false);
        total.descargas += uno.descargas;
        total.correctas += uno.correctas;
        total.registros += uno.registros;
        for (const auto& [causa, veces] : uno.disculpas) total.disculpas[causa] += veces;
        for (const std::string& falta : uno.faltas)
            ADD_FAILURE() << "seed " << semilla << ": " << falta;
        if (uno.faltas.empty()) continue;
        if (total.faltas.empty()) std::cout << trazaDe(semilla);
        total.faltas.insert(total.faltas.end(), uno.faltas.begin(), uno.faltas.end());
    }
    EXPECT_GT(total.correctas, total.descargas / 2) << "the faults leave most downloads their way";
    std::cout << total.descargas << " downloads, " << total.correctas << " correct, "
              << total.registros << " records\n";
    for (const auto& [causa, veces] : total.disculpas) std::cout << veces << "  " << causa << "\n";
}

}  // namespace
}  // namespace bn
