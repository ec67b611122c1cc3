// SPDX-License-Identifier: MIT
#include <array>

#include "tests/sustituto/Enumerador.h"
#include "tests/sustituto/Fabrica.h"
#include "tests/sustituto/ObjetoSustituto.h"

// The four doors of an in-process server.

namespace {

HMODULE modulo = nullptr;

HRESULT registrarEstaBiblioteca(const CLSID& clase) {
    std::array<wchar_t, MAX_PATH> ruta{};
    GetModuleFileNameW(modulo, ruta.data(), static_cast<DWORD>(ruta.size()));
    return bn::sustituto::registrar(clase, L"InprocServer32", ruta.data()) ? S_OK : E_FAIL;
}

}  // namespace

extern "C" {

BOOL WINAPI DllMain(HINSTANCE instancia, DWORD motivo, LPVOID /*reservado*/) {
    if (motivo == DLL_PROCESS_ATTACH) modulo = instancia;
    return TRUE;
}

HRESULT WINAPI DllGetClassObject(REFCLSID clase, REFIID iid, void** objeto) {
    *objeto = nullptr;
    const bool nuestra = clase == bn::sustituto::kClase || clase == bn::sustituto::kClaseCompatible;
    if (!nuestra) return CLASS_E_CLASSNOTAVAILABLE;
    return bn::sustituto::fabrica()->QueryInterface(iid, objeto);
}

HRESULT WINAPI DllCanUnloadNow() {
    const bool libre =
        bn::sustituto::objetosVivos() == 0 && bn::sustituto::enumeradoresVivos() == 0;
    return libre ? S_OK : S_FALSE;
}

HRESULT WINAPI DllRegisterServer() { return registrarEstaBiblioteca(bn::sustituto::kClase); }

HRESULT WINAPI DllRegistrarCompatible() {
    return registrarEstaBiblioteca(bn::sustituto::kClaseCompatible);
}

HRESULT WINAPI DllUnregisterServer() {
    bn::sustituto::borrarRegistro();
    return S_OK;
}
}
