// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace bn {

/// A file that cannot be read or written. what() is UTF-8 Spanish: the file, then the cause.
class ErrorFichero : public std::runtime_error {
 public:
    using std::runtime_error::runtime_error;
};

/// Files as the program needs them: what has returned is on the disk itself, flushed through the
/// operating system's cache. Implemented once per system, for paths of any length that the disk
/// takes. Everything throws ErrorFichero, unless it says otherwise.
namespace ficheros {

/// The path as UTF-8 text, and back.
std::string aTexto(const std::filesystem::path& ruta);
std::filesystem::path aRuta(const std::string& texto);

/// Whether anything stands under the name, and whether a folder does. What cannot be looked at
/// does not. Neither throws.
bool existe(const std::filesystem::path& ruta);
bool esCarpeta(const std::filesystem::path& ruta);

/// The whole file; nothing when it does not exist.
std::optional<std::string> leer(const std::filesystem::path& ruta);

/// Leaves the file existing and empty, flushed together with its folder's entry.
void crearVacio(const std::filesystem::path& ruta);

/// Puts the bytes behind the file's end and flushes them. All or nothing: when they do not all get
/// there, the file is cut back to what it was.
void anadir(const std::filesystem::path& ruta, std::string_view bytes);

/// Writes the whole file to a temporary name in its folder, flushes it and renames it over the old
/// one: whoever opens the name finds the old contents or the new ones, never a part.
void reemplazar(const std::filesystem::path& ruta, std::string_view bytes);

/// Gives the file another name on the same disk, over the file that has it already. All or
/// nothing.
void mover(const std::filesystem::path& origen, const std::filesystem::path& destino);

/// Removes the file; one that is missing is as good as removed. Not flushed: after a power cut it
/// may be there again.
void borrar(const std::filesystem::path& ruta);

/// A file held open for reading line by line. Only carriage return and line feed together end a
/// line: either one alone belongs to it.
class Lineas {
 public:
    /// Opens; a file that is missing is an error here.
    explicit Lineas(const std::filesystem::path& ruta);
    Lineas(const Lineas&) = delete;
    Lineas& operator=(const Lineas&) = delete;
    ~Lineas();

    /// Whether nothing is left to be read.
    bool final();
    /// The next line without its end, which the last one may lack; "" behind the last one. After
    /// an error the same line can be asked for again.
    std::string siguiente();

 private:
    struct Interior;

    bool leerMas();
    std::size_t leer(char* destino, std::size_t cabida) const;

    std::unique_ptr<Interior> interior_;
    std::string leido_;
    std::size_t desde_ = 0;  // where in leido_ the next line begins
};

/// A file held open for appending line by line.
class Anexo {
 public:
    /// Opens, creating the file when it is missing.
    explicit Anexo(const std::filesystem::path& ruta);
    Anexo(const Anexo&) = delete;
    Anexo& operator=(const Anexo&) = delete;
    /// Closes; a failure to flush is lost here, so whoever can still tell the user calls cerrar.
    ~Anexo();

    /// Writes at once, all or nothing as anadir; flushing waits for cerrar.
    void escribir(std::string_view bytes);
    /// Flushes and closes.
    void cerrar();

 private:
    struct Interior;
    std::unique_ptr<Interior> interior_;
};

}  // namespace ficheros
}  // namespace bn
