// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "destinations/xls/Cadenas.h"
#include "destinations/xls/Celdas.h"
#include "destinations/xls/Formatos.h"
#include "destinations/xls/Registros.h"

namespace bn::xls {

inline constexpr uint16_t kXfPorDefecto = 15;

/// A worksheet's substream taken apart: the records before its cell table, the table, the records
/// behind it. Only the table's own records, its index (INDEX, DBCELL) and its size (DIMENSIONS) are
/// made anew when it is put together.
class HojaDeCeldas {
 public:
    /// Throws excel::ErrorExcel when a cell is cut or asks for a string or a format there is not.
    HojaDeCeldas(std::string_view subflujo, const Formatos& formatos, const Cadenas& cadenas);

    TablaDeCeldas& tabla() { return tabla_; }
    const TablaDeCeldas& tabla() const { return tabla_; }
    Registros& cabeza() { return cabeza_; }
    const Registros& cabeza() const { return cabeza_; }
    Registros& cola() { return cola_; }

    /// Areas of array formulas and of data tables, which can only be changed whole.
    std::vector<Area>& areasIndivisibles() { return areas_; }

    /// Whether its owner has protected it: then only cells with formats that allow it change.
    bool protegida() const { return protegida_; }

    bool tieneFormulas() const { return tieneFormulas_; }
    void anotarFormula() { tieneFormulas_ = true; }

    /// Cell format of a cell that does not exist: its row's, else its column's, else the default.
    uint16_t xfHeredado(int32_t fila, int32_t columna) const;
    /// To be called when COLINFO records have changed.
    void releerColumnas();

    /// The whole substream, for that position in the stream. pendienteDeCalculo adds the mark that
    /// its formulas' results may be stale.
    std::string serializar(size_t posicion, bool pendienteDeCalculo) const;

 private:
    friend class LectorHoja;
    friend class EscritorHoja;

    Registros cabeza_;
    TablaDeCeldas tabla_;
    Registros cola_;
    std::vector<Area> areas_;
    std::array<uint16_t, kColumnas> xfColumna_{};
    bool protegida_ = false;
    bool tieneFormulas_ = false;
};

/// An unchanged worksheet's bytes for another position of the stream: only its row index moves.
std::string moverSubflujo(std::string_view subflujo, size_t antes, size_t ahora,
                          bool pendienteDeCalculo);

}  // namespace bn::xls
