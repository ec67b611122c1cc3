// SPDX-License-Identifier: MIT
#include "destinations/xls/EntradaTecleada.h"

#include <algorithm>
#include <optional>

#include "destinations/xls/FechaTecleada.h"
#include "destinations/xls/formula/Analizador.h"
#include "destinations/xls/formula/Numeros.h"

namespace bn::xls {

namespace {

bool esCifra(char c) { return c >= '0' && c <= '9'; }

std::string_view sinBlancosDetras(std::string_view texto) {
    while (texto.ends_with(' ')) texto.remove_suffix(1);
    return texto;
}

std::string_view sinBlancos(std::string_view texto) {
    while (texto.starts_with(' ')) texto.remove_prefix(1);
    return sinBlancosDetras(texto);
}

/// Digits without their thousands commas; nothing when a comma does not part groups of three.
std::optional<std::string> sinComas(std::string_view cuerpo) {
    const size_t enteras = std::min(cuerpo.find('.'), cuerpo.size());
    std::string limpio;
    size_t desdeComa = 0;
    bool hayComa = false;
    for (size_t i = 0; i < cuerpo.size(); ++i) {
        if (cuerpo[i] != ',') {
            limpio += cuerpo[i];
            if (i < enteras) ++desdeComa;
            continue;
        }
        const bool bien =
            i < enteras && (hayComa ? desdeComa == 3 : desdeComa >= 1 && desdeComa <= 3);
        if (!bien) return std::nullopt;
        hayComa = true;
        desdeComa = 0;
    }
    if (hayComa && desdeComa != 3) return std::nullopt;
    return limpio;
}

/// The signs around a number's digits.
struct Adornos {
    bool negativo = false;
    bool signo = false;
    bool parentesis = false;
    bool moneda = false;
    bool porcentaje = false;
};

/// Takes one sign off the front; false when it cannot stand there.
bool quitarDelante(char c, Adornos& a) {
    bool* marca = nullptr;
    if (c == '+' || c == '-') marca = &a.signo;
    if (c == '(') marca = &a.parentesis;
    if (c == '$') marca = &a.moneda;
    if (c == '%') marca = &a.porcentaje;
    if (marca == nullptr || *marca) return false;
    *marca = true;
    a.negativo = a.negativo || c == '-' || c == '(';
    return !(a.signo && a.parentesis);
}

/// Leaves the digits alone in texto; nothing when the signs around them are no number's.
std::optional<Adornos> quitarAdornos(std::string_view& texto) {
    Adornos a;
    while (!texto.empty() && !esCifra(texto[0]) && texto[0] != '.') {
        if (!quitarDelante(texto[0], a)) return std::nullopt;
        texto = sinBlancos(texto.substr(1));
    }
    if (a.parentesis) {
        if (!texto.ends_with(')')) return std::nullopt;
        texto = sinBlancosDetras(texto.substr(0, texto.size() - 1));
    }
    if (texto.ends_with('%')) {
        if (a.porcentaje) return std::nullopt;
        a.porcentaje = true;
        texto = sinBlancosDetras(texto.substr(0, texto.size() - 1));
    }
    return a.moneda && a.porcentaje ? std::nullopt : std::optional(a);
}

std::string formatoDe(const Adornos& a, bool comas, bool decimales, bool exponente) {
    if (a.moneda) {
        return decimales ? "$#,##0.00_);[Red]($#,##0.00)" : "$#,##0_);[Red]($#,##0)";
    }
    if (a.porcentaje) return decimales ? "0.00%" : "0%";
    if (exponente) return "0.00E+00";
    if (comas) return decimales ? "#,##0.00" : "#,##0";
    return "";
}

std::optional<EntradaNumero> leerCantidad(std::string_view texto) {
    texto = sinBlancos(texto);
    const auto adornos = quitarAdornos(texto);
    if (!adornos || texto.empty()) return std::nullopt;
    const bool exponente = texto.find_first_of("Ee") != std::string_view::npos;
    const bool comas = texto.find(',') != std::string_view::npos;
    if (exponente && (comas || adornos->moneda || adornos->porcentaje)) return std::nullopt;
    auto cuerpo = sinComas(texto);
    if (!cuerpo) return std::nullopt;
    const size_t punto = cuerpo->find('.');
    const bool decimales = punto != std::string::npos && punto + 1 < cuerpo->size();
    if (adornos->porcentaje) *cuerpo += "E-2";
    const auto valor = leerNumero(*cuerpo);
    if (!valor) return std::nullopt;
    const bool menos = adornos->negativo && *valor != 0;
    return EntradaNumero{menos ? -*valor : *valor,
                         formatoDe(*adornos, comas, decimales, exponente)};
}

/// Up to five digits, moved past; nothing when there are none or more.
std::optional<int32_t> leerEntero(std::string_view& texto) {
    int32_t valor = 0;
    size_t n = 0;
    for (; n < texto.size() && esCifra(texto[n]) && n < 6; ++n)
        valor = valor * 10 + (texto[n] - '0');
    texto.remove_prefix(n);
    return n >= 1 && n <= 5 ? std::optional(valor) : std::nullopt;
}

/// "0 1/2", "-1 3/4".
std::optional<EntradaNumero> leerFraccion(std::string_view texto) {
    const bool negativo = texto.starts_with('-');
    if (negativo || texto.starts_with('+')) texto.remove_prefix(1);
    const auto entero = leerEntero(texto);
    if (!entero || !texto.starts_with(' ')) return std::nullopt;
    texto = sinBlancos(texto);
    const size_t largo = texto.size();
    const size_t barra = texto.find('/');
    const auto numerador = leerEntero(texto);
    if (!numerador || !texto.starts_with('/')) return std::nullopt;
    texto.remove_prefix(1);
    const auto denominador = leerEntero(texto);
    constexpr int32_t kMaximo = 32767;
    if (!denominador || !texto.empty() || *denominador < 1 || *denominador > kMaximo) {
        return std::nullopt;
    }
    const double valor = *entero + static_cast<double>(*numerador) / *denominador;
    const bool unaCifra = barra == 1 && largo == 3;
    return EntradaNumero{negativo && valor != 0 ? -valor : valor, unaCifra ? "# ?/?" : "# ?\?/?\?"};
}

}  // namespace

Entrada interpretarEntrada(std::string_view utf8, bool celdaDeTexto, bool fechas1904,
                           int anioActual) {
    if (utf8.empty()) return EntradaVacia{};
    if (utf8[0] == '\'') return EntradaTexto{std::string(utf8.substr(1)), true};
    if (celdaDeTexto) return EntradaTexto{std::string(utf8), false};
    if (utf8[0] == '=' && utf8.size() > 1) return EntradaFormula{std::string(utf8)};
    const auto error = leerErrorLiteral(utf8);
    if (error && error->second == utf8.size()) return EntradaError{error->first};
    const std::string enMayusculas = mayusculasAscii(utf8.substr(0, 6));
    if (enMayusculas == "TRUE" || enMayusculas == "FALSE") {
        return EntradaLogica{enMayusculas == "TRUE"};
    }
    if (auto numero = leerCantidad(utf8)) return *numero;
    // A blank in front keeps a date, a time or a fraction a text, but not a number.
    const std::string_view sinCola = sinBlancosDetras(utf8);
    if (auto fraccion = leerFraccion(sinCola)) return *fraccion;
    if (!utf8.starts_with(' ')) {
        if (auto fecha = leerFechaHora(sinCola, fechas1904, anioActual)) return *fecha;
    }
    return EntradaTexto{std::string(utf8), false};
}

}  // namespace bn::xls
