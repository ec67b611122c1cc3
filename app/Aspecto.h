// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "config/Setup.h"

namespace bn {

/// The main window's buttons that come and go with the state of the download.
enum class Boton { kCerr, kMini, kDesc, kAbor, kLimp };

/// What the result frame shows.
enum class Resultado { kOculto, kBien, kMal };

/// What the main window shows in a state of the download.
struct Aspecto {
    std::vector<Boton> botones;  ///< the visible ones, from left to right
    int32_t fase = 0;            ///< the phase shown, 0 to 4
    Resultado resultado = Resultado::kOculto;
};

/// The table of states; an unknown state looks idle.
const Aspecto& aspectoDeEstado(int32_t estado);

/// The text of a download that ended well, UTF-8.
std::string textoDeResultado(int32_t recibidas);

/// How many weighings wait to reach their destinations, why, and what to do, UTF-8; "" for none.
std::string textoDePendientes(int32_t cuantas, const std::string& motivo);

/// The descriptive captions of the port and the destinations, UTF-8.
std::string rotuloDeCanal(const Setup& cfg);
std::string rotuloDeExcel(const Setup& cfg);
std::string rotuloDeTexto(const Setup& cfg);

}  // namespace bn
