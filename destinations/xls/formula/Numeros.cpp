// SPDX-License-Identifier: MIT
#include "destinations/xls/formula/Numeros.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace bn::xls {

namespace {

constexpr size_t kCifras = 15;
constexpr int32_t kMayorExponenteLlano = 20;
constexpr int32_t kMenorExponenteLlano = -9;

bool esCifra(char c) { return c >= '0' && c <= '9'; }

struct Partes {
    std::string cifras;     // significant ones, without leading zeros
    int64_t exponente = 0;  // of ten, for the number that cifras is as an integer
};

/// Reads the mantissa from pos on; false when it holds no digit.
bool leerMantisa(std::string_view texto, size_t& pos, Partes& partes) {
    bool algunaCifra = false;
    bool decimales = false;
    for (; pos < texto.size() && (esCifra(texto[pos]) || (texto[pos] == '.' && !decimales));
         ++pos) {
        if (texto[pos] == '.') {
            decimales = true;
            continue;
        }
        algunaCifra = true;
        if (decimales) --partes.exponente;
        if (texto[pos] == '0' && partes.cifras.empty()) continue;
        if (partes.cifras.size() < kCifras) {
            partes.cifras += texto[pos];
        } else {
            ++partes.exponente;  // a digit past the fifteenth counts as 0
        }
    }
    return algunaCifra;
}

/// Reads "E", a sign and digits up to the end; false when they are anything else.
bool leerExponente(std::string_view texto, size_t pos, Partes& partes) {
    constexpr int64_t kTope = 100000;
    if (texto[pos] != 'E' && texto[pos] != 'e') return false;
    ++pos;
    const bool negativo = pos < texto.size() && texto[pos] == '-';
    if (pos < texto.size() && (texto[pos] == '-' || texto[pos] == '+')) ++pos;
    if (pos == texto.size()) return false;
    int64_t exponente = 0;
    for (; pos < texto.size(); ++pos) {
        if (!esCifra(texto[pos])) return false;
        exponente = std::min(exponente * 10 + (texto[pos] - '0'), kTope);
    }
    partes.exponente += negativo ? -exponente : exponente;
    return true;
}

std::string llano(const std::string& cifras, int32_t exponente) {
    const auto enteras = static_cast<int32_t>(exponente) + 1;
    const auto hay = static_cast<int32_t>(cifras.size());
    if (enteras <= 0) return "0." + std::string(static_cast<size_t>(-enteras), '0') + cifras;
    if (enteras >= hay) return cifras + std::string(static_cast<size_t>(enteras - hay), '0');
    return cifras.substr(0, static_cast<size_t>(enteras)) + "." +
           cifras.substr(static_cast<size_t>(enteras));
}

std::string cientifico(const std::string& cifras, int32_t exponente) {
    std::string texto = cifras.substr(0, 1);
    if (cifras.size() > 1) texto += "." + cifras.substr(1);
    texto += exponente < 0 ? "E-" : "E+";
    const std::string potencia = std::to_string(std::abs(exponente));
    return texto + (potencia.size() < 2 ? "0" : "") + potencia;
}

}  // namespace

std::optional<double> leerNumero(std::string_view texto) {
    Partes partes;
    size_t pos = 0;
    if (!leerMantisa(texto, pos, partes)) return std::nullopt;
    if (pos < texto.size() && !leerExponente(texto, pos, partes)) return std::nullopt;
    if (partes.cifras.empty()) return 0.0;
    const std::string normal = partes.cifras + "E" + std::to_string(partes.exponente);
    double valor = 0;
    const auto [fin, error] = std::from_chars(normal.data(), normal.data() + normal.size(), valor);
    const bool cabe = error == std::errc() && fin == normal.data() + normal.size() &&
                      std::isfinite(valor) && valor >= std::numeric_limits<double>::min();
    return cabe ? std::optional(valor) : std::nullopt;
}

std::string escribirNumero(double valor) {
    if (valor == 0) return "0";
    std::array<char, 40> buffer{};
    const auto fin = std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::fabs(valor),
                                   std::chars_format::scientific, static_cast<int>(kCifras) - 1)
                         .ptr;
    const std::string texto(buffer.data(), fin);
    const size_t e = texto.find('e');
    std::string cifras = texto.substr(0, 1) + texto.substr(2, e - 2);
    while (cifras.size() > 1 && cifras.back() == '0') cifras.pop_back();
    const auto exponente = static_cast<int32_t>(std::strtol(texto.c_str() + e + 1, nullptr, 10));
    const bool esLlano = exponente <= kMayorExponenteLlano && exponente >= kMenorExponenteLlano;
    return (valor < 0 ? "-" : "") +
           (esLlano ? llano(cifras, exponente) : cientifico(cifras, exponente));
}

}  // namespace bn::xls
