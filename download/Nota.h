// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "download/Apunte.h"
#include "platform/Disco.h"

namespace bn {

/// What a note says of one destination.
struct Parte {
    bool suya = false;                 ///< the batch goes there
    Tramos llegadas;                   ///< known to be there
    std::optional<Comienzo> empezada;  ///< begun, and not known how it ended
    std::optional<Comienzo> anterior;  ///< where the last that arrived began
    bool hecha = false;                ///< all are there
};

/// The note of a batch of weighings: a journal that tells what has been done with them. Each line
/// is checked by its own sum, which the sum of the line before goes into: a line that is torn, and
/// whatever follows it, does not count.
///
/// It is made at a size that its usual lines fit in, so that writing them asks the disk for no
/// room. Members that write throw ErrorFichero; then nothing has changed, but what was to be
/// written may or may not be found the next time.
class Nota {
 public:
    /// Bytes of a new note: room for the lines of a download with long paths.
    static constexpr std::size_t kTamano = 4096;

    /// Without a file yet. The disk must outlive it.
    Nota(Disco& disco, std::filesystem::path fichero);

    /// Reads what the file says; false, and an empty note, when there is none or when nothing in
    /// it counts. Throws ErrorFichero.
    bool leer();
    /// Makes the file, with these steps as its first.
    void crear(const std::vector<Apunte>& apuntes);
    /// Puts steps behind the others, durably, all or none of them. Makes the file again when it
    /// has been taken away.
    void apuntar(const std::vector<Apunte>& otros);
    /// Brings to the disk itself what has only been read: whoever wrote it may not have lived, or
    /// not been able, to flush it.
    void afianzar();
    /// As apuntar, as soon as other steps are put down: one that may as well be missing costs no
    /// flush of its own.
    void aplazar(Apunte apunte) { aplazados_.push_back(std::move(apunte)); }
    /// The file has another name from now on.
    void mudada(std::filesystem::path fichero) { fichero_ = std::move(fichero); }

    const std::filesystem::path& fichero() const { return fichero_; }
    /// Whether there is no file yet that counts.
    bool nueva() const { return estado_.texto.empty(); }
    /// Whether the first pass has begun: its clock, and the destinations, are settled.
    bool hayPase() const { return estado_.hayPase; }
    double reloj() const { return estado_.reloj; }
    const Parte& parte(Destino destino) const;
    /// Whether every destination has them all, or nobody wants them.
    bool acabada() const;
    /// Whether the indicator has closed the download.
    bool terminadaBien() const { return estado_.terminadaBien; }
    /// Whether nothing is known of what was done before.
    bool desconocida() const { return estado_.desconocida; }
    /// Data of the record that may come again first; "" for none.
    const std::string& copia() const { return estado_.copia; }

 private:
    void aplicar(const Apunte& apunte);
    Parte& deDestino(Destino destino);
    std::string lineas(const std::vector<Apunte>& apuntes, std::uint32_t& suma) const;
    std::vector<Apunte> resumen() const;
    void compactar();

    /// What the lines that count say.
    struct Estado {
        std::string texto;
        std::uint32_t suma = 0;
        std::size_t lleno = kTamano;  ///< longer than this it is written anew, shorter
        bool hayPase = false;
        double reloj = 0;
        Parte hoja;
        Parte enTexto;
        bool terminadaBien = false;
        bool desconocida = false;
        bool descartada = false;
        std::string copia;
    };

    void escribir(const std::string& bytes);

    Disco& disco_;
    std::filesystem::path fichero_;
    Estado estado_;
    bool porVolcar_ = false;  // what is seen of the file may not be on the disk itself
    std::vector<Apunte> aplazados_;
};

}  // namespace bn
