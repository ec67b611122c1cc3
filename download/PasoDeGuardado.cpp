// SPDX-License-Identifier: MIT
#include "download/PasoDeGuardado.h"

#include <limits>
#include <stdexcept>
#include <string>
#include <variant>

#include "config/Codificacion.h"
#include "config/UtilTexto.h"
#include "download/CamposPesada.h"
#include "download/LineaTexto.h"

namespace bn {

namespace {

// The user defines it in the workbook, to say where to write; the program only reads it.
constexpr const char* kNombreUltimaFila = "bnUltima";

int16_t filaDe16Bits(double fila) {
    using Fila = std::numeric_limits<int16_t>;
    if (!(fila >= Fila::min() && fila <= Fila::max())) {
        throw std::overflow_error(
            "La hoja de cálculo no admite más pesadas: la última fila que se puede escribir es "
            "la " +
            std::to_string(Fila::max()));
    }
    return static_cast<int16_t>(fila);
}

bool estaVacia(const Variante& celda) {
    if (const auto* texto = std::get_if<std::string>(&celda)) return texto->empty();
    return std::holds_alternative<std::monostate>(celda);
}

/// The spreadsheet takes UTF-8; the plate came in the line's own bytes.
Variante valorParaHoja(const pesaDX5& pesada, int32_t campo) {
    Variante valor = valorDeCampo(pesada, campo);
    if (auto* texto = std::get_if<std::string>(&valor)) *texto = cp1252AUtf8(*texto);
    return valor;
}

}  // namespace

PasoDeGuardado::PasoDeGuardado(Plataforma& plataforma, const Setup& cfg, XCel& hojaDeCalculo,
                               sacoTramas& saco)
    : cfg_(cfg), hojaDeCalculo_(hojaDeCalculo), saco_(saco), pesada_(plataforma) {}

void PasoDeGuardado::ejecutar() {
    for (std::string datos = saco_.Recupero(); !datos.empty(); datos = saco_.Recupero()) {
        guardar(datos);
    }
    if (!abiertos_) return;
    if (cfg_.UsoExcel()) hojaDeCalculo_.Guardar({});
    if (texto_) texto_->cerrar();
}

void PasoDeGuardado::guardar(const std::string& datos) {
    if (!abiertos_) abrirDestinos();
    // Whatever was acknowledged is written, even if it does not parse: empty is better than
    // missing.
    pesada_.DatosValidos(datos);
    if (cfg_.UsoExcel()) {
        escribirFila();
        pasarDeFila();
    }
    if (cfg_.UsoTexto()) escribirLinea();
}

void PasoDeGuardado::abrirDestinos() {
    if (cfg_.UsoExcel()) {
        hojaDeCalculo_.AbrirParaEscribir(cfg_.LibroExcel(), cfg_.HojaExcel(), cfg_.UsoExcel());
        buscarPrimeraFila();
    }
    if (cfg_.UsoTexto()) texto_.emplace(ficheros::aRuta(cfg_.ArchivoTexto()));
    abiertos_ = true;
}

void PasoDeGuardado::escribirFila() {
    for (int32_t campo = 0; campo < kCamposPesada; ++campo) {
        const int16_t columna = cfg_.ColumnaExcel(campo);
        if (columna > 0) hojaDeCalculo_.Celda(fila_, columna, valorParaHoja(pesada_, campo));
    }
}

void PasoDeGuardado::escribirLinea() {
    // Switched on since the pass began: to leave this weighing out in silence would lose it.
    if (!texto_) throw std::logic_error("El fichero de texto no está abierto");
    texto_->escribir(lineaTexto(pesada_, cfg_) + "\r\n");
}

void PasoDeGuardado::pasarDeFila() { fila_ = filaDe16Bits(fila_ + 1.0); }

void PasoDeGuardado::buscarPrimeraFila() {
    const Variante marcada = hojaDeCalculo_.ValorNombre(kNombreUltimaFila);
    if (const auto* texto = std::get_if<std::string>(&marcada)) {
        fila_ = filaDe16Bits(utiltexto::redondearPar(utiltexto::numeroInicial(*texto)));
        return;
    }
    fila_ = 1;
    while (!filaVacia()) pasarDeFila();
}

/// Only the columns of the eight fields count: the others may hold anything.
bool PasoDeGuardado::filaVacia() {
    for (int32_t campo = 0; campo < kCamposPesada; ++campo) {
        const int16_t columna = cfg_.ColumnaExcel(campo);
        if (columna > 0 && !estaVacia(hojaDeCalculo_.Celda(fila_, columna))) return false;
    }
    return true;
}

}  // namespace bn
