// SPDX-License-Identifier: MIT
// The whole program between a simulated disk, a simulated line and either spreadsheet application,
// all of which fail, seed by seed.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <random>
#include <string>

#include "tests/simulacion/Mundo.h"

namespace bn {
namespace {

using prueba::ResultadoMundo;
using prueba::simularMundo;
using Reloj = std::chrono::steady_clock;

constexpr int kMaximoDeFaltas = 5;
constexpr int64_t kCuantasSemillas = 300;
constexpr uint64_t kMaximoDeSegundos = 60;

std::optional<uint64_t> deEntorno(const char* nombre) {
    const char* const valor = std::getenv(nombre);
    if (valor == nullptr) return std::nullopt;
    return std::strtoull(valor, nullptr, 10);
}

std::string trazaDe(uint64_t semilla) {
    std::string texto = "seed " + std::to_string(semilla) + "\n";
    for (const std::string& linea : simularMundo(semilla, true).traza) texto += linea + "\n";
    return texto;
}

void contar(const ResultadoMundo& total, int64_t semillas) {
    std::cout << semillas << " seeds: " << total.descargas << " downloads (" << total.correctas
              << " correct), " << total.registros << " records, " << total.muertes << " kills, "
              << total.cortes << " power cuts, " << total.cierres << " closings, "
              << total.averiasDeDisco << " disk faults, " << total.averiasDeExcel
              << " spreadsheet faults, " << total.retiradas << " text files taken away\n";
    for (const auto& [causa, veces] : total.disculpas) std::cout << veces << "  " << causa << "\n";
}

// The same seeds every time, so that no check fails by chance. BN_SEGUNDOS=s goes on for so long
// from a new seed, or from BN_DESDE; BN_SEMILLA=n runs the seed n and shows all that happens.
TEST(SimulacionDelPrograma, EveryWeighingArrivesOnceWhateverFails) {
    const auto sola = deEntorno("BN_SEMILLA");
    const auto segundos = deEntorno("BN_SEGUNDOS");
    const uint64_t nueva = segundos ? std::random_device{}() : 1;
    const uint64_t primera = sola ? *sola : deEntorno("BN_DESDE").value_or(nueva);
    const auto desde = Reloj::now();
    const auto hasta = desde + std::chrono::seconds(segundos.value_or(kMaximoDeSegundos));
    std::cout << "first seed " << primera << std::endl;
    ResultadoMundo total;
    int64_t semillas = 0;
    int malas = 0;
    do {
        const uint64_t semilla = primera + static_cast<uint64_t>(semillas++);
        const ResultadoMundo uno = simularMundo(semilla, false);
        total.sumar(uno);
        for (const std::string& falta : uno.faltas) {
            ADD_FAILURE() << "seed " << semilla << ": " << falta;
        }
        if (sola || (!uno.faltas.empty() && ++malas == 1)) {
            std::cout << trazaDe(semilla) << "seed " << semilla << " was number " << semillas
                      << ", after " << std::chrono::duration<double>(Reloj::now() - desde).count()
                      << " s\n";
        }
    } while (!sola && Reloj::now() < hasta && malas < kMaximoDeFaltas &&
             (segundos || semillas < kCuantasSemillas));
    contar(total, semillas);
    EXPECT_GT(total.correctas, 0);
}

/// A run that finds a certain error, should anybody make it again.
struct SemillaConNombre {
    const char* nombre;
    uint64_t semilla;
};

class SemillaDelPrograma : public testing::TestWithParam<SemillaConNombre> {};

TEST_P(SemillaDelPrograma, RunsWithoutFault) {
    const ResultadoMundo uno = simularMundo(GetParam().semilla, false);
    for (const std::string& falta : uno.faltas) ADD_FAILURE() << falta;
    EXPECT_GT(uno.descargas, 0);
}

constexpr SemillaConNombre kSemillas[] = {
    {"AnAcknowledgeBeforeTheFlushOfTheStore", 20000006},
    {"AFolderThatIsNotFlushed", 21000009},
    {"AWorkbookSavedBeforeItsNote", 22000000},
    {"ATextFileBegunWithoutANote", 23000005},
    {"AnAcknowledgeOverHalfAFrame", 24000004},
    {"OneNotificationForSeveralFrames", 25000043},
    {"LinesWhoseFlushFailedTakenForArrived", 26002712},
    {"AStoreThatIsNotSeenTakenForMissing", 27000089},
};

INSTANTIATE_TEST_SUITE_P(Found, SemillaDelPrograma, testing::ValuesIn(kSemillas),
                         [](const auto& uno) { return std::string(uno.param.nombre); });

}  // namespace
}  // namespace bn
