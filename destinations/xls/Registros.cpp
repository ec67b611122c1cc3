// SPDX-License-Identifier: MIT
#include "destinations/xls/Registros.h"

#include <algorithm>
#include <utility>

#include "destinations/xls/Bytes.h"

namespace bn::xls {

std::optional<RegistroVisto> LectorRegistros::siguiente() {
    if (posicion_ > flujo_.size() || flujo_.size() - posicion_ < 4) return std::nullopt;
    const Vista vista(flujo_);
    const uint16_t largo = vista.u16(posicion_ + 2);
    if (flujo_.size() - posicion_ - 4 < largo) danado("un registro se sale del libro");
    const RegistroVisto registro{posicion_, vista.u16(posicion_),
                                 flujo_.substr(posicion_ + 4, largo)};
    posicion_ = registro.despues();
    return registro;
}

// What is found out only on saving would come too late for whoever has written into the workbook.
void exigirLargo(const RegistroVisto& registro) {
    constexpr std::pair<uint16_t, size_t> kMinimos[] = {
        {id::kWindow1, 16}, {id::kXfCrc, 20},      {id::kDateMode, 2},
        {id::kExtSst, 2},   {id::kDimensions, 12}, {id::kDefaultRowHeight, 4},
        {id::kWindow2, 2},  {id::kColInfo, 10},    {id::kDefColWidth, 2}};
    for (const auto& [numero, minimo] : kMinimos) {
        if (registro.id == numero && registro.datos.size() < minimo) danado("faltan bytes");
    }
}

void ponerRegistro(std::string& salida, uint16_t id, std::string_view datos) {
    poner16(salida, id);
    poner16(salida, static_cast<uint32_t>(datos.size()));
    salida += datos;
}

size_t buscarRegistro(const Registros& lista, uint16_t id, size_t desde) {
    for (size_t i = desde; i < lista.size(); ++i) {
        if (lista[i].id == id) return i;
    }
    return lista.size();
}

std::optional<size_t> trasUltimo(const Registros& lista, std::initializer_list<uint16_t> ids) {
    for (size_t i = lista.size(); i > 0; --i) {
        if (std::find(ids.begin(), ids.end(), lista[i - 1].id) != ids.end()) return i;
    }
    return std::nullopt;
}

std::vector<Subflujo> subflujos(std::string_view flujo) {
    std::vector<Subflujo> lista;
    LectorRegistros lector(flujo);
    size_t profundidad = 0;
    Subflujo actual;
    while (const auto registro = lector.siguiente()) {
        if (profundidad == 0) {
            if (registro->id != id::kBof) break;
            actual = {registro->posicion, 0, Vista(registro->datos).u16(2)};
        }
        if (registro->id == id::kBof) ++profundidad;
        if (registro->id == id::kEof && --profundidad == 0) {
            actual.fin = registro->despues();
            lista.push_back(actual);
        }
    }
    if (profundidad != 0) danado("una hoja no está entera");
    return lista;
}

bool estaPuesta(std::string_view datos) { return datos.size() >= 2 && Vista(datos).u16(0) != 0; }

}  // namespace bn::xls
