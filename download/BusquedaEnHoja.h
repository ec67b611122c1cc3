// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "destinations/XCel.h"
#include "destinations/excel/Variante.h"
#include "download/Apunte.h"
#include "download/Tramos.h"

namespace bn {

/// The values of one weighing as its row holds them.
struct FilaEsperada {
    std::array<Variante, kCamposPesada> valores;
    bool conAlbaran = false;  ///< it has a delivery note number
};

/// Looks for rows in the current sheet of the workbook that is open, in the columns where they were
/// being written: those with a delivery note number (and a column for it) anywhere, the others from
/// the row down where they began. Each row of the sheet counts once. Throws excel::ErrorExcel.
Tramos buscarEnHoja(XCel& hoja, const Comienzo& comienzo, const std::vector<FilaEsperada>& filas);

}  // namespace bn
