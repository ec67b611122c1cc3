// SPDX-License-Identifier: MIT
#include "destinations/xls/FechaTecleada.h"

#include <array>
#include <chrono>
#include <cmath>
#include <span>
#include <string>
#include <vector>

#include "destinations/xls/formula/Analizador.h"

namespace bn::xls {

namespace {

// The text cut into pieces, each with a letter, so that a whole entry has a shape: "n/n n:n a".
constexpr char kNumero = 'n';
constexpr char kMes = 'm';
constexpr char kMediodia = 'a';  // AM, PM

struct Pieza {
    char clase = 0;     // one of the above, or the sign itself; ' ' for any run of blanks
    int32_t valor = 0;  // of a number; 1 to 12 of a month; 0 or 12 hours for AM and PM
    size_t cifras = 0;
};

using Piezas = std::span<const Pieza>;

constexpr size_t kCifrasMaximas = 9;
constexpr size_t kPiezasMaximas = 16;  // no date or time has more

bool esCifra(char c) { return c >= '0' && c <= '9'; }
bool esLetra(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

int32_t mesDe(const std::string& palabra) {
    constexpr auto kMeses = std::to_array<std::string_view>(
        {"JANUARY", "FEBRUARY", "MARCH", "APRIL", "MAY", "JUNE", "JULY", "AUGUST", "SEPTEMBER",
         "OCTOBER", "NOVEMBER", "DECEMBER"});
    for (size_t i = 0; i < kMeses.size(); ++i) {
        const bool setiembre = kMeses[i] == "SEPTEMBER" && palabra == "SEPT";
        if (palabra == kMeses[i] || palabra == kMeses[i].substr(0, 3) || setiembre) {
            return static_cast<int32_t>(i) + 1;
        }
    }
    return 0;
}

std::optional<Pieza> leerPalabra(std::string_view texto, size_t& pos) {
    const size_t inicio = pos;
    while (pos < texto.size() && esLetra(texto[pos])) ++pos;
    const std::string palabra = mayusculasAscii(texto.substr(inicio, pos - inicio));
    if (palabra == "AM" || palabra == "A") return Pieza{kMediodia, 0, 0};
    if (palabra == "PM" || palabra == "P") return Pieza{kMediodia, 12, 0};
    const int32_t mes = mesDe(palabra);
    return mes > 0 ? std::optional(Pieza{kMes, mes, 0}) : std::nullopt;
}

std::optional<Pieza> leerPieza(std::string_view texto, size_t& pos) {
    if (esLetra(texto[pos])) return leerPalabra(texto, pos);
    Pieza pieza{texto[pos], 0, 0};
    if (esCifra(texto[pos])) {
        pieza.clase = kNumero;
        for (; pos < texto.size() && esCifra(texto[pos]); ++pos) {
            if (++pieza.cifras > kCifrasMaximas) return std::nullopt;
            pieza.valor = pieza.valor * 10 + (texto[pos] - '0');
        }
        return pieza;
    }
    if (std::string_view("/-:., ").find(texto[pos]) == std::string_view::npos) return std::nullopt;
    ++pos;
    while (pieza.clase == ' ' && pos < texto.size() && texto[pos] == ' ') ++pos;
    return pieza;
}

std::optional<std::vector<Pieza>> cortar(std::string_view texto) {
    std::vector<Pieza> piezas;
    for (size_t pos = 0; pos < texto.size();) {
        const auto pieza = leerPieza(texto, pos);
        if (!pieza || piezas.size() == kPiezasMaximas) return std::nullopt;
        piezas.push_back(*pieza);
    }
    return piezas;
}

std::string formaDe(Piezas piezas) {
    std::string forma;
    for (const Pieza& p : piezas) forma += p.clase;
    return forma;
}

int32_t diasDelMes(int32_t anio, int32_t mes) {
    if (anio == 1900 && mes == 2) return 29;  // a worksheet's calendar has that day
    using namespace std::chrono;
    const year_month_day_last ultimo{year(anio) / month(static_cast<unsigned>(mes)) / last};
    return static_cast<int32_t>(static_cast<unsigned>(ultimo.day()));
}

std::optional<int32_t> anioDe(const Pieza& p) {
    if (p.cifras <= 2) return p.valor + (p.valor < 30 ? 2000 : 1900);
    const bool vale = p.cifras == 4 && p.valor >= 1900;
    return vale ? std::optional(p.valor) : std::nullopt;
}

class Lector {
 public:
    Lector(bool fechas1904, int anioActual) : fechas1904_(fechas1904), anioActual_(anioActual) {}

    std::optional<EntradaNumero> fecha(Piezas p) const {
        const std::string forma = formaDe(p);
        if (forma == "n/n" || forma == "n-n") return mesYNumero(p[0], p[2], true);
        if (forma == "mn") return mesYNumero(p[0], p[1], false);
        if (forma == "m n" || forma == "m-n" || forma == "m/n") {
            return mesYNumero(p[0], p[2], false);
        }
        if (forma == "nm") return dia(anioActual_, p[1], p[0], "d-mmm");
        if (forma == "n m" || forma == "n-m" || forma == "n/m") {
            return dia(anioActual_, p[2], p[0], "d-mmm");
        }
        if (forma == "nmn") return diaConAnio(p[2], p[1], p[0], "d-mmm-yy");
        if (forma == "m n,n") return diaConAnio(p[4], p[0], p[2], "d-mmm-yy");
        if (forma == "m n, n") return diaConAnio(p[5], p[0], p[2], "d-mmm-yy");
        if (forma.size() != 5 || !separa(p[1]) || !separa(p[3])) return std::nullopt;
        if (p[0].clase == kNumero && p[2].clase == kMes && p[4].clase == kNumero) {
            return diaConAnio(p[4], p[2], p[0], "d-mmm-yy");
        }
        const bool cifras = p[0].clase == kNumero && p[2].clase == kNumero &&
                            p[4].clase == kNumero && p[1].clase != ' ' && p[3].clase != ' ';
        if (!cifras) return std::nullopt;
        return p[0].cifras == 4 ? diaConAnio(p[0], p[2], p[4], "m/d/yyyy")
                                : diaConAnio(p[4], p[0], p[2], "m/d/yyyy");
    }

    static std::optional<EntradaNumero> hora(Piezas p) {
        std::string forma = formaDe(p);
        const bool deDoce = forma.ends_with(" a");
        if (deDoce) forma.resize(forma.size() - 2);
        if (forma == "n" && deDoce) return horas(p, 0, 0, "h:mm");
        if (forma == "n:") return horas(p, 0, 0, "h:mm");
        if (forma == "n:n") return horas(p, p[2].valor, 0, "h:mm");
        if (forma == "n:n:n") return horas(p, p[2].valor, p[4].valor, "h:mm:ss");
        if (forma == "n:n:n.n" && !deDoce) {
            return horas(p, p[2].valor, p[4].valor + fraccion(p[6]), "mm:ss.0");
        }
        if (forma == "n:n.n" && !deDoce && p[0].valor < 60) {
            return suma(0, p[0].valor, p[2].valor + fraccion(p[4]), "mm:ss.0");
        }
        return std::nullopt;
    }

    /// A date and a time of day, either first.
    std::optional<EntradaNumero> ambas(Piezas p) const {
        for (size_t i = 1; i + 1 < p.size(); ++i) {
            if (p[i].clase != ' ') continue;
            const Piezas antes = p.first(i), despues = p.subspan(i + 1);
            auto dias = fecha(antes);
            auto parte = dias ? hora(despues) : hora(antes);
            if (!dias) dias = fecha(despues);
            if (dias && parte && parte->valor < 1) {
                return EntradaNumero{dias->valor + parte->valor, "m/d/yyyy h:mm"};
            }
        }
        return std::nullopt;
    }

 private:
    static bool separa(const Pieza& p) {
        return p.clase == '/' || p.clase == '-' || p.clase == ' ';
    }

    static double fraccion(const Pieza& p) {
        return p.valor / std::pow(10.0, static_cast<double>(p.cifras));
    }

    /// A month and what follows it: a day if that month has it, else a year. A four-digit number
    /// in the month's place is the year.
    std::optional<EntradaNumero> mesYNumero(const Pieza& mes, const Pieza& n,
                                            bool conCifras) const {
        constexpr Pieza kPrimero{kNumero, 1, 1};
        if (conCifras && mes.cifras == 4) return diaConAnio(mes, n, kPrimero, "mmm-yy");
        if (n.cifras <= 2 && n.valor > 0) {
            if (auto entrada = dia(anioActual_, mes, n, "d-mmm")) return entrada;
        }
        if (n.cifras < 2) return std::nullopt;
        return diaConAnio(n, mes, kPrimero, "mmm-yy");
    }

    std::optional<EntradaNumero> diaConAnio(const Pieza& anio, const Pieza& mes, const Pieza& n,
                                            const char* formato) const {
        const auto numero = anioDe(anio);
        return numero ? dia(*numero, mes, n, formato) : std::nullopt;
    }

    std::optional<EntradaNumero> dia(int32_t anio, const Pieza& mes, const Pieza& n,
                                     const char* formato) const {
        const bool vale = anio >= 1900 && anio <= 9999 && mes.cifras <= 2 && mes.valor >= 1 &&
                          mes.valor <= 12 && n.cifras <= 2 && n.valor >= 1 &&
                          n.valor <= diasDelMes(anio, mes.valor);
        if (!vale) return std::nullopt;
        const int32_t numero = serie(anio, mes.valor, n.valor);
        if (numero < 0) return std::nullopt;
        return EntradaNumero{static_cast<double>(numero), formato};
    }

    /// Days as the workbook counts them; below 0 before its first.
    int32_t serie(int32_t anio, int32_t mes, int32_t n) const {
        using namespace std::chrono;
        const auto dias = [](int32_t a, int32_t m, int32_t d) {
            const auto primero = year(a) / month(static_cast<unsigned>(m)) / std::chrono::day(1);
            return static_cast<int32_t>(sys_days(primero).time_since_epoch().count()) + d - 1;
        };
        if (fechas1904_) return dias(anio, mes, n) - dias(1904, 1, 1);
        // The 29 February 1900 that never was is day 60.
        const bool antes = anio == 1900 && mes <= 2;
        return dias(anio, mes, n) - dias(1899, 12, antes ? 31 : 30);
    }

    static std::optional<EntradaNumero> horas(Piezas p, int32_t minutos, double segundos,
                                              std::string formato) {
        int32_t h = p[0].valor;
        if (p.back().clase == kMediodia) {
            if (h > 12) return std::nullopt;
            h = h % 12 + p.back().valor;
            formato += " AM/PM";
        } else if (h >= 24) {
            formato = "[h]:mm:ss";
        }
        return suma(h, minutos, segundos, formato);
    }

    static std::optional<EntradaNumero> suma(int32_t h, int32_t minutos, double segundos,
                                             const std::string& formato) {
        if (h > 9999 || minutos > 59 || segundos >= 60) return std::nullopt;
        constexpr double kSegundosPorDia = 86400;
        return EntradaNumero{(h * 3600.0 + minutos * 60.0 + segundos) / kSegundosPorDia, formato};
    }

    bool fechas1904_;
    int32_t anioActual_;
};

}  // namespace

std::optional<EntradaNumero> leerFechaHora(std::string_view texto, bool fechas1904,
                                           int anioActual) {
    const auto piezas = cortar(texto);
    if (!piezas || piezas->empty()) return std::nullopt;
    const Lector lector(fechas1904, anioActual);
    if (auto entrada = lector.fecha(*piezas)) return entrada;
    if (auto entrada = Lector::hora(*piezas)) return entrada;
    return lector.ambas(*piezas);
}

}  // namespace bn::xls
