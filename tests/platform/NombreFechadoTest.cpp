// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/NombreFechado.h"
#include "tests/soporte/CarpetaTemporal.h"

namespace bn {
namespace {

Disco& sistema = discoDelSistema();

TEST(NombreFechado, HoldsTheDateAndTheHour) {
    const prueba::CarpetaTemporal carpeta;
    EXPECT_EQ(nombreFechado(sistema, carpeta / "Año-", 45000.5, ".txt"),
              carpeta / "Año-20230315-120000.txt");
    EXPECT_EQ(nombreFechado(sistema, carpeta / "x", 0, ""), carpeta / "x18991230-000000");
    EXPECT_EQ(nombreFechado(sistema, carpeta / "x", 45350 + 1.0 / 86400, ""),
              carpeta / "x20240228-000001");
    EXPECT_EQ(nombreFechado(sistema, carpeta / "x", 45351 + 0.999999, ""),
              carpeta / "x20240301-000000")
        << "rounded to the second, over midnight of a leap day";
}

TEST(NombreFechado, NeverGivesANameThatIsTaken) {
    const prueba::CarpetaTemporal carpeta;
    for (const std::string nombre :
         {"a20230315-120000.txt", "a20230315-120000-2.txt", "a20230315-120000-3.txt"}) {
        const auto libre = nombreFechado(sistema, carpeta / "a", 45000.5, ".txt");
        EXPECT_EQ(libre, carpeta / nombre);
        prueba::escribirFichero(libre, "x");
    }
}

}  // namespace
}  // namespace bn
