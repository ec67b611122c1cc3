// SPDX-License-Identifier: MIT
#include "platform/Escritorio.h"

#include <objbase.h>
#include <shellapi.h>
#include <shlobj.h>
#include <windows.h>

#include <array>
#include <memory>
#include <system_error>

#include "platform/windows/Asa.h"
#include "platform/windows/CarpetaDeUsuario.h"
#include "platform/windows/RutaLarga.h"
#include "platform/windows/Texto.h"

namespace bn::escritorio {
namespace {

namespace fs = std::filesystem;

/// A special folder of the shell's; nothing when it has none of that number.
fs::path carpetaDelSistema(int32_t numero) {
    LPITEMIDLIST lista = nullptr;
    if (FAILED(::SHGetSpecialFolderLocation(nullptr, numero, &lista))) {
        return {};
    }
    const std::unique_ptr<ITEMIDLIST, decltype(&::CoTaskMemFree)> duena(lista, ::CoTaskMemFree);
    std::array<wchar_t, MAX_PATH> ruta{};
    if (!::SHGetPathFromIDListW(lista, ruta.data())) {
        return {};
    }
    return ruta.data();
}

/// The rights in a folder cannot be told from outside: only trying tells.
bool seEscribe(const fs::path& carpeta) {
    const std::wstring nombre = windows::paraElSistema(
        carpeta / (L".bn-" + std::to_wstring(::GetCurrentProcessId()) + L"-prueba.tmp"));
    const windows::Asa prueba(::CreateFileW(nombre.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                            FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE,
                                            nullptr));
    return static_cast<bool>(prueba) || ::GetLastError() == ERROR_FILE_EXISTS;
}

}  // namespace

std::string carpetaEspecial(int32_t numero) {
    return windows::utf8(carpetaDelSistema(numero).native());
}

fs::path ejecutable() {
    std::wstring ruta(MAX_PATH, L'\0');
    for (;;) {
        const auto cabida = static_cast<DWORD>(ruta.size());
        const DWORD largo = ::GetModuleFileNameW(nullptr, ruta.data(), cabida);
        if (largo < cabida) {
            ruta.resize(largo);
            return ruta;
        }
        ruta.resize(ruta.size() * 2);
    }
}

fs::path carpetaPropia() { return carpetaPropia(ejecutable().parent_path()); }

fs::path carpetaPropia(const fs::path& carpetaEjecutable) {
    if (seEscribe(carpetaEjecutable)) {
        return carpetaEjecutable;
    }
    return windows::carpetaDeUsuario(carpetaDelSistema(CSIDL_LOCAL_APPDATA));
}

int32_t abrirDocumento(const std::string& rutaODireccion) {
    if (rutaODireccion.empty() || rutaODireccion.find('\0') != std::string::npos) {
        return kNoEncontrado;
    }
    const HINSTANCE respuesta =
        ::ShellExecuteW(::GetDesktopWindow(), L"Open", windows::ancho(rutaODireccion).c_str(),
                        nullptr, nullptr, SW_SHOWMAXIMIZED);
    const auto codigo = static_cast<int32_t>(reinterpret_cast<INT_PTR>(respuesta));
    // To the user a folder that is missing is a file that is missing.
    return codigo == SE_ERR_PNF ? kNoEncontrado : codigo;
}

double fechaLocal(std::chrono::system_clock::time_point instante) {
    using std::chrono::day, std::chrono::month, std::chrono::year;
    using std::chrono::days, std::chrono::floor, std::chrono::seconds, std::chrono::sys_days;
    constexpr double kSegundosDelDia = 86400;
    const auto segundos = floor<seconds>(instante);
    const auto dia = floor<days>(segundos);
    const std::chrono::year_month_day fecha(dia);
    const std::chrono::hh_mm_ss hora(segundos - dia);
    SYSTEMTIME universal{};
    universal.wYear = static_cast<WORD>(static_cast<int>(fecha.year()));
    universal.wMonth = static_cast<WORD>(static_cast<unsigned>(fecha.month()));
    universal.wDay = static_cast<WORD>(static_cast<unsigned>(fecha.day()));
    universal.wHour = static_cast<WORD>(hora.hours().count());
    universal.wMinute = static_cast<WORD>(hora.minutes().count());
    universal.wSecond = static_cast<WORD>(hora.seconds().count());
    SYSTEMTIME local{};
    if (!::SystemTimeToTzSpecificLocalTime(nullptr, &universal, &local)) {
        throw std::system_error(static_cast<int>(::GetLastError()), std::system_category());
    }
    const auto hoy = sys_days(year(local.wYear) / month(local.wMonth) / day(local.wDay));
    const auto origen = sys_days(year(1899) / month(12) / day(30));
    const double delDia = local.wHour * 3600 + local.wMinute * 60 + local.wSecond;
    return static_cast<double>((hoy - origen).count()) + delDia / kSegundosDelDia;
}

void cederElFrente() { ::AllowSetForegroundWindow(ASFW_ANY); }

double ahora() { return fechaLocal(std::chrono::system_clock::now()); }

}  // namespace bn::escritorio
