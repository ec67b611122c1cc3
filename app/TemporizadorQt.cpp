// SPDX-License-Identifier: MIT
#include "app/TemporizadorQt.h"

#include <algorithm>
#include <utility>

namespace bn {

TemporizadorQt::TemporizadorQt(Entrega& entrega, std::function<void()> antes)
    : entrega_(entrega), antes_(std::move(antes)) {
    reloj_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&reloj_, &QTimer::timeout, &reloj_, [this] { avisar(); });
}

void TemporizadorQt::Interval(int32_t milisegundos) {
    reloj_.setInterval(std::max(milisegundos, 1));
}

void TemporizadorQt::Enabled(bool activo) {
    if (activo == reloj_.isActive()) return;
    if (activo) {
        reloj_.start();
    } else {
        reloj_.stop();
        vigente_ = std::make_shared<bool>(true);
        enEspera_ = false;
    }
}

bool TemporizadorQt::Enabled() const { return reloj_.isActive(); }

void TemporizadorQt::avisar() {
    // A frame that came in before its time-out must be found before the time-out: repeating an
    // acknowledge over it would make the indicator forget what was never stored.
    const std::weak_ptr<bool> antes = vigente_;
    antes_();
    if (antes.expired() || !reloj_.isActive()) return;
    if (enEspera_) return;  // the last tick still waits: one is enough
    enEspera_ = true;
    entrega_.entregar([this, vigente = std::weak_ptr<bool>(vigente_)] {
        if (vigente.expired()) return;
        enEspera_ = false;
        Timer();
    });
}

}  // namespace bn
