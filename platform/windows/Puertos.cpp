// SPDX-License-Identifier: MIT
#include "platform/Puertos.h"

// The second needs the first.
// clang-format off
#include <windows.h>
#include <setupapi.h>
// clang-format on

#include <array>
#include <charconv>
#include <map>
#include <memory>
#include <optional>
#include <string_view>
#include <system_error>
#include <type_traits>

#include "platform/windows/Texto.h"

namespace bn {
namespace {

constexpr int kUltimoCanal = 16;
constexpr std::size_t kLargoMaximo = 512;  // of a name, with its zero: longer ones are left out

/// The class of devices "Ports (COM & LPT)".
constexpr GUID kClasePuertos = {
    0x4d36e978, 0xe325, 0x11ce, {0xbf, 0xc1, 0x08, 0x00, 0x2b, 0xe1, 0x03, 0x18}};

using Nombre = std::array<wchar_t, kLargoMaximo>;

/// 5 for "COM5"; nothing for a name of another kind.
std::optional<int> numeroDe(const std::string& nombre) {
    constexpr std::string_view kFamilia = "COM";
    int numero = 0;
    const char* const fin = nombre.data() + nombre.size();
    if (!nombre.starts_with(kFamilia)) {
        return std::nullopt;
    }
    const auto [hasta, error] = std::from_chars(nombre.data() + kFamilia.size(), fin, numero);
    return error == std::errc() && hasta == fin && numero > 0 ? std::optional(numero)
                                                              : std::nullopt;
}

/// The names of the ports that drivers have declared since the machine was started, in the order of
/// their numbers.
std::map<int, std::string> declarados() {
    std::map<int, std::string> puertos;
    HKEY clave = nullptr;
    if (::RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"HARDWARE\\DEVICEMAP\\SERIALCOMM", 0, KEY_READ,
                        &clave) != ERROR_SUCCESS) {
        return puertos;  // a machine that has never had one
    }
    const std::unique_ptr<std::remove_pointer_t<HKEY>, decltype(&::RegCloseKey)> duena(
        clave, ::RegCloseKey);
    for (DWORD i = 0;; ++i) {
        Nombre nombre{};
        Nombre valor{};
        auto largo = static_cast<DWORD>(nombre.size());
        auto bytes = static_cast<DWORD>((valor.size() - 1) * sizeof(wchar_t));  // always a zero
        DWORD tipo = 0;
        const LSTATUS respuesta = ::RegEnumValueW(clave, i, nombre.data(), &largo, nullptr, &tipo,
                                                  reinterpret_cast<BYTE*>(valor.data()), &bytes);
        if (respuesta == ERROR_MORE_DATA) {
            continue;  // too long to be a port's
        }
        // The end; or a key that cannot be read on, which every further turn would meet again.
        if (respuesta != ERROR_SUCCESS) {
            return puertos;
        }
        if (tipo != REG_SZ) {
            continue;
        }
        const std::string puerto = windows::utf8(valor.data());
        if (const auto numero = numeroDe(puerto)) {
            puertos[*numero] = puerto;
        }
    }
}

std::string nombreDePuerto(HDEVINFO lista, SP_DEVINFO_DATA& aparato) {
    const HKEY clave =
        ::SetupDiOpenDevRegKey(lista, &aparato, DICS_FLAG_GLOBAL, 0, DIREG_DEV, KEY_QUERY_VALUE);
    if (clave == INVALID_HANDLE_VALUE) {
        return {};
    }
    Nombre nombre{};
    auto bytes = static_cast<DWORD>(nombre.size() * sizeof(wchar_t));
    const bool hay = ::RegGetValueW(clave, nullptr, L"PortName", RRF_RT_REG_SZ, nullptr,
                                    nombre.data(), &bytes) == ERROR_SUCCESS;
    ::RegCloseKey(clave);
    return hay ? windows::utf8(nombre.data()) : std::string();
}

/// What the devices call themselves, by port: "USB Serial Port" for COM5.
std::map<std::string, std::string> nombresPropios() {
    std::map<std::string, std::string> nombres;
    const HDEVINFO lista = ::SetupDiGetClassDevsW(&kClasePuertos, nullptr, nullptr, DIGCF_PRESENT);
    if (lista == INVALID_HANDLE_VALUE) {
        return nombres;
    }
    const std::unique_ptr<void, decltype(&::SetupDiDestroyDeviceInfoList)> duena(
        lista, ::SetupDiDestroyDeviceInfoList);
    SP_DEVINFO_DATA aparato{};
    aparato.cbSize = sizeof aparato;
    for (DWORD i = 0; ::SetupDiEnumDeviceInfo(lista, i, &aparato); ++i) {
        Nombre nombre{};
        const auto bytes = static_cast<DWORD>((nombre.size() - 1) * sizeof(wchar_t));
        if (!::SetupDiGetDeviceRegistryPropertyW(lista, &aparato, SPDRP_FRIENDLYNAME, nullptr,
                                                 reinterpret_cast<BYTE*>(nombre.data()), bytes,
                                                 nullptr)) {
            continue;
        }
        const std::string puerto = nombreDePuerto(lista, aparato);
        std::string propio = windows::utf8(nombre.data());
        const std::string cola = " (" + puerto + ")";
        if (propio.ends_with(cola)) {
            propio.resize(propio.size() - cola.size());
        }
        nombres[puerto] = propio;
    }
    return nombres;
}

}  // namespace

std::vector<PuertoPresente> puertosPresentes(const std::filesystem::path& /*raiz*/) {
    const auto propios = nombresPropios();
    std::vector<PuertoPresente> puertos;
    for (const auto& [numero, nombre] : declarados()) {
        const auto propio = propios.find(nombre);
        puertos.push_back({nombre, propio != propios.end() ? propio->second : "Puerto serie",
                           numero <= kUltimoCanal ? static_cast<int16_t>(numero) : int16_t{0}});
    }
    return puertos;
}

/// Only by the names: to ask the system about a device is to open it.
bool esElMismoPuerto(const std::string& uno, const std::string& otro,
                     const std::filesystem::path& /*raiz*/) {
    const auto nombre = [](std::string_view dispositivo) {
        constexpr std::string_view kPrefijo = "\\\\.\\";
        const bool entero = dispositivo.starts_with(kPrefijo);
        return windows::ancho(dispositivo.substr(entero ? kPrefijo.size() : 0));
    };
    const std::wstring a = nombre(uno);
    const std::wstring b = nombre(otro);
    return ::CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(),
                                  static_cast<int>(b.size()), TRUE) == CSTR_EQUAL;
}

}  // namespace bn
