// SPDX-License-Identifier: MIT
#include <array>
#include <string>

#include "tests/sustituto/Enumerador.h"
#include "tests/sustituto/Modelo.h"
#include "tests/sustituto/ObjetoSustituto.h"

// The four doors of an in-process server, and the registration that regsvr32 asks for.

namespace bn::sustituto {

namespace {

constexpr CLSID kClase{0x00024500, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
constexpr const wchar_t* kTextoClase = L"{00024500-0000-0000-C000-000000000046}";
constexpr const wchar_t* kIdentificador = L"Excel.Application";

HMODULE modulo = nullptr;

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

bool escribirClave(const std::wstring& resto, const wchar_t* nombre, const std::wstring& valor) {
    const auto bytes = static_cast<DWORD>((valor.size() + 1) * sizeof(wchar_t));
    return RegSetKeyValueW(HKEY_CLASSES_ROOT, resto.c_str(), nombre, REG_SZ, valor.c_str(),
                           bytes) == ERROR_SUCCESS;
}

bool registrar() {
    std::array<wchar_t, MAX_PATH> ruta{};
    GetModuleFileNameW(modulo, ruta.data(), static_cast<DWORD>(ruta.size()));
    const std::wstring clase = std::wstring(L"CLSID\\") + kTextoClase;
    const std::wstring servidor = clase + L"\\InprocServer32";
    return escribirClave(servidor, nullptr, ruta.data()) &&
           escribirClave(servidor, L"ThreadingModel", L"Apartment") &&
           escribirClave(clase + L"\\ProgID", nullptr, kIdentificador) &&
           escribirClave(std::wstring(kIdentificador) + L"\\CLSID", nullptr, kTextoClase);
}

void borrarClave(const std::wstring& resto) { RegDeleteTreeW(HKEY_CLASSES_ROOT, resto.c_str()); }

}  // namespace

}  // namespace bn::sustituto

extern "C" {

BOOL WINAPI DllMain(HINSTANCE instancia, DWORD motivo, LPVOID /*reservado*/) {
    if (motivo == DLL_PROCESS_ATTACH) bn::sustituto::modulo = instancia;
    return TRUE;
}

HRESULT WINAPI DllGetClassObject(REFCLSID clase, REFIID iid, void** objeto) {
    static bn::sustituto::Fabrica fabrica;
    *objeto = nullptr;
    if (clase != bn::sustituto::kClase) return CLASS_E_CLASSNOTAVAILABLE;
    return fabrica.QueryInterface(iid, objeto);
}

HRESULT WINAPI DllCanUnloadNow() {
    const bool libre =
        bn::sustituto::objetosVivos() == 0 && bn::sustituto::enumeradoresVivos() == 0;
    return libre ? S_OK : S_FALSE;
}

HRESULT WINAPI DllRegisterServer() { return bn::sustituto::registrar() ? S_OK : E_FAIL; }

HRESULT WINAPI DllUnregisterServer() {
    bn::sustituto::borrarClave(std::wstring(L"CLSID\\") + bn::sustituto::kTextoClase);
    bn::sustituto::borrarClave(bn::sustituto::kIdentificador);
    return S_OK;
}
}
