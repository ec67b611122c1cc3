// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "destinations/excel/com/Areas.h"
#include "tests/sustituto/ObjetoSustituto.h"

namespace bn::sustituto {

/// Cells of the engine behind the members of "Range".
class RangoSustituto final : public ObjetoSustituto {
 public:
    RangoSustituto(std::shared_ptr<Mundo> mundo, std::string nombre,
                   std::unique_ptr<excel::Range> motor, const excel::com::Area& area);

    excel::Range& motor() { return *motor_; }

 private:
    void declarar();
    void declararFormatos();
    VarianteCom leer() const;
    void escribir(const VARIANT& valor) const;
    void escribirMatriz(SAFEARRAY* matriz) const;
    void exigirAdmisible(const Variante& valor) const;

    std::unique_ptr<excel::Range> motor_;
    excel::com::Area area_;
};

/// The area of a reference text in the A1 notation: "B7", "A1:C3", "1:3". Throws Rechazo.
excel::com::Area areaDeReferencia(const std::string& referencia);

}  // namespace bn::sustituto
