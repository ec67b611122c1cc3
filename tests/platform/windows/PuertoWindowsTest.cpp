// SPDX-License-Identifier: MIT
// The serial port over two COM ports joined by a null-modem cable, real or not: BN_CABLE_1 and
// BN_CABLE_2 name them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <array>
#include <asio/io_context.hpp>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <string>

#include "platform/asio/Linea.h"
#include "platform/windows/Asa.h"
#include "tests/platform/PuertoConCola.h"
#include "tests/soporte/CarpetaTemporal.h"

namespace bn {
namespace {

using std::chrono::seconds;
using std::chrono::steady_clock;

std::string variable(const char* nombre) {
    const char* valor = std::getenv(nombre);
    return valor == nullptr ? std::string() : valor;
}

/// The cable's other end, on the system's calls alone.
class OtroExtremo {
 public:
    explicit OtroExtremo(const std::string& nombre)
        : puerto_(::CreateFileA(("\\\\.\\" + nombre).c_str(), GENERIC_READ | GENERIC_WRITE, 0,
                                nullptr, OPEN_EXISTING, 0, nullptr)) {
        EXPECT_TRUE(static_cast<bool>(puerto_)) << nombre << ' ' << ::GetLastError();
        DCB modo{};
        modo.DCBlength = sizeof modo;
        EXPECT_TRUE(::GetCommState(puerto_.get(), &modo));
        modo.BaudRate = 9600;
        modo.ByteSize = 8;
        modo.Parity = NOPARITY;
        modo.StopBits = ONESTOPBIT;
        modo.fBinary = TRUE;
        modo.fOutX = FALSE;
        modo.fInX = FALSE;
        EXPECT_TRUE(::SetCommState(puerto_.get(), &modo));
        COMMTIMEOUTS limites{};
        limites.ReadTotalTimeoutConstant = 5000;
        limites.WriteTotalTimeoutConstant = 5000;
        EXPECT_TRUE(::SetCommTimeouts(puerto_.get(), &limites));
    }

    void escribir(const std::string& bytes) const {
        DWORD escritos = 0;
        EXPECT_TRUE(::WriteFile(puerto_.get(), bytes.data(), static_cast<DWORD>(bytes.size()),
                                &escritos, nullptr));
        EXPECT_EQ(escritos, bytes.size());
    }

    /// So many bytes, or what of them has come in five seconds.
    std::string leer(std::size_t cuantos) const {
        std::string bytes(cuantos, '\0');
        DWORD leidos = 0;
        EXPECT_TRUE(
            ::ReadFile(puerto_.get(), bytes.data(), static_cast<DWORD>(cuantos), &leidos, nullptr));
        bytes.resize(leidos);
        return bytes;
    }

 private:
    windows::Asa puerto_;
};

class PuertoWindows : public PuertoConCola {
 protected:
    std::unique_ptr<PuertoAsio> abierto(const std::string& ajustes = "9600,N,8,1") {
        return abiertoEn(cable_, ajustes);
    }

    void SetUp() override { ASSERT_FALSE(cable_.empty()) << "BN_CABLE_1 names no port"; }

    /// Has what is still on its way both ways arrive and go.
    void vaciarCable() {
        const std::string fin = "#fin#";
        const auto puerto = abierto();
        puerto->Output(fin);
        otro_.escribir(fin);
        std::string enviado;
        while (!enviado.ends_with(fin)) {
            const std::string mas = otro_.leer(1);
            ASSERT_FALSE(mas.empty()) << "the end has not come";
            enviado += mas;
        }
        std::string recibido;
        EXPECT_TRUE(cola_.hasta([&] { return (recibido += puerto->Input()).ends_with(fin); }));
    }

