// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "destinations/XCel.h"
#include "destinations/excel/com/ExcelCom.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/PlataformaDePrueba.h"

namespace bn::prueba {

/// A platform whose spreadsheet application is whatever is registered as "Excel.Application".
class PlataformaConSustituto : public PlataformaDePrueba {
 public:
    using PlataformaDePrueba::PlataformaDePrueba;

    excel::Paciencia paciencia{std::chrono::milliseconds(200), std::chrono::milliseconds(1),
                               std::chrono::milliseconds(5)};

    std::unique_ptr<excel::Application> nuevaAplicacionExcel(bool porIdentificador) override {
        return excel::nuevaAplicacionCom(porIdentificador, paciencia);
    }
};

/// The stand-in registered, its log and its orders, and the check that every test leaves none of
/// its objects behind.
class ConSustituto : public testing::Test {
 protected:
    void SetUp() override;
    void TearDown() override;

    XCel& excel() { return *excel_; }
    /// The last of the test: nothing of the application is held any more.
    void soltarExcel() { excel_.reset(); }

    /// Knocks at one of the server's doors: registration and its end.
    static void alServidor(const char* puerta);

    /// What is to go wrong with the applications started from now on.
    static void ordenar(const std::string& ordenes);

    /// Members called since the last time, in order; without the questions for identifiers.
    std::vector<std::string> diario();
    /// Everything that would have crossed from one process to another since the last time.
    std::vector<std::string> llamadas();

    std::string ruta(const std::string& nombre) const;
    /// A workbook of one sheet "Pesadas" made by the embedded engine; rows of its first columns.
    void crearLibro(const std::string& nombre, const std::vector<std::vector<Variante>>& filas);
    /// Contents of a cell of a saved workbook, read by the embedded engine.
    Variante leerCelda(const std::string& nombre, int16_t fila, int16_t columna);

    CarpetaTemporal carpeta_;
    PlataformaConSustituto plataforma_{carpeta_.ruta()};

 private:
    std::unique_ptr<XCel> excel_ = std::make_unique<XCel>(plataforma_);
    std::size_t leidas_ = 0;
};

}  // namespace bn::prueba
