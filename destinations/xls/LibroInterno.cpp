// SPDX-License-Identifier: MIT
#include "destinations/xls/LibroInterno.h"

#include <algorithm>
#include <utility>

#include "destinations/xls/Errores.h"
#include "destinations/xls/Formulas.h"
#include "destinations/xls/HojaInterna.h"
#include "destinations/xls/formula/Compilador.h"
#include "destinations/xls/formula/Descompilador.h"

namespace bn::xls {
namespace {

// A sheet's name as a reference writes it.
std::string entreApostrofos(const std::string& hoja) {
    const bool sencillo = std::all_of(hoja.begin(), hoja.end(), [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || (c & 0x80) != 0;
    });
    if (sencillo) return hoja;
    std::string texto = "'";
    for (const char c : hoja) texto.append(c == '\'' ? 2 : 1, c);
    return texto + "'";
}

Rgce compilarReferencia(Sesion& sesion, Libro& libro, const std::string& referencia) {
    const std::shared_ptr<Hoja> elegida = sesion.seleccion().hoja.lock();
    const bool suya = elegida != nullptr && elegida->libro == &libro;
    ContextoDeLibro contexto(libro, nullptr);
    return compilarNombre(referencia, suya ? elegida->nombre : libro.hojas().at(0)->nombre,
                          contexto);
}

class NombreInterno final : public excel::NombreDefinido {
 public:
    NombreInterno(std::shared_ptr<Sesion> sesion, std::weak_ptr<LibroAbierto> abierto,
                  uint16_t lugar)
        : sesion_(std::move(sesion)), abierto_(std::move(abierto)), lugar_(lugar) {}

    std::string Name() override {
        const std::shared_ptr<LibroAbierto> abierto = exigirAbierto(abierto_);
        const NombreLeido& nombre = abierto->libro->nombres().leer(lugar_);
        const auto& hojas = abierto->libro->hojas();
        if (nombre.hoja == 0 || nombre.hoja > hojas.size()) return nombre.texto;
        return entreApostrofos(hojas[nombre.hoja - 1U]->nombre) + "!" + nombre.texto;
    }

    std::string RefersTo() override {
        const std::shared_ptr<LibroAbierto> abierto = exigirAbierto(abierto_);
        const Rgce& formula = abierto->libro->nombres().leer(lugar_).formula;
        if (formula.empty()) return "=";
        ContextoDeLibro contexto(*abierto->libro, nullptr);
        return descompilarNombre(formula, contexto).value_or(kIndescifrable);
    }

    void RefersTo(const std::string& referencia) override {
        Libro& libro = *exigirAbierto(abierto_)->libro;
        const Rgce formula = compilarReferencia(*sesion_, libro, referencia);
        libro.tocarContenido();
        libro.nombres().cambiar(lugar_, formula);
    }

 private:
    std::shared_ptr<Sesion> sesion_;
    std::weak_ptr<LibroAbierto> abierto_;
    uint16_t lugar_;
};

class NombresInternos final : public excel::Names {
 public:
    NombresInternos(std::shared_ptr<Sesion> sesion, std::weak_ptr<LibroAbierto> abierto)
        : sesion_(std::move(sesion)), abierto_(std::move(abierto)) {}

    std::vector<std::unique_ptr<excel::NombreDefinido>> enumerar() override {
        std::vector<std::unique_ptr<excel::NombreDefinido>> lista;
        const uint16_t cuantos = exigirAbierto(abierto_)->libro->nombres().cuantos();
        for (uint16_t lugar = 1; lugar <= cuantos; ++lugar) {
            lista.push_back(std::make_unique<NombreInterno>(sesion_, abierto_, lugar));
        }
        return lista;
    }

    void Add(const std::string& nombre, const std::string& referencia) override {
        Libro& libro = *exigirAbierto(abierto_)->libro;
        const Rgce formula = compilarReferencia(*sesion_, libro, referencia);
        libro.tocarContenido();
        if (const auto lugar = libro.nombres().buscar(nombre, 0)) {
            libro.nombres().cambiar(*lugar, formula);
        } else {
            libro.nombres().agregar(nombre, formula);
        }
    }

 private:
    std::shared_ptr<Sesion> sesion_;
    std::weak_ptr<LibroAbierto> abierto_;
};

}  // namespace

std::shared_ptr<LibroAbierto> exigirAbierto(const std::weak_ptr<LibroAbierto>& abierto) {
    std::shared_ptr<LibroAbierto> vivo = abierto.lock();
    if (vivo == nullptr) rechazar("El libro ya está cerrado.");
    return vivo;
}

std::unique_ptr<excel::Sheets> LibroInterno::Worksheets() {
    exigirAbierto(abierto_);
    return std::make_unique<HojasInternas>(sesion_, abierto_);
}

std::unique_ptr<excel::Names> LibroInterno::Names() {
    exigirAbierto(abierto_);
    return std::make_unique<NombresInternos>(sesion_, abierto_);
}

std::string LibroInterno::Name() { return exigirAbierto(abierto_)->nombre; }

void LibroInterno::SaveAs(const std::string& libro, int32_t /*modoDeAcceso*/) {
    sesion_->guardar(*exigirAbierto(abierto_), libro);
}

void LibroInterno::Close() { sesion_->cerrar(*exigirAbierto(abierto_)); }

void LibroInterno::exigirLibre() { sesion_->exigirLibre(*exigirAbierto(abierto_)); }

std::unique_ptr<excel::Workbook> LibrosInternos::Open(const std::string& libro) {
    return std::make_unique<LibroInterno>(sesion_, sesion_->abrir(libro));
}

std::unique_ptr<excel::Workbook> LibrosInternos::Add() {
    return std::make_unique<LibroInterno>(sesion_, sesion_->nuevo());
}

std::unique_ptr<excel::Workbook> LibrosInternos::Add(const std::string& plantilla) {
    return std::make_unique<LibroInterno>(sesion_, sesion_->nuevoDePlantilla(plantilla));
}

std::unique_ptr<excel::Workbook> LibrosInternos::Item(int32_t indice) {
    sesion_->exigirViva();
    if (indice < 1 || static_cast<size_t>(indice) > sesion_->libros().size()) {
        rechazar("No hay un libro abierto número " + std::to_string(indice) + ".");
    }
    return std::make_unique<LibroInterno>(sesion_,
                                          sesion_->libros()[static_cast<size_t>(indice) - 1]);
}

}  // namespace bn::xls
