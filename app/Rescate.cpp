// SPDX-License-Identifier: MIT
#include "app/Rescate.h"

#include <string>
#include <string_view>
#include <system_error>

#include "link/sacoTramas.h"
#include "platform/Ficheros.h"
#include "platform/NombreFechado.h"

namespace bn {

namespace {

std::size_t contarLineas(std::string_view texto) {
    std::size_t lineas = 0;
    for (std::size_t i = 0; (i = texto.find("\r\n", i)) != std::string_view::npos; i += 2) ++lineas;
    return lineas;
}

}  // namespace

Rescate::Rescate(Plataforma& plataforma) : plataforma_(plataforma) {}

std::filesystem::path Rescate::marca() const {
    return plataforma_.carpetaPrograma() / "bnGuardo.marca";
}

void Rescate::empezar() { ficheros::crearVacio(marca()); }

void Rescate::acabar() {
    std::error_code sinImportancia;  // a mark too many only makes a copy too many
    std::filesystem::remove(marca(), sinImportancia);
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
    std::error_code error;
    std::filesystem::rename(origen, copia, error);
    if (error) return origen;
    acabar();
    return copia;
}

std::optional<Rescate::Pendientes> Rescate::recoger() {
    std::error_code error;
    if (!std::filesystem::exists(marca(), error)) return std::nullopt;
    const auto fichero = apartar();
    if (!fichero) {
        acabar();
        return std::nullopt;
    }
    const auto contenido = ficheros::leer(*fichero);
    return Pendientes{*fichero, contarLineas(contenido.value_or(""))};
}

}  // namespace bn
