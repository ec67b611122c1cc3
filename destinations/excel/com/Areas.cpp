// SPDX-License-Identifier: MIT
#include "destinations/excel/com/Areas.h"

#include <utility>

namespace bn::excel::com {

namespace {

constexpr int32_t kFilasDeHoja = 1048576;
constexpr int32_t kColumnasDeHoja = 16384;
// Large enough for a pass of thousands of weighings in a few blocks, and no megabytes in one call.
constexpr int64_t kCeldasPorBloque = 16384;
// Versions up to 2003 refuse an array that holds a text above 911 characters (fewer, in bytes).
constexpr std::size_t kTextoLargo = 911;

std::string referencia(PosicionDeCelda celda) {
    return letras(celda.columna) + std::to_string(celda.fila);
}

bool cabeEnBloque(const Variante& valor) {
    const auto* texto = std::get_if<std::string>(&valor);
    return !texto || texto->size() <= kTextoLargo;
}

/// Joins runs of cells into rectangles as they come, from the first row to the last.
class Agrupador {
 public:
    void agregar(const Area& tramo) {
        const std::pair columnas{tramo.desde.columna, tramo.hasta.columna};
        const auto [anterior, primero] = ultimos_.try_emplace(columnas, areas_.size());
        if (!primero && seguir(areas_[anterior->second], tramo)) return;
        anterior->second = areas_.size();
        areas_.push_back(tramo);
    }
    void agregarSola(PosicionDeCelda celda) { areas_.push_back({celda, celda}); }

    std::vector<Area> areas() && { return std::move(areas_); }

 private:
    static bool seguir(Area& area, const Area& tramo) {
        if (area.hasta.fila + 1 != tramo.desde.fila) return false;
        if (area.celdas() + tramo.celdas() > kCeldasPorBloque) return false;
        area.hasta.fila = tramo.desde.fila;
        return true;
    }

    std::vector<Area> areas_;
    // By first and last column: the place of the last rectangle that spans them.
    std::map<std::pair<int32_t, int32_t>, std::size_t> ultimos_;
};

}  // namespace

bool Area::contiene(PosicionDeCelda celda) const {
    return celda.fila >= desde.fila && celda.fila <= hasta.fila && celda.columna >= desde.columna &&
           celda.columna <= hasta.columna;
}

std::string letras(int32_t columna) {
    std::string texto;
    for (int32_t resto = columna; resto > 0; resto = (resto - 1) / 26) {
        texto.insert(texto.begin(), static_cast<char>('A' + (resto - 1) % 26));
    }
    return texto;
}

bool estaEnLaHoja(PosicionDeCelda celda) {
    return Area{{1, 1}, {kFilasDeHoja, kColumnasDeHoja}}.contiene(celda);
}

std::string referencia(const Area& area) {
    if (area.desde == area.hasta) return referencia(area.desde);
    return referencia(area.desde) + ":" + referencia(area.hasta);
}

std::vector<Area> rectangulos(const CeldasEnCola& cola) {
    Agrupador agrupador;
    for (auto i = cola.begin(); i != cola.end();) {
        if (!cabeEnBloque(i->second)) {
            agrupador.agregarSola(i->first);
            ++i;
            continue;
        }
        Area tramo{i->first, i->first};
        for (++i; i != cola.end() && cabeEnBloque(i->second); ++i) {
            if (i->first != PosicionDeCelda{tramo.hasta.fila, tramo.hasta.columna + 1}) break;
            tramo.hasta = i->first;
        }
        agrupador.agregar(tramo);
    }
    return std::move(agrupador).areas();
}

}  // namespace bn::excel::com
