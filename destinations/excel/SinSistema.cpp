// SPDX-License-Identifier: MIT
#include "destinations/excel/DelSistema.h"

namespace bn::excel {

std::unique_ptr<Application> nuevaAplicacionDelSistema(bool /*porIdentificador*/) {
    throw ErrorExcel("Este equipo no dispone de MS Excel");
}

}  // namespace bn::excel
