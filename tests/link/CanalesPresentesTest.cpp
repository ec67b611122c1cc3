// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "link/CanalesPresentes.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/PlataformaDePrueba.h"

namespace bn {
namespace {

namespace fs = std::filesystem;

class CanalesPresentesTest : public testing::Test {
 protected:
    void poner(const std::string& nombre, const std::string& tipo = "") {
        const fs::path tty = raiz / ("sys/class/tty/" + nombre);
        fs::create_directories(tty / "device");
        fs::create_directories(raiz / "dev");
        prueba::escribirFichero(raiz / ("dev/" + nombre), "");
        if (!tipo.empty()) prueba::escribirFichero(tty / "type", tipo + "\n");
    }

    void nombrar(const std::string& propio, const std::string& dispositivo) {
        fs::create_directories(raiz / "dev/serial/by-id");
        fs::create_symlink("../../" + dispositivo, raiz / ("dev/serial/by-id/" + propio));
    }

    prueba::CarpetaTemporal raiz;
    prueba::CarpetaTemporal carpeta;
    PlataformaDePrueba plataforma{carpeta.ruta()};
};

TEST_F(CanalesPresentesTest, FindsNothingWhereThereIsNothing) {
    EXPECT_TRUE(puertosPresentes(raiz.ruta()).empty());
}

TEST_F(CanalesPresentesTest, GivesBuiltInPortsTheirChannels) {
    poner("ttyS0", "4");
    poner("ttyS10", "4");
    poner("ttyS2", "4");
    poner("ttyS16", "4");
    const auto puertos = puertosPresentes(raiz.ruta());
    ASSERT_EQ(puertos.size(), 4U);
    EXPECT_EQ(puertos[0].dispositivo, "/dev/ttyS0");
    EXPECT_EQ(puertos[0].canal, 1);
    EXPECT_EQ(puertos[0].descripcion, "Puerto serie");
    EXPECT_EQ(puertos[1].canal, 3);
    EXPECT_EQ(puertos[2].canal, 11);
    EXPECT_EQ(puertos[3].canal, 0);
}

TEST_F(CanalesPresentesTest, LeavesOutPortsThatAreOnlyNames) {
    poner("ttyS0", "0");
    fs::create_directories(raiz / "sys/class/tty/tty1");
    EXPECT_TRUE(puertosPresentes(raiz.ruta()).empty());
}

TEST_F(CanalesPresentesTest, TellsAnAdapterByItsOwnName) {
    poner("ttyUSB0");
    poner("ttyACM1");
    nombrar("usb-FTDI_FT232R_USB_UART_A5XK-if00-port0", "ttyUSB0");
    const auto puertos = puertosPresentes(raiz.ruta());
    ASSERT_EQ(puertos.size(), 2U);
    EXPECT_EQ(puertos[0].dispositivo, "/dev/ttyACM1");
    EXPECT_EQ(puertos[0].descripcion, "Puerto serie");
    EXPECT_EQ(puertos[1].dispositivo, "/dev/ttyUSB0");
    EXPECT_EQ(puertos[1].descripcion, "FTDI FT232R USB UART A5XK");
    EXPECT_EQ(puertos[1].canal, 0);
}

TEST_F(CanalesPresentesTest, GivesAnAdapterTheChannelOfTheSettingsFile) {
    poner("ttyS0", "4");
    poner("ttyS1", "4");
    poner("ttyUSB0");
    nombrar("usb-Acme-if00", "ttyUSB0");
    prueba::escribirFichero(carpeta / "bnDX5.ini",
                            "[Puertos]\r\n1=/dev/serial/by-id/usb-Acme-if00\r\n");
    const auto puertos = canalesPresentes(plataforma, raiz.ruta());
    ASSERT_EQ(puertos.size(), 3U);
    EXPECT_EQ(puertos[0].canal, 0) << "channel 1 opens the adapter now";
    EXPECT_EQ(puertos[1].canal, 2);
    EXPECT_EQ(puertos[2].canal, 1);
}

TEST_F(CanalesPresentesTest, IgnoresAssignedDevicesThatAreNotThere) {
    poner("ttyUSB0");
    prueba::escribirFichero(carpeta / "bnDX5.ini", "[Puertos]\r\n4=/dev/ttyUSB7\r\n");
    const auto puertos = canalesPresentes(plataforma, raiz.ruta());
    ASSERT_EQ(puertos.size(), 1U);
    EXPECT_EQ(puertos[0].canal, 0);
}

TEST_F(CanalesPresentesTest, TellsADeviceByAnyOfItsNames) {
    poner("ttyUSB0");
    poner("ttyUSB1");
    nombrar("usb-Acme-if00", "ttyUSB0");
    EXPECT_TRUE(esElMismoPuerto("/dev/ttyUSB0", "/dev/ttyUSB0", raiz.ruta()));
    EXPECT_TRUE(esElMismoPuerto("/dev/serial/by-id/usb-Acme-if00", "/dev/ttyUSB0", raiz.ruta()));
    EXPECT_FALSE(esElMismoPuerto("/dev/serial/by-id/usb-Acme-if00", "/dev/ttyUSB1", raiz.ruta()));
    EXPECT_FALSE(esElMismoPuerto("/dev/TTYUSB0", "/dev/ttyUSB0", raiz.ruta()));
    EXPECT_FALSE(esElMismoPuerto("/dev/ttyUSB7", "/dev/ttyUSB8", raiz.ruta()));
    EXPECT_TRUE(esElMismoPuerto("/dev/ttyUSB7", "/dev/ttyUSB7", raiz.ruta())) << "when unplugged";
}

}  // namespace
}  // namespace bn
