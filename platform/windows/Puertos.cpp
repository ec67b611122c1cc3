// SPDX-License-Identifier: MIT
#include "platform/Puertos.h"

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
}

}  // namespace

std::vector<PuertoPresente> puertosPresentes(const std::filesystem::path& /*raiz*/) {
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
    return puertos;
}

}  // namespace bn
