// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "config/Setup.h"
#include "destinations/XCel.h"
#include "download/Salida.h"
#include "platform/Plataforma.h"

namespace bn {

/// The worksheet: a row a weighing, from the row that the workbook names or from the first empty
/// one on. Nothing of it is on the disk before guardar saves the workbook whole.
class SalidaHoja : public Salida {
 public:
    SalidaHoja(Plataforma& plataforma, const Setup& cfg, XCel& hoja);

    Destino destino() const override { return Destino::kHoja; }
    bool elegida() const override { return cfg_.UsoExcel(); }
    void resolver(LoteEnCurso& lote) override;
    void abrir() override;
    bool abierta() const override { return abierta_; }
    void empezar(LoteEnCurso& lote) override;
    void escribir(const pesaDX5& pesada, std::size_t ordinal) override;
    void guardar() override;
    void abandonar() override;

 private:
    /// What of a batch is in the workbook, not saved yet.
    struct Escrito {
        LoteEnCurso* lote = nullptr;
        int32_t fila = 0;
        Tramos pesadas;
    };

    std::optional<Tramos> buscar(const LoteEnCurso& lote, const Comienzo& comienzo,
                                 const std::vector<std::size_t>& porLlegar);
    void cerrarSinMas();
    Comienzo aqui(int32_t fila) const;
    void buscarPrimeraFila();
    bool taparia(const LoteEnCurso& lote) const;
    bool filaVacia();
    void escribirFila(const pesaDX5& pesada);
    void avisarDelFinal();

    Plataforma& plataforma_;
    const Setup& cfg_;
    XCel& hoja_;
    bool abierta_ = false;
    int32_t fila_ = 0;
    std::string nombrada_;  // what the workbook says of the row
    bool llena_ = false;
    std::vector<Escrito> escritos_;
};

/// No row is left for a weighing.
class HojaLlena : public std::overflow_error {
 public:
    using std::overflow_error::overflow_error;
};

}  // namespace bn
