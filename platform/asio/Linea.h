// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/asio/AjustesLinea.h"

namespace asio {
class io_context;
}

namespace bn {

/// One open serial line, as the system gives it. No call waits. Calls may come from any thread, but
/// only one at a time; destroying it closes the line and drops a waiting call-back.
class Linea {
 public:
    /// Told whether the line still works; runs on the thread that runs the io_context.
    using AlPoder = std::function<void(bool funciona)>;

    Linea() = default;
    Linea(const Linea&) = delete;
    Linea& operator=(const Linea&) = delete;
    virtual ~Linea() = default;

    /// Calls back once, when bytes wait to be read; at once when some wait already.
    virtual void alPoderLeer(AlPoder aviso) = 0;
    /// Calls back once, when bytes can be written.
    virtual void alPoderEscribir(AlPoder aviso) = 0;
    /// How many bytes were put into destino, 0 when none wait; nothing when the line is gone.
    virtual std::optional<std::size_t> leer(char* destino, std::size_t cabida) = 0;
    /// How many of the bytes the line has taken; nothing when the line is gone.
    virtual std::optional<std::size_t> escribir(std::string_view bytes) = 0;
    /// Discards what has arrived and was not yet read.
    virtual void descartarRecibido() = 0;
};

/// Opens a device for this program alone: raw, no flow control, DTR and RTS on, what had arrived
/// before discarded. Throws ErrorPuerto, naming the device and the cause.
std::unique_ptr<Linea> abrirLinea(asio::io_context& contexto, const std::string& dispositivo,
                                  const AjustesLinea& ajustes);

/// The device that stands for a channel (1 and up) where nothing else is set.
std::string dispositivoDelCanal(int16_t canal);

}  // namespace bn
