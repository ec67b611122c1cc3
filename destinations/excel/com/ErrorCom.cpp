// SPDX-License-Identifier: MIT
#include "destinations/excel/com/ErrorCom.h"

#include <array>
#include <cstdio>
#include <memory>
#include <string_view>
#include <utility>

#include "destinations/excel/ObjectModel.h"
#include "destinations/excel/com/VarianteCom.h"

namespace bn::excel::com {

namespace {

// Excel's own: a cell is being edited, or a dialog is open.
constexpr auto kExcelNoAtiende = static_cast<HRESULT>(0x800AC472);

struct LiberarLocal {
    void operator()(wchar_t* texto) const { LocalFree(texto); }
};

}  // namespace

std::string textoDelSistema(HRESULT codigo) {
    wchar_t* crudo = nullptr;
    // The call wants a buffer, but with this flag takes the place where to put one of its own.
    const DWORD largo = FormatMessageW(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
        nullptr, static_cast<DWORD>(codigo), 0, reinterpret_cast<wchar_t*>(&crudo), 0, nullptr);
    const std::unique_ptr<wchar_t, LiberarLocal> duenio(crudo);
    std::wstring_view texto(crudo ? crudo : L"", largo);
    texto = texto.substr(0, texto.find_last_not_of(L" \r\n") + 1);
    if (!texto.empty()) return deAncho(texto);
    std::array<char, 64> cifras{};
    std::snprintf(cifras.data(), cifras.size(), "Error 0x%08lX de la hoja de cálculo",
                  static_cast<unsigned long>(codigo));
    return cifras.data();
}

void lanzarError(HRESULT codigo) { throw ErrorExcel(textoDelSistema(codigo)); }

void exigirExito(HRESULT codigo) {
    if (FAILED(codigo)) lanzarError(codigo);
}

bool estaOcupada(HRESULT codigo) {
    return codigo == RPC_E_CALL_REJECTED || codigo == RPC_E_SERVERCALL_RETRYLATER ||
           codigo == kExcelNoAtiende;
}

EXCEPINFO* Excepcion::recibir() {
    vaciar();
    return &datos_;
}

HRESULT Excepcion::causa(HRESULT codigo) {
    if (codigo != DISP_E_EXCEPTION) return codigo;
    completar();
    return datos_.scode != 0 ? datos_.scode : codigo;
}

void Excepcion::lanzar(HRESULT codigo) {
    const HRESULT fallo = causa(codigo);
    const UINT largo = SysStringLen(datos_.bstrDescription);
    if (largo > 0) throw ErrorExcel(deAncho({datos_.bstrDescription, largo}));
    lanzarError(fallo);
}

/// Some servers fill in the texts only when asked.
void Excepcion::completar() {
    if (auto* rellenar = std::exchange(datos_.pfnDeferredFillIn, nullptr)) rellenar(&datos_);
}

void Excepcion::vaciar() {
    SysFreeString(datos_.bstrSource);
    SysFreeString(datos_.bstrDescription);
    SysFreeString(datos_.bstrHelpFile);
    datos_ = {};
}

}  // namespace bn::excel::com
