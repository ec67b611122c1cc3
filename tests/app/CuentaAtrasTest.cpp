// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "app/CuentaAtras.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/PlataformaDePrueba.h"

namespace bn {
namespace {

class CuentaAtrasPrueba : public testing::Test {
 protected:
    void SetUp() override {
        cuenta.cambio.conectar([this] { mostrados.push_back(cuenta.texto()); });
    }
    void segundos(int32_t cuantos) { plataforma.avanzar(cuantos * 1000); }
    std::vector<std::string> mostrado() { return std::exchange(mostrados, {}); }

    prueba::CarpetaTemporal carpeta;
    PlataformaDePrueba plataforma{carpeta.ruta()};
    int32_t periodo = 5;
    int iniciadas = 0;
    bool empieza = true;
    std::function<void()> alIniciar;
    std::vector<std::string> mostrados;
    CuentaAtras cuenta{plataforma,
                       [this] {
                           ++iniciadas;
                           if (alIniciar) alIniciar();
                           return empieza;
                       },
                       [this] { return periodo; }};
};

using Textos = std::vector<std::string>;

TEST_F(CuentaAtrasPrueba, DoesNotRunBeforeItIsStarted) {
    EXPECT_FALSE(cuenta.enMarcha());
    segundos(100);
    EXPECT_EQ(iniciadas, 0);
    EXPECT_EQ(mostrado(), Textos{});
}

TEST_F(CuentaAtrasPrueba, StartsFromTheWholePeriod) {
    cuenta.arrancar();
    EXPECT_TRUE(cuenta.enMarcha());
    EXPECT_EQ(cuenta.texto(), "5");
    EXPECT_EQ(mostrado(), Textos{"5"});
}

TEST_F(CuentaAtrasPrueba, TicksOnceASecond) {
    cuenta.arrancar();
    mostrado();
    plataforma.avanzar(999);
    EXPECT_EQ(mostrado(), Textos{});
    plataforma.avanzar(1);
    EXPECT_EQ(mostrado(), Textos{"4"});
    segundos(2);
    EXPECT_EQ(mostrado(), (Textos{"3", "2"}));
    EXPECT_EQ(iniciadas, 0);
}

TEST_F(CuentaAtrasPrueba, StartsADownloadAtZeroAndStops) {
    cuenta.arrancar();
    std::string alEmpezar;
    bool enMarchaAlEmpezar = true;
    alIniciar = [&] {
        alEmpezar = mostrados.back();
        enMarchaAlEmpezar = cuenta.enMarcha();
    };
    plataforma.avanzar(4999);
    EXPECT_EQ(iniciadas, 0);
    plataforma.avanzar(1);
    EXPECT_EQ(iniciadas, 1);
    EXPECT_EQ(alEmpezar, "0");
    EXPECT_FALSE(enMarchaAlEmpezar);
    EXPECT_EQ(cuenta.texto(), "0");
    EXPECT_FALSE(cuenta.enMarcha());
    segundos(100);
    EXPECT_EQ(iniciadas, 1) << "it is started again when the download ends";
}

TEST_F(CuentaAtrasPrueba, StartsAgainAtOnceWhenTheDownloadIsRefused) {
    empieza = false;
    cuenta.arrancar();
    segundos(5);
    EXPECT_EQ(iniciadas, 1);
    EXPECT_TRUE(cuenta.enMarcha());
    EXPECT_EQ(cuenta.texto(), "5");
    plataforma.avanzar(4999);
    EXPECT_EQ(iniciadas, 1);
    plataforma.avanzar(1);
    EXPECT_EQ(iniciadas, 2);
    EXPECT_EQ(mostrado(),
              (Textos{"5", "4", "3", "2", "1", "0", "5", "4", "3", "2", "1", "0", "5"}));
}

TEST_F(CuentaAtrasPrueba, DoesNotStartAgainWithoutAPeriod) {
    empieza = false;
    cuenta.arrancar();
    alIniciar = [this] { periodo = 0; };
    segundos(5);
    EXPECT_FALSE(cuenta.enMarcha());
    EXPECT_EQ(cuenta.texto(), "0");
}

TEST_F(CuentaAtrasPrueba, StartingAgainForgetsWhatWasLeft) {
    cuenta.arrancar();
    plataforma.avanzar(3500);
    periodo = 8;
    cuenta.arrancar();
    EXPECT_EQ(cuenta.texto(), "8");
    plataforma.avanzar(999);
    EXPECT_EQ(cuenta.texto(), "8") << "a whole second again";
    plataforma.avanzar(1);
    EXPECT_EQ(cuenta.texto(), "7");
}

TEST_F(CuentaAtrasPrueba, WithoutAPeriodItIsDisabled) {
    for (const int32_t ninguno : {0, -1}) {
        periodo = 5;
        cuenta.arrancar();
        mostrado();
        periodo = ninguno;
        cuenta.arrancar();
        EXPECT_EQ(mostrado(), Textos{"(deshabi.)"});
        EXPECT_FALSE(cuenta.enMarcha());
        cuenta.pausar();
        cuenta.reanudar();
        segundos(100);
        EXPECT_EQ(cuenta.texto(), "(deshabi.)");
        EXPECT_EQ(mostrado(), Textos{});
        EXPECT_EQ(iniciadas, 0);
    }
}

TEST_F(CuentaAtrasPrueba, APeriodOfOneSecondStartsAtItsFirstTick) {
    periodo = 1;
    cuenta.arrancar();
    segundos(1);
    EXPECT_EQ(iniciadas, 1);
}

TEST_F(CuentaAtrasPrueba, TheLongestPeriodIsCountedToItsEnd) {
    periodo = 32767;
    cuenta.arrancar();
    cuenta.pausar();
    cuenta.reanudar();
    EXPECT_EQ(cuenta.texto(), "32767");
    segundos(32766);
    EXPECT_EQ(cuenta.texto(), "1");
    segundos(1);
    EXPECT_EQ(iniciadas, 1);
}

TEST_F(CuentaAtrasPrueba, IsHeldAndGoesOnWithoutLosingASecond) {
    cuenta.arrancar();
    segundos(2);
    mostrado();
    cuenta.pausar();
    EXPECT_FALSE(cuenta.enMarcha());
    EXPECT_EQ(mostrado(), Textos{"(retenida)"});
    segundos(60);
    EXPECT_EQ(mostrado(), Textos{});
    cuenta.reanudar();
    EXPECT_TRUE(cuenta.enMarcha());
    EXPECT_EQ(mostrado(), Textos{"3"}) << "one tick at once refreshes the display";
    plataforma.avanzar(999);
    EXPECT_EQ(mostrado(), Textos{});
    plataforma.avanzar(1);
    EXPECT_EQ(mostrado(), Textos{"2"});
    segundos(2);
    EXPECT_EQ(iniciadas, 1);
}

TEST_F(CuentaAtrasPrueba, HoldingTwiceOrGoingOnTwiceIsOnce) {
    cuenta.arrancar();
    cuenta.pausar();
    cuenta.pausar();
    cuenta.reanudar();
    cuenta.reanudar();
    EXPECT_EQ(mostrado(), (Textos{"5", "(retenida)", "5"}));
    segundos(1);
    EXPECT_EQ(mostrado(), Textos{"4"});
}

TEST_F(CuentaAtrasPrueba, GoesOnEvenAtItsLastSecond) {
    cuenta.arrancar();
    segundos(4);
    cuenta.pausar();
    cuenta.reanudar();
    EXPECT_EQ(iniciadas, 0);
    EXPECT_EQ(cuenta.texto(), "1");
    segundos(1);
    EXPECT_EQ(iniciadas, 1);
}

TEST_F(CuentaAtrasPrueba, IsNotHeldWhileADownloadRuns) {
    cuenta.arrancar();
    segundos(5);
    mostrado();
    cuenta.pausar();
    EXPECT_EQ(mostrado(), Textos{});
    EXPECT_EQ(cuenta.texto(), "0");
}

TEST_F(CuentaAtrasPrueba, GoingOnFromZeroAsksForADownloadAtOnce) {
    cuenta.arrancar();
    segundos(5);
    empieza = false;  // the one it started is still running
    cuenta.reanudar();
    EXPECT_EQ(iniciadas, 2);
    EXPECT_TRUE(cuenta.enMarcha());
    EXPECT_EQ(cuenta.texto(), "5");
}

TEST_F(CuentaAtrasPrueba, AHeldCountdownStaysHeldWithoutAPeriod) {
    cuenta.arrancar();
    cuenta.pausar();
    periodo = 0;
    cuenta.reanudar();
    EXPECT_FALSE(cuenta.enMarcha());
    EXPECT_EQ(cuenta.texto(), "(retenida)");
}

TEST_F(CuentaAtrasPrueba, StartingTakesTheHoldAway) {
    cuenta.arrancar();
    segundos(3);
    cuenta.pausar();
    cuenta.arrancar();
    EXPECT_TRUE(cuenta.enMarcha());
    EXPECT_EQ(cuenta.texto(), "5");
}

TEST_F(CuentaAtrasPrueba, AFailedStartLeavesItStoppedAndReachesTheCaller) {
    cuenta.arrancar();
    alIniciar = [] { throw std::runtime_error("fallo"); };
    EXPECT_THROW(segundos(5), std::runtime_error);
    EXPECT_FALSE(cuenta.enMarcha());
    alIniciar = nullptr;
    cuenta.arrancar();
    segundos(5);
    EXPECT_EQ(iniciadas, 2);
}

TEST_F(CuentaAtrasPrueba, ADownloadThatEndsAtOnceMayStartItAgainFromInside) {
    alIniciar = [this] { cuenta.arrancar(); };
    cuenta.arrancar();
    segundos(5);
    EXPECT_TRUE(cuenta.enMarcha());
    EXPECT_EQ(cuenta.texto(), "5");
    segundos(5);
    EXPECT_EQ(iniciadas, 2);
}

}  // namespace
}  // namespace bn
