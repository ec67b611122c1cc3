// SPDX-License-Identifier: MIT
#include "tests/simulacion/Destinos.h"

#include <cmath>
#include <cstdlib>
#include <map>
#include <set>
#include <variant>

#include "destinations/XCel.h"

namespace bn::prueba {

namespace {

constexpr std::size_t kLargoDeLinea = 76;

std::string clave(int albaran, int codigo) {
    return std::to_string(albaran) + "/" + std::to_string(codigo);
}

int numeroEn(const std::string& texto, std::size_t desde, std::size_t largo) {
    return std::atoi(texto.substr(desde, largo).c_str());
}

int numeroDe(const Variante& celda) {
    struct {
        int operator()(std::monostate) const { return 0; }
        int operator()(const std::string& texto) const { return std::atoi(texto.c_str()); }
        int operator()(double numero) const { return static_cast<int>(std::lround(numero)); }
        int operator()(float numero) const { return static_cast<int>(std::lround(numero)); }
        int operator()(int32_t numero) const { return numero; }
        int operator()(bool) const { return -1; }
        int operator()(FechaOle) const { return -1; }
    } const aNumero;
    return std::visit(aNumero, celda);
}

bool estaVacia(const Variante& celda) {
    const auto* texto = std::get_if<std::string>(&celda);
    return std::holds_alternative<std::monostate>(celda) || (texto != nullptr && texto->empty());
}

bool numerada(const std::string& clave) { return !clave.starts_with("0/"); }

std::string lista(const std::vector<std::string>& claves) {
    std::string texto;
    for (const std::string& una : claves) texto += " " + una;
    return texto;
}

/// Whether the records, the doubtful ones left out or not, are what is there, in order.
bool casan(const std::vector<Guardada>& guardadas, const std::vector<std::string>& hay) {
    std::set<std::size_t> hasta = {0};
    for (const Guardada& una : guardadas) {
        std::set<std::size_t> siguientes;
        for (const std::size_t i : hasta) {
            if (una.dudosa) siguientes.insert(i);
            if (i < hay.size() && hay[i] == claveDeDatos(una.datos)) siguientes.insert(i + 1);
        }
        hasta = std::move(siguientes);
    }
    return hasta.contains(hay.size());
}

}  // namespace

std::string legible(std::string texto) {
    for (char& c : texto) {
        if (c >= 0 && c < ' ') c = '.';
    }
    return texto;
}

std::string claveDeDatos(const std::string& datos) {
    return clave(numeroEn(datos, 9, 7), numeroEn(datos, 26, 8));
}

std::vector<std::string> clavesDeTexto(const std::string& lineas) {
    std::vector<std::string> claves;
    for (std::size_t desde = 0; desde < lineas.size();) {
        const std::size_t fin = lineas.find("\r\n", desde);
        const std::string linea = lineas.substr(desde, fin - desde);
        const bool entera = fin != std::string::npos && linea.size() == kLargoDeLinea;
        claves.push_back(entera ? clave(numeroEn(linea, 26, 7), numeroEn(linea, 43, 8))
                                : "<" + legible(linea) + ">");
        desde = fin == std::string::npos ? lineas.size() : fin + 2;
    }
    return claves;
}

std::vector<std::string> clavesDeHoja(Plataforma& plataforma, const std::string& libro,
                                      const std::string& hoja, int16_t desde) {
    XCel lector(plataforma);
    std::vector<std::string> claves;
    if (!lector.AbrirParaLeer(libro, hoja)) return claves;
    for (int16_t fila = desde; !estaVacia(lector.Celda(fila, 5)); ++fila) {
        claves.push_back(clave(numeroDe(lector.Celda(fila, 3)), numeroDe(lector.Celda(fila, 5))));
    }
    lector.Cerrar();
    return claves;
}

std::string comparar(const std::vector<Guardada>& guardadas, const std::vector<std::string>& hay,
                     bool admiteRepetidas) {
    std::map<std::string, int> faltan;
    std::map<std::string, int> dudosas;
    std::vector<std::string> esperadas;
    for (const Guardada& una : guardadas) {
        const std::string clave = claveDeDatos(una.datos);
        esperadas.push_back(clave + (una.dudosa ? "?" : ""));
        if (!una.desdicha) ++(una.dudosa ? dudosas : faltan)[clave];
    }
    std::map<std::string, int> veces;
    for (const std::string& clave : hay) ++veces[clave];
    std::string mal;
    for (const auto& [clave, cuantas] : faltan) {
        if (veces[clave] < cuantas) mal += " falta " + clave;
        const bool sobra = numerada(clave) && veces[clave] > cuantas + dudosas[clave];
        if (sobra && !admiteRepetidas) mal += " repetida " + clave;
    }
    for (const auto& [clave, cuantas] : veces) {
        if (admiteRepetidas && clave.starts_with('<')) continue;
        if (!faltan.contains(clave) && !dudosas.contains(clave)) mal += " ajena " + clave;
    }
    if (mal.empty() && (admiteRepetidas || casan(guardadas, hay))) return {};
    if (mal.empty()) mal = " desorden";
    return mal + ": tenía que haber" + lista(esperadas) + ", hay" + lista(hay);
}

}  // namespace bn::prueba
