// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "link/sacoTramas.h"
#include "tests/soporte/PlataformaDePrueba.h"
#include "tests/soporte/windows/CarpetaLarga.h"

namespace bn {
namespace {

TEST(SacoTramasWindows, GivesBackWhatItHasStoredInAFolderOfAnyLength) {
    const prueba::CarpetaLarga carpeta;
    ASSERT_GT(carpeta.ruta().native().size(), std::size_t{MAX_PATH});
    PlataformaDePrueba plataforma(carpeta.ruta());
    sacoTramas saco(plataforma);
    ASSERT_TRUE(saco.iniGuardo());
    ASSERT_TRUE(saco.Guardo("uno"));
    ASSERT_TRUE(saco.Guardo("dos"));
    ASSERT_TRUE(saco.iniRecupero());
    EXPECT_EQ(saco.Recupero(), "uno");
    EXPECT_FALSE(saco.Final());
    EXPECT_EQ(saco.Recupero(), "dos");
    EXPECT_TRUE(saco.Final());
    EXPECT_TRUE(saco.iniGuardo()) << "the file has been let go of";
}

}  // namespace
}  // namespace bn
