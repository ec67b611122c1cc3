// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "platform/Disco.h"

namespace bn::ficheros {

/// Tries again for a moment while another program holds the file: virus scanners and indexers look
/// into every file that has just been written.
template <class Accion>
auto insistir(Disco& disco, Accion accion) {
    constexpr int kIntentos = 10;
    constexpr std::chrono::milliseconds kPausa{20};
    for (int intento = 1;; ++intento) {
        try {
            return accion();
        } catch (const ErrorFichero& error) {
            if (error.causa() != ErrorFichero::Causa::kEnUso || intento == kIntentos) throw;
        }
        disco.esperar(kPausa);
    }
}

/// Systems take a path with a zero inside for another, shorter one.
bool hayCeros(const std::filesystem::path& ruta);
/// No such file can exist. Throws ErrorFichero.
void exigirSinCeros(const std::filesystem::path& ruta);

/// An open file whose operations have patience, and are done to the end.
class FicheroPaciente {
 public:
    FicheroPaciente(Disco& disco, const std::filesystem::path& ruta, Disco::Modo modo);
    FicheroPaciente(Disco& disco, std::unique_ptr<Disco::Fichero> fichero);

    /// As Disco::Fichero.
    std::size_t leer(std::uint64_t desde, char* destino, std::size_t cabida) const;
    /// From a place to the end, or as much as the limit allows.
    std::string leerTodo(std::uint64_t desde, std::size_t limite) const;
    void escribirTodo(std::uint64_t desde, std::string_view bytes) const;
    void anadirTodo(std::string_view bytes) const;
    std::uint64_t largo() const;
    void cortar(std::uint64_t largo) const;
    /// Cuts back what has grown and flushes it, as well as it can: whoever needs this is already on
    /// the way to tell of a worse failure.
    void recortar(std::uint64_t largo) const;
    void sincronizar() const;
    void heredar(const std::filesystem::path& otro) const;

 private:
    Disco& disco_;
    std::unique_ptr<Disco::Fichero> fichero_;
};

/// Makes a file's name last: one that has just come into being, or under a new name, lasts only
/// when its folder does.
void sincronizarNombre(Disco& disco, const std::filesystem::path& fichero);

}  // namespace bn::ficheros
