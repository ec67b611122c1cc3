// SPDX-License-Identifier: MIT
#include "destinations/xls/formula/Tokens.h"

#include "destinations/xls/formula/Ptg.h"

namespace bn::xls {

namespace {

size_t longitudDeTexto(std::span<const uint8_t> rgce) {
    if (rgce.size() < 3 || rgce[2] > 1) return 0;
    return 3 + static_cast<size_t>(rgce[1]) * (rgce[2] == 1 ? 2 : 1);
}

size_t longitudDeAtributo(std::span<const uint8_t> rgce) {
    if (rgce.size() < 4) return 0;
    if ((rgce[1] & ptg::kAttrChoose) == 0) return 4;
    return 4 + (static_cast<size_t>(ptg::leer16(rgce, 2)) + 1) * 2;
}

size_t longitudSinClase(std::span<const uint8_t> rgce) {
    const uint8_t id = rgce[0];
    if (id >= ptg::kAdd && id <= ptg::kMissArg) return 1;
    switch (id) {
        case ptg::kExp:
        case ptg::kTbl:
            return 5;
        case ptg::kStr:
            return longitudDeTexto(rgce);
        case ptg::kElf:
            return 6;
        case ptg::kAttr:
            return longitudDeAtributo(rgce);
        case ptg::kErr:
        case ptg::kBool:
            return 2;
        case ptg::kInt:
            return 3;
        case ptg::kNum:
            return 9;
        default:
            return 0;
    }
}

size_t longitudConClase(uint8_t base) {
    switch (base) {
        case ptg::kFunc:
        case ptg::kMemFunc:
        case ptg::kMemAreaN:
        case ptg::kMemNoMemN:
            return 3;
        case ptg::kFuncVar:
            return 4;
        case ptg::kName:
        case ptg::kRef:
        case ptg::kRefErr:
        case ptg::kRefN:
            return 5;
        case ptg::kMemArea:
        case ptg::kMemErr:
        case ptg::kMemNoMem:
        case ptg::kNameX:
        case ptg::kRef3d:
        case ptg::kRefErr3d:
            return 7;
        case ptg::kArray:
            return 8;
        case ptg::kArea:
        case ptg::kAreaErr:
        case ptg::kAreaN:
            return 9;
        case ptg::kArea3d:
        case ptg::kAreaErr3d:
            return 11;
        default:
            return 0;
    }
}

}  // namespace

size_t longitudDeToken(std::span<const uint8_t> rgce) {
    if (rgce.empty() || rgce[0] >= 0x80) return 0;
    const size_t n = rgce[0] < 0x20 ? longitudSinClase(rgce) : longitudConClase(ptg::base(rgce[0]));
    return n <= rgce.size() ? n : 0;
}

bool recorrerTokens(std::span<const uint8_t> rgce,
                    const std::function<bool(size_t, std::span<const uint8_t>)>& visitar) {
    for (size_t pos = 0; pos < rgce.size();) {
        const size_t n = longitudDeToken(rgce.subspan(pos));
        if (n == 0 || !visitar(pos, rgce.subspan(pos, n))) return false;
        pos += n;
    }
    return true;
}

std::optional<PosicionCelda> anclaCompartida(std::span<const uint8_t> rgce) {
    const bool remite = rgce.size() == 5 && (rgce[0] == ptg::kExp || rgce[0] == ptg::kTbl);
    if (!remite) return std::nullopt;
    const PosicionCelda ancla{ptg::leer16(rgce, 1), ptg::leer16(rgce, 3)};
    return ancla.columna < kColumnas ? std::optional(ancla) : std::nullopt;
}

Rgce referirAAncla(PosicionCelda ancla) {
    Rgce rgce{ptg::kExp};
    ptg::agregar16(rgce, static_cast<uint32_t>(ancla.fila));
    ptg::agregar16(rgce, static_cast<uint32_t>(ancla.columna));
    return rgce;
}

}  // namespace bn::xls
