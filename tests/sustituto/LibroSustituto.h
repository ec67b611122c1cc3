// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "tests/sustituto/ObjetoSustituto.h"

namespace bn::sustituto {

/// The workbooks of the engine behind the members of "Workbooks". It does not open one that could
/// ask, or run what it brings.
class LibrosSustituto final : public ObjetoSustituto {
 public:
    LibrosSustituto(std::shared_ptr<Mundo> mundo, std::unique_ptr<excel::Workbooks> motor);

 private:
    VarianteCom abrir(const Argumentos& argumentos) const;

    std::unique_ptr<excel::Workbooks> motor_;
};

}  // namespace bn::sustituto
