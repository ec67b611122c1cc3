// SPDX-License-Identifier: MIT
#pragma once

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

}  // namespace bn::prueba
