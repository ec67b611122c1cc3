// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "destinations/excel/com/Areas.h"
#include "tests/sustituto/ObjetoSustituto.h"

namespace bn::sustituto {

/// A sheet of the engine behind the members of "Worksheet".
class HojaSustituto final : public ObjetoSustituto {
 public:
    HojaSustituto(std::shared_ptr<Mundo> mundo, std::unique_ptr<excel::Worksheet> motor);

    excel::Worksheet& motor() { return *motor_; }

 private:
    void declararAreas();
    void declararMetodos();
    VarianteCom rango(const std::string& nombre, std::unique_ptr<excel::Range> rangoDelMotor,
                      const excel::com::Area& area) const;
    VarianteCom filas(const VARIANT& cuales) const;

    std::unique_ptr<excel::Worksheet> motor_;
};

/// The worksheets of a workbook behind the members of "Sheets".
class HojasSustituto final : public ObjetoSustituto {
 public:
    HojasSustituto(std::shared_ptr<Mundo> mundo, std::unique_ptr<excel::Sheets> motor);

 private:
    std::unique_ptr<excel::Sheets> motor_;
};

}  // namespace bn::sustituto
