// SPDX-License-Identifier: MIT
#include "destinations/xls/MotorInterno.h"

namespace bn::xls {

std::unique_ptr<excel::Application> nuevaAplicacionInterna(std::function<double()> /*ahora*/) {
    throw excel::ErrorExcel("El motor interno de hojas de cálculo no está disponible");
}

}  // namespace bn::xls
