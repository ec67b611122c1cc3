// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "destinations/xls/Celdas.h"
#include "destinations/xls/Libro.h"

namespace bn::xls {

/// How the text stands in a cell, as the format numbers it.
enum class Alineacion : uint8_t { kGeneral = 0, kIzquierda = 1, kCentro = 2, kDerecha = 3 };

/// Width of the area's columns in widths of the digit 0, from 0 (hidden) to 255; throws ErrorExcel
/// for any other.
void anchoDeColumnas(Hoja& hoja, const Area& area, double ancho);

/// Aligns the area's cells; of whole columns or rows also those that do not exist yet.
void alinear(Hoja& hoja, const Area& area, Alineacion alineacion);

/// Number format of the area's cells, in English notation; of whole columns or rows as alinear.
void formatoNumerico(Hoja& hoja, const Area& area, const std::string& codigo);

/// Breaks the page above a row, counted from 0. Throws ErrorExcel above the first row, or when the
/// sheet holds as many breaks as it can.
void saltoDePagina(Hoja& hoja, int32_t fila);

}  // namespace bn::xls
