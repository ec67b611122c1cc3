// SPDX-License-Identifier: MIT
#pragma once

#include <deque>
#include <functional>

namespace bn {

/// The one door through which the outside's notifications reach the program, one at a time: what
/// arrives while another is being handled (a message box of its handler included, which keeps the
/// events running) waits until that one has returned. Belongs to the user-interface thread.
class Entrega {
 public:
    using Aviso = std::function<void()>;

    /// Runs the notification now, then those that waited; or puts it behind the one running.
    /// What a notification throws reaches the caller; those behind it stay for the next call.
    void entregar(Aviso aviso) {
        enEspera_.push_back(std::move(aviso));
        vaciar();
    }

    /// Runs what waits, unless a notification is being handled.
    void vaciar() {
        while (!ocupada_ && !enEspera_.empty()) {
            const Aviso siguiente = std::move(enEspera_.front());
            enEspera_.pop_front();
            const Ocupacion ocupacion(ocupada_);
            siguiente();
        }
    }

    /// Whether a notification is being handled, and whether none waits.
    bool ocupada() const { return ocupada_; }
    bool vacia() const { return enEspera_.empty(); }

 private:
    class Ocupacion {
     public:
        explicit Ocupacion(bool& marca) : marca_(marca) { marca_ = true; }
        Ocupacion(const Ocupacion&) = delete;
        Ocupacion& operator=(const Ocupacion&) = delete;
        ~Ocupacion() { marca_ = false; }

     private:
        bool& marca_;
    };

    std::deque<Aviso> enEspera_;
    bool ocupada_ = false;
};

}  // namespace bn
