// SPDX-License-Identifier: MIT
#include "destinations/xls/formula/Desplazamiento.h"

#include <algorithm>

#include "destinations/xls/formula/Ptg.h"
#include "destinations/xls/formula/Referencias.h"
#include "destinations/xls/formula/Tokens.h"

namespace bn::xls {

namespace {

struct Paso {
    int32_t filas = 0, columnas = 0;
};

/// Moves what is relative; false when that leaves the sheet. Whole rows and columns stay whole.
bool mover(Referencia& r, Paso paso) {
    const auto mueve = [](Coordenada& c, int32_t distancia, int32_t limite) {
        if (!c.relativa) return true;
        // Wide: a distance is the caller's and may be anything.
        const int64_t valor = static_cast<int64_t>(c.valor) + distancia;
        if (valor < 0 || valor >= limite) return false;
        c.valor = static_cast<int32_t>(valor);
        return true;
    };
    const bool filas = r.columnasEnteras() ||
                       (mueve(r.fila1, paso.filas, kFilas) && mueve(r.fila2, paso.filas, kFilas));
    const bool columnas = r.filasEnteras() || (mueve(r.columna1, paso.columnas, kColumnas) &&
                                               mueve(r.columna2, paso.columnas, kColumnas));
    return filas && columnas;
}

/// One end of an area may be fixed and the other have moved past it.
void ordenar(Referencia& r) {
    if (r.fila1.valor > r.fila2.valor) std::swap(r.fila1, r.fila2);
    if (r.columna1.valor > r.columna2.valor) std::swap(r.columna1, r.columna2);
}

/// The same token as a #REF! of its kind.
uint8_t rota(uint8_t id) {
    const bool plana = ptg::base(id) < ptg::kRef3d;
    return static_cast<uint8_t>(plana ? id + (ptg::kRefErr - ptg::kRef)
                                      : id + (ptg::kRefErr3d - ptg::kRef3d));
}

/// Writes token's reference, its sheet number kept, at the same place of rgce.
void escribir(Rgce& rgce, size_t pos, size_t cabecera, const Referencia& r) {
    Rgce bytes;
    codificarReferencia(bytes, r);
    std::copy(bytes.begin(), bytes.end(),
              rgce.begin() + static_cast<std::ptrdiff_t>(pos + cabecera));
}

}  // namespace

std::optional<Rgce> aplicarDesplazamiento(std::span<const uint8_t> rgce, int32_t filas,
                                          int32_t columnas) {
    Rgce resultado(rgce.begin(), rgce.end());
    const auto copiar = [&](size_t pos, std::span<const uint8_t> token) {
        const uint8_t id = ptg::base(token[0]);
        const bool plana = id == ptg::kRef || id == ptg::kArea;
        const bool conHoja = id == ptg::kRef3d || id == ptg::kArea3d;
        // Those of other records; and cached areas, which would no longer be the true ones.
        if (id == ptg::kExp || id == ptg::kTbl || id == ptg::kRefN || id == ptg::kAreaN ||
            id == ptg::kMemArea || id == ptg::kMemAreaN) {
            return false;
        }
        if (!plana && !conHoja) return true;
        const size_t cabecera = plana ? 1 : 3;
        auto r = decodificarReferencia(token.subspan(cabecera), nullptr);
        if (!r) return false;
        if (mover(*r, {filas, columnas})) {
            ordenar(*r);
            escribir(resultado, pos, cabecera, *r);
        } else {
            resultado[pos] = rota(token[0]);
        }
        return true;
    };
    return recorrerTokens(rgce, copiar) ? std::optional(std::move(resultado)) : std::nullopt;
}

std::optional<Rgce> descompartir(std::span<const uint8_t> rgce, PosicionCelda celda) {
    Rgce resultado(rgce.begin(), rgce.end());
    const auto fijar = [&](size_t pos, std::span<const uint8_t> token) {
        const uint8_t id = ptg::base(token[0]);
        if (id == ptg::kExp || id == ptg::kTbl) return false;
        if (id != ptg::kRefN && id != ptg::kAreaN) return true;
        const auto r = decodificarReferencia(token.subspan(1), &celda);
        if (!r) return false;
        resultado[pos] = static_cast<uint8_t>(token[0] - (ptg::kRefN - ptg::kRef));
        escribir(resultado, pos, 1, *r);
        return true;
    };
    return recorrerTokens(rgce, fijar) ? std::optional(std::move(resultado)) : std::nullopt;
}

}  // namespace bn::xls
