// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "destinations/excel/ObjectModel.h"
#include "destinations/xls/Sesion.h"

namespace bn::xls {

/// The workbook, or ErrorExcel when it has been closed.
std::shared_ptr<LibroAbierto> exigirAbierto(const std::weak_ptr<LibroAbierto>& abierto);

/// A workbook of the embedded engine.
class LibroInterno final : public excel::Workbook {
 public:
    LibroInterno(std::shared_ptr<Sesion> sesion, std::weak_ptr<LibroAbierto> abierto)
        : sesion_(std::move(sesion)), abierto_(std::move(abierto)) {}

    std::unique_ptr<excel::Sheets> Worksheets() override;
    std::unique_ptr<excel::Names> Names() override;
    std::string Name() override;
    void SaveAs(const std::string& libro, int32_t modoDeAcceso) override;
    void Close() override;
    void exigirLibre() override;

 private:
    std::shared_ptr<Sesion> sesion_;
    std::weak_ptr<LibroAbierto> abierto_;
};

/// The open workbooks of the embedded engine.
class LibrosInternos final : public excel::Workbooks {
 public:
    explicit LibrosInternos(std::shared_ptr<Sesion> sesion) : sesion_(std::move(sesion)) {}

    std::unique_ptr<excel::Workbook> Open(const std::string& libro) override;
    std::unique_ptr<excel::Workbook> Add() override;
    std::unique_ptr<excel::Workbook> Add(const std::string& plantilla) override;
    std::unique_ptr<excel::Workbook> Item(int32_t indice) override;

 private:
    std::shared_ptr<Sesion> sesion_;
};

}  // namespace bn::xls
