// SPDX-License-Identifier: MIT
#include "platform/windows/CarpetaDeUsuario.h"

#include <windows.h>

#include <string>
#include <system_error>

#include "platform/Ficheros.h"

namespace bn::windows {
namespace {

namespace fs = std::filesystem;

/// A variable of the environment; "" when there is none.
std::wstring delEntorno(const wchar_t* variable) {
    std::wstring valor;
    DWORD largo = ::GetEnvironmentVariableW(variable, nullptr, 0);
    while (largo > valor.size()) {
        valor.resize(largo);
        largo = ::GetEnvironmentVariableW(variable, valor.data(), largo);
    }
    valor.resize(largo);
    return valor;
}

}  // namespace

fs::path carpetaDeUsuario(const fs::path& delSistema) {
    const fs::path base = delSistema.empty() ? fs::path(delEntorno(L"LOCALAPPDATA")) : delSistema;
    // A relative one would be another folder at every start.
    if (!base.is_absolute()) {
        throw ErrorFichero("bnDX5: el sistema no tiene carpeta para los datos del usuario");
    }
    fs::path carpeta = base / L"bnDX5";
    std::error_code error;
    fs::create_directories(carpeta, error);
    if (error) {
        throw ErrorFichero(ficheros::aTexto(carpeta) + ": no se puede crear la carpeta");
    }
    return carpeta;
}

}  // namespace bn::windows
