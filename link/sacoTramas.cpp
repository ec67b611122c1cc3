// SPDX-License-Identifier: MIT
#include "link/sacoTramas.h"

#include "platform/Ficheros.h"

namespace bn {

namespace {

constexpr const char* kFinDeLinea = "\r\n";

}  // namespace

sacoTramas::sacoTramas(Plataforma& plataforma)
    : plataforma_(plataforma), almacen_(fichero(plataforma)) {}

sacoTramas::sacoTramas(Plataforma& plataforma, std::filesystem::path almacen)
    : plataforma_(plataforma), almacen_(std::move(almacen)), modo_(Modo::kLeido) {}

std::filesystem::path sacoTramas::fichero(const Plataforma& plataforma) {
    return plataforma.carpetaPrograma() / "bnGuardo.txt";
}

bool sacoTramas::iniGuardo() {
    if (modo_ != Modo::kNuevo && modo_ != Modo::kLeido) return false;
    try {
        ficheros::crearVacio(plataforma_.disco(), almacen_);
    } catch (const ErrorFichero&) {
        return false;  // the owner decides what to tell the user
    }
    modo_ = Modo::kGuardando;
    return true;
}

bool sacoTramas::Guardo(const std::string& datos) {
    if (modo_ != Modo::kGuardando) return false;
    try {
        ficheros::anadir(plataforma_.disco(), almacen_, datos + kFinDeLinea);
    } catch (const ErrorFichero&) {
        return false;  // not stored, so it is not acknowledged: the indicator keeps it
    }
    return true;
}

bool sacoTramas::iniRecupero() {
    if (modo_ != Modo::kGuardando && modo_ != Modo::kLeido) return false;
    try {
        lectura_.emplace(plataforma_.disco(), almacen_);
        modo_ = lectura_->final() ? Modo::kLeido : Modo::kLeyendo;
    } catch (const ErrorFichero&) {
        lectura_.reset();
        return false;  // the owner decides what to tell the user
    }
    if (modo_ == Modo::kLeido) lectura_.reset();
    return true;
}

std::string sacoTramas::Recupero() {
    if (modo_ != Modo::kLeyendo) return {};
    std::string datos = lectura_->siguiente();
    try {
        if (lectura_->final()) {
            lectura_.reset();
            modo_ = Modo::kLeido;
        }
    } catch (const ErrorFichero&) {
        return datos;  // this record is good; the next call meets the error again
    }
    return datos;
}

bool sacoTramas::Final() const { return modo_ == Modo::kLeido; }

}  // namespace bn
