// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "destinations/excel/ObjectModel.h"
#include "destinations/xls/Sesion.h"

namespace bn::xls {

/// An area of a sheet of the embedded engine.
class RangoInterno final : public excel::Range {
 public:
    RangoInterno(std::shared_ptr<Sesion> sesion, std::weak_ptr<Hoja> hoja, const Area& area)
        : sesion_(std::move(sesion)), hoja_(std::move(hoja)), area_(area) {}

    std::unique_ptr<excel::Range> Item(int32_t fila, int32_t columna) override;
    Variante FormulaR1C1() override;
    void FormulaR1C1(const Variante& valor) override;
    void Select() override;
    void ClearContents() override;
    void Copy() override;
    void HorizontalAlignment(int32_t alineacion) override;
    void ColumnWidth(double ancho) override;
    void NumberFormat(const std::string& formato) override;

    const Area& area() const { return area_; }
    const std::weak_ptr<Hoja>& hoja() const { return hoja_; }

 private:
    std::shared_ptr<Sesion> sesion_;
    std::weak_ptr<Hoja> hoja_;
    Area area_;
};

/// The area of a reference text: "B7", "A1:C3", "1:3", "A:C", with or without "$". Throws
/// ErrorExcel for any other text, and for what lies outside a sheet.
Area areaDeTexto(const std::string& referencia);

/// Throws ErrorExcel when the cell, counted from 0, lies outside a sheet.
void exigirEnHoja(int64_t fila, int64_t columna);

}  // namespace bn::xls
