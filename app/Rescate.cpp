// SPDX-License-Identifier: MIT
#include "app/Rescate.h"

#include <string>
#include <string_view>

#include "link/sacoTramas.h"
#include "platform/Ficheros.h"
#include "platform/NombreFechado.h"

namespace bn {

namespace {

constexpr std::string_view kFinDeLinea = "\r\n";

/// A last line that was cut off before its end counts as well.
std::size_t contarLineas(std::string_view texto) {
    std::size_t lineas = 0;
    while (!texto.empty()) {
        ++lineas;
        const std::size_t fin = texto.find(kFinDeLinea);
        if (fin == std::string_view::npos) break;
        texto.remove_prefix(fin + kFinDeLinea.size());
    }
    return lineas;
}

/// 0 when the file cannot be read: that it is kept matters more than how many it holds.
std::size_t contarPesadas(const std::filesystem::path& fichero) {
    try {
        return contarLineas(ficheros::leer(fichero).value_or(""));
    } catch (const ErrorFichero&) {
        return 0;
    }
}

}  // namespace

Rescate::Rescate(Plataforma& plataforma) : plataforma_(plataforma) {}

std::filesystem::path Rescate::marca() const {
    return plataforma_.carpetaPrograma() / "bnGuardo.marca";
}

void Rescate::empezar() { ficheros::crearVacio(marca()); }

void Rescate::acabar() {
    try {
        ficheros::borrar(marca());
    } catch (const ErrorFichero&) {
        return;  // a mark too many only makes a copy too many
    }
}

std::optional<std::filesystem::path> Rescate::apartar() {
    const std::filesystem::path origen = sacoTramas::fichero(plataforma_);
    const std::filesystem::path copia =
        nombreFechado(plataforma_.carpetaPrograma() / "bnGuardo-", plataforma_.ahora(), ".txt");
    try {
        const auto contenido = ficheros::leer(origen);
        if (!contenido || contenido->empty()) return std::nullopt;
        ficheros::reemplazar(copia, *contenido);
        acabar();
        return copia;
    } catch (const ErrorFichero&) {
        // no room for a copy, perhaps: a new name takes none
    }
    try {
        ficheros::mover(origen, copia);
    } catch (const ErrorFichero&) {
        return origen;  // whoever asked has to be told that it is still there
    }
    acabar();
    return copia;
}

bool Rescate::despejar() {
    if (!ficheros::existe(marca())) return true;
    const auto fichero = apartar();
    if (!fichero) acabar();
    return !fichero || *fichero != sacoTramas::fichero(plataforma_);
}

std::optional<Rescate::Pendientes> Rescate::recoger() {
    if (!ficheros::existe(marca())) return std::nullopt;
    const auto fichero = apartar();
    if (!fichero) {
        acabar();
        return std::nullopt;
    }
    return Pendientes{*fichero, contarPesadas(*fichero)};
}

}  // namespace bn
