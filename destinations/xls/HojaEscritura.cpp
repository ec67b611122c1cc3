// SPDX-License-Identifier: MIT
#include <algorithm>

#include "destinations/xls/Bytes.h"
#include "destinations/xls/HojaDeCeldas.h"

namespace bn::xls {
namespace {

constexpr int32_t kFilasPorBloque = 32;
constexpr uint32_t kAltoPorDefecto = 255;

void ponerCabezaDeCelda(std::string& salida, uint16_t id, size_t largo, int32_t fila,
                        const Celda& celda) {
    poner16(salida, id);
    poner16(salida, static_cast<uint32_t>(largo));
    poner16(salida, static_cast<uint32_t>(fila));
    poner16(salida, celda.columna);
    poner16(salida, celda.xf);
}

void ponerSola(std::string& salida, int32_t fila, const Celda& celda, const TablaDeCeldas& tabla) {
    switch (celda.tipo) {
        case TipoCelda::kVacia:
            ponerCabezaDeCelda(salida, id::kBlank, 6, fila, celda);
            return;
        case TipoCelda::kRk:
            ponerCabezaDeCelda(salida, id::kRk, 10, fila, celda);
            poner32(salida, static_cast<uint32_t>(celda.valor));
            return;
        case TipoCelda::kNumero:
            ponerCabezaDeCelda(salida, id::kNumber, 14, fila, celda);
            poner64(salida, celda.valor);
            return;
        case TipoCelda::kTexto:
            ponerCabezaDeCelda(salida, id::kLabelSst, 10, fila, celda);
            poner32(salida, static_cast<uint32_t>(celda.valor));
            return;
        case TipoCelda::kLogica:
            ponerCabezaDeCelda(salida, id::kBoolErr, 8, fila, celda);
            poner16(salida, static_cast<uint32_t>(celda.valor));
            return;
        case TipoCelda::kCruda:
            salida += tabla.crudo(celda);
            return;
    }
}

// Neighbouring short numbers, and neighbouring empty cells, share one record.
void ponerJuntas(std::string& salida, int32_t fila, const Celda* primera, size_t cuantas) {
    const bool numeros = primera->tipo == TipoCelda::kRk;
    poner16(salida, numeros ? id::kMulRk : id::kMulBlank);
    poner16(salida, static_cast<uint32_t>(6 + cuantas * (numeros ? 6 : 2)));
    poner16(salida, static_cast<uint32_t>(fila));
    poner16(salida, primera->columna);
    for (size_t i = 0; i < cuantas; ++i) {
        poner16(salida, primera[i].xf);
        if (numeros) poner32(salida, static_cast<uint32_t>(primera[i].valor));
    }
    poner16(salida, primera[cuantas - 1].columna);
}

void ponerCeldas(std::string& salida, int32_t fila, const std::vector<Celda>& celdas,
                 const TablaDeCeldas& tabla) {
    for (size_t i = 0; i < celdas.size();) {
        const TipoCelda tipo = celdas[i].tipo;
        size_t fin = i + 1;
        if (tipo == TipoCelda::kRk || tipo == TipoCelda::kVacia) {
            while (fin < celdas.size() && celdas[fin].tipo == tipo &&
                   celdas[fin].columna == celdas[fin - 1].columna + 1) {
                ++fin;
            }
        }
        if (fin - i > 1) {
            ponerJuntas(salida, fila, &celdas[i], fin - i);
        } else {
            ponerSola(salida, fila, celdas[i], tabla);
        }
        i = fin;
    }
}

std::string marcaDePendiente() {
    std::string bytes;
    ponerRegistro(bytes, id::kUncalced, std::string_view("\0\0", 2));
    return bytes;
}

}  // namespace

/// Puts a worksheet's substream together again.
class EscritorHoja {
 public:
    EscritorHoja(const HojaDeCeldas& hoja, size_t posicion)
        : hoja_(hoja), tabla_(hoja.tabla_), posicion_(posicion) {
        medir();
    }

    std::string escribir(bool pendiente) {
        escribirCabeza(pendiente);
        for (int32_t fila = primera_; fila < fin_; fila += kFilasPorBloque) {
            escribirBloque(fila, std::min(fila + kFilasPorBloque, fin_));
        }
        for (size_t i = 0; tieneIndice_ && i < dbcell_.size(); ++i) {
            cambiar32(salida_, posIndice_ + 16 + 4 * i, dbcell_[i]);
        }
        escribirCola();
        return std::move(salida_);
    }

