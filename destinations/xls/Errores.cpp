// SPDX-License-Identifier: MIT
#include "destinations/xls/Errores.h"

#include "destinations/excel/ObjectModel.h"

namespace bn::xls {

void rechazar(const std::string& texto) { throw excel::ErrorExcel(texto); }

void danado(const std::string& detalle) { rechazar("El libro está dañado: " + detalle + "."); }

}  // namespace bn::xls
