// SPDX-License-Identifier: MIT
#include "tests/sustituto/Diario.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "destinations/excel/com/VarianteCom.h"

namespace bn::sustituto {

namespace {

std::wstring variable(const wchar_t* nombre) {
    std::array<wchar_t, 1024> valor{};
    const DWORD largo =
        GetEnvironmentVariableW(nombre, valor.data(), static_cast<DWORD>(valor.size()));
    return {valor.data(), std::min<std::size_t>(largo, valor.size())};
}

/// The three ways a busy application has to say so, in turn.
HRESULT negativa(int64_t vez) {
    constexpr std::array kNegativas{0x80010001U, 0x8001010AU, 0x800AC472U};
    return static_cast<HRESULT>(kNegativas[static_cast<std::size_t>(vez) % kNegativas.size()]);
}

// Longer than any limit of a test; not for ever, for a test that fails is not to leave it behind.
constexpr DWORD kCuelgueMs = 60'000;
constexpr const char* kVersionUsual = "16.0";

bool esDeLlamada(const std::string& que) {
    constexpr std::array kQue{"ocupado", "falla", "muda", "cuelga", "tarda", "muere"};
    return std::find(kQue.begin(), kQue.end(), que) != kQue.end();
}

[[noreturn]] void acabarElProceso() {
    TerminateProcess(GetCurrentProcess(), 1);
    std::abort();
}

}  // namespace

Diario::Diario() : archivo_(variable(kVariableDiario)) {
    std::istringstream palabras(excel::com::deAncho(variable(kVariableOrdenes)));
    for (std::string palabra; palabras >> palabra;) {
        Orden orden;
        const std::size_t igual = palabra.find('=');
        const std::size_t coma = palabra.find(',');
        orden.que = palabra.substr(0, igual);
        if (igual != std::string::npos) orden.llamada = palabra.substr(igual + 1, coma - igual - 1);
        if (coma != std::string::npos) orden.veces = std::stoll(palabra.substr(coma + 1));
        orden.deLlamada = esDeLlamada(orden.que);
        ordenes_.push_back(orden);
    }
}

std::optional<std::string> Diario::orden(const char* palabra) const {
    for (const Orden& una : ordenes_) {
        if (una.que == palabra) return una.llamada;
    }
    return std::nullopt;
}

int Diario::versionMayor() const { return std::stoi(orden("version").value_or(kVersionUsual)); }

bool Diario::ausente(int64_t negadas) const {
    const auto veces = orden("ausente");
    return veces && (veces->empty() || negadas < std::stoll(*veces));
}

/// What is to happen in the call besides failing.
void Diario::estropear(Orden& orden, const std::string& miembro) const {
    if (orden.que == "tarda") {
        Sleep(static_cast<DWORD>(orden.veces.value_or(0)));
        return;
    }
    if (orden.veces && --*orden.veces != 0) return;
    anotar(orden.que + ": " + miembro);
    if (orden.que == "cuelga") Sleep(kCuelgueMs);
    acabarElProceso();
}

HRESULT Diario::llamada(const std::string& miembro) {
    const std::string numero = std::to_string(++llamadas_);
    for (Orden& orden : ordenes_) {
        if (!orden.deLlamada || (orden.llamada != numero && orden.llamada != miembro)) continue;
        if (orden.que == "cuelga" || orden.que == "tarda" || orden.que == "muere") {
            estropear(orden, miembro);
            continue;
        }
        int64_t* quedan = orden.veces ? &*orden.veces : nullptr;
        if (orden.que != "ocupado") {
            if (quedan && --*quedan != 0) continue;
            muda_ = orden.que == "muda";
            return DISP_E_EXCEPTION;
        }
        if (quedan && (*quedan)-- > 0) {
            --llamadas_;  // it will be made again
            return negativa(*quedan);
        }
    }
    return S_OK;
}

void Diario::anotar(const std::string& linea) const {
    if (archivo_.empty()) return;
    std::ofstream salida(std::filesystem::path(archivo_), std::ios::app | std::ios::binary);
    salida << linea << '\n';
}

}  // namespace bn::sustituto
