// SPDX-License-Identifier: MIT
#include <algorithm>

#include "destinations/xls/Bytes.h"
#include "destinations/xls/HojaDeCeldas.h"
#include "destinations/xls/TextoBiff.h"

namespace bn::xls {

/// Sorts the records of a worksheet into head, cell table and tail.
class LectorHoja {
 public:
    LectorHoja(HojaDeCeldas& hoja, const Formatos& formatos, const Cadenas& cadenas)
        : hoja_(hoja), formatos_(formatos.cuantos()), cadenas_(cadenas.cuantas()) {}

    void leer(std::string_view subflujo) {
        LectorRegistros lector(subflujo);
        int profundidad = 0;
        while (const auto registro = lector.siguiente()) {
            if (registro->id == id::kBof) ++profundidad;
            const bool propio = profundidad == 1;
            if (registro->id == id::kEof) --profundidad;
            if (propio && registro->id == id::kProtect) {
                hoja_.protegida_ = hoja_.protegida_ || estaPuesta(registro->datos);
            }
            if (!propio || !leerDeTabla(*registro)) dejar(*registro, propio);
        }
    }

 private:
    // True when the record belongs to the cell table.
    bool leerDeTabla(const RegistroVisto& registro) {
        const Vista datos(registro.datos);
        switch (registro.id) {
            case id::kRow:
                leerFila(datos);
                return true;
            case id::kRk:
                celda(datos, TipoCelda::kRk).valor = datos.u32(6);
                return true;
            case id::kNumber:
                celda(datos, TipoCelda::kNumero).valor = datos.u64(6);
                return true;
            case id::kBlank:
                celda(datos, TipoCelda::kVacia);
                return true;
            case id::kBoolErr:
                celda(datos, TipoCelda::kLogica).valor = datos.u16(6);
                return true;
            case id::kLabelSst:
                leerTexto(datos);
                return true;
            case id::kMulRk:
                leerVarias(datos, 6, TipoCelda::kRk);
                return true;
            case id::kMulBlank:
                leerVarias(datos, 2, TipoCelda::kVacia);
                return true;
            case id::kLabel:
            case id::kRString:
            case id::kFormula:
                leerCruda(registro);
                return true;
            case id::kString:
            case id::kShrFmla:
            case id::kArray:
            case id::kTable:
            case id::kContinue:
                return anexar(registro);
            case id::kDbCell:
                cruda_ = kNinguna;
                return true;
            default:
                return false;
        }
    }

    void leerFila(const Vista& datos) {
        cruda_ = kNinguna;
        enTabla_ = true;
        Fila& fila = hoja_.tabla_.crearFila(datos.u16(0));
        const std::string_view bytes = datos.trozo(0, Fila::kLargoRegistro);
        std::copy(bytes.begin(), bytes.end(), fila.registro.begin());
        fila.tieneRegistro = true;
    }

    Celda& celdaEn(uint16_t fila, uint16_t columna, uint16_t xf, TipoCelda tipo) {
        if (columna >= kColumnas) danado("una celda está fuera de la hoja");
        if (xf >= formatos_) danado("una celda pide un formato que no está");
        cruda_ = kNinguna;
        enTabla_ = true;
        Celda& celda = hoja_.tabla_.crear(fila, columna, xf);
        celda.tipo = tipo;
        celda.xf = xf;
        return celda;
    }

    Celda& celda(const Vista& datos, TipoCelda tipo) {
        return celdaEn(datos.u16(0), datos.u16(2), datos.u16(4), tipo);
    }

    void leerTexto(const Vista& datos) {
        const uint32_t numero = datos.u32(6);
        if (numero >= cadenas_) danado("una celda pide un texto que no está");
        celda(datos, TipoCelda::kTexto).valor = numero;
    }

