// SPDX-License-Identifier: MIT
#include "destinations/RutaDestino.h"

#include <algorithm>

#include "config/UtilTexto.h"
#include "platform/Ficheros.h"

namespace bn {

namespace {

constexpr std::string_view kSeparadores = "/\\";
constexpr std::string_view kProhibidos = "\\/:*?\"<>|";

bool existeCarpeta(std::string carpeta) {
    std::replace(carpeta.begin(), carpeta.end(), '\\', '/');
    // A form knows no platform: it is filled in beside this computer's own disk.
    return ficheros::esCarpeta(discoDelSistema(), ficheros::aRuta(carpeta));
}

}  // namespace

std::string errorDeRuta(const std::string& ruta, std::string_view patron) {
    const std::size_t separador = ruta.find_last_of(kSeparadores);
    if (separador == std::string::npos) return "La carpeta especificada no existe";
    // A root is only a folder together with its separator.
    const bool esRaiz = separador == 0 || ruta[separador - 1] == ':';
    if (!existeCarpeta(ruta.substr(0, separador + (esRaiz ? 1 : 0)))) {
        return "La carpeta especificada no existe";
    }
    const std::string nombre = ruta.substr(separador + 1);
    if (!utiltexto::coincide(nombre, patron) ||
        nombre.find_first_of(kProhibidos) != std::string::npos) {
        return "El nombre del Fichero es incorrecto";
    }
    return "";
}

}  // namespace bn
