// SPDX-License-Identifier: MIT
#pragma once

#include <iosfwd>
#include <memory>
#include <string>

#include "tools/simulador/Indicador.h"
#include "tools/simulador/Linea.h"
#include "tools/simulador/Opciones.h"
#include "tools/simulador/Ritmo.h"

namespace bn::simulador {

/// One run of the simulated indicator: the exchange on one side, line and clock on the other.
class Sesion {
 public:
    /// Writes to salida the line's path, with its details if asked for, and at the end the summary.
    Sesion(const Opciones& opciones, std::ostream& salida);

    /// Until the user stops it, it has gone away or, if asked for, there is nothing left to send.
    /// Throws ErrorLinea.
    void ejecutar(Paro& paro);

 private:
    void abrirLinea();
    bool paso(Paro& paro);
    bool transmitir(const Envio& envio, Paro& paro);
    void anotar(Suceso suceso, const std::string& datos);
    void resumir();

    const Opciones opciones_;
    std::ostream& salida_;
    Ritmo ritmo_;
    Indicador indicador_;
    std::unique_ptr<Linea> linea_;
    std::unique_ptr<std::ostream> registro_;
    Instante libreDesde_{0};  // when the computer's last byte has crossed the line
};

/// The summary, one line without its end.
std::string resumen(const Cuentas& cuentas);

}  // namespace bn::simulador
