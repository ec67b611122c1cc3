// SPDX-License-Identifier: MIT
#pragma once

#include <exception>
#include <string>

#include "download/Apunte.h"

namespace bn {

/// Why weighings wait, and what to do about it, in words for whoever sits before the window.
/// Spanish, UTF-8.
namespace motivo {

/// A destination that failed.
std::string deFallo(Destino destino, const std::exception& error);
/// A destination that has been switched off since.
std::string deDesmarcado(Destino destino);
/// The worksheet, where no spreadsheet application can be started.
std::string deFaltaExcel();
/// None is switched on.
std::string deNingunDestino();
/// The program's own files of them cannot be read or written now.
std::string deFicherosPropios(const std::string& causa);
/// Nothing has been tried yet.
std::string deEspera();
/// A download cannot start, because what stands in the store cannot be put elsewhere, or the new
/// files cannot be made.
std::string deAtasco(const std::string& causa);

}  // namespace motivo

}  // namespace bn
