// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "link/Copias.h"
#include "link/Tampon.h"
#include "link/pesaDX5.h"
#include "platform/Evento.h"
#include "platform/Plataforma.h"

namespace bn {

/// The serial channel: runs one download cycle with the indicator. It asks, answers every frame,
/// repeats itself when the indicator stays silent, and tells its user of every weighing and of the
/// end. Everything happens on the user-interface thread.
class fComm {
 public:
    /// Creates its one port and its one timer.
    explicit fComm(Plataforma& plataforma);
    fComm(const fComm&) = delete;
    fComm& operator=(const fComm&) = delete;
    /// Closes the port.
    ~fComm();

    /// How long to wait after each transmission, in milliseconds, and how often to transmit.
    void TimeoutYRetrys(int32_t milisegundos, int16_t maximo);
    /// Handed on to pesaDX5::Caracteres.
    void Caracteres(const std::string& inicial, const std::string& final,
                    const std::string& peticion, int16_t checksum);
    /// For the next Pedir alone: the data of the last record of a download that did not end well,
    /// "" for none. If that cycle begins with it, and it has a delivery note number, its ACK had
    /// not been heard: it is acknowledged again, and neither told nor counted.
    void CopiaEsperada(const std::string& datos);
    /// Opens the channel with the settings ("9600,N,8,1") and starts a cycle, whatever was running.
    /// Returns at once and never throws ErrorPuerto: all results come through the events.
    void Pedir(int16_t canal, const std::string& parametros);

    /// A weighing has arrived: its ordinal, whether to acknowledge it and go on (false on entry),
    /// and the record. What is left false ends the cycle without an acknowledge.
    Evento<int32_t&, bool&, pesaDX5&> Pesada;
    /// The cycle has ended: with an empty message and the indicator's counter, or with a message in
    /// Spanish (UTF-8) and the number of weighings accepted.
    Evento<int32_t&, std::string&> Resumen;

 private:
    enum class Estado : int16_t {
        kReposo = 0,
        kNoAbierto = 1,
        kPedido = 2,
        kReconocido = 3,
        kRechazado = 4,
    };

    void xCom_OnComm();
    void Tim_Timer();
    std::string abrir(int16_t canal, const std::string& parametros);
    void transmitir(Estado estado);
    std::string transmision() const;
    bool atenderTrama();
    int16_t reconocer(const std::string& trama);
    void tramaIrreconocible(const Tampon::Trama& trama);
    void pesadaRecibida();
    void contadorRecibido();
    void terminar(int32_t cuenta, std::string explicacion);
    const char* mensajeDeSilencio() const;
    bool enCurso() const;

    pesaDX5 protocolo_;
    std::unique_ptr<MSComm> xCom_;
    std::unique_ptr<Temporizador> Tim_;
    Estado estado_ = Estado::kReposo;
    int16_t intentos_ = 0;
    int16_t maximoIntentos_ = 4;
    int32_t espera_ = 500;
    std::string mensaje_;
    Tampon tampon_{protocolo_};
    Copias copias_;
    int32_t recibidas_ = 0;
};

}  // namespace bn
