// SPDX-License-Identifier: MIT
#pragma once

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
/// operating system's cache. Implemented once per system. Everything throws ErrorFichero.
namespace ficheros {

/// The path as UTF-8 text, and back.
std::string aTexto(const std::filesystem::path& ruta);
std::filesystem::path aRuta(const std::string& texto);

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
