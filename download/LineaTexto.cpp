// SPDX-License-Identifier: MIT
#include "download/LineaTexto.h"

#include <algorithm>
#include <cstddef>

#include "config/Codificacion.h"
#include "destinations/excel/Variante.h"
#include "download/CamposPesada.h"
#include "download/Formato.h"

namespace bn {

namespace {

/// To the left: blanks behind, cut on the right.
std::string ajustarTexto(std::string texto, std::size_t largo) {
    texto.resize(largo, ' ');
    return texto;
}

/// To the right: blanks before. A number that does not fit must never look like another one.
std::string ajustarNumero(const std::string& texto, std::size_t largo) {
    if (texto.size() > largo) return std::string(largo, '#');
    return std::string(largo - texto.size(), ' ') + texto;
}

/// Puts the text at a position, counted from 1, over whatever stands there.
void colocar(std::string& linea, std::size_t posicion, const std::string& texto) {
    if (posicion > linea.size()) {
        linea.resize(posicion - 1, ' ');
        linea += texto;
    } else {
        linea.replace(posicion - 1, texto.size(), texto);
    }
}

}  // namespace

std::string lineaTexto(const pesaDX5& pesada, const Setup& cfg) {
    std::array<CampoDeTexto, kCamposPesada> campos;
    for (int32_t campo = 0; campo < kCamposPesada; ++campo) {
        campos[static_cast<std::size_t>(campo)] = {cfg.Posicion(campo), cfg.Largo(campo),
                                                   cfg.Formato(campo)};
    }
    return lineaTexto(pesada, campos);
}

std::string lineaTexto(const pesaDX5& pesada,
                       const std::array<CampoDeTexto, kCamposPesada>& campos) {
    std::string linea;
    for (int32_t campo = 0; campo < kCamposPesada; ++campo) {
        const auto& [posicion, ancho, formato] = campos[static_cast<std::size_t>(campo)];
        if (posicion <= 0) continue;
        const auto largo = static_cast<std::size_t>(std::max<int16_t>(ancho, 0));
        std::string texto = formatear(valorDeCampo(pesada, campo), utf8ACp1252(formato));
        texto = esCampoNumerico(campo) ? ajustarNumero(texto, largo)
                                       : ajustarTexto(std::move(texto), largo);
        colocar(linea, static_cast<std::size_t>(posicion), texto);
    }
    return linea;
}

}  // namespace bn
