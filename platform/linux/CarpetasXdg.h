// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

namespace bn::xdg {

/// The user's home folder.
std::filesystem::path hogar();
/// $XDG_CONFIG_HOME, else ".config" at home.
std::filesystem::path configuracion();
/// $XDG_DATA_HOME, else ".local/share" at home.
std::filesystem::path datos();
/// $XDG_DOCUMENTS_DIR, else the user's choice in "user-dirs.dirs", else the home folder.
std::filesystem::path documentos();

}  // namespace bn::xdg
