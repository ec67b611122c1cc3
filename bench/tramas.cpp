// SPDX-License-Identifier: MIT
// Frames recognised and parsed: by the parser alone, and through the serial channel's receive path.
#include "bench/Tramas.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>

#include "bench/PlataformaDeBanco.h"
#include "link/fComm.h"
#include "link/pesaDX5.h"

namespace bn::banco {
namespace {

void reconocer(benchmark::State& estado, const std::string& datos, int16_t tipo) {
    PlataformaDeBanco plataforma(".");
    pesaDX5 pesada(plataforma);
    const std::string completa = trama(datos);
    for ([[maybe_unused]] auto vuelta : estado) {
        if (pesada.TramaValida(completa) != tipo) {
            estado.SkipWithError("the frame was not recognised");
            break;
        }
        benchmark::DoNotOptimize(pesada);
    }
    estado.SetItemsProcessed(estado.iterations());
}

void recibir(benchmark::State& estado, const std::string& datos) {
    PlataformaDeBanco plataforma(".");
    fComm canal(plataforma);
    canal.Pesada.conectar([](int32_t&, bool& continuar, pesaDX5& pesada) {
        benchmark::DoNotOptimize(pesada);
        continuar = true;
    });
    canal.Caracteres("\x02", "\x03", "\x06", 0);
    canal.Pedir(1, "19200,N,8,1");
    const std::string completa = trama(datos);
    const std::string ack = "\x06";
    for ([[maybe_unused]] auto vuelta : estado) {
        plataforma.puerto().recibir(completa);
        if (plataforma.puerto().ultimaRespuesta() != ack) {
            estado.SkipWithError("the frame was not acknowledged");
            break;
        }
    }
    estado.SetItemsProcessed(estado.iterations());
}

BENCHMARK_CAPTURE(reconocer, larga, kDatosLargos, int16_t{1});
BENCHMARK_CAPTURE(reconocer, corta, kDatosCortos, int16_t{1});
BENCHMARK_CAPTURE(reconocer, contador, kDatosContador, int16_t{2});
BENCHMARK_CAPTURE(recibir, larga, kDatosLargos);
BENCHMARK_CAPTURE(recibir, corta, kDatosCortos);

}  // namespace
}  // namespace bn::banco
