// SPDX-License-Identifier: MIT
#include "destinations/excel/com/LibroCom.h"

#include <utility>
#include <vector>

#include "config/Codificacion.h"
#include "config/UtilTexto.h"
#include "destinations/excel/com/EnUso.h"
#include "destinations/excel/com/HojaCom.h"
#include "destinations/excel/com/Miembros.h"

namespace bn::excel::com {

namespace {

constexpr double kExcel2007 = 12;
/// xlExcel8: the ".xls" of 97 to 2003.
constexpr int32_t kFormatoExcel8 = 56;
constexpr int32_t kSinActualizarVinculos = 0;
/// No workbook has it: one that is protected is refused at once, instead of asking for its own.
constexpr const char* kContrasenaDeNadie = "bnDX5 sin clave";

bool tieneExtensionXls(const std::string& libro) {
    const std::string nombre = mayusculas(libro);
    return nombre.ends_with(".XLS");
}

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
    const Despacho& objeto = com();
    // Versions from 2007 on ask before they drop what an ".xls" file cannot hold.
    intentar([&] { objeto.ponerSiLaConoce(miembro::kCheckCompatibility, argumento(false)); });
    const VarianteCom formato = formatoPara(libro);
    const Plazo plazo = plazoDeLibro();
    // Filename, FileFormat, Password, WriteResPassword, ReadOnlyRecommended, CreateBackup,
    // AccessMode.
    const VarianteCom omitido = VarianteCom::omitido();
    objeto.llamar(miembro::kSaveAs, {argumento(libro), formato, omitido, omitido, omitido, omitido,
                                     argumento(modoDeAcceso)});
}

/// From 2007 on a new workbook is saved in a newer format, whatever its name, unless told
/// otherwise. One that was opened keeps the format it has.
VarianteCom LibroCom::formatoPara(const std::string& libro) const {
    if (!procedencia_.nuevo || !tieneExtensionXls(libro)) return VarianteCom::omitido();
    const std::string version = comoTexto(aplicacion_.leer(miembro::kVersion));
    return utiltexto::numeroInicial(version) < kExcel2007 ? VarianteCom::omitido()
                                                          : argumento(kFormatoExcel8);
}

void LibroCom::Close() { com().llamar(miembro::kClose); }

void LibroCom::exigirLibre() {
    const std::string& archivo = procedencia_.archivo;
    if (archivo.empty()) return;  // a new one is nobody else's
    if (com().leer(miembro::kReadOnly).valor() != Variante(true)) return;
    // What nobody may write is not somebody else's: saving says so.
    if (estaProtegidoContraEscritura(archivo)) return;
    const std::string quien = quienLoTiene();
    throw ErrorDeApertura(
        "El libro \"" + archivo + "\" está en uso" +
            (quien.empty() ? " en otro programa o en otro equipo" : ": lo tiene abierto " + quien) +
            ". Ciérrelo para que se pueda escribir en él.",
        ErrorDeApertura::Clase::kSano);
}

std::string LibroCom::quienLoTiene() const {
    std::string quien;
    // Who it is helps to find the workbook; that it is in use is known without.
    intentar([&] { quien = comoTexto(objeto().leer(miembro::kWriteReservedBy)); });
    quien = utiltexto::sinBlancos(quien);
    return quien.empty() ? usuarioDelLibro(procedencia_.archivo) : quien;
}

std::unique_ptr<excel::Workbook> LibrosCom::libro(const wchar_t* miembro,
                                                  std::initializer_list<VarianteCom> argumentos,
                                                  Procedencia procedencia) const {
    return std::make_unique<LibroCom>(com().objeto(miembro, clase::kLibro, argumentos), aplicacion_,
                                      std::move(procedencia));
}

std::unique_ptr<excel::Workbook> LibrosCom::Open(const std::string& libro) {
    // Filename, UpdateLinks, ReadOnly, Format, Password, WriteResPassword,
    // IgnoreReadOnlyRecommended: whatever Excel could ask about the workbook is answered before.
    const VarianteCom omitido = VarianteCom::omitido();
    const VarianteCom contrasena = argumento(std::string(kContrasenaDeNadie));
    const Plazo plazo = plazoDeLibro();
    return this->libro(miembro::kOpen,
                       {argumento(libro), argumento(kSinActualizarVinculos), omitido, omitido,
                        contrasena, contrasena, argumento(true)},
                       {libro, false});
}

std::unique_ptr<excel::Workbook> LibrosCom::Add() { return libro(miembro::kAdd, {}, {"", true}); }

std::unique_ptr<excel::Workbook> LibrosCom::Add(const std::string& plantilla) {
    const Plazo plazo = plazoDeLibro();
    return libro(miembro::kAdd, {argumento(plantilla)}, {"", true});
}

std::unique_ptr<excel::Workbook> LibrosCom::Item(int32_t indice) {
    return libro(miembro::kItem, {argumento(indice)}, {});
}

}  // namespace bn::excel::com
