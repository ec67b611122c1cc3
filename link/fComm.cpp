// SPDX-License-Identifier: MIT
#include "link/fComm.h"

#include <exception>
#include <utility>

namespace bn {

namespace {

// The failure to open is told a moment later, never from inside Pedir.
constexpr int32_t kAvisoDeApertura = 10;

// What is shorter than this is no frame, but what noise has left before one or at its end.
constexpr std::size_t kTramaMinima = 5;

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

void fComm::CopiaEsperada(const std::string& datos) { copias_.esperar(datos); }

void fComm::Pedir(int16_t canal, const std::string& parametros) {
    mensaje_ = abrir(canal, parametros);
    copias_.empezar();
    tampon_.empezar();
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
    xCom_->InBufferCount(0);
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

/// Forgets what had come before and sends what the state stands for. Nothing is discarded after
/// that: it may be the answer already, or the rest of a frame.
void fComm::transmitir(Estado estado) {
    Tim_->Enabled(false);
    Tim_->Interval(espera_);
    estado_ = estado;
    const std::string bytes = transmision();
    tampon_.olvidar();
    xCom_->Output(bytes);
    Tim_->Enabled(true);
}

/// What the state stands for; but an acknowledge heard over a frame that has only begun would let
/// the indicator forget what was never read.
std::string fComm::transmision() const {
    std::string propia = estado_ == Estado::kPedido ? protocolo_.TramaPeticion() : protocolo_.ACK();
    const bool reconoce = propia == protocolo_.ACK();
    if (estado_ == Estado::kRechazado || (reconoce && tampon_.aMedias())) return protocolo_.NAK();
    return propia;
}

void fComm::Tim_Timer() {
    Tim_->Enabled(false);
    if (estado_ == Estado::kNoAbierto) return terminar(0, mensaje_);
    if (!enCurso()) return;
    // A last look, so that what the transmission makes forgotten has been judged.
    if (tampon_.anadir(xCom_->Input())) {
        atenderTrama();
        if (enCurso()) Tim_->Enabled(true);  // also after a frame that gets no answer
    } else if (intentos_ >= maximoIntentos_) {
        terminar(recibidas_, mensajeDeSilencio());
    } else {
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
    tampon_.anadir(xCom_->Input());
    // One frame a notification: what stays in the buffer waits for the next one. A frame that was
    // held back has let its own pass by.
    if (tampon_.hayTrama() && atenderTrama() && enCurso() && tampon_.hayTrama()) atenderTrama();
}

/// True when the frame had been held back by an earlier notification.
bool fComm::atenderTrama() {
    const Tampon::Trama trama = tampon_.tomar();
    const int16_t tipo = reconocer(trama.bytes);
    if (tipo == 1 && copias_.esLaDelNak(protocolo_)) {
        // The indicator will hear the acknowledge that has gone out already, or its repetition: the
        // time-out runs on. One more would put an indicator that keeps an answer one ahead.
        estado_ = Estado::kReconocido;
        return trama.retenida;
    }
    Tim_->Enabled(false);
    switch (tipo) {
        case 1:
            pesadaRecibida();
            break;
        case 2:
            contadorRecibido();
            break;
        default:
            tramaIrreconocible(trama);
            break;
    }
    return trama.retenida;
}

int16_t fComm::reconocer(const std::string& trama) {
    try {
        return protocolo_.TramaValida(trama);
    } catch (...) {
        Tim_->Enabled(false);  // nothing must be repeated over a frame that could not be traced
        throw;
    }
}

// The answers sent from here on leave the buffers alone, unlike those of transmitir; and a good
// record never gives back attempts: silences share one allowance over the whole cycle.

void fComm::tramaIrreconocible(const Tampon::Trama& trama) {
    if (estado_ != Estado::kRechazado) {
        intentos_ = 1;
    } else if (intentos_ >= maximoIntentos_) {
        terminar(recibidas_, kIrreconocibles);
        return;
    } else {
        ++intentos_;
    }
    tampon_.rechazada(trama.bytes);
    // The indicator is in the middle of a frame, or has been answered for this one already.
    if (!tampon_.vacio() || trama.resto || trama.bytes.size() < kTramaMinima) copias_.nakDeMas();
    xCom_->Output(protocolo_.NAK());
    Tim_->Enabled(true);
    estado_ = Estado::kRechazado;
}

void fComm::pesadaRecibida() {
    const std::string datos = protocolo_.Datos();
    if (!copias_.esLaEsperada(protocolo_)) {
        int32_t ordinal = recibidas_ + 1;
        bool continuar = false;
        Pesada(ordinal, continuar, protocolo_);
        if (!continuar) {
            terminar(recibidas_, kInterrumpida);
            return;
        }
        ++recibidas_;
    }
    copias_.aceptada(datos);
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
