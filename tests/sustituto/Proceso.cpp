// SPDX-License-Identifier: MIT
#include <array>
#include <cstdio>
#include <string>
#include <string_view>

#include "tests/sustituto/Enumerador.h"
#include "tests/sustituto/Fabrica.h"
#include "tests/sustituto/Modelo.h"
#include "tests/sustituto/ObjetoSustituto.h"

// The stand-in as a process of its own, as the application itself is: one for each that is started,
// and it ends when it has been quit and everything of it has been released, not before.
//
//     bn_sustituto_proceso /registrar | /borrar
//     bn_sustituto_proceso -Embedding        how the system starts it

namespace bn::sustituto {

namespace {

constexpr DWORD kPasoMs = 20;
// A client that dies leaves its references behind for a long time.
constexpr ULONGLONG kVidaMaximaMs = 120'000;

void atenderMensajes() {
    MsgWaitForMultipleObjects(0, nullptr, FALSE, kPasoMs, QS_ALLINPUT);
    MSG mensaje;
    while (PeekMessageW(&mensaje, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&mensaje);
        DispatchMessageW(&mensaje);
    }
}

bool haAcabado() {
    return aplicacionesCerradas() > 0 && objetosVivos() == 0 && enumeradoresVivos() == 0;
}

int servir() {
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 1;
    DWORD registro = 0;
    const HRESULT codigo =
        CoRegisterClassObject(kClase, fabrica(), CLSCTX_LOCAL_SERVER, REGCLS_SINGLEUSE, &registro);
    if (FAILED(codigo)) return 1;
    const ULONGLONG fin = GetTickCount64() + kVidaMaximaMs;
    while (!haAcabado() && GetTickCount64() < fin) atenderMensajes();
    CoRevokeClassObject(registro);
    CoUninitialize();
    return haAcabado() ? 0 : 1;
}

bool registrarse() {
    borrarRegistro();  // an in-process server would be taken before this one
    std::array<wchar_t, MAX_PATH> ruta{};
    GetModuleFileNameW(nullptr, ruta.data(), static_cast<DWORD>(ruta.size()));
    return registrar(kClase, L"LocalServer32", L"\"" + std::wstring(ruta.data()) + L"\"");
}

}  // namespace

}  // namespace bn::sustituto

int main(int cuantos, char** argumentos) {
    const std::string_view orden = cuantos == 2 ? argumentos[1] : "";
    if (orden == "/registrar") return bn::sustituto::registrarse() ? 0 : 1;
    if (orden == "/borrar") {
        bn::sustituto::borrarRegistro();
        return 0;
    }
    if (orden == "-Embedding") return bn::sustituto::servir();
    std::fputs("bn_sustituto_proceso /registrar | /borrar\n", stderr);
    return 2;
}
