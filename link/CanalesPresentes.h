// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <vector>

#include "platform/Plataforma.h"
#include "platform/Puertos.h"

namespace bn {

/// The serial devices present, each with the channel that opens it, section [Puertos] of the
/// settings file included. Throws ErrorFichero.
std::vector<PuertoPresente> canalesPresentes(const Plataforma& plataforma,
                                             const std::filesystem::path& raiz = "/");

}  // namespace bn
