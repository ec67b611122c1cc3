// SPDX-License-Identifier: MIT
// Appends to the frame store, which are flushed to the disk, and the same appends without flush.
//
//   banco_guardo [options of Google Benchmark] FOLDER...
//
// The folders' names are part of the benchmarks' names: "con_volcado:FOLDER".
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "bench/PlataformaDeBanco.h"
#include "bench/Tramas.h"
#include "link/sacoTramas.h"

namespace bn::banco {
namespace {

void conVolcado(benchmark::State& estado, const std::string& padre) {
    const CarpetaDeBanco carpeta(padre);
    PlataformaDeBanco plataforma(carpeta.ruta());
    sacoTramas saco(plataforma);
    if (!saco.iniGuardo()) estado.SkipWithError("the store cannot be started");
    for ([[maybe_unused]] auto vuelta : estado) {
        if (!saco.Guardo(kDatosLargos)) {
            estado.SkipWithError("the record was not stored");
            break;
        }
    }
    estado.SetItemsProcessed(estado.iterations());
}

/// Opens, appends, closes, as the store does, and leaves the flushing to the operating system.
void sinVolcado(benchmark::State& estado, const std::string& padre) {
    const CarpetaDeBanco carpeta(padre);
    const std::filesystem::path fichero = carpeta.ruta() / "bnGuardo.txt";
    for ([[maybe_unused]] auto vuelta : estado) {
        std::ofstream salida(fichero, std::ios::binary | std::ios::app);
        salida << kDatosLargos << "\r\n";
        salida.close();
        if (!salida) {
            estado.SkipWithError("the record was not written");
            break;
        }
    }
    estado.SetItemsProcessed(estado.iterations());
}

}  // namespace
}  // namespace bn::banco

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    for (int i = 1; i < argc; ++i) {
        const std::string carpeta = argv[i];
        benchmark::RegisterBenchmark(("con_volcado:" + carpeta).c_str(), bn::banco::conVolcado,
                                     carpeta)
            ->UseRealTime();
        benchmark::RegisterBenchmark(("sin_volcado:" + carpeta).c_str(), bn::banco::sinVolcado,
                                     carpeta)
            ->UseRealTime();
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
