// SPDX-License-Identifier: MIT
#include "destinations/xls/Errores.h"

namespace bn::xls {

void rechazar(const std::string& texto) { throw excel::ErrorExcel(texto); }

void danado(const std::string& detalle) {
    throw ErrorLibroDanado("El libro está dañado: " + detalle +
                           ". Repárelo con otro programa o recupérelo de una copia.");
}

}  // namespace bn::xls
