// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "platform/Evento.h"

namespace bn {

/// The one door through which every port, timer, click and menu notification enters the program. An
/// error that leaves a port or a timer ends here; the owner hears of it, to start over with a new
/// controller once the failed call has unwound.
class Guardia {
 public:
    /// Runs a notification of a port or a timer; never throws. Between an error and reanudar they
    /// are dropped.
    void atender(const std::function<void()>& aviso);
    /// Runs what a person has asked for by a click or a menu entry; never throws. An error there
    /// leaves a running download alone.
    void atenderUsuario(const std::function<void()>& orden);
    /// The owner has started over.
    void reanudar() { averiada_ = false; }

    /// An error has left a port or a timer; its text, UTF-8.
    Evento<const std::string&> averia;
    /// An error has left what a person asked for; its text, UTF-8.
    Evento<const std::string&> tropiezo;

 private:
    static std::optional<std::string> errorDe(const std::function<void()>& aviso);

    bool averiada_ = false;
};

}  // namespace bn
