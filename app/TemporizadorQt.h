// SPDX-License-Identifier: MIT
#pragma once

#include <QTimer>
#include <functional>
#include <memory>

#include "platform/Entrega.h"
#include "platform/Temporizador.h"

namespace bn {

/// A timer on Qt's, its ticks delivered one notification at a time.
class TemporizadorQt : public Temporizador {
 public:
    /// antes delivers what had arrived before a tick falls due; it may disable the timer.
    TemporizadorQt(Entrega& entrega, std::function<void()> antes);

    void Interval(int32_t milisegundos) override;
    void Enabled(bool activo) override;
    bool Enabled() const override;

 private:
    void avisar();

    Entrega& entrega_;
    std::function<void()> antes_;
    QTimer reloj_;
    // Replaced when the timer is disabled or dies: a tick that waits finds its token gone.
    std::shared_ptr<bool> vigente_ = std::make_shared<bool>(true);
    bool enEspera_ = false;
};

}  // namespace bn