    void leerVarias(const Vista& datos, size_t porCelda, TipoCelda tipo) {
        if (datos.size() < 6) danado("faltan bytes");
        const uint16_t primera = datos.u16(2);
        const uint16_t ultima = datos.u16(datos.size() - 2);
        const size_t cuantas = (datos.size() - 6) / porCelda;
        if (ultima < primera || cuantas != size_t{ultima} - primera + 1U) {
            danado("una fila de celdas no cuadra");
        }
        for (size_t i = 0; i < cuantas; ++i) {
            const size_t pos = 4 + porCelda * i;
            Celda& celda =
                celdaEn(datos.u16(0), static_cast<uint16_t>(primera + i), datos.u16(pos), tipo);
            celda.valor = tipo == TipoCelda::kRk ? datos.u32(pos + 2) : 0;
        }
    }

    void leerCruda(const RegistroVisto& registro) {
        const Vista datos(registro.datos);
        if (registro.id == id::kFormula) {
            hoja_.tieneFormulas_ = true;
            datos.trozo(22, datos.u16(20));
        } else {
            xls::leerTexto(registro.datos, 8, datos.u16(6));
        }
        std::string bytes;
        ponerRegistro(bytes, registro.id, registro.datos);
        const uint64_t numero = hoja_.tabla_.guardarCrudo(std::move(bytes));
        celda(datos, TipoCelda::kCruda).valor = numero;
        cruda_ = numero;
    }

    // What follows a formula or a long text and belongs to it.
    bool anexar(const RegistroVisto& registro) {
        if (cruda_ == kNinguna) return false;
        Celda anfitriona{cruda_, 0, 0, TipoCelda::kCruda};
        ponerRegistro(hoja_.tabla_.crudo(anfitriona), registro.id, registro.datos);
        if (registro.id == id::kArray || registro.id == id::kTable) {
            const Vista datos(registro.datos);
            hoja_.areas_.push_back({datos.u16(0), datos.u16(2), datos.u8(4), datos.u8(5)});
        }
        return true;
    }

    void dejar(const RegistroVisto& registro, bool propio) {
        cruda_ = kNinguna;
        if (propio) exigirLargo(registro);
        if (!enTabla_ && propio && vaDetras(registro.id)) enTabla_ = true;
        if (!propio) enTabla_ = true;
        Registros& lista = enTabla_ ? hoja_.cola_ : hoja_.cabeza_;
        lista.push_back({registro.id, std::string(registro.datos)});
    }

    // In a sheet without cells, where the table would have ended.
    static bool vaDetras(uint16_t numero) {
        constexpr uint16_t kDetras[] = {
            id::kEof, id::kWindow2, id::kMergedCells, 0x00EC, 0x005D, 0x001C, 0x01B6,
            0x01B0,   0x01B8,       0x01B2,           0x001D, 0x0041, 0x00A0};
        return std::find(std::begin(kDetras), std::end(kDetras), numero) != std::end(kDetras);
    }

    static constexpr uint64_t kNinguna = UINT64_MAX;

    HojaDeCeldas& hoja_;
    size_t formatos_;
    uint32_t cadenas_;
    uint64_t cruda_ = kNinguna;
    bool enTabla_ = false;
};

HojaDeCeldas::HojaDeCeldas(std::string_view subflujo, const Formatos& formatos,
                           const Cadenas& cadenas) {
    LectorHoja(*this, formatos, cadenas).leer(subflujo);
    releerColumnas();
    for (const uint16_t xf : xfColumna_) {
        if (xf != kXfPorDefecto) formatos.exigir(xf);
    }
}

void HojaDeCeldas::releerColumnas() {
    xfColumna_.fill(kXfPorDefecto);
    for (const Registro& registro : cabeza_) {
        if (registro.id != id::kColInfo) continue;
        const Vista datos(registro.datos);
        const int32_t ultima = std::min<int32_t>(datos.u16(2), kColumnas - 1);
        for (int32_t i = datos.u16(0); i <= ultima; ++i) {
            xfColumna_[static_cast<size_t>(i)] = datos.u16(6);
        }
    }
}

uint16_t HojaDeCeldas::xfHeredado(int32_t fila, int32_t columna) const {
    uint16_t xf = xfColumna_[static_cast<size_t>(columna)];
    if (const Fila* entera = tabla_.fila(fila)) entera->formatoPropio(xf);
    return xf;
}

}  // namespace bn::xls
