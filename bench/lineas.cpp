// SPDX-License-Identifier: MIT
// Lines of the text destination formatted, in the default layout.
#include <benchmark/benchmark.h>

#include <filesystem>

#include "bench/PlataformaDeBanco.h"
#include "bench/Tramas.h"
#include "config/Setup.h"
#include "download/LineaTexto.h"
#include "link/pesaDX5.h"

namespace bn::banco {
namespace {

constexpr std::size_t kLargoPorDefecto = 76;

void formatear(benchmark::State& estado) {
    const CarpetaDeBanco carpeta(std::filesystem::temp_directory_path());
    PlataformaDeBanco plataforma(carpeta.ruta());
    const Setup cfg(plataforma);
    pesaDX5 pesada(plataforma);
    pesada.DatosValidos(kDatosLargos);
    for ([[maybe_unused]] auto vuelta : estado) {
        if (lineaTexto(pesada, cfg).size() != kLargoPorDefecto) {
            estado.SkipWithError("not the line of the default layout");
            break;
        }
    }
    estado.SetItemsProcessed(estado.iterations());
}

/// What the save pass does for each record: its data parsed again, its line formatted.
void interpretarYFormatear(benchmark::State& estado) {
    const CarpetaDeBanco carpeta(std::filesystem::temp_directory_path());
    PlataformaDeBanco plataforma(carpeta.ruta());
    const Setup cfg(plataforma);
    pesaDX5 pesada(plataforma);
    for ([[maybe_unused]] auto vuelta : estado) {
        pesada.DatosValidos(kDatosLargos);
        benchmark::DoNotOptimize(lineaTexto(pesada, cfg));
    }
    estado.SetItemsProcessed(estado.iterations());
}

BENCHMARK(formatear);
BENCHMARK(interpretarYFormatear);

}  // namespace
}  // namespace bn::banco
