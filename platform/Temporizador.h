// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "platform/Evento.h"

namespace bn {

/// A timer of the user-interface thread; disabled when new.
class Temporizador {
 public:
    Temporizador() = default;
    Temporizador(const Temporizador&) = delete;
    Temporizador& operator=(const Temporizador&) = delete;
    virtual ~Temporizador() = default;

    /// The time between two ticks, in milliseconds.
    virtual void Interval(int32_t milisegundos) = 0;
    /// Enabling starts a whole interval; disabling drops a tick not yet delivered.
    virtual void Enabled(bool activo) = 0;
    virtual bool Enabled() const = 0;

    /// Repeats while enabled.
    Evento<> Timer;
};

}  // namespace bn
