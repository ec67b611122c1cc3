// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "destinations/excel/ObjectModel.h"
#include "tests/soporte/PlataformaDePrueba.h"

namespace bn::prueba {

/// What a spreadsheet application of a test does: which workbook it can open, and its sheets.
struct GuionDeExcel {
    bool arranca = true;
    std::string libro;
    std::vector<std::string> hojas;
    bool fallaAlEnumerar = false;
    int abiertas = 0;  ///< applications started and not yet quit
};

namespace excel_de_prueba {

[[noreturn]] inline void noHay() { throw excel::ErrorExcel("not in this test"); }

class Hoja : public excel::Worksheet {
 public:
    explicit Hoja(std::string nombre) : nombre_(std::move(nombre)) {}
    std::string Name() override { return nombre_; }
    void Name(const std::string& nombre) override { nombre_ = nombre; }
    void Delete() override { noHay(); }
    std::unique_ptr<excel::Range> Cells() override { noHay(); }
    std::unique_ptr<excel::Range> Columns(int32_t) override { noHay(); }
    std::unique_ptr<excel::Range> Rows(int32_t) override { noHay(); }
    std::unique_ptr<excel::Range> Range(const std::string&) override { noHay(); }
    std::unique_ptr<excel::Range> Rows(const std::string&) override { noHay(); }
    void Paste() override { noHay(); }
    std::unique_ptr<excel::HPageBreaks> HPageBreaks() override { noHay(); }
    void PrintOut(int32_t, bool) override { noHay(); }
    void PrintPreview() override { noHay(); }

 private:
    std::string nombre_;
};

class Hojas : public excel::Sheets {
 public:
    explicit Hojas(GuionDeExcel& guion) : guion_(guion) {}
    int32_t Count() override { return static_cast<int32_t>(guion_.hojas.size()); }
    std::unique_ptr<excel::Worksheet> Item(int32_t indice) override {
        return std::make_unique<Hoja>(guion_.hojas.at(static_cast<std::size_t>(indice) - 1));
    }
    std::vector<std::unique_ptr<excel::Worksheet>> enumerar() override {
        if (guion_.fallaAlEnumerar) noHay();
        std::vector<std::unique_ptr<excel::Worksheet>> todas;
        for (const auto& nombre : guion_.hojas) todas.push_back(std::make_unique<Hoja>(nombre));
        return todas;
    }
    std::unique_ptr<excel::Worksheet> Add(excel::Worksheet&) override { noHay(); }

 private:
    GuionDeExcel& guion_;
};

class Libro : public excel::Workbook {
 public:
    explicit Libro(GuionDeExcel& guion) : guion_(guion) {}
    std::unique_ptr<excel::Sheets> Worksheets() override { return std::make_unique<Hojas>(guion_); }
    std::unique_ptr<excel::Names> Names() override { noHay(); }
    std::string Name() override { return guion_.libro; }
    void SaveAs(const std::string&, int32_t) override { noHay(); }
    void Close() override {}

 private:
    GuionDeExcel& guion_;
};

class Libros : public excel::Workbooks {
 public:
    explicit Libros(GuionDeExcel& guion) : guion_(guion) {}
    std::unique_ptr<excel::Workbook> Open(const std::string& libro) override {
        if (libro != guion_.libro) noHay();
        return std::make_unique<Libro>(guion_);
    }
    std::unique_ptr<excel::Workbook> Add() override { noHay(); }
    std::unique_ptr<excel::Workbook> Add(const std::string&) override { noHay(); }
    std::unique_ptr<excel::Workbook> Item(int32_t) override { noHay(); }

 private:
    GuionDeExcel& guion_;
};

class Aplicacion : public excel::Application {
 public:
    explicit Aplicacion(GuionDeExcel& guion) : guion_(guion) { ++guion_.abiertas; }
    void DisplayAlerts(bool) override {}
    std::unique_ptr<excel::Workbooks> Workbooks() override {
        return std::make_unique<Libros>(guion_);
    }
    std::unique_ptr<excel::Range> Selection() override { noHay(); }
    std::unique_ptr<excel::Range> ActiveCell() override { noHay(); }
    void CutCopyMode(bool) override {}
    void Visible(bool) override {}
    void Quit() override { --guion_.abiertas; }

 private:
    GuionDeExcel& guion_;
};

}  // namespace excel_de_prueba

/// The fake platform with a scripted spreadsheet application.
class PlataformaConExcel : public PlataformaDePrueba {
 public:
    using PlataformaDePrueba::PlataformaDePrueba;

    GuionDeExcel guion;

    std::unique_ptr<excel::Application> nuevaAplicacionExcel(bool) override {
        if (!guion.arranca) excel_de_prueba::noHay();
        return std::make_unique<excel_de_prueba::Aplicacion>(guion);
    }
};

}  // namespace bn::prueba
