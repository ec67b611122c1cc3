// SPDX-License-Identifier: MIT
#include "download/BusquedaEnHoja.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <deque>
#include <limits>
#include <map>
#include <optional>
#include <string>

namespace bn {

namespace {

constexpr int32_t kUltimaFila = std::numeric_limits<int16_t>::max();
constexpr double kSegundosDelDia = 86400;
// A workbook counts its days from 1900 or from 1904, which a cell does not tell.
constexpr int64_t kEntreCalendarios = int64_t{1462} * 86400;

struct Valor {
    std::string texto;
    std::optional<double> numero;
};

/// A cell answers with a number or with its text, in English notation.
Valor valorDe(const Variante& celda) {
    struct {
        Valor operator()(std::monostate) const { return {}; }
        Valor operator()(const std::string& texto) const {
            double numero = 0;
            const char* fin = texto.data() + texto.size();
            const auto leido = std::from_chars(texto.data(), fin, numero);
            if (leido.ec != std::errc() || leido.ptr != fin) return {texto, std::nullopt};
            return {texto, numero};
        }
        Valor operator()(double numero) const { return {{}, numero}; }
        Valor operator()(float numero) const { return {{}, static_cast<double>(numero)}; }
        Valor operator()(int32_t numero) const { return {{}, numero}; }
        Valor operator()(bool logico) const { return {logico ? "TRUE" : "FALSE", std::nullopt}; }
        Valor operator()(FechaOle fecha) const { return {{}, fecha.dias}; }
    } const enValor;
    return std::visit(enValor, celda);
}

std::string deFecha(double dias) {
    const int64_t resto = std::llround(dias * kSegundosDelDia) % kEntreCalendarios;
    return std::to_string(resto < 0 ? resto + kEntreCalendarios : resto);
}

/// What two values of a field have in common when they are the same weighing's: dates the second,
/// weights their single precision, whole numbers themselves, a plate its text, without the
/// apostrophe that keeps it one.
std::string clave(int32_t campo, const Variante& celda) {
    const Valor valor = valorDe(celda);
    if (campo == kMatricula) {
        return valor.texto.starts_with('\'') ? valor.texto.substr(1) : valor.texto;
    }
    if (!valor.numero) return "=" + valor.texto;
    switch (campo) {
        case kFechaHora:
            return deFecha(*valor.numero);
        case kPesoTara:
        case kPesoNeto:
            return std::to_string(static_cast<float>(*valor.numero));
        default:
            return std::to_string(std::llround(*valor.numero));
    }
}

/// The field by which rows are looked up, the one that tells them apart best.
std::optional<int32_t> campoGuia(const ColumnasDeHoja& columnas) {
    for (const int32_t campo :
         {kAlbaran, kFechaHora, kPesoNeto, kPesoTara, kCodigoA, kCodigoB, kCodigoC, kMatricula}) {
        if (columnas[static_cast<std::size_t>(campo)] > 0) return campo;
    }
    return std::nullopt;
}

class Busqueda {
 public:
    Busqueda(XCel& hoja, const Comienzo& comienzo, const std::vector<FilaEsperada>& filas,
             int32_t guia)
        : hoja_(hoja), comienzo_(comienzo), filas_(filas), guia_(guia) {
        for (std::size_t i = 0; i < filas.size(); ++i) {
            porHallar_[clave(guia, filas[i].valores[static_cast<std::size_t>(guia)])].push_back(i);
        }
    }

    Tramos ejecutar() {
        int32_t desde = kUltimaFila;
        for (const auto& fila : filas_) desde = std::min(desde, primeraFila(fila));
        for (int32_t fila = desde; fila <= kUltimaFila && halladas_.cuantos() < filas_.size();
             ++fila) {
            mirar(fila);
        }
        return halladas_;
    }

 private:
    int32_t primeraFila(const FilaEsperada& esperada) const {
        const bool porAlbaran = esperada.conAlbaran && columna(kAlbaran) > 0;
        return porAlbaran ? 1 : std::max(1, static_cast<int32_t>(comienzo_.lugar));
    }

    int16_t columna(int32_t campo) const {
        return comienzo_.columnas[static_cast<std::size_t>(campo)];
    }

    void mirar(int32_t fila) {
        const auto iguales = porHallar_.find(leer(fila, guia_));
        if (iguales == porHallar_.end()) return;
        auto& candidatas = iguales->second;
        for (auto una = candidatas.begin(); una != candidatas.end(); ++una) {
            if (fila < primeraFila(filas_[*una]) || !esta(fila, filas_[*una])) continue;
            halladas_.anadir(*una, *una + 1);
            candidatas.erase(una);
            return;
        }
    }

    bool esta(int32_t fila, const FilaEsperada& esperada) const {
        for (int32_t campo = 0; campo < kCamposPesada; ++campo) {
            if (campo == guia_ || columna(campo) <= 0) continue;
            const Variante& valor = esperada.valores[static_cast<std::size_t>(campo)];
            if (leer(fila, campo) != clave(campo, valor)) return false;
        }
        return true;
    }

    std::string leer(int32_t fila, int32_t campo) const {
        return clave(campo, hoja_.Celda(static_cast<int16_t>(fila), columna(campo)));
    }

    XCel& hoja_;
    const Comienzo& comienzo_;
    const std::vector<FilaEsperada>& filas_;
    int32_t guia_;
    std::map<std::string, std::deque<std::size_t>> porHallar_;
    Tramos halladas_;
};

}  // namespace

Tramos buscarEnHoja(XCel& hoja, const Comienzo& comienzo, const std::vector<FilaEsperada>& filas) {
    const auto guia = campoGuia(comienzo.columnas);
    if (guia) return Busqueda(hoja, comienzo, filas, *guia).ejecutar();
    Tramos todas;  // a row without columns is wherever it is wanted
    todas.anadir(0, filas.size());
    return todas;
}

}  // namespace bn
