// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

#include "platform/asio/Linea.h"
#include "tests/platform/PuertoEnPrueba.h"

namespace bn {
namespace {

using testing::HasSubstr;

TEST_F(Puerto, SetsTheLineRawWithoutFlowControl) {
    const auto puerto = abierto();
    const termios modo = linea_.modo();
    EXPECT_EQ(modo.c_lflag & (ECHO | ECHONL | ICANON | ISIG | IEXTEN), 0U);
    EXPECT_EQ(modo.c_iflag & (ISTRIP | IGNCR | ICRNL | INLCR | IXON | IXOFF | IXANY | BRKINT), 0U);
    EXPECT_EQ(modo.c_oflag & OPOST, 0U);
    EXPECT_EQ(modo.c_cflag & CRTSCTS, 0U);
    EXPECT_EQ(modo.c_cflag & (CLOCAL | CREAD), static_cast<tcflag_t>(CLOCAL | CREAD));
    EXPECT_EQ(modo.c_cflag & HUPCL, 0U);
}

TEST_F(Puerto, DropsBytesThatArriveDamagedInsteadOfAlteringThem) {
    const auto puerto = abierto("9600,E,7,1");
    EXPECT_EQ(linea_.modo().c_iflag & (INPCK | IGNPAR | PARMRK),
              static_cast<tcflag_t>(INPCK | IGNPAR));
}

// A pseudo-terminal always says eight data bits and no parity (the odd-parity mark does stay), so
// speed, stop bits and that mark are what can be asked back of the settings.
struct CasoAjustes {
    const char* ajustes;
    speed_t velocidad;
    bool dosDeParada, impar;
};

class AjustesPuestos : public Puerto, public testing::WithParamInterface<CasoAjustes> {};

TEST_P(AjustesPuestos, ReachTheLine) {
    const auto puerto = abierto(GetParam().ajustes);
    const termios modo = linea_.modo();
    EXPECT_EQ(::cfgetospeed(&modo), GetParam().velocidad);
    EXPECT_EQ(::cfgetispeed(&modo), GetParam().velocidad);
    EXPECT_EQ((modo.c_cflag & CSTOPB) != 0, GetParam().dosDeParada);
    EXPECT_EQ((modo.c_cflag & PARODD) != 0, GetParam().impar);
}

INSTANTIATE_TEST_SUITE_P(Todos, AjustesPuestos,
                         testing::Values(CasoAjustes{"300,N,8,1", B300, false, false},
                                         CasoAjustes{"600,e,7,1", B600, false, false},
                                         CasoAjustes{"1200,O,7,2", B1200, true, true},
                                         CasoAjustes{"2400,n,8,2", B2400, true, false},
                                         CasoAjustes{"4800,o,8,1", B4800, false, true},
                                         CasoAjustes{"9600,N,8,1", B9600, false, false},
                                         CasoAjustes{"19200,E,8,1", B19200, false, false}));

TEST(AjustesDeLinea, AreReadIntoTheirFourValues) {
    const AjustesLinea ajustes = leerAjustesLinea("1200,o,7,2");
    EXPECT_EQ(ajustes.velocidad, 1200);
    EXPECT_EQ(ajustes.paridad, 'O');
    EXPECT_EQ(ajustes.bitsDatos, 7);
    EXPECT_EQ(ajustes.bitsParada, 2);
}

TEST(AjustesDeLinea, NotUnderstoodAreRefusedQuotingTheText) {
    for (const std::string texto : {"",
                                    ",",
                                    ",,,",
                                    "9600",
                                    "9600,N,8",
                                    "9600,N,8,",
                                    "9600,N,8,1,",
                                    "9600,N,8,1,0",
                                    "9600,N,8,3",
                                    "9600,N,6,1",
                                    "9600,X,8,1",
                                    "9600,,8,1",
                                    "9601,N,8,1",
                                    "115200,N,8,1",
                                    "-9600,N,8,1",
                                    "09600,N,8,1",
                                    "9600.0,N,8,1",
                                    " 9600,N,8,1",
                                    "9600,N,8,1 ",
                                    "9600;N;8;1",
                                    "9600,NN,8,1",
                                    "9600,N,8,1.5",
                                    "99999999999999999999,N,8,1",
                                    "9600,N,08,1"}) {
        try {
            leerAjustesLinea(texto);
            ADD_FAILURE() << "accepted: " << texto;
        } catch (const ErrorPuerto& error) {
            EXPECT_THAT(error.what(), HasSubstr('"' + texto + '"'));
        }
    }
}

TEST_F(Puerto, KeepsItsSettingsWhenNewOnesAreRefused) {
    const auto puerto = nuevoPuerto(linea_.dispositivo());
    puerto->Settings("1200,N,8,2");
    EXPECT_THROW(puerto->Settings("1200,N,8,1 parada"), ErrorPuerto);
    puerto->PortOpen(true);
    const termios modo = linea_.modo();
    EXPECT_EQ(::cfgetospeed(&modo), static_cast<speed_t>(B1200));
}

TEST_F(Puerto, RefusesAChannelThatDoesNotExist) {
    const auto puerto = nuevoPuerto(linea_.dispositivo());
    for (const auto canal : std::initializer_list<int16_t>{-32768, -1, 0}) {
        EXPECT_THROW(puerto->CommPort(canal), ErrorPuerto) << canal;
    }
    EXPECT_NO_THROW(puerto->CommPort(1));
    EXPECT_NO_THROW(puerto->CommPort(16));
    EXPECT_NO_THROW(puerto->CommPort(256)) << "whether it exists is seen when it is opened";
}

TEST_F(Puerto, OpensTheDeviceOfItsChannel) {
    int16_t pedido = 0;
    PuertoAsio puerto([](const std::function<void()>&) {},
                      [&](int16_t canal) {
                          pedido = canal;
                          return linea_.dispositivo();
                      });
    puerto.CommPort(7);
    puerto.PortOpen(true);
    EXPECT_EQ(pedido, 7);
    EXPECT_EQ(dispositivoDelCanal(7), "/dev/ttyS6");
}

TEST_F(Puerto, NamesADeviceThatDoesNotExist) {
    EXPECT_EQ(errorAlAbrir("/dev/bn-no-hay"), "/dev/bn-no-hay: no existe");
    EXPECT_EQ(errorAlAbrir(""), ": no existe");
}

TEST_F(Puerto, RefusesWhatIsNoSerialPort) {
    const auto fichero = std::filesystem::temp_directory_path() /
                         ("bn-puerto-" + std::to_string(::getpid()) + ".txt");
    std::ofstream(fichero) << "intacto";
    EXPECT_EQ(errorAlAbrir(fichero.string()), fichero.string() + ": no es un puerto serie");
    EXPECT_EQ(std::filesystem::file_size(fichero), 7U);
    std::filesystem::remove(fichero);
    EXPECT_EQ(errorAlAbrir("/tmp"), "/tmp: no es un puerto serie");
    EXPECT_EQ(errorAlAbrir("/dev/null"), "/dev/null: no es un puerto serie");
}

TEST_F(Puerto, TellsWhenItMayNotOpenTheDevice) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs another user's device";
    }
    ASSERT_EQ(::chmod(linea_.dispositivo().c_str(), 0), 0);
    constexpr uid_t kNadie = 65534;
    ASSERT_EQ(::seteuid(kNadie), 0);
    const std::string error = errorAlAbrir(linea_.dispositivo());
    ASSERT_EQ(::seteuid(0), 0);
    EXPECT_EQ(error, linea_.dispositivo() + ": acceso denegado");
}

