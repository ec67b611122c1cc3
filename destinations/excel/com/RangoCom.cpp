// SPDX-License-Identifier: MIT
#include "destinations/excel/com/RangoCom.h"

#include "destinations/excel/com/Miembros.h"
#include "destinations/excel/com/ObjetoCom.h"

namespace bn::excel::com {

namespace {

/// An empty cell answers with an empty text or with nothing at all, by version.
Variante contenidoDeCelda(Variante valor) {
    if (std::holds_alternative<std::monostate>(valor)) return std::string();
    return valor;
}

}  // namespace

std::unique_ptr<excel::Range> RangoCom::Item(int32_t fila, int32_t columna) {
    return std::make_unique<AreaCom>(
        com().objeto(miembro::kItem, clase::kRango, {argumento(fila), argumento(columna)}));
}

Variante RangoCom::FormulaR1C1() {
    return contenidoDeCelda(com().leer(miembro::kFormulaR1C1).valor());
}

void RangoCom::FormulaR1C1(const Variante& valor) {
    com().poner(miembro::kFormulaR1C1, argumento(valor));
}

void RangoCom::Select() { com().llamar(miembro::kSelect); }

void RangoCom::ClearContents() { com().llamar(miembro::kClearContents); }

void RangoCom::Copy() { com().llamar(miembro::kCopy); }

void RangoCom::HorizontalAlignment(int32_t alineacion) {
    com().poner(miembro::kHorizontalAlignment, argumento(alineacion));
}

void RangoCom::ColumnWidth(double ancho) { com().poner(miembro::kColumnWidth, argumento(ancho)); }

void RangoCom::NumberFormat(const std::string& formato) {
    com().poner(miembro::kNumberFormat, argumento(formato));
}

Despacho AreaCom::com() {
    area_.sesion()->antesDeLlamar();
    return area_;
}

Despacho CeldasCom::com() {
    hoja_.sesion()->antesDeLlamar();
    return hoja_.objeto(miembro::kCells, clase::kRango);
}

std::unique_ptr<excel::Range> CeldasCom::Item(int32_t fila, int32_t columna) {
    hoja_.sesion()->exigirViva();
    // The application itself says what it thinks of a cell that no sheet has.
    if (!estaEnLaHoja({fila, columna})) return RangoCom::Item(fila, columna);
    return std::make_unique<CeldaCom>(hoja_, bloques_, PosicionDeCelda{fila, columna});
}

Variante CeldaCom::FormulaR1C1() { return contenidoDeCelda(bloques_->leer(celda_)); }

void CeldaCom::FormulaR1C1(const Variante& valor) { bloques_->escribir(celda_, valor); }

Despacho CeldaCom::com() {
    hoja_.sesion()->antesDeLlamar();
    return hoja_.objeto(miembro::kCells, clase::kRango)
        .objeto(miembro::kItem, clase::kRango, {argumento(celda_.fila), argumento(celda_.columna)});
}

}  // namespace bn::excel::com
