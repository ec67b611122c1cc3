// SPDX-License-Identifier: MIT
#include "destinations/xls/Sesion.h"

#include <chrono>
#include <cmath>
#include <cstdio>
#include <system_error>
#include <utility>

#include "destinations/excel/ObjectModel.h"
#include "destinations/xls/Bytes.h"
#include "platform/Ficheros.h"

namespace bn::xls {
namespace {

namespace fs = std::filesystem;

// Two spellings of one file's path are one.
fs::path normal(const fs::path& ruta) {
    std::error_code error;
    const fs::path absoluta = fs::absolute(ruta, error);
    return (error ? ruta : absoluta).lexically_normal();
}

bool existe(const fs::path& ruta) {
    std::error_code error;
    return fs::exists(fs::symlink_status(ruta, error));
}

std::chrono::year_month_day calendario(double dias) {
    using std::chrono::December;
    const std::chrono::sys_days origen = std::chrono::year{1899} / December / 30;
    return {origen + std::chrono::days{static_cast<int>(std::floor(dias))}};
}

// Where the workbook's window has its sheet in front.
std::shared_ptr<Hoja> hojaDelante(Libro& libro) {
    const size_t lugar = buscarRegistro(libro.globales(), id::kWindow1);
    if (lugar < libro.globales().size()) {
        const size_t delante = Vista(libro.globales()[lugar].datos).u16(10);
        if (delante < libro.hojas().size() && libro.hojas()[delante]->esDeCalculo()) {
            return libro.hojas()[delante];
        }
    }
    for (const auto& hoja : libro.hojas()) {
        if (hoja->esDeCalculo()) return hoja;
    }
    return nullptr;
}

}  // namespace

std::shared_ptr<Hoja> exigirHoja(const std::weak_ptr<Hoja>& hoja) {
    std::shared_ptr<Hoja> viva = hoja.lock();
    if (viva == nullptr) rechazar("La hoja ya no está abierta.");
    return viva;
}

void Sesion::exigirViva() const {
    if (terminada_) rechazar("La aplicación de hojas de cálculo ya está cerrada.");
}

int Sesion::anio() const { return static_cast<int>(calendario(ahora_()).year()); }

std::shared_ptr<Libro> Sesion::leer(const fs::path& ruta) const {
    try {
        const auto bytes = ficheros::leer(ruta);
        if (!bytes) rechazar("El libro \"" + ficheros::aTexto(ruta) + "\" no existe.");
        return Libro::abrir(*bytes, anio());
    } catch (const ErrorFichero& error) {
        rechazar(error.what());
    }
}

std::shared_ptr<LibroAbierto> Sesion::alta(std::shared_ptr<Libro> libro, std::string nombre) {
    seleccion_ = {hojaDelante(*libro), {}};
    libros_.push_back(
        std::make_shared<LibroAbierto>(LibroAbierto{std::move(libro), std::move(nombre)}));
    return libros_.back();
}

std::shared_ptr<LibroAbierto> Sesion::abrir(const std::string& texto) {
    exigirViva();
    const fs::path ruta = ficheros::aRuta(texto);
    try {
        auto libro = leer(ruta);
        noAbiertas_.erase(normal(ruta));
        return alta(std::move(libro), ficheros::aTexto(ruta.filename()));
    } catch (const excel::ErrorExcel&) {
        noAbiertas_.insert(normal(ruta));
        throw;
    }
}

std::shared_ptr<LibroAbierto> Sesion::nuevo() {
    exigirViva();
    return alta(Libro::nuevo(anio()), "Libro" + std::to_string(++nuevos_));
}

std::shared_ptr<LibroAbierto> Sesion::nuevoDePlantilla(const std::string& plantilla) {
    exigirViva();
    const fs::path ruta = ficheros::aRuta(plantilla);
    return alta(leer(ruta), ficheros::aTexto(ruta.stem()) + "1");
}

fs::path Sesion::nombreDeCopia(const fs::path& ruta) const {
    const double ahora = ahora_();
    const auto dia = calendario(ahora);
    const auto segundos = static_cast<int>((ahora - std::floor(ahora)) * 86400 + 0.5) % 86400;
    char sello[40];
    std::snprintf(sello, sizeof sello, ".%04d%02u%02u-%02d%02d%02d", static_cast<int>(dia.year()),
                  static_cast<unsigned>(dia.month()), static_cast<unsigned>(dia.day()),
                  segundos / 3600, segundos / 60 % 60, segundos % 60);
    fs::path copia = ruta;
    copia += sello;
    copia += ".bak";
    for (int i = 2; existe(copia); ++i) {
        copia = ruta;
        copia += std::string(sello) + "-" + std::to_string(i) + ".bak";
    }
    return copia;
}

void Sesion::guardar(LibroAbierto& abierto, const std::string& texto) {
    exigirViva();
    const fs::path ruta = ficheros::aRuta(texto);
    const std::string bytes = abierto.libro->serializar();
    fs::path copia;
    std::error_code error;
    if (noAbiertas_.contains(normal(ruta)) && fs::is_regular_file(ruta, error)) {
        copia = nombreDeCopia(ruta);
        fs::rename(ruta, copia, error);
        if (error) {
            rechazar("No se puede apartar \"" + texto + "\": " + error.message() + ".");
        }
    }
    try {
        ficheros::reemplazar(ruta, bytes);
    } catch (const ErrorFichero& fallo) {
        if (!copia.empty()) fs::rename(copia, ruta, error);
        rechazar(fallo.what());
    }
    noAbiertas_.erase(normal(ruta));
    abierto.nombre = ficheros::aTexto(ruta.filename());
}

void Sesion::cerrar(const LibroAbierto& abierto) {
    std::erase_if(libros_, [&](const auto& otro) { return otro.get() == &abierto; });
}

void Sesion::terminar() {
    terminada_ = true;
    libros_.clear();
}

}  // namespace bn::xls
