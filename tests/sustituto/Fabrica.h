// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "destinations/excel/com/ComPtr.h"

namespace bn::sustituto {

/// The class that is registered as "Excel.Application".
inline constexpr CLSID kClase{0x00024500, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

/// Where the applications come from. It is never released.
IClassFactory* fabrica();

/// Registers a server of the class: its kind ("InprocServer32", "LocalServer32"), and its file as
/// the system is to run it.
bool registrar(const wchar_t* tipo, const std::wstring& archivo);
void borrarRegistro();

}  // namespace bn::sustituto
