// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "destinations/excel/com/ObjetoCom.h"

namespace bn::excel::com {

/// Where a workbook comes from.
struct Procedencia {
    /// The file that was opened; "" for a workbook that Add has made.
    std::string archivo;
    bool nuevo = false;
};

class LibroCom final : public ObjetoCom<excel::Workbook> {
 public:
    LibroCom(Despacho libro, Despacho aplicacion, Procedencia procedencia)
        : ObjetoCom(std::move(libro)),
          aplicacion_(std::move(aplicacion)),
          procedencia_(std::move(procedencia)) {}

    std::unique_ptr<excel::Sheets> Worksheets() override;
    std::unique_ptr<excel::Names> Names() override;
    std::string Name() override;
    void SaveAs(const std::string& libro, int32_t modoDeAcceso) override;
    void Close() override;
    void exigirLibre() override;

 private:
    VarianteCom formatoPara(const std::string& libro) const;
    std::string quienLoTiene() const;

    Despacho aplicacion_;
    Procedencia procedencia_;
};

class LibrosCom final : public ObjetoCom<excel::Workbooks> {
 public:
    LibrosCom(Despacho libros, Despacho aplicacion)
        : ObjetoCom(std::move(libros)), aplicacion_(std::move(aplicacion)) {}

    std::unique_ptr<excel::Workbook> Open(const std::string& libro) override;
    std::unique_ptr<excel::Workbook> Add() override;
    std::unique_ptr<excel::Workbook> Add(const std::string& plantilla) override;
    std::unique_ptr<excel::Workbook> Item(int32_t indice) override;

 private:
    std::unique_ptr<excel::Workbook> libro(const wchar_t* miembro,
                                           std::initializer_list<VarianteCom> argumentos,
                                           Procedencia procedencia) const;

    Despacho aplicacion_;
};

}  // namespace bn::excel::com
