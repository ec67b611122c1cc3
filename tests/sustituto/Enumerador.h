// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/sustituto/ObjetoSustituto.h"

namespace bn::sustituto {

/// An IEnumVARIANT over objects, as a result; the log names its calls after the collection's class.
VarianteCom nuevoEnumerador(std::shared_ptr<Mundo> mundo, const std::string& clase,
                            std::vector<VarianteCom> elementos);

/// How many enumerators are alive.
int64_t enumeradoresVivos();

}  // namespace bn::sustituto
