// SPDX-License-Identifier: MIT
#include "destinations/xls/Apertura.h"

#include <new>
#include <optional>
#include <string>

#include "destinations/excel/ObjectModel.h"
#include "destinations/xls/Errores.h"
#include "destinations/xls/MotorInterno.h"
#include "platform/Ficheros.h"

namespace bn::xls {
namespace {

namespace fs = std::filesystem;
using excel::ErrorDeApertura;

constexpr int kAnioCualquiera = 2000;

std::string noSePuedeAbrir(const fs::path& ruta, const std::string& causa) {
    return "No se puede abrir el libro \"" + ficheros::aTexto(ruta) + "\". " + causa;
}

std::optional<std::string> leer(Disco& disco, const fs::path& ruta) {
    try {
        return ficheros::leer(disco, ruta);
    } catch (const ErrorFichero& error) {
        throw ErrorDeApertura(
            noSePuedeAbrir(ruta, "No se puede leer: " + std::string(error.explicacion()) +
                                     ". Ciérrelo en los demás programas y compruebe que su usuario "
                                     "puede leerlo."),
            ErrorDeApertura::Clase::kSano);
    }
}

}  // namespace

std::shared_ptr<Libro> abrirFichero(Disco& disco, const fs::path& ruta, int anio) {
    const std::optional<std::string> bytes = leer(disco, ruta);
    if (!bytes) rechazar("El libro \"" + ficheros::aTexto(ruta) + "\" no existe.");
    try {
        return Libro::abrir(*bytes, anio);
    } catch (const ErrorLibroDanado& error) {
        throw ErrorDeApertura(noSePuedeAbrir(ruta, error.what()), ErrorDeApertura::Clase::kDanado);
    } catch (const excel::ErrorExcel& error) {
        throw ErrorDeApertura(noSePuedeAbrir(ruta, error.what()), ErrorDeApertura::Clase::kSano);
    } catch (const std::bad_alloc&) {
        throw ErrorDeApertura(noSePuedeAbrir(ruta,
                                             "No hay memoria para un libro tan grande; cierre "
                                             "otros programas o empiece un libro nuevo."),
                              ErrorDeApertura::Clase::kSano);
    }
}

bool esLibroSano(Disco& disco, const fs::path& ruta) {
    try {
        abrirFichero(disco, ruta, kAnioCualquiera);
        return true;
    } catch (const ErrorDeApertura& error) {
        return error.clase() == ErrorDeApertura::Clase::kSano;
    } catch (const std::exception&) {
        return false;  // there is no such file
    }
}

}  // namespace bn::xls
