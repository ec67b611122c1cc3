// SPDX-License-Identifier: MIT
#include "tests/soporte/PlataformaDePrueba.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "destinations/excel/ObjectModel.h"
#include "destinations/xls/MotorInterno.h"
#include "platform/Ficheros.h"

namespace bn {

/// Virtual time, and the timers that live in it.
class PlataformaDePrueba::Reloj {
 public:
    class Alarma : public Temporizador {
     public:
        Alarma(std::shared_ptr<std::vector<Alarma*>> todas, const int64_t& instante)
            : todas_(std::move(todas)), instante_(instante) {
            todas_->push_back(this);
        }
        ~Alarma() override { std::erase(*todas_, this); }

        void Interval(int32_t milisegundos) override {
            intervalo_ = std::max<int32_t>(milisegundos, 1);
            vence = instante_ + intervalo_;
        }
        void Enabled(bool activo) override {
            if (activo && !activa_) vence = instante_ + intervalo_;
            if (!activo) {
                ++turno_;  // a tick that waits to be delivered is dropped
                enEspera_ = false;
            }
            activa_ = activo;
        }
        bool Enabled() const override { return activa_; }

        /// False when the last tick still waits: one is enough.
        bool vencer() { return !std::exchange(enEspera_, true); }
        void sonar() {
            enEspera_ = false;
            Timer();
        }
        void rearmar() { vence += intervalo_; }
        std::weak_ptr<bool> vida() const { return vida_; }
        int64_t turno() const { return turno_; }

        int64_t vence = 0;

     private:
        std::shared_ptr<std::vector<Alarma*>> todas_;
        const int64_t& instante_;
        std::shared_ptr<bool> vida_ = std::make_shared<bool>(true);
        int32_t intervalo_ = 1;
        int64_t turno_ = 0;
        bool activa_ = false;
        bool enEspera_ = false;
    };

    std::unique_ptr<Temporizador> nueva() { return std::make_unique<Alarma>(alarmas_, instante_); }

    void avanzar(int32_t milisegundos, Entrega& entrega) {
        const int64_t hasta = instante_ + milisegundos;
        while (Alarma* alarma = siguiente(hasta)) {
            instante_ = alarma->vence;
            alarma->rearmar();
            if (!alarma->vencer()) continue;
            entrega.entregar([alarma, vida = alarma->vida(), turno = alarma->turno()] {
                if (!vida.expired() && alarma->turno() == turno) alarma->sonar();
            });
        }
        instante_ = hasta;
    }

 private:
    Alarma* siguiente(int64_t hasta) const {
        Alarma* primera = nullptr;
        for (Alarma* alarma : *alarmas_) {
            if (!alarma->Enabled() || alarma->vence > hasta) continue;
            if (primera == nullptr || alarma->vence < primera->vence) primera = alarma;
        }
        return primera;
    }

    int64_t instante_ = 0;
    std::shared_ptr<std::vector<Alarma*>> alarmas_ = std::make_shared<std::vector<Alarma*>>();
};

PuertoDePrueba::PuertoDePrueba(PlataformaDePrueba& plataforma) : plataforma_(plataforma) {}

PuertoDePrueba::~PuertoDePrueba() {
    if (plataforma_.puerto_ == this) plataforma_.puerto_ = nullptr;
}

void PuertoDePrueba::recibir(const std::string& bytes) {
    if (!abierto_) return;
    recibido_ += bytes;
    plataforma_.entrega_.entregar([this, vida = std::weak_ptr<bool>(vivo_)] {
        if (!vida.expired()) OnComm();
    });
}

void PuertoDePrueba::CommPort(int16_t canal) {
    if (!errorEnNumero.empty()) throw ErrorPuerto(errorEnNumero);
    numero = canal;
}

void PuertoDePrueba::Settings(const std::string& parametros) {
    if (!errorEnAjustes.empty()) throw ErrorPuerto(errorEnAjustes);
    ajustes = parametros;
}

void PuertoDePrueba::PortOpen(bool abrir) {
    if (abrir && !errorAlAbrir.empty()) throw ErrorPuerto(errorAlAbrir);
    abierto_ = abrir;
    recibido_.clear();
}

bool PuertoDePrueba::PortOpen() const { return abierto_; }

void PuertoDePrueba::Output(const std::string& bytes) { enviado += bytes; }

std::string PuertoDePrueba::Input() { return std::exchange(recibido_, {}); }

void PuertoDePrueba::InBufferCount(int16_t cero) {
    if (cero == 0) recibido_.clear();
}

int16_t PuertoDePrueba::CommEvent() const { return evento; }

PlataformaDePrueba::PlataformaDePrueba(std::filesystem::path carpeta)
    : carpeta_(std::move(carpeta)), reloj_(std::make_unique<Reloj>()) {}

PlataformaDePrueba::~PlataformaDePrueba() = default;

PuertoDePrueba& PlataformaDePrueba::puerto() {
    if (puerto_ == nullptr) throw std::logic_error("no port has been created, or it is gone");
    return *puerto_;
}

void PlataformaDePrueba::avanzar(int32_t milisegundos) { reloj_->avanzar(milisegundos, entrega_); }

std::filesystem::path PlataformaDePrueba::carpetaPrograma() const { return carpeta_; }

std::unique_ptr<MSComm> PlataformaDePrueba::nuevoPuerto() {
    auto puerto = std::make_unique<PuertoDePrueba>(*this);
    puerto_ = puerto.get();
    return puerto;
}

std::unique_ptr<Temporizador> PlataformaDePrueba::nuevoTemporizador() { return reloj_->nueva(); }

std::unique_ptr<excel::Application> PlataformaDePrueba::nuevaAplicacionExcel(bool) {
    if (motor != "interno" && motor != "auto")
        throw excel::ErrorExcel("No hay ninguna hoja de cálculo: " + motor);
    return xls::nuevaAplicacionInterna([this] { return ahora(); }, disco());
}

bool PlataformaDePrueba::esLibroSano(const std::filesystem::path& libro) const {
    return xls::esLibroSano(disco(), libro);
}

double PlataformaDePrueba::ahora() const { return horaActual; }

void PlataformaDePrueba::mensajeCritico(const std::string& texto) { mensajes.push_back(texto); }

std::string PlataformaDePrueba::carpetaEspecial(int32_t numero) const {
    return numero == 5 ? documentos : std::string();
}

int32_t PlataformaDePrueba::abrirDocumento(const std::string& rutaODireccion) {
    abiertos.push_back(rutaODireccion);
    return respuestaAbrir;
}

void PlataformaDePrueba::enArranque(bool activo) {
    if (!errorEnArranque.empty()) throw ErrorFichero(errorEnArranque);
    arranque = activo;
}

}  // namespace bn
