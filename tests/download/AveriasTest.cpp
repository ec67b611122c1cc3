// SPDX-License-Identifier: MIT
// Every operation on the disk of a whole cycle fails, once or from then on.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <string>

#include "platform/ErrorFichero.h"
#include "tests/download/CicloDePrueba.h"

namespace bn {
namespace {

using Causa = ErrorFichero::Causa;
using prueba::Ciclo;
using prueba::Vida;

constexpr std::array kMomentos = {Momento::kAntes, Momento::kAMedias, Momento::kDespues};
constexpr std::array kCausas = {Causa::kSinPermiso, Causa::kLleno, Causa::kAveria,
                                Causa::kSoloLectura};

std::int64_t operacionesDeUnCiclo() {
    Ciclo ciclo;
    ciclo.pesarUnas();
    const std::int64_t antes = ciclo.disco.operaciones();
    EXPECT_TRUE(ciclo.vivir([&](Vida& vida) { ciclo.cicloEntero(vida); }));
    return ciclo.disco.operaciones() - antes;
}

/// A cycle in which something fails; what the window would have said then.
struct Averiado {
    Averiado() { ciclo.pesarUnas(); }

    void vivir() {
        ciclo.vivir([&](Vida& vida) {
            ciclo.cicloEntero(vida);
            hubo = vida.des->numPendientes();
            motivo = vida.des->motivoPendientes();
            vida.cfg->Abandonar();
        });
    }
    std::string loQueQueda() {
        ciclo.disco.sanar();
        ciclo.recuperar();
        return ciclo.comprobar();
    }

    Ciclo ciclo;
    int32_t hubo = 0;
    std::string motivo;
};

TEST(Averias, OnceAtEveryOperationLoseNothingAndDoubleNothing) {
    const std::int64_t cuantas = operacionesDeUnCiclo();
    for (std::int64_t k = 1; k <= cuantas; ++k) {
        const std::size_t i = static_cast<std::size_t>(k) % kMomentos.size();
        for (const Causa causa : {kCausas.at(i), kCausas.at(i + 1)}) {
            Averiado uno;
            std::string donde;
            const std::int64_t cual = uno.ciclo.disco.operaciones() + k;
            const auto esEsa = [&](const Operacion& una) {
                if (una.numero == cual) donde = una.texto();
                return una.numero == cual;
            };
            uno.ciclo.disco.fallar(causa, esEsa, 1, kMomentos.at(i));
            uno.vivir();
            EXPECT_EQ(uno.hubo > 0, !uno.motivo.empty()) << donde;
            EXPECT_EQ(uno.loQueQueda(), "") << "momento " << i << " en " << donde;
        }
    }
}

TEST(Averias, OfOnePlaceFromAnyOperationOnAreOverWithTheirCause) {
    const std::array kSitios = {Ciclo::kTexto.parent_path(), Ciclo::kLibro.parent_path(),
                                Ciclo::kPrograma};
    const std::int64_t cuantas = operacionesDeUnCiclo();
    for (std::int64_t k = 1; k <= cuantas; k += 2) {
        for (std::size_t i = 0; i < kSitios.size(); ++i) {
            if (static_cast<std::size_t>(k) % kSitios.size() == i) continue;  // the next one will
            const auto& sitio = kSitios.at(i);
            Averiado uno;
            const std::int64_t cual = uno.ciclo.disco.operaciones() + k;
            const Causa causa = kCausas.at(static_cast<std::size_t>(k) % kCausas.size());
            uno.ciclo.disco.fallar(
                causa,
                [&](const Operacion& una) {
                    return una.numero >= cual && una.ruta.parent_path() == sitio;
                },
                DiscoSimulado::kSiempre);
            uno.vivir();
            EXPECT_EQ(uno.hubo > 0, !uno.motivo.empty());
            EXPECT_EQ(uno.loQueQueda(), "") << sitio << " desde " << k;
        }
    }
}

}  // namespace
}  // namespace bn
