// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "destinations/excel/com/HojaEnBloques.h"
#include "destinations/excel/com/ObjetoCom.h"

namespace bn::excel::com {

class HojaCom final : public ObjetoCom<excel::Worksheet> {
 public:
    explicit HojaCom(Despacho objeto)
        : ObjetoCom(objeto), bloques_(std::make_shared<HojaEnBloques>(std::move(objeto))) {}

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

 private:
    std::unique_ptr<excel::Range> area(const wchar_t* miembro, const Variante& cual) const;

    std::shared_ptr<HojaEnBloques> bloques_;
};

class HojasCom final : public ObjetoCom<excel::Sheets> {
 public:
    using ObjetoCom::ObjetoCom;

    int32_t Count() override;
    std::unique_ptr<excel::Worksheet> Item(int32_t indice) override;
    std::vector<std::unique_ptr<excel::Worksheet>> enumerar() override;
    std::unique_ptr<excel::Worksheet> Add(excel::Worksheet& after) override;
};

}  // namespace bn::excel::com
