// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "tools/simulador/Sesion.h"

namespace bn::simulador {
namespace {

using namespace std::chrono_literals;
using ::testing::HasSubstr;

std::string leerFichero(const std::filesystem::path& ruta) {
    std::ifstream fichero(ruta, std::ios::binary);
    return {std::istreambuf_iterator<char>(fichero), {}};
}

// The computer's side of a line: the other end of the pseudo-terminal, opened as a serial port.
class Ordenador {
 public:
    Ordenador(const std::string& ruta, const Paro& paro)
        : linea_(Linea::dispositivo(ruta, Parametros{})), paro_(paro) {}

    void decir(const std::string& bytes) { linea_->escribir(bytes); }

    // What comes up to a carriage return; "" when it does not come in five seconds.
    std::string frase() {
        const Instante limite = ahora() + 5s;
        while (ahora() < limite) {
            const std::size_t fin = recibido_.find('\r');
            if (fin != std::string::npos) {
                std::string trozo = recibido_.substr(0, fin + 1);
                recibido_.erase(0, fin + 1);
                return trozo;
            }
            recibido_ += linea_->leer(limite, paro_).value_or("");
        }
        return "";
    }

 private:
    std::unique_ptr<Linea> linea_;
    const Paro& paro_;
    std::string recibido_;
};

class SesionEnPseudoterminal : public ::testing::Test {
 public:
    SesionEnPseudoterminal() {
        std::string plantilla = (std::filesystem::temp_directory_path() / "bnXXXXXX").string();
        carpeta_ = mkdtemp(plantilla.data());
        opciones_.enlace = (carpeta_ / "indicador").string();
        opciones_.registro = (carpeta_ / "registro").string();
        opciones_.salir = true;
        opciones_.indicador.pesadas = 2;
        Pesadas mismas(1, Forma::kLarga);
        for (int i = 0; i < 4; ++i) datos_.push_back(mismas.siguiente());
    }
    ~SesionEnPseudoterminal() override {
        if (hilo_.joinable()) hilo_.join();
        std::filesystem::remove_all(carpeta_);
    }

 protected:
    Ordenador arrancar() {
        hilo_ = std::thread([this] { Sesion(opciones_, salida_).ejecutar(paro_); });
        return conectar();
    }

    Ordenador conectar() {
        while (!std::filesystem::exists(opciones_.enlace)) std::this_thread::yield();
        return {opciones_.enlace, paro_};
    }

    std::string salida() {
        hilo_.join();
        return salida_.str();
    }

