// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "destinations/xls/formula/Contexto.h"
#include "destinations/xls/formula/Funciones.h"
#include "destinations/xls/formula/Referencias.h"

namespace bn::xls {

/// One part of a formula. Blanks and line feeds are kept where the file has a place for them.
struct Nodo {
    enum class Tipo {
        kLiteral,         // token: the whole token of a number, text, logical or error value
        kReferencia,      // hojas and referencia
        kReferenciaRota,  // hojas and #REF!
        kNombre,          // palabra
        kCadena,          // operands and the operators between them, of one rank, from the left
        kPrefijo,         // operador and its one operand
        kPorcentaje,
        kParentesis,
        kFuncion,
        kFalta  // an argument left out
    };
    struct Operador {
        uint8_t id = 0;
        std::string blancos;  // before it
    };

    Tipo tipo = Tipo::kFalta;
    std::string blancos;        // before its first sign
    std::string blancosCierre;  // before its closing parenthesis
    Rgce token;
    std::optional<std::pair<std::string, std::string>> hojas;
    Referencia referencia;
    std::string palabra;
    const Funcion* funcion = nullptr;
    std::vector<Nodo> hijos;
    std::vector<Operador> operadores;
};

/// The parts of a formula text, leading "=" included. Throws excel::ErrorExcel, in Spanish, where
/// the text is no formula, goes too deep or is too long.
Nodo analizar(Notacion notacion, std::string_view formula, PosicionCelda celda);

/// The code of an error value such as "#N/A" that texto begins with, and its length.
std::optional<std::pair<uint8_t, size_t>> leerErrorLiteral(std::string_view texto);

/// The text of an error value by its code; nullptr when there is none.
const char* textoDeError(uint8_t codigo);

/// texto in upper case as far as it is ASCII.
std::string mayusculasAscii(std::string_view texto);

}  // namespace bn::xls
