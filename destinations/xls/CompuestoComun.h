// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// What reading and writing a compound file share: marks, positions and sizes of the format.
namespace bn::xls::compuesto {

inline constexpr std::string_view kFirma{"\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8};

inline constexpr uint32_t kLibre = 0xFFFFFFFF;
inline constexpr uint32_t kFinCadena = 0xFFFFFFFE;
inline constexpr uint32_t kSectorFat = 0xFFFFFFFD;
inline constexpr uint32_t kSectorDifat = 0xFFFFFFFC;
inline constexpr uint32_t kNinguna = 0xFFFFFFFF;

inline constexpr size_t kLargoCabecera = 512;
inline constexpr size_t kFatEnCabecera = 109;
inline constexpr size_t kLargoEntrada = 128;
inline constexpr size_t kMinisector = 64;
/// Streams shorter than this live in the mini stream.
inline constexpr size_t kCorte = 4096;

namespace cabecera {
inline constexpr size_t kOrdenBytes = 28;
inline constexpr size_t kPotenciaSector = 30;
inline constexpr size_t kPotenciaMinisector = 32;
inline constexpr size_t kSectoresDirectorio = 40;
inline constexpr size_t kSectoresFat = 44;
inline constexpr size_t kDirectorio = 48;
inline constexpr size_t kCorte = 56;
inline constexpr size_t kMinifat = 60;
inline constexpr size_t kSectoresMinifat = 64;
inline constexpr size_t kDifat = 68;
inline constexpr size_t kSectoresDifat = 72;
inline constexpr size_t kListaFat = 76;
}  // namespace cabecera

namespace entrada {
inline constexpr size_t kLargoNombre = 64;
inline constexpr size_t kTipo = 66;
inline constexpr size_t kColor = 67;
inline constexpr size_t kIzquierda = 68;
inline constexpr size_t kDerecha = 72;
inline constexpr size_t kHijo = 76;
inline constexpr size_t kIdentificador = 80;
inline constexpr size_t kInicio = 116;
inline constexpr size_t kTamano = 120;
inline constexpr uint8_t kFlujo = 2;
inline constexpr uint8_t kRaiz = 5;
}  // namespace entrada

}  // namespace bn::xls::compuesto
