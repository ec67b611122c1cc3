// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "destinations/excel/ObjectModel.h"

namespace bn::xls {

/// A file whose bytes are no workbook, or contradict themselves.
class ErrorLibroDanado : public excel::ErrorExcel {
 public:
    using ErrorExcel::ErrorExcel;
};

/// Throws excel::ErrorExcel with that text (UTF-8, Spanish).
[[noreturn]] void rechazar(const std::string& texto);

/// Throws the ErrorLibroDanado of a workbook whose bytes contradict themselves; detalle says where.
[[noreturn]] void danado(const std::string& detalle);

}  // namespace bn::xls
