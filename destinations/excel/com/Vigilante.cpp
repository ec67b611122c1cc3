// SPDX-License-Identifier: MIT
#include "destinations/excel/com/Vigilante.h"

#include <utility>

namespace bn::excel::com {

Vigilante::Vigilante(std::function<void()> alVencer)
    : alVencer_(std::move(alVencer)), hilo_([this] { vigilar(); }) {}

Vigilante::~Vigilante() {
    {
        const std::lock_guard candado(cerrojo_);
        terminar_ = true;
        cambio_.notify_one();
    }
    hilo_.join();
}

void Vigilante::armar(std::chrono::milliseconds plazo) {
    const std::lock_guard candado(cerrojo_);
    vencida_ = false;
    fin_.reset();
    if (plazo > std::chrono::milliseconds::zero()) fin_ = Reloj::now() + plazo;
    cambio_.notify_one();
}

bool Vigilante::desarmar() {
    const std::lock_guard candado(cerrojo_);
    fin_.reset();
    return std::exchange(vencida_, false);
}

void Vigilante::vigilar() {
    std::unique_lock candado(cerrojo_);
    while (!terminar_) {
        if (!fin_) {
            cambio_.wait(candado);
            continue;
        }
        const Reloj::time_point fin = *fin_;
        cambio_.wait_until(candado, fin);
        if (fin_ != fin || Reloj::now() < fin) continue;
        fin_.reset();
        vencida_ = true;
        // Under the lock, so that the call is not taken for ended while this is still at work.
        alVencer_();
    }
}

}  // namespace bn::excel::com
