// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace bn::formato {

/// Formats a text with a text picture; its second section, when there is one, is for empty texts.
/// Placeholders fill from the right ("!": from the left); characters beyond them come out at the
/// placeholder filled last. Works on Windows-1252.
std::string formatearTexto(std::string_view texto, std::string_view formato);

}  // namespace bn::formato
