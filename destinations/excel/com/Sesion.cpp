// SPDX-License-Identifier: MIT
#include "destinations/excel/com/Sesion.h"

#include <algorithm>
#include <thread>

#include "destinations/excel/com/ErrorCom.h"

namespace bn::excel::com {

Apartamento::Apartamento() : resultado_(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) {
    exigirExito(resultado_);
}

Apartamento::~Apartamento() { CoUninitialize(); }

void Sesion::exigirViva() const {
    if (!viva_) throw ErrorExcel("La hoja de cálculo ya está cerrada");
}

void Sesion::antesDeLlamar() {
    exigirViva();
    vaciar();
    ++epoca_;
}

void Sesion::dejarPendiente(const std::shared_ptr<Pendiente>& pendiente) {
    if (pendiente_ == pendiente) return;
    vaciar();
    pendiente_ = pendiente;
}

void Sesion::vaciar() {
    if (!pendiente_) return;
    ++epoca_;
    pendiente_->vaciar();
    pendiente_.reset();
}

void Sesion::terminar() {
    viva_ = false;
    pendiente_.reset();
}

HRESULT Sesion::insistir(const std::function<HRESULT()>& llamada) {
    using Reloj = std::chrono::steady_clock;
    const Reloj::time_point fin = Reloj::now() + paciencia_.limite;
    for (std::chrono::milliseconds pausa = paciencia_.pausaMinima;;
         pausa = std::min(pausa * 2, paciencia_.pausaMaxima)) {
        const HRESULT resultado = llamada();
        if (!estaOcupada(resultado)) return resultado;
        impaciente_ = impaciente_ || Reloj::now() + pausa > fin;
        if (impaciente_) return resultado;
        std::this_thread::sleep_for(pausa);
    }
}

}  // namespace bn::excel::com
