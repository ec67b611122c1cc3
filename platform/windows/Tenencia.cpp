// SPDX-License-Identifier: MIT
#include "platform/Tenencia.h"

#include <windows.h>
// After it: the process list needs its types.
#include <tlhelp32.h>

#include <array>

#include "platform/windows/Asa.h"
#include "platform/windows/RutaLarga.h"
#include "platform/windows/Texto.h"

namespace bn {
namespace {

using windows::Asa;

/// Why the file cannot be opened for all that a saving does to it; 0 when it can, and none of it is
/// locked.
DWORD impedimento(const std::wstring& ruta) {
    constexpr DWORD kTodosComparten = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const Asa fichero(::CreateFileW(ruta.c_str(), GENERIC_READ | GENERIC_WRITE | DELETE,
                                    kTodosComparten, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL,
                                    nullptr));
    if (!fichero) return ::GetLastError();
    constexpr DWORD kModo = LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY;
    OVERLAPPED desdeElPrincipio{};
    if (!::LockFileEx(fichero.get(), kModo, 0, MAXDWORD, MAXDWORD, &desdeElPrincipio)) {
        return ::GetLastError();
    }
    ::UnlockFileEx(fichero.get(), 0, MAXDWORD, MAXDWORD, &desdeElPrincipio);
    return ERROR_SUCCESS;
}

bool deOtro(DWORD error) {
    return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION;
}

}  // namespace

Tenencia tenenciaDe(const std::filesystem::path& fichero) {
    const std::wstring ruta = windows::paraElSistema(fichero);
    // Virus scanners and indexers hold a file for a moment after it was written.
    constexpr int kIntentos = 10;
    constexpr DWORD kPausa = 20;
    DWORD error = impedimento(ruta);
    for (int intento = 1; deOtro(error) && intento < kIntentos; ++intento) {
        ::Sleep(kPausa);
        error = impedimento(ruta);
    }
    if (deOtro(error)) return Tenencia::kTomado;
    const bool libre = error == ERROR_SUCCESS || error == ERROR_FILE_NOT_FOUND;
    return libre ? Tenencia::kLibre : Tenencia::kNoSeSabe;
}

bool estaEnMarcha(const std::string& programa) {
    const std::wstring buscado = windows::ancho(programa);
    const Asa procesos(::CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    if (!procesos) return true;
    PROCESSENTRY32W proceso{};
    proceso.dwSize = sizeof(proceso);
    BOOL hay = ::Process32FirstW(procesos.get(), &proceso);
    for (; hay != 0; hay = ::Process32NextW(procesos.get(), &proceso)) {
        if (::lstrcmpiW(static_cast<const wchar_t*>(proceso.szExeFile), buscado.c_str()) == 0) {
            return true;
        }
    }
    return false;
}

std::string nombreDelEquipo() {
    std::array<wchar_t, 256> nombre{};
    auto cabida = static_cast<DWORD>(nombre.size());
    if (!::GetComputerNameExW(ComputerNameDnsHostname, nombre.data(), &cabida)) return {};
    return windows::utf8({nombre.data(), cabida});
}

}  // namespace bn
