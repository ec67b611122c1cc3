// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace bn::formato {

/// What a picture describes.
enum class Clase { kNumero, kFecha, kTexto };

/// The kind of a picture. The first symbol outside quotes and backslashes that belongs to one kind
/// only decides it: digit places and "%" mean a number, a date or time code a date, "@ & < > !" a
/// text; symbols of the other kinds then stand for themselves. A picture without any is a number's,
/// and shows its literals alone.
Clase clasificar(std::string_view formato);

/// The sections of a picture, parted at each ";" outside quotes; a fifth and later ones are
/// dropped.
struct Secciones {
    std::array<std::string_view, 4> textos;
    std::size_t cuantas = 0;

    /// The section, or an empty one when the picture has none there.
    std::string_view operator[](std::size_t i) const { return textos[i]; }
};
Secciones dividir(std::string_view formato);

/// One step through a picture: either a literal text or one character that may be a symbol.
struct Elemento {
    bool literal = false;
    std::string_view texto;
};

/// Walks a picture and resolves its backslashes and quotes. A quote that is never closed holds the
/// rest; a backslash at the very end stands for itself.
class Lector {
 public:
    explicit Lector(std::string_view formato) : formato_(formato) {}

    /// The next element; false at the end.
    bool siguiente(Elemento& elemento);
    /// The picture from the last element given on.
    std::string_view desdeActual() const { return formato_.substr(actual_); }
    /// Widens the last element, which is no literal, to so many characters.
    void consumir(std::size_t caracteres) { posicion_ = actual_ + caracteres; }

 private:
    std::string_view formato_;
    std::size_t actual_ = 0;
    std::size_t posicion_ = 0;
};

}  // namespace bn::formato
