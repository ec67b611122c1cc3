// SPDX-License-Identifier: MIT
#include "tools/simulador/Sesion.h"

#include <algorithm>
#include <fstream>
#include <optional>
#include <ostream>
#include <vector>

namespace bn::simulador {

namespace {

// The faults draw from a sequence of their own: they do not change the weighings.
constexpr uint64_t kOtraSucesion = 0x5851F42D4C957F2D;

const char* texto(Suceso suceso) {
    switch (suceso) {
        case Suceso::kPeticion:
            return "petición";
        case Suceso::kEnviada:
            return "enviada";
        case Suceso::kReconocida:
            return "reconocida";
        case Suceso::kRechazada:
            return "rechazada";
        case Suceso::kContador:
            return "contador";
        case Suceso::kTerminada:
            return "terminada";
        case Suceso::kAbandonada:
            return "abandonada";
        case Suceso::kMudo:
            return "silencio";
        case Suceso::kDesaparecido:
            return "desaparecido";
    }
    return "";
}

}  // namespace

std::string resumen(const Cuentas& cuentas) {
    std::string linea = "enviadas=" + std::to_string(cuentas.enviadas) +
                        " reconocidas=" + std::to_string(cuentas.reconocidas) +
                        " rechazadas=" + std::to_string(cuentas.rechazadas) +
                        " reenviadas=" + std::to_string(cuentas.reenviadas) +
                        " descargas=" + std::to_string(cuentas.descargas);
    for (std::size_t i = 0; i < kNumeroAverias; ++i) {
        linea += ' ' + std::string(nombre(static_cast<Averia>(i))) + '=' +
                 std::to_string(cuentas.averias[i]);
    }
    return linea;
}

Sesion::Sesion(const Opciones& opciones, std::ostream& salida)
    : opciones_(opciones),
      salida_(salida),
      ritmo_(opciones.ritmo ? Ritmo(leerParametros(opciones.parametros).value_or(Parametros{}))
                            : Ritmo()),
      indicador_(opciones.indicador, Pesadas(opciones.semilla, opciones.forma),
                 Averias(opciones.semilla ^ kOtraSucesion, opciones.averias)) {
    if (!opciones.registro.empty()) {
        registro_ = std::make_unique<std::ofstream>(opciones.registro, std::ios::binary);
        if (!*registro_) throw ErrorLinea("No se puede escribir " + opciones.registro);
    }
    indicador_.alSuceder(
        [this](Suceso suceso, const std::string& datos) { anotar(suceso, datos); });
}

void Sesion::ejecutar(Paro& paro) {
    try {
        abrirLinea();
        while (paso(paro)) {
        }
    } catch (const ErrorLinea&) {
        resumir();  // what was done before the line broke still counts
        throw;
    }
    resumir();
}

void Sesion::abrirLinea() {
    linea_ = opciones_.dispositivo.empty()
                 ? Linea::pseudoterminal(opciones_.enlace)
                 : Linea::dispositivo(opciones_.dispositivo,
                                      leerParametros(opciones_.parametros).value_or(Parametros{}));
    salida_ << linea_->ruta() << std::endl;
}

bool Sesion::paso(Paro& paro) {
    if (const auto envio = indicador_.transmitir()) return transmitir(*envio, paro);
    if (indicador_.desaparecido()) {
        linea_.reset();
        if (!opciones_.vuelve || !paro.dormirHasta(ahora() + opciones_.vuelta)) return false;
        indicador_.volver();
        abrirLinea();
        return true;
    }
    if (opciones_.salir && indicador_.acabado()) return false;
    const auto bytes = linea_->leer(indicador_.plazo(), paro);
    if (!bytes) return false;
    // On a pseudo-terminal the computer's bytes take no time; on the line they would.
    if (!linea_->real()) libreDesde_ = ahora() + ritmo_.duracion(bytes->size());
    indicador_.oir(*bytes, ahora());
    indicador_.tiempo(ahora());
    return true;
}

bool Sesion::transmitir(const Envio& envio, Paro& paro) {
    const std::vector<Trozo> trozos = ritmo_.plan(envio, linea_->real());
    const Instante inicio = std::max(ahora(), libreDesde_);
    for (const Trozo& trozo : trozos) {
        if (!paro.dormirHasta(inicio + trozo.cuando)) return false;
        // What the computer has said meanwhile it said before it had the frame. Forgotten here and
        // not once the frame is out: by then its answer may already be there.
        if (&trozo == &trozos.back()) linea_->vaciarEntrada();
        linea_->escribir(trozo.bytes);
    }
    indicador_.transmitido(ahora());
    return true;
}

void Sesion::anotar(Suceso suceso, const std::string& datos) {
    if (registro_ && suceso == Suceso::kReconocida) {
        *registro_ << datos << "\r\n" << std::flush;
        if (!*registro_) throw ErrorLinea("No se puede escribir " + opciones_.registro);
    }
    if (!opciones_.detalle) return;
    salida_ << texto(suceso);
    if (suceso == Suceso::kReconocida) salida_ << ' ' << indicador_.cuentas().reconocidas;
    if (suceso == Suceso::kContador) salida_ << ' ' << datos;
    salida_ << std::endl;
}

void Sesion::resumir() { salida_ << resumen(indicador_.cuentas()) << std::endl; }

}  // namespace bn::simulador
