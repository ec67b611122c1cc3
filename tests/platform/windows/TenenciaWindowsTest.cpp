// SPDX-License-Identifier: MIT
// Files that other programs have, as this system shows them.
#include <gtest/gtest.h>
#include <windows.h>

#include <array>
#include <filesystem>

#include "platform/Tenencia.h"
#include "platform/windows/Asa.h"
#include "tests/soporte/CarpetaTemporal.h"

namespace bn {
namespace {

constexpr DWORD kTodos = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

class TenenciaEnWindows : public testing::Test {
 protected:
    void SetUp() override { prueba::escribirFichero(fichero, "libro"); }
    windows::Asa abrir(DWORD loQueComparte) const {
        windows::Asa asa(::CreateFileW(fichero.c_str(), GENERIC_READ | GENERIC_WRITE, loQueComparte,
                                       nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
        EXPECT_TRUE(static_cast<bool>(asa));
        return asa;
    }

    prueba::CarpetaTemporal carpeta;
    std::filesystem::path fichero = carpeta / "libro.xls";
};

TEST_F(TenenciaEnWindows, OfAFileThatNobodyHasIsFree) {
    EXPECT_EQ(tenenciaDe(fichero), Tenencia::kLibre);
    EXPECT_EQ(tenenciaDe(carpeta / "no.xls"), Tenencia::kLibre);
}

TEST_F(TenenciaEnWindows, SeesAProgramThatDoesNotShareTheFile) {
    for (const DWORD loQueComparte : std::to_array<DWORD>({0, FILE_SHARE_READ})) {
        const windows::Asa otro = abrir(loQueComparte);
        EXPECT_EQ(tenenciaDe(fichero), Tenencia::kTomado);
    }
    EXPECT_EQ(tenenciaDe(fichero), Tenencia::kLibre);
}

TEST_F(TenenciaEnWindows, SeesALockAndTakesNoneItself) {
    const windows::Asa otro = abrir(kTodos);
    EXPECT_EQ(tenenciaDe(fichero), Tenencia::kLibre);
    OVERLAPPED principio{};
    ASSERT_TRUE(::LockFileEx(otro.get(), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 2,
                             0, &principio));
    EXPECT_EQ(tenenciaDe(fichero), Tenencia::kTomado);
    ASSERT_TRUE(::UnlockFileEx(otro.get(), 0, 2, 0, &principio));
    EXPECT_EQ(tenenciaDe(fichero), Tenencia::kLibre);
}

TEST(ProgramasEnMarchaEnWindows, AreFoundByTheirName) {
    std::array<wchar_t, MAX_PATH> propio{};
    ASSERT_NE(::GetModuleFileNameW(nullptr, propio.data(), MAX_PATH), 0U);
    const auto nombre = std::filesystem::path(propio.data()).filename().string();
    EXPECT_TRUE(estaEnMarcha(nombre));
    EXPECT_FALSE(estaEnMarcha("x" + nombre));
    EXPECT_FALSE(nombreDelEquipo().empty());
}

}  // namespace
}  // namespace bn
