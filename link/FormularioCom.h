// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "config/Setup.h"

namespace bn {

/// What the communication settings dialog holds: the texts of its fields, UTF-8, by the controls'
/// names, and the rules they must pass.
class FormularioCom {
 public:
    std::string txCan, txParms, txCI, txCF, txPet, txTmO, txRet, txAutom;
    bool ckAutom = false;

    /// Shows the settings. Throws std::overflow_error as Setup::canal does.
    void cargar(const Setup& cfg);
    /// The first failure's message, "" when every field passes.
    std::string validar() const;
    /// Stores the fields, the period last. Throws std::overflow_error for a period above 32767
    /// seconds, with all the others stored.
    void guardar(Setup& cfg) const;
};

}  // namespace bn
