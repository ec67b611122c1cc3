// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "destinations/xls/Libro.h"

namespace bn::xls::prueba {

/// One of the sample workbooks, whole.
std::string muestra(const std::string& nombre);

/// Names of the samples that the engine is to open.
std::vector<std::string> muestrasLegibles();

/// A folder of one test's own, removed with it.
class Carpeta {
 public:
    Carpeta();
    Carpeta(const Carpeta&) = delete;
    Carpeta& operator=(const Carpeta&) = delete;
    ~Carpeta();
    std::filesystem::path operator/(const std::string& nombre) const { return ruta_ / nombre; }
    const std::filesystem::path& ruta() const { return ruta_; }

 private:
    std::filesystem::path ruta_;
};

std::string leerFichero(const std::filesystem::path& ruta);
void escribirFichero(const std::filesystem::path& ruta, std::string_view bytes);

/// "01 2A FF" for three bytes.
std::string hex(std::string_view bytes);
/// The bytes of "01 2A FF", blanks apart.
std::string deHex(std::string_view texto);

/// The Workbook stream of a whole file.
std::string flujoDe(const std::string& fichero);

/// The records of a file's substream: 0 the globals, then the sheets in the stream's order.
std::vector<Registro> registrosDe(const std::string& fichero, size_t subflujo);

/// Data, in hexadecimal, of every record of that number among them.
std::vector<std::string> datosDe(const std::vector<Registro>& registros, uint16_t id);

/// A new workbook and its one worksheet.
struct LibroDePrueba {
    std::shared_ptr<Libro> libro = Libro::nuevo(2024);
    Hoja& hoja = *libro->hojas()[0];
    /// Records of the sheet as it would be saved.
    std::vector<Registro> deHoja() const { return registrosDe(libro->serializar(), 1); }
    std::vector<Registro> globales() const { return registrosDe(libro->serializar(), 0); }
};

}  // namespace bn::xls::prueba
