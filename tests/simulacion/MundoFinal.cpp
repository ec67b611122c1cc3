// SPDX-License-Identifier: MIT
// How a world ends, and what must hold then.
#include <algorithm>
#include <utility>

#include "destinations/XCel.h"
#include "tests/simulacion/MundoPorDentro.h"

namespace bn::prueba {

/// A download more, from its beginning; false when none ends well in a long time.
bool Mundo::otraCorrecta() {
    for (int vez = 0; vez < 40; ++vez) {
        while (enDescarga_) transcurrir(kSegundo);
        const int64_t descargas = resultado_.descargas;
        const int64_t correctas = resultado_.correctas;
        for (int s = 0; s < 2 * periodo_ + 10 && resultado_.descargas == descargas; ++s) {
            transcurrir(kSegundo);
        }
        while (enDescarga_) transcurrir(kSegundo);
        if (resultado_.correctas > correctas) return true;
    }
    return false;
}

void Mundo::acabar() {
    apuntar("todo vuelve a ir bien");
    percances_.sanar();
    linea_.averias = {};
    linea_.enchufada = true;
    while (!puesto_) transcurrir(kSegundo);
    if (!puesto_->hayExcel() || azar_.sale(0.5)) {
        cerrar();
        disco_.revivir();
        arrancar();
        reiniciado_ = true;
    }
    puesto_->configuracion().Timeout(std::min(holgada_, 32000));
    puesto_->configuracion().MaxRetrys(20);
    if (!otraCorrecta()) return falta("las descargas no vuelven a acabar bien");
    if (puesto_->controlador().numPendientes() != 0) {
        falta("quedan pendientes: " + puesto_->controlador().motivoPendientes());
    }
    for (int vez = 0; vez < 6 && indicador_.pendientes() > 0; ++vez) otraCorrecta();
    otraCorrecta();
}

/// A temporary that could not be removed goes when the program starts again.
bool Mundo::esRestoTolerable(const std::string& nombre) const {
    return !reiniciado_ && nombre.starts_with(".bn-");
}

void Mundo::juzgarRestos() {
    for (const std::string& nombre : disco_.nombres(percances_.programa)) {
        if (esRestoTolerable(nombre)) continue;
        if (nombre != "bnDX5.ini" && nombre != "bnGuardo.txt" && nombre != "bnGuardo.nota") {
            falta("sobra " + nombre);
        }
    }
    for (const std::string& nombre : disco_.nombres(percances_.oficina)) {
        if (esRestoTolerable(nombre)) continue;
        if (nombre != "Pesadas.xls" && nombre != "Pesadas.txt") falta("sobra " + nombre);
    }
    if (plataforma_.mensajes.size() > peticiones_) falta("mensaje: " + plataforma_.mensajes.back());
    if (plataforma_.excel.instanciasAbiertas != 0) falta("queda Excel abierto");
    const Setup& cfg = puesto_->configuracion();
    if (cfg.LibroExcel() != percances_.libro ||
        cfg.ArchivoTexto() != ficheros::aTexto(percances_.lineas)) {
        falta("la configuración ha cambiado");
    }
}

void Mundo::juzgar() {
    juzgarRestos();
    std::string texto = retirado_;
    if (disco_.existe(percances_.lineas)) texto += sinLoPrevio(disco_.contenido(percances_.lineas));
    const std::string enTexto = comparar(guardadas_, clavesDeTexto(texto), retiradoEnDuda_);
    if (!enTexto.empty()) falta("texto:" + enTexto);
    if (retiradoEnDuda_ && !comparar(guardadas_, clavesDeTexto(texto), false).empty()) {
        ++resultado_.disculpas["texto: el lector se llevó el fichero sin acabar de confirmar"];
    }
    const std::string enHoja = comparar(
        guardadas_, clavesDeHoja(plataforma_, percances_.libro, kHoja, primeraFila_), false);
    if (!enHoja.empty()) falta("hoja:" + enHoja);
    if (primeraFila_ > 1) {
        XCel lector(plataforma_);
        const bool abierto = lector.AbrirParaLeer(percances_.libro, kHoja);
        if (!abierto || lector.Celda(3, 12) != Variante(std::string(kNotaAjena))) {
            falta("la hoja ha perdido lo que tenía");
        }
    }
    ResultadoSimulacion deLinea;
    observador_.juzgar(deLinea);
    for (const std::string& una : deLinea.faltas) falta("línea: " + una);
    for (const auto& [causa, veces] : deLinea.disculpas) resultado_.disculpas[causa] += veces;
}

ResultadoMundo Mundo::vivir() {
    arrancar();
    for (int64_t i = azar_.entre(1, 6); i > 0; --i) episodio();
    acabar();
    if (resultado_.faltas.empty()) juzgar();
    resultado_.registros = static_cast<int64_t>(indicador_.registros().size());
    resultado_.averiasDeDisco = percances_.deDisco;
    resultado_.averiasDeExcel = percances_.deExcel;
    puesto_.reset();
    return std::move(resultado_);
}

}  // namespace bn::prueba
