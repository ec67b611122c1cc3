// SPDX-License-Identifier: MIT
#include "destinations/excel/DelSistema.h"

#include "destinations/excel/com/ExcelCom.h"

namespace bn::excel {

std::unique_ptr<Application> nuevaAplicacionDelSistema(bool porIdentificador) {
    return nuevaAplicacionCom(porIdentificador);
}

}  // namespace bn::excel
