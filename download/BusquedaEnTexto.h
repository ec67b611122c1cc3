// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "download/Tramos.h"

namespace bn {

/// What a text file holds of the lines that were being written to it.
struct HallazgoEnTexto {
    /// Bytes, and where they belong, counted from the beginning of what was looked at.
    struct Trozo {
        std::uint64_t lugar = 0;
        std::string bytes;

        bool operator==(const Trozo&) const = default;
    };

    Tramos halladas;            ///< of the lines; those that were cut off among them
    std::vector<Trozo> trozos;  ///< those lines, whole: what was cut off needs them, and what is
                                ///< seen may not have reached the disk itself
};

/// Looks for lines (with their ends) in the bytes that stand behind the place where they began to
/// be written. Where nothing but they has been written since, a cut may have left any part of them,
/// zeros among it where the disk had no time; where others have written too, each line is looked
/// for by itself and each that stands there counts once.
HallazgoEnTexto buscarEnTexto(std::string_view detras, const std::vector<std::string>& lineas);

}  // namespace bn
