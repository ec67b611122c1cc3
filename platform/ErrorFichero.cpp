// SPDX-License-Identifier: MIT
#include "platform/ErrorFichero.h"

#include <algorithm>

#include "platform/Ficheros.h"

namespace bn {
namespace {

std::string textoDe(const std::filesystem::path& ruta, const std::string& explicacion) {
    std::string texto = ficheros::aTexto(ruta) + ": " + explicacion;
    // what() ends at the first zero.
    std::replace(texto.begin(), texto.end(), '\0', '?');
    return texto;
}

}  // namespace

ErrorFichero::ErrorFichero(const std::string& texto, Causa causa)
    : std::runtime_error(texto), causa_(causa) {}

ErrorFichero::ErrorFichero(const std::filesystem::path& ruta, const std::string& explicacion,
                           Causa causa)
    : std::runtime_error(textoDe(ruta, explicacion)),
      causa_(causa),
      comienzo_(std::string_view(what()).size() - explicacion.size()) {}

std::string_view ErrorFichero::explicacion() const {
    return std::string_view(what()).substr(comienzo_);
}

}  // namespace bn
