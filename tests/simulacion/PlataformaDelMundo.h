// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "platform/Ficheros.h"
#include "tests/soporte/ExcelDePrueba.h"
#include "tests/soporte/LineaSimulada.h"

namespace bn::prueba {

/// The outside of the whole program: a simulated line, a clock that goes with virtual time, and
/// either spreadsheet application.
class PlataformaDelMundo : public PlataformaSimulada {
 public:
    PlataformaDelMundo(std::filesystem::path carpeta, TiempoVirtual& tiempo, LineaSimulada& linea)
        : PlataformaSimulada(std::move(carpeta), tiempo, linea), tiempo_(tiempo) {}

    ExcelDePrueba excel;
    bool conExcel = false;  ///< the one that fails on demand; else the embedded engine

    std::unique_ptr<excel::Application> nuevaAplicacionExcel(bool porIdentificador) override {
        return conExcel ? excel.arrancar(porIdentificador)
                        : PlataformaSimulada::nuevaAplicacionExcel(porIdentificador);
    }
    bool esLibroSano(const std::filesystem::path& libro) const override {
        return conExcel ? excel.disco.contains(ficheros::aTexto(libro))
                        : PlataformaSimulada::esLibroSano(libro);
    }
    double ahora() const override {
        constexpr double kMicrosDelDia = 86400e6;
        return horaActual + static_cast<double>(tiempo_.ahora()) / kMicrosDelDia;
    }

 private:
    const TiempoVirtual& tiempo_;
};

}  // namespace bn::prueba
