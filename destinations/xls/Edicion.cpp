// SPDX-License-Identifier: MIT
#include "destinations/xls/Edicion.h"

#include <bit>
#include <cmath>
#include <utility>

#include "destinations/xls/Bytes.h"
#include "destinations/xls/EntradaTecleada.h"
#include "destinations/xls/Formulas.h"
#include "destinations/xls/Numeros.h"
#include "destinations/xls/TextoBiff.h"

namespace bn::xls {
namespace {

constexpr const char* kFormatoFechaHora = "dd/mm/yyyy hh:mm";
constexpr double kDiasHasta1904 = 1462;

const char* textoDeError(uint8_t codigo) {
    switch (codigo) {
        case 0x00:
            return "#NULL!";
        case 0x07:
            return "#DIV/0!";
        case 0x0F:
            return "#VALUE!";
        case 0x17:
            return "#REF!";
        case 0x1D:
            return "#NAME?";
        case 0x24:
            return "#NUM!";
        default:
            return "#N/A";
    }
}

Variante leerCruda(Hoja& hoja, const Celda& celda, PosicionCelda posicion) {
    const TablaDeCeldas& tabla = hoja.celdas->tabla();
    if (esFormula(tabla, celda)) return textoDeFormula(hoja, celda, posicion);
    const std::string_view datos = std::string_view(tabla.crudo(celda)).substr(4);
    return leerTexto(datos, 8, Vista(datos).u16(6));
}

/// Puts one value into one cell.
class Escritura {
 public:
    Escritura(Hoja& hoja, int32_t fila, int32_t columna)
        : hoja_(hoja), tabla_(hoja.celdas->tabla()), fila_(fila), columna_(columna) {}

    void operator()(std::monostate) { vaciarla(); }
    void operator()(const std::string& texto) {
        const bool celdaDeTexto = libro().formatos().esTexto(xf());
        const Entrada entrada =
            interpretarEntrada(texto, celdaDeTexto, libro().fechas1904(), libro().anio());
        std::visit(*this, entrada);
    }
    void operator()(double numero) { ponerNumero(numero, xf()); }
    void operator()(float numero) { ponerNumero(comoDecimal(numero), xf()); }
    void operator()(int32_t numero) { ponerNumero(numero, xf()); }
    void operator()(bool valor) { poner(TipoCelda::kLogica, valor ? 1 : 0, xf()); }
    void operator()(FechaOle fecha) {
        const double serie = libro().fechas1904() ? fecha.dias - kDiasHasta1904 : fecha.dias;
        exigirFinito(serie);
        ponerNumero(serie, siEsGeneral(kFormatoFechaHora));
    }

    void operator()(const EntradaVacia&) { vaciarla(); }
    void operator()(const EntradaTexto& entrada) {
        if (entrada.texto.empty()) {
            vaciarla();
            return;
        }
        const uint16_t formato = xf();
        const uint32_t numero = libro().cadenas().agregar(entrada.texto);
        poner(TipoCelda::kTexto, numero, formato);
        libro().cadenas().contarUso(1);
    }
    void operator()(const EntradaNumero& entrada) {
        exigirFinito(entrada.valor);
        ponerNumero(entrada.valor, entrada.formato.empty() ? xf() : siEsGeneral(entrada.formato));
    }
    void operator()(const EntradaLogica& entrada) { (*this)(entrada.valor); }
    void operator()(const EntradaError& entrada) {
        poner(TipoCelda::kLogica, entrada.codigo | 0x100U, xf());
    }
    void operator()(const EntradaFormula& entrada) {
        const uint16_t formato = xf();
        const uint64_t numero = tabla_.guardarCrudo(
            registroDeFormula(hoja_, entrada.texto, {fila_, columna_}, formato));
        poner(TipoCelda::kCruda, numero, formato);
        hoja_.celdas->anotarFormula();
    }

    void vaciarla() {
        const Celda* vieja = tabla_.buscar(fila_, columna_);
        if (vieja == nullptr) return;
        const uint16_t formato = vieja->xf;
        soltar();
        if (formato == hoja_.celdas->xfHeredado(fila_, columna_)) {
            tabla_.borrar(fila_, columna_);
        } else {
            poner(TipoCelda::kVacia, 0, formato);
        }
    }

 private:
    Libro& libro() { return *hoja_.libro; }

    uint16_t xf() const {
        const Celda* vieja = std::as_const(tabla_).buscar(fila_, columna_);
        return vieja != nullptr ? vieja->xf : hoja_.celdas->xfHeredado(fila_, columna_);
    }

