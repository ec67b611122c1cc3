// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/MSComm.h"
#include "platform/asio/AjustesLinea.h"

namespace bn {

/// The serial port on Asio. One helper thread per opening does nothing but move bytes; every
/// notification is handed to the user-interface thread, to which the object itself belongs. Channel
/// and settings count from the next opening on.
class PuertoAsio : public MSComm {
 public:
    /// Has a function run on the user-interface thread, later; called from the helper thread.
    using EnInterfaz = std::function<void(std::function<void()>)>;
    /// The device (path or system name) that stands for a channel number.
    using DispositivoDe = std::function<std::string(int16_t canal)>;

    PuertoAsio(EnInterfaz enInterfaz, DispositivoDe dispositivoDe);
    ~PuertoAsio() override;

    void CommPort(int16_t numero) override;
    void Settings(const std::string& ajustes) override;
    void PortOpen(bool abrir) override;
    /// False also when the device has vanished since it was opened.
    bool PortOpen() const override;
    void Output(const std::string& bytes) override;
    std::string Input() override;
    void InBufferCount(int16_t cero) override;
    int16_t CommEvent() const override;

    /// Takes what the line holds already, without waiting for the helper thread to come to it, and
    /// hands the notification over. For whoever is about to take silence for granted.
    void recogerPendiente();

 private:
    class Apertura;

    EnInterfaz enInterfaz_;
    DispositivoDe dispositivoDe_;
    int16_t canal_ = 1;
    AjustesLinea ajustes_;
    // Shared only so that a notification on its way can see that its opening is over.
    std::shared_ptr<Apertura> apertura_;
};

}  // namespace bn
