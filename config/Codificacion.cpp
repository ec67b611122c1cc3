// SPDX-License-Identifier: MIT
#include "config/Codificacion.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace bn {
namespace {

constexpr char32_t kSustituto = 0xFFFD;
constexpr char32_t kUltimoCodigo = 0x10FFFF;

/// Code points of the bytes 80 to 9F; every other byte stands for its own number.
constexpr std::array<char16_t, 32> kAltos = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

char32_t deCp1252(unsigned char byte) {
    return byte >= 0x80 && byte < 0xA0 ? kAltos[byte - 0x80U] : byte;
}

std::optional<char> aCp1252(char32_t codigo) {
    if (codigo < 0x80 || (codigo >= 0xA0 && codigo <= 0xFF)) {
        return static_cast<char>(codigo);
    }
    const auto* lugar = std::find(kAltos.begin(), kAltos.end(), codigo);
    if (lugar == kAltos.end()) {
        return std::nullopt;
    }
    return static_cast<char>(0x80 + (lugar - kAltos.begin()));
}

bool esSustitutoUtf16(char32_t codigo) { return codigo >= 0xD800 && codigo <= 0xDFFF; }

/// Length of the sequence that a first byte announces; 0 when no sequence begins so.
std::size_t largoSecuencia(unsigned char primero) {
    if (primero < 0x80) {
        return 1;
    }
    if (primero >= 0xC2 && primero <= 0xDF) {
        return 2;
    }
    if (primero >= 0xE0 && primero <= 0xEF) {
        return 3;
    }
    return primero >= 0xF0 && primero <= 0xF4 ? 4 : 0;
}

/// Takes one code point off and moves on behind it; an invalid byte gives nothing and is passed.
std::optional<char32_t> siguiente(std::string_view utf8, std::size_t& lugar) {
    constexpr std::array<char32_t, 5> kMinimo = {0, 0, 0x80, 0x800, 0x10000};
    const auto primero = static_cast<unsigned char>(utf8[lugar]);
    const std::size_t largo = largoSecuencia(primero);
    const std::size_t inicio = lugar++;
    if (largo == 0 || utf8.size() - inicio < largo) {
        return std::nullopt;
    }
    char32_t codigo = largo == 1 ? primero : primero & (0x7FU >> largo);
    for (std::size_t i = 1; i < largo; ++i) {
        const auto byte = static_cast<unsigned char>(utf8[inicio + i]);
        if ((byte & 0xC0U) != 0x80U) {
            return std::nullopt;
        }
        codigo = (codigo << 6U) | (byte & 0x3FU);
    }
    if (codigo < kMinimo[largo] || codigo > kUltimoCodigo || esSustitutoUtf16(codigo)) {
        return std::nullopt;
    }
    lugar = inicio + largo;
    return codigo;
}

void ponerUtf8(std::string& salida, char32_t codigo) {
    const auto poner = [&salida](char32_t byte) { salida.push_back(static_cast<char>(byte)); };
    if (codigo > kUltimoCodigo || esSustitutoUtf16(codigo)) {
        codigo = kSustituto;
    }
    if (codigo < 0x80) {
        poner(codigo);
    } else if (codigo < 0x800) {
        poner(0xC0U | (codigo >> 6U));
        poner(0x80U | (codigo & 0x3FU));
    } else if (codigo < 0x10000) {
        poner(0xE0U | (codigo >> 12U));
        poner(0x80U | ((codigo >> 6U) & 0x3FU));
        poner(0x80U | (codigo & 0x3FU));
    } else {
        poner(0xF0U | (codigo >> 18U));
        poner(0x80U | ((codigo >> 12U) & 0x3FU));
        poner(0x80U | ((codigo >> 6U) & 0x3FU));
        poner(0x80U | (codigo & 0x3FU));
    }
}

/// Small letters and where their capitals stand: at a distance, or (distance 0) small and capital
/// side by side, the capital on the even or the odd place as the first small letter tells.
struct Minusculas {
    char32_t primera, ultima;
    int32_t distancia;
};
constexpr std::array<Minusculas, 34> kMinusculas = {{
    {0x61, 0x7A, -32},     // basic Latin
    {0xE0, 0xF6, -32},     // Western European
    {0xF8, 0xFE, -32},     //
    {0xFF, 0xFF, 121},     // y with diaeresis
    {0x101, 0x12F, 0},     // Central European and the rest of Latin
    {0x131, 0x131, -232},  // dotless i
    {0x133, 0x137, 0},     //
    {0x13A, 0x148, 0},     //
    {0x14B, 0x177, 0},     //
    {0x17A, 0x17E, 0},     //
    {0x17F, 0x17F, -300},  // long s
    {0x192, 0x192, -1},    // the florin sign
    {0x1A1, 0x1A5, 0},     // Vietnamese
    {0x1B0, 0x1B0, 0},     //
    {0x1CE, 0x1DC, 0},     //
    {0x1DF, 0x1EF, 0},     //
    {0x1F9, 0x21F, 0},     //
    {0x223, 0x233, 0},     //
    {0x3AC, 0x3AC, -38},   // Greek
    {0x3AD, 0x3AF, -37},   //
    {0x3B1, 0x3C1, -32},   //
    {0x3C2, 0x3C2, -31},   //
    {0x3C3, 0x3CB, -32},   //
    {0x3CC, 0x3CC, -64},   //
    {0x3CD, 0x3CE, -63},   //
    {0x430, 0x44F, -32},   // Cyrillic
    {0x450, 0x45F, -80},   //
    {0x461, 0x481, 0},     //
    {0x48B, 0x4BF, 0},     //
    {0x4C2, 0x4CE, 0},     //
    {0x4CF, 0x4CF, -15},   //
    {0x4D1, 0x52F, 0},     //
    {0x1E01, 0x1E95, 0},   // Latin with further marks
    {0x1EA1, 0x1EFF, 0},   //
}};

char32_t mayuscula(char32_t codigo) {
    const auto* fila = std::find_if(kMinusculas.begin(), kMinusculas.end(),
                                    [codigo](const Minusculas& m) { return codigo <= m.ultima; });
    if (fila == kMinusculas.end() || codigo < fila->primera) {
        return codigo;
    }
    if (fila->distancia == 0) {
        return (codigo - fila->primera) % 2 == 0 ? codigo - 1 : codigo;
    }
    return static_cast<char32_t>(static_cast<int32_t>(codigo) + fila->distancia);
}

}  // namespace

