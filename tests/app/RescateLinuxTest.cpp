// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "app/Rescate.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/PlataformaDePrueba.h"

namespace bn {
namespace {

TEST(RescateLinux, KeepsTheWayClosedWhileTheStoreCannotBePutAside) {
    const prueba::CarpetaTemporal carpeta;
    // A folder so deep that the store's own name just fits and a longer one does not.
    std::filesystem::path honda = carpeta.ruta();
    while (honda.native().size() < 3800) honda /= std::string(200, 'd');
    honda /= std::string(4070 - honda.native().size() - 1, 'd');
    std::filesystem::create_directories(honda);
    PlataformaDePrueba plataforma(honda);
    Rescate rescate(plataforma);
    prueba::escribirFichero(honda / "bnGuardo.txt", "primera\r\nsegunda\r\n");
    rescate.empezar();
    EXPECT_FALSE(rescate.despejar());
    EXPECT_EQ(prueba::leerFichero(honda / "bnGuardo.txt"), "primera\r\nsegunda\r\n");
    EXPECT_EQ(rescate.apartar(), honda / "bnGuardo.txt") << "where they are, for the user to know";
    EXPECT_TRUE(std::filesystem::exists(honda / "bnGuardo.marca"));
}

}  // namespace
}  // namespace bn
