// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "destinations/xls/formula/Contexto.h"

namespace bn::xls {

/// A rectangle of cells, counted from 0, its ends included.
struct Area {
    int32_t fila0 = 0;
    int32_t fila1 = 0;
    int32_t columna0 = 0;
    int32_t columna1 = 0;

    bool columnasEnteras() const { return fila0 == 0 && fila1 == kFilas - 1; }
    bool filasEnteras() const { return columna0 == 0 && columna1 == kColumnas - 1; }
    bool contiene(int32_t fila, int32_t columna) const {
        return fila >= fila0 && fila <= fila1 && columna >= columna0 && columna <= columna1;
    }
    bool contiene(const Area& otra) const {
        return contiene(otra.fila0, otra.columna0) && contiene(otra.fila1, otra.columna1);
    }
    bool toca(const Area& otra) const {
        return fila0 <= otra.fila1 && otra.fila0 <= fila1 && columna0 <= otra.columna1 &&
               otra.columna0 <= columna1;
    }
    friend bool operator==(const Area&, const Area&) = default;
};

/// How a cell's content is kept in Celda::valor.
enum class TipoCelda : uint8_t {
    kVacia,   // nothing: the cell holds a format only
    kRk,      // the short form of a number
    kNumero,  // the bits of a double
    kTexto,   // a number in the table of shared strings
    kLogica,  // the two bytes of a BOOLERR record: value, then 1 for an error
    kCruda    // number of whole records kept as they are: formulas, texts of older kinds
};

struct Celda {
    uint64_t valor = 0;
    uint16_t columna = 0;
    uint16_t xf = 0;
    TipoCelda tipo = TipoCelda::kVacia;
};

/// One row: its ROW record's data, when it has one, and its cells in column order.
struct Fila {
    static constexpr size_t kLargoRegistro = 16;
    std::vector<Celda> celdas;
    std::array<char, kLargoRegistro> registro{};
    bool tieneRegistro = false;

    bool existe() const { return tieneRegistro || !celdas.empty(); }
    /// Cell format of the whole row, where it has one of its own.
    bool formatoPropio(uint16_t& xf) const;
};

/// The cells of one worksheet, by row and column counted from 0. Rows are kept in small blocks, so
/// that a cell far down costs no more than any other.
class TablaDeCeldas {
 public:
    /// One past the last row there may be something in.
    int32_t cuantasFilas() const { return fin_; }
    /// Rows that memory is taken for.
    size_t filasEnMemoria() const { return bloques_.size() * kFilasPorBloque; }
    /// Null when the table does not reach so far.
    const Fila* fila(int32_t numero) const;
    /// Null when memory is taken for no such row: then there is nothing in it.
    Fila* filaEnMemoria(int32_t numero);
    Fila& crearFila(int32_t numero);

    /// Null when there is no such cell.
    const Celda* buscar(int32_t fila, int32_t columna) const;
    Celda* buscar(int32_t fila, int32_t columna);
    /// The cell, made empty with format xf if there was none.
    Celda& crear(int32_t fila, int32_t columna, uint16_t xf);
    void borrar(int32_t fila, int32_t columna);

    /// The whole records of a cell of that kind; throws for any other.
    const std::string& crudo(const Celda& celda) const;
    std::string& crudo(const Celda& celda);
    /// Keeps whole records; the number for Celda::valor.
    uint64_t guardarCrudo(std::string registros);

 private:
    static constexpr int32_t kFilasPorBloque = 8;
    using Bloque = std::array<Fila, kFilasPorBloque>;

    std::map<int32_t, Bloque> bloques_;  // by row number, divided
    int32_t fin_ = 0;
    std::vector<std::string> crudas_;
};

}  // namespace bn::xls
