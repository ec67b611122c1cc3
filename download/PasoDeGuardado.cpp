// SPDX-License-Identifier: MIT
#include "download/PasoDeGuardado.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace bn {

std::vector<std::size_t> LoteEnCurso::porLlegar(Destino destino) const {
    const Parte& parte = lote.nota().parte(destino);
    std::vector<std::size_t> faltan;
    for (std::size_t i = 0; i < pesadas.size() && !parte.hecha; ++i) {
        if (!parte.llegadas.contiene(i)) faltan.push_back(i);
    }
    return faltan;
}

PasoDeGuardado::PasoDeGuardado(Plataforma& plataforma, const Setup& cfg, XCel& hoja)
    : plataforma_(plataforma),
      cfg_(cfg),
      hoja_(plataforma, cfg, hoja),
      texto_(plataforma, cfg),
      puestas_{{{&hoja_, nullptr}, {&texto_, nullptr}}},
      pesada_(plataforma) {}

void PasoDeGuardado::ejecutar(const std::vector<Lote*>& lotes, Fallo fallo) {
    fallo_ = fallo;
    leer(lotes);
    // What was begun before is looked up before anything is opened for writing.
    for (LoteEnCurso& lote : lotes_) {
        enTodas([&](Puesta& puesta) {
            if (leToca(puesta, lote)) intentar(puesta, [&] { puesta.salida->resolver(lote); });
        });
    }
    for (LoteEnCurso& lote : lotes_) guardar(lote);
    enTodas([&](Puesta& puesta) {
        if (puesta.salida->abierta()) intentar(puesta, [&] { puesta.salida->guardar(); });
    });
    if (primero_) std::rethrow_exception(primero_);
}

/// A batch that cannot be read, or whose note cannot be written, is waited for by those behind it:
/// weighings arrive in their order.
void PasoDeGuardado::leer(const std::vector<Lote*>& lotes) {
    for (Lote* lote : lotes) {
        try {
            if (lote->ilegible()) lote->releer();
            if (lote->ilegible()) throw ErrorFichero(lote->porQueIlegible());
            lotes_.push_back({*lote, lote->pesadas()});
            // What a destination has must not be missing here after a power cut.
            lote->asegurar(lotes_.back().pesadas);
            if (!lotes_.back().pesadas.empty()) fijarDestinos(lotes_.back());
            lote->nota().afianzar();
        } catch (const ErrorFichero&) {
            if (fallo_ == Fallo::kDeTodo) throw;
            primero_ = std::current_exception();
            return;
        }
    }
}

/// The first pass settles where the batch goes, and the clock of records that bring none.
void PasoDeGuardado::fijarDestinos(LoteEnCurso& lote) {
    Nota& nota = lote.lote.nota();
    if (nota.hayPase()) return;
    const bool hoja = cfg_.UsoExcel() || cfg_.ExcelEnFalta();
    if (!hoja && !cfg_.UsoTexto()) return;
    std::vector<Apunte> apuntes;
    if (nota.nueva()) apuntes.emplace_back(apunte::Desconocida{});
    apuntes.emplace_back(apunte::Pase{plataforma_.ahora(), hoja, cfg_.UsoTexto()});
    nota.apuntar(apuntes);
}

bool PasoDeGuardado::leToca(const Puesta& puesta, const LoteEnCurso& lote) const {
    const Parte& parte = lote.lote.nota().parte(puesta.salida->destino());
    return !puesta.error && parte.suya && !parte.hecha && puesta.salida->elegida();
}

void PasoDeGuardado::guardar(LoteEnCurso& lote) {
    std::vector<Puesta*> sirven;
    enTodas([&](Puesta& puesta) {
        if (!leToca(puesta, lote)) return;
        const Destino destino = puesta.salida->destino();
        if (!lote.porLlegar(destino).empty()) {
            sirven.push_back(&puesta);
        } else {
            intentar(puesta, [&] { lote.lote.nota().apuntar({apunte::Hecho{destino}}); });
        }
    });
    const auto enLasQueSirven = [&](const std::function<void(Salida&)>& accion) {
        for (Puesta* puesta : sirven) {
            if (!puesta->error) intentar(*puesta, [&] { accion(*puesta->salida); });
        }
    };
    enLasQueSirven([](Salida& salida) {
        if (!salida.abierta()) salida.abrir();
    });
    enLasQueSirven([&](Salida& salida) { salida.empezar(lote); });
    for (std::size_t i = 0; i < lote.pesadas.size() && !sirven.empty(); ++i) {
        // Whatever was acknowledged is written, even if it does not parse: empty is better than
        // missing.
        pesada_.DatosValidos(lote.pesadas[i], lote.lote.nota().reloj());
        enLasQueSirven([&](Salida& salida) {
            const bool esta = lote.lote.nota().parte(salida.destino()).llegadas.contiene(i);
            if (!esta && salida.elegida()) salida.escribir(pesada_, i);
        });
    }
}

/// False, and the destination is out of this pass, when it fails.
bool PasoDeGuardado::intentar(Puesta& puesta, const std::function<void()>& accion) {
    try {
        accion();
        return true;
    } catch (const std::exception&) {
        puesta.error = std::current_exception();
        if (!primero_) primero_ = puesta.error;
        puesta.salida->abandonar();
        if (fallo_ == Fallo::kDeCadaUna) return false;
        dejar();
        throw;
    }
}

/// The pass ends here for the destination that has not failed, too.
void PasoDeGuardado::dejar() {
    enTodas([&](Puesta& puesta) {
        if (puesta.error) return;
        puesta.salida->abandonar();
        quedaSinIntentar_ = std::any_of(lotes_.begin(), lotes_.end(), [&](const LoteEnCurso& lote) {
            return leToca(puesta, lote) && !lote.porLlegar(puesta.salida->destino()).empty();
        });
    });
}

void PasoDeGuardado::enTodas(const std::function<void(Puesta&)>& accion) {
    for (Puesta& puesta : puestas_) accion(puesta);
}

std::exception_ptr PasoDeGuardado::error(Destino destino) const {
    for (const Puesta& puesta : puestas_) {
        if (puesta.salida->destino() == destino) return puesta.error;
    }
    return nullptr;
}

std::vector<std::string> PasoDeGuardado::avisos() const {
    std::vector<std::string> todos;
    for (const Puesta& puesta : puestas_) {
        const auto& suyos = puesta.salida->avisos();
        std::copy(suyos.begin(), suyos.end(), std::back_inserter(todos));
    }
    return todos;
}

}  // namespace bn