 private:
    void medir() {
        primera_ = fin_ = 0;
        bool hay = false;
        for (int32_t i = 0; i < tabla_.cuantasFilas(); ++i) {
            const Fila& fila = *tabla_.fila(i);
            if (!fila.existe()) continue;
            if (!hay) primera_ = i;
            hay = true;
            fin_ = i + 1;
            if (fila.celdas.empty()) continue;
            columna0_ = std::min<uint32_t>(columna0_, fila.celdas.front().columna);
            columnaFin_ = std::max<uint32_t>(columnaFin_, fila.celdas.back().columna + 1U);
        }
        for (int32_t i = primera_; i < fin_; i += kFilasPorBloque) {
            if (hayFilas(i, std::min(i + kFilasPorBloque, fin_))) ++bloques_;
        }
        const size_t alto = buscarRegistro(hoja_.cabeza_, id::kDefaultRowHeight);
        if (alto < hoja_.cabeza_.size()) alto_ = Vista(hoja_.cabeza_[alto].datos).u16(2);
    }

    bool hayFilas(int32_t desde, int32_t hasta) const {
        for (int32_t i = desde; i < hasta; ++i) {
            if (tabla_.fila(i)->existe()) return true;
        }
        return false;
    }

    void escribirCabeza(bool pendiente) {
        const Registros& cabeza = hoja_.cabeza_;
        const bool marcada = buscarRegistro(cabeza, id::kUncalced) < cabeza.size();
        size_t posColumnas = 0;
        for (size_t i = 0; i < cabeza.size(); ++i) {
            if (cabeza[i].id == id::kIndex) {
                tieneIndice_ = true;
                posIndice_ = salida_.size() + 4;
                ponerRegistro(salida_, id::kIndex, std::string(16 + 4 * bloques_, '\0'));
                continue;
            }
            if (cabeza[i].id == id::kDefColWidth) posColumnas = posicion_ + salida_.size();
            ponerConTamano(cabeza[i]);
            if (i == 0 && pendiente && !marcada) salida_ += marcaDePendiente();
        }
        if (!tieneIndice_) return;
        cambiar32(salida_, posIndice_ + 4, static_cast<uint32_t>(primera_));
        cambiar32(salida_, posIndice_ + 8, static_cast<uint32_t>(fin_));
        cambiar32(salida_, posIndice_ + 12, static_cast<uint32_t>(posColumnas));
    }

    // A chart embedded in the sheet has a size of its own, which is none of the table's.
    void escribirCola() {
        int profundidad = 1;
        for (const Registro& registro : hoja_.cola_) {
            if (registro.id == id::kBof) ++profundidad;
            if (profundidad == 1) {
                ponerConTamano(registro);
            } else {
                ponerRegistro(salida_, registro.id, registro.datos);
            }
            if (registro.id == id::kEof) --profundidad;
        }
    }

    void ponerConTamano(const Registro& registro) {
        if (registro.id == id::kDimensions && columnaFin_ > 0) {
            ponerRegistro(salida_, id::kDimensions, dimensiones(registro.datos));
        } else {
            ponerRegistro(salida_, registro.id, registro.datos);
        }
    }

    // The area only grows: a larger one that was there stays.
    std::string dimensiones(std::string datos) const {
        const Vista vieja(datos);
        auto fila0 = static_cast<uint32_t>(primera_);
        auto filaFin = static_cast<uint32_t>(fin_);
        uint32_t columna0 = columna0_;
        uint32_t columnaFin = columnaFin_;
        if (vieja.u32(4) != 0 || vieja.u16(10) != 0) {
            fila0 = std::min(fila0, vieja.u32(0));
            filaFin = std::max(filaFin, vieja.u32(4));
            columna0 = std::min<uint32_t>(columna0, vieja.u16(8));
            columnaFin = std::max<uint32_t>(columnaFin, vieja.u16(10));
        }
        cambiar32(datos, 0, fila0);
        cambiar32(datos, 4, filaFin);
        cambiar16(datos, 8, columna0);
        cambiar16(datos, 10, columnaFin);
        return datos;
    }

