// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace bn::xls {

/// A compound file (OLE2 structured storage): named streams in one file. The directory's entries
/// stay as they were read, but for where each stream starts and how long it is.
class Compuesto {
 public:
    /// Reads the whole file; a chain is followed no further than its stream's size. Throws
    /// excel::ErrorExcel for whatever is not such a file, or is a damaged one.
    static Compuesto abrir(std::string_view fichero);

    /// A file that holds one empty stream, "Workbook".
    static Compuesto nuevo();

    /// True when the bytes begin as a compound file does.
    static bool loParece(std::string_view fichero);

    /// Number of the stream of that name in the root storage, any letter case; nothing when
    /// missing.
    std::optional<size_t> buscar(std::string_view nombre) const;

    const std::string& flujo(size_t numero) const { return entradas_.at(numero).contenido; }
    void flujo(size_t numero, std::string contenido);

    /// Takes a stream out of the root storage.
    void quitar(size_t numero);

    /// The whole file. The same contents always give the same bytes.
    std::string serializar() const;

 private:
    friend class LectorCompuesto;
    friend class EscritorCompuesto;

    struct Entrada {
        std::string cruda;  // the 128 bytes of the directory
        std::string contenido;
    };

    std::vector<size_t> hijosDeRaiz() const;
    void reconstruirArbol(std::vector<size_t> hijos);
    std::string nombre(size_t numero) const;

    std::string cabecera_;
    size_t tamanoSector_ = 512;
    std::vector<Entrada> entradas_;
};

}  // namespace bn::xls
