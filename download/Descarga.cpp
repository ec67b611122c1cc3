// SPDX-License-Identifier: MIT
#include "download/Descarga.h"

#include <utility>

#include "download/PasoDeGuardado.h"
#include "platform/Ficheros.h"

namespace bn {

Descarga::Descarga(Plataforma& plataforma)
    : plataforma_(plataforma),
      mSaco_(std::make_unique<sacoTramas>(plataforma)),
      mExcel_(std::make_unique<XCel>(plataforma)),
      mCom_(std::make_unique<fComm>(plataforma)) {
    mCom_->Pesada.conectar([this](int32_t& numero, bool& aceptada, pesaDX5& pesada) {
        mCom_Pesada(numero, aceptada, pesada);
    });
    mCom_->Resumen.conectar([this](int32_t& recibidas, std::string& explicacion) {
        mCom_Resumen(recibidas, explicacion);
    });
}

Descarga::~Descarga() {
    mCom_.reset();
    mExcel_.reset();
    mSaco_.reset();
    configuracion_.reset();
}

void Descarga::DatosCfg(std::shared_ptr<Setup> configuracion) {
    configuracion_ = std::move(configuracion);
}

bool Descarga::iniciarProceso() {
    if (enCurso()) return false;
    if (!mSaco_->iniGuardo()) return false;
    if (!configuracion_) configuracion_ = std::make_shared<Setup>(plataforma_);
    const Setup& cfg = *configuracion_;
    mCom_->TimeoutYRetrys(cfg.Timeout(), cfg.MaxRetrys());
    mCom_->Caracteres(cfg.CaracterInicial(), cfg.CaracterFinal(), cfg.CaracterPeticion(),
                      cfg.Checksum());
    mCom_->Pedir(cfg.canal(), cfg.Params());
    recibidas_ = 0;
    abortar_ = false;
    explicacion_.clear();
    cambiarEstado(kPidiendo);
    return true;
}

void Descarga::Reset() {
    if (enCurso()) return;
    recibidas_ = 0;
    explicacion_.clear();
    if (estado_ != kEnReposo) cambiarEstado(kEnReposo);
}

void Descarga::Abortar() {
    if (estado_ == kPidiendo || estado_ == kRecibiendo) abortar_ = true;
}

int32_t Descarga::Estado() const { return estado_; }

int32_t Descarga::numRecibidas() const {
    return estado_ == kEnReposo || estado_ == kPidiendo ? 0 : recibidas_;
}

std::string Descarga::Explicacion() const { return explicacion_; }

void Descarga::mCom_Pesada(int32_t numero, bool& aceptada, pesaDX5& pesada) {
    if (abortar_) return;
    aceptada = mSaco_->Guardo(pesada.Datos());
    if (!aceptada) return;
    recibidas_ = numero;
    if (estado_ != kRecibiendo) cambiarEstado(kRecibiendo);
    PesadaRecibida(pesada);
}

void Descarga::mCom_Resumen(int32_t recibidas, const std::string& explicacion) {
    explicacion_ = explicacion;
    recibidas_ = recibidas;
    const bool fallidaSinPesadas = !explicacion.empty() && recibidas == 0;
    cambiarEstado(fallidaSinPesadas ? kFallida : kGuardando);
    const bool legible = mSaco_->iniRecupero();
    if (estado_ == kFallida) return;
    if (!legible) {
        // Going on would call a download correct whose weighings nobody can read back.
        throw ErrorFichero(ficheros::aTexto(sacoTramas::fichero(plataforma_)) +
                           ": no se pueden leer las pesadas recibidas");
    }
    PasoDeGuardado(plataforma_, *configuracion_, *mExcel_, *mSaco_).ejecutar();
    cambiarEstado(explicacion_.empty() ? kTerminada : kFallida);
}

/// Handlers get the controller's own state.
void Descarga::cambiarEstado(int32_t estado) {
    estado_ = estado;
    CambioEstado(estado_);
}

bool Descarga::enCurso() const {
    return estado_ == kPidiendo || estado_ == kRecibiendo || estado_ == kGuardando;
}

}  // namespace bn
