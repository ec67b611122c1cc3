// SPDX-License-Identifier: MIT
#include <algorithm>
#include <optional>
#include <utility>

#include "destinations/xls/Bytes.h"
#include "destinations/xls/Edicion.h"
#include "destinations/xls/Formulas.h"

namespace bn::xls {
namespace {

constexpr size_t kLargoCombinada = 8;
constexpr size_t kCombinadasPorRegistro = (kMaximoDatos - 2) / kLargoCombinada;

/// A cell on its way to another place: everything needed to put it there.
struct CeldaCopiada {
    PosicionCelda destino;
    Celda celda;
    std::string registros;  // of a cell kept whole
};

struct FilaCopiada {
    int32_t destino = 0;
    Fila fila;  // its record only
};

std::vector<Area> leerCombinadas(const Registros& lista) {
    std::vector<Area> areas;
    int profundidad = 0;
    for (const Registro& registro : lista) {
        if (registro.id == id::kBof) ++profundidad;
        if (registro.id == id::kEof) --profundidad;
        if (registro.id != id::kMergedCells || profundidad > 0) continue;
        const Vista datos(registro.datos);
        for (size_t i = 0; i < datos.u16(0); ++i) {
            const size_t pos = 2 + kLargoCombinada * i;
            areas.push_back(
                {datos.u16(pos), datos.u16(pos + 2), datos.u16(pos + 4), datos.u16(pos + 6)});
        }
    }
    return areas;
}

// A record of their own, behind those there are, keeps the others as they stand.
void anadirCombinadas(Registros& cola, const std::vector<Area>& areas) {
    for (size_t i = 0; i < areas.size(); i += kCombinadasPorRegistro) {
        const size_t fin = std::min(areas.size(), i + kCombinadasPorRegistro);
        Registro nuevo{id::kMergedCells, {}};
        poner16(nuevo.datos, static_cast<uint32_t>(fin - i));
        for (size_t j = i; j < fin; ++j) {
            const Area& area = areas[j];
            for (const int32_t valor : {area.fila0, area.fila1, area.columna0, area.columna1}) {
                poner16(nuevo.datos, static_cast<uint32_t>(valor));
            }
        }
        constexpr uint16_t kPane = 0x0041;
        constexpr uint16_t kSelection = 0x001D;
        const size_t sitio = trasUltimo(cola, {id::kMergedCells})
                                 .value_or(trasUltimo(cola, {id::kWindow2, kPane, kSelection})
                                               .value_or(cola.empty() ? 0 : cola.size() - 1));
        cola.insert(cola.begin() + static_cast<ptrdiff_t>(sitio), std::move(nuevo));
    }
}

/// One copy: what is there is read whole first, so that source and target may overlap.
class Copia {
 public:
    Copia(Hoja& origen, const Area& area, Hoja& destino, int32_t fila, int32_t columna)
        : origen_(origen),
          destino_(destino),
          area_(area),
          filas_(fila - area.fila0),
          columnas_(columna - area.columna0) {
        final_ = {fila, area.fila1 + filas_, columna, area.columna1 + columnas_};
    }

    void hacer() {
        exigirSitio();
        leer();
        origen_.libro->tocarContenido(destino_);
        vaciarDestino();
        for (const FilaCopiada& fila : copiaFilas_) ponerFila(fila);
        for (CeldaCopiada& celda : copiaCeldas_) ponerCelda(celda);
        copiarCombinadas();
    }

 private:
    void exigirSitio() const {
        if (origen_.libro != destino_.libro)
            rechazar("Solo se puede copiar dentro del mismo libro.");
        if (final_.fila1 >= kFilas || final_.columna1 >= kColumnas) {
            rechazar("Lo copiado no cabe en la hoja a partir de ahí.");
        }
    }

