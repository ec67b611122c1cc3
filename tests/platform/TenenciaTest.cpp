// SPDX-License-Identifier: MIT
// Files that other programs have, as this system shows them.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "platform/Tenencia.h"
#include "tests/soporte/CarpetaTemporal.h"

namespace bn {
namespace {

class TenenciaEnLinux : public testing::Test {
 protected:
    void SetUp() override {
        prueba::escribirFichero(fichero, "libro");
        otro = ::open(fichero.c_str(), O_RDWR | O_CLOEXEC);
        ASSERT_NE(otro, -1);
    }
    void TearDown() override { soltar(); }
    void soltar() {
        if (otro != -1) ::close(otro);
        otro = -1;
    }
    void cerrarTramo(int16_t clase) const {
        struct flock tramo {};
        tramo.l_type = clase;
        tramo.l_whence = SEEK_SET;
        ASSERT_EQ(::fcntl(otro, F_OFD_SETLK, &tramo), 0);
    }

    prueba::CarpetaTemporal carpeta;
    std::filesystem::path fichero = carpeta / "libro.xls";
    int otro = -1;  // what another program has open
};

TEST_F(TenenciaEnLinux, OfAFileWithoutALockIsNotKnown) {
    EXPECT_EQ(tenenciaDe(fichero), Tenencia::kNoSeSabe);
}

TEST_F(TenenciaEnLinux, OfAMissingFileIsFree) {
    EXPECT_EQ(tenenciaDe(carpeta / "no.xls"), Tenencia::kLibre);
}

TEST_F(TenenciaEnLinux, SeesALockOnPartOfTheFileUntilItIsGivenBack) {
    for (const int16_t clase : {int16_t{F_WRLCK}, int16_t{F_RDLCK}}) {
        cerrarTramo(clase);
        EXPECT_EQ(tenenciaDe(fichero), Tenencia::kTomado);
        cerrarTramo(F_UNLCK);
        EXPECT_EQ(tenenciaDe(fichero), Tenencia::kNoSeSabe);
    }
}

TEST_F(TenenciaEnLinux, SeesALockOnTheWholeFileAndTakesNoneItself) {
    ASSERT_EQ(::flock(otro, LOCK_EX | LOCK_NB), 0);
    EXPECT_EQ(tenenciaDe(fichero), Tenencia::kTomado);
    soltar();
    EXPECT_EQ(tenenciaDe(fichero), Tenencia::kNoSeSabe);
    EXPECT_EQ(tenenciaDe(fichero), Tenencia::kNoSeSabe) << "looking has left no lock behind";
}

TEST_F(TenenciaEnLinux, SeesALockOnAFileThatMayOnlyBeRead) {
    ASSERT_EQ(::flock(otro, LOCK_EX | LOCK_NB), 0);
    std::filesystem::permissions(fichero, std::filesystem::perms::owner_read);
    EXPECT_EQ(tenenciaDe(fichero), Tenencia::kTomado);
}

TEST(ProgramasEnMarcha, AreFoundByTheirWholeName) {
    std::string propio;
    std::ifstream comm("/proc/self/comm");
    ASSERT_TRUE(std::getline(comm, propio));
    EXPECT_TRUE(estaEnMarcha(propio));
    EXPECT_FALSE(estaEnMarcha(propio + "x"));
    EXPECT_FALSE(estaEnMarcha(""));
}

TEST(NombreDelEquipo, IsTheOneTheSystemTells) {
    std::string nombre;
    std::ifstream deLinux("/proc/sys/kernel/hostname");
    ASSERT_TRUE(std::getline(deLinux, nombre));
    EXPECT_EQ(nombreDelEquipo(), nombre);
}

}  // namespace
}  // namespace bn
