// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "destinations/excel/ObjectModel.h"

namespace bn::excel {

/// The spreadsheet application that the system has installed, by its programmatic identifier or by
/// its class. Throws ErrorExcel when there is none.
std::unique_ptr<Application> nuevaAplicacionDelSistema(bool porIdentificador);

}  // namespace bn::excel
