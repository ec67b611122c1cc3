// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>

namespace bn {

/// A settings file in the usual INI syntax. Keys, sections, comments and blank lines that are not
/// written stay where they were. Texts are UTF-8; the file keeps the encoding it was found in
/// (UTF-8 with or without byte-order mark when it is valid UTF-8, else Windows-1252), lines end CR
/// LF.
class ArchivoIni {
 public:
    /// The file that the operations below work on.
    void Fichero(const std::filesystem::path& ruta);
    /// The section that they work in, letter case ignored.
    void Seccion(const std::string& nombre);
    /// The value of a key; "" when key, section or file is missing. Throws ErrorFichero.
    std::string Leer(const std::string& clave);
    /// Sets the value of a key in memory; creates section and key as needed.
    void Escribir(const std::string& clave, const std::string& valor);
    /// Replaces the file, atomically, with what Escribir has set. Throws ErrorFichero.
    void Guardar();

 private:
    // filled in with the implementation
};

}  // namespace bn