TEST_F(Puerto, KeepsASecondOpenerOutUntilItIsClosed) {
    auto puerto = abierto();
    EXPECT_EQ(errorAlAbrir(linea_.dispositivo()),
              linea_.dispositivo() + ": está en uso por otro programa");
    EXPECT_TRUE(puerto->PortOpen());
    puerto->PortOpen(false);
    EXPECT_EQ(errorAlAbrir(linea_.dispositivo()), "");
    puerto.reset();
    EXPECT_EQ(errorAlAbrir(linea_.dispositivo()), "");
}

TEST_F(Puerto, RespectsAnotherProgramsExclusiveMark) {
    const int otro = ::open(linea_.dispositivo().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_EQ(::ioctl(otro, TIOCEXCL), 0);
    EXPECT_EQ(errorAlAbrir(linea_.dispositivo()),
              linea_.dispositivo() + ": está en uso por otro programa");
    ::close(otro);
}

TEST_F(Puerto, ClosedIsSilent) {
    const auto puerto = nuevoPuerto(linea_.dispositivo());
    EXPECT_FALSE(puerto->PortOpen());
    puerto->Output("nada");
    puerto->InBufferCount(0);
    EXPECT_EQ(puerto->Input(), "");
    puerto->PortOpen(false);
    EXPECT_FALSE(puerto->PortOpen());
}

}  // namespace
}  // namespace bn
