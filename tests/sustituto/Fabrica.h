// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "destinations/excel/com/ComPtr.h"

namespace bn::sustituto {

/// The class that is registered as "Excel.Application".
inline constexpr CLSID kClase{0x00024500, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

/// The class of an application that takes the identifier's place with a class of its own.
inline constexpr CLSID kClaseCompatible{
    0x0B4D58F1, 0x6C3D, 0x4B3C, {0x9B, 0x0E, 0x4D, 0x2F, 0x6D, 0x1C, 0x9A, 0x11}};

/// Where the applications come from. It is never released.
IClassFactory* fabrica();

/// Registers a server of a class, as "Excel.Application": its kind ("InprocServer32",
/// "LocalServer32"), and its file as the system is to run it.
bool registrar(const CLSID& clase, const wchar_t* tipo, const std::wstring& archivo);
void borrarRegistro();

}  // namespace bn::sustituto
