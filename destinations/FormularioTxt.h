// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <string>

#include "config/Setup.h"

namespace bn {

/// What the text destination dialog holds: the file, and for each field of a weighing (0 to 7)
/// whether it is written and its cells, by the grid's columns. Texts are UTF-8.
class FormularioTxt {
 public:
    /// Columns of the grid.
    enum Columna { kMarca, kCampo, kFormato, kPosicion, kLargo, kApartado };

    std::string txLibro;

    /// Shows the settings and forgets whatever was edited before.
    void cargar(const Setup& cfg);
    bool escrito(int campo) const;
    /// The text of a cell; "" outside the grid.
    std::string celda(int campo, int columna) const;
    /// Switches a field on or off. Off, its three values are put aside; on, they come back.
    void alternar(int campo);
    /// Types a text into a cell, as far as the cell takes it: 80 characters of format, two digits
    /// of position or width.
    void escribir(int campo, int columna, const std::string& texto);
    /// How many characters a column's cells take; 0 when they are not typed into.
    static int maximo(int columna);

    /// The first failure's message, "" when the form can be stored.
    std::string validar() const;
    /// Stores the form; Setup's own refusals apply, field after field.
    void guardar(Setup& cfg) const;

    /// The line's layout as the form stands: a field that could not be stored so is not in it.
    std::array<CampoDeTexto, kCamposPesada> disposicion() const;

 private:
    struct Fila {
        bool escrito = false;
        std::string formato, posicion, largo;
        std::string apartado;
    };

    void marcar(Fila& fila);
    void desmarcar(Fila& fila);

    std::array<Fila, kCamposPesada> filas_;
};

}  // namespace bn
