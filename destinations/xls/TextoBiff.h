// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace bn::xls {

/// Characters as the format stores them: one byte each where all are Latin-1, else UTF-16.
struct TextoBiff {
    bool ancho = false;
    uint32_t unidades = 0;
    std::string bytes;
};

/// From UTF-8; what is not valid UTF-8 becomes U+FFFD.
TextoBiff aBiff(std::string_view utf8);

/// To UTF-8; a lone surrogate becomes U+FFFD. Of an odd last byte of a wide text nothing is left.
std::string deBiff(std::string_view bytes, bool ancho);

/// Appends as deBiff does. For a text that comes in pieces the pieces must not cut a surrogate
/// pair.
void anadirDeBiff(std::string& utf8, std::string_view bytes, bool ancho);

/// Reads the option byte at pos and that many characters behind it; throws ErrorExcel when they are
/// not all there. despues, when given, receives the position behind them.
std::string leerTexto(std::string_view datos, size_t pos, uint32_t unidades,
                      size_t* despues = nullptr);

/// Appends the option byte and the characters.
void ponerTexto(std::string& salida, const TextoBiff& texto);

/// Equal as names of sheets and of defined names are: without regard to letter case.
bool mismoNombre(std::string_view utf8A, std::string_view utf8B);

/// Before in the alphabet of code points, without regard to letter case.
bool menorNombre(std::string_view utf8A, std::string_view utf8B);

}  // namespace bn::xls
