// SPDX-License-Identifier: MIT
#include "download/MatriculaEnHoja.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

#include "config/Codificacion.h"

namespace bn {

namespace {

// An apostrophe too many does no harm, one too few changes the plate: where the two notations, or
// the versions of the application, might differ, the broader reading counts.

enum class Clase { kNumero, kBlanco, kSigno, kExponente, kMes, kMediodia, kFecha, kMoneda, kOtra };

/// A run of digits, of letters or of blanks, or one sign.
struct Pieza {
    Clase clase = Clase::kOtra;
    std::string texto;
};

using Piezas = std::vector<Pieza>;

constexpr auto kMeses = std::to_array<std::string_view>(
    {"JANUARY",   "FEBRUARY", "MARCH",     "APRIL",    "MAY",      "JUNE",   "JULY",
     "AUGUST",    "OCTOBER",  "SEPTEMBER", "NOVEMBER", "DECEMBER", "ENERO",  "FEBRERO",
     "MARZO",     "ABRIL",    "MAYO",      "JUNIO",    "JULIO",    "AGOSTO", "SEPTIEMBRE",
     "SETIEMBRE", "OCTUBRE",  "NOVIEMBRE", "DICIEMBRE"});
constexpr auto kMediodias = std::to_array<std::string_view>({"A", "P", "AM", "PM", "M"});
// What may stand in a date besides its month.
constexpr auto kDeFecha = std::to_array<std::string_view>({"DE", "DEL"});
constexpr auto kMonedas = std::to_array<std::string_view>({"EUR", "PTS", "PTA", "PTAS"});

template <class Lista>
bool esta(const Lista& lista, std::string_view palabra) {
    return std::find(lista.begin(), lista.end(), palabra) != lista.end();
}

/// Whole, or cut short at its third letter or later.
bool esMes(std::string_view palabra) {
    return palabra.size() >= 3 &&
           std::any_of(kMeses.begin(), kMeses.end(),
                       [&](std::string_view mes) { return mes.starts_with(palabra); });
}

Clase claseDePalabra(const std::string& palabra) {
    if (palabra == "E") return Clase::kExponente;
    if (esMes(palabra)) return Clase::kMes;
    if (esta(kMediodias, palabra)) return Clase::kMediodia;
    if (esta(kDeFecha, palabra)) return Clase::kFecha;
    return esta(kMonedas, palabra) ? Clase::kMoneda : Clase::kOtra;
}

Clase claseDe(char32_t c) {
    constexpr char32_t kBlancoDuro = 0xA0;
    constexpr std::u32string_view kSignosMoneda = U"€£¥¢";
    if (c >= U'0' && c <= U'9') return Clase::kNumero;
    if (c == U' ' || c == U'\t' || c == kBlancoDuro) return Clase::kBlanco;
    const bool letra = (c >= U'A' && c <= U'Z') || (c >= U'a' && c <= U'z') || c > 0x7F;
    return letra && kSignosMoneda.find(c) == std::u32string_view::npos ? Clase::kOtra
                                                                       : Clase::kSigno;
}

Piezas cortar(const std::string& utf8) {
    Piezas piezas;
    for (const char32_t c : utf8AU32(utf8)) {
        const Clase clase = claseDe(c);
        const bool sigue =
            !piezas.empty() && piezas.back().clase == clase && clase != Clase::kSigno;
        if (!sigue) piezas.push_back({clase, {}});
        piezas.back().texto += u32AUtf8({&c, 1});
    }
    for (Pieza& pieza : piezas) {
        if (pieza.clase != Clase::kOtra) continue;
        pieza.texto = mayusculas(pieza.texto);
        pieza.clase = claseDePalabra(pieza.texto);
    }
    return piezas;
}

size_t cuantas(const Piezas& piezas, Clase clase) {
    return static_cast<size_t>(std::count_if(
        piezas.begin(), piezas.end(), [&](const Pieza& pieza) { return pieza.clase == clase; }));
}

bool haySigno(const Piezas& piezas, std::string_view signo) {
    return std::any_of(piezas.begin(), piezas.end(),
                       [&](const Pieza& pieza) { return pieza.texto == signo; });
}

/// Whether a day or a year can be written so.
bool cabeEnFecha(const Pieza& pieza) {
    if (pieza.clase != Clase::kNumero) return true;
    const size_t ceros = std::min(pieza.texto.find_first_not_of('0'), pieza.texto.size());
    const std::string cifras = pieza.texto.substr(ceros);
    return cifras.size() <= 2 || (cifras.size() == 4 && cifras >= "1900");
}

/// "1234E56": digits right before the letter, digits or their sign right behind it.
bool esExponente(const Piezas& piezas) {
    const auto letra = std::find_if(piezas.begin(), piezas.end(), [](const Pieza& pieza) {
        return pieza.clase == Clase::kExponente;
    });
    if (letra == piezas.begin() || letra + 1 == piezas.end()) return false;
    const Pieza& antes = *(letra - 1);
    auto despues = letra + 1;
    if (despues->texto == "+" || despues->texto == "-") ++despues;
    const bool cifras = antes.clase == Clase::kNumero || antes.texto == "." || antes.texto == ",";
    return cifras && despues != piezas.end() && despues->clase == Clase::kNumero;
}

/// Whether every sign is one that numbers, amounts, dates or times are written with.
bool sonSignosDeCantidad(const Piezas& piezas) {
    static constexpr std::string_view kSignos = "+-.,/:()%$€£¥¢";
    return std::all_of(piezas.begin(), piezas.end(), [](const Pieza& pieza) {
        return pieza.clase != Clase::kSigno || kSignos.find(pieza.texto) != std::string::npos;
    });
}

/// "5 PM", "12/5/2020 5 PM", "5 a. m.": an hour with nothing but blanks around it, then its half of
/// the day and no more.
bool esHoraConMediodia(const Piezas& piezas) {
    const auto primera = std::find_if(piezas.begin(), piezas.end(), [](const Pieza& pieza) {
        return pieza.clase == Clase::kMediodia;
    });
    if (primera == piezas.end() || primera->texto == "M") return false;
    auto hora = primera;
    while (hora != piezas.begin() && (hora - 1)->clase == Clase::kBlanco) --hora;
    if (hora == piezas.begin() || (hora - 1)->clase != Clase::kNumero) return false;
    --hora;
    const bool sola = hora == piezas.begin() || (hora - 1)->clase == Clase::kBlanco;
    const bool alFinal = std::all_of(primera, piezas.end(), [](const Pieza& pieza) {
        return pieza.clase == Clase::kMediodia || pieza.clase == Clase::kBlanco ||
               pieza.texto == ".";
    });
    return sola && alFinal && hora->texto.size() <= 2;
}

/// "MAY5", "5-MAY-20", "5 de mayo de 2020".
bool esFechaConMes(const Piezas& piezas) {
    const size_t horas = cuantas(piezas, Clase::kMediodia) > 0 ? 1 : 0;
    return cuantas(piezas, Clase::kMes) == 1 && cuantas(piezas, Clase::kNumero) <= 2 + horas &&
           std::all_of(piezas.begin(), piezas.end(), cabeEnFecha);
}

/// Whether text with digits in it could be a number, an amount, a date or a time.
bool pareceCantidad(const Piezas& piezas) {
    if (cuantas(piezas, Clase::kNumero) == 0 || cuantas(piezas, Clase::kOtra) > 0) return false;
    if (!sonSignosDeCantidad(piezas)) return false;
    const size_t exponentes = cuantas(piezas, Clase::kExponente);
    const size_t meses = cuantas(piezas, Clase::kMes);
    const size_t mediodias = cuantas(piezas, Clase::kMediodia);
    if (exponentes > 0) return exponentes + meses + mediodias == 1 && esExponente(piezas);
    if (haySigno(piezas, ":")) return true;
    if (meses > 0) return esFechaConMes(piezas);
    if (mediodias > 0) return esHoraConMediodia(piezas);
    return cuantas(piezas, Clase::kFecha) == 0;
}

/// What only one character, or the whole word, decides.
bool pareceFormulaOLogica(const Piezas& piezas) {
    constexpr auto kLogicas =
        std::to_array<std::string_view>({"TRUE", "FALSE", "VERDADERO", "FALSO"});
    constexpr std::string_view kComienzos = "=+-@'#";
    const auto primera = std::find_if(piezas.begin(), piezas.end(), [](const Pieza& pieza) {
        return pieza.clase != Clase::kBlanco;
    });
    if (primera == piezas.end()) return false;
    if (primera->clase == Clase::kSigno && kComienzos.find(primera->texto) != std::string::npos) {
        return true;
    }
    const bool sola = std::all_of(primera + 1, piezas.end(),
                                  [](const Pieza& pieza) { return pieza.clase == Clase::kBlanco; });
    return sola && esta(kLogicas, primera->texto);
}

}  // namespace

std::string matriculaEnHoja(const std::string& matriculaUtf8) {
    const Piezas piezas = cortar(matriculaUtf8);
    const bool cambiaria = pareceFormulaOLogica(piezas) || pareceCantidad(piezas);
    return cambiaria ? "'" + matriculaUtf8 : matriculaUtf8;
}

}  // namespace bn
