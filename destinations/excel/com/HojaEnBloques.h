// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "destinations/excel/com/Areas.h"
#include "destinations/excel/com/Despacho.h"

namespace bn::excel::com {

/// The cells of one worksheet, read and written many at a time: one call for each would make a long
/// pass crawl. What is read and written is what single calls would have.
class HojaEnBloques : public Pendiente, public std::enable_shared_from_this<HojaEnBloques> {
 public:
    explicit HojaEnBloques(Despacho hoja) : hoja_(std::move(hoja)) {}

    /// Of a cell inside the sheet. Throws ErrorExcel.
    Variante leer(PosicionDeCelda celda);
    /// Puts it in the queue; what the application says of it comes later.
    void escribir(PosicionDeCelda celda, const Variante& valor);
    /// Writes the queue. On failure all of it stays.
    void vaciar() override;

 private:
    /// Cells as they were read, in one array; or one cell.
    struct Bloque {
        Area area;
        VarianteCom contenido;
        Variante valor(PosicionDeCelda celda) const;
    };
    /// Sixteen neighbouring columns: which have been asked for, and how many rows to read next.
    struct Tira {
        uint16_t pedidas = 0;
        int64_t filas = 0;
        /// Not the first strip asked for: its columns are read one by one, each to its end.
        /// Columns that lie far apart would otherwise multiply the calls of going down.
        bool apartada = false;
    };

    void olvidarSiCambio();
    static Area vecindad(PosicionDeCelda celda, const Tira& tira, bool yaPedida);
    const Bloque& traer(Area area, PosicionDeCelda celda);
    VarianteCom contenidoDe(const Area& area) const;
    void escribirArea(const Area& area, const CeldasEnCola& cola) const;
    void escribirCelda(PosicionDeCelda celda, const Variante& valor) const;
    void poner(const Area& area, const VarianteCom& contenido) const;

    Despacho hoja_;
    /// What is to be written, in this order: a cell that is set again stands in the next layer.
    std::vector<CeldasEnCola> capas_;
    std::size_t enCola_ = 0;
    std::vector<Bloque> bloques_;
    std::map<int32_t, Tira> tiras_;
    uint64_t epoca_ = 0;
};

}  // namespace bn::excel::com
