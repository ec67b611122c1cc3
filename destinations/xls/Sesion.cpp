// SPDX-License-Identifier: MIT
#include "destinations/xls/Sesion.h"

#include <chrono>
#include <cmath>
#include <utility>

#include "destinations/excel/ObjectModel.h"
#include "destinations/xls/Apertura.h"
#include "destinations/xls/Bytes.h"
#include "destinations/xls/EnUso.h"
#include "platform/Ficheros.h"

namespace bn::xls {
namespace {

namespace fs = std::filesystem;

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

std::shared_ptr<LibroAbierto> Sesion::alta(std::shared_ptr<Libro> libro, std::string nombre) {
    seleccion_ = {hojaDelante(*libro), {}};
    libros_.push_back(
        std::make_shared<LibroAbierto>(LibroAbierto{std::move(libro), std::move(nombre), {}}));
    return libros_.back();
}

std::shared_ptr<LibroAbierto> Sesion::abrir(const std::string& texto) {
    exigirViva();
    const fs::path ruta = ficheros::aRuta(texto);
    std::shared_ptr<LibroAbierto> abierto =
        alta(abrirFichero(disco_, ruta, anio()), ficheros::aTexto(ruta.filename()));
    abierto->ruta = ruta;
    return abierto;
}

void Sesion::exigirLibre(const LibroAbierto& abierto) const {
    exigirViva();
    if (abierto.ruta.empty()) return;
    const std::string aviso = avisoDeEnUso(disco_, abierto.ruta);
    if (aviso.empty()) return;
    throw excel::ErrorDeApertura(aviso, excel::ErrorDeApertura::Clase::kSano);
}

std::shared_ptr<LibroAbierto> Sesion::nuevo() {
    exigirViva();
    return alta(Libro::nuevo(anio()), "Libro" + std::to_string(++nuevos_));
}

std::shared_ptr<LibroAbierto> Sesion::nuevoDePlantilla(const std::string& plantilla) {
    exigirViva();
    const fs::path ruta = ficheros::aRuta(plantilla);
    return alta(abrirFichero(disco_, ruta, anio()), ficheros::aTexto(ruta.stem()) + "1");
}

void Sesion::guardar(LibroAbierto& abierto, const std::string& texto) {
    exigirViva();
    const fs::path ruta = ficheros::aRuta(texto);
    const std::string enUso = avisoDeEnUso(disco_, ruta);
    if (!enUso.empty()) rechazar(enUso);
    try {
        ficheros::reemplazar(disco_, ruta, abierto.libro->serializar());
    } catch (const ErrorFichero& fallo) {
        rechazar(fallo.what());
    }
    abierto.nombre = ficheros::aTexto(ruta.filename());
    abierto.ruta = ruta;
}

void Sesion::cerrar(const LibroAbierto& abierto) {
    std::erase_if(libros_, [&](const auto& otro) { return otro.get() == &abierto; });
}

void Sesion::terminar() {
    terminada_ = true;
    libros_.clear();
}

}  // namespace bn::xls
