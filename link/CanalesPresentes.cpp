// SPDX-License-Identifier: MIT
#include "link/CanalesPresentes.h"

#include <string>
#include <system_error>

#include "config/ClavesAjenas.h"
#include "platform/Ficheros.h"

namespace bn {

namespace {

constexpr int16_t kUltimoCanal = 16;

/// A device may be given by any of its names.
bool esElMismo(const std::string& asignado, const std::string& dispositivo,
               const std::filesystem::path& raiz) {
    if (asignado == dispositivo) return true;
    std::error_code error;  // what cannot be compared is another device
    const auto enRaiz = [&](const std::string& nombre) {
        return raiz / ficheros::aRuta(nombre).relative_path();
    };
    return std::filesystem::equivalent(enRaiz(asignado), enRaiz(dispositivo), error);
}

}  // namespace

std::vector<PuertoPresente> canalesPresentes(const Plataforma& plataforma,
                                             const std::filesystem::path& raiz) {
    auto puertos = puertosPresentes(raiz);
    const auto ini = rutaDelIni(plataforma);
    for (int16_t canal = kUltimoCanal; canal >= 1; --canal) {
        const std::string asignado = dispositivoDePuerto(ini, canal);
        if (asignado.empty()) continue;
        for (auto& puerto : puertos) {
            // The channel is the assigned device's, and no longer that of the one it had.
            if (puerto.canal == canal) puerto.canal = 0;
            if (esElMismo(asignado, puerto.dispositivo, raiz)) puerto.canal = canal;
        }
    }
    return puertos;
}

}  // namespace bn
