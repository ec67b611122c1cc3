// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Small text helpers of the settings and their dialogs.
namespace bn::utiltexto {

/// Appends an item to a list held as text: no separator before the first one, and an empty item
/// keeps its place. primero tells that the list is still without items.
void anadirALista(std::string& lista, std::string_view elemento, std::string_view separador,
                  bool primero);

/// Takes the first token off the text, up to the separator, and leaves what follows it; without a
/// separator the token is the whole text.
std::string sacarPrimero(std::string& texto, std::string_view separador);

/// The items of a list held as text, the empty ones too, as views into it; those beyond maximo are
/// left out. A text without a separator is one item.
std::vector<std::string_view> partir(std::string_view texto, char separador, std::size_t maximo);

/// The text without the blanks and tabs around it.
std::string_view sinBlancos(std::string_view texto);

/// "True" or "False".
std::string deBooleano(bool valor);
/// True for True, Verdadero, 1, -1, Sí (any letter case), false for anything else.
bool aBooleano(std::string_view texto);

/// The number a text begins with: blanks, sign, digits, a decimal point, an exponent; 0 when there
/// is none. Too large a number gives the largest one, with its sign.
double numeroInicial(std::string_view texto);
/// The nearest whole number, halves to the even neighbour.
double redondearPar(double valor);
/// True when the whole text, surrounding blanks ignored, is an optional sign and digits with at
/// most one separator ("," or ".").
bool esNumerico(std::string_view texto);

/// A field for numbers lets this key through: digits, and the control keys below 32.
bool teclaNumerica(char32_t tecla);

/// Wildcard comparison, exact in letter case: "*" any run, "?" one character, "#" one digit, and
/// "[ABC]", "[A-Z]", "[!ABC]" one character of (not of) a list. Works byte by byte. A list without
/// its closing bracket matches nothing.
bool coincide(std::string_view texto, std::string_view patron);

}  // namespace bn::utiltexto
