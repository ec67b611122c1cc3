// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace bn {

/// What a file system promises about what has not been flushed when the power goes.
enum class SistemaDeFicheros {
    /// Linux's, with ordered data: names and lengths change in their order, and a file never grows
    /// before the bytes that fill it are there; what was written over old bytes has no order.
    kExt4,
    /// Windows's: names and lengths change in their order, but a file may have grown and hold zeros
    /// where its bytes should be.
    kNtfs,
    /// One that promises nothing: of names, lengths and bytes any part may be missing.
    kSinOrden,
};

/// Numbers by chance: the same ones from the same seed, on every machine.
class Azar {
 public:
    explicit Azar(std::uint64_t semilla) : estado_(semilla) {}
    /// From 0 to the limit, both included.
    std::uint64_t hasta(std::uint64_t limite);
    bool moneda() { return hasta(1) == 1; }

 private:
    std::uint64_t estado_;
};

/// A file of a simulated disk: what programs see of it, and what a power cut would leave.
class FicheroSimulado {
 public:
    FicheroSimulado() = default;
    /// One that has been on the disk for long.
    explicit FicheroSimulado(std::string contenido)
        : visto_(contenido), enDisco_(std::move(contenido)) {}

    const std::string& visto() const { return visto_; }
    const std::string& enDisco() const { return enDisco_; }
    /// Whether a power cut leaves it as it is seen.
    bool volcado() const { return cambios_.empty(); }

    /// Beyond the end, zeros fill the gap.
    void escribir(std::uint64_t desde, std::string_view bytes);
    void cortar(std::uint64_t largo);
    void volcar();
    /// A flush that fails forgets what it should have written: programs go on seeing the bytes, but
    /// no later flush brings them to the disk. Lengths get there.
    void fallarAlVolcar();
    /// Leaves one of the states that the file system allows.
    void cortarCorriente(SistemaDeFicheros sistema, Azar& azar);

 private:
    enum class Clase { kBytes, kCorte, kCrecimiento };
    struct Cambio {
        Clase clase;
        std::uint64_t desde;  // or the new length
        std::string bytes;
    };

    static void aplicar(std::string& contenido, const Cambio& cambio);
    std::string restoConOrden(Azar& azar) const;
    std::string restoConCeros(Azar& azar, bool enOrden) const;

    std::string visto_;
    std::string enDisco_;
    std::vector<Cambio> cambios_;  // since the last flush
};

}  // namespace bn
