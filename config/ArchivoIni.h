// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Disco.h"

namespace bn {

/// A settings file in the usual INI syntax. Keys, sections, comments and blank lines that are not
/// written stay where they were. Texts are UTF-8; the file keeps the encoding it was found in
/// (UTF-8 with or without byte-order mark when it is valid UTF-8, else Windows-1252), lines end CR
/// LF. A text that Windows-1252 cannot hold turns the whole file into UTF-8.
///
/// Names are compared without letter case, and of several equal ones the first counts. Blanks
/// around a key and around its value do not belong to them; a value that begins or ends with a
/// blank is therefore written, and read back, between double quotation marks.
class ArchivoIni {
 public:
    explicit ArchivoIni(Disco& disco) : disco_(disco) {}

    /// The file that the operations below work on. It is read once, when first needed.
    void Fichero(const std::filesystem::path& ruta);
    /// The section that they work in, letter case ignored.
    void Seccion(const std::string& nombre);
    /// The value of a key; "" when key, section or file is missing. Throws ErrorFichero.
    std::string Leer(const std::string& clave);
    /// Sets the value of a key in memory; creates section and key as needed. A line break in the
    /// value becomes a blank. Throws ErrorFichero.
    void Escribir(const std::string& clave, const std::string& valor);
    /// Replaces the file, atomically, with what Escribir has set. Throws ErrorFichero.
    void Guardar();

 private:
    /// A section line and all lines up to the next one; the lines before the first section are a
    /// block without a name. Every line ends CR LF.
    struct Bloque {
        std::string nombre;  ///< in capitals
        std::string texto;
    };
    /// Where in a block the line of a key stands.
    struct Lugar {
        Bloque* bloque;
        std::size_t inicio, largo;
    };

    void leerFichero();
    void ponerLinea(std::string_view linea);
    Lugar buscar(std::string_view clave);

    Disco& disco_;
    std::filesystem::path ruta_;
    std::string seccion_;
    bool leido_ = false;
    bool conMarca_ = false;
    bool cp1252_ = false;
    std::vector<Bloque> bloques_;
};

}  // namespace bn
