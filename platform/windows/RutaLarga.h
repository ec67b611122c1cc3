// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>

namespace bn::windows {

/// The path as the system's calls take it at any length: beyond 259 characters they take only the
/// form that begins with two backslashes and a question mark, and that one only whole and normal.
std::wstring paraElSistema(const std::filesystem::path& ruta);

}  // namespace bn::windows
