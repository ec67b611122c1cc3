// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

namespace bn::xls {

/// Nothing was typed: the cell becomes empty.
struct EntradaVacia {
    friend bool operator==(const EntradaVacia&, const EntradaVacia&) = default;
};

/// A text as the cell keeps it, without the apostrophe that forced it (apostrofo tells there was
/// one).
struct EntradaTexto {
    std::string texto;
    bool apostrofo = false;
    friend bool operator==(const EntradaTexto&, const EntradaTexto&) = default;
};

/// A number, percentage, amount, date or time. formato is the number format in English notation
/// that a cell of format General takes on with it, "" when it stays General.
struct EntradaNumero {
    double valor = 0;
    std::string formato;
    friend bool operator==(const EntradaNumero&, const EntradaNumero&) = default;
};

struct EntradaLogica {
    bool valor = false;
    friend bool operator==(const EntradaLogica&, const EntradaLogica&) = default;
};

/// An error value such as #N/A, by its code in the file.
struct EntradaError {
    uint8_t codigo = 0;
    friend bool operator==(const EntradaError&, const EntradaError&) = default;
};

/// A formula, its leading "=" included; nothing is known yet of its being right.
struct EntradaFormula {
    std::string texto;
    friend bool operator==(const EntradaFormula&, const EntradaFormula&) = default;
};

using Entrada = std::variant<EntradaVacia, EntradaTexto, EntradaNumero, EntradaLogica, EntradaError,
                             EntradaFormula>;

/// What a text typed into a cell means in English (United States) notation. celdaDeTexto: the cell
/// is formatted "@" and keeps every text; fechas1904: the workbook counts its days from 1904;
/// anioActual completes a date typed without its year. Never throws for what the text holds.
Entrada interpretarEntrada(std::string_view utf8, bool celdaDeTexto, bool fechas1904,
                           int anioActual);

}  // namespace bn::xls
