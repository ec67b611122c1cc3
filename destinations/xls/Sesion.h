// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "destinations/xls/Celdas.h"
#include "destinations/xls/Libro.h"
#include "platform/Disco.h"

namespace bn::xls {

/// A workbook that the application holds open.
struct LibroAbierto {
    std::shared_ptr<Libro> libro;
    std::string nombre;
    std::filesystem::path ruta;  ///< the file it was opened from; empty for a new workbook
};

/// An area of some sheet; the sheet may be gone.
struct AreaDeHoja {
    std::weak_ptr<Hoja> hoja;
    Area area;
};

/// What the objects of one application share. It outlives the application as long as any of them
/// does, but then holds no workbook, so that all of them answer with an error.
class Sesion {
 public:
    Sesion(std::function<double()> ahora, Disco& disco) : ahora_(std::move(ahora)), disco_(disco) {}

    std::shared_ptr<LibroAbierto> abrir(const std::string& ruta);
    std::shared_ptr<LibroAbierto> nuevo();
    std::shared_ptr<LibroAbierto> nuevoDePlantilla(const std::string& plantilla);
    /// Throws excel::ErrorDeApertura when somebody else has the workbook's file open.
    void exigirLibre(const LibroAbierto& abierto) const;
    /// Writes the workbook to the file, unless somebody else has that one open.
    void guardar(LibroAbierto& abierto, const std::string& ruta);
    void cerrar(const LibroAbierto& abierto);
    void terminar();

    /// Throws ErrorExcel once the application has ended.
    void exigirViva() const;

    std::vector<std::shared_ptr<LibroAbierto>>& libros() { return libros_; }
    AreaDeHoja& seleccion() { return seleccion_; }
    AreaDeHoja& copiado() { return copiado_; }

 private:
    std::shared_ptr<LibroAbierto> alta(std::shared_ptr<Libro> libro, std::string nombre);
    int anio() const;

    std::function<double()> ahora_;
    Disco& disco_;
    std::vector<std::shared_ptr<LibroAbierto>> libros_;
    AreaDeHoja seleccion_;
    AreaDeHoja copiado_;
    int nuevos_ = 0;
    bool terminada_ = false;
};

/// The sheet, or ErrorExcel when it is gone.
std::shared_ptr<Hoja> exigirHoja(const std::weak_ptr<Hoja>& hoja);

}  // namespace bn::xls
