// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "destinations/excel/ObjectModel.h"
#include "destinations/excel/com/ComPtr.h"

namespace bn::excel::com {

/// English, United States: the notation of number formats and formulas on every machine.
inline constexpr LCID kIngles = 1033;

/// What the system says of an error code, UTF-8; the code itself when it says nothing.
std::string textoDelSistema(HRESULT codigo);

/// Throws ErrorExcel with the system's text.
[[noreturn]] void lanzarError(HRESULT codigo);

/// Throws ErrorExcel when the code is a failure.
void exigirExito(HRESULT codigo);

/// What the application itself has against a call, in answer to it.
class Negativa : public ErrorExcel {
 public:
    using ErrorExcel::ErrorExcel;
};

/// True when the application says that it cannot attend now, and may a moment later: busy, or
/// starting, or just ending.
bool estaOcupada(HRESULT codigo);

/// What a failed call tells of itself.
class Excepcion {
 public:
    Excepcion() = default;
    Excepcion(const Excepcion&) = delete;
    Excepcion& operator=(const Excepcion&) = delete;
    ~Excepcion() { vaciar(); }

    /// Where a call leaves it; what was held is let go.
    EXCEPINFO* recibir();
    /// The code of the failure itself when codigo only says that there was one.
    HRESULT causa(HRESULT codigo);
    /// Throws Negativa with the application's description, or else the system's text; ErrorExcel
    /// when the application is busy or has gone.
    [[noreturn]] void lanzar(HRESULT codigo);

 private:
    void completar();
    void vaciar();

    EXCEPINFO datos_{};
};

}  // namespace bn::excel::com
