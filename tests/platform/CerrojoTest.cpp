// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <optional>

#include "platform/Cerrojo.h"
#include "tests/soporte/CarpetaTemporal.h"

namespace bn {
namespace {

class CerrojoDeCarpeta : public testing::Test {
 protected:
    prueba::CarpetaTemporal carpeta_;
    std::filesystem::path fichero_ = carpeta_ / "bnDX5.lock";
};

TEST_F(CerrojoDeCarpeta, IsHeldByOneAtATime) {
    std::optional<Cerrojo> primero(fichero_);
    EXPECT_EQ(primero->estado(), Cerrojo::Estado::kNuestro);
    EXPECT_EQ(Cerrojo(fichero_).estado(), Cerrojo::Estado::kDeOtro);
    EXPECT_EQ(Cerrojo(fichero_).estado(), Cerrojo::Estado::kDeOtro) << "who asks takes nothing";
    primero.reset();
    EXPECT_EQ(Cerrojo(fichero_).estado(), Cerrojo::Estado::kNuestro);
}

TEST_F(CerrojoDeCarpeta, LeavesNoFileBehind) {
    { const Cerrojo cerrojo(fichero_); }
    EXPECT_FALSE(std::filesystem::exists(fichero_));
}

TEST_F(CerrojoDeCarpeta, WhatADeadProgramLeftHoldsNobody) {
    prueba::escribirFichero(fichero_, "32\nbnDX5\notro equipo\n");
    EXPECT_EQ(Cerrojo(fichero_).estado(), Cerrojo::Estado::kNuestro);
    prueba::escribirFichero(fichero_, "");
    EXPECT_EQ(Cerrojo(fichero_).estado(), Cerrojo::Estado::kNuestro);
}

TEST_F(CerrojoDeCarpeta, AFileThatCannotBeMadeIsNobodys) {
    EXPECT_EQ(Cerrojo(carpeta_ / "no hay" / "bnDX5.lock").estado(), Cerrojo::Estado::kImposible);
}

}  // namespace
}  // namespace bn
