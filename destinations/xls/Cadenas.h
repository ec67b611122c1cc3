// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace bn::xls {

/// The workbook's table of shared strings (SST and its CONTINUE records) and the index to it
/// (EXTSST). The bytes that were read stay; new strings go behind them.
class Cadenas {
 public:
    Cadenas();

    /// Reads the data of an SST record and its CONTINUE records. Throws excel::ErrorExcel when the
    /// strings are not all there, or not all that is there.
    explicit Cadenas(std::vector<std::string> trozos);

    uint32_t cuantas() const { return static_cast<uint32_t>(posiciones_.size()); }

    /// The text of a string without its formats, UTF-8; throws when there is none of that number.
    std::string texto(uint32_t numero) const;

    /// Number of that text, added if no plain string holds it yet. Throws when it is too long.
    uint32_t agregar(std::string_view utf8);

    /// Tells that one cell more (or less) uses a string: the table counts its uses.
    void contarUso(int cambio);

    bool cambiada() const { return cambiada_; }

    /// Appends the SST record and its CONTINUE records.
    void serializar(std::string& flujo) const;

    /// Data of the EXTSST record for a table that begins at that position of the stream.
    /// cadenasPorGrupo as the record had it, 0 when there was none.
    std::string indice(size_t posicionSst, uint32_t cadenasPorGrupo) const;

 private:
    struct Posicion {
        uint32_t trozo = 0;
        uint32_t desplazamiento = 0;
    };

    void leer(uint32_t cuantas);
    bool esSencilla(const Posicion& posicion) const;
    void indexar();
    void crecerTabla();
    size_t huecoDe(uint32_t resumen, std::string_view utf8, bool& encontrada) const;
    void escribir(std::string_view utf8);

    std::vector<std::string> trozos_;
    std::vector<Posicion> posiciones_;
    uint32_t usos_ = 0;
    bool cambiada_ = false;

    // Open-addressing table of string numbers + 1, built when the first text is added.
    struct Hueco {
        uint32_t resumen = 0;
        uint32_t numero = 0;
    };
    std::vector<Hueco> tabla_;
    size_t enTabla_ = 0;
};

}  // namespace bn::xls
