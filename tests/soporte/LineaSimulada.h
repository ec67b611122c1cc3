// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/Entrega.h"
#include "tests/soporte/PlataformaDePrueba.h"
#include "tests/soporte/TiempoVirtual.h"

namespace bn::prueba {

/// What a line does to what travels on it; probabilities are per byte, frame or answer.
struct AveriasLinea {
    double altera = 0;           ///< a byte becomes another
    double pierde = 0;           ///< a byte goes missing
    double ruido = 0;            ///< a byte comes in before this one, one in four a carriage return
    double pierdeTrama = 0;      ///< nothing of a frame arrives
    double cortaTrama = 0;       ///< nothing arrives from some byte on
    double retrasaTrama = 0;     ///< all that arrives from some byte on is late
    double pierdeRespuesta = 0;  ///< the computer's character does not arrive
    double alteraRespuesta = 0;
    double retrasaRespuesta = 0;
    Micros retrasoMaximo = 0;
};

class LineaSimulada;

/// A port of the simulated line: one OnComm for each carriage return, as from the real one.
class PuertoSimulado : public MSComm {
 public:
    PuertoSimulado(LineaSimulada& linea, Entrega& entrega);
    ~PuertoSimulado() override;

    void CommPort(int16_t) override {}
    void Settings(const std::string&) override {}
    void PortOpen(bool abrir) override;
    bool PortOpen() const override { return abierto_; }
    void Output(const std::string& bytes) override;
    std::string Input() override;
    void InBufferCount(int16_t cero) override;
    int16_t CommEvent() const override { return kComEvReceive; }

    void llegar(const std::string& bytes, const std::vector<std::size_t>& origenes);
    void desenchufar();

 private:
    LineaSimulada& linea_;
    Entrega& entrega_;
    std::shared_ptr<bool> vivo_ = std::make_shared<bool>(true);
    std::string recibido_;
    std::vector<std::size_t> origenes_;
    std::size_t descartes_ = 0;
    bool abierto_ = false;
};

/// The wire between one port and one indicator, in virtual time, with its faults.
class LineaSimulada {
 public:
    static constexpr std::size_t kRuido = static_cast<std::size_t>(-1);

    /// A character that the computer has sent.
    struct Salida {
        char c = 0;
        bool repetida = false;  ///< from the timer
    };
    using AlOir = std::function<void(char c, std::size_t salida)>;

    /// Baud rate, and the grid of moments at which what has arrived is handed over.
    LineaSimulada(TiempoVirtual& tiempo, Azar& azar, int64_t baudios, Micros agrupa);

    AveriasLinea averias;
    bool enchufada = true;
    AlOir alOir;                                      ///< the indicator's ear
    std::function<void(const Salida&)> alTransmitir;  ///< the onlooker's
    std::function<void(const std::string&)> alLeer;   ///< likewise, what the program reads
    std::function<void()> alAbrir;                    ///< likewise, that it opens its port
    bool enTemporizador = false;                      ///< the program is handling a time-out

    std::size_t vencimiento = 0;  ///< which one, from 1

    /// A frame of the indicator, known by its number; the moment at which its last byte has left.
    Micros emitir(const std::string& trama, std::size_t envio);
    /// A character of the computer.
    void transmitir(char c);
    /// Pulled out: the port is gone until it is opened anew.
    void desenchufar();

    /// The frame that each byte belongs to which the program has read (kRuido: none).
    std::vector<std::size_t> origenes;
    const std::vector<Salida>& salidas() const { return salidas_; }

 private:
    friend class PuertoSimulado;
    struct Byte {
        Micros cuando = 0;
        char c = 0;
        std::size_t origen = kRuido;
    };

    std::vector<Byte> estropear(const std::string& trama, std::size_t envio, Micros inicio);
    void entregarATrozos(const std::vector<Byte>& bytes);
    char otro(char c);

    TiempoVirtual& tiempo_;
    Azar& azar_;
    Micros porByte_;
    Micros agrupa_;
    Micros ultimaLlegada_ = 0;  // the line keeps its order
    Micros ultimaRespuesta_ = 0;
    PuertoSimulado* puerto_ = nullptr;
    std::vector<Salida> salidas_;
};

/// The outside with a simulated line: its ports stand on it, its timers in its virtual time.
class PlataformaSimulada : public PlataformaDePrueba {
 public:
    PlataformaSimulada(std::filesystem::path carpeta, TiempoVirtual& tiempo, LineaSimulada& linea);
    std::unique_ptr<MSComm> nuevoPuerto() override;
    std::unique_ptr<Temporizador> nuevoTemporizador() override;

 private:
    TiempoVirtual& tiempo_;
    LineaSimulada& linea_;
    Entrega entrega_;
};

}  // namespace bn::prueba
