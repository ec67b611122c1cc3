// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "destinations/excel/Variante.h"

namespace bn::excel::com {

/// A cell by its row and column, both 1-based.
struct PosicionDeCelda {
    int32_t fila = 1;
    int32_t columna = 1;
    friend bool operator==(const PosicionDeCelda&, const PosicionDeCelda&) = default;
    /// Row by row, as a sheet is read.
    friend bool operator<(const PosicionDeCelda& una, const PosicionDeCelda& otra) {
        return std::tie(una.fila, una.columna) < std::tie(otra.fila, otra.columna);
    }
};

/// A rectangle of cells, both corners included.
struct Area {
    PosicionDeCelda desde;
    PosicionDeCelda hasta;

    int32_t filas() const { return hasta.fila - desde.fila + 1; }
    int32_t columnas() const { return hasta.columna - desde.columna + 1; }
    int64_t celdas() const { return int64_t{filas()} * columnas(); }
    bool contiene(PosicionDeCelda celda) const;
    friend bool operator==(const Area&, const Area&) = default;
};

/// Cells waiting to be written, row by row.
using CeldasEnCola = std::map<PosicionDeCelda, Variante>;

/// True for the cells of the largest sheet there is.
bool estaEnLaHoja(PosicionDeCelda celda);

/// The column as people name it: "C", "AB".
std::string letras(int32_t columna);

/// As in a reference text: "A1:C12", or "B7" for a single cell.
std::string referencia(const Area& area);

/// The fewest rectangles, by rows, that hold the cells of the queue and no other; a text too long
/// for a block stands alone.
std::vector<Area> rectangulos(const CeldasEnCola& cola);

}  // namespace bn::excel::com
