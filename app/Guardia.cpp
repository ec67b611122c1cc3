// SPDX-License-Identifier: MIT
#include "app/Guardia.h"

#include <exception>

namespace bn {

/// What the notification has thrown; nothing when it went well.
std::optional<std::string> Guardia::errorDe(const std::function<void()>& aviso) {
    try {
        aviso();
        return std::nullopt;
    } catch (const std::exception& error) {
        return error.what();
    }
}

void Guardia::atender(const std::function<void()>& aviso) {
    if (averiada_) return;
    const auto error = errorDe(aviso);
    // One inside the notification that fails now has told of it: all starts over already.
    if (!error || averiada_) return;
    averiada_ = true;
    averia(*error);
}

void Guardia::atenderUsuario(const std::function<void()>& orden) {
    if (averiada_) return;
    if (const auto error = errorDe(orden)) tropiezo(*error);
}

}  // namespace bn
