// SPDX-License-Identifier: MIT
#include "platform/FicheroPaciente.h"

#include <algorithm>
#include <utility>

#include "platform/Ficheros.h"

namespace bn::ficheros {

bool hayCeros(const std::filesystem::path& ruta) {
    return ruta.native().find(std::filesystem::path::value_type{}) !=
           std::filesystem::path::string_type::npos;
}

void exigirSinCeros(const std::filesystem::path& ruta) {
    if (hayCeros(ruta)) throw ErrorFichero(ruta, "no existe", ErrorFichero::Causa::kNoExiste);
}

FicheroPaciente::FicheroPaciente(Disco& disco, const std::filesystem::path& ruta, Disco::Modo modo)
    : disco_(disco) {
    exigirSinCeros(ruta);
    fichero_ = insistir(disco, [&] { return disco.abrir(ruta, modo); });
}

FicheroPaciente::FicheroPaciente(Disco& disco, std::unique_ptr<Disco::Fichero> fichero)
    : disco_(disco), fichero_(std::move(fichero)) {}

std::size_t FicheroPaciente::leer(std::uint64_t desde, char* destino, std::size_t cabida) const {
    return insistir(disco_, [&] { return fichero_->leer(desde, destino, cabida); });
}

std::string FicheroPaciente::leerTodo(std::uint64_t desde, std::size_t limite) const {
    constexpr std::uint64_t kMinimo = 4096;
    constexpr std::uint64_t kMaximo = std::uint64_t{1} << 20;
    std::string contenido;
    for (;;) {
        // The length is but a guess: others may be writing, and what is no file has none.
        const std::size_t hasta = contenido.size();
        const std::uint64_t fin = largo();
        const std::uint64_t sitio = desde + hasta;
        const std::uint64_t trozo =
            std::clamp(fin > sitio ? fin - sitio + 1 : std::uint64_t{0}, kMinimo, kMaximo);
        const std::size_t cabida =
            std::min(static_cast<std::size_t>(trozo), limite - std::min(limite, hasta));
        contenido.resize(hasta + cabida);
        const std::size_t leidos = cabida == 0 ? 0 : leer(sitio, contenido.data() + hasta, cabida);
        contenido.resize(hasta + leidos);
        if (leidos == 0) return contenido;
    }
}

void FicheroPaciente::escribirTodo(std::uint64_t desde, std::string_view bytes) const {
    while (!bytes.empty()) {
        const std::size_t escritos =
            insistir(disco_, [&] { return fichero_->escribir(desde, bytes); });
        bytes.remove_prefix(escritos);
        desde += escritos;
    }
}

void FicheroPaciente::anadirTodo(std::string_view bytes) const {
    while (!bytes.empty()) {
        bytes.remove_prefix(insistir(disco_, [&] { return fichero_->anadir(bytes); }));
    }
}

std::uint64_t FicheroPaciente::largo() const {
    return insistir(disco_, [&] { return fichero_->largo(); });
}

void FicheroPaciente::cortar(std::uint64_t largo) const {
    insistir(disco_, [&] { fichero_->cortar(largo); });
}

void FicheroPaciente::recortar(std::uint64_t largo) const {
    try {
        if (this->largo() <= largo) return;
        cortar(largo);
        sincronizar();
    } catch (const ErrorFichero&) {
        return;  // the error that counts is the one on its way
    }
}

void FicheroPaciente::sincronizar() const {
    insistir(disco_, [&] { fichero_->sincronizar(); });
}

void FicheroPaciente::heredar(const std::filesystem::path& otro) const {
    insistir(disco_, [&] { fichero_->heredar(otro); });
}

void sincronizarNombre(Disco& disco, const std::filesystem::path& fichero) {
    sincronizarCarpeta(disco, fichero.parent_path());
}

}  // namespace bn::ficheros
