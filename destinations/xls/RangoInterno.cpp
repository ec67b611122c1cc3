// SPDX-License-Identifier: MIT
#include "destinations/xls/RangoInterno.h"

#include <cctype>
#include <utility>

#include "destinations/xls/Disposicion.h"
#include "destinations/xls/Edicion.h"
#include "destinations/xls/Errores.h"

namespace bn::xls {
namespace {

/// One end of a reference text: a column, a row, or both.
struct Extremo {
    int64_t fila = -1;
    int64_t columna = -1;
};

[[noreturn]] void rechazarReferencia(const std::string& texto) {
    rechazar("\"" + texto + "\" no es una referencia a celdas.");
}

Extremo leerExtremo(const std::string& texto, size_t& pos) {
    constexpr int64_t kDemasiado = 10'000'000;
    Extremo extremo;
    const auto caracter = [&] { return pos < texto.size() ? texto[pos] : '\0'; };
    if (caracter() == '$') ++pos;
    int64_t letras = 0;
    for (; std::isalpha(static_cast<unsigned char>(caracter())) != 0; ++pos) {
        letras = letras * 26 + (std::toupper(static_cast<unsigned char>(caracter())) - 'A' + 1);
        if (letras > kDemasiado) rechazarReferencia(texto);
    }
    if (letras > 0 && caracter() == '$') ++pos;
    int64_t numero = 0;
    for (; std::isdigit(static_cast<unsigned char>(caracter())) != 0; ++pos) {
        numero = numero * 10 + (caracter() - '0');
        if (numero > kDemasiado) rechazarReferencia(texto);
    }
    extremo.columna = letras - 1;
    extremo.fila = numero - 1;
    if (letras == 0 && numero == 0) rechazarReferencia(texto);
    return extremo;
}

}  // namespace

void exigirEnHoja(int64_t fila, int64_t columna) {
    if (fila >= 0 && fila < kFilas && columna >= 0 && columna < kColumnas) return;
    rechazar("La celda de la fila " + std::to_string(fila + 1) + ", columna " +
             std::to_string(columna + 1) +
             ", no existe: una hoja tiene 65.536 filas y 256 columnas.");
}

Area areaDeTexto(const std::string& referencia) {
    size_t pos = 0;
    Extremo a = leerExtremo(referencia, pos);
    Extremo b = a;
    if (pos < referencia.size() && referencia[pos] == ':') b = leerExtremo(referencia, ++pos);
    const bool mitades = (a.fila < 0) != (b.fila < 0) || (a.columna < 0) != (b.columna < 0);
    const bool sola = referencia.find(':') == std::string::npos && (a.fila < 0 || a.columna < 0);
    if (pos != referencia.size() || mitades || sola) rechazarReferencia(referencia);
    if (a.fila < 0) {
        a.fila = 0;
        b.fila = kFilas - 1;
    }
    if (a.columna < 0) {
        a.columna = 0;
        b.columna = kColumnas - 1;
    }
    if (a.fila > b.fila) std::swap(a.fila, b.fila);
    if (a.columna > b.columna) std::swap(a.columna, b.columna);
    exigirEnHoja(b.fila, b.columna);
    return {static_cast<int32_t>(a.fila), static_cast<int32_t>(b.fila),
            static_cast<int32_t>(a.columna), static_cast<int32_t>(b.columna)};
}

std::unique_ptr<excel::Range> RangoInterno::Item(int32_t fila, int32_t columna) {
    const int64_t fila0 = int64_t{area_.fila0} + fila - 1;
    const int64_t columna0 = int64_t{area_.columna0} + columna - 1;
    exigirEnHoja(fila0, columna0);
    const Area celda{static_cast<int32_t>(fila0), static_cast<int32_t>(fila0),
                     static_cast<int32_t>(columna0), static_cast<int32_t>(columna0)};
    return std::make_unique<RangoInterno>(sesion_, hoja_, celda);
}

Variante RangoInterno::FormulaR1C1() {
    return leerCelda(*exigirHoja(hoja_), area_.fila0, area_.columna0);
}

void RangoInterno::FormulaR1C1(const Variante& valor) {
    constexpr int64_t kMaximoCeldas = 1'000'000;
    const std::shared_ptr<Hoja> hoja = exigirHoja(hoja_);
    const int64_t filas = int64_t{area_.fila1} - area_.fila0 + 1;
    const int64_t columnas = int64_t{area_.columna1} - area_.columna0 + 1;
    if (filas * columnas > kMaximoCeldas)
        rechazar("Son demasiadas celdas para escribirlas a la vez.");
    for (int32_t i = area_.fila0; i <= area_.fila1; ++i) {
        for (int32_t j = area_.columna0; j <= area_.columna1; ++j)
            escribirCelda(*hoja, i, j, valor);
    }
}

void RangoInterno::Select() {
    exigirHoja(hoja_);
    sesion_->seleccion() = {hoja_, area_};
}

void RangoInterno::ClearContents() { vaciar(*exigirHoja(hoja_), area_); }

void RangoInterno::Copy() {
    exigirHoja(hoja_);
    sesion_->copiado() = {hoja_, area_};
}

void RangoInterno::HorizontalAlignment(int32_t alineacion) {
    constexpr int32_t kAlinearGeneral = 1;
    const std::shared_ptr<Hoja> hoja = exigirHoja(hoja_);
    switch (alineacion) {
        case excel::kAlinearDerecha:
            alinear(*hoja, area_, Alineacion::kDerecha);
            return;
        case excel::kAlinearIzquierda:
            alinear(*hoja, area_, Alineacion::kIzquierda);
            return;
        case excel::kAlinearCentro:
            alinear(*hoja, area_, Alineacion::kCentro);
            return;
        case kAlinearGeneral:
            alinear(*hoja, area_, Alineacion::kGeneral);
            return;
        default:
            rechazar("Esa alineación no existe.");
    }
}

void RangoInterno::ColumnWidth(double ancho) { anchoDeColumnas(*exigirHoja(hoja_), area_, ancho); }

void RangoInterno::NumberFormat(const std::string& formato) {
    formatoNumerico(*exigirHoja(hoja_), area_, formato);
}

}  // namespace bn::xls
