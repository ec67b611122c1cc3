// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "app/Rescate.h"
#include "platform/Evento.h"
#include "platform/Plataforma.h"

namespace bn {

/// The door through which every port, timer, click and menu notification enters the program. An
/// error that leaves a port or a timer ends here: what the frame store holds is put aside, the user
/// is told, and the owner hears of it, to start over with a new controller once the failed call has
/// unwound.
class Guardia {
 public:
    /// enDescarga tells whether a download is running: only then does the store hold weighings that
    /// have not reached their destinations.
    Guardia(Plataforma& plataforma, Rescate& rescate, std::function<bool()> enDescarga);

    /// Runs a notification of a port or a timer; never throws. Between an error and reanudar they
    /// are dropped.
    void atender(const std::function<void()>& aviso);
    /// Runs what the user has asked for by a click or a menu entry; never throws. An error there is
    /// told, and leaves a running download alone.
    void atenderUsuario(const std::function<void()>& orden);
    /// The owner has started over.
    void reanudar();

    /// An error has ended here, and the user has been told.
    Evento<> averia;

 private:
    static std::optional<std::string> errorDe(const std::function<void()>& aviso);
    void atenderError(const std::string& error);

    Plataforma& plataforma_;
    Rescate& rescate_;
    std::function<bool()> enDescarga_;
    bool averiada_ = false;
};

}  // namespace bn
