// SPDX-License-Identifier: MIT
// Drives the embedded engine from the command line, for the comparison with other readers:
//   editor_xls abrir ORIGINAL COPIA     opens and saves, nothing changed
//   editor_xls anadir ORIGINAL COPIA    adds 100 rows to the first worksheet, and says which cells
//   editor_xls nuevo COPIA              makes a new workbook with the same rows
//   editor_xls leer ORIGINAL            reads every cell of every sheet
// A refused workbook ends it with 3 and the reason.
#include <cstdio>
#include <string>

#include "destinations/xls/MotorInterno.h"

namespace {

using namespace bn;

constexpr int kFilas = 100;
constexpr int kFilasLeidas = 400;
constexpr int kColumnasLeidas = 256;
constexpr int kRechazado = 3;

bool vacia(const Variante& valor) {
    const auto* texto = std::get_if<std::string>(&valor);
    return texto != nullptr && texto->empty();
}

void decir(const std::string& hoja, int fila, int columna, const std::string& valor) {
    std::printf("%s\t%d\t%d\t%s\n", hoja.c_str(), fila - 1, columna - 1, valor.c_str());
}

std::string decimal(double numero) {
    char texto[40];
    std::snprintf(texto, sizeof texto, "%.15g", numero);
    return texto;
}

// Rows as a download adds them: a date, a plate, whole numbers, single-precision weights.
void anadirFilas(excel::Worksheet& hoja, int primera) {
    const std::string nombre = hoja.Name();
    for (int i = 0; i < kFilas; ++i) {
        const int fila = primera + i;
        const double fecha = 45000.25 + i * 0.125;
        const std::string matricula = i % 3 == 0 ? "M" + std::to_string(4000 + i) + "ÑŽ" : "IGUAL";
        const float tara = 100.25F + static_cast<float>(i) / 8;
        const Variante valores[] = {
            FechaOle{fecha}, matricula, int32_t{1000000 + i}, int32_t{i}, int32_t{-i}, true, tara,
            12.35F};
        const std::string dichos[] = {decimal(fecha), matricula, decimal(1000000 + i), decimal(i),
                                      decimal(-i),    "TRUE",    decimal(tara),        "12.35"};
        for (int j = 0; j < 8; ++j) {
            hoja.Cells()->Item(fila, j + 1)->FormulaR1C1(valores[j]);
            decir(nombre, fila, j + 1, dichos[j]);
        }
    }
}

int filaLibre(excel::Worksheet& hoja) {
    int ultima = 0;
    for (int fila = 1; fila <= kFilasLeidas; ++fila) {
        for (int columna = 1; columna <= kColumnasLeidas && ultima < fila; ++columna) {
            if (!vacia(hoja.Cells()->Item(fila, columna)->FormulaR1C1())) ultima = fila;
        }
    }
    return ultima + 1;
}

void leerTodo(excel::Workbook& libro) {
    for (const auto& hoja : libro.Worksheets()->enumerar()) filaLibre(*hoja);
    for (const auto& nombre : libro.Names()->enumerar()) {
        std::printf("%s %s\n", nombre->Name().c_str(), nombre->RefersTo().c_str());
    }
}

int ejecutar(const std::string& orden, const std::string& origen, const std::string& destino) {
    const auto aplicacion = xls::nuevaAplicacionInterna([] { return 45000.0; }, discoDelSistema());
    const auto libros = aplicacion->Workbooks();
    const auto libro = orden == "nuevo" ? libros->Add() : libros->Open(origen);
    if (orden == "leer") {
        leerTodo(*libro);
        return 0;
    }
    const auto hoja = libro->Worksheets()->Item(1);
    if (orden == "anadir") anadirFilas(*hoja, filaLibre(*hoja));
    if (orden == "nuevo") {
        hoja->Name("Pesadas año");
        anadirFilas(*hoja, 1);
        libro->Names()->Add("bnUltima", "=101");
        libro->Names()->Add("Cabecera", "='Pesadas año'!$A$1:$H$1");
    }
    libro->SaveAs(destino, 1);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) return 2;
    const std::string orden = argv[1];
    try {
        return ejecutar(orden, argv[2], orden == "nuevo" ? argv[2] : argv[argc - 1]);
    } catch (const excel::ErrorExcel& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return kRechazado;
    }
}
