// SPDX-License-Identifier: MIT
#include "destinations/excel/com/ErrorCom.h"

#include <array>
#include <cstdio>
#include <memory>
#include <string_view>
#include <utility>

#include "destinations/excel/com/VarianteCom.h"

namespace bn::excel::com {

namespace {

// Excel's own: a cell is being edited, or a dialog is open.
constexpr auto kExcelNoAtiende = static_cast<HRESULT>(0x800AC472);

/// The other side is not there any more: it was ended, or has failed.
bool haMuerto(HRESULT codigo) {
    return codigo == RPC_E_SERVER_DIED || codigo == RPC_E_SERVER_DIED_DNE ||
           codigo == RPC_E_DISCONNECTED || codigo == HRESULT_FROM_WIN32(RPC_S_SERVER_UNAVAILABLE) ||
           codigo == HRESULT_FROM_WIN32(RPC_S_CALL_FAILED) ||
           codigo == HRESULT_FROM_WIN32(RPC_S_CALL_FAILED_DNE);
}

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

void lanzarError(HRESULT codigo) {
    const std::string texto = textoDelSistema(codigo);
    if (!haMuerto(codigo)) throw ErrorExcel(texto);
    throw ErrorExcel("Excel se ha cerrado mientras se trabajaba con él. " + texto);
}

void exigirExito(HRESULT codigo) {
    if (FAILED(codigo)) lanzarError(codigo);
}

bool estaOcupada(HRESULT codigo) {
    return codigo == RPC_E_CALL_REJECTED || codigo == RPC_E_SERVERCALL_RETRYLATER ||
           codigo == kExcelNoAtiende || codigo == CO_E_SERVER_EXEC_FAILURE;
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
    const std::string texto =
        largo > 0 ? deAncho({datos_.bstrDescription, largo}) : textoDelSistema(fallo);
    if (estaOcupada(fallo)) throw ErrorExcel(texto);
    if (HRESULT_FACILITY(fallo) == FACILITY_RPC || haMuerto(fallo)) lanzarError(fallo);
    throw Negativa(texto);
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
