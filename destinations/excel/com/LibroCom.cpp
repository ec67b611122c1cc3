// SPDX-License-Identifier: MIT
#include "destinations/excel/com/LibroCom.h"

#include <utility>
#include <vector>

#include "destinations/excel/com/HojaCom.h"
#include "destinations/excel/com/Miembros.h"

namespace bn::excel::com {

namespace {

class NombreCom final : public ObjetoCom<excel::NombreDefinido> {
 public:
    using ObjetoCom::ObjetoCom;

    std::string Name() override { return comoTexto(com().leer(miembro::kName)); }
    std::string RefersTo() override { return comoTexto(com().leer(miembro::kRefersTo)); }
    void RefersTo(const std::string& referencia) override {
        com().poner(miembro::kRefersTo, argumento(referencia));
    }
};

class NombresCom final : public ObjetoCom<excel::Names> {
 public:
    using ObjetoCom::ObjetoCom;

    std::vector<std::unique_ptr<excel::NombreDefinido>> enumerar() override {
        std::vector<std::unique_ptr<excel::NombreDefinido>> nombres;
        for (Despacho& nombre : com().enumerar(clase::kNombre)) {
            nombres.push_back(std::make_unique<NombreCom>(std::move(nombre)));
        }
        return nombres;
    }

    void Add(const std::string& nombre, const std::string& referencia) override {
        com().llamarConNombres(
            miembro::kAdd, {{L"Name", argumento(nombre)}, {L"RefersTo", argumento(referencia)}});
    }
};

}  // namespace

std::unique_ptr<excel::Sheets> LibroCom::Worksheets() {
    return std::make_unique<HojasCom>(com().objeto(miembro::kWorksheets, clase::kHojas));
}

std::unique_ptr<excel::Names> LibroCom::Names() {
    return std::make_unique<NombresCom>(com().objeto(miembro::kNames, clase::kNombres));
}

std::string LibroCom::Name() { return comoTexto(com().leer(miembro::kName)); }

void LibroCom::SaveAs(const std::string& libro, int32_t modoDeAcceso) {
    // Filename, FileFormat, Password, WriteResPassword, ReadOnlyRecommended, CreateBackup,
    // AccessMode.
    const VarianteCom omitido = VarianteCom::omitido();
    com().llamar(miembro::kSaveAs, {argumento(libro), omitido, omitido, omitido, omitido, omitido,
                                    argumento(modoDeAcceso)});
}

void LibroCom::Close() { com().llamar(miembro::kClose); }

std::unique_ptr<excel::Workbook> LibrosCom::Open(const std::string& libro) {
    return std::make_unique<LibroCom>(
        com().objeto(miembro::kOpen, clase::kLibro, {argumento(libro)}));
}

std::unique_ptr<excel::Workbook> LibrosCom::Add() {
    return std::make_unique<LibroCom>(com().objeto(miembro::kAdd, clase::kLibro));
}

std::unique_ptr<excel::Workbook> LibrosCom::Add(const std::string& plantilla) {
    return std::make_unique<LibroCom>(
        com().objeto(miembro::kAdd, clase::kLibro, {argumento(plantilla)}));
}

std::unique_ptr<excel::Workbook> LibrosCom::Item(int32_t indice) {
    return std::make_unique<LibroCom>(
        com().objeto(miembro::kItem, clase::kLibro, {argumento(indice)}));
}

}  // namespace bn::excel::com