    uint16_t siEsGeneral(const std::string& formato) {
        const uint16_t actual = xf();
        if (!libro().formatos().esGeneral(actual)) return actual;
        return libro().formatos().conFormato(actual, formato);
    }

    static void exigirFinito(double numero) {
        if (!std::isfinite(numero))
            rechazar("Una celda no puede guardar un valor que no es finito.");
    }

    void ponerNumero(double numero, uint16_t formato) {
        exigirFinito(numero);
        if (const auto rk = aRk(numero)) {
            poner(TipoCelda::kRk, *rk, formato);
        } else {
            poner(TipoCelda::kNumero, std::bit_cast<uint64_t>(numero), formato);
        }
    }

    void poner(TipoCelda tipo, uint64_t valor, uint16_t formato) {
        soltar();
        Celda& celda = tabla_.crear(fila_, columna_, formato);
        celda.tipo = tipo;
        celda.valor = valor;
        celda.xf = formato;
    }

    // What the old content leaves behind: its use of a text, formulas that share its tokens.
    void soltar() {
        if (!hoja_.celdas->areasIndivisibles().empty()) {
            exigirDivisible(hoja_, {fila_, fila_, columna_, columna_});
        }
        Celda* vieja = tabla_.buscar(fila_, columna_);
        if (vieja == nullptr) return;
        if (vieja->tipo == TipoCelda::kTexto) libro().cadenas().contarUso(-1);
        if (vieja->tipo == TipoCelda::kCruda) {
            if (esFormula(tabla_, *vieja)) soltarCompartida(hoja_, *vieja, {fila_, columna_});
            tabla_.crudo(*vieja).clear();
        }
        vieja->tipo = TipoCelda::kVacia;
    }

    Hoja& hoja_;
    TablaDeCeldas& tabla_;
    int32_t fila_;
    int32_t columna_;
};

}  // namespace

Variante leerCelda(Hoja& hoja, int32_t fila, int32_t columna) {
    const Celda* celda = std::as_const(hoja.celdas->tabla()).buscar(fila, columna);
    if (celda == nullptr) return std::string();
    switch (celda->tipo) {
        case TipoCelda::kRk:
            return deRk(static_cast<uint32_t>(celda->valor));
        case TipoCelda::kNumero:
            return std::bit_cast<double>(celda->valor);
        case TipoCelda::kTexto:
            return hoja.libro->cadenas().texto(static_cast<uint32_t>(celda->valor));
        case TipoCelda::kLogica:
            if ((celda->valor & 0xFF00) == 0) return celda->valor != 0;
            return std::string(textoDeError(static_cast<uint8_t>(celda->valor)));
        case TipoCelda::kCruda:
            return leerCruda(hoja, *celda, {fila, columna});
        case TipoCelda::kVacia:
            break;
    }
    return std::string();
}

void exigirSinProteccion(const Hoja& hoja) {
    if (!hoja.celdas->protegida()) return;
    rechazar("La hoja \"" + hoja.nombre +
             "\" está protegida. Quítele la protección, o desbloquee las celdas en que se "
             "escribe.");
}

void escribirCelda(Hoja& hoja, int32_t fila, int32_t columna, const Variante& valor) {
    const HojaDeCeldas& celdas = *hoja.celdas;
    const Celda* vieja = celdas.tabla().buscar(fila, columna);
    const uint16_t xf = vieja != nullptr ? vieja->xf : celdas.xfHeredado(fila, columna);
    if (celdas.protegida() && hoja.libro->formatos().bloquea(xf)) exigirSinProteccion(hoja);
    hoja.libro->tocarContenido(hoja);
    std::visit(Escritura(hoja, fila, columna), valor);
}

void vaciar(Hoja& hoja, const Area& area) {
    exigirSinProteccion(hoja);
    hoja.libro->tocarContenido(hoja);
    exigirDivisible(hoja, area);
    TablaDeCeldas& tabla = hoja.celdas->tabla();
    for (int32_t i = area.fila0; i <= area.fila1 && i < tabla.cuantasFilas(); ++i) {
        std::vector<uint16_t> columnas;
        for (const Celda& celda : std::as_const(tabla).fila(i)->celdas) {
            if (area.contiene(i, celda.columna)) columnas.push_back(celda.columna);
        }
        for (const uint16_t columna : columnas) Escritura(hoja, i, columna).vaciarla();
    }
}

}  // namespace bn::xls
