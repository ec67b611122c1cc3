// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace bn::xls {

/// Throws excel::ErrorExcel with that text (UTF-8, Spanish).
[[noreturn]] void rechazar(const std::string& texto);

/// Throws the ErrorExcel of a workbook whose bytes contradict themselves; detalle says where.
[[noreturn]] void danado(const std::string& detalle);

}  // namespace bn::xls
