// SPDX-License-Identifier: MIT
#include "destinations/xls/Celdas.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "destinations/xls/Bytes.h"

namespace bn::xls {
namespace {

// A row's usual cells stand side by side, so the place is first guessed, then searched.
template <class Celdas>
auto lugarDe(Celdas& celdas, int32_t columna) {
    auto lugar = celdas.begin();
    if (celdas.empty()) return lugar;
    const auto salto = static_cast<size_t>(columna - celdas.front().columna);
    if (columna >= celdas.front().columna && salto < celdas.size() &&
        celdas[salto].columna == columna) {
        return lugar + static_cast<ptrdiff_t>(salto);
    }
    if (celdas.back().columna < columna) return celdas.end();
    return std::lower_bound(lugar, celdas.end(), columna, [](const Celda& celda, int32_t buscada) {
        return celda.columna < buscada;
    });
}

}  // namespace

bool Fila::formatoPropio(uint16_t& xf) const {
    constexpr size_t kPosOpciones = 12;
    constexpr uint8_t kFormatoPropio = 0x80;
    if (!tieneRegistro || (static_cast<uint8_t>(registro[kPosOpciones]) & kFormatoPropio) == 0) {
        return false;
    }
    xf = Vista(std::string_view(registro.data(), registro.size())).u16(kPosOpciones + 2) & 0xFFF;
    return true;
}

Fila* TablaDeCeldas::filaEnMemoria(int32_t numero) {
    const auto bloque = bloques_.find(numero / kFilasPorBloque);
    if (bloque == bloques_.end()) return nullptr;
    return &bloque->second[static_cast<size_t>(numero % kFilasPorBloque)];
}

const Fila* TablaDeCeldas::fila(int32_t numero) const {
    static const Fila kVacia;
    if (numero >= fin_) return nullptr;
    const Fila* fila = const_cast<TablaDeCeldas*>(this)->filaEnMemoria(numero);
    return fila != nullptr ? fila : &kVacia;
}

Fila& TablaDeCeldas::crearFila(int32_t numero) {
    fin_ = std::max(fin_, numero + 1);
    return bloques_[numero / kFilasPorBloque][static_cast<size_t>(numero % kFilasPorBloque)];
}

const Celda* TablaDeCeldas::buscar(int32_t numero, int32_t columna) const {
    const Fila* hallada = fila(numero);
    if (hallada == nullptr) return nullptr;
    const auto lugar = lugarDe(hallada->celdas, columna);
    return lugar != hallada->celdas.end() && lugar->columna == columna ? &*lugar : nullptr;
}

Celda* TablaDeCeldas::buscar(int32_t numero, int32_t columna) {
    return const_cast<Celda*>(std::as_const(*this).buscar(numero, columna));
}

Celda& TablaDeCeldas::crear(int32_t numero, int32_t columna, uint16_t xf) {
    std::vector<Celda>& celdas = crearFila(numero).celdas;
    auto lugar = lugarDe(celdas, columna);
    if (lugar == celdas.end() || lugar->columna != columna) {
        const auto donde = lugar - celdas.begin();
        if (celdas.capacity() == 0) celdas.reserve(8);
        celdas.insert(celdas.begin() + donde,
                      {0, static_cast<uint16_t>(columna), xf, TipoCelda::kVacia});
        return celdas[static_cast<size_t>(donde)];
    }
    return *lugar;
}

void TablaDeCeldas::borrar(int32_t numero, int32_t columna) {
    Fila* hallada = filaEnMemoria(numero);
    if (hallada == nullptr) return;
    const auto lugar = lugarDe(hallada->celdas, columna);
    if (lugar != hallada->celdas.end() && lugar->columna == columna) hallada->celdas.erase(lugar);
}

const std::string& TablaDeCeldas::crudo(const Celda& celda) const {
    if (celda.tipo != TipoCelda::kCruda || celda.valor >= crudas_.size()) {
        danado("una celda no tiene registro");
    }
    return crudas_[celda.valor];
}

std::string& TablaDeCeldas::crudo(const Celda& celda) {
    return const_cast<std::string&>(std::as_const(*this).crudo(celda));
}

uint64_t TablaDeCeldas::guardarCrudo(std::string registros) {
    crudas_.push_back(std::move(registros));
    return crudas_.size() - 1;
}

}  // namespace bn::xls
