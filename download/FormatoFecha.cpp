// SPDX-License-Identifier: MIT
#include "download/FormatoFecha.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <optional>

#include "download/FormatoDecimal.h"
#include "download/FormatoPartes.h"

namespace bn::formato {
namespace {

constexpr std::string_view kFechaCorta = "dd/mm/yyyy";
constexpr std::string_view kFechaLarga = R"(dddd, d "de" mmmm "de" yyyy)";
constexpr std::string_view kHora = "hh:nn:ss";

constexpr std::array<std::string_view, 12> kMeses = {
    "enero", "febrero", "marzo",      "abril",   "mayo",      "junio",
    "julio", "agosto",  "septiembre", "octubre", "noviembre", "diciembre"};
// Windows-1252, in octal so that no letter is taken for a digit: \351 and \341 are accented vowels.
constexpr std::array<std::string_view, 7> kDias = {"domingo", "lunes",   "martes",   "mi\351rcoles",
                                                   "jueves",  "viernes", "s\341bado"};
constexpr std::size_t kLargoAbreviatura = 3;

constexpr double kPrimerDia = -657434;
constexpr double kUltimoDia = 2958465;
constexpr int kSegundosPorDia = 86400;
constexpr int kSerieDe1970 = 25569;

struct Momento {
    int dia = 0;
    int mes = 0;
    int anio = 0;
    int hora = 0;
    int minuto = 0;
    int segundo = 0;
    int diaSemana = 0;
    int diaDelAnio = 0;
    bool hayFecha = false;
    bool hayHora = false;
};

char minuscula(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool empiezaPor(std::string_view texto, std::string_view inicio) {
    if (texto.size() < inicio.size()) return false;
    return std::equal(inicio.begin(), inicio.end(), texto.begin(),
                      [](char a, char b) { return a == minuscula(b); });
}

Codigo codigoMeridiano(std::string_view texto) {
    for (const std::string_view forma : {"am/pm", "ampm", "a/p"}) {
        if (empiezaPor(texto, forma)) return {'a', forma.size()};
    }
    return {};
}

std::size_t maximoDeLetra(char letra) {
    switch (letra) {
        case 'd':
            return 6;
        case 'm':
        case 'y':
            return 4;
        case 'w':
        case 'h':
        case 'n':
        case 's':
            return 2;
        case 'c':
        case 'q':
            return 1;
        default:
            return 0;
    }
}

struct Instante {
    int dia = 0;
    int segundos = 0;
};

// The fraction of a serial is the time of day, also before day 0: -1.25 is day -1, six o'clock.
std::optional<Instante> redondear(double serie) {
    if (!(serie > kPrimerDia - 1 && serie < kUltimoDia + 1)) return std::nullopt;
    const double entero = std::trunc(serie);
    Instante instante{static_cast<int>(entero),
                      static_cast<int>(std::lround(std::abs(serie - entero) * kSegundosPorDia))};
    if (instante.segundos == kSegundosPorDia) instante = {instante.dia + 1, 0};
    if (instante.dia < kPrimerDia || instante.dia > kUltimoDia) return std::nullopt;
    return instante;
}

Momento desglosar(const Instante& instante) {
    using std::chrono::days;
    using std::chrono::sys_days;
    using std::chrono::year_month_day;
    const sys_days fecha{days{instante.dia - kSerieDe1970}};
    const year_month_day partes{fecha};
    Momento momento;
    momento.dia = static_cast<int>(static_cast<unsigned>(partes.day()));
    momento.mes = static_cast<int>(static_cast<unsigned>(partes.month()));
    momento.anio = static_cast<int>(partes.year());
    momento.hora = instante.segundos / 3600;
    momento.minuto = instante.segundos / 60 % 60;
    momento.segundo = instante.segundos % 60;
    momento.diaSemana = static_cast<int>(std::chrono::weekday{fecha}.c_encoding());
    const sys_days anioNuevo{partes.year() / std::chrono::January / 1};
    momento.diaDelAnio = static_cast<int>((fecha - anioNuevo).count()) + 1;
    momento.hayFecha = instante.dia != 0;
    momento.hayHora = instante.segundos != 0;
    return momento;
}

void escribirNumero(std::string& salida, int numero, std::size_t minimo) {
    std::array<char, 8> buffer{};
    std::size_t inicio = buffer.size();
    do {
        buffer[--inicio] = static_cast<char>('0' + numero % 10);
        numero /= 10;
    } while (numero > 0 || buffer.size() - inicio < minimo);
    salida.append(buffer.data() + inicio, buffer.size() - inicio);
}

// Walks a date picture; what came before decides what an "m" and an "h" mean.
class EscritorFecha {
 public:
    EscritorFecha(const Momento& momento, std::string& salida)
        : momento_(momento), salida_(salida) {}

    void escribir(std::string_view formato) {
        reloj12_ = usaReloj12(formato);
        Lector lector(formato);
        Elemento elemento;
        while (lector.siguiente(elemento)) {
            const Codigo codigo = elemento.literal ? Codigo{} : leerCodigo(lector.desdeActual());
            if (codigo.letra == 0) {
                salida_ += elemento.texto;
                continue;
            }
            escribirCodigo(codigo, lector.desdeActual().substr(0, codigo.largo));
            trasHora_ = codigo.letra == 'h';
            lector.consumir(codigo.largo);
        }
    }

 private:
    static bool usaReloj12(std::string_view formato) {
        if (formato.find_first_of("aA") == std::string_view::npos) return false;
        Lector lector(formato);
        Elemento elemento;
        while (lector.siguiente(elemento)) {
            if (elemento.literal) continue;
            const Codigo codigo = leerCodigo(lector.desdeActual());
            if (codigo.letra == 'a') return true;
            if (codigo.letra != 0) lector.consumir(codigo.largo);
        }
        return false;
    }

    void escribirCodigo(const Codigo& codigo, std::string_view texto) {
        switch (codigo.letra) {
            case 'c':
                return general();
            case 'd':
                return dia(codigo.largo);
            case 'w':
                return semana(codigo.largo);
            case 'm':
                return trasHora_ && codigo.largo <= 2 ? numero(momento_.minuto, codigo.largo)
                                                      : mes(codigo.largo);
            case 'q':
                return numero((momento_.mes + 2) / 3, 1);
            case 'y':
                return anio(codigo.largo);
            case 'h':
                return numero(hora(), codigo.largo);
            case 'n':
                return numero(momento_.minuto, codigo.largo);
            case 's':
                return numero(momento_.segundo, codigo.largo);
            case 't':
                return completo(kHora);
            default:
                return meridiano(texto);
        }
    }

    void numero(int valor, std::size_t minimo) { escribirNumero(salida_, valor, minimo); }

    void completo(std::string_view formato) { EscritorFecha(momento_, salida_).escribir(formato); }

    // Day 0 is no date, only the carrier of a time; both missing is midnight.
    void general() {
        if (momento_.hayFecha) completo(kFechaCorta);
        if (momento_.hayFecha && momento_.hayHora) salida_ += ' ';
        if (momento_.hayHora || !momento_.hayFecha) completo(kHora);
    }

    void dia(std::size_t largo) {
        const std::string_view nombre = kDias[static_cast<std::size_t>(momento_.diaSemana)];
        if (largo <= 2) return numero(momento_.dia, largo);
        if (largo == 3) return void(salida_ += nombre.substr(0, kLargoAbreviatura));
        if (largo == 4) return void(salida_ += nombre);
        completo(largo == 5 ? kFechaCorta : kFechaLarga);
    }

    void semana(std::size_t largo) {
        const int enAnioNuevo = (momento_.diaSemana + 7 - (momento_.diaDelAnio - 1) % 7) % 7;
        const int semana = (momento_.diaDelAnio - 1 + enAnioNuevo) / 7 + 1;
        numero(largo == 1 ? momento_.diaSemana + 1 : semana, 1);
    }

    void mes(std::size_t largo) {
        const std::string_view nombre = kMeses[static_cast<std::size_t>(momento_.mes - 1)];
        if (largo <= 2) return numero(momento_.mes, largo);
        salida_ += largo == 3 ? nombre.substr(0, kLargoAbreviatura) : nombre;
    }

    void anio(std::size_t largo) {
        if (largo == 1) return numero(momento_.diaDelAnio, 1);
        if (largo == 2) return numero(momento_.anio % 100, 2);
        numero(momento_.anio, 4);
    }

    int hora() const {
        if (!reloj12_) return momento_.hora;
        return momento_.hora % 12 == 0 ? 12 : momento_.hora % 12;
    }

    // The picture itself holds the marks in the letter case wanted, morning / afternoon.
    void meridiano(std::string_view texto) {
        const bool tarde = momento_.hora >= 12;
        const std::size_t barra = texto.find('/');
        if (barra == std::string_view::npos) {
            salida_ += tarde ? "PM" : "AM";
        } else {
            salida_ += tarde ? texto.substr(barra + 1) : texto.substr(0, barra);
        }
    }

    const Momento& momento_;
    std::string& salida_;
    bool reloj12_ = false;
    bool trasHora_ = false;
};

}  // namespace

Codigo leerCodigo(std::string_view texto) {
    const char letra = texto.empty() ? char{0} : minuscula(texto[0]);
    if (letra == 'a') return codigoMeridiano(texto);
    if (letra == 't') return empiezaPor(texto, "ttttt") ? Codigo{'t', 5} : Codigo{};
    const std::size_t maximo = std::min(maximoDeLetra(letra), texto.size());
    if (maximo == 0) return {};
    std::size_t largo = 1;
    while (largo < maximo && minuscula(texto[largo]) == letra) ++largo;
    if (letra == 'y' && largo == 3) largo = 2;
    return {letra, largo};
}

std::string formatearFecha(double serie, std::string_view formato) {
    const std::optional<Instante> instante = redondear(serie);
    if (!instante) return textoGeneral(serie);
    std::string salida;
    const Momento momento = desglosar(*instante);
    EscritorFecha(momento, salida).escribir(formato);
    return salida;
}

}  // namespace bn::formato
