// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "app/Guardia.h"

namespace bn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class GuardiaPrueba : public testing::Test {
 protected:
    GuardiaPrueba() {
        guardia.averia.conectar([this](const std::string& error) { averias.push_back(error); });
        guardia.tropiezo.conectar([this](const std::string& error) { tropiezos.push_back(error); });
    }
    static void fallar() { throw std::runtime_error("la hoja está protegida"); }

    Guardia guardia;
    std::vector<std::string> averias;
    std::vector<std::string> tropiezos;
};

TEST_F(GuardiaPrueba, LetsNotificationsThrough) {
    int atendidas = 0;
    guardia.atender([&] { ++atendidas; });
    guardia.atender([&] { guardia.atender([&] { ++atendidas; }); });
    EXPECT_EQ(atendidas, 2);
    EXPECT_THAT(averias, IsEmpty());
}

TEST_F(GuardiaPrueba, AnErrorEndsHereAndTheOwnerHearsOfIt) {
    EXPECT_NO_THROW(guardia.atender(fallar));
    EXPECT_THAT(averias, ElementsAre("la hoja está protegida"));
    EXPECT_THAT(tropiezos, IsEmpty());
}

TEST_F(GuardiaPrueba, AnErrorOfWhatTheUserAskedForLeavesTheRestAlone) {
    EXPECT_NO_THROW(guardia.atenderUsuario(fallar));
    EXPECT_THAT(tropiezos, ElementsAre("la hoja está protegida"));
    EXPECT_THAT(averias, IsEmpty());
    int hechas = 0;
    guardia.atenderUsuario([&] { ++hechas; });
    guardia.atender([&] { ++hechas; });
    EXPECT_EQ(hechas, 2);
}

TEST_F(GuardiaPrueba, DropsNotificationsUntilTheOwnerHasStartedOver) {
    int atendidas = 0;
    guardia.atender(fallar);
    guardia.atender([&] { ++atendidas; });
    guardia.atenderUsuario([&] { ++atendidas; });
    guardia.atender(fallar);
    EXPECT_EQ(atendidas, 0);
    EXPECT_THAT(averias, testing::SizeIs(1));
    guardia.reanudar();
    guardia.atender([&] { ++atendidas; });
    EXPECT_EQ(atendidas, 1);
    guardia.atender(fallar);
    EXPECT_THAT(averias, testing::SizeIs(2));
}

TEST_F(GuardiaPrueba, AnErrorInsideANotificationInsideAnotherIsToldOnce) {
    guardia.atender([this] {
        guardia.atender(fallar);
        fallar();
    });
    EXPECT_THAT(averias, testing::SizeIs(1));
}

}  // namespace
}  // namespace bn
