// SPDX-License-Identifier: MIT
#include "download/FormatoTexto.h"

#include <cstddef>
#include <utility>

#include "download/FormatoPartes.h"

namespace bn::formato {
namespace {

enum class Caja { kComoEsta, kMinusculas, kMayusculas };

struct PlantillaTexto {
    std::ptrdiff_t marcadores = 0;
    bool desdeIzquierda = false;
    Caja caja = Caja::kComoEsta;
};

bool esMarcador(char c) { return c == '@' || c == '&'; }

PlantillaTexto analizar(std::string_view seccion) {
    PlantillaTexto plantilla;
    Lector lector(seccion);
    Elemento elemento;
    while (lector.siguiente(elemento)) {
        if (elemento.literal) continue;
        const char c = elemento.texto[0];
        if (esMarcador(c)) ++plantilla.marcadores;
        if (c == '!') plantilla.desdeIzquierda = true;
        if (c == '<') plantilla.caja = Caja::kMinusculas;
        if (c == '>') plantilla.caja = Caja::kMayusculas;
    }
    return plantilla;
}

// Windows-1252: the Latin-1 letters are 32 apart, but for the signs of product and quotient, and a
// few more letters stand between 80 and 9F.
char aMinuscula(char c) {
    const auto codigo = static_cast<unsigned char>(c);
    if (codigo >= 'A' && codigo <= 'Z') return static_cast<char>(codigo + 32);
    if (codigo >= 0xC0 && codigo <= 0xDE && codigo != 0xD7) return static_cast<char>(codigo + 32);
    if (codigo == 0x8A || codigo == 0x8C || codigo == 0x8E) return static_cast<char>(codigo + 16);
    return codigo == 0x9F ? '\xFF' : c;
}

char aMayuscula(char c) {
    const auto codigo = static_cast<unsigned char>(c);
    if (codigo >= 'a' && codigo <= 'z') return static_cast<char>(codigo - 32);
    if (codigo >= 0xE0 && codigo <= 0xFE && codigo != 0xF7) return static_cast<char>(codigo - 32);
    if (codigo == 0x9A || codigo == 0x9C || codigo == 0x9E) return static_cast<char>(codigo - 16);
    return codigo == 0xFF ? '\x9F' : c;
}

class EscritorTexto {
 public:
    EscritorTexto(std::string_view texto, const PlantillaTexto& plantilla)
        : texto_(texto), plantilla_(plantilla) {
        const auto largo = static_cast<std::ptrdiff_t>(texto.size());
        if (!plantilla.desdeIzquierda) proximo_ = largo - plantilla.marcadores;
    }

    std::string escribir(std::string_view seccion) {
        Lector lector(seccion);
        Elemento elemento;
        while (lector.siguiente(elemento)) {
            const char c = elemento.literal ? char{0} : elemento.texto[0];
            if (elemento.literal) {
                salida_ += elemento.texto;
            } else if (esMarcador(c)) {
                marcador(c);
            } else if (c != '<' && c != '>' && c != '!') {
                salida_ += c;
            }
        }
        if (plantilla_.marcadores == 0) sobrantes(0, largo());
        return std::move(salida_);
    }

 private:
    std::ptrdiff_t largo() const { return static_cast<std::ptrdiff_t>(texto_.size()); }

    void marcador(char c) {
        const bool primero = vistos_ == 0;
        const bool ultimo = ++vistos_ == plantilla_.marcadores;
        if (primero && !plantilla_.desdeIzquierda) sobrantes(0, proximo_);
        if (proximo_ >= 0 && proximo_ < largo()) {
            sobrantes(proximo_, proximo_ + 1);
        } else if (c == '@') {
            salida_ += ' ';
        }
        ++proximo_;
        if (ultimo && plantilla_.desdeIzquierda) sobrantes(proximo_, largo());
    }

    void sobrantes(std::ptrdiff_t desde, std::ptrdiff_t hasta) {
        for (std::ptrdiff_t i = desde; i < hasta; ++i) {
            salida_ += conCaja(texto_[static_cast<std::size_t>(i)]);
        }
    }

    char conCaja(char c) const {
        switch (plantilla_.caja) {
            case Caja::kMinusculas:
                return aMinuscula(c);
            case Caja::kMayusculas:
                return aMayuscula(c);
            case Caja::kComoEsta:
                break;
        }
        return c;
    }

    std::string_view texto_;
    const PlantillaTexto& plantilla_;
    std::string salida_;
    std::ptrdiff_t proximo_ = 0;
    std::ptrdiff_t vistos_ = 0;
};

}  // namespace

std::string formatearTexto(std::string_view texto, std::string_view formato) {
    const Secciones secciones = dividir(formato);
    const bool segunda = texto.empty() && secciones.cuantas > 1;
    const std::string_view seccion = secciones[segunda ? 1 : 0];
    const PlantillaTexto plantilla = analizar(seccion);
    return EscritorTexto(texto, plantilla).escribir(seccion);
}

}  // namespace bn::formato