    void leer() {
        const TablaDeCeldas& tabla = origen_.celdas->tabla();
        const int32_t ultima = std::min(area_.fila1, tabla.cuantasFilas() - 1);
        for (int32_t i = area_.fila0; i <= ultima; ++i) {
            const Fila& fila = *tabla.fila(i);
            if (area_.filasEnteras() && fila.tieneRegistro) {
                copiaFilas_.push_back({i + filas_, {{}, fila.registro, true}});
            }
            for (const Celda& celda : fila.celdas) {
                if (area_.contiene(i, celda.columna)) leerCelda(i, celda);
            }
        }
    }

    void leerCelda(int32_t fila, const Celda& celda) {
        const TablaDeCeldas& tabla = origen_.celdas->tabla();
        const PosicionCelda desde{fila, celda.columna};
        CeldaCopiada copia{{fila + filas_, celda.columna + columnas_}, celda, {}};
        if (celda.tipo == TipoCelda::kCruda) {
            if (esFormula(tabla, celda)) {
                copia.registros = copiarFormula(origen_, celda, desde, copia.destino);
            } else {
                copia.registros = tabla.crudo(celda);
                cambiar16(copia.registros, 4, static_cast<uint32_t>(copia.destino.fila));
                cambiar16(copia.registros, 6, static_cast<uint32_t>(copia.destino.columna));
            }
        }
        copiaCeldas_.push_back(std::move(copia));
    }

    // The old cells' formats go too, and with whole rows the rows' heights.
    void vaciarDestino() {
        vaciar(destino_, final_);
        TablaDeCeldas& tabla = destino_.celdas->tabla();
        for (int32_t i = final_.fila0; i <= final_.fila1 && i < tabla.cuantasFilas(); ++i) {
            Fila* fila = tabla.filaEnMemoria(i);
            if (fila == nullptr) continue;
            std::erase_if(fila->celdas,
                          [&](const Celda& celda) { return final_.contiene(i, celda.columna); });
            if (area_.filasEnteras()) fila->tieneRegistro = false;
        }
    }

    void ponerFila(const FilaCopiada& copia) {
        Fila& fila = destino_.celdas->tabla().crearFila(copia.destino);
        const std::array<char, 2> numero{static_cast<char>(copia.destino),
                                         static_cast<char>(copia.destino >> 8)};
        fila.registro = copia.fila.registro;
        std::copy(numero.begin(), numero.end(), fila.registro.begin());
        fila.tieneRegistro = true;
    }

    void ponerCelda(CeldaCopiada& copia) {
        TablaDeCeldas& tabla = destino_.celdas->tabla();
        if (copia.celda.tipo == TipoCelda::kCruda) {
            copia.celda.valor = tabla.guardarCrudo(std::move(copia.registros));
            if (esFormula(tabla, copia.celda)) destino_.celdas->anotarFormula();
        }
        if (copia.celda.tipo == TipoCelda::kTexto) destino_.libro->cadenas().contarUso(1);
        copia.celda.columna = static_cast<uint16_t>(copia.destino.columna);
        tabla.crear(copia.destino.fila, copia.destino.columna, copia.celda.xf) = copia.celda;
    }

    void copiarCombinadas() {
        const std::vector<Area> habia = leerCombinadas(destino_.celdas->cola());
        std::vector<Area> nuevas;
        for (const Area& area : leerCombinadas(origen_.celdas->cola())) {
            const Area movida{area.fila0 + filas_, area.fila1 + filas_, area.columna0 + columnas_,
                              area.columna1 + columnas_};
            const bool choca = std::any_of(habia.begin(), habia.end(),
                                           [&](const Area& otra) { return otra.toca(movida); });
            if (area_.contiene(area) && !choca) nuevas.push_back(movida);
        }
        anadirCombinadas(destino_.celdas->cola(), nuevas);
    }

    Hoja& origen_;
    Hoja& destino_;
    Area area_;
    int32_t filas_;
    int32_t columnas_;
    Area final_;
    std::vector<FilaCopiada> copiaFilas_;
    std::vector<CeldaCopiada> copiaCeldas_;
};

}  // namespace

void copiar(Hoja& origen, const Area& area, Hoja& destino, int32_t fila, int32_t columna) {
    Copia(origen, area, destino, fila, columna).hacer();
}

}  // namespace bn::xls
