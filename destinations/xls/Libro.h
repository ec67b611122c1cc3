// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "destinations/xls/Cadenas.h"
#include "destinations/xls/Compuesto.h"
#include "destinations/xls/Formatos.h"
#include "destinations/xls/HojaDeCeldas.h"
#include "destinations/xls/LibrosExternos.h"
#include "destinations/xls/Nombres.h"
#include "destinations/xls/Registros.h"

namespace bn::xls {

class Libro;

/// One sheet of a workbook: a worksheet, or another kind that is only kept.
struct Hoja {
    Libro* libro = nullptr;
    std::string nombre;
    /// Null for a sheet that is no worksheet.
    std::unique_ptr<HojaDeCeldas> celdas;
    bool oculta = false;
    /// Its substream as it was read, and where; empty for a sheet added since.
    std::string_view original;
    size_t posicion = 0;
    bool tocada = false;

    bool esDeCalculo() const { return celdas != nullptr; }
};

/// A workbook in memory. What is not changed through its parts is written back as it was read.
class Libro {
 public:
    /// A workbook that holds one sheet, "Hoja1". anio completes dates typed without their year.
    static std::shared_ptr<Libro> nuevo(int anio);
    /// The workbook of a whole ".xls" file. Throws excel::ErrorExcel when it cannot be read, with
    /// the reason.
    static std::shared_ptr<Libro> abrir(std::string_view fichero, int anio);

    /// The whole file. A workbook nobody changed keeps every stream byte for byte.
    std::string serializar();

    /// To be called before anything is changed. Throws when this workbook must not be edited.
    void tocar();
    /// The same, before a change that formulas may depend on.
    void tocarContenido();
    void tocar(Hoja& hoja);
    void tocarContenido(Hoja& hoja);

    Registros& globales() { return globales_; }
    Cadenas& cadenas() { return *cadenas_; }
    Formatos& formatos() { return *formatos_; }
    LibrosExternos& librosExternos() { return *externos_; }
    Nombres& nombres() { return *nombres_; }
    /// Throws when the owner has protected the structure: then no sheet comes, goes or is renamed.
    void exigirEstructuraLibre() const;
    /// All the sheets, worksheets and others, in their order.
    std::vector<std::shared_ptr<Hoja>>& hojas() { return hojas_; }
    /// 0-based place of a sheet; throws when it is none of this workbook's.
    size_t lugarDe(const Hoja& hoja) const;
    bool fechas1904() const;
    int anio() const { return anio_; }

    Libro(const Libro&) = delete;
    Libro& operator=(const Libro&) = delete;

 private:
    Libro(Compuesto compuesto, size_t numeroFlujo, std::string flujo, int anio);

    void leerGlobales(const Subflujo& bordes);
    void leerHojas(const std::vector<Subflujo>& bordes);
    void leerHoja(const Registro& boundSheet, const Subflujo& bordes);
    void prepararCadenas();
    static void exigirCabida(size_t filas, size_t bytes);
    std::string componerFlujo();
    void ponerGlobales(std::string& flujo, std::vector<size_t>& referencias);
    void ponerIndiceDeCadenas(std::string& flujo, const std::string& original, size_t posicionSst);

    Compuesto compuesto_;
    size_t numeroFlujo_ = 0;
    std::string flujo_;
    Registros globales_;
    std::unique_ptr<Cadenas> cadenas_;
    size_t posicionSst_ = 0;
    std::unique_ptr<Formatos> formatos_;
    std::unique_ptr<LibrosExternos> externos_;
    std::unique_ptr<Nombres> nombres_;
    std::vector<std::shared_ptr<Hoja>> hojas_;
    std::vector<std::string_view> sinReferencia_;  // substreams no BOUNDSHEET speaks of
    int anio_ = 0;
    bool compartido_ = false;
    bool tocado_ = false;
    bool contenidoTocado_ = false;
};

}  // namespace bn::xls
