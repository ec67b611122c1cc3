// SPDX-License-Identifier: MIT
#include "tests/soporte/FicheroSimulado.h"

#include <algorithm>
#include <utility>

namespace bn {
namespace {

/// Bytes of a write: all up to one place, and all from another one on.
struct Parte {
    std::uint64_t hasta;
    std::uint64_t desde;
};

Parte todo(std::uint64_t largo) { return {largo, largo}; }

/// All, none, the beginning; where anything goes also the end, or both without what is between.
Parte algo(std::uint64_t largo, Azar& azar, bool tambienElFinal) {
    switch (azar.hasta(tambienElFinal ? 4 : 2)) {
        case 0:
            return todo(largo);
        case 1:
            return {0, largo};
        case 2:
            return {azar.hasta(largo), largo};
        case 3:
            return {0, azar.hasta(largo)};
        default: {
            const std::uint64_t uno = azar.hasta(largo);
            const std::uint64_t otro = azar.hasta(largo);
            return {std::min(uno, otro), std::max(uno, otro)};
        }
    }
}

/// Puts the part of the bytes that lies within the contents there.
void poner(std::string& contenido, std::uint64_t desde, std::string_view bytes, Parte parte) {
    for (std::size_t i = 0; i < bytes.size() && desde + i < contenido.size(); ++i) {
        if (i < parte.hasta || i >= parte.desde) contenido[desde + i] = bytes[i];
    }
}

void crecer(std::string& contenido, std::uint64_t largo) {
    if (contenido.size() < largo) contenido.resize(largo);
}

}  // namespace

std::uint64_t Azar::hasta(std::uint64_t limite) {
    // Splitmix64: the standard's distributions differ from machine to machine.
    estado_ += 0x9E3779B97F4A7C15U;
    std::uint64_t z = estado_;
    z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9U;
    z = (z ^ (z >> 27U)) * 0x94D049BB133111EBU;
    z ^= z >> 31U;
    return limite == UINT64_MAX ? z : z % (limite + 1);
}

void FicheroSimulado::aplicar(std::string& contenido, const Cambio& cambio) {
    switch (cambio.clase) {
        case Clase::kBytes:
            if (cambio.bytes.empty()) return;
            crecer(contenido, cambio.desde + cambio.bytes.size());
            poner(contenido, cambio.desde, cambio.bytes, todo(cambio.bytes.size()));
            return;
        case Clase::kCorte:
            contenido.resize(cambio.desde);
            return;
        case Clase::kCrecimiento:
            crecer(contenido, cambio.desde);
            return;
    }
}

void FicheroSimulado::escribir(std::uint64_t desde, std::string_view bytes) {
    cambios_.push_back({Clase::kBytes, desde, std::string(bytes)});
    aplicar(visto_, cambios_.back());
}

void FicheroSimulado::cortar(std::uint64_t largo) {
    cambios_.push_back({Clase::kCorte, largo, {}});
    aplicar(visto_, cambios_.back());
}

void FicheroSimulado::volcar() {
    for (const Cambio& cambio : cambios_) aplicar(enDisco_, cambio);
    cambios_.clear();
}

void FicheroSimulado::fallarAlVolcar() {
    for (Cambio& cambio : cambios_) {
        if (cambio.clase != Clase::kBytes) continue;
        cambio = {Clase::kCrecimiento, cambio.desde + cambio.bytes.size(), {}};
    }
}

void FicheroSimulado::cortarCorriente(SistemaDeFicheros sistema, Azar& azar) {
    enDisco_ = sistema == SistemaDeFicheros::kExt4
                   ? restoConOrden(azar)
                   : restoConCeros(azar, sistema == SistemaDeFicheros::kNtfs);
    visto_ = enDisco_;
    cambios_.clear();
}

/// Lengths as they were up to some change, and nothing in between that was never written.
std::string FicheroSimulado::restoConOrden(Azar& azar) const {
    std::string resto = enDisco_;
    const std::uint64_t enteros = azar.hasta(cambios_.size());
    for (std::size_t i = 0; i < cambios_.size(); ++i) {
        const Cambio& cambio = cambios_[i];
        const bool cuenta = i < enteros || (i == enteros && azar.moneda());
        if (cambio.clase != Clase::kBytes) {
            if (cuenta) aplicar(resto, cambio);
            continue;
        }
        const std::uint64_t fin = cambio.desde + cambio.bytes.size();
        const std::uint64_t antes = resto.size();
        // What lies over old bytes goes its own way.
        poner(resto, cambio.desde, cambio.bytes, algo(cambio.bytes.size(), azar, false));
        if (!cuenta || fin <= antes) continue;
        const std::uint64_t nuevo = std::max(antes, cambio.desde);
        const std::uint64_t llega = i < enteros ? fin : nuevo + azar.hasta(fin - nuevo);
        if (llega == nuevo) continue;
        crecer(resto, llega);
        poner(resto, nuevo, std::string_view(cambio.bytes).substr(nuevo - cambio.desde),
              todo(fin - nuevo));
    }
    return resto;
}

/// Lengths first, then whichever bytes have a place.
std::string FicheroSimulado::restoConCeros(Azar& azar, bool enOrden) const {
    std::string resto = enDisco_;
    const std::uint64_t enteros = azar.hasta(cambios_.size());
    for (std::size_t i = 0; i < cambios_.size(); ++i) {
        const Cambio& cambio = cambios_[i];
        const bool cuenta = enOrden ? i < enteros : azar.moneda();
        if (cambio.clase != Clase::kBytes) {
            if (cuenta) aplicar(resto, cambio);
            continue;
        }
        const std::uint64_t bytes = cambio.bytes.size();
        if (cuenta && bytes > 0) {
            crecer(resto, cambio.desde + (enOrden ? bytes : bytes - azar.hasta(bytes - 1)));
        }
        poner(resto, cambio.desde, cambio.bytes, algo(bytes, azar, !enOrden));
    }
    return resto;
}

}  // namespace bn
