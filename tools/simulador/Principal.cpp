// SPDX-License-Identifier: MIT
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "tools/simulador/Linea.h"
#include "tools/simulador/Opciones.h"
#include "tools/simulador/Sesion.h"

int main(int argc, char** argv) {
    using namespace bn::simulador;
    constexpr int kOpcionesMal = 2;
    try {
        const Opciones opciones = leerOpciones(std::vector<std::string>(argv + 1, argv + argc));
        if (opciones.ayuda) {
            std::cout << textoAyuda();
            return EXIT_SUCCESS;
        }
        Paro paro;
        Sesion(opciones, std::cout).ejecutar(paro);
        return EXIT_SUCCESS;
    } catch (const ErrorOpciones& error) {
        std::cerr << "bnDX5-simulador: " << error.what() << "\nPruebe «bnDX5-simulador --help».\n";
        return kOpcionesMal;
    } catch (const std::exception& error) {
        std::cerr << "bnDX5-simulador: " << error.what() << "\n";
        return EXIT_FAILURE;
    }
}
