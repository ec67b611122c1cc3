// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <windows.h>

#include "app/Rescate.h"
#include "platform/Ficheros.h"
#include "platform/windows/Asa.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/PlataformaDePrueba.h"
#include "tests/soporte/windows/CarpetaLarga.h"

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

TEST(RescateWindows, PutsTheStoreAsideInAFolderOfAnyLength) {
    const prueba::CarpetaLarga carpeta;
    PlataformaDePrueba plataforma(carpeta.ruta());
    Rescate rescate(plataforma);
    ficheros::anadir(carpeta / "bnGuardo.txt", "primera\r\nsegunda\r\n");
    rescate.empezar();
    const auto pendientes = rescate.recoger();
    ASSERT_TRUE(pendientes.has_value());
    EXPECT_EQ(pendientes->fichero, carpeta / "bnGuardo-18991230-000000.txt");
    EXPECT_EQ(pendientes->pesadas, 2U);
    EXPECT_FALSE(rescate.recoger().has_value()) << "the mark is gone";
    rescate.empezar();
    EXPECT_TRUE(rescate.despejar());
    EXPECT_EQ(ficheros::leer(carpeta / "bnGuardo-18991230-000000-2.txt"), "primera\r\nsegunda\r\n");
}

}  // namespace
}  // namespace bn
