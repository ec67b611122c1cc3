// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <string>
#include <vector>

#include "config/Setup.h"
#include "destinations/XCel.h"

namespace bn {

/// What the spreadsheet destination dialog holds: workbook, sheet, and for each field of a weighing
/// (a row, 0 to 7) whether it is checked and the letters of its column. Texts are UTF-8.
class FormularioExc {
 public:
    std::string txLibro, lstHoja;
    std::vector<std::string> hojas;  ///< the workbook's sheets, in its order

    /// Shows the settings and forgets whatever was edited before.
    void cargar(const Setup& cfg);
    /// False, or no letters, for a row that does not exist.
    bool marcada(int fila) const;
    std::string letras(int fila) const;
    /// The letters that an unchecked row keeps until it is checked again.
    std::string apartadas(int fila) const;
    /// A press on the row's mark. Unchecking puts the letters aside, checking brings them back.
    void alternar(int fila);

    int filaActual() const;
    /// Makes a row current; typing begins anew when it is another one.
    void irAFila(int fila);
    /// Makes a cell current; typing begins anew when row or column are others.
    void irACelda(int fila, int columna);
    /// The Delete key: empties the letters of the current row.
    void teclaSuprimir();
    /// A typed character on the current row: 8 backspace, 13 enter, ' ', '+', '-', letters.
    void tecla(char32_t caracter);

    /// The first failure's message, "" when the form can be stored.
    std::string validar() const;
    /// Stores the form; Setup's own refusals apply, field after field.
    void guardar(Setup& cfg) const;
    /// Reads the workbook's sheets; the list is left as it was when that fails.
    void refrescarHojas(XCel& excel);

    /// 1 is "A", 702 "ZZ"; "" for any number outside.
    static std::string columnaALetras(int columna);
    /// 0 for "" and for anything but one or two letters.
    static int letrasAColumna(const std::string& letras);

 private:
    struct Fila {
        bool marcada = false;
        std::string letras;
        std::string apartadas;  // the letters of an unchecked row, until it is checked again
    };

    static bool existe(int fila);
    Fila& actual();
    void escribirLetra(char letra);
    std::string errorDeColumnas() const;

    std::array<Fila, kCamposPesada> filas_;
    int fila_ = 0;
    int columna_ = 0;
    bool escribiendo_ = false;  // a letter has been typed since the current cell was entered
};

}  // namespace bn
