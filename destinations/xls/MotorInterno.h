// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <functional>
#include <memory>

#include "destinations/excel/ObjectModel.h"
#include "platform/Disco.h"

namespace bn::xls {

/// The embedded engine: an excel::Application that opens, edits and saves the disk's ".xls"
/// workbooks in this process. ahora gives local date-time in days since 30 December 1899 (names of
/// copies kept aside).
std::unique_ptr<excel::Application> nuevaAplicacionInterna(std::function<double()> ahora,
                                                           Disco& disco = discoDelSistema());

/// Whether the file is a sound workbook, also one that cannot be read now (no permission, a failing
/// disk) or by us (a password, another version, another format). A damaged file, one that is no
/// workbook and a missing one are not. Never throws.
bool esLibroSano(Disco& disco, const std::filesystem::path& ruta);

}  // namespace bn::xls
