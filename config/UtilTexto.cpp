// SPDX-License-Identifier: MIT
#include "config/UtilTexto.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <locale>
#include <sstream>
#include <system_error>

#include "config/Codificacion.h"

namespace bn::utiltexto {
namespace {

constexpr std::string_view kBlancos = " \t";

bool esDigito(char caracter) { return caracter >= '0' && caracter <= '9'; }

/// from_chars does not tell too large from too small; the stream does.
double numeroDesmedido(const char* inicio, const char* fin) {
    std::istringstream flujo(std::string(inicio, fin));
    flujo.imbue(std::locale::classic());
    double valor = 0;
    flujo >> valor;
    return valor;
}

/// What one place of a pattern asks of a character, and how long it is; 0 when it cannot be read.
struct Pieza {
    std::size_t largo;
    bool vale;
};

bool enLista(std::string_view lista, unsigned char caracter) {
    for (std::size_t i = 0; i < lista.size(); ++i) {
        const auto desde = static_cast<unsigned char>(lista[i]);
        auto hasta = desde;
        if (i + 2 < lista.size() && lista[i + 1] == '-') {
            i += 2;
            hasta = static_cast<unsigned char>(lista[i]);
        }
        if (caracter >= desde && caracter <= hasta) {
            return true;
        }
    }
    return false;
}

Pieza probar(std::string_view patron, char caracter) {
    switch (patron.front()) {
        case '?':
            return {1, true};
        case '#':
            return {1, esDigito(caracter)};
        case '[': {
            const std::size_t cierre = patron.find(']');
            if (cierre == std::string_view::npos) {
                return {0, false};
            }
            std::string_view lista = patron.substr(1, cierre - 1);
            const bool negada = lista.starts_with('!');
            lista.remove_prefix(negada ? 1 : 0);
            return {cierre + 1, enLista(lista, static_cast<unsigned char>(caracter)) != negada};
        }
        default:
            return {1, patron.front() == caracter};
    }
}

}  // namespace

void anadirALista(std::string& lista, std::string_view elemento, std::string_view separador,
                  bool primero) {
    if (!primero) {
        lista += separador;
    }
    lista += elemento;
}

std::string sacarPrimero(std::string& texto, std::string_view separador) {
    const std::size_t lugar = separador.empty() ? std::string::npos : texto.find(separador);
    if (lugar == std::string::npos) {
        std::string todo;
        todo.swap(texto);
        return todo;
    }
    std::string primero = texto.substr(0, lugar);
    texto.erase(0, lugar + separador.size());
    return primero;
}

std::vector<std::string_view> partir(std::string_view texto, char separador, std::size_t maximo) {
    std::vector<std::string_view> elementos;
    while (elementos.size() < maximo) {
        const std::size_t lugar = texto.find(separador);
        elementos.push_back(texto.substr(0, lugar));
        if (lugar == std::string_view::npos) {
            break;
        }
        texto.remove_prefix(lugar + 1);
    }
    return elementos;
}

std::string_view sinBlancos(std::string_view texto) {
    const std::size_t primero = texto.find_first_not_of(kBlancos);
    if (primero == std::string_view::npos) {
        return {};
    }
    return texto.substr(primero, texto.find_last_not_of(kBlancos) - primero + 1);
}

std::string deBooleano(bool valor) { return valor ? "True" : "False"; }

bool aBooleano(std::string_view texto) {
    constexpr std::array<std::string_view, 5> kVerdaderos = {"TRUE", "VERDADERO", "1", "-1", "SÍ"};
    const std::string_view valor = sinBlancos(texto);
    // Nothing true is longer, and a damaged file may hold megabytes here.
    return valor.size() <= 9 && std::find(kVerdaderos.begin(), kVerdaderos.end(),
                                          mayusculas(valor)) != kVerdaderos.end();
}

double numeroInicial(std::string_view texto) {
    texto = sinBlancos(texto);
    const bool negativo = texto.starts_with('-');
    if (negativo || texto.starts_with('+')) {
        texto.remove_prefix(1);
    }
    const std::size_t digito = texto.starts_with('.') ? 1 : 0;
    // from_chars would also take a second sign, "inf" and "nan".
    if (texto.size() <= digito || !esDigito(texto[digito])) {
        return 0;
    }
    double valor = 0;
    const auto [fin, error] = std::from_chars(texto.data(), texto.data() + texto.size(), valor);
    if (error == std::errc::result_out_of_range) {
        valor = numeroDesmedido(texto.data(), fin);
    }
    return negativo ? -valor : valor;
}

double redondearPar(double valor) { return std::nearbyint(valor); }

bool esNumerico(std::string_view texto) {
    texto = sinBlancos(texto);
    if (texto.starts_with('-') || texto.starts_with('+')) {
        texto.remove_prefix(1);
    }
    const auto digitos = std::count_if(texto.begin(), texto.end(), esDigito);
    const auto separadores =
        std::count(texto.begin(), texto.end(), ',') + std::count(texto.begin(), texto.end(), '.');
    return digitos > 0 && separadores <= 1 &&
           digitos + separadores == static_cast<std::ptrdiff_t>(texto.size());
}

bool teclaNumerica(char32_t tecla) { return tecla < 32 || (tecla >= U'0' && tecla <= U'9'); }

bool coincide(std::string_view texto, std::string_view patron) {
    // Only the last "*" ever needs to be tried again: an earlier one that took more would only move
    // the same search to the right.
    std::size_t t = 0;
    std::size_t p = 0;
    std::size_t trasAsterisco = std::string_view::npos;
    std::size_t reintento = 0;
    while (t < texto.size()) {
        if (p < patron.size() && patron[p] == '*') {
            trasAsterisco = ++p;
            reintento = t;
            continue;
        }
        const Pieza pieza =
            p < patron.size() ? probar(patron.substr(p), texto[t]) : Pieza{1, false};
        if (pieza.largo == 0) {
            return false;
        }
        if (pieza.vale) {
            p += pieza.largo;
            ++t;
        } else if (trasAsterisco != std::string_view::npos) {
            p = trasAsterisco;
            t = ++reintento;
        } else {
            return false;
        }
    }
    return patron.find_first_not_of('*', p) == std::string_view::npos;
}

}  // namespace bn::utiltexto
