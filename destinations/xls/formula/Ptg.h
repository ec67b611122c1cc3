// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "destinations/xls/formula/Contexto.h"

/// The identifiers of formula tokens and the byte order of what follows them.
namespace bn::xls::ptg {

inline constexpr uint8_t kExp = 0x01;
inline constexpr uint8_t kTbl = 0x02;
inline constexpr uint8_t kAdd = 0x03;
inline constexpr uint8_t kSub = 0x04;
inline constexpr uint8_t kMul = 0x05;
inline constexpr uint8_t kDiv = 0x06;
inline constexpr uint8_t kPower = 0x07;
inline constexpr uint8_t kConcat = 0x08;
inline constexpr uint8_t kLt = 0x09;
inline constexpr uint8_t kLe = 0x0A;
inline constexpr uint8_t kEq = 0x0B;
inline constexpr uint8_t kGe = 0x0C;
inline constexpr uint8_t kGt = 0x0D;
inline constexpr uint8_t kNe = 0x0E;
inline constexpr uint8_t kIsect = 0x0F;
inline constexpr uint8_t kUnion = 0x10;
inline constexpr uint8_t kRange = 0x11;
inline constexpr uint8_t kUplus = 0x12;
inline constexpr uint8_t kUminus = 0x13;
inline constexpr uint8_t kPercent = 0x14;
inline constexpr uint8_t kParen = 0x15;
inline constexpr uint8_t kMissArg = 0x16;
inline constexpr uint8_t kStr = 0x17;
inline constexpr uint8_t kElf = 0x18;
inline constexpr uint8_t kAttr = 0x19;
inline constexpr uint8_t kErr = 0x1C;
inline constexpr uint8_t kBool = 0x1D;
inline constexpr uint8_t kInt = 0x1E;
inline constexpr uint8_t kNum = 0x1F;

// Those with a class: here as the reference class has them, +20h for a value, +40h for an array.
inline constexpr uint8_t kArray = 0x20;
inline constexpr uint8_t kFunc = 0x21;
inline constexpr uint8_t kFuncVar = 0x22;
inline constexpr uint8_t kName = 0x23;
inline constexpr uint8_t kRef = 0x24;
inline constexpr uint8_t kArea = 0x25;
inline constexpr uint8_t kMemArea = 0x26;
inline constexpr uint8_t kMemErr = 0x27;
inline constexpr uint8_t kMemNoMem = 0x28;
inline constexpr uint8_t kMemFunc = 0x29;
inline constexpr uint8_t kRefErr = 0x2A;
inline constexpr uint8_t kAreaErr = 0x2B;
inline constexpr uint8_t kRefN = 0x2C;
inline constexpr uint8_t kAreaN = 0x2D;
inline constexpr uint8_t kMemAreaN = 0x2E;
inline constexpr uint8_t kMemNoMemN = 0x2F;
inline constexpr uint8_t kNameX = 0x39;
inline constexpr uint8_t kRef3d = 0x3A;
inline constexpr uint8_t kArea3d = 0x3B;
inline constexpr uint8_t kRefErr3d = 0x3C;
inline constexpr uint8_t kAreaErr3d = 0x3D;

// What a kAttr is, by its second byte.
inline constexpr uint8_t kAttrVolatil = 0x01;
inline constexpr uint8_t kAttrIf = 0x02;
inline constexpr uint8_t kAttrChoose = 0x04;
inline constexpr uint8_t kAttrSkip = 0x08;
inline constexpr uint8_t kAttrSum = 0x10;
inline constexpr uint8_t kAttrSpace = 0x40;

// What a kAttrSpace holds, by its third byte: blanks and line feeds before a token of a formula,
// before an opening and before a closing parenthesis.
inline constexpr uint8_t kBlancos = 0;
inline constexpr uint8_t kLineas = 1;
inline constexpr uint8_t kBlancosAbrir = 2;
inline constexpr uint8_t kBlancosCerrar = 4;

/// The identifier without its class.
inline uint8_t base(uint8_t id) {
    return id < 0x20 ? id : static_cast<uint8_t>(0x20 | (id & 0x1F));
}

/// The identifier of a class: 'R', 'V' or 'A'.
inline uint8_t conClase(uint8_t base, char clase) {
    return static_cast<uint8_t>(base + (clase == 'V' ? 0x20 : clase == 'A' ? 0x40 : 0));
}

inline uint16_t leer16(std::span<const uint8_t> bytes, size_t pos) {
    return static_cast<uint16_t>(bytes[pos] | bytes[pos + 1] << 8);
}

inline void poner16(std::span<uint8_t> bytes, size_t pos, uint32_t valor) {
    bytes[pos] = static_cast<uint8_t>(valor);
    bytes[pos + 1] = static_cast<uint8_t>(valor >> 8);
}

inline void agregar16(Rgce& rgce, uint32_t valor) {
    rgce.push_back(static_cast<uint8_t>(valor));
    rgce.push_back(static_cast<uint8_t>(valor >> 8));
}

}  // namespace bn::xls::ptg
