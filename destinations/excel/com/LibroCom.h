// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "destinations/excel/com/ObjetoCom.h"

namespace bn::excel::com {

class LibroCom final : public ObjetoCom<excel::Workbook> {
 public:
    using ObjetoCom::ObjetoCom;

    std::unique_ptr<excel::Sheets> Worksheets() override;
    std::unique_ptr<excel::Names> Names() override;
    std::string Name() override;
    void SaveAs(const std::string& libro, int32_t modoDeAcceso) override;
    void Close() override;
};

class LibrosCom final : public ObjetoCom<excel::Workbooks> {
 public:
    using ObjetoCom::ObjetoCom;

    std::unique_ptr<excel::Workbook> Open(const std::string& libro) override;
    std::unique_ptr<excel::Workbook> Add() override;
    std::unique_ptr<excel::Workbook> Add(const std::string& plantilla) override;
    std::unique_ptr<excel::Workbook> Item(int32_t indice) override;
};

}  // namespace bn::excel::com
