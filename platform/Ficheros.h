// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Disco.h"
#include "platform/ErrorFichero.h"

namespace bn {

/// Files as the program needs them: what has returned is on the disk itself, flushed through the
/// operating system's cache. A file that another program holds for a moment (virus scanners do) is
/// waited for. Everything throws ErrorFichero, unless it says otherwise.
namespace ficheros {

/// The path as UTF-8 text, and back.
std::string aTexto(const std::filesystem::path& ruta);
std::filesystem::path aRuta(const std::string& texto);

/// Whether anything stands under the name, and whether a folder does. What cannot be looked at
/// does not. Neither throws.
bool existe(Disco& disco, const std::filesystem::path& ruta);
bool esCarpeta(Disco& disco, const std::filesystem::path& ruta);

/// The names (UTF-8) of what the folder holds, in no order.
std::vector<std::string> listar(Disco& disco, const std::filesystem::path& carpeta);

/// The file's length in bytes; nothing when it does not exist.
std::optional<std::uint64_t> largo(Disco& disco, const std::filesystem::path& ruta);

/// The whole file; nothing when it does not exist.
std::optional<std::string> leer(Disco& disco, const std::filesystem::path& ruta);

/// What stands from a place on, no more than limite bytes; "" when the file ends before. A file
/// that is missing is an error here.
std::string leerDesde(Disco& disco, const std::filesystem::path& ruta, std::uint64_t desde,
                      std::size_t limite = std::string::npos);

/// Leaves the file existing and empty, flushed together with its folder's entry.
void crearVacio(Disco& disco, const std::filesystem::path& ruta);

/// Puts the bytes behind the file's end and flushes them. All or nothing: when they do not all get
/// there, the file is cut back to what it was.
void anadir(Disco& disco, const std::filesystem::path& ruta, std::string_view bytes);

/// Writes over what stands from a place on and flushes it; the file may grow. Never creates one.
/// When it fails part may have been written, but the file is no longer than it was.
void sobrescribir(Disco& disco, const std::filesystem::path& ruta, std::uint64_t desde,
                  std::string_view bytes);

/// Cuts the file off at a length and flushes it; one that is not longer keeps its own.
void cortar(Disco& disco, const std::filesystem::path& ruta, std::uint64_t largo);

/// Writes the whole file to a temporary name in its folder, flushes it and renames it over the old
/// one: whoever opens the name finds the old contents or the new ones, never a part.
void reemplazar(Disco& disco, const std::filesystem::path& ruta, std::string_view bytes);

/// Removes from the folder the temporaries that killed replacements of other processes have left.
/// Never throws.
void borrarTemporales(Disco& disco, const std::filesystem::path& carpeta);

/// Gives the file another name on the same disk, over the file that has it already. All or
/// nothing.
void mover(Disco& disco, const std::filesystem::path& origen, const std::filesystem::path& destino);

/// Removes the file; one that is missing is as good as removed. Not flushed: after a power cut it
/// may be there again.
void borrar(Disco& disco, const std::filesystem::path& ruta);

/// Makes a file that another program has written last, its name included. One that is missing, or
/// that its holder lets nobody write, is left alone: only a disk that fails throws.
void volcar(Disco& disco, const std::filesystem::path& ruta);

/// Makes what has been removed from the folder, or renamed in it, last.
void sincronizarCarpeta(Disco& disco, const std::filesystem::path& carpeta);

/// A file held open for reading line by line. Only carriage return and line feed together end a
/// line: either one alone belongs to it.
class Lineas {
 public:
    /// Opens; a file that is missing is an error here.
    Lineas(Disco& disco, const std::filesystem::path& ruta);
    Lineas(const Lineas&) = delete;
    Lineas& operator=(const Lineas&) = delete;
    ~Lineas();

    /// Whether nothing is left to be read.
    bool final();
    /// The next line without its end, which the last one may lack; "" behind the last one. After
    /// an error the same line can be asked for again.
    std::string siguiente();

 private:
    class Interior;

    bool leerMas();

    std::unique_ptr<Interior> interior_;
    std::string leido_;
    std::size_t desde_ = 0;  // where in leido_ the next line begins
};

/// A file held open for appending line by line.
class Anexo {
 public:
    /// Opens, creating the file when it is missing.
    Anexo(Disco& disco, const std::filesystem::path& ruta);
    Anexo(const Anexo&) = delete;
    Anexo& operator=(const Anexo&) = delete;
    /// Closes; a failure to flush is lost here, so whoever can still tell the user calls cerrar.
    ~Anexo();

    /// Where the next line will stand.
    std::uint64_t largo() const;
    /// Writes at once, all or nothing as anadir; flushing waits for cerrar.
    void escribir(std::string_view bytes);
    /// Flushes and closes.
    void cerrar();

 private:
    class Interior;

    Interior& abierto() const;

    std::unique_ptr<Interior> interior_;
};

}  // namespace ficheros
}  // namespace bn
