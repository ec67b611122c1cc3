// SPDX-License-Identifier: MIT
#include "platform/Puertos.h"

<<<<<<< HEAD
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
        if (respuesta == ERROR_NO_MORE_ITEMS) {
            return puertos;
        }
        if (respuesta != ERROR_SUCCESS || tipo != REG_SZ) {
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
=======
#include <windows.h>

#include <algorithm>
#include <array>
#include <string>

namespace bn {

namespace {

constexpr const wchar_t* kClave = L"HARDWARE\\DEVICEMAP\\SERIALCOMM";
constexpr int kUltimoCanal = 16;

std::string aUtf8(const wchar_t* texto) {
    const int largo = WideCharToMultiByte(CP_UTF8, 0, texto, -1, nullptr, 0, nullptr, nullptr);
    if (largo <= 1) return {};
    std::string utf8(static_cast<std::size_t>(largo), '\0');
    WideCharToMultiByte(CP_UTF8, 0, texto, -1, utf8.data(), largo, nullptr, nullptr);
    utf8.pop_back();  // the closing zero
    return utf8;
}

/// The number of a port called "COM3"; 0 for any other name.
int numeroDe(const std::string& nombre) {
    constexpr std::size_t kPrefijo = 3;
    constexpr std::size_t kMasLargo = kPrefijo + 5;
    if (!nombre.starts_with("COM") || nombre.size() > kMasLargo) return 0;
    int numero = 0;
    for (std::size_t i = kPrefijo; i < nombre.size(); ++i) {
        if (nombre[i] < '0' || nombre[i] > '9') return 0;
        numero = numero * 10 + (nombre[i] - '0');
    }
    return numero;
}

/// What the driver calls the port, without the folder of its devices: "\Device\VCP0" reads "VCP0".
std::string legible(const std::string& controlador) {
    return controlador.substr(controlador.rfind('\\') + 1);
>>>>>>> main
}

}  // namespace

std::vector<PuertoPresente> puertosPresentes(const std::filesystem::path& /*raiz*/) {
<<<<<<< HEAD
    const auto propios = nombresPropios();
    std::vector<PuertoPresente> puertos;
    for (const auto& [numero, nombre] : declarados()) {
        const auto propio = propios.find(nombre);
        puertos.push_back({nombre, propio != propios.end() ? propio->second : "Puerto serie",
                           numero <= kUltimoCanal ? static_cast<int16_t>(numero) : int16_t{0}});
    }
=======
    std::vector<PuertoPresente> puertos;
    HKEY clave = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, kClave, 0, KEY_READ, &clave) != ERROR_SUCCESS) {
        return puertos;  // a machine without serial ports has no such key
    }
    for (DWORD i = 0;; ++i) {
        std::array<wchar_t, 256> nombre{};
        std::array<wchar_t, 256> valor{};
        DWORD largoNombre = static_cast<DWORD>(nombre.size());
        DWORD largoValor = static_cast<DWORD>((valor.size() - 1) * sizeof(wchar_t));
        DWORD tipo = 0;
        const LSTATUS estado = RegEnumValueW(clave, i, nombre.data(), &largoNombre, nullptr, &tipo,
                                             reinterpret_cast<BYTE*>(valor.data()), &largoValor);
        if (estado == ERROR_MORE_DATA) continue;
        if (estado != ERROR_SUCCESS) break;
        if (tipo != REG_SZ) continue;
        const std::string dispositivo = aUtf8(valor.data());
        const int numero = numeroDe(dispositivo);
        puertos.push_back({dispositivo, legible(aUtf8(nombre.data())),
                           static_cast<int16_t>(numero <= kUltimoCanal ? numero : 0)});
    }
    RegCloseKey(clave);
    std::sort(puertos.begin(), puertos.end(), [](const auto& uno, const auto& otro) {
        const int primero = numeroDe(uno.dispositivo);
        const int segundo = numeroDe(otro.dispositivo);
        return primero != segundo ? primero < segundo : uno.dispositivo < otro.dispositivo;
    });
>>>>>>> main
    return puertos;
}

}  // namespace bn
