// SPDX-License-Identifier: MIT
#include <windows.h>

#include <string>

#include "platform/Escritorio.h"
#include "platform/Ficheros.h"

namespace bn::escritorio {
namespace {

constexpr const wchar_t* kClave = L"Software\\Microsoft\\Windows\\CurrentVersion\\Run";
constexpr const wchar_t* kValor = L"bnDX5";

[[noreturn]] void fallar(LSTATUS error) {
    const std::string causa = error == ERROR_ACCESS_DENIED
                                  ? "acceso denegado"
                                  : "error " + std::to_string(error) + " del sistema";
    throw ErrorFichero("Inicio de sesión: " + causa);
}

/// The program as a command. Quotes only where there are blanks, at which the system would cut.
std::wstring comoOrden(const std::filesystem::path& programa) {
    const std::wstring ruta = programa.native();
    return ruta.find(L' ') == std::wstring::npos ? ruta : L'"' + ruta + L'"';
}

}  // namespace

bool estaEnArranque() {
    return ::RegGetValueW(HKEY_CURRENT_USER, kClave, kValor, RRF_RT_REG_SZ, nullptr, nullptr,
                          nullptr) == ERROR_SUCCESS;
}

void ponerEnArranque(bool activo, const std::filesystem::path& programa) {
    if (!activo) {
        const LSTATUS error = ::RegDeleteKeyValueW(HKEY_CURRENT_USER, kClave, kValor);
        if (error != ERROR_SUCCESS && error != ERROR_FILE_NOT_FOUND) {
            fallar(error);
        }
        return;
    }
    const std::wstring orden = comoOrden(programa);
    const auto bytes = static_cast<DWORD>((orden.size() + 1) * sizeof(wchar_t));
    const LSTATUS error =
        ::RegSetKeyValueW(HKEY_CURRENT_USER, kClave, kValor, REG_SZ, orden.c_str(), bytes);
    if (error != ERROR_SUCCESS) {
        fallar(error);
    }
}

}  // namespace bn::escritorio
