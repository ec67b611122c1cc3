// SPDX-License-Identifier: MIT
#include "app/Guardia.h"

#include <exception>
#include <optional>
#include <string>
#include <utility>

#include "platform/Ficheros.h"

namespace bn {

Guardia::Guardia(Plataforma& plataforma, Rescate& rescate, std::function<bool()> enDescarga)
    : plataforma_(plataforma), rescate_(rescate), enDescarga_(std::move(enDescarga)) {}

void Guardia::atender(const std::function<void()>& aviso) {
    if (averiada_) return;
    std::string error;
    try {
        aviso();
        return;
    } catch (const std::exception& e) {
        error = e.what();
    } catch (...) {
        error = "error desconocido";
    }
    atenderError(error);
}

void Guardia::reanudar() { averiada_ = false; }

void Guardia::atenderError(const std::string& error) {
    // One inside the notification that fails now has told of it: all starts over already.
    if (averiada_) return;
    averiada_ = true;
    std::string texto = "Se ha producido un error:\n" + error;
    if (enDescarga_()) {
        texto = "No se han podido guardar las pesadas:\n" + error;
        if (const auto copia = rescate_.apartar()) {
            texto +=
                "\n\nLas pesadas recibidas se conservan en el fichero\n" + ficheros::aTexto(*copia);
        }
    }
    plataforma_.mensajeCritico(texto);
    averia();
}

}  // namespace bn
