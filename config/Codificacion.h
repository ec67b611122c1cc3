// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace bn {

/// The only place that converts between the settings side (UTF-8) and the line side (Windows-1252,
/// one byte a character). What cannot be converted becomes "?". The five codes that Windows-1252
/// leaves undefined (81, 8D, 8F, 90, 9D) stand for the control characters of the same number.
std::string utf8ACp1252(std::string_view utf8);
std::string cp1252AUtf8(std::string_view cp1252);

/// True when every character of the text exists in Windows-1252.
bool cabeEnCp1252(std::string_view utf8);
bool esUtf8Valido(std::string_view bytes);

/// One code point after another: of valid UTF-8, and back. An invalid byte gives U+FFFD.
std::u32string utf8AU32(std::string_view utf8);
std::string u32AUtf8(std::u32string_view codigos);
std::u16string utf8AU16(std::string_view utf8);
std::string u16AUtf8(std::u16string_view unidades);

/// Upper case of every letter, Spanish and other Latin ones included ("ñ" gives "Ñ").
std::string mayusculas(std::string_view utf8);

}  // namespace bn
