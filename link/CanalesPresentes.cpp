// SPDX-License-Identifier: MIT
#include "link/CanalesPresentes.h"

#include <string>

#include "config/ClavesAjenas.h"

namespace bn {

namespace {

constexpr int16_t kUltimoCanal = 16;

}  // namespace

std::vector<PuertoPresente> canalesPresentes(const Plataforma& plataforma,
                                             const std::filesystem::path& raiz) {
    auto puertos = puertosPresentes(raiz);
    const auto ini = rutaDelIni(plataforma);
    for (int16_t canal = kUltimoCanal; canal >= 1; --canal) {
        const std::string asignado = dispositivoDePuerto(plataforma.disco(), ini, canal);
        if (asignado.empty()) continue;
        for (auto& puerto : puertos) {
            // The channel is the assigned device's, and no longer that of the one it had.
            if (puerto.canal == canal) puerto.canal = 0;
            // A device may be given by any of its names.
            if (esElMismoPuerto(asignado, puerto.dispositivo, raiz)) puerto.canal = canal;
        }
    }
    return puertos;
}

}  // namespace bn
