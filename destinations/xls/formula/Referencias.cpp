// SPDX-License-Identifier: MIT
#include "destinations/xls/formula/Referencias.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "destinations/excel/ObjectModel.h"
#include "destinations/xls/formula/Ptg.h"

namespace bn::xls {

namespace {

constexpr uint32_t kColumnaRelativa = 0x4000;
constexpr uint32_t kFilaRelativa = 0x8000;

bool esCifra(char c) { return c >= '0' && c <= '9'; }
char mayuscula(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }
bool esLetra(char c) { return mayuscula(c) >= 'A' && mayuscula(c) <= 'Z'; }

char caracter(std::string_view texto, size_t pos) { return pos < texto.size() ? texto[pos] : '\0'; }

/// Up to 7 digits: more can never be a row or column. Nothing when there is none.
std::optional<int32_t> leerEntero(std::string_view texto, size_t& pos) {
    if (!esCifra(caracter(texto, pos))) return std::nullopt;
    int32_t valor = 0;
    for (; esCifra(caracter(texto, pos)); ++pos) {
        valor = std::min(valor * 10 + (texto[pos] - '0'), 9999999);
    }
    return valor;
}

[[noreturn]] void fueraDeHoja(std::string_view texto, size_t desde, size_t hasta) {
    throw excel::ErrorExcel("La referencia " + std::string(texto.substr(desde, hasta - desde)) +
                            " está fuera de la hoja.");
}

/// One or both coordinates of half an area; what is not written spans the sheet.
struct Extremo {
    std::optional<Coordenada> fila, columna;
};

/// What follows the letter of an R1C1 coordinate: nothing, a number, or an offset in brackets.
std::optional<Coordenada> leerCoordenada(std::string_view texto, size_t& pos, int32_t origen,
                                         int32_t limite) {
    const size_t inicio = pos;
    if (caracter(texto, pos) != '[') {
        const auto numero = leerEntero(texto, pos);
        if (!numero) return Coordenada{origen, true};
        if (*numero < 1 || *numero > limite) fueraDeHoja(texto, inicio - 1, pos);
        return Coordenada{*numero - 1, false};
    }
    ++pos;
    const bool negativo = caracter(texto, pos) == '-';
    if (negativo || caracter(texto, pos) == '+') ++pos;
    const auto distancia = leerEntero(texto, pos);
    if (!distancia || caracter(texto, pos) != ']') return std::nullopt;
    ++pos;
    if (*distancia >= limite) fueraDeHoja(texto, inicio - 1, pos);
    // Relative references go round the sheet's edges.
    const int32_t valor = origen + (negativo ? -*distancia : *distancia) + limite;
    return Coordenada{valor % limite, true};
}

std::optional<Extremo> leerExtremoR1C1(std::string_view texto, size_t& pos, PosicionCelda celda) {
    Extremo extremo;
    if (mayuscula(caracter(texto, pos)) == 'R') {
        extremo.fila = leerCoordenada(texto, ++pos, celda.fila, kFilas);
        if (!extremo.fila) return std::nullopt;
    }
    if (mayuscula(caracter(texto, pos)) == 'C') {
        extremo.columna = leerCoordenada(texto, ++pos, celda.columna, kColumnas);
        if (!extremo.columna) return std::nullopt;
    }
    return extremo.fila || extremo.columna ? std::optional(extremo) : std::nullopt;
}

std::optional<Extremo> leerExtremoA1(std::string_view texto, size_t& pos) {
    Extremo extremo;
    bool dolar = caracter(texto, pos) == '$';
    if (dolar) ++pos;
    int32_t columna = 0;
    size_t letras = 0;
    for (; esLetra(caracter(texto, pos)) && letras < 4; ++pos, ++letras) {
        columna = columna * 26 + (mayuscula(texto[pos]) - 'A' + 1);
    }
    if (letras > 3) return std::nullopt;
    if (letras > 0) {
        extremo.columna = Coordenada{columna - 1, !dolar};
        dolar = caracter(texto, pos) == '$';
        if (dolar) ++pos;
    }
    const auto fila = leerEntero(texto, pos);
    if (!fila && dolar) return std::nullopt;
    if (fila) extremo.fila = Coordenada{*fila - 1, !dolar};
    if (!extremo.fila && !extremo.columna) return std::nullopt;
    // Past the last column or row it is a word that a name may have: "TAX2010".
    const bool fuera = fila && columna > 0 && (columna > kColumnas || *fila < 1 || *fila > kFilas);
    return fuera ? std::nullopt : std::optional(extremo);
}

std::optional<Extremo> leerExtremo(Notacion notacion, std::string_view texto, size_t& pos,
                                   PosicionCelda celda) {
    size_t fin = pos;
    const auto extremo = notacion == Notacion::kR1C1 ? leerExtremoR1C1(texto, fin, celda)
                                                     : leerExtremoA1(texto, fin);
    const char sigue = caracter(texto, fin);
    if (!extremo || esDePalabra(sigue) || sigue == '(' || sigue == '[' || sigue == '!') {
        return std::nullopt;
    }
    pos = fin;
    return extremo;
}

void completar(Extremo& extremo, bool alFinal) {
    if (!extremo.fila) extremo.fila = Coordenada{alFinal ? kFilas - 1 : 0, false};
    if (!extremo.columna) extremo.columna = Coordenada{alFinal ? kColumnas - 1 : 0, false};
}

Referencia formar(Extremo uno, Extremo otro, bool area) {
    completar(uno, false);
    completar(otro, true);
    if (uno.fila->valor > otro.fila->valor) std::swap(uno.fila, otro.fila);
    if (uno.columna->valor > otro.columna->valor) std::swap(uno.columna, otro.columna);
    return {*uno.fila, *uno.columna, *otro.fila, *otro.columna, area};
}

bool existe(const Referencia& r) {
    const auto dentro = [](const Coordenada& c, int32_t limite) {
        return c.valor >= 0 && c.valor < limite;
    };
    return dentro(r.fila1, kFilas) && dentro(r.fila2, kFilas) && dentro(r.columna1, kColumnas) &&
           dentro(r.columna2, kColumnas);
}

std::string escribirCoordenada(char letra, const Coordenada& c, int32_t origen) {
    const std::string texto(1, letra);
    if (!c.relativa) return texto + std::to_string(c.valor + 1);
    return c.valor == origen ? texto : texto + "[" + std::to_string(c.valor - origen) + "]";
}

std::string escribirFila(Notacion notacion, const Coordenada& c, PosicionCelda celda) {
    if (notacion == Notacion::kR1C1) return escribirCoordenada('R', c, celda.fila);
    return (c.relativa ? "" : "$") + std::to_string(c.valor + 1);
}

std::string escribirColumna(Notacion notacion, const Coordenada& c, PosicionCelda celda) {
    if (notacion == Notacion::kR1C1) return escribirCoordenada('C', c, celda.columna);
    std::string letras = c.relativa ? "" : "$";
    if (c.valor >= 26) letras += static_cast<char>('A' + c.valor / 26 - 1);
    return letras + static_cast<char>('A' + c.valor % 26);
}

std::string escribirCelda(Notacion notacion, const Coordenada& fila, const Coordenada& columna,
                          PosicionCelda celda) {
    const std::string f = escribirFila(notacion, fila, celda);
    const std::string c = escribirColumna(notacion, columna, celda);
    return notacion == Notacion::kR1C1 ? f + c : c + f;
}

bool pareceReferencia(const std::string& palabra) {
    if (!std::all_of(palabra.begin(), palabra.end(),
                     [](char c) { return esLetra(c) || esCifra(c); })) {
        return false;
    }
    const size_t letras = static_cast<size_t>(
        std::find_if(palabra.begin(), palabra.end(), esCifra) - palabra.begin());
    const bool deA1 =
        letras <= 3 && letras < palabra.size() &&
        std::all_of(palabra.begin() + static_cast<std::ptrdiff_t>(letras), palabra.end(), esCifra);
    size_t pos = 0;
    const auto saltar = [&](char letra) {
        if (mayuscula(caracter(palabra, pos)) != letra) return;
        ++pos;
        while (esCifra(caracter(palabra, pos))) ++pos;
    };
    saltar('R');
    saltar('C');
    return deA1 || pos == palabra.size();
}

bool pideComillas(const std::string& hoja) {
    return hoja.empty() || esCifra(hoja[0]) || hoja[0] == '.' || hoja[0] == '?' ||
           !std::all_of(hoja.begin(), hoja.end(), esDePalabra) || pareceReferencia(hoja);
}

}  // namespace

bool Referencia::filasEnteras() const {
    return area && columna1.valor == 0 && columna2.valor == kColumnas - 1;
}

bool Referencia::columnasEnteras() const {
    return area && fila1.valor == 0 && fila2.valor == kFilas - 1;
}

bool esDePalabra(char c) {
    return esLetra(c) || esCifra(c) || c == '_' || c == '.' || c == '?' || c == '\\' ||
           static_cast<unsigned char>(c) >= 0x80;
}

std::optional<Referencia> leerReferencia(Notacion notacion, std::string_view texto, size_t& pos,
                                         PosicionCelda celda) {
    size_t fin = pos;
    const auto uno = leerExtremo(notacion, texto, fin, celda);
    if (!uno) return std::nullopt;
    const bool esCelda = uno->fila && uno->columna;
    size_t finOtro = fin + 1;
    if (caracter(texto, fin) == ':') {
        const auto otro = leerExtremo(notacion, texto, finOtro, celda);
        const bool mismaClase = otro && otro->fila.has_value() == uno->fila.has_value() &&
                                otro->columna.has_value() == uno->columna.has_value();
        if (mismaClase) {
            const Referencia r = formar(*uno, *otro, true);
            if (!existe(r)) fueraDeHoja(texto, pos, finOtro);
            pos = finOtro;
            return r;
        }
    }
    // A bare "A" or "1" is a word or a number; "C1" and "R1" are a whole column and row.
    if (!esCelda && notacion == Notacion::kA1) return std::nullopt;
    pos = fin;
    return formar(*uno, *uno, !esCelda);
}

std::string escribirReferencia(Notacion notacion, const Referencia& r, PosicionCelda celda) {
    const bool r1c1 = notacion == Notacion::kR1C1;
    if (r.filasEnteras() || r.columnasEnteras()) {
        const bool filas = r.filasEnteras();
        const std::string uno = filas ? escribirFila(notacion, r.fila1, celda)
                                      : escribirColumna(notacion, r.columna1, celda);
        const std::string otro = filas ? escribirFila(notacion, r.fila2, celda)
                                       : escribirColumna(notacion, r.columna2, celda);
        return r1c1 && uno == otro ? uno : uno + ":" + otro;
    }
    const std::string uno = escribirCelda(notacion, r.fila1, r.columna1, celda);
    return r.area ? uno + ":" + escribirCelda(notacion, r.fila2, r.columna2, celda) : uno;
}

std::string escribirHojas(const std::string& primera, const std::string& ultima) {
    const bool varias = primera != ultima;
    const std::string hojas = varias ? primera + ":" + ultima : primera;
    if (!pideComillas(primera) && (!varias || !pideComillas(ultima))) return hojas + "!";
    std::string texto = "'";
    for (const char c : hojas) {
        texto += c;
        if (c == '\'') texto += c;
    }
    return texto + "'!";
}

void codificarReferencia(Rgce& rgce, const Referencia& r) {
    const auto columna = [](const Coordenada& f, const Coordenada& c) {
        return static_cast<uint32_t>(c.valor) | (c.relativa ? kColumnaRelativa : 0) |
               (f.relativa ? kFilaRelativa : 0);
    };
    ptg::agregar16(rgce, static_cast<uint32_t>(r.fila1.valor));
    if (r.area) ptg::agregar16(rgce, static_cast<uint32_t>(r.fila2.valor));
    ptg::agregar16(rgce, columna(r.fila1, r.columna1));
    if (r.area) ptg::agregar16(rgce, columna(r.fila2, r.columna2));
}

std::optional<Referencia> decodificarReferencia(std::span<const uint8_t> bytes,
                                                const PosicionCelda* desde) {
    const auto leer = [&](size_t posFila, size_t posColumna) -> std::pair<Coordenada, Coordenada> {
        const uint32_t palabra = ptg::leer16(bytes, posColumna);
        Coordenada fila{ptg::leer16(bytes, posFila), (palabra & kFilaRelativa) != 0};
        // A relative column of a shared formula is one signed byte.
        const bool relativa = (palabra & kColumnaRelativa) != 0;
        Coordenada columna{static_cast<int32_t>(palabra & 0x3FFF), relativa};
        if (desde != nullptr && fila.relativa) fila.valor = (fila.valor + desde->fila) % kFilas;
        if (desde != nullptr && relativa) {
            columna.valor = ((columna.valor & 0xFF) + desde->columna) % kColumnas;
        }
        return {fila, columna};
    };
    Referencia r;
    r.area = bytes.size() == 8;
    std::tie(r.fila1, r.columna1) = leer(0, r.area ? 4 : 2);
    std::tie(r.fila2, r.columna2) = r.area ? leer(2, 6) : std::pair(r.fila1, r.columna1);
    // Relative to another cell, an area may have gone round an edge.
    if (desde != nullptr && r.fila1.valor > r.fila2.valor) std::swap(r.fila1, r.fila2);
    if (desde != nullptr && r.columna1.valor > r.columna2.valor) std::swap(r.columna1, r.columna2);
    return existe(r) ? std::optional(r) : std::nullopt;
}

}  // namespace bn::xls
