// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <deque>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "tests/link/SimulacionLinea.h"
#include "tests/soporte/IndicadorSimulado.h"
#include "tests/soporte/LineaSimulada.h"

namespace bn::prueba {

/// Looks on from outside at what the program reads, sends and tells, knows which of the indicator's
/// frames each byte belongs to, and judges at the end what has become of each record.
class ObservadorLinea {
 public:
    ObservadorLinea(const LineaSimulada& linea, const IndicadorSimulado& indicador)
        : linea_(linea), indicador_(indicador) {}

    void empiezaDescarga();
    void lee(const std::string& bytes);
    void transmite(const LineaSimulada::Salida& salida);
    /// A weighing is told. The record, or kRuido when the line has made another one of it.
    std::size_t pesada(const std::string& datos);
    /// The last one told has not been kept after all: the program died over it.
    void desdecir() {
        if (!altas_.empty()) altas_.pop_back();
    }
    /// The cycle is over: what is sent after that answers nothing.
    void acaba() { enCurso_ = false; }
    /// The last record told; kRuido when there is none.
    std::size_t ultimo() const { return altas_.empty() ? kNinguno : altas_.back().registro; }
    std::size_t altas() const { return altas_.size(); }

    void juzgar(ResultadoSimulacion& resultado) const;

 private:
    static constexpr std::size_t kNinguno = LineaSimulada::kRuido;

    /// A frame that the program has taken from its buffer.
    struct Trama {
        std::string bytes;
        std::size_t envio = kNinguno;  // of its last byte
        bool resto = false;            // a repetition had forgotten its beginning
        bool quedaban = false;         // bytes waited behind it
    };
    enum class Clase { kPeticion, kRepeticion, kAck, kNak, kFinal };
    /// What a character sent was for.
    struct Respuesta {
        Clase clase = Clase::kPeticion;
        std::size_t registro = kNinguno;  // answered
        bool deMas = false;               // a NAK that may bring a copy beside the record
        bool aMedias = false;             // a repetition over a frame begun
        bool sobreEntera = false;         // a repetition over a whole frame not yet taken
        bool sinPrincipio = false;        // for bytes that do not begin as a frame does
        int descarga = 0;
    };
    struct Alta {
        std::size_t registro = kNinguno;
        std::size_t envio = kNinguno;
        std::size_t respuesta = kNinguno;
    };

    bool hayTrama() const { return buffer_.find('\r') != std::string::npos; }
    Trama tomar();
    Trama tomarHasta(bool legible);
    bool legible(const std::string& bytes) const;
    std::size_t registroDe(std::size_t envio) const;
    std::string causaDePerdida(const IndicadorSimulado::Olvido& olvido) const;
    std::string causaDeDoble(const Alta& primera, const Alta& segunda) const;
    bool desfasada(std::size_t respuesta) const;
    bool aceptadoEntre(std::size_t desde, std::size_t hasta) const;
    bool numerado(std::size_t registro) const;

    const LineaSimulada& linea_;
    const IndicadorSimulado& indicador_;
    std::string buffer_;
    std::deque<std::size_t> origenes_;
    std::set<std::string> cortadas_;  // by their own check character, in this download
    bool restoPendiente_ = false;
    std::size_t finalLeidoEn_ = kNinguno;  // the time-out whose last look has read a terminator
    std::size_t respondida_ = kNinguno;    // the record told that the next answer is for
    bool porResponder_ = false;
    bool enCurso_ = false;
    int descarga_ = -1;
    std::vector<Respuesta> respuestas_;
    std::vector<Alta> altas_;
    std::map<std::size_t, int> tragadas_;  // copies taken without an answer, by record
    std::set<std::size_t> alteradas_;
};

}  // namespace bn::prueba
