// SPDX-License-Identifier: MIT
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>

#include "platform/Escritorio.h"
#include "platform/Ficheros.h"
#include "platform/linux/CarpetasXdg.h"

namespace bn::escritorio {
namespace {

namespace fs = std::filesystem;

fs::path entradaDeArranque() { return xdg::configuracion() / "autostart" / "bnDX5.desktop"; }

/// The program as the one argument of an Exec key. Two rules lie one upon the other: inside the
/// quotes `"`, backtick, `$` and the backslash want a backslash (and `%` is doubled); then the
/// key's value is a text whose every backslash is doubled and whose control characters are escaped.
std::string comoExec(const std::string& programa) {
    std::string exec = "\"";
    for (const char caracter : programa) {
        switch (caracter) {
            case '\\':
                exec += "\\\\\\\\";
                break;
            case '"':
            case '`':
            case '$':
                exec += "\\\\";
                exec += caracter;
                break;
            case '%':
                exec += "%%";
                break;
            case '\n':
                exec += "\\n";
                break;
            case '\r':
                exec += "\\r";
                break;
            case '\t':
                exec += "\\t";
                break;
            default:
                exec += caracter;
        }
    }
    return exec + '"';
}

std::string_view recortar(std::string_view texto) {
    constexpr std::string_view kBlancos = " \t\r";
    const std::size_t inicio = texto.find_first_not_of(kBlancos);
    if (inicio == std::string_view::npos) {
        return {};
    }
    return texto.substr(inicio, texto.find_last_not_of(kBlancos) - inicio + 1);
}

/// Whether a line is one with which the desktop's own settings switch an entry off.
bool apagaLaEntrada(std::string_view linea) {
    const std::size_t igual = linea.find('=');
    if (igual == std::string_view::npos) {
        return false;
    }
    const std::string_view clave = recortar(linea.substr(0, igual));
    const std::string_view valor = recortar(linea.substr(igual + 1));
    return (clave == "Hidden" && valor == "true") ||
           (clave == "X-GNOME-Autostart-enabled" && valor == "false");
}

[[noreturn]] void fallar(const fs::path& ruta, const std::error_code& error) {
    const std::string causa = error == std::errc::permission_denied
                                  ? "acceso denegado"
                                  : "error " + std::to_string(error.value()) + " del sistema";
    throw ErrorFichero(ficheros::aTexto(ruta) + ": " + causa);
}

}  // namespace

bool estaEnArranque() {
    std::ifstream entrada(entradaDeArranque());
    if (!entrada) {
        return false;
    }
    for (std::string linea; std::getline(entrada, linea);) {
        if (apagaLaEntrada(linea)) {
            return false;
        }
    }
    return true;
}

void ponerEnArranque(bool activo, const fs::path& programa) {
    const fs::path entrada = entradaDeArranque();
    std::error_code error;
    if (!activo) {
        fs::remove(entrada, error);
        if (error) {
            fallar(entrada, error);
        }
        return;
    }
    fs::create_directories(entrada.parent_path(), error);
    if (error) {
        fallar(entrada.parent_path(), error);
    }
    ficheros::reemplazar(discoDelSistema(), entrada,
                         "[Desktop Entry]\n"
                         "Type=Application\n"
                         "Name=Indicador Balnor DX5\n"
                         "Exec=" +
                             comoExec(programa.string()) +
                             "\n"
                             "Terminal=false\n");
}

}  // namespace bn::escritorio
