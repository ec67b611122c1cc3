// SPDX-License-Identifier: MIT
#include "config/APIsVarias.h"

namespace bn {

// The shell asks for an owner window only to place boxes of its own; none is ever shown.
std::string CarpetaEspecial(const Plataforma& plataforma, int32_t /*propietario*/, int32_t numero) {
    const std::string carpeta = plataforma.carpetaEspecial(numero);
    return carpeta.substr(0, carpeta.find('\0'));
}

int32_t AbrirDocumento(Plataforma& plataforma, const std::string& rutaODireccion) {
    return plataforma.abrirDocumento(rutaODireccion);
}

}  // namespace bn
