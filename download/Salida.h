// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "download/Apunte.h"
#include "download/Lote.h"
#include "link/pesaDX5.h"

namespace bn {

/// The weighings of one batch during a pass.
struct LoteEnCurso {
    Lote& lote;
    std::vector<std::string> pesadas;  ///< their data, in order

    /// Those that are not known to be in the destination, in order.
    std::vector<std::size_t> porLlegar(Destino destino) const;
};

/// One destination during one save pass: looks for what was begun before, then writes batch after
/// batch, and tells each batch's note what it does before it does it. Every member throws what the
/// disk or the spreadsheet application throws, in its own words.
class Salida {
 public:
    Salida() = default;
    Salida(const Salida&) = delete;
    Salida& operator=(const Salida&) = delete;
    virtual ~Salida() = default;

    virtual Destino destino() const = 0;
    /// Whether the settings have it switched on.
    virtual bool elegida() const = 0;
    /// Finds out how far a part of the batch got that was begun and whose end nobody knows, and
    /// notes it. Before anything is opened.
    virtual void resolver(LoteEnCurso& lote) = 0;
    /// Opens the destination, once in a pass, and finds where to write.
    virtual void abrir() = 0;
    virtual bool abierta() const = 0;
    /// A batch begins to be written.
    virtual void empezar(LoteEnCurso& lote) = 0;
    /// Writes one of its weighings.
    virtual void escribir(const pesaDX5& pesada, std::size_t ordinal) = 0;
    /// Makes last what has been written, closes, and notes it.
    virtual void guardar() = 0;
    /// After a failure, its own or the other destination's: keeps and notes what can be kept, and
    /// closes. Throws nothing of the disk's or the application's.
    virtual void abandonar() = 0;

    /// What a person should know although nothing has failed; Spanish, UTF-8.
    const std::vector<std::string>& avisos() const { return avisos_; }

 protected:
    void avisar(std::string texto) { avisos_.push_back(std::move(texto)); }

 private:
    std::vector<std::string> avisos_;
};

}  // namespace bn
