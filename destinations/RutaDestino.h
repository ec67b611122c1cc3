// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace bn {

/// What is wrong with the path of a destination, as the user is told it, "" when nothing is: its
/// folder must exist, then its file name must match the pattern and hold none of \ / : * ? " < > |.
/// Both "/" and "\" separate.
std::string errorDeRuta(const std::string& ruta, std::string_view patron);

}  // namespace bn
