// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "tools/simulador/Averias.h"
#include "tools/simulador/Pesadas.h"
#include "tools/simulador/Tramas.h"

namespace bn::simulador {

/// Time of any steady clock.
using Instante = std::chrono::nanoseconds;

struct AjustesIndicador {
    Caracteres caracteres;
    int32_t pesadas = 10;                    // weighings of each batch
    int32_t tandas = 1;                      // batches; 0 for a new one at every request
    int32_t digitos = 4;                     // of the counter record
    std::chrono::milliseconds espera{2000};  // without an answer the exchange is given up; 0 never
    int32_t silencioTras = 0;                // falls silent after that acknowledged weighing
    std::chrono::milliseconds silencio{0};   // for how long; 0 for ever
    int32_t desapareceTras = 0;              // goes away after that acknowledged weighing
};

/// What has happened so far. Only weighings are counted, not counter records.
struct Cuentas {
    int32_t enviadas = 0;  // transmissions, repeated ones included
    int32_t reconocidas = 0;
    int32_t rechazadas = 0;
    int32_t reenviadas = 0;
    int32_t descargas = 0;  // exchanges that reached the counter record's acknowledge
    std::array<int32_t, kNumeroAverias> averias{};
};

enum class Suceso {
    kPeticion,
    kEnviada,
    kReconocida,
    kRechazada,
    kContador,
    kTerminada,
    kAbandonada,
    kMudo,
    kDesaparecido
};

/// The indicator's side of the exchange, without line or clock: what is heard and the time go in,
/// what is to be sent comes out. A weighing stays with it until its acknowledge has been heard.
class Indicador {
 public:
    using Testigo = std::function<void(Suceso, const std::string& datos)>;

    Indicador(const AjustesIndicador& ajustes, Pesadas pesadas, Averias averias);

    /// Is told everything that happens; kReconocida carries the weighing's data.
    void alSuceder(Testigo testigo) { testigo_ = std::move(testigo); }

    /// Characters of the computer. Those that come while a frame goes out are not heard.
    void oir(std::string_view bytes, Instante ahora);
    /// What has to be sent now; nothing when it is the computer's turn. Asked once per frame.
    std::optional<Envio> transmitir();
    /// The last byte of what transmitir gave has left.
    void transmitido(Instante ahora);
    /// Lets time pass: an answer that does not come, a silence that ends.
    void tiempo(Instante ahora);
    /// When tiempo has to be called at the latest.
    std::optional<Instante> plazo() const { return plazo_; }
    /// It has gone away, and comes back with volver.
    bool desaparecido() const { return estado_ == Estado::kDesaparecido; }
    void volver();
    /// Every batch has been acknowledged, counter record included.
    bool acabado() const;
    const Cuentas& cuentas() const { return cuentas_; }

 private:
    enum class Estado {
        kReposo,
        kPorEnviar,
        kEnviando,
        kEsperando,
        kCortada,
        kMudo,
        kDesaparecido
    };

    void oirUno(char c, Instante ahora);
    void oirPeticion();
    void oirRespuesta(char c, Instante ahora);
    void reconocer(Instante ahora);
    void preparar();
    void repetir();
    void reposar();
    void contar(Averia averia);
    void avisar(Suceso suceso, const std::string& datos = {}) const;

    AjustesIndicador ajustes_;
    Pesadas pesadas_;
    Averias averias_;
    Testigo testigo_;
    Estado estado_ = Estado::kReposo;
    std::optional<Instante> plazo_;
    std::deque<std::string> pendientes_;
    int32_t tandasHechas_ = 0;
    int32_t enEstaDescarga_ = 0;  // acknowledged since the request
    std::string datos_;           // of the record in hand
    bool esContador_ = false;
    bool enviadaAntes_ = false;    // this record has already left once
    bool cortada_ = false;         // the frame going out is a cut one
    int32_t averiasSeguidas_ = 0;  // on the record in hand
    Cuentas cuentas_;
};

}  // namespace bn::simulador
