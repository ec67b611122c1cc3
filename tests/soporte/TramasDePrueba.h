// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace bn::prueba {

inline constexpr char kStx = 2;
inline constexpr char kEtx = 3;
inline const std::string kAck = "\x06";
inline const std::string kNak = "\x15";

inline char xorDe(const std::string& datos) {
    unsigned char suma = 0;
    for (const char c : datos)
        suma = static_cast<unsigned char>(suma ^ static_cast<unsigned char>(c));
    return static_cast<char>(suma);
}

/// A frame as the indicator sends it.
inline std::string trama(const std::string& datos, char inicial = kStx, char final = kEtx) {
    return std::string{inicial} + datos + final + xorDe(datos) + "\n\r";
}

inline std::string aLaDerecha(const std::string& texto, std::size_t largo) {
    return texto.size() < largo ? std::string(largo - texto.size(), ' ') + texto : texto;
}

inline std::string aLaIzquierda(std::string texto, std::size_t largo) {
    texto.resize(largo, ' ');
    return texto;
}

/// The fields of a weighing, as texts; datos() puts them in their places.
struct PesadaDePrueba {
    std::string matricula = "1234BCD";
    std::string albaran = "57";
    std::string codigoA = "11";
    std::string codigoB = "22";
    std::string codigoC = "33";
    std::string tara = "0012.50";
    std::string neto = "0100.25";
    std::string fechaHora;  ///< "" for the short form

    std::string datos() const {
        std::string texto = aLaIzquierda(matricula, 8) + ' ' + aLaDerecha(albaran, 7) + ' ' +
                            aLaDerecha(codigoA, 8) + ' ' + aLaDerecha(codigoB, 8) + ' ' +
                            aLaDerecha(codigoC, 8) + ' ' + aLaDerecha(tara, 7) + ' ' +
                            aLaDerecha(neto, 7);
        if (!fechaHora.empty()) texto += ' ' + aLaIzquierda(fechaHora, 14);
        return texto;
    }
};

}  // namespace bn::prueba
