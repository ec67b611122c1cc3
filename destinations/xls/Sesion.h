// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "destinations/xls/Celdas.h"
#include "destinations/xls/Libro.h"

namespace bn::xls {

/// A workbook that the application holds open.
struct LibroAbierto {
    std::shared_ptr<Libro> libro;
    std::string nombre;
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
    explicit Sesion(std::function<double()> ahora) : ahora_(std::move(ahora)) {}

    std::shared_ptr<LibroAbierto> abrir(const std::string& ruta);
    std::shared_ptr<LibroAbierto> nuevo();
    std::shared_ptr<LibroAbierto> nuevoDePlantilla(const std::string& plantilla);
    /// Writes the workbook to the file. A file in the way that this application had failed to open
    /// is first kept beside it.
    void guardar(LibroAbierto& abierto, const std::string& ruta);
    void cerrar(const LibroAbierto& abierto);
    void terminar();

    /// Throws ErrorExcel once the application has ended.
    void exigirViva() const;

    std::vector<std::shared_ptr<LibroAbierto>>& libros() { return libros_; }
    AreaDeHoja& seleccion() { return seleccion_; }
    AreaDeHoja& copiado() { return copiado_; }

 private:
    std::shared_ptr<Libro> leer(const std::filesystem::path& ruta) const;
    std::shared_ptr<LibroAbierto> alta(std::shared_ptr<Libro> libro, std::string nombre);
    std::filesystem::path nombreDeCopia(const std::filesystem::path& ruta) const;
    int anio() const;

    std::function<double()> ahora_;
    std::vector<std::shared_ptr<LibroAbierto>> libros_;
    std::set<std::filesystem::path> noAbiertas_;
    AreaDeHoja seleccion_;
    AreaDeHoja copiado_;
    int nuevos_ = 0;
    bool terminada_ = false;
};

/// The sheet, or ErrorExcel when it is gone.
std::shared_ptr<Hoja> exigirHoja(const std::weak_ptr<Hoja>& hoja);

}  // namespace bn::xls
