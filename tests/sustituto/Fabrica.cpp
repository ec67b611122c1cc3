// SPDX-License-Identifier: MIT
#include "tests/sustituto/Fabrica.h"

#include <array>

#include "tests/sustituto/Modelo.h"
#include "tests/sustituto/ObjetoSustituto.h"

namespace bn::sustituto {

namespace {

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

std::wstring textoDe(const CLSID& clase) {
    std::array<wchar_t, 40> texto{};
    StringFromGUID2(clase, texto.data(), static_cast<int>(texto.size()));
    return texto.data();
}

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

bool registrar(const CLSID& clase, const wchar_t* tipo, const std::wstring& archivo) {
    const std::wstring clave = L"CLSID\\" + textoDe(clase);
    const std::wstring servidor = clave + L"\\" + tipo;
    return escribirClave(servidor, nullptr, archivo) &&
           escribirClave(servidor, L"ThreadingModel", L"Apartment") &&
           escribirClave(clave + L"\\ProgID", nullptr, kIdentificador) &&
           escribirClave(std::wstring(kIdentificador) + L"\\CLSID", nullptr, textoDe(clase));
}

void borrarRegistro() {
    for (const CLSID& clase : {kClase, kClaseCompatible}) {
        RegDeleteTreeW(HKEY_CLASSES_ROOT, (L"CLSID\\" + textoDe(clase)).c_str());
    }
    RegDeleteTreeW(HKEY_CLASSES_ROOT, kIdentificador);
}

}  // namespace bn::sustituto
