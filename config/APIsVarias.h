// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "platform/Plataforma.h"

/// The two things the program asks of the operating system's shell.
namespace bn {

/// Special folder number of the user's personal documents.
inline constexpr int32_t kCarpetaDocumentos = 5;

/// The path of a special folder, UTF-8; "" when the shell has none of that number.
std::string CarpetaEspecial(const Plataforma& plataforma, int32_t propietario, int32_t numero);

/// Opens a document or address with its associated program. The shell's code: > 32 done, 2 not
/// found.
int32_t AbrirDocumento(Plataforma& plataforma, const std::string& rutaODireccion);

}  // namespace bn
