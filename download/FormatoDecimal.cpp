// SPDX-License-Identifier: MIT
#include "download/FormatoDecimal.h"

#include <array>
#include <charconv>
#include <cmath>
#include <system_error>

namespace bn::formato {
namespace {

constexpr std::ptrdiff_t kMayorPunto = 15;
constexpr std::ptrdiff_t kMenorPunto = -3;

void quitarCerosFinales(std::string& digitos) {
    const std::size_t ultimo = digitos.find_last_not_of('0');
    digitos.resize(ultimo == std::string::npos ? 0 : ultimo + 1);
}

// Reads what std::to_chars writes in scientific form: "-d.ddde+xx".
template <class Numero>
std::optional<Decimal> desdeFlotante(Numero valor) {
    if (!std::isfinite(valor)) return std::nullopt;
    std::array<char, 48> buffer{};
    const auto fin = std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::abs(valor),
                                   std::chars_format::scientific);
    const std::string_view texto(buffer.data(), static_cast<std::size_t>(fin.ptr - buffer.data()));
    const std::size_t letra = texto.find('e');
    Decimal resultado;
    resultado.digitos.push_back(texto[0]);
    if (letra > 2) resultado.digitos.append(texto.substr(2, letra - 2));
    quitarCerosFinales(resultado.digitos);
    if (resultado.esCero()) return resultado;
    resultado.negativo = std::signbit(valor);
    const std::size_t inicio = letra + (texto[letra + 1] == '+' ? 2 : 1);
    int exponente = 0;
    std::from_chars(texto.data() + inicio, texto.data() + texto.size(), exponente);
    resultado.punto = exponente + 1;
    return resultado;
}

std::string_view sinBlancos(std::string_view texto) {
    const std::size_t primero = texto.find_first_not_of(" \t");
    if (primero == std::string_view::npos) return {};
    return texto.substr(primero, texto.find_last_not_of(" \t") - primero + 1);
}

void escribirExponente(std::string& salida, std::ptrdiff_t exponente) {
    salida += exponente < 0 ? "E-" : "E+";
    const std::string cifras = std::to_string(exponente < 0 ? -exponente : exponente);
    if (cifras.size() < 2) salida += '0';
    salida += cifras;
}

}  // namespace

void Decimal::redondear(std::ptrdiff_t decimales) {
    const std::ptrdiff_t quedan = punto + decimales;
    if (quedan >= static_cast<std::ptrdiff_t>(digitos.size())) return;
    const bool sube = quedan >= 0 && digitos[static_cast<std::size_t>(quedan)] >= '5';
    digitos.resize(quedan > 0 ? static_cast<std::size_t>(quedan) : 0);
    if (!sube) {
        quitarCerosFinales(digitos);
        if (digitos.empty()) punto = 0;
        return;
    }
    while (!digitos.empty() && digitos.back() == '9') digitos.pop_back();
    if (digitos.empty()) {
        digitos = "1";
        ++punto;
    } else {
        ++digitos.back();
    }
}

std::optional<Decimal> aDecimal(double valor) { return desdeFlotante(valor); }

std::optional<Decimal> aDecimal(float valor) { return desdeFlotante(valor); }

Decimal aDecimal(int32_t valor) {
    Decimal resultado;
    if (valor == 0) return resultado;
    resultado.digitos = std::to_string(std::abs(int64_t{valor}));
    resultado.punto = static_cast<std::ptrdiff_t>(resultado.digitos.size());
    resultado.negativo = valor < 0;
    quitarCerosFinales(resultado.digitos);
    return resultado;
}

std::optional<Decimal> leerDecimal(std::string_view texto) {
    texto = sinBlancos(texto);
    Decimal resultado;
    if (!texto.empty() && (texto[0] == '-' || texto[0] == '+')) {
        resultado.negativo = texto[0] == '-';
        texto.remove_prefix(1);
    }
    bool hayCifra = false;
    bool haySeparador = false;
    for (const char c : texto) {
        if (c >= '0' && c <= '9') {
            hayCifra = true;
            const bool ceroInicial = c == '0' && resultado.digitos.empty();
            if (!ceroInicial) resultado.digitos += c;
            if (ceroInicial && haySeparador) --resultado.punto;
            if (!ceroInicial && !haySeparador) ++resultado.punto;
        } else if ((c == ',' || c == '.') && !haySeparador) {
            haySeparador = true;
        } else {
            return std::nullopt;
        }
    }
    if (!hayCifra) return std::nullopt;
    quitarCerosFinales(resultado.digitos);
    if (resultado.esCero()) return Decimal{};
    return resultado;
}

double aDoble(const Decimal& valor) {
    if (valor.esCero()) return 0;
    const std::string texto = "0." + valor.digitos + "e" + std::to_string(valor.punto);
    double resultado = 0;
    const auto leido = std::from_chars(texto.data(), texto.data() + texto.size(), resultado);
    if (leido.ec == std::errc::result_out_of_range) resultado = valor.punto > 0 ? HUGE_VAL : 0;
    return valor.negativo ? -resultado : resultado;
}

std::string textoGeneral(const Decimal& valor) {
    if (valor.esCero()) return "0";
    std::string salida(valor.negativo ? "-" : "");
    const auto cifras = static_cast<std::ptrdiff_t>(valor.digitos.size());
    if (valor.punto > kMayorPunto || valor.punto < kMenorPunto) {
        salida += valor.digitos[0];
        if (cifras > 1) salida.append(",").append(valor.digitos, 1);
        escribirExponente(salida, valor.punto - 1);
    } else if (valor.punto <= 0) {
        salida += "0,";
        salida.append(static_cast<std::size_t>(-valor.punto), '0').append(valor.digitos);
    } else if (valor.punto >= cifras) {
        salida.append(valor.digitos).append(static_cast<std::size_t>(valor.punto - cifras), '0');
    } else {
        const auto enteros = static_cast<std::size_t>(valor.punto);
        salida.append(valor.digitos, 0, enteros).append(",").append(valor.digitos, enteros);
    }
    return salida;
}

std::string textoGeneral(double valor) {
    if (std::isnan(valor)) return "NAN";
    if (std::isinf(valor)) return valor < 0 ? "-INF" : "INF";
    return textoGeneral(*aDecimal(valor));
}

}  // namespace bn::formato
