// SPDX-License-Identifier: MIT
#include "link/fComm.h"

#include <exception>
#include <utility>

namespace bn {

namespace {

// The failure to open is told a moment later, never from inside Pedir.
constexpr int32_t kAvisoDeApertura = 10;

// Far beyond any frame: more than this without a terminator is noise, and only its end can matter.
constexpr std::size_t kRuidoMaximo = 4096;

const char* const kInterrumpida = "La descarga de pesadas ha sido interrumpida desde el ordenador";
const char* const kIrreconocibles = "Las tramas recibidas no son reconocibles";

}  // namespace

fComm::fComm(Plataforma& plataforma)
    : protocolo_(plataforma),
      xCom_(plataforma.nuevoPuerto()),
      Tim_(plataforma.nuevoTemporizador()) {
    xCom_->OnComm.conectar([this] { xCom_OnComm(); });
    Tim_->Timer.conectar([this] { Tim_Timer(); });
}

fComm::~fComm() {
    Tim_->Enabled(false);
    if (xCom_->PortOpen()) xCom_->PortOpen(false);
}

void fComm::TimeoutYRetrys(int32_t milisegundos, int16_t maximo) {
    espera_ = milisegundos;
    maximoIntentos_ = maximo;
}

void fComm::Caracteres(const std::string& inicial, const std::string& final,
                       const std::string& peticion, int16_t checksum) {
    protocolo_.Caracteres(inicial, final, peticion, checksum);
}

void fComm::Pedir(int16_t canal, const std::string& parametros) {
    mensaje_ = abrir(canal, parametros);
    Tim_->Enabled(false);
    if (!mensaje_.empty()) {
        mensaje_ = "No se puede iniciar el canal:\n" + mensaje_;
        Tim_->Interval(kAvisoDeApertura);
        estado_ = Estado::kNoAbierto;
        Tim_->Enabled(true);
        return;
    }
    recibidas_ = 0;
    intentos_ = 1;
    transmitir(Estado::kPedido);
}

/// The error's description; "" when the port is open.
std::string fComm::abrir(int16_t canal, const std::string& parametros) {
    try {
        if (xCom_->PortOpen()) xCom_->PortOpen(false);
        xCom_->CommPort(canal);
        xCom_->Settings(parametros);
        xCom_->PortOpen(true);
        return {};
    } catch (const std::exception& error) {
        return error.what();
    }
}

/// Sends what the state stands for, with empty buffers: whatever was on its way answers nothing
/// that was asked now.
void fComm::transmitir(Estado estado) {
    Tim_->Enabled(false);
    Tim_->Interval(espera_);
    switch (estado) {
        case Estado::kPedido:
            xCom_->Output(protocolo_.TramaPeticion());
            break;
        case Estado::kReconocido:
            xCom_->Output(protocolo_.ACK());
            break;
        case Estado::kRechazado:
            xCom_->Output(protocolo_.NAK());
            break;
        case Estado::kReposo:
        case Estado::kNoAbierto:
            break;
    }
    xCom_->InBufferCount(0);
    buffer_.clear();
    estado_ = estado;
    Tim_->Enabled(true);
}

void fComm::Tim_Timer() {
    Tim_->Enabled(false);
    if (estado_ == Estado::kNoAbierto) {
        terminar(0, mensaje_);
    } else if (enCurso() && intentos_ >= maximoIntentos_) {
        terminar(recibidas_, mensajeDeSilencio());
    } else if (enCurso()) {
        ++intentos_;
        transmitir(estado_);
    }
}

const char* fComm::mensajeDeSilencio() const {
    switch (estado_) {
        case Estado::kPedido:
            return "El indicador no contesta a las peticiones";
        case Estado::kReconocido:
            return "El indicador ha dejado de enviar tramas injustificadamente";
        default:
            return "El indicador no contesta tras enviar tramas irreconocibles";
    }
}

void fComm::xCom_OnComm() {
    if (xCom_->CommEvent() != kComEvReceive) return;
    if (!enCurso()) {
        xCom_->InBufferCount(0);
        return;
    }
    buffer_ += xCom_->Input();
    const std::size_t fin = buffer_.find(protocolo_.Terminador());
    if (fin == std::string::npos) {
        if (buffer_.size() > kRuidoMaximo) buffer_.erase(0, buffer_.size() - kRuidoMaximo);
        return;
    }
    // One frame a notification: what stays in the buffer waits for the next one.
    const std::string trama = buffer_.substr(0, fin + 1);
    buffer_.erase(0, fin + 1);
    Tim_->Enabled(false);
    switch (protocolo_.TramaValida(trama)) {
        case 1:
            pesadaRecibida();
            break;
        case 2:
            contadorRecibido();
            break;
        default:
            tramaIrreconocible();
            break;
    }
}

// The answers sent from here on leave the buffers alone, unlike those of transmitir; and a good
// record never gives back attempts: silences share one allowance over the whole cycle.

void fComm::tramaIrreconocible() {
    if (estado_ != Estado::kRechazado) {
        intentos_ = 1;
    } else if (intentos_ >= maximoIntentos_) {
        terminar(recibidas_, kIrreconocibles);
        return;
    } else {
        ++intentos_;
    }
    xCom_->Output(protocolo_.NAK());
    Tim_->Enabled(true);
    estado_ = Estado::kRechazado;
}

void fComm::pesadaRecibida() {
    int32_t ordinal = recibidas_ + 1;
    bool continuar = false;
    Pesada(ordinal, continuar, protocolo_);
    if (!continuar) {
        terminar(recibidas_, kInterrumpida);
        return;
    }
    ++recibidas_;
    estado_ = Estado::kReconocido;
    xCom_->Output(protocolo_.ACK());
    Tim_->Enabled(true);
}

void fComm::contadorRecibido() {
    recibidas_ = protocolo_.Contador();
    terminar(recibidas_, {});
    xCom_->Output(protocolo_.ACK());
}

/// The state changes before the handlers run: one that starts the next cycle must find this one
/// over, and one that fails must not leave it waiting for frames with its timer stopped.
void fComm::terminar(int32_t cuenta, std::string explicacion) {
    estado_ = Estado::kReposo;
    mensaje_ = explicacion;
    Resumen(cuenta, explicacion);
}

bool fComm::enCurso() const {
    return estado_ == Estado::kPedido || estado_ == Estado::kReconocido ||
           estado_ == Estado::kRechazado;
}

}  // namespace bn
