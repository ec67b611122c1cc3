// SPDX-License-Identifier: MIT
#include "destinations/FormularioTxt.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>

#include "config/Codificacion.h"
#include "config/UtilTexto.h"
#include "destinations/RutaDestino.h"

namespace bn {

namespace {

constexpr int kMaximoFormato = 80;
constexpr int kMaximoCifras = 2;
constexpr int kMaximoLinea = 80;
constexpr const char* kSeparador = "|";

bool existe(int campo) { return campo >= 0 && campo < kCamposPesada; }

std::size_t indice(int campo) { return static_cast<std::size_t>(campo); }

/// 0 is shown as an empty cell.
std::string textoDeNumero(int16_t numero) { return numero == 0 ? "" : std::to_string(numero); }

int16_t numeroDe(const std::string& texto) {
    using Limites = std::numeric_limits<int16_t>;
    return static_cast<int16_t>(std::clamp<double>(
        utiltexto::redondearPar(utiltexto::numeroInicial(texto)), Limites::min(), Limites::max()));
}

std::string soloCifras(std::string texto) {
    std::erase_if(texto, [](char c) { return c < '0' || c > '9'; });
    return texto;
}

std::string recortar(const std::string& texto, int maximo) {
    std::u32string letras = utf8AU32(texto);
    if (letras.size() <= indice(maximo)) return texto;
    letras.resize(indice(maximo));
    return u32AUtf8(letras);
}

bool cabeEnLinea(int16_t numero) { return numero >= 1 && numero <= kMaximoLinea; }

}  // namespace

int FormularioTxt::maximo(int columna) {
    switch (columna) {
        case kFormato:
            return kMaximoFormato;
        case kPosicion:
        case kLargo:
            return kMaximoCifras;
        default:
            return 0;
    }
}

void FormularioTxt::cargar(const Setup& cfg) {
    *this = FormularioTxt{};
    txLibro = cfg.ArchivoTexto();
    for (int campo = 0; campo < kCamposPesada; ++campo) {
        Fila& fila = filas_[indice(campo)];
        marcar(fila);
        fila.formato = cfg.Formato(campo);
        fila.posicion = textoDeNumero(cfg.Posicion(campo));
        fila.largo = textoDeNumero(cfg.Largo(campo));
        if (cfg.Posicion(campo) < 1) desmarcar(fila);
    }
}

void FormularioTxt::marcar(Fila& fila) {
    fila.escrito = true;
    std::string resto = std::exchange(fila.apartado, "");
    fila.formato = utiltexto::sacarPrimero(resto, kSeparador);
    fila.posicion = utiltexto::sacarPrimero(resto, kSeparador);
    fila.largo = utiltexto::sacarPrimero(resto, kSeparador);
}

void FormularioTxt::desmarcar(Fila& fila) {
    fila.escrito = false;
    fila.apartado = fila.formato + kSeparador + fila.posicion + kSeparador + fila.largo;
    fila.formato.clear();
    fila.posicion.clear();
    fila.largo.clear();
}

bool FormularioTxt::escrito(int campo) const {
    return existe(campo) && filas_[indice(campo)].escrito;
}

std::string FormularioTxt::celda(int campo, int columna) const {
    if (!existe(campo)) return "";
    const Fila& fila = filas_[indice(campo)];
    switch (columna) {
        case kMarca:
            return fila.escrito ? "·" : "";
        case kCampo:
            return nombresDeCampos()[indice(campo)];
        case kFormato:
            return fila.formato;
        case kPosicion:
            return fila.posicion;
        case kLargo:
            return fila.largo;
        case kApartado:
            return fila.apartado;
        default:
            return "";
    }
}

void FormularioTxt::alternar(int campo) {
    if (!existe(campo)) return;
    Fila& fila = filas_[indice(campo)];
    if (fila.escrito) {
        desmarcar(fila);
    } else {
        marcar(fila);
    }
}

void FormularioTxt::escribir(int campo, int columna, const std::string& texto) {
    if (!existe(campo)) return;
    Fila& fila = filas_[indice(campo)];
    const int cabe = maximo(columna);
    switch (columna) {
        case kFormato:
            fila.formato = recortar(texto, cabe);
            break;
        case kPosicion:
            fila.posicion = recortar(soloCifras(texto), cabe);
            break;
        case kLargo:
            fila.largo = recortar(soloCifras(texto), cabe);
            break;
        default:
            break;
    }
}

std::string FormularioTxt::validar() const {
    std::string error = errorDeRuta(txLibro, "*.txt");
    if (!error.empty()) return error;
    for (auto fila = filas_.begin(); fila != filas_.end(); ++fila) {
        if (fila->posicion.empty()) continue;
        const bool repetida = std::any_of(fila + 1, filas_.end(), [&](const Fila& otra) {
            return otra.posicion == fila->posicion;
        });
        if (repetida) return "Hay posiciones de campo repetidas";
    }
    return "";
}

void FormularioTxt::guardar(Setup& cfg) const {
    cfg.ArchivoTexto(txLibro);
    for (int campo = 0; campo < kCamposPesada; ++campo) {
        const Fila& fila = filas_[indice(campo)];
        if (fila.escrito) {
            cfg.Formato(campo, fila.formato);
            cfg.Posicion(campo, numeroDe(fila.posicion));
            cfg.Largo(campo, numeroDe(fila.largo));
        } else {
            cfg.Posicion(campo, 0);
        }
    }
}

std::array<CampoDeTexto, kCamposPesada> FormularioTxt::disposicion() const {
    std::array<CampoDeTexto, kCamposPesada> campos;
    for (std::size_t i = 0; i < campos.size(); ++i) {
        const Fila& fila = filas_[i];
        const CampoDeTexto campo{numeroDe(fila.posicion), numeroDe(fila.largo), fila.formato};
        const bool vale = fila.escrito && cabeEnLinea(campo.posicion) && cabeEnLinea(campo.largo);
        campos[i] = vale ? campo : CampoDeTexto{0, 0, ""};
    }
    return campos;
}

}  // namespace bn
