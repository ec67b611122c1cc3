// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace bn::windows {

/// UTF-8 as the system's calls take it; what is not UTF-8 becomes U+FFFD.
std::wstring ancho(std::string_view utf8);
/// A text of the system's as UTF-8; half a surrogate pair becomes U+FFFD.
std::string utf8(std::wstring_view texto);

}  // namespace bn::windows
