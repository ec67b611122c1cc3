// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>

namespace bn {

/// Whether some other program has a file.
enum class Tenencia {
    kLibre,
    kTomado,    ///< it holds a lock on it, or does not let it be written or replaced
    kNoSeSabe,  ///< no sign of it; but a program could have the file open without any
};

/// Looks without waiting and leaves no trace. A missing file is kLibre. Never throws.
Tenencia tenenciaDe(const std::filesystem::path& fichero);

/// Whether a program of that file name runs on this computer, whoever started it; also true when
/// that cannot be found out. Never throws.
bool estaEnMarcha(const std::string& programa);

/// This computer's name, UTF-8; "" when it has none. Never throws.
std::string nombreDelEquipo();

}  // namespace bn
