// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "download/Lote.h"
#include "platform/Plataforma.h"

namespace bn {

/// The batches of weighings in the program's own folder: the current download's, in "bnGuardo.txt"
/// with its note "bnGuardo.nota", and those that had not arrived when the next one began, aside
/// under a running number as "bnGuardo-NNNNNN.txt" and "bnGuardo-NNNNNN.nota". The form of the
/// files, and why their operations come in this order, is told in docs/pendientes.md.
class Pendientes {
 public:
    /// Reads what stands in the folder; never throws.
    explicit Pendientes(Plataforma& plataforma);

    /// Looks at the folder again. False when that cannot be done: atasco says why. Never throws.
    bool releer();
    /// Before a download, which empties the store: puts aside what has not arrived. False when that
    /// can be put nowhere, and the download must not start: atasco says why. Never throws.
    bool despejar();
    /// Once the store has been emptied: makes the note of the download, before anything goes out on
    /// the line. False when it cannot be made. Never throws.
    bool preparar();
    /// Removes the batches aside that have arrived. Never throws: what stays is removed later.
    void retirar();

    /// The batch of the last download, running or not; null before the first.
    Lote* actual() { return actual_.get(); }
    const Lote* actual() const { return actual_.get(); }
    /// The batches that have not arrived, the oldest first.
    std::vector<Lote*> porLlegar() const;
    /// Weighings that are not in all their destinations.
    std::size_t cuantas() const;
    /// Data of the record that the next download may begin with once more; "" for none.
    std::string copia() const;
    /// Why the last releer, despejar or preparar answered false, Spanish; "" when none did.
    const std::string& atasco() const { return atasco_; }

 private:
    std::filesystem::path fichero(const std::string& nombre) const;
    void releerActual(bool hayNota, bool deAntes);
    void releerApartados(const std::vector<std::string>& nombres, bool hayNota);
    bool esDeApartado() const;
    bool hay(const std::filesystem::path& fichero) const;
    void apartar();
    void mudarAlmacen(Lote& lote);
    void conservarCopia();
    void retirar(Lote& lote);

    Plataforma& plataforma_;
    std::map<std::uint32_t, std::unique_ptr<Lote>> apartados_;
    std::unique_ptr<Lote> actual_;
    std::string atasco_;
    bool aCiegas_ = false;  // the folder could not be looked at
};

}  // namespace bn
