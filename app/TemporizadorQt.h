// SPDX-License-Identifier: MIT
#pragma once

#include <QTimer>
#include <memory>

#include "platform/Entrega.h"
#include "platform/Temporizador.h"

namespace bn {

/// A timer on Qt's, its ticks delivered one notification at a time.
class TemporizadorQt : public Temporizador {
 public:
    explicit TemporizadorQt(Entrega& entrega);

    void Interval(int32_t milisegundos) override;
    void Enabled(bool activo) override;
    bool Enabled() const override;

 private:
    void avisar();

    Entrega& entrega_;
    QTimer reloj_;
    // Replaced when the timer is disabled or dies: a tick that waits finds its token gone.
    std::shared_ptr<bool> vigente_ = std::make_shared<bool>(true);
    bool enEspera_ = false;
};

}  // namespace bn
