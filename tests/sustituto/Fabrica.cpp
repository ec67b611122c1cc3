// SPDX-License-Identifier: MIT
#include "tests/sustituto/Fabrica.h"

#include "tests/sustituto/Modelo.h"
#include "tests/sustituto/ObjetoSustituto.h"

namespace bn::sustituto {

namespace {

constexpr const wchar_t* kTextoClase = L"{00024500-0000-0000-C000-000000000046}";
constexpr const wchar_t* kIdentificador = L"Excel.Application";

/// Never destroyed: the class object has nothing to lose.
class Fabrica final : public IClassFactory {
 public:
    virtual ~Fabrica() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** objeto) override {
        *objeto = nullptr;
        if (iid != IID_IUnknown && iid != IID_IClassFactory) return E_NOINTERFACE;
        *objeto = this;
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* exterior, REFIID iid,
                                             void** objeto) override {
        *objeto = nullptr;
        if (exterior) return CLASS_E_NOAGGREGATION;
        const ComPtr<IDispatch> aplicacion(nuevaAplicacion());
        if (!aplicacion) return CO_E_SERVER_EXEC_FAILURE;
        return aplicacion->QueryInterface(iid, objeto);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL /*cerrar*/) override { return S_OK; }
};

std::wstring claveDeClase() { return std::wstring(L"CLSID\\") + kTextoClase; }

bool escribirClave(const std::wstring& resto, const wchar_t* nombre, const std::wstring& valor) {
    const auto bytes = static_cast<DWORD>((valor.size() + 1) * sizeof(wchar_t));
    return RegSetKeyValueW(HKEY_CLASSES_ROOT, resto.c_str(), nombre, REG_SZ, valor.c_str(),
                           bytes) == ERROR_SUCCESS;
}

}  // namespace

IClassFactory* fabrica() {
    static Fabrica unica;
    return &unica;
}

bool registrar(const wchar_t* tipo, const std::wstring& archivo) {
    const std::wstring clase = claveDeClase();
    const std::wstring servidor = clase + L"\\" + tipo;
    return escribirClave(servidor, nullptr, archivo) &&
           escribirClave(servidor, L"ThreadingModel", L"Apartment") &&
           escribirClave(clase + L"\\ProgID", nullptr, kIdentificador) &&
           escribirClave(std::wstring(kIdentificador) + L"\\CLSID", nullptr, kTextoClase);
}

void borrarRegistro() {
    RegDeleteTreeW(HKEY_CLASSES_ROOT, claveDeClase().c_str());
    RegDeleteTreeW(HKEY_CLASSES_ROOT, kIdentificador);
}

}  // namespace bn::sustituto
