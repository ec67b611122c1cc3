// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "destinations/excel/ObjectModel.h"
#include "destinations/excel/com/Despacho.h"
#include "destinations/excel/com/HojaEnBloques.h"

namespace bn::excel::com {

/// An area of cells, of whatever way to get at it.
class RangoCom : public excel::Range {
 public:
    std::unique_ptr<excel::Range> Item(int32_t fila, int32_t columna) override;
    Variante FormulaR1C1() override;
    void FormulaR1C1(const Variante& valor) override;
    void Select() override;
    void ClearContents() override;
    void Copy() override;
    void HorizontalAlignment(int32_t alineacion) override;
    void ColumnWidth(double ancho) override;
    void NumberFormat(const std::string& formato) override;

    VarianteCom comoArgumento() { return com().comoArgumento(); }

 protected:
    /// The application's own object, for a call now.
    virtual Despacho com() = 0;
};

/// An area that the application has given.
class AreaCom final : public RangoCom {
 public:
    explicit AreaCom(Despacho area) : area_(std::move(area)) {}

 private:
    Despacho com() override;

    Despacho area_;
};

/// All the cells of a sheet. Asks the application for nothing until a member needs it.
class CeldasCom final : public RangoCom {
 public:
    CeldasCom(Despacho hoja, std::shared_ptr<HojaEnBloques> bloques)
        : hoja_(std::move(hoja)), bloques_(std::move(bloques)) {}

    std::unique_ptr<excel::Range> Item(int32_t fila, int32_t columna) override;

 private:
    Despacho com() override;

    Despacho hoja_;
    std::shared_ptr<HojaEnBloques> bloques_;
};

/// One cell of a sheet: its contents go by blocks, everything else to the application.
class CeldaCom final : public RangoCom {
 public:
    CeldaCom(Despacho hoja, std::shared_ptr<HojaEnBloques> bloques, PosicionDeCelda celda)
        : hoja_(std::move(hoja)), bloques_(std::move(bloques)), celda_(celda) {}

    Variante FormulaR1C1() override;
    void FormulaR1C1(const Variante& valor) override;

 private:
    Despacho com() override;

    Despacho hoja_;
    std::shared_ptr<HojaEnBloques> bloques_;
    PosicionDeCelda celda_;
};

}  // namespace bn::excel::com
