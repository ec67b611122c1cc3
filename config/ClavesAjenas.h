// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "platform/Plataforma.h"

/// The keys of "bnDX5.ini" that the program reads and never writes: those who need them add them by
/// hand, and saving the settings leaves them alone.
namespace bn {

/// Where the settings file lies.
std::filesystem::path rutaDelIni(const Plataforma& plataforma);

/// The device that section [Puertos] gives to a channel, as "1=/dev/serial/by-id/..."; "" when it
/// gives none. Throws ErrorFichero.
std::string dispositivoDePuerto(Disco& disco, const std::filesystem::path& ini, int16_t canal);

/// Key Motor of section [Excel] in small letters: "auto", "excel", "interno" or "ninguno"; "auto"
/// when it is missing or anything else. Throws ErrorFichero.
std::string motorExcel(Disco& disco, const std::filesystem::path& ini);

}  // namespace bn
