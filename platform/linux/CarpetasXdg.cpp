// SPDX-License-Identifier: MIT
#include "platform/linux/CarpetasXdg.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>

namespace bn::xdg {
namespace {

namespace fs = std::filesystem;

/// A folder that the environment names; relative ones do not count.
std::optional<fs::path> delEntorno(const char* variable) {
    const char* valor = std::getenv(variable);
    if (valor == nullptr || *valor != '/') {
        return std::nullopt;
    }
    return fs::path(valor);
}

fs::path enHogar(const char* variable, const char* dentro) {
    const auto dicha = delEntorno(variable);
    return dicha ? *dicha : hogar() / dentro;
}

/// What stands between the double quotes at the beginning, freed of its backslashes.
std::optional<std::string> sinComillas(std::string_view texto) {
    if (texto.empty() || texto.front() != '"') {
        return std::nullopt;
    }
    std::string limpio;
    for (std::size_t i = 1; i < texto.size(); ++i) {
        if (texto[i] == '"') {
            return limpio;
        }
        if (texto[i] == '\\' && i + 1 < texto.size()) {
            ++i;
        }
        limpio.push_back(texto[i]);
    }
    return std::nullopt;
}

/// The folder of a line `XDG_DOCUMENTS_DIR="$HOME/Documentos"`; nothing for any other line.
std::optional<fs::path> documentosDeLinea(std::string_view linea) {
    constexpr std::string_view kClave = "XDG_DOCUMENTS_DIR=";
    constexpr std::string_view kHogar = "$HOME";
    linea.remove_prefix(std::min(linea.find_first_not_of(" \t"), linea.size()));
    if (!linea.starts_with(kClave)) {
        return std::nullopt;
    }
    const auto valor = sinComillas(linea.substr(kClave.size()));
    if (!valor) {
        return std::nullopt;
    }
    if (valor->starts_with('/')) {
        return fs::path(*valor);
    }
    if (*valor == kHogar) {
        return hogar();
    }
    if (!valor->starts_with(std::string(kHogar) + '/')) {
        return std::nullopt;
    }
    const std::string dentro = valor->substr(kHogar.size() + 1);
    return dentro.empty() ? hogar() : hogar() / dentro;
}

}  // namespace

fs::path hogar() {
    if (const auto dicho = delEntorno("HOME")) {
        return *dicho;
    }
    std::array<char, 4096> memoria{};
    passwd usuario{};
    passwd* hallado = nullptr;
    ::getpwuid_r(::getuid(), &usuario, memoria.data(), memoria.size(), &hallado);
    return hallado != nullptr && *hallado->pw_dir == '/' ? fs::path(hallado->pw_dir)
                                                         : fs::path("/");
}

fs::path configuracion() { return enHogar("XDG_CONFIG_HOME", ".config"); }

fs::path datos() { return enHogar("XDG_DATA_HOME", ".local/share"); }

fs::path documentos() {
    if (const auto dicha = delEntorno("XDG_DOCUMENTS_DIR")) {
        return *dicha;
    }
    fs::path hallada = hogar();
    std::ifstream fichero(configuracion() / "user-dirs.dirs");
    for (std::string linea; std::getline(fichero, linea);) {
        if (const auto dicha = documentosDeLinea(linea)) {
            hallada = *dicha;  // the last one counts
        }
    }
    return hallada;
}

}  // namespace bn::xdg
