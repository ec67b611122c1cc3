// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

#include "destinations/excel/ObjectModel.h"

namespace bn::xls {

/// The embedded engine: an excel::Application that opens, edits and saves ".xls" workbooks in this
/// process. ahora gives local date-time in days since 30 December 1899 (names of copies kept
/// aside).
std::unique_ptr<excel::Application> nuevaAplicacionInterna(std::function<double()> ahora);

}  // namespace bn::xls
