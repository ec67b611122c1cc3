// SPDX-License-Identifier: MIT
#include "tests/soporte/IndicadorSimulado.h"

#include <algorithm>
#include <utility>

#include "tests/soporte/TramasDePrueba.h"

namespace bn::prueba {

IndicadorSimulado::IndicadorSimulado(TiempoVirtual& tiempo, const Hechura& hechura, Emitir emitir)
    : tiempo_(tiempo), hechura_(hechura), emitir_(std::move(emitir)) {}

void IndicadorSimulado::pesar(const std::string& datos) {
    memoria_.push_back(registros_.size());
    registros_.push_back(datos);
}

void IndicadorSimulado::oir(char c, std::size_t causa) {
    if (c != kAck[0] && c != kNak[0] && c != hechura_.peticion) return;
    if (estado_ != Estado::kEnviando) return atender({c, causa});
    if (hechura_.sorda) return avisar("no oye nada: está enviando");
    if (!guardado_ || !hechura_.guardaLaPrimera) guardado_ = Oido{c, causa};
}

void IndicadorSimulado::atender(Oido oido) {
    if (estado_ == Estado::kEsperando && oido.c == kAck[0]) return reconocido(oido);
    const bool pide = oido.c == hechura_.peticion;
    if (estado_ == Estado::kReposo) {
        if (!pide) return;
        cuenta_ = hechura_.cuentaDesde;
    } else if (pide && hechura_.empiezaDeNuevo) {
        cuenta_ = hechura_.cuentaDesde;
    }
    enviar(oido);
}

void IndicadorSimulado::reconocido(Oido oido) {
    if (esContador_) {
        estado_ = Estado::kReposo;
        return avisar("termina");
    }
    ++cuenta_;
    olvidos_.push_back({memoria_.front(), oido.causa});
    avisar("olvida el registro " + std::to_string(memoria_.front()));
    memoria_.pop_front();
    enviar(oido);
}

void IndicadorSimulado::enviar(Oido oido) {
    estado_ = Estado::kEnviando;
    guardado_.reset();
    ++turno_;
    tiempo_.en(tiempo_.ahora() + hechura_.reaccion, [this, oido] {
        esContador_ = memoria_.empty();
        Envio envio{kContador, oido.causa, oido.c, {}};
        if (esContador_) {
            const std::string cifras = std::to_string(cuenta_);
            envio.datos = std::string(4 - std::min<std::size_t>(cifras.size(), 4), '0') + cifras;
        } else {
            envio.registro = memoria_.front();
            envio.datos = registros_[envio.registro];
        }
        avisar("envía " + (esContador_ ? "el contador " + envio.datos
                                       : "el registro " + std::to_string(envio.registro)));
        envios_.push_back(envio);
        tiempo_.en(emitir_(trama(envio.datos), envios_.size() - 1), [this] { transmitido(); });
    });
}

void IndicadorSimulado::transmitido() {
    esperarRespuesta();
    if (const auto oido = std::exchange(guardado_, {})) atender(*oido);
}

void IndicadorSimulado::esperarRespuesta() {
    estado_ = Estado::kEsperando;
    if (hechura_.espera == 0) return;
    tiempo_.en(tiempo_.ahora() + hechura_.espera, [this, turno = ++turno_] {
        if (turno != turno_ || estado_ != Estado::kEsperando) return;
        estado_ = Estado::kReposo;
        avisar("deja de esperar");
    });
}

void IndicadorSimulado::avisar(const std::string& suceso) const {
    if (testigo_) testigo_(suceso);
}

}  // namespace bn::prueba
