// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "platform/Evento.h"
#include "platform/Plataforma.h"

namespace bn {

/// The automatic countdown: one tick a second, and a download at its end.
class CuentaAtras {
 public:
    /// iniciar starts a download and answers whether it did; periodo is the period in seconds,
    /// below 1 for none.
    CuentaAtras(Plataforma& plataforma, std::function<bool()> iniciar,
                std::function<int32_t()> periodo);

    /// Starts from the whole period; shows "(deshabi.)" when there is none.
    void arrancar();
    /// Holds a running countdown; nothing when it is not running.
    void pausar();
    /// Goes on where it was held, without losing a second; nothing without a period.
    void reanudar();

    bool enMarcha() const;
    /// Whether it is held, by pausar.
    bool retenida() const { return muestra_ == Muestra::kRetenida; }
    /// What lbSeg shows: seconds left, "(retenida)" or "(deshabi.)".
    std::string texto() const;

    /// The text, or whether it is running, may have changed.
    Evento<> cambio;

 private:
    enum class Muestra { kSegundos, kRetenida, kDeshabilitada };

    void Tim_Timer();

    std::function<bool()> iniciar_;
    std::function<int32_t()> periodo_;
    std::unique_ptr<Temporizador> Tim_;
    int32_t segundos_ = 0;
    Muestra muestra_ = Muestra::kDeshabilitada;
};

}  // namespace bn
