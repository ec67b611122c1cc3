// SPDX-License-Identifier: MIT
#include "tools/simulador/Indicador.h"

#include <utility>

namespace bn::simulador {

Indicador::Indicador(const AjustesIndicador& ajustes, Pesadas pesadas, Averias averias)
    : ajustes_(ajustes), pesadas_(pesadas), averias_(averias) {}

void Indicador::oir(std::string_view bytes, Instante ahora) {
    for (const char c : bytes) oirUno(c, ahora);
}

void Indicador::oirUno(char c, Instante ahora) {
    switch (estado_) {
        case Estado::kReposo:
            if (c == ajustes_.caracteres.peticion) oirPeticion();
            break;
        case Estado::kEsperando:
            oirRespuesta(c, ahora);
            break;
        case Estado::kCortada:
            // The record has not left whole, so this cannot be its acknowledge: the computer
            // repeats what it said last.
            if (c == kAck || c == kNak || c == ajustes_.caracteres.peticion) repetir();
            break;
        case Estado::kPorEnviar:
        case Estado::kEnviando:
        case Estado::kMudo:
        case Estado::kDesaparecido:
            break;
    }
}

void Indicador::oirPeticion() {
    avisar(Suceso::kPeticion);
    enEstaDescarga_ = 0;
    const bool quedanTandas = ajustes_.tandas == 0 || tandasHechas_ < ajustes_.tandas;
    if (pendientes_.empty() && quedanTandas) {
        ++tandasHechas_;
        for (int32_t i = 0; i < ajustes_.pesadas; ++i) pendientes_.push_back(pesadas_.siguiente());
    }
    preparar();
}

void Indicador::oirRespuesta(char c, Instante ahora) {
    const bool otraPeticion = c == ajustes_.caracteres.peticion && c != kAck;
    if (c != kAck && c != kNak && !otraPeticion) return;
    // The computer does not repeat the acknowledge of a counter record, so that one is never lost.
    if (!esContador_ && !otraPeticion && averias_.pierdeRespuesta(averiasSeguidas_)) {
        contar(Averia::kRespuesta);
        return;
    }
    if (otraPeticion) {
        oirPeticion();
    } else if (c == kAck) {
        reconocer(ahora);
    } else {
        if (!esContador_) ++cuentas_.rechazadas;
        avisar(Suceso::kRechazada, datos_);
        repetir();
    }
}

void Indicador::reconocer(Instante ahora) {
    if (esContador_) {
        ++cuentas_.descargas;
        reposar();
        avisar(Suceso::kTerminada);
        return;
    }
    ++cuentas_.reconocidas;
    ++enEstaDescarga_;
    pendientes_.pop_front();
    avisar(Suceso::kReconocida, datos_);
    if (cuentas_.reconocidas == ajustes_.desapareceTras) {
        reposar();
        estado_ = Estado::kDesaparecido;
        avisar(Suceso::kDesaparecido);
    } else if (cuentas_.reconocidas == ajustes_.silencioTras) {
        reposar();
        estado_ = Estado::kMudo;
        if (ajustes_.silencio.count() > 0) plazo_ = ahora + ajustes_.silencio;
        avisar(Suceso::kMudo);
    } else {
        preparar();
    }
}

void Indicador::preparar() {
    esContador_ = pendientes_.empty();
    datos_ = esContador_ ? datosContador(enEstaDescarga_, ajustes_.digitos) : pendientes_.front();
    enviadaAntes_ = false;
    averiasSeguidas_ = 0;
    repetir();
}

void Indicador::repetir() {
    estado_ = Estado::kPorEnviar;
    plazo_.reset();
}

void Indicador::reposar() {
    estado_ = Estado::kReposo;
    plazo_.reset();
}

std::optional<Envio> Indicador::transmitir() {
    if (estado_ != Estado::kPorEnviar) return std::nullopt;
    const Averia averia = averias_.sortear(averiasSeguidas_);
    if (averia == Averia::kNinguna) {
        averiasSeguidas_ = 0;
    } else {
        contar(averia);
    }
    cortada_ = averia == Averia::kCorte;
    if (!esContador_) {
        ++cuentas_.enviadas;
        if (enviadaAntes_) ++cuentas_.reenviadas;
    }
    enviadaAntes_ = true;
    estado_ = Estado::kEnviando;
    avisar(esContador_ ? Suceso::kContador : Suceso::kEnviada, datos_);
    const std::string bytes = trama(datos_, ajustes_.caracteres);
    return averias_.aplicar(averia, bytes, ajustes_.caracteres);
}

void Indicador::transmitido(Instante ahora) {
    if (estado_ != Estado::kEnviando) return;
    estado_ = cortada_ ? Estado::kCortada : Estado::kEsperando;
    // The counter's acknowledge comes once the computer has saved everything, however long that
    // takes; heard too late, it would be taken for a new request.
    if (ajustes_.espera.count() > 0 && !esContador_) plazo_ = ahora + ajustes_.espera;
}

void Indicador::tiempo(Instante ahora) {
    if (!plazo_ || ahora < *plazo_) return;
    const bool calla = estado_ == Estado::kMudo;
    // Only by giving up can it tell, later, a new request from the acknowledge it waits for: both
    // are usually the same character. What has not been acknowledged is sent again.
    reposar();
    if (!calla) avisar(Suceso::kAbandonada, datos_);
}

void Indicador::volver() {
    if (estado_ == Estado::kDesaparecido) reposar();
}

bool Indicador::acabado() const {
    return estado_ == Estado::kReposo && pendientes_.empty() && ajustes_.tandas > 0 &&
           tandasHechas_ >= ajustes_.tandas && cuentas_.descargas > 0;
}

void Indicador::contar(Averia averia) {
    ++averiasSeguidas_;
    ++cuentas_.averias[static_cast<std::size_t>(averia)];
}

void Indicador::avisar(Suceso suceso, const std::string& datos) const {
    if (testigo_) testigo_(suceso, datos);
}

}  // namespace bn::simulador
