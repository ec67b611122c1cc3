// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "config/Setup.h"
#include "platform/Plataforma.h"

namespace bn::prueba {

/// A record that the program has stored.
struct Guardada {
    std::string datos;
    bool dudosa = false;    ///< stored, perhaps not to last, when the program died over it
    bool desdicha = false;  ///< it came again: it has not lasted
};

/// Control characters as points.
std::string legible(std::string texto);
/// What a record, a line and a row have in common when they are the same weighing's.
std::string claveDeDatos(const std::string& datos);
/// The keys of the lines; one that is none gives itself.
std::vector<std::string> clavesDeTexto(const std::string& lineas);
/// The keys of the rows from one on to the first that is empty. Reads with the wrapper.
std::vector<std::string> clavesDeHoja(Plataforma& plataforma, const std::string& libro,
                                      const std::string& hoja, int16_t desde);
/// "" when a destination holds the records once each and in their order; else what is wrong.
std::string comparar(const std::vector<Guardada>& guardadas, const std::vector<std::string>& hay,
                     bool admiteRepetidas);

}  // namespace bn::prueba
