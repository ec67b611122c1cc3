// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

#include "platform/Disco.h"
#include "platform/Tenencia.h"

namespace bn::xls {

/// Who has a workbook open, as far as a file left beside it tells.
struct Ocupante {
    std::string usuario;  ///< UTF-8; "" when the file does not say
    std::string equipo;   ///< the same
};

/// The contents of ".~lock.NAME#", which LibreOffice and its kin leave beside what they have open.
Ocupante ocupanteOdf(std::string_view contenido);

/// The contents of "~$NAME", which Excel leaves beside what it has open.
Ocupante ocupanteExcel(std::string_view contenido);

/// What the computer tells of its own programs and files.
struct Equipo {
    std::string nombre = nombreDelEquipo();
    std::function<bool(const std::string& programa)> enMarcha = estaEnMarcha;
    std::function<Tenencia(const std::filesystem::path& fichero)> tenencia = tenenciaDe;
};

/// Says that somebody else has the workbook open, who, and what to do; "" when nobody has. Spanish,
/// UTF-8.
std::string avisoDeEnUso(Disco& disco, const std::filesystem::path& libro,
                         const Equipo& equipo = {});

}  // namespace bn::xls
