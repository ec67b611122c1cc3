// SPDX-License-Identifier: MIT
#include "app/Rescate.h"

#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <string>
#include <string_view>
#include <system_error>

#include "link/sacoTramas.h"
#include "platform/Ficheros.h"

namespace bn {

namespace {

/// "AAAAMMDD-HHMMSS" of a date-time in days since 30 December 1899.
std::string sello(double fechaHora) {
    using namespace std::chrono;
    constexpr sys_days kOrigen = 1899y / December / 30;
    const auto instante = kOrigen + seconds(std::llround(fechaHora * 86400.0));
    const auto dia = floor<days>(instante);
    const year_month_day fecha{dia};
    const hh_mm_ss hora{instante - dia};
    std::array<char, 64> texto{};
    std::snprintf(texto.data(), texto.size(), "%04d%02u%02u-%02d%02d%02d",
                  static_cast<int>(fecha.year()), static_cast<unsigned>(fecha.month()),
                  static_cast<unsigned>(fecha.day()), static_cast<int>(hora.hours().count()),
                  static_cast<int>(hora.minutes().count()),
                  static_cast<int>(hora.seconds().count()));
    return texto.data();
}

std::size_t contarLineas(std::string_view texto) {
    std::size_t lineas = 0;
    for (std::size_t i = 0; (i = texto.find("\r\n", i)) != std::string_view::npos; i += 2) ++lineas;
    return lineas;
}

}  // namespace

Rescate::Rescate(Plataforma& plataforma) : plataforma_(plataforma) {}

std::filesystem::path Rescate::marca() const {
    return plataforma_.carpetaPrograma() / "bnGuardo.marca";
}

void Rescate::empezar() { ficheros::crearVacio(marca()); }

void Rescate::acabar() {
    std::error_code sinImportancia;  // a mark too many only makes a copy too many
    std::filesystem::remove(marca(), sinImportancia);
}

std::filesystem::path Rescate::nombreLibre() const {
    const std::filesystem::path carpeta = plataforma_.carpetaPrograma();
    const std::string base = "bnGuardo-" + sello(plataforma_.ahora());
    std::filesystem::path libre = carpeta / (base + ".txt");
    std::error_code error;
    for (int n = 2; std::filesystem::exists(libre, error); ++n) {
        libre = carpeta / (base + "-" + std::to_string(n) + ".txt");
    }
    return libre;
}

std::optional<std::filesystem::path> Rescate::apartar() {
    const std::filesystem::path origen = sacoTramas::fichero(plataforma_);
    const std::filesystem::path copia = nombreLibre();
    try {
        const auto contenido = ficheros::leer(origen);
        if (!contenido || contenido->empty()) return std::nullopt;
        ficheros::reemplazar(copia, *contenido);
        acabar();
        return copia;
    } catch (const ErrorFichero&) {
        // no room for a copy, perhaps: a new name takes none
    }
    std::error_code error;
    std::filesystem::rename(origen, copia, error);
    if (error) return origen;
    acabar();
    return copia;
}

std::optional<Rescate::Pendientes> Rescate::recoger() {
    std::error_code error;
    if (!std::filesystem::exists(marca(), error)) return std::nullopt;
    const auto fichero = apartar();
    if (!fichero) {
        acabar();
        return std::nullopt;
    }
    const auto contenido = ficheros::leer(*fichero);
    return Pendientes{*fichero, contarLineas(contenido.value_or(""))};
}

}  // namespace bn
