// SPDX-License-Identifier: MIT
#include "download/Formato.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <variant>

#include "download/FormatoDecimal.h"
#include "download/FormatoFecha.h"
#include "download/FormatoNombres.h"
#include "download/FormatoNumerico.h"
#include "download/FormatoPartes.h"
#include "download/FormatoTexto.h"

namespace bn {
namespace {

using formato::Clase;
using formato::Decimal;
using formato::FormatoConNombre;

FormatoConNombre interpretar(std::string_view formato) {
    const auto conNombre = formato::buscarNombre(formato);
    return conNombre ? *conNombre : FormatoConNombre{formato::clasificar(formato), formato};
}

// Each kind of value answers the same four questions.

double serie(double valor) { return valor; }
double serie(float valor) { return valor; }
double serie(int32_t valor) { return valor; }
double serie(bool valor) { return valor ? -1 : 0; }
double serie(const FechaOle& valor) { return valor.dias; }

std::optional<Decimal> decimal(double valor) { return formato::aDecimal(valor); }
std::optional<Decimal> decimal(float valor) { return formato::aDecimal(valor); }
std::optional<Decimal> decimal(int32_t valor) { return formato::aDecimal(valor); }
std::optional<Decimal> decimal(bool valor) { return formato::aDecimal(int32_t{valor ? -1 : 0}); }
std::optional<Decimal> decimal(const FechaOle& valor) { return formato::aDecimal(valor.dias); }

template <class Numero>
std::string textoPlano(Numero valor) {
    const auto digitos = decimal(valor);
    return digitos ? formato::textoGeneral(*digitos) : formato::textoGeneral(serie(valor));
}
std::string textoPlano(bool valor) { return valor ? "Verdadero" : "Falso"; }
std::string textoPlano(const FechaOle& valor) { return formato::formatearFecha(valor.dias, "c"); }

template <class Valor>
std::string conFormato(const Valor& valor, std::string_view formatoCp1252) {
    if (formatoCp1252.empty()) return textoPlano(valor);
    const FormatoConNombre formato = interpretar(formatoCp1252);
    if (formato.clase == Clase::kTexto) {
        return formato::formatearTexto(textoPlano(valor), formato.formato);
    }
    if (formato.clase == Clase::kFecha) {
        return formato::formatearFecha(serie(valor), formato.formato);
    }
    const std::optional<Decimal> digitos = decimal(valor);
    return digitos ? formato::formatearNumero(*digitos, formato.formato)
                   : formato::textoGeneral(serie(valor));
}

// A text that is no number passes unchanged through the pictures of numbers and dates.
std::string conFormato(const std::string& texto, std::string_view formatoCp1252) {
    if (formatoCp1252.empty()) return texto;
    const FormatoConNombre formato = interpretar(formatoCp1252);
    if (formato.clase == Clase::kTexto) return formato::formatearTexto(texto, formato.formato);
    const std::optional<Decimal> digitos = formato::leerDecimal(texto);
    if (!digitos) return texto;
    if (formato.clase == Clase::kNumero) {
        return formato::formatearNumero(*digitos, formato.formato);
    }
    return formato::formatearFecha(formato::aDoble(*digitos), formato.formato);
}

// Nothing shows only through the section a picture has for it.
std::string conFormato(std::monostate, std::string_view formatoCp1252) {
    const FormatoConNombre formato = interpretar(formatoCp1252);
    if (formato.clase == Clase::kFecha) return {};
    if (formato.clase == Clase::kNumero) return formato::formatearNada(formato.formato);
    const bool haySeccion = formato::dividir(formato.formato).cuantas > 1;
    return haySeccion ? formato::formatearTexto({}, formato.formato) : std::string{};
}

}  // namespace

std::string formatear(const Variante& valor, const std::string& formatoCp1252) {
    return std::visit([&](const auto& contenido) { return conFormato(contenido, formatoCp1252); },
                      valor);
}

}  // namespace bn
