// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "destinations/xls/Registros.h"

namespace bn::xls {

/// The globals' list of workbooks (SUPBOOK) and of sheets of theirs (EXTERNSHEET) that formulas and
/// names refer to by number. Numbers once given stay: references are added, never removed.
class LibrosExternos {
 public:
    /// Reads what the globals hold, which must outlive this object.
    explicit LibrosExternos(Registros& globales);

    /// Number of the sheets primera to ultima (0-based) of this workbook, added if there is none.
    uint16_t xti(int32_t primera, int32_t ultima, size_t cuantasHojas);

    /// First and last sheet behind a number; nothing when they are of another workbook or gone.
    std::optional<std::pair<int32_t, int32_t>> hojas(uint16_t xti) const;

    /// The workbook's sheets have changed places: nuevos tells each old one's, -1 for a removed
    /// one.
    void remapear(const std::vector<int32_t>& nuevos, size_t cuantasHojas);

 private:
    struct Xti {
        uint16_t libro = 0;
        int16_t primera = 0;
        int16_t ultima = 0;
    };

    void crearLibroPropio(size_t cuantasHojas);
    void reescribir();

    Registros& globales_;
    std::vector<Xti> lista_;
    std::optional<uint16_t> propio_;  // which SUPBOOK stands for this workbook
};

}  // namespace bn::xls
