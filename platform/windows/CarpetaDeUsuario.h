// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

namespace bn::windows {

/// The program's folder among the user's, created when it is missing: in the one that the shell
/// gives for programs' data or, where it gives none, in the one that LOCALAPPDATA names. Throws
/// ErrorFichero.
std::filesystem::path carpetaDeUsuario(const std::filesystem::path& delSistema);

}  // namespace bn::windows
