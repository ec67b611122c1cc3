// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "download/Nota.h"
#include "platform/Plataforma.h"

namespace bn {

/// One batch: the weighings of one download, in the frame store that holds them, and the note that
/// tells what has been done with them.
class Lote {
 public:
    /// Reads neither yet. Number 0: that of the current download.
    Lote(Plataforma& plataforma, std::uint32_t numero, std::filesystem::path almacen,
         std::filesystem::path nota);

    /// Reads note and store. What cannot be read now waits, as ilegible.
    void releer();
    /// The weighings' data in their order. A last line without its end is none: it was never
    /// acknowledged. Throws ErrorFichero.
    std::vector<std::string> pesadas();
    /// One weighing more stands in the store, flushed.
    void sumar() { ++cuantas_; }
    /// One could not be stored, and may stand there all the same.
    void dudar() { dudoso_ = true; }
    /// Makes a last line last that stands there after a write that failed. Throws ErrorFichero.
    void asegurar(const std::vector<std::string>& todas);

    std::uint32_t numero() const { return numero_; }
    const std::filesystem::path& almacen() const { return almacen_; }
    /// The store has another name from now on.
    void mudado(std::filesystem::path almacen) { almacen_ = std::move(almacen); }
    Nota& nota() { return nota_; }
    const Nota& nota() const { return nota_; }

    /// Weighings in the store.
    std::size_t cuantas() const { return cuantas_; }
    /// Whether a weighing is not in all its destinations.
    bool falta(std::size_t ordinal) const;
    /// How many of them are not in all their destinations; at least 1 while that cannot be read.
    std::size_t porLlegar() const;
    bool llegado() const { return porLlegar() == 0; }
    /// Whether note or store could not be read; what of it, in Spanish.
    bool ilegible() const { return !porQueIlegible_.empty(); }
    const std::string& porQueIlegible() const { return porQueIlegible_; }
    /// Data of the record whose acknowledge the indicator may not have heard: the last one of a
    /// download that the indicator has not closed; "" for none.
    const std::string& copia() const;

 private:
    void afianzar(const std::vector<std::string>& todas);

    Plataforma& plataforma_;
    std::uint32_t numero_;
    std::filesystem::path almacen_;
    Nota nota_;
    std::size_t cuantas_ = 0;
    std::string ultima_;
    bool dudoso_ = false;
    std::string porQueIlegible_;
};

}  // namespace bn
