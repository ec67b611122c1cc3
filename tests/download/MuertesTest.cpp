// SPDX-License-Identifier: MIT
// The program is killed, or the power fails, at every operation on the disk of a whole cycle.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <string>
#include <vector>

#include "tests/download/CicloDePrueba.h"

namespace bn {
namespace {

using prueba::Ciclo;
using prueba::Vida;

constexpr std::array kMomentos = {Momento::kAntes, Momento::kAMedias, Momento::kDespues};

/// How many there are; where wanted, which of them write.
std::int64_t operacionesDeUnCiclo(std::vector<bool>* escriben = nullptr) {
    Ciclo ciclo;
    ciclo.disco.alOperar = [&](const Operacion& una) {
        if (escriben != nullptr) escriben->push_back(una.escribe());
    };
    ciclo.pesarUnas();
    const std::int64_t antes = ciclo.disco.operaciones();
    EXPECT_TRUE(ciclo.vivir([&](Vida& vida) { ciclo.cicloEntero(vida); }));
    const std::int64_t despues = ciclo.disco.operaciones();
    EXPECT_EQ(ciclo.comprobar(), "");
    return despues - antes;
}

/// What happens to a cycle, and what is wrong once the program has started again.
struct Desgracia {
    explicit Desgracia(SistemaDeFicheros sistema = SistemaDeFicheros::kExt4) : ciclo(sistema) {
        ciclo.pesarUnas();
    }

    /// The k-th operation from now on is the last one of this life.
    bool vivirHasta(std::int64_t k, const std::function<void(const Operacion&)>& enElla) {
        const std::int64_t ultima = ciclo.disco.operaciones() + k;
        ciclo.disco.alOperar = [this, ultima, enElla](const Operacion& una) {
            if (una.numero != ultima) return;
            donde += una.texto() + "; ";
            enElla(una);
        };
        const bool vivo = ciclo.vivir([&](Vida& vida) { ciclo.cicloEntero(vida); });
        ciclo.disco.alOperar = nullptr;
        return vivo;
    }
    bool morirEn(std::int64_t k, Momento momento) {
        return !vivirHasta(k,
                           [&](const Operacion& una) { ciclo.disco.morirEn(una.numero, momento); });
    }
    bool apagarEn(std::int64_t k, std::uint64_t semilla) {
        return !vivirHasta(k, [&](const Operacion&) { ciclo.disco.cortarCorriente(semilla); });
    }
    std::string loQueQueda() {
        ciclo.recuperar();
        return ciclo.comprobar();
    }

    Ciclo ciclo;
    std::string donde;
};

TEST(Muertes, AtEveryOperationOfACycleLoseNothingAndDoubleNothing) {
    std::vector<bool> escriben;
    const std::int64_t cuantas = operacionesDeUnCiclo(&escriben);
    ASSERT_GT(cuantas, 50);
    for (const Momento momento : kMomentos) {
        for (std::int64_t k = 1; k <= cuantas; ++k) {
            // Only a write can be cut in two.
            const bool escribe = escriben.at(static_cast<std::size_t>(k) - 1);
            if (momento == Momento::kAMedias && !escribe) continue;
            Desgracia una;
            const bool muere = una.morirEn(k, momento);
            // What an operation that fails by itself leaves is the same before and after.
            EXPECT_TRUE(muere || momento != Momento::kAntes);
            EXPECT_EQ(una.loQueQueda(), "")
                << "momento " << static_cast<int>(momento) << " en " << una.donde;
        }
    }
}

TEST(Muertes, TwiceInSuccessionLoseNothingAndDoubleNothing) {
    const auto cuantas = static_cast<std::uint64_t>(operacionesDeUnCiclo());
    for (std::uint64_t semilla = 1; semilla <= 100; ++semilla) {
        Azar azar(semilla);
        Desgracia una;
        for (int vez = 0; vez < 2; ++vez) {
            una.morirEn(static_cast<std::int64_t>(1 + azar.hasta(cuantas)),
                        kMomentos.at(azar.hasta(2)));
        }
        EXPECT_EQ(una.loQueQueda(), "") << "semilla " << semilla << " en " << una.donde;
    }
}

class Cortes : public testing::TestWithParam<SistemaDeFicheros> {};

TEST_P(Cortes, OfThePowerAtEveryOperationLoseNothingAndDoubleNothing) {
    const std::int64_t cuantas = operacionesDeUnCiclo();
    for (std::int64_t k = 1; k <= cuantas; ++k) {
        Desgracia una(GetParam());
        EXPECT_TRUE(una.apagarEn(k, static_cast<std::uint64_t>(k)));
        EXPECT_EQ(una.loQueQueda(), "") << "en " << una.donde;
    }
}

TEST_P(Cortes, AfterADeathLoseNothingAndDoubleNothing) {
    const auto cuantas = static_cast<std::uint64_t>(operacionesDeUnCiclo());
    for (std::uint64_t semilla = 1; semilla <= 100; ++semilla) {
        Azar azar(semilla);
        Desgracia una(GetParam());
        una.morirEn(static_cast<std::int64_t>(1 + azar.hasta(cuantas)),
                    kMomentos.at(azar.hasta(2)));
        una.apagarEn(static_cast<std::int64_t>(1 + azar.hasta(cuantas)), semilla);
        EXPECT_EQ(una.loQueQueda(), "") << "semilla " << semilla << " en " << una.donde;
    }
}

INSTANTIATE_TEST_SUITE_P(EnCada, Cortes,
                         testing::Values(SistemaDeFicheros::kExt4, SistemaDeFicheros::kNtfs));

}  // namespace
}  // namespace bn
