// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "destinations/excel/Variante.h"
#include "destinations/xls/Celdas.h"
#include "destinations/xls/Libro.h"

namespace bn::xls {

/// A cell's constant (text, number, logical value; an error as its text), a formula's text in R1C1
/// notation, "" for an empty cell. Rows and columns count from 0.
Variante leerCelda(Hoja& hoja, int32_t fila, int32_t columna);

/// Throws excel::ErrorExcel when the sheet's owner has protected it.
void exigirSinProteccion(const Hoja& hoja);

/// Sets a cell and keeps its format. A text is taken as a typed entry; a date in a cell of format
/// General takes on a date format; nothing, or "", empties the cell. Throws excel::ErrorExcel for
/// what a cell cannot hold, and for a locked cell of a protected sheet.
void escribirCelda(Hoja& hoja, int32_t fila, int32_t columna, const Variante& valor);

/// Empties the cells of an area and keeps their formats.
void vaciar(Hoja& hoja, const Area& area);

/// Copies an area's cells, formats and merged areas, and row heights where it holds whole rows, to
/// where its first cell comes to stand. Throws excel::ErrorExcel when it does not fit there.
void copiar(Hoja& origen, const Area& area, Hoja& destino, int32_t fila, int32_t columna);

}  // namespace bn::xls
