// SPDX-License-Identifier: MIT
#include "link/sacoTramas.h"

#include "platform/Ficheros.h"

namespace bn {

namespace {

constexpr const char* kFinDeLinea = "\r\n";

}  // namespace

sacoTramas::sacoTramas(Plataforma& plataforma) : plataforma_(plataforma) {}

std::filesystem::path sacoTramas::fichero(const Plataforma& plataforma) {
    return plataforma.carpetaPrograma() / "bnGuardo.txt";
}

bool sacoTramas::iniGuardo() {
    if (modo_ != Modo::kNuevo && modo_ != Modo::kLeido) return false;
    try {
        ficheros::crearVacio(fichero(plataforma_));
    } catch (const ErrorFichero&) {
        return false;  // the owner decides what to tell the user
    }
    modo_ = Modo::kGuardando;
    return true;
}

bool sacoTramas::Guardo(const std::string& datos) {
    if (modo_ != Modo::kGuardando) return false;
    try {
        ficheros::anadir(fichero(plataforma_), datos + kFinDeLinea);
    } catch (const ErrorFichero&) {
        return false;  // not stored, so it is not acknowledged: the indicator keeps it
    }
    return true;
}

bool sacoTramas::iniRecupero() {
    if (modo_ != Modo::kGuardando && modo_ != Modo::kLeido) return false;
    std::ifstream lectura(fichero(plataforma_), std::ios::binary);
    if (!lectura) return false;
    const bool vacio = lectura.peek() == std::ifstream::traits_type::eof();
    if (lectura.bad()) return false;
    if (vacio) {
        modo_ = Modo::kLeido;
        return true;
    }
    lectura_ = std::move(lectura);
    modo_ = Modo::kLeyendo;
    return true;
}

std::string sacoTramas::Recupero() {
    if (modo_ != Modo::kLeyendo) return {};
    std::string datos = leerLinea();
    if (lectura_.peek() == std::ifstream::traits_type::eof() && !lectura_.bad()) {
        lectura_.close();
        modo_ = Modo::kLeido;
    }
    return datos;
}

/// A line ends at carriage return and line feed together: the data may hold either one alone.
std::string sacoTramas::leerLinea() {
    std::string linea;
    std::string trozo;
    while (std::getline(lectura_, trozo)) {
        linea += trozo;
        if (lectura_.eof()) return linea;  // the last line, and its end is missing
        if (!linea.empty() && linea.back() == '\r') {
            linea.pop_back();
            return linea;
        }
        linea += '\n';
    }
    if (lectura_.bad()) {
        throw ErrorFichero(ficheros::aTexto(fichero(plataforma_)) + ": no se puede leer");
    }
    return linea;
}

bool sacoTramas::Final() const { return modo_ == Modo::kLeido; }

}  // namespace bn
