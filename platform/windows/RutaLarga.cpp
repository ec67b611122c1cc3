// SPDX-License-Identifier: MIT
#include "platform/windows/RutaLarga.h"

#include <system_error>

namespace bn::windows {

std::wstring paraElSistema(const std::filesystem::path& ruta) {
    constexpr std::size_t kLargoCorriente = 240;  // a temporary's name still goes in
    std::error_code error;
    const std::wstring entera =
        std::filesystem::absolute(ruta, error).lexically_normal().make_preferred();
    if (error || entera.size() < kLargoCorriente || entera.starts_with(L"\\\\?\\")) {
        return ruta.native();
    }
    return entera.starts_with(L"\\\\") ? L"\\\\?\\UNC" + entera.substr(1) : L"\\\\?\\" + entera;
}

}  // namespace bn::windows
