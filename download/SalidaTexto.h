// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "config/Setup.h"
#include "download/Salida.h"
#include "platform/Ficheros.h"
#include "platform/Plataforma.h"

namespace bn {

/// The text file of fixed positions: a line a weighing, behind what it holds.
class SalidaTexto : public Salida {
 public:
    SalidaTexto(Plataforma& plataforma, const Setup& cfg);

    Destino destino() const override { return Destino::kTexto; }
    bool elegida() const override { return cfg_.UsoTexto(); }
    void resolver(LoteEnCurso& lote) override;
    void abrir() override;
    bool abierta() const override { return abierta_; }
    void empezar(LoteEnCurso& lote) override;
    void escribir(const pesaDX5& pesada, std::size_t ordinal) override;
    void guardar() override;
    void abandonar() override;

 private:
    Comienzo aqui() const;
    std::optional<Tramos> buscar(const LoteEnCurso& lote, const Comienzo& comienzo,
                                 const std::vector<std::size_t>& porLlegar);
    void acabarLote();

    Plataforma& plataforma_;
    const Setup& cfg_;
    bool abierta_ = false;
    std::optional<ficheros::Anexo> anexo_;
    LoteEnCurso* lote_ = nullptr;
    Tramos escritas_;
    std::uint64_t fin_ = 0;  // where the file ends when nothing has failed
};

}  // namespace bn
