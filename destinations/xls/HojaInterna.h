// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "destinations/excel/ObjectModel.h"
#include "destinations/xls/Sesion.h"

namespace bn::xls {

/// A worksheet of the embedded engine.
class HojaInterna final : public excel::Worksheet {
 public:
    HojaInterna(std::shared_ptr<Sesion> sesion, std::weak_ptr<Hoja> hoja)
        : sesion_(std::move(sesion)), hoja_(std::move(hoja)) {}

    std::string Name() override;
    void Name(const std::string& nombre) override;
    void Delete() override;
    std::unique_ptr<excel::Range> Cells() override;
    std::unique_ptr<excel::Range> Columns(int32_t indice) override;
    std::unique_ptr<excel::Range> Rows(int32_t indice) override;
    std::unique_ptr<excel::Range> Range(const std::string& referencia) override;
    std::unique_ptr<excel::Range> Rows(const std::string& referencia) override;
    void Paste() override;
    std::unique_ptr<excel::HPageBreaks> HPageBreaks() override;
    void PrintOut(int32_t copies, bool collate) override;
    void PrintPreview() override;

    const std::weak_ptr<Hoja>& hoja() const { return hoja_; }

 private:
    std::unique_ptr<excel::Range> rango(const Area& area);

    std::shared_ptr<Sesion> sesion_;
    std::weak_ptr<Hoja> hoja_;
};

/// The worksheets of a workbook of the embedded engine; sheets of other kinds are not counted.
class HojasInternas final : public excel::Sheets {
 public:
    HojasInternas(std::shared_ptr<Sesion> sesion, std::weak_ptr<LibroAbierto> abierto)
        : sesion_(std::move(sesion)), abierto_(std::move(abierto)) {}

    int32_t Count() override;
    std::unique_ptr<excel::Worksheet> Item(int32_t indice) override;
    std::vector<std::unique_ptr<excel::Worksheet>> enumerar() override;
    std::unique_ptr<excel::Worksheet> Add(excel::Worksheet& after) override;

 private:
    std::shared_ptr<Sesion> sesion_;
    std::weak_ptr<LibroAbierto> abierto_;
};

}  // namespace bn::xls
