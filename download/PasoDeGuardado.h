// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <exception>
#include <functional>
#include <string>
#include <vector>

#include "config/Setup.h"
#include "destinations/XCel.h"
#include "download/Lote.h"
#include "download/Salida.h"
#include "download/SalidaHoja.h"
#include "download/SalidaTexto.h"
#include "link/pesaDX5.h"
#include "platform/Plataforma.h"

namespace bn {

/// The save pass: writes the weighings of batches, the oldest batch first, to the destinations that
/// each of them has, and keeps their notes. Without weighings it touches nothing.
class PasoDeGuardado {
 public:
    /// What becomes of one destination when the other one fails.
    enum class Fallo {
        kDeTodo,     ///< the pass ends for both at once
        kDeCadaUna,  ///< it is served to the end
    };

    /// All must outlive it.
    PasoDeGuardado(Plataforma& plataforma, const Setup& cfg, XCel& hoja);

    /// Writes what has not arrived. Throws the first error once the rest has been done, or left.
    void ejecutar(const std::vector<Lote*>& lotes, Fallo fallo);

    /// The error of a destination; null when it had none.
    std::exception_ptr error(Destino destino) const;
    /// Whether a destination was left without its share because the other one failed.
    bool quedaSinIntentar() const { return quedaSinIntentar_; }
    /// What a person should know although nothing has failed; Spanish, UTF-8.
    std::vector<std::string> avisos() const;

 private:
    /// A destination, and how it goes.
    struct Puesta {
        Salida* salida;
        std::exception_ptr error;
    };
    void leer(const std::vector<Lote*>& lotes);
    void fijarDestinos(LoteEnCurso& lote);
    void guardar(LoteEnCurso& lote);
    bool leToca(const Puesta& puesta, const LoteEnCurso& lote) const;
    bool intentar(Puesta& puesta, const std::function<void()>& accion);
    void dejar();
    void enTodas(const std::function<void(Puesta&)>& accion);

    Plataforma& plataforma_;
    const Setup& cfg_;
    SalidaHoja hoja_;
    SalidaTexto texto_;
    std::array<Puesta, 2> puestas_;
    pesaDX5 pesada_;
    std::vector<LoteEnCurso> lotes_;
    Fallo fallo_ = Fallo::kDeTodo;
    std::exception_ptr primero_;
    bool quedaSinIntentar_ = false;
};

}  // namespace bn