    const std::string cable_ = variable("BN_CABLE_1");
    OtroExtremo otro_{variable("BN_CABLE_2")};
};

std::string todosLosBytes() { return bytesVariados(1024); }

TEST_F(PuertoWindows, CarriesEveryByteValueUnchangedBothWays) {
    const auto puerto = abierto();
    otro_.escribir(todosLosBytes());
    EXPECT_EQ(recibir(*puerto, 1024), todosLosBytes());
    puerto->Output(todosLosBytes());
    EXPECT_EQ(otro_.leer(1024), todosLosBytes());
}

TEST_F(PuertoWindows, OpensWithEverySpeed) {
    for (const char* ajustes : {"300,N,8,1", "600,N,8,1", "1200,N,8,2", "2400,N,8,1", "4800,N,8,2",
                                "9600,N,8,1", "19200,N,8,1"}) {
        const auto puerto = abierto(ajustes);
        EXPECT_TRUE(puerto->PortOpen()) << ajustes;
    }
}

TEST_F(PuertoWindows, RaisesOnCommForASingleByte) {
    const auto puerto = abierto();
    otro_.escribir("x");
    ASSERT_TRUE(cola_.hasta([&] { return avisos_ > 0; }));
    EXPECT_EQ(puerto->CommEvent(), kComEvReceive);
    EXPECT_EQ(puerto->Input(), "x");
    otro_.escribir("y");
    ASSERT_TRUE(cola_.hasta([&] { return avisos_ > 1; }));
    EXPECT_EQ(puerto->Input(), "y");
}

TEST_F(PuertoWindows, SendsInOrderWhatTheLineTakesOnlyLittleByLittle) {
    const auto puerto = abierto();
    std::string largo;
    while (largo.size() < 40000) {
        largo += todosLosBytes();
    }
    puerto->Output(largo.substr(0, 30000));
    puerto->Output(largo.substr(30000));
    EXPECT_EQ(otro_.leer(largo.size()), largo);
}

TEST_F(PuertoWindows, KeepsASecondOpenerOutUntilItIsClosed) {
    if (::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr) {
        GTEST_SKIP() << "Wine hands a port out as often as it is asked for";
    }
    const auto puerto = abierto();
    EXPECT_EQ(errorAlAbrir(cable_), cable_ + ": está en uso por otro programa");
    EXPECT_TRUE(puerto->PortOpen());
    puerto->PortOpen(false);
    EXPECT_EQ(errorAlAbrir("\\\\.\\" + cable_), "");
}

TEST_F(PuertoWindows, NamesAPortThatDoesNotExist) {
    EXPECT_EQ(errorAlAbrir("COM217"), "COM217: no existe");
    EXPECT_EQ(errorAlAbrir("\\\\.\\COM217"), "COM217: no existe");
    EXPECT_EQ(errorAlAbrir(""), ": no existe");
    EXPECT_EQ(dispositivoDelCanal(16), "\\\\.\\COM16");
}

TEST_F(PuertoWindows, RefusesWhatIsNoSerialPort) {
    const prueba::CarpetaTemporal carpeta;
    const std::filesystem::path fichero = std::filesystem::temp_directory_path() / "bn-puerto.txt";
    prueba::escribirFichero(fichero, "intacto");
    const std::string nombre = fichero.string();
    EXPECT_EQ(errorAlAbrir(nombre), nombre + ": no es un puerto serie");
    EXPECT_EQ(prueba::leerFichero(fichero), "intacto");
    EXPECT_EQ(errorAlAbrir("NUL"), "NUL: no es un puerto serie");
    std::filesystem::remove(fichero);
}

TEST_F(PuertoWindows, ANotificationOfDiscardedBytesIsNotDelivered) {
    const auto puerto = abierto();
    otro_.escribir("v");
    ASSERT_TRUE(cola_.esperarAvisos(1));
    puerto->InBufferCount(0);
    otro_.escribir("n");
    ASSERT_TRUE(cola_.esperarAvisos(2));
    cola_.vaciar();
    EXPECT_EQ(avisos_, 1);
    EXPECT_EQ(puerto->Input(), "n");
}

TEST_F(PuertoWindows, DiscardsAlsoTheByteReadAhead) {
    asio::io_context contexto;
    const auto linea = abrirLinea(contexto, cable_, AjustesLinea{});
    const auto esperarByte = [&] {
        bool llegado = false;
        linea->alPoderLeer([&](bool funciona) { llegado = funciona; });
        contexto.restart();
        contexto.run_one_for(seconds(5));
        return llegado;
    };
    std::array<char, 16> leido{};
    otro_.escribir("v");
    ASSERT_TRUE(esperarByte());
    linea->descartarRecibido();
    EXPECT_EQ(linea->leer(leido.data(), leido.size()), 0U);
    otro_.escribir("n");
    ASSERT_TRUE(esperarByte());
    ASSERT_EQ(linea->leer(leido.data(), leido.size()), 1U);
    EXPECT_EQ(leido[0], 'n');
}

TEST_F(PuertoWindows, AnAnswerSentJustBeforeClosingStillGoesOut) {
    const auto puerto = abierto();
    puerto->Output("\x06");
    puerto->PortOpen(false);
    EXPECT_EQ(otro_.leer(1), "\x06");
}

TEST_F(PuertoWindows, CanBeClosedAndOpenedFromItsOwnNotification) {
    const auto puerto = abierto();
    puerto->OnComm.conectar([&] {
        puerto->PortOpen(false);
        puerto->PortOpen(true);
        puerto->Output("otra");
    });
    otro_.escribir("x");
    ASSERT_TRUE(cola_.hasta([&] { return avisos_ == 1; }));
    EXPECT_TRUE(puerto->PortOpen());
    EXPECT_EQ(otro_.leer(4), "otra");
}

TEST_F(PuertoWindows, CanBeDestroyedAtAnyMoment) {
    for (std::size_t vuelta = 0; vuelta < 50; ++vuelta) {
        auto puerto = abierto();
        otro_.escribir(todosLosBytes().substr(0, vuelta * 8 + 1));
        puerto->Output(todosLosBytes().substr(0, vuelta));
        if (vuelta % 2 == 0) {
            cola_.esperarAvisos(1);
        }
        const auto antes = steady_clock::now();
        puerto.reset();
        EXPECT_LT(steady_clock::now() - antes, seconds(1));
        avisos_ = 0;
        cola_.vaciar();
        EXPECT_EQ(avisos_, 0);
    }
    vaciarCable();
}

TEST_F(PuertoWindows, AnswersAByteWithoutDelay) {
    const auto puerto = abierto();
    puerto->OnComm.conectar([&] {
        puerto->Input();
        puerto->Output("\x06");
    });
    const auto antes = steady_clock::now();
    constexpr int kVueltas = 100;
    for (int i = 0; i < kVueltas; ++i) {
        otro_.escribir("x");
        ASSERT_TRUE(cola_.hasta([&] { return avisos_ > i; }));
        ASSERT_EQ(otro_.leer(1), "\x06");
    }
    const std::chrono::duration<double, std::milli> media =
        (steady_clock::now() - antes) / kVueltas;
    RecordProperty("mean_ms", std::to_string(media.count()));
    std::cout << "mean turnaround: " << media.count() << " ms\n";
    EXPECT_LT(media.count(), 10.0);
}

}  // namespace
}  // namespace bn