    void escribirBloque(int32_t desde, int32_t hasta) {
        if (!hayFilas(desde, hasta)) return;
        const size_t inicio = salida_.size();
        std::vector<uint32_t> saltos;
        size_t segundaFila = 0;
        for (int32_t i = desde; i < hasta; ++i) {
            if (!tabla_.fila(i)->existe()) continue;
            escribirFila(i);
            if (segundaFila == 0) segundaFila = salida_.size();
        }
        size_t anterior = segundaFila;
        for (int32_t i = desde; i < hasta; ++i) {
            if (!tabla_.fila(i)->existe()) continue;
            saltos.push_back(static_cast<uint32_t>(salida_.size() - anterior));
            anterior = salida_.size();
            ponerCeldas(salida_, i, tabla_.fila(i)->celdas, tabla_);
        }
        if (tieneIndice_) escribirDbCell(inicio, saltos);
    }

    void escribirDbCell(size_t inicio, const std::vector<uint32_t>& saltos) {
        dbcell_.push_back(static_cast<uint32_t>(posicion_ + salida_.size()));
        std::string datos;
        poner32(datos, static_cast<uint32_t>(salida_.size() - inicio));
        for (const uint32_t salto : saltos) poner16(datos, salto);
        ponerRegistro(salida_, id::kDbCell, datos);
    }

    void escribirFila(int32_t numero) {
        const Fila& fila = *tabla_.fila(numero);
        std::string datos(fila.registro.data(), fila.registro.size());
        if (!fila.tieneRegistro) {
            datos.clear();
            poner16(datos, static_cast<uint32_t>(numero));
            poner32(datos, 0);
            poner16(datos, alto_);
            poner32(datos, 0);
            poner32(datos, 0x100 | uint32_t{kXfPorDefecto} << 16);
        }
        if (!fila.celdas.empty()) {
            const Vista vieja(datos);
            uint32_t primera = fila.celdas.front().columna;
            uint32_t ultima = fila.celdas.back().columna + 1U;
            if (vieja.u16(2) != vieja.u16(4)) {
                primera = std::min<uint32_t>(primera, vieja.u16(2));
                ultima = std::max<uint32_t>(ultima, vieja.u16(4));
            }
            cambiar16(datos, 2, primera);
            cambiar16(datos, 4, ultima);
        }
        ponerRegistro(salida_, id::kRow, datos);
    }

    const HojaDeCeldas& hoja_;
    const TablaDeCeldas& tabla_;
    size_t posicion_;
    std::string salida_;
    int32_t primera_ = 0;
    int32_t fin_ = 0;
    uint32_t columna0_ = kColumnas;
    uint32_t columnaFin_ = 0;
    uint32_t alto_ = kAltoPorDefecto;
    size_t bloques_ = 0;
    bool tieneIndice_ = false;
    size_t posIndice_ = 0;
    std::vector<uint32_t> dbcell_;
};

std::string HojaDeCeldas::serializar(size_t posicion, bool pendienteDeCalculo) const {
    return EscritorHoja(*this, posicion).escribir(pendienteDeCalculo && tieneFormulas_);
}

std::string moverSubflujo(std::string_view subflujo, size_t antes, size_t ahora,
                          bool pendienteDeCalculo) {
    LectorRegistros lector(subflujo);
    const auto bof = lector.siguiente();
    std::string salida(subflujo.substr(0, bof->despues()));
    std::string marca = pendienteDeCalculo ? marcaDePendiente() : std::string();
    size_t posIndice = 0;
    size_t largoIndice = 0;
    int profundidad = 1;
    while (const auto registro = lector.siguiente()) {
        if (registro->id == id::kBof) ++profundidad;
        if (registro->id == id::kEof) --profundidad;
        if (profundidad != 1) continue;
        if (registro->id == id::kUncalced) marca.clear();
        if (registro->id == id::kIndex && posIndice == 0) {
            posIndice = registro->posicion + 4;
            largoIndice = registro->datos.size();
        }
    }
    salida += marca;
    salida += subflujo.substr(bof->despues());
    const auto delta = static_cast<uint32_t>(ahora - antes + marca.size());
    for (size_t pos = 12; pos + 4 <= largoIndice; pos += 4) {
        const size_t donde = posIndice + marca.size() + pos;
        const uint32_t valor = Vista(salida).u32(donde);
        if (valor != 0) cambiar32(salida, donde, valor + delta);
    }
    return salida;
}

}  // namespace bn::xls
