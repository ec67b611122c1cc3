// SPDX-License-Identifier: MIT
#include "app/CuentaAtras.h"

#include <utility>

namespace bn {

namespace {

constexpr int32_t kUnSegundo = 1000;

}  // namespace

CuentaAtras::CuentaAtras(Plataforma& plataforma, std::function<bool()> iniciar,
                         std::function<int32_t()> periodo)
    : iniciar_(std::move(iniciar)),
      periodo_(std::move(periodo)),
      Tim_(plataforma.nuevoTemporizador()) {
    Tim_->Interval(kUnSegundo);
    Tim_->Timer.conectar([this] { Tim_Timer(); });
}

void CuentaAtras::arrancar() {
    Tim_->Enabled(false);
    segundos_ = periodo_();
    if (segundos_ < 1) {
        muestra_ = Muestra::kDeshabilitada;
    } else {
        muestra_ = Muestra::kSegundos;
        Tim_->Enabled(true);
    }
    cambio();
}

void CuentaAtras::pausar() {
    if (!enMarcha()) return;
    Tim_->Enabled(false);
    muestra_ = Muestra::kRetenida;
    cambio();
}

void CuentaAtras::reanudar() {
    if (enMarcha() || periodo_() < 1) return;
    Tim_->Enabled(true);
    // One second more and a tick at once: the display is refreshed without losing a second.
    ++segundos_;
    Tim_Timer();
}

void CuentaAtras::Tim_Timer() {
    if (segundos_ > 0) --segundos_;
    muestra_ = Muestra::kSegundos;
    if (segundos_ > 0) {
        cambio();
        return;
    }
    Tim_->Enabled(false);
    cambio();
    if (!iniciar_() && periodo_() > 0) arrancar();
}

bool CuentaAtras::enMarcha() const { return Tim_->Enabled(); }

std::string CuentaAtras::texto() const {
    switch (muestra_) {
        case Muestra::kRetenida:
            return "(retenida)";
        case Muestra::kDeshabilitada:
            return "(deshabi.)";
        case Muestra::kSegundos:
            break;
    }
    return std::to_string(segundos_);
}

}  // namespace bn
