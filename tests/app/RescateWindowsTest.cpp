// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <windows.h>

#include "app/Rescate.h"
#include "platform/windows/Asa.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/PlataformaDePrueba.h"

namespace bn {
namespace {

TEST(RescateWindows, KeepsTheWayClosedWhileTheStoreCannotBePutAside) {
    const prueba::CarpetaTemporal carpeta;
    const std::filesystem::path almacen = carpeta / "bnGuardo.txt";
    PlataformaDePrueba plataforma(carpeta.ruta());
    Rescate rescate(plataforma);
    prueba::escribirFichero(almacen, "primera\r\nsegunda\r\n");
    rescate.empezar();
    {
        // Another program that lets nobody near it.
        const windows::Asa otro(::CreateFileW(almacen.c_str(), GENERIC_READ, 0, nullptr,
                                              OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
        ASSERT_TRUE(static_cast<bool>(otro));
        EXPECT_FALSE(rescate.despejar());
        EXPECT_EQ(rescate.apartar(), almacen) << "where they are, for the user to know";
    }
    EXPECT_EQ(prueba::leerFichero(almacen), "primera\r\nsegunda\r\n");
    EXPECT_TRUE(std::filesystem::exists(carpeta / "bnGuardo.marca"));
    EXPECT_TRUE(rescate.despejar()) << "the other program has let go";
}

}  // namespace
}  // namespace bn
