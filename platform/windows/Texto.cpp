// SPDX-License-Identifier: MIT
#include "platform/windows/Texto.h"

#include <windows.h>

namespace bn::windows {

std::wstring ancho(std::string_view utf8) {
    const int largo = static_cast<int>(utf8.size());
    const int cabida = ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), largo, nullptr, 0);
    std::wstring texto(static_cast<std::size_t>(cabida), L'\0');
    ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), largo, texto.data(), cabida);
    return texto;
}

std::string utf8(std::wstring_view texto) {
    const int largo = static_cast<int>(texto.size());
    const int cabida =
        ::WideCharToMultiByte(CP_UTF8, 0, texto.data(), largo, nullptr, 0, nullptr, nullptr);
    std::string convertido(static_cast<std::size_t>(cabida), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, texto.data(), largo, convertido.data(), cabida, nullptr,
                          nullptr);
    return convertido;
}

}  // namespace bn::windows
