// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "destinations/excel/ObjectModel.h"
#include "tests/soporte/PlataformaDePrueba.h"

namespace bn {

/// A worksheet in memory: the values as they were set, uninterpreted.
struct HojaSimulada {
    std::string nombre;
    std::map<std::pair<int32_t, int32_t>, Variante> celdas;

    /// The cell at row and column; monostate when empty.
    Variante celda(int32_t fila, int32_t columna) const;
};

/// A workbook in memory. Copies are deep.
struct LibroSimulado {
    std::vector<HojaSimulada> hojas;
    std::vector<std::pair<std::string, std::string>> nombres;  ///< defined names: name, "=..."
    std::string plantilla;                                     ///< what it was made after

    const HojaSimulada& hoja(const std::string& nombre) const;
    std::vector<std::string> nombresDeHojas() const;
};

/// A spreadsheet application without an application: it remembers every call in order, fails on
/// demand, and keeps what SaveAs writes. Must outlive the applications that it starts.
class ExcelDePrueba {
 public:
    std::map<std::string, LibroSimulado> disco;  ///< the saved workbooks by path
    /// Every call as "Class[which].Member" and its arguments; calls that only ask end in "?".
    std::vector<std::string> llamadas;
    std::string errorAlArrancar;         ///< non-empty: no application starts
    std::vector<bool> porIdentificador;  ///< how each application was asked for
    int32_t objetosVivos = 0;            ///< interfaces handed out and not yet released
    int32_t instanciasAbiertas = 0;      ///< applications started and not yet quit
    std::vector<std::string> hojasDeNuevo = {"Hoja1", "Hoja2", "Hoja3"};  ///< of Workbooks.Add

    std::function<void(const std::string&)> alLlamar;   ///< hears of every call, before it is done
    std::function<void(const std::string&)> alGuardar;  ///< of every workbook that SaveAs has kept
    /// The n-th call from now of "Class.Member" ("Range.FormulaR1C1=" for a set) fails once.
    void fallar(const std::string& miembro, const std::string& descripcion, int32_t vez = 1);
    /// The calls that change something: llamadas without those that only ask.
    std::vector<std::string> ordenes() const;
    void olvidar() { llamadas.clear(); }

    std::unique_ptr<excel::Application> arrancar(bool conIdentificador);
    /// For the simulated objects: notes the call and fails when its turn has come.
    void anotar(const std::string& miembro, const std::string& linea);

 private:
    struct Fallo {
        std::string miembro;
        std::string descripcion;
        int32_t faltan;
    };
    std::vector<Fallo> fallos_;
    int32_t ultimaInstancia_ = 0;
};

/// The fake platform with the fake spreadsheet application behind it.
class PlataformaConExcel : public PlataformaDePrueba {
 public:
    using PlataformaDePrueba::PlataformaDePrueba;

    ExcelDePrueba excel;

    std::unique_ptr<excel::Application> nuevaAplicacionExcel(bool porIdentificador) override {
        return excel.arrancar(porIdentificador);
    }
};

/// Leaves a saved workbook with these empty sheets at the path.
void ponerLibro(ExcelDePrueba& excel, const std::string& ruta,
                const std::vector<std::string>& hojas);

}  // namespace bn
