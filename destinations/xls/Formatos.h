// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "destinations/xls/Registros.h"

namespace bn::xls {

/// The workbook's cell formats (XF) and number formats (FORMAT), kept in step with the globals'
/// records. A new cell format is an old one with one attribute changed, appended to the list.
class Formatos {
 public:
    /// Reads what the globals hold, which must outlive this object.
    explicit Formatos(Registros& globales);

    size_t cuantos() const { return xfs_.size(); }
    /// Throws ErrorExcel when there is no cell format of that number.
    void exigir(uint16_t xf) const;

    /// Whether a protected sheet keeps such a cell from being changed.
    bool bloquea(uint16_t xf) const;
    /// True also for the formats of that code that other programs number for themselves.
    bool esGeneral(uint16_t xf) const;
    bool esTexto(uint16_t xf) const;
    /// True when the number format shows a date or a time.
    bool esFecha(uint16_t xf) const;

    /// The cell format like xf but for its number format, in English notation. Throws ErrorExcel
    /// when the format text is empty or too long, or the workbook is full of formats.
    uint16_t conFormato(uint16_t xf, const std::string& codigo);
    /// The cell format like xf but for its horizontal alignment, 0 general to 3 right.
    uint16_t conAlineacion(uint16_t xf, uint8_t alineacion);

    /// True when there are new cell formats since the workbook was read.
    bool ampliado() const { return ampliado_; }

    /// Data of the checksum record over the formats (XFCRC), brought up to date.
    std::string suma(std::string datosXfCrc) const;

 private:
    uint16_t numeroDe(uint16_t xf) const;
    uint16_t numeroDeCodigo(const std::string& codigo);
    uint16_t agregar(uint16_t original, std::string datos);
    void copiarExtension(uint16_t original, uint16_t copia);

    Registros& globales_;
    std::vector<std::string> xfs_;
    std::map<uint16_t, std::string> codigos_;
    std::unordered_map<std::string, uint16_t> porDatos_;
    std::unordered_map<std::string, uint16_t> porFormato_;  // xf and code to xf, remembered
    bool ampliado_ = false;
};

/// True when a number format's text shows a date or a time.
bool codigoEsFecha(const std::string& codigo);

}  // namespace bn::xls
