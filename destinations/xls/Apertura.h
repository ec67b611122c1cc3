// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <memory>

#include "destinations/xls/Libro.h"
#include "platform/Disco.h"

namespace bn::xls {

/// The workbook of a file. Throws excel::ErrorDeApertura when the file cannot be opened, ErrorExcel
/// when there is none. anio completes dates typed without their year.
std::shared_ptr<Libro> abrirFichero(Disco& disco, const std::filesystem::path& ruta, int anio);

}  // namespace bn::xls
