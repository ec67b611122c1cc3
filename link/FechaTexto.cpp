// SPDX-License-Identifier: MIT
#include "link/FechaTexto.h"

#include <chrono>
#include <cstddef>

namespace bn {

namespace {

constexpr double kSegundosPorDia = 86400.0;

/// Takes the text apart from left to right.
class Lector {
 public:
    explicit Lector(std::string_view texto) : resto_(texto) {}

    bool acabado() const { return resto_.empty(); }

    /// A run of one to maximo digits; nothing when there is none or it is longer.
    std::optional<int> numero(std::size_t maximo) {
        std::size_t largo = 0;
        int valor = 0;
        while (largo < resto_.size() && resto_[largo] >= '0' && resto_[largo] <= '9') {
            if (++largo > maximo) return std::nullopt;
            valor = valor * 10 + (resto_[largo - 1] - '0');
        }
        if (largo == 0) return std::nullopt;
        resto_.remove_prefix(largo);
        return valor;
    }

    /// One character of the set.
    std::optional<char> uno(std::string_view conjunto) {
        if (resto_.empty() || conjunto.find(resto_.front()) == std::string_view::npos) {
            return std::nullopt;
        }
        const char caracter = resto_.front();
        resto_.remove_prefix(1);
        return caracter;
    }

    bool blancos() {
        const std::size_t antes = resto_.size();
        while (!resto_.empty() && resto_.front() == ' ') resto_.remove_prefix(1);
        return resto_.size() != antes;
    }

    std::size_t restantes() const { return resto_.size(); }

 private:
    std::string_view resto_;
};

/// The year of two or four digits; nothing for other lengths.
std::optional<int> leerAnio(Lector& lector) {
    const std::size_t antes = lector.restantes();
    const auto anio = lector.numero(4);
    if (!anio) return std::nullopt;
    const std::size_t cifras = antes - lector.restantes();
    if (cifras == 2) return *anio < 30 ? 2000 + *anio : 1900 + *anio;
    if (cifras == 4 && *anio >= 100) return *anio;
    return std::nullopt;
}

std::optional<int> diasDesdeOrigen(int anio, int mes, int dia) {
    using namespace std::chrono;
    const year_month_day fecha{year{anio}, month{static_cast<unsigned>(mes)},
                               day{static_cast<unsigned>(dia)}};
    if (!fecha.ok()) return std::nullopt;
    constexpr sys_days kOrigen = 1899y / December / 30;
    return static_cast<int>((sys_days{fecha} - kOrigen).count());
}

std::optional<int> leerFecha(Lector& lector) {
    const auto primero = lector.numero(2);
    if (!primero) return std::nullopt;
    const auto separador = lector.uno("/-.");
    if (!separador) return std::nullopt;
    const auto segundo = lector.numero(2);
    if (!segundo || !lector.uno(std::string_view(&*separador, 1))) return std::nullopt;
    const auto anio = leerAnio(lector);
    if (!anio) return std::nullopt;
    const auto diaMes = diasDesdeOrigen(*anio, *segundo, *primero);
    return diaMes ? diaMes : diasDesdeOrigen(*anio, *primero, *segundo);
}

/// The time of day as a fraction of it.
std::optional<double> leerHora(Lector& lector) {
    const auto hora = lector.numero(2);
    if (!hora || *hora > 23 || !lector.uno(":")) return std::nullopt;
    const auto minuto = lector.numero(2);
    if (!minuto || *minuto > 59) return std::nullopt;
    int segundo = 0;
    if (lector.uno(":")) {
        const auto leido = lector.numero(2);
        if (!leido || *leido > 59) return std::nullopt;
        segundo = *leido;
    }
    return (*hora * 3600 + *minuto * 60 + segundo) / kSegundosPorDia;
}

}  // namespace

std::optional<double> reconocerFecha(std::string_view texto) {
    while (!texto.empty() && texto.front() == ' ') texto.remove_prefix(1);
    while (!texto.empty() && texto.back() == ' ') texto.remove_suffix(1);
    if (texto.empty()) return std::nullopt;

    Lector lector(texto);
    int dias = 0;
    if (texto.find(':') == std::string_view::npos || texto.find(' ') != std::string_view::npos) {
        const auto fecha = leerFecha(lector);
        if (!fecha) return std::nullopt;
        dias = *fecha;
        if (lector.acabado()) return dias;
        if (!lector.blancos()) return std::nullopt;
    }
    const auto hora = leerHora(lector);
    if (!hora || !lector.acabado()) return std::nullopt;
    // Before the origin the fraction still counts forward from the start of its day.
    return dias < 0 ? dias - *hora : dias + *hora;
}

}  // namespace bn
