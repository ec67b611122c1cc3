// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace bn::xls {

/// A formula's tokens as the file keeps them, without their length in front.
using Rgce = std::vector<uint8_t>;

/// A cell of a sheet, counted from 0 as in the file.
struct PosicionCelda {
    int32_t fila = 0;
    int32_t columna = 0;
    friend bool operator==(const PosicionCelda&, const PosicionCelda&) = default;
};

inline constexpr int32_t kFilas = 65536;
inline constexpr int32_t kColumnas = 256;

/// What a cell reads as whose formula cannot be put into words.
inline constexpr const char* kIndescifrable = "=?";

/// What a formula needs to know of its workbook: sheets by their number in EXTERNSHEET, defined
/// names by their 1-based place. Names are compared without regard to letter case. Texts are UTF-8.
class ContextoFormula {
 public:
    ContextoFormula() = default;
    ContextoFormula(const ContextoFormula&) = delete;
    ContextoFormula& operator=(const ContextoFormula&) = delete;
    virtual ~ContextoFormula() = default;

    /// The number that stands for the sheets from primera to ultima (the same one twice for one
    /// sheet), added to the workbook if it has none yet; nothing when there is no such sheet.
    virtual std::optional<uint16_t> xtiDeHojas(const std::string& primera,
                                               const std::string& ultima) = 0;
    /// The first and last sheet that a number stands for; nothing when they are not of this
    /// workbook or do not exist.
    virtual std::optional<std::pair<std::string, std::string>> hojasDeXti(uint16_t xti) = 0;
    /// The 1-based place of a defined name that this formula sees.
    virtual std::optional<uint16_t> indiceDeNombre(const std::string& nombre) = 0;
    /// The defined name at a 1-based place, as a formula would call it.
    virtual std::optional<std::string> nombreDeIndice(uint16_t indice) = 0;
};

}  // namespace bn::xls
