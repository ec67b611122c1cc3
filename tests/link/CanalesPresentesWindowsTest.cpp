// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "link/CanalesPresentes.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/PlataformaDePrueba.h"
#include "tests/soporte/windows/PuertosDeclarados.h"

namespace bn {
namespace {

TEST(CanalesPresentesWindows, GivesAPortTheChannelOfTheSettingsFileByAnyOfItsNames) {
    const prueba::CarpetaTemporal carpeta;
    const PlataformaDePrueba plataforma(carpeta.ruta());
    const prueba::PuertosDeclarados declarados({L"COM14", L"COM119"});
    if (!declarados.sePuede()) GTEST_SKIP() << "only an administrator may declare a port";
    for (const std::string nombre : {"COM119", "com119", "\\\\.\\COM119", "\\\\.\\Com119"}) {
        prueba::escribirFichero(carpeta / "bnDX5.ini", "[Puertos]\r\n14=" + nombre + "\r\n");
        const auto puertos = canalesPresentes(plataforma);
        const auto canalDe = [&puertos](const std::string& dispositivo) {
            const auto puerto = std::find_if(
                puertos.begin(), puertos.end(),
                [&](const PuertoPresente& uno) { return uno.dispositivo == dispositivo; });
            return puerto != puertos.end() ? puerto->canal : int16_t{-1};
        };
        EXPECT_EQ(canalDe("COM119"), 14) << nombre;
        EXPECT_EQ(canalDe("COM14"), 0) << nombre << ": channel 14 opens the other one now";
    }
}

}  // namespace
}  // namespace bn
