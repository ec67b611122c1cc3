// SPDX-License-Identifier: MIT
#include "destinations/xls/TextoBiff.h"

#include <algorithm>
#include <utility>

#include "destinations/xls/Bytes.h"

namespace bn::xls {
namespace {

constexpr char32_t kSustituto = 0xFFFD;

bool esAscii(std::string_view bytes) {
    return std::all_of(bytes.begin(), bytes.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// The code point at pos, and how many bytes it takes; malformed input gives U+FFFD and one byte.
std::pair<char32_t, size_t> puntoEn(std::string_view utf8, size_t pos) {
    const auto byte = [&](size_t i) { return static_cast<unsigned char>(utf8[i]); };
    const unsigned char primero = byte(pos);
    if (primero < 0x80) return {primero, 1};
    const size_t largo = primero >= 0xF0 ? 4 : primero >= 0xE0 ? 3 : primero >= 0xC2 ? 2 : 0;
    if (largo == 0 || primero > 0xF4 || utf8.size() - pos < largo) return {kSustituto, 1};
    char32_t punto = primero & (0x7FU >> largo);
    for (size_t i = 1; i < largo; ++i) {
        if ((byte(pos + i) & 0xC0) != 0x80) return {kSustituto, 1};
        punto = punto << 6 | (byte(pos + i) & 0x3FU);
    }
    constexpr char32_t kMinimo[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool sustituto = punto >= 0xD800 && punto < 0xE000;
    if (punto < kMinimo[largo] || punto > 0x10FFFF || sustituto) return {kSustituto, 1};
    return {punto, largo};
}

void ponerPunto(std::string& utf8, char32_t p) {
    if (p < 0x80) {
        poner8(utf8, p);
    } else if (p < 0x800) {
        poner8(utf8, 0xC0 | p >> 6);
        poner8(utf8, 0x80 | (p & 0x3F));
    } else if (p < 0x10000) {
        poner8(utf8, 0xE0 | p >> 12);
        poner8(utf8, 0x80 | (p >> 6 & 0x3F));
        poner8(utf8, 0x80 | (p & 0x3F));
    } else {
        poner8(utf8, 0xF0 | p >> 18);
        poner8(utf8, 0x80 | (p >> 12 & 0x3F));
        poner8(utf8, 0x80 | (p >> 6 & 0x3F));
        poner8(utf8, 0x80 | (p & 0x3F));
    }
}

// Upper case of the alphabets that fold letter by letter: Latin, Greek, Cyrillic.
char32_t mayuscula(char32_t p) {
    if (p >= 'a' && p <= 'z') return p - 32;
    if (p < 0xB5) return p;
    if (p == 0xB5) return 0x39C;
    if (p >= 0xE0 && p <= 0xFE && p != 0xF7) return p - 32;
    if (p == 0xFF) return 0x178;
    const bool parImpar = (p >= 0x100 && p <= 0x137) || (p >= 0x14A && p <= 0x177);
    if (parImpar && p != 0x131) return p & ~char32_t{1};
    const bool imparPar = (p >= 0x139 && p <= 0x148) || (p >= 0x179 && p <= 0x17E);
    if (imparPar && p % 2 == 0) return p - 1;
    if (p >= 0x3B1 && p <= 0x3C9 && p != 0x3C2) return p - 32;
    if (p >= 0x430 && p <= 0x44F) return p - 32;
    if (p >= 0x450 && p <= 0x45F) return p - 80;
    return p;
}

TextoBiff aBiffLargo(std::string_view utf8) {
    TextoBiff texto;
    bool cabe = true;
    for (size_t pos = 0; pos < utf8.size();) {
        const auto [punto, largo] = puntoEn(utf8, pos);
        pos += largo;
        cabe = cabe && punto < 0x100;
        if (punto < 0x10000) {
            poner16(texto.bytes, punto);
        } else {
            poner16(texto.bytes, 0xD800 + ((punto - 0x10000) >> 10));
            poner16(texto.bytes, 0xDC00 + ((punto - 0x10000) & 0x3FF));
        }
    }
    texto.unidades = static_cast<uint32_t>(texto.bytes.size() / 2);
    texto.ancho = !cabe;
    if (cabe) {
        for (size_t i = 0; i < texto.unidades; ++i) texto.bytes[i] = texto.bytes[2 * i];
        texto.bytes.resize(texto.unidades);
    }
    return texto;
}

int compararNombres(std::string_view utf8A, std::string_view utf8B) {
    size_t a = 0;
    size_t b = 0;
    while (a < utf8A.size() && b < utf8B.size()) {
        const auto [puntoA, largoA] = puntoEn(utf8A, a);
        const auto [puntoB, largoB] = puntoEn(utf8B, b);
        const char32_t mayusculaA = mayuscula(puntoA);
        const char32_t mayusculaB = mayuscula(puntoB);
        if (mayusculaA != mayusculaB) return mayusculaA < mayusculaB ? -1 : 1;
        a += largoA;
        b += largoB;
    }
    if (a == utf8A.size() && b == utf8B.size()) return 0;
    return a == utf8A.size() ? -1 : 1;
}

}  // namespace

TextoBiff aBiff(std::string_view utf8) {
    if (!esAscii(utf8)) return aBiffLargo(utf8);
    return {false, static_cast<uint32_t>(utf8.size()), std::string(utf8)};
}

void anadirDeBiff(std::string& utf8, std::string_view bytes, bool ancho) {
    if (!ancho) {
        if (esAscii(bytes)) {
            utf8.append(bytes);
            return;
        }
        for (const char c : bytes) ponerPunto(utf8, static_cast<unsigned char>(c));
        return;
    }
    const Vista vista(bytes);
    for (size_t pos = 0; pos + 2 <= bytes.size(); pos += 2) {
        char32_t punto = vista.u16(pos);
        if (punto >= 0xD800 && punto < 0xE000) {
            const bool alto = punto < 0xDC00 && pos + 4 <= bytes.size();
            const char32_t bajo = alto ? vista.u16(pos + 2) : 0;
            if (bajo >= 0xDC00 && bajo < 0xE000) {
                punto = 0x10000 + ((punto - 0xD800) << 10) + (bajo - 0xDC00);
                pos += 2;
            } else {
                punto = kSustituto;
            }
        }
        ponerPunto(utf8, punto);
    }
}

std::string deBiff(std::string_view bytes, bool ancho) {
    std::string utf8;
    anadirDeBiff(utf8, bytes, ancho);
    return utf8;
}

std::string leerTexto(std::string_view datos, size_t pos, uint32_t unidades, size_t* despues) {
    const Vista vista(datos);
    const bool ancho = (vista.u8(pos) & 1) != 0;
    const size_t largo = size_t{unidades} * (ancho ? 2 : 1);
    const std::string_view bytes = vista.trozo(pos + 1, largo);
    if (despues != nullptr) *despues = pos + 1 + largo;
    return deBiff(bytes, ancho);
}

void ponerTexto(std::string& salida, const TextoBiff& texto) {
    poner8(salida, texto.ancho ? 1 : 0);
    salida += texto.bytes;
}

bool mismoNombre(std::string_view utf8A, std::string_view utf8B) {
    return compararNombres(utf8A, utf8B) == 0;
}

bool menorNombre(std::string_view utf8A, std::string_view utf8B) {
    return compararNombres(utf8A, utf8B) < 0;
}

}  // namespace bn::xls
