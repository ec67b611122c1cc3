// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "destinations/xls/Libro.h"
#include "destinations/xls/formula/Contexto.h"

namespace bn::xls {

/// What a formula of that sheet needs to know of its workbook.
class ContextoDeLibro : public ContextoFormula {
 public:
    /// hoja is null for a formula that belongs to no sheet, as a name's does.
    ContextoDeLibro(Libro& libro, const Hoja* hoja) : libro_(libro), hoja_(hoja) {}

    std::optional<uint16_t> xtiDeHojas(const std::string& primera,
                                       const std::string& ultima) override;
    std::optional<std::pair<std::string, std::string>> hojasDeXti(uint16_t xti) override;
    std::optional<uint16_t> indiceDeNombre(const std::string& nombre) override;
    std::optional<std::string> nombreDeIndice(uint16_t indice) override;

 private:
    std::optional<size_t> lugarDeHoja(const std::string& nombre) const;

    Libro& libro_;
    const Hoja* hoja_;
};

/// True for a cell kept whole whose record is a FORMULA.
bool esFormula(const TablaDeCeldas& tabla, const Celda& celda);

/// The formula of a cell in R1C1 notation, kIndescifrable when it cannot be put into words.
std::string textoDeFormula(Hoja& hoja, const Celda& celda, PosicionCelda posicion);

/// The records of a new formula cell; its result is still to be calculated. Throws ErrorExcel for a
/// text that is no formula.
std::string registroDeFormula(Hoja& hoja, const std::string& texto, PosicionCelda posicion,
                              uint16_t xf);

/// The records of a formula cell for its copy elsewhere in the workbook, references moved along.
/// Throws ErrorExcel when the formula is not understood.
std::string copiarFormula(Hoja& hoja, const Celda& celda, PosicionCelda desde, PosicionCelda hasta);

/// To be called before a formula cell's content goes: formulas that share its tokens get their own.
void soltarCompartida(Hoja& hoja, const Celda& celda, PosicionCelda posicion);

/// To be called before the contents of an area go. Throws ErrorExcel when they are a part only of
/// an array formula or a data table.
void exigirDivisible(Hoja& hoja, const Area& area);

}  // namespace bn::xls
