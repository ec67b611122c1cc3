// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string_view>
#include <vector>

#include "platform/ErrorFichero.h"

namespace bn {

/// What a disk can do, one call each and nothing more: whoever wants a guarantee asks
/// platform/Ficheros.h, where the thinking is. No path has a zero inside. Every call may throw
/// ErrorFichero, which names the path as it was given.
class Disco {
 public:
    enum class Modo {
        kLeer,
        kEscribir,  ///< in place
        kAnadir,    ///< behind the end
        kCrear,     ///< behind the end; the file is made when it is missing
    };

    /// What may stand under a name.
    enum class Clase { kNada, kFichero, kCarpeta, kOtra };

    /// An open file; closed with its object.
    class Fichero {
     public:
        Fichero() = default;
        Fichero(const Fichero&) = delete;
        Fichero& operator=(const Fichero&) = delete;
        virtual ~Fichero() = default;

        /// Reads what stands from a place on, as much as it likes to; 0 only at the end.
        virtual std::size_t leer(std::uint64_t desde, char* destino, std::size_t cabida) = 0;
        /// Writes at a place, also beyond the end, as much as it likes to but at least one byte;
        /// how many. For kEscribir and new files.
        virtual std::size_t escribir(std::uint64_t desde, std::string_view bytes) = 0;
        /// The same behind the end, wherever that is by then. For kAnadir and kCrear.
        virtual std::size_t anadir(std::string_view bytes) = 0;
        virtual std::uint64_t largo() = 0;
        /// Gives it this length.
        virtual void cortar(std::uint64_t largo) = 0;
        /// Returns when everything written is on the disk itself. What has no disk behind it is
        /// flushed at once.
        virtual void sincronizar() = 0;
        /// Takes over what the system keeps about another file and whoever replaces that one must
        /// keep: owner, permissions, attributes.
        virtual void heredar(const std::filesystem::path& otro) = 0;
    };

    Disco() = default;
    Disco(const Disco&) = delete;
    Disco& operator=(const Disco&) = delete;
    virtual ~Disco() = default;

    /// Never null. A folder is not opened.
    virtual std::unique_ptr<Fichero> abrir(const std::filesystem::path& ruta, Modo modo) = 0;
    /// A new file, for writing; null when the name is taken.
    virtual std::unique_ptr<Fichero> nuevo(const std::filesystem::path& ruta) = 0;
    /// Follows links; a link to nothing is nothing.
    virtual Clase queHay(const std::filesystem::path& ruta) = 0;
    /// The file that links lead to, whether it exists or not.
    virtual std::filesystem::path destinoReal(const std::filesystem::path& ruta) = 0;
    /// The names of what a folder holds, in no order.
    virtual std::vector<std::filesystem::path> listar(const std::filesystem::path& carpeta) = 0;
    /// Gives a file another name on the same disk, over the file that has it already: at no time is
    /// there none under that name.
    virtual void renombrar(const std::filesystem::path& origen,
                           const std::filesystem::path& destino) = 0;
    virtual void borrar(const std::filesystem::path& ruta) = 0;
    /// Returns when the names in the folder are on the disk itself. A folder that the system offers
    /// no way to flush is left alone.
    virtual void sincronizarCarpeta(const std::filesystem::path& carpeta) = 0;

    /// Lets time pass before another attempt.
    virtual void esperar(std::chrono::milliseconds tiempo) = 0;
    /// The number of the process that uses the disk.
    virtual std::uint32_t proceso() const = 0;
};

/// The disk of this computer.
Disco& discoDelSistema();

}  // namespace bn
