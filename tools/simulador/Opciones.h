// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "tools/simulador/Averias.h"
#include "tools/simulador/Indicador.h"
#include "tools/simulador/Pesadas.h"

namespace bn::simulador {

/// What the user asked for on the command line.
struct Opciones {
    bool ayuda = false;
    std::string dispositivo;  // empty: a pseudo-terminal
    std::string enlace;
    std::string registro;
    bool detalle = false;
    bool salir = false;
    bool ritmo = true;
    std::string parametros = "9600,N,8,1";
    uint64_t semilla = 1;
    Forma forma = Forma::kLarga;
    bool vuelve = false;
    std::chrono::milliseconds vuelta{0};
    AjustesIndicador indicador;
    AjustesAverias averias;
};

/// A command line that cannot be obeyed; what() is UTF-8 Spanish.
class ErrorOpciones : public std::runtime_error {
 public:
    using std::runtime_error::runtime_error;
};

/// Reads the arguments, the program's name not among them. Throws ErrorOpciones.
Opciones leerOpciones(const std::vector<std::string>& argumentos);

/// The text of --help.
std::string textoAyuda();

}  // namespace bn::simulador