    std::filesystem::path carpeta_;
    Opciones opciones_;
    std::vector<std::string> datos_;
    Paro paro_;
    std::ostringstream salida_;
    std::thread hilo_;
};

TEST_F(SesionEnPseudoterminal, CarriesAWholeDownloadAndSumsItUp) {
    opciones_.ritmo = false;
    Ordenador ordenador = arrancar();
    ordenador.decir("\x06");
    EXPECT_EQ(ordenador.frase(), trama(datos_[0], {}));
    ordenador.decir("\x15");
    EXPECT_EQ(ordenador.frase(), trama(datos_[0], {}));
    ordenador.decir("\x06");
    EXPECT_EQ(ordenador.frase(), trama(datos_[1], {}));
    EXPECT_EQ(leerFichero(opciones_.registro), datos_[0] + "\r\n");
    ordenador.decir("\x06");
    EXPECT_EQ(ordenador.frase(), trama("0002", {}));
    ordenador.decir("\x06");
    const std::string texto = salida();
    EXPECT_EQ(texto.substr(0, 9), "/dev/pts/");
    EXPECT_THAT(texto, HasSubstr("\nenviadas=3 reconocidas=2 rechazadas=1 reenviadas=1 "));
    EXPECT_EQ(leerFichero(opciones_.registro), datos_[0] + "\r\n" + datos_[1] + "\r\n");
    EXPECT_FALSE(std::filesystem::is_symlink(opciones_.enlace));
}

TEST_F(SesionEnPseudoterminal, OutlivesAComputerThatClosesItsSide) {
    opciones_.ritmo = false;
    opciones_.indicador.espera = 50ms;
    {
        Ordenador primero = arrancar();
        primero.decir("\x06");
        EXPECT_EQ(primero.frase(), trama(datos_[0], {}));
    }
    Ordenador segundo = conectar();
    std::this_thread::sleep_for(60ms);  // the exchange's own time-out, not a guess at readiness
    for (const std::string& esperada :
         {trama(datos_[0], {}), trama(datos_[1], {}), trama("0002", {})}) {
        segundo.decir("\x06");
        EXPECT_EQ(segundo.frase(), esperada);
    }
    segundo.decir("\x06");
    EXPECT_THAT(salida(), HasSubstr("reconocidas=2"));
}

TEST_F(SesionEnPseudoterminal, BytesTakeTheTimeOfTheLine) {
    opciones_.indicador.pesadas = 1;
    opciones_.parametros = "9600,N,8,1";
    Ordenador ordenador = arrancar();
    const Instante inicio = ahora();
    ordenador.decir("\x06");
    EXPECT_EQ(ordenador.frase().size(), 79U);
    // The request and the frame: 80 bytes of 10 bits.
    const auto tiempo = ahora() - inicio;
    EXPECT_GE(tiempo, 83'333us);
    EXPECT_LT(tiempo, 400ms);
    ordenador.decir("\x06");
    ordenador.frase();
    ordenador.decir("\x06");
    salida();
}

TEST_F(SesionEnPseudoterminal, GoesAwayAndComesBackUnderTheSameLink) {
    opciones_.ritmo = false;
    opciones_.indicador.desapareceTras = 1;
    opciones_.vuelve = true;
    opciones_.vuelta = 20ms;
    const auto destino = [this] {
        std::error_code error;
        return std::filesystem::read_symlink(opciones_.enlace, error);
    };
    {
        Ordenador ordenador = arrancar();
        ordenador.decir("\x06");
        EXPECT_EQ(ordenador.frase(), trama(datos_[0], {}));
        ordenador.decir("\x06");
        while (!destino().empty()) std::this_thread::yield();
    }
    Ordenador ordenador = conectar();
    ordenador.decir("\x06");
    EXPECT_EQ(ordenador.frase(), trama(datos_[1], {}));
    ordenador.decir("\x06");
    EXPECT_EQ(ordenador.frase(), trama("0001", {}));
    ordenador.decir("\x06");
    EXPECT_THAT(salida(), HasSubstr("reconocidas=2"));
}

TEST_F(SesionEnPseudoterminal, TellsWhatHappensWhenAskedTo) {
    opciones_.ritmo = false;
    opciones_.detalle = true;
    opciones_.indicador.pesadas = 1;
    Ordenador ordenador = arrancar();
    for (int i = 0; i < 2; ++i) {
        ordenador.decir("\x06");
        ordenador.frase();
    }
    ordenador.decir("\x06");
    EXPECT_THAT(salida(),
                HasSubstr("\npetición\nenviada\nreconocida 1\ncontador 0001\nterminada\n"));
}

TEST(Sesion, ADeviceThatIsNotThereIsToldByItsName) {
    EXPECT_THAT([] { Linea::dispositivo("/no/hay/tal", Parametros{}); },
                ::testing::ThrowsMessage<ErrorLinea>(HasSubstr("No se puede abrir /no/hay/tal: ")));
}

TEST(Sesion, ALinkThatCannotBeMadeIsToldByItsName) {
    EXPECT_THAT([] { Linea::pseudoterminal("/no/hay/tal"); },
                ::testing::ThrowsMessage<ErrorLinea>(
                    HasSubstr("No se puede crear el enlace /no/hay/tal: ")));
}

TEST(Sesion, ALogThatCannotBeWrittenIsToldByItsName) {
    Opciones opciones;
    opciones.registro = "/no/hay/tal";
    std::ostringstream salida;
    EXPECT_THAT([&] { Sesion(opciones, salida); },
                ::testing::ThrowsMessage<ErrorLinea>(HasSubstr("/no/hay/tal")));
}

}  // namespace
}  // namespace bn::simulador
