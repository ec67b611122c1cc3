// SPDX-License-Identifier: MIT
#include "destinations/excel/com/Proceso.h"

// After windows.h, which it needs.
#include <psapi.h>

#include <vector>

namespace bn::excel::com {

namespace {

constexpr DWORD kEsperaMs = 10'000;
constexpr std::size_t kProcesosDeUnaVez = 1024;

/// Empty when the system does not say.
std::set<DWORD> procesosEnMarcha() {
    std::vector<DWORD> numeros(kProcesosDeUnaVez);
    for (;;) {
        const auto cabida = static_cast<DWORD>(numeros.size() * sizeof(DWORD));
        DWORD usados = 0;
        if (!EnumProcesses(numeros.data(), cabida, &usados)) return {};
        if (usados < cabida) {
            numeros.resize(usados / sizeof(DWORD));
            return {numeros.begin(), numeros.end()};
        }
        numeros.resize(numeros.size() * 2);
    }
}

}  // namespace

ProcesoPropio::ProcesoPropio() : anteriores_(procesosEnMarcha()) {}

void ProcesoPropio::reconocer(HWND ventana) {
    DWORD numero = 0;
    GetWindowThreadProcessId(ventana, &numero);
    // Where nothing is known of before, nothing is known to be new.
    if (numero == 0 || anteriores_.empty() || anteriores_.contains(numero)) return;
    proceso_.reset(OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, numero));
}

bool ProcesoPropio::acabar() const {
    if (!proceso_) return false;
    TerminateProcess(proceso_.get(), 1);
    return WaitForSingleObject(proceso_.get(), kEsperaMs) == WAIT_OBJECT_0;
}

}  // namespace bn::excel::com
