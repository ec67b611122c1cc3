// SPDX-License-Identifier: MIT
#include "destinations/excel/com/HojaEnBloques.h"

#include <algorithm>
#include <array>
#include <bit>
#include <new>
#include <string>

#include "destinations/excel/com/ErrorCom.h"
#include "destinations/excel/com/Miembros.h"

namespace bn::excel::com {

namespace {

// A worksheet of the ".xls" kind ends at column 256: a strip never crosses it.
constexpr int32_t kColumnasDeTira = 16;
constexpr int64_t kPrimerasFilas = 64;
constexpr int64_t kCrecimiento = 32;
constexpr int64_t kCeldasPorLectura = 262144;
// The program counts rows in 16 bits, and a ".xls" sheet has no more than twice as many.
constexpr int64_t kUltimaFila = 32767;
// "ZZ", the last one that the settings can name.
constexpr int32_t kUltimaColumna = 702;
constexpr std::size_t kBloquesGuardados = 32;
// A pass whose columns are far apart makes one block for each: few, then, and large.
constexpr std::size_t kCeldasEnCola = 65536;

VarianteCom enMatriz(const CeldasEnCola& cola, const Area& area) {
    std::array<SAFEARRAYBOUND, 2> limites{
        {{static_cast<ULONG>(area.filas()), 1}, {static_cast<ULONG>(area.columnas()), 1}}};
    SAFEARRAY* matriz = SafeArrayCreate(VT_VARIANT, limites.size(), limites.data());
    if (!matriz) throw std::bad_alloc();
    VarianteCom duenio = VarianteCom::deMatriz(matriz);
    for (PosicionDeCelda celda = area.desde; celda.fila <= area.hasta.fila; ++celda.fila) {
        for (celda.columna = area.desde.columna; celda.columna <= area.hasta.columna;
             ++celda.columna) {
            std::array<LONG, 2> indices{celda.fila - area.desde.fila + 1,
                                        celda.columna - area.desde.columna + 1};
            const VarianteCom valor(cola.at(celda));
            VARIANT crudo = valor.crudo();
            exigirExito(SafeArrayPutElement(matriz, indices.data(), &crudo));
        }
    }
    return duenio;
}

}  // namespace

Variante HojaEnBloques::Bloque::valor(PosicionDeCelda celda) const {
    SAFEARRAY* matriz = contenido.matriz();
    if (!matriz) return contenido.valor();
    std::array<LONG, 2> indices{};
    if (SafeArrayGetDim(matriz) != indices.size()) lanzarError(DISP_E_TYPEMISMATCH);
    exigirExito(SafeArrayGetLBound(matriz, 1, &indices[0]));
    exigirExito(SafeArrayGetLBound(matriz, 2, &indices[1]));
    indices[0] += celda.fila - area.desde.fila;
    indices[1] += celda.columna - area.desde.columna;
    VarianteCom elemento;
    exigirExito(SafeArrayGetElement(matriz, indices.data(), elemento.recibir()));
    return elemento.valor();
}

Variante HojaEnBloques::leer(PosicionDeCelda celda) {
    const auto& sesion = hoja_.sesion();
    sesion->exigirViva();
    // Another object of the same sheet may have written the cell.
    if (capas_.empty() || capas_.front().contains(celda)) sesion->vaciar();
    olvidarSiCambio();
    const auto [lugar, nueva] = tiras_.try_emplace((celda.columna - 1) / kColumnasDeTira);
    Tira& tira = lugar->second;
    if (nueva) tira.apartada = tiras_.size() > 1;
    const auto marca = static_cast<uint16_t>(1U << (celda.columna - 1) % kColumnasDeTira);
    const bool yaPedida = (tira.pedidas & marca) != 0;
    tira.pedidas = static_cast<uint16_t>(tira.pedidas | marca);
    for (auto bloque = bloques_.rbegin(); bloque != bloques_.rend(); ++bloque) {
        if (bloque->area.contiene(celda)) return bloque->valor(celda);
    }
    sesion->vaciar();
    olvidarSiCambio();
    if (tira.apartada) return traer({celda, {kUltimaFila, celda.columna}}, celda).valor(celda);
    const int64_t siguientes = yaPedida ? tira.filas * kCrecimiento : tira.filas;
    tira.filas = std::clamp(siguientes, kPrimerasFilas, kCeldasPorLectura);
    return traer(vecindad(celda, tira, yaPedida), celda).valor(celda);
}

void HojaEnBloques::olvidarSiCambio() {
    if (epoca_ == hoja_.sesion()->epoca()) return;
    epoca_ = hoja_.sesion()->epoca();
    bloques_.clear();
    for (auto& [numero, tira] : tiras_) tira.filas = 0;
}

/// Of the columns that are being gone down, many rows; with a column asked for the first time, the
/// whole strip, for others of it will follow.
Area HojaEnBloques::vecindad(PosicionDeCelda celda, const Tira& tira, bool yaPedida) {
    const int32_t primera = celda.columna - (celda.columna - 1) % kColumnasDeTira;
    const int32_t ultimaDeTodas = std::max(celda.columna, kUltimaColumna);
    Area area{{celda.fila, primera},
              {celda.fila, std::min(primera + kColumnasDeTira - 1, ultimaDeTodas)}};
    int64_t filas = std::min(tira.filas, kCeldasPorLectura / area.columnas());
    if (yaPedida) {
        area.desde.columna = primera + std::countr_zero(tira.pedidas);
        area.hasta.columna = primera + std::bit_width(tira.pedidas) - 1;
        filas = std::min(tira.filas, kCeldasPorLectura / area.columnas());
    }
    area.hasta.fila = static_cast<int32_t>(std::min<int64_t>(celda.fila + filas - 1, kUltimaFila));
    return area;
}

VarianteCom HojaEnBloques::contenidoDe(const Area& area) const {
    const Variante texto = referencia(area);
    return hoja_.objeto(miembro::kRange, clase::kRango, {VarianteCom(texto)})
        .leer(miembro::kFormulaR1C1);
}

/// Reads an area that begins at the cell's row, and keeps it.
const HojaEnBloques::Bloque& HojaEnBloques::traer(Area area, PosicionDeCelda celda) {
    area.hasta.fila = std::max(area.hasta.fila, celda.fila);
    VarianteCom contenido = contenidoDe(area);
    if (!contenido.matriz() && area.celdas() > 1) {
        // One value for many cells says nothing of this one.
        area = {celda, celda};
        contenido = contenidoDe(area);
    }
    if (bloques_.size() == kBloquesGuardados) bloques_.erase(bloques_.begin());
    return bloques_.emplace_back(Bloque{area, std::move(contenido)});
}

void HojaEnBloques::escribir(PosicionDeCelda celda, const Variante& valor) {
    const auto& sesion = hoja_.sesion();
    sesion->exigirViva();
    if (enCola_ >= kCeldasEnCola) sesion->vaciar();
    sesion->dejarPendiente(shared_from_this());
    // A first value may leave something behind (a date, its format): it is not to be skipped.
    auto capa = std::find_if(capas_.begin(), capas_.end(),
                             [&](const CeldasEnCola& una) { return !una.contains(celda); });
    if (capa == capas_.end()) capa = capas_.emplace(capa);
    capa->emplace(celda, valor);
    ++enCola_;
}

void HojaEnBloques::vaciar() {
    for (const CeldasEnCola& capa : capas_) {
        for (const Area& area : rectangulos(capa)) escribirArea(area, capa);
    }
    capas_.clear();
    enCola_ = 0;
}

void HojaEnBloques::escribirArea(const Area& area, const CeldasEnCola& cola) const {
    if (area.desde == area.hasta) return escribirCelda(area.desde, cola.at(area.desde));
    try {
        poner(area, enMatriz(cola, area));
    } catch (const Negativa&) {
        // It does not say which of so many cells it means: the one that is refused alone will.
        for (auto i = cola.lower_bound(area.desde); i != cola.end(); ++i) {
            if (i->first.fila > area.hasta.fila) break;
            if (area.contiene(i->first)) escribirCelda(i->first, i->second);
        }
    }
}

void HojaEnBloques::escribirCelda(PosicionDeCelda celda, const Variante& valor) const {
    try {
        poner({celda, celda}, VarianteCom(valor));
    } catch (const Negativa& e) {
        throw Negativa("No se puede escribir \"" + comoSeLee(valor) + "\" en la fila " +
                       std::to_string(celda.fila) + ", columna " + letras(celda.columna) + ": " +
                       e.what());
    }
}

void HojaEnBloques::poner(const Area& area, const VarianteCom& contenido) const {
    const Variante texto = referencia(area);
    hoja_.objeto(miembro::kRange, clase::kRango, {VarianteCom(texto)})
        .poner(miembro::kFormulaR1C1, contenido);
}

}  // namespace bn::excel::com