std::string utf8ACp1252(std::string_view utf8) {
    std::string salida;
    salida.reserve(utf8.size());
    for (std::size_t lugar = 0; lugar < utf8.size();) {
        salida.push_back(aCp1252(siguiente(utf8, lugar).value_or(kSustituto)).value_or('?'));
    }
    return salida;
}

std::string cp1252AUtf8(std::string_view cp1252) {
    std::string salida;
    salida.reserve(cp1252.size());
    for (const char byte : cp1252) {
        ponerUtf8(salida, deCp1252(static_cast<unsigned char>(byte)));
    }
    return salida;
}

bool cabeEnCp1252(std::string_view utf8) {
    for (std::size_t lugar = 0; lugar < utf8.size();) {
        if (!aCp1252(siguiente(utf8, lugar).value_or(kSustituto))) {
            return false;
        }
    }
    return true;
}

bool esUtf8Valido(std::string_view bytes) {
    for (std::size_t lugar = 0; lugar < bytes.size();) {
        if (!siguiente(bytes, lugar)) {
            return false;
        }
    }
    return true;
}

std::u32string utf8AU32(std::string_view utf8) {
    std::u32string salida;
    salida.reserve(utf8.size());
    for (std::size_t lugar = 0; lugar < utf8.size();) {
        salida.push_back(siguiente(utf8, lugar).value_or(kSustituto));
    }
    return salida;
}

std::string u32AUtf8(std::u32string_view codigos) {
    std::string salida;
    salida.reserve(codigos.size());
    for (const char32_t codigo : codigos) {
        ponerUtf8(salida, codigo);
    }
    return salida;
}

std::u16string utf8AU16(std::string_view utf8) {
    std::u16string salida;
    salida.reserve(utf8.size());
    for (std::size_t lugar = 0; lugar < utf8.size();) {
        const char32_t codigo = siguiente(utf8, lugar).value_or(kSustituto);
        if (codigo < 0x10000) {
            salida.push_back(static_cast<char16_t>(codigo));
        } else {
            salida.push_back(static_cast<char16_t>(0xD800U + ((codigo - 0x10000U) >> 10U)));
            salida.push_back(static_cast<char16_t>(0xDC00U + ((codigo - 0x10000U) & 0x3FFU)));
        }
    }
    return salida;
}

std::string u16AUtf8(std::u16string_view unidades) {
    const auto esBaja = [](char32_t unidad) { return unidad >= 0xDC00 && unidad <= 0xDFFF; };
    std::string salida;
    salida.reserve(unidades.size());
    for (std::size_t i = 0; i < unidades.size(); ++i) {
        char32_t codigo = unidades[i];
        if (esSustitutoUtf16(codigo) && !esBaja(codigo) && i + 1 < unidades.size() &&
            esBaja(unidades[i + 1])) {
            codigo = 0x10000U + ((codigo - 0xD800U) << 10U) + (unidades[++i] - 0xDC00U);
        }
        ponerUtf8(salida, codigo);
    }
    return salida;
}

std::string mayusculas(std::string_view utf8) {
    std::string salida;
    salida.reserve(utf8.size());
    for (std::size_t lugar = 0; lugar < utf8.size();) {
        ponerUtf8(salida, mayuscula(siguiente(utf8, lugar).value_or(kSustituto)));
    }
    return salida;
}

}  // namespace bn
