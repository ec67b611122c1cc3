// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "destinations/xls/formula/Contexto.h"

namespace bn::xls {

/// One row or column, counted from 0; relative ones move with the cell that holds the formula.
struct Coordenada {
    int32_t valor = 0;
    bool relativa = false;
};

/// One cell, or an area from its top left to its bottom right cell.
struct Referencia {
    Coordenada fila1, columna1, fila2, columna2;
    bool area = false;

    /// All columns of its rows, all rows of its columns.
    bool filasEnteras() const;
    bool columnasEnteras() const;
};

enum class Notacion { kR1C1, kA1 };

/// Reads the reference that begins at pos and moves pos behind it. Nothing (pos stays) when there
/// is none; throws excel::ErrorExcel when it lies outside the sheet.
std::optional<Referencia> leerReferencia(Notacion notacion, std::string_view texto, size_t& pos,
                                         PosicionCelda celda);

std::string escribirReferencia(Notacion notacion, const Referencia& referencia,
                               PosicionCelda celda);

/// The sheets of a reference in front of it, "!" included: quoted where it must be.
std::string escribirHojas(const std::string& primera, const std::string& ultima);

/// True for a byte that may stand in a sheet's or a name's bare word.
bool esDePalabra(char c);

/// As a token holds it, behind its identifier (and sheet number): 4 bytes for a cell, 8 for an
/// area.
void codificarReferencia(Rgce& rgce, const Referencia& referencia);

/// Undoes codificarReferencia on 4 or 8 bytes. desde: the cell that relative coordinates count
/// from, of a shared formula; nothing when they are absolute. Nothing when no such cell exists.
std::optional<Referencia> decodificarReferencia(std::span<const uint8_t> bytes,
                                                const PosicionCelda* desde);

}  // namespace bn::xls
