// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "config/ClavesAjenas.h"
#include "config/Setup.h"
#include "platform/Ficheros.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/PlataformaDePrueba.h"

namespace bn {
namespace {

class ClavesAjenas : public testing::Test {
 protected:
    prueba::CarpetaTemporal carpeta;
    std::filesystem::path ini = carpeta / "bnDX5.ini";
    Disco& disco = discoDelSistema();
};

TEST_F(ClavesAjenas, TheFileLiesInTheProgramsFolder) {
    const PlataformaDePrueba plataforma(carpeta.ruta());
    EXPECT_EQ(rutaDelIni(plataforma), ini);
}

TEST_F(ClavesAjenas, PuertosGivesTheDeviceOfAChannel) {
    prueba::escribirFichero(ini, "[Puertos]\n1=/dev/serial/by-id/usb-ñ\n 16 = COM25 \n");
    EXPECT_EQ(dispositivoDePuerto(disco, ini, 1), "/dev/serial/by-id/usb-ñ");
    EXPECT_EQ(dispositivoDePuerto(disco, ini, 16), "COM25");
    EXPECT_EQ(dispositivoDePuerto(disco, ini, 6), "");
    EXPECT_EQ(dispositivoDePuerto(disco, ini, 2), "");
}

TEST_F(ClavesAjenas, WithoutAFileThereAreNoPortsAndTheEngineIsAuto) {
    EXPECT_EQ(dispositivoDePuerto(disco, ini, 1), "");
    EXPECT_EQ(motorExcel(disco, ini), "auto");
}

TEST_F(ClavesAjenas, MotorKnowsFourWordsInAnyLetterCase) {
    const std::array<std::array<std::string, 2>, 8> casos = {{{"auto", "auto"},
                                                              {"EXCEL", "excel"},
                                                              {" Interno ", "interno"},
                                                              {"nInGuNo", "ninguno"},
                                                              {"", "auto"},
                                                              {"otro", "auto"},
                                                              {"excel2", "auto"},
                                                              {"inter", "auto"}}};
    for (const auto& [texto, motor] : casos) {
        prueba::escribirFichero(ini, "[Excel]\r\nMotor=" + texto + "\r\n");
        EXPECT_EQ(motorExcel(disco, ini), motor) << texto;
    }
}

TEST_F(ClavesAjenas, AFileThatCannotBeReadIsAnError) {
    std::filesystem::create_directory(ini);
    EXPECT_THROW(motorExcel(disco, ini), ErrorFichero);
    EXPECT_THROW(dispositivoDePuerto(disco, ini, 1), ErrorFichero);
}

TEST_F(ClavesAjenas, SavingTheSettingsLeavesThemAlone) {
    prueba::escribirFichero(ini, "[Puertos]\r\n1=/dev/ttyUSB0\r\n[Excel]\r\nMotor=interno\r\n");
    PlataformaDePrueba plataforma(carpeta.ruta());
    { const bn::Setup setup(plataforma); }
    EXPECT_EQ(dispositivoDePuerto(disco, ini, 1), "/dev/ttyUSB0");
    EXPECT_EQ(motorExcel(disco, ini), "interno");
    EXPECT_TRUE(prueba::leerFichero(ini).starts_with(
        "[Puertos]\r\n1=/dev/ttyUSB0\r\n[Excel]\r\nMotor=interno\r\nUso=True\r\n"));
}

}  // namespace
}  // namespace bn
