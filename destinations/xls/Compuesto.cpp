// SPDX-License-Identifier: MIT
#include "destinations/xls/Compuesto.h"

#include <algorithm>
#include <utility>

#include "destinations/xls/Bytes.h"
#include "destinations/xls/CompuestoComun.h"
#include "destinations/xls/TextoBiff.h"

namespace bn::xls {

using namespace compuesto;

namespace {

std::string entradaNueva(std::string_view nombre, uint8_t tipo) {
    std::string cruda;
    for (const char c : nombre) poner16(cruda, static_cast<unsigned char>(c));
    const size_t largo = nombre.empty() ? 0 : cruda.size() + 2;
    cruda.resize(kLargoEntrada, '\0');
    cambiar16(cruda, entrada::kLargoNombre, static_cast<uint32_t>(largo));
    cruda[entrada::kTipo] = static_cast<char>(tipo);
    cruda[entrada::kColor] = static_cast<char>(nombre.empty() ? 0 : 1);
    for (const size_t pos : {entrada::kIzquierda, entrada::kDerecha, entrada::kHijo}) {
        cambiar32(cruda, pos, kNinguna);
    }
    return cruda;
}

std::string cabeceraNueva() {
    std::string bytes(kFirma);
    bytes.resize(kLargoCabecera, '\0');
    cambiar16(bytes, 24, 0x3E);
    cambiar16(bytes, 26, 3);
    cambiar16(bytes, cabecera::kOrdenBytes, 0xFFFE);
    cambiar16(bytes, cabecera::kPotenciaSector, 9);
    cambiar16(bytes, cabecera::kPotenciaMinisector, 6);
    cambiar32(bytes, cabecera::kCorte, kCorte);
    return bytes;
}

}  // namespace

bool Compuesto::loParece(std::string_view fichero) { return fichero.starts_with(kFirma); }

Compuesto Compuesto::nuevo() {
    Compuesto nuevo;
    nuevo.cabecera_ = cabeceraNueva();
    std::string raiz = entradaNueva("Root Entry", entrada::kRaiz);
    constexpr std::string_view kLibroDeCalculo{"\x20\x08\x02\0\0\0\0\0\xC0\0\0\0\0\0\0\x46", 16};
    raiz.replace(entrada::kIdentificador, kLibroDeCalculo.size(), kLibroDeCalculo);
    cambiar32(raiz, entrada::kHijo, 1);
    nuevo.entradas_.push_back({std::move(raiz), {}});
    nuevo.entradas_.push_back({entradaNueva("Workbook", entrada::kFlujo), {}});
    nuevo.entradas_.push_back({entradaNueva("", 0), {}});
    nuevo.entradas_.push_back({entradaNueva("", 0), {}});
    return nuevo;
}

std::string Compuesto::nombre(size_t numero) const {
    const Vista cruda(entradas_[numero].cruda);
    const size_t largo = std::min<size_t>(cruda.u16(entrada::kLargoNombre), 64);
    return deBiff(cruda.trozo(0, largo < 2 ? 0 : largo - 2), true);
}

std::vector<size_t> Compuesto::hijosDeRaiz() const {
    std::vector<size_t> hijos;
    std::vector<bool> vista(entradas_.size(), false);
    std::vector<size_t> pendientes{Vista(entradas_[0].cruda).u32(entrada::kHijo)};
    while (!pendientes.empty()) {
        const size_t numero = pendientes.back();
        pendientes.pop_back();
        if (numero >= entradas_.size() || vista[numero]) continue;
        vista[numero] = true;
        hijos.push_back(numero);
        const Vista cruda(entradas_[numero].cruda);
        pendientes.push_back(cruda.u32(entrada::kIzquierda));
        pendientes.push_back(cruda.u32(entrada::kDerecha));
    }
    return hijos;
}

std::optional<size_t> Compuesto::buscar(std::string_view buscado) const {
    for (const size_t numero : hijosDeRaiz()) {
        const bool esFlujo = Vista(entradas_[numero].cruda).u8(entrada::kTipo) == entrada::kFlujo;
        if (esFlujo && mismoNombre(nombre(numero), buscado)) return numero;
    }
    return std::nullopt;
}

void Compuesto::flujo(size_t numero, std::string contenido) {
    entradas_.at(numero).contenido = std::move(contenido);
}

void Compuesto::quitar(size_t numero) {
    std::vector<size_t> hijos = hijosDeRaiz();
    std::erase(hijos, numero);
    entradas_.at(numero) = {entradaNueva("", 0), {}};
    reconstruirArbol(std::move(hijos));
}

// A balanced tree of the root's entries, all black but for the deepest level: a red-black tree.
void Compuesto::reconstruirArbol(std::vector<size_t> hijos) {
    std::vector<std::pair<std::string, size_t>> porNombre;
    for (const size_t numero : hijos) porNombre.emplace_back(nombre(numero), numero);
    const auto largo = [](const std::string& texto) { return aBiff(texto).unidades; };
    std::sort(porNombre.begin(), porNombre.end(), [&](const auto& a, const auto& b) {
        return largo(a.first) != largo(b.first) ? largo(a.first) < largo(b.first)
                                                : menorNombre(a.first, b.first);
    });
    size_t niveles = 0;
    while ((size_t{2} << niveles) - 1 <= porNombre.size()) ++niveles;
    struct Tramo {
        size_t desde, hasta, padre, enlace, nivel;
    };
    std::vector<Tramo> pendientes{{0, porNombre.size(), 0, entrada::kHijo, 0}};
    while (!pendientes.empty()) {
        const Tramo tramo = pendientes.back();
        pendientes.pop_back();
        const bool vacio = tramo.desde == tramo.hasta;
        const size_t medio = tramo.desde + (tramo.hasta - tramo.desde) / 2;
        const size_t numero = vacio ? kNinguna : porNombre[medio].second;
        cambiar32(entradas_[tramo.padre].cruda, tramo.enlace, static_cast<uint32_t>(numero));
        if (vacio) continue;
        const bool rojo = tramo.nivel == niveles && niveles > 0;
        entradas_[numero].cruda[entrada::kColor] = static_cast<char>(rojo ? 0 : 1);
        pendientes.push_back({tramo.desde, medio, numero, entrada::kIzquierda, tramo.nivel + 1});
        pendientes.push_back({medio + 1, tramo.hasta, numero, entrada::kDerecha, tramo.nivel + 1});
    }
}

}  // namespace bn::xls
