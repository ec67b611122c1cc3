// SPDX-License-Identifier: MIT
// A libFuzzer target: whatever the bytes are, the engine reads them or refuses them with an error,
// and what it saves of them it can read again. Seeds: tests/destinations/muestras/*.xls.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "destinations/excel/ObjectModel.h"
#include "destinations/xls/Edicion.h"
#include "destinations/xls/Libro.h"

namespace {

using namespace bn::xls;

void leerTodo(Libro& libro) {
    for (const auto& hoja : libro.hojas()) {
        if (!hoja->esDeCalculo()) continue;
        const TablaDeCeldas& tabla = hoja->celdas->tabla();
        for (int32_t fila = 0; fila < tabla.cuantasFilas(); ++fila) {
            for (const Celda& celda : tabla.fila(fila)->celdas) {
                leerCelda(*hoja, fila, celda.columna);
            }
        }
    }
}

bool editar(Libro& libro) {
    try {
        for (const auto& hoja : libro.hojas()) {
            if (!hoja->esDeCalculo()) continue;
            escribirCelda(*hoja, 0, 0, std::string("texto"));
            escribirCelda(*hoja, 40000, 255, bn::FechaOle{45000.5});
        }
        return true;
    } catch (const bn::excel::ErrorExcel&) {
        return false;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* datos, size_t largo) {
    const std::string_view fichero(reinterpret_cast<const char*>(datos), largo);
    std::shared_ptr<Libro> libro;
    try {
        libro = Libro::abrir(fichero, 2024);
        leerTodo(*libro);
    } catch (const bn::excel::ErrorExcel&) {
        return 0;
    }
    if (!editar(*libro)) return 0;
    try {
        Libro::abrir(libro->serializar(), 2024);
    } catch (const bn::excel::ErrorExcel&) {
        std::abort();  // a workbook that was read must not be saved as one that cannot be
    }
    return 0;
}
