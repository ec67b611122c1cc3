// SPDX-License-Identifier: MIT
#include "destinations/xls/Disposicion.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <utility>
#include <vector>

#include "destinations/xls/Bytes.h"
#include "destinations/xls/Edicion.h"

namespace bn::xls {
namespace {

constexpr uint16_t kStandardWidth = 0x0099;
constexpr uint32_t kOculta = 1;
constexpr uint32_t kAnchoPropio = 2;
constexpr size_t kMaximoSaltos = 1026;
constexpr size_t kLargoSalto = 6;

using CambioDeXf = std::function<uint16_t(uint16_t)>;

// The width a column has by default, which it keeps when it only gets a format of its own.
uint32_t anchoPorDefecto(const Registros& cabeza) {
    const size_t propio = buscarRegistro(cabeza, kStandardWidth);
    if (propio < cabeza.size()) return Vista(cabeza[propio].datos).u16(0);
    const size_t lugar = buscarRegistro(cabeza, id::kDefColWidth);
    const uint32_t letras = lugar < cabeza.size() ? Vista(cabeza[lugar].datos).u16(0) : 8U;
    const uint32_t pixeles = (letras * 7 + 5 + 7) / 8 * 8;
    return std::min<uint32_t>(pixeles * 256 / 7, 0xFFFF);
}

struct Columna {
    uint16_t primera = 0;
    uint16_t ultima = 0;
    uint16_t ancho = 0;
    uint16_t xf = kXfPorDefecto;
    uint16_t opciones = 0;
    std::string resto = std::string(2, '\0');
};

Columna leerColumna(const std::string& registro) {
    const Vista datos(registro);
    return {datos.u16(0), datos.u16(2), datos.u16(4),
            datos.u16(6), datos.u16(8), std::string(datos.desde(10))};
}

Registro hacerColumna(const Columna& columna) {
    Registro registro{id::kColInfo, {}};
    poner16(registro.datos, columna.primera);
    poner16(registro.datos, columna.ultima);
    poner16(registro.datos, columna.ancho);
    poner16(registro.datos, columna.xf);
    poner16(registro.datos, columna.opciones);
    registro.datos += columna.resto;
    return registro;
}

// Where the record of a column that has none yet belongs.
size_t sitioDeColumna(const Registros& cabeza, int32_t numero) {
    size_t sitio = cabeza.size();
    bool hay = false;
    for (size_t i = 0; i < cabeza.size(); ++i) {
        if (cabeza[i].id != id::kColInfo) continue;
        const bool delante = Vista(cabeza[i].datos).u16(0) < numero;
        if (!hay || delante) sitio = delante ? i + 1 : i;
        hay = true;
    }
    if (hay) return sitio;
    if (const auto tras = trasUltimo(cabeza, {id::kDefColWidth})) return *tras;
    return buscarRegistro(cabeza, id::kDimensions);
}

// Gives one column a record of its own, cut out of a wider one's, and lets cambiar change it.
void cambiarColumna(Hoja& hoja, int32_t numero, const std::function<void(Columna&)>& cambiar) {
    Registros& cabeza = hoja.celdas->cabeza();
    const auto columna = static_cast<uint16_t>(numero);
    for (size_t i = 0; i < cabeza.size(); ++i) {
        if (cabeza[i].id != id::kColInfo) continue;
        const Columna vieja = leerColumna(cabeza[i].datos);
        if (numero < vieja.primera || numero > vieja.ultima) continue;
        Registros nuevos;
        Columna parte = vieja;
        parte.ultima = static_cast<uint16_t>(columna - 1);
        if (vieja.primera < columna) nuevos.push_back(hacerColumna(parte));
        parte = vieja;
        parte.primera = parte.ultima = columna;
        cambiar(parte);
        nuevos.push_back(hacerColumna(parte));
        parte = vieja;
        parte.primera = static_cast<uint16_t>(columna + 1);
        if (vieja.ultima > columna) nuevos.push_back(hacerColumna(parte));
        const auto hueco = cabeza.erase(cabeza.begin() + static_cast<ptrdiff_t>(i));
        cabeza.insert(hueco, nuevos.begin(), nuevos.end());
        return;
    }
    Columna nueva;
    nueva.primera = nueva.ultima = columna;
    nueva.ancho = static_cast<uint16_t>(anchoPorDefecto(cabeza));
    cambiar(nueva);
    const auto sitio = static_cast<ptrdiff_t>(sitioDeColumna(cabeza, numero));
    cabeza.insert(cabeza.begin() + sitio, hacerColumna(nueva));
}

void ponerXf(Hoja& hoja, Celda& celda, uint16_t xf) {
    celda.xf = xf;
    if (celda.tipo == TipoCelda::kCruda) cambiar16(hoja.celdas->tabla().crudo(celda), 8, xf);
}

// A row with a format of its own hides the column's: where they cross a cell must carry the new
// one.
void cambiarColumnas(Hoja& hoja, const Area& area, const CambioDeXf& cambio) {
    for (int32_t i = area.columna0; i <= area.columna1; ++i) {
        cambiarColumna(hoja, i, [&](Columna& columna) { columna.xf = cambio(columna.xf); });
    }
    TablaDeCeldas& tabla = hoja.celdas->tabla();
    for (int32_t i = 0; i < tabla.cuantasFilas(); ++i) {
        Fila* fila = tabla.filaEnMemoria(i);
        if (fila == nullptr) continue;
        uint16_t xfFila = 0;
        const bool propio = fila->formatoPropio(xfFila);
        for (int32_t j = area.columna0; propio && j <= area.columna1; ++j)
            tabla.crear(i, j, xfFila);
        for (Celda& celda : fila->celdas) {
            if (area.contiene(i, celda.columna)) ponerXf(hoja, celda, cambio(celda.xf));
        }
    }
    hoja.celdas->releerColumnas();
}

void cambiarFila(Hoja& hoja, int32_t numero, const CambioDeXf& cambio) {
    constexpr uint16_t kFormatoPropio = 0x80;
    TablaDeCeldas& tabla = hoja.celdas->tabla();
    Fila& fila = tabla.crearFila(numero);
    std::string datos(fila.registro.data(), fila.registro.size());
    if (!fila.tieneRegistro) {
        const Registros& cabeza = hoja.celdas->cabeza();
        const size_t alto = buscarRegistro(cabeza, id::kDefaultRowHeight);
        datos.assign(Fila::kLargoRegistro, '\0');
        cambiar16(datos, 0, static_cast<uint32_t>(numero));
        cambiar16(datos, 6, alto < cabeza.size() ? Vista(cabeza[alto].datos).u16(2) : 255U);
        cambiar16(datos, 12, 0x100);
        cambiar16(datos, 14, kXfPorDefecto);
    }
    uint16_t xf = kXfPorDefecto;
    fila.formatoPropio(xf);
    const uint32_t resto = Vista(datos).u16(14) & 0xF000U;
    cambiar16(datos, 12, Vista(datos).u16(12) | kFormatoPropio);
    cambiar16(datos, 14, cambio(xf) | resto);
    std::copy(datos.begin(), datos.end(), fila.registro.begin());
    fila.tieneRegistro = true;
    for (Celda& celda : fila.celdas) ponerXf(hoja, celda, cambio(celda.xf));
}

void cambiarFormato(Hoja& hoja, const Area& area, const CambioDeXf& cambio) {
    exigirSinProteccion(hoja);
    hoja.libro->tocar(hoja);
    if (area.columnasEnteras()) {
        cambiarColumnas(hoja, area, cambio);
        return;
    }
    for (int32_t i = area.fila0; i <= area.fila1; ++i) {
        if (area.filasEnteras()) {
            cambiarFila(hoja, i, cambio);
            continue;
        }
        for (int32_t j = area.columna0; j <= area.columna1; ++j) {
            const uint16_t heredado = hoja.celdas->xfHeredado(i, j);
            Celda& celda = hoja.celdas->tabla().crear(i, j, heredado);
            ponerXf(hoja, celda, cambio(celda.xf));
        }
    }
}

}  // namespace

void anchoDeColumnas(Hoja& hoja, const Area& area, double ancho) {
    if (!(ancho >= 0 && ancho <= 255)) rechazar("El ancho de una columna va de 0 a 255.");
    exigirSinProteccion(hoja);
    hoja.libro->tocar(hoja);
    const auto unidades = static_cast<uint16_t>(std::lround(ancho * 256));
    for (int32_t i = area.columna0; i <= area.columna1; ++i) {
        cambiarColumna(hoja, i, [&](Columna& columna) {
            const uint32_t otras = columna.opciones & ~kOculta;
            columna.ancho = unidades;
            columna.opciones =
                static_cast<uint16_t>(otras | kAnchoPropio | (unidades == 0 ? kOculta : 0));
        });
    }
    hoja.celdas->releerColumnas();
}

void alinear(Hoja& hoja, const Area& area, Alineacion alineacion) {
    cambiarFormato(hoja, area, [&](uint16_t xf) {
        return hoja.libro->formatos().conAlineacion(xf, static_cast<uint8_t>(alineacion));
    });
}

void formatoNumerico(Hoja& hoja, const Area& area, const std::string& codigo) {
    cambiarFormato(hoja, area,
                   [&](uint16_t xf) { return hoja.libro->formatos().conFormato(xf, codigo); });
}

void saltoDePagina(Hoja& hoja, int32_t fila) {
    if (fila <= 0) rechazar("No se puede poner un salto de página encima de la primera fila.");
    Registros& cabeza = hoja.celdas->cabeza();
    size_t lugar = buscarRegistro(cabeza, id::kHorizontalPageBreaks);
    std::vector<std::string> saltos;
    if (lugar < cabeza.size()) {
        const Vista datos(cabeza[lugar].datos);
        for (size_t i = 0; i < datos.u16(0); ++i) {
            saltos.emplace_back(datos.trozo(2 + kLargoSalto * i, kLargoSalto));
            if (Vista(saltos.back()).u16(0) == fila) return;
        }
    }
    if (saltos.size() >= kMaximoSaltos) rechazar("La hoja no admite más saltos de página.");
    hoja.libro->tocar(hoja);
    std::string nuevo;
    poner16(nuevo, static_cast<uint32_t>(fila));
    poner32(nuevo, 0xFFU << 16);
    const auto sitio = std::find_if(saltos.begin(), saltos.end(), [&](const std::string& otro) {
        return Vista(otro).u16(0) > fila;
    });
    saltos.insert(sitio, std::move(nuevo));
    std::string datos;
    poner16(datos, static_cast<uint32_t>(saltos.size()));
    for (const std::string& salto : saltos) datos += salto;
    if (lugar == cabeza.size()) {
        lugar = trasUltimo(cabeza, {id::kWsBool, id::kDefaultRowHeight}).value_or(1);
        cabeza.insert(cabeza.begin() + static_cast<ptrdiff_t>(lugar),
                      Registro{id::kHorizontalPageBreaks, {}});
    }
    cabeza[lugar].datos = std::move(datos);
}

}  // namespace bn::xls
