// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/CuentaAtras.h"
#include "config/Setup.h"
#include "download/Descarga.h"
#include "platform/Evento.h"
#include "platform/Plataforma.h"

namespace bn {

/// What stands at the desk, without toolkit: settings, download controller, countdown, and the
/// guard through which everything enters. It saves what is pending at the start, whenever a
/// download saves, when asked, and when nothing has been tried for five minutes; it replaces a
/// controller that an error has left behind; and it decides who is told of a failure, and how.
class Puesto {
 public:
    /// Reads the settings; throws when they cannot be understood, and leaves the file as it is. The
    /// platform must outlive it.
    explicit Puesto(Plataforma& plataforma);
    Puesto(const Puesto&) = delete;
    Puesto& operator=(const Puesto&) = delete;
    /// In order: nothing more is acknowledged, the port is closed, the settings are written.
    ~Puesto();

    Setup& configuracion();
    /// Replaced after a failed notification: do not keep the reference.
    Descarga& controlador();
    const Descarga& controlador() const;
    CuentaAtras& cuenta();

    /// Starts a download because a person wants one; false when it does not start.
    bool descargar();
    /// Back to idle after a download, with the countdown from its beginning.
    void limpiar();
    /// Saves what is pending because a person wants it.
    void guardarPendientes();
    /// Gives up what is pending; false, and a message, when it cannot be kept in a file.
    bool descartarPendientes();
    /// Whether the program may end now: not while weighings arrive or are saved.
    bool puedeCerrarse() const;

    /// Whether a spreadsheet application can be started; asked once.
    bool hayExcel() const;
    /// What the window has to say beside the weighings that wait, a sentence or more each; Spanish,
    /// UTF-8.
    std::vector<std::string> avisos() const;
    /// Runs what a person has asked for by a click or a menu entry. An error there is told in a
    /// message box; it never leaves.
    void atender(const std::function<void()>& orden);
    /// The platform for whatever belongs to the desk: its ports and timers enter through the guard,
    /// its messages reach whom they should.
    Plataforma& plataforma();

    /// Anything that the window shows may have changed; also: the controller is a new one.
    Evento<> cambio;
    /// Those of the controller, whichever it is.
    Evento<pesaDX5&> PesadaRecibida;
    Evento<int32_t&> CambioEstado;
    /// Something that nobody asked for has failed, or fails in another way than before; what and
    /// why, UTF-8. For whoever does not see the window.
    Evento<const std::string&> avisoFuera;

 private:
    struct Interior;

    std::unique_ptr<Interior> interior_;
};

}  // namespace bn
