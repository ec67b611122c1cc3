// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>

#include "config/Setup.h"
#include "destinations/XCel.h"
#include "link/pesaDX5.h"
#include "link/sacoTramas.h"
#include "platform/Ficheros.h"
#include "platform/Plataforma.h"

namespace bn {

/// The save pass: reads the frames of a download back from the store and writes each weighing as a
/// row of the worksheet, a line of the text file, or both. Without frames it touches nothing.
///
/// No error is caught: what the spreadsheet application or the file system throws ends the pass and
/// reaches the caller; rows not saved are lost with it, lines already written stay.
class PasoDeGuardado {
 public:
    PasoDeGuardado(Plataforma& plataforma, const Setup& cfg, XCel& hojaDeCalculo, sacoTramas& saco);

    /// Saves everything that the store has left to read.
    void ejecutar();

 private:
    void abrirDestinos();
    void guardar(const std::string& datos);
    void escribirFila();
    void escribirLinea();
    void pasarDeFila();
    void buscarPrimeraFila();
    bool filaVacia();

    const Setup& cfg_;
    XCel& hojaDeCalculo_;
    sacoTramas& saco_;
    pesaDX5 pesada_;
    std::optional<ficheros::Anexo> texto_;
    bool abiertos_ = false;
    int16_t fila_ = 0;
};

}  // namespace bn
