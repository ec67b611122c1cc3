// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "platform/Ficheros.h"

namespace bn::prueba {

/// The text of the ErrorFichero that an action throws; "" when it throws none.
template <class Accion>
std::string errorDe(Accion accion) {
    try {
        accion();
    } catch (const ErrorFichero& error) {
        return error.what();
    }
    return "";
}

/// The cause of the ErrorFichero that an action throws; nothing when it throws none.
template <class Accion>
std::optional<ErrorFichero::Causa> causaDe(Accion accion) {
    try {
        accion();
    } catch (const ErrorFichero& error) {
        return error.causa();
    }
    return std::nullopt;
}

}  // namespace bn::prueba
