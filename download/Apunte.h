// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "config/CamposSetup.h"
#include "download/Tramos.h"

namespace bn {

/// Where a weighing goes.
enum class Destino : std::uint8_t { kHoja, kTexto };
inline constexpr std::array<Destino, 2> kDestinos = {Destino::kHoja, Destino::kTexto};

/// Columns of the eight fields in a worksheet, 1-based, 0 not written; and their places in a text
/// line.
using ColumnasDeHoja = std::array<int16_t, kCamposPesada>;
using CamposDeLinea = std::array<CampoDeTexto, kCamposPesada>;

/// Where and how a destination began to be written.
struct Comienzo {
    std::string fichero;        ///< workbook or text file, UTF-8
    std::string hoja;           ///< worksheet only
    std::uint64_t lugar = 0;    ///< first row, 1-based; or the text file's length before
    ColumnasDeHoja columnas{};  ///< worksheet only
    CamposDeLinea campos{};     ///< text file only

    bool operator==(const Comienzo&) const = default;
};

/// The steps that the note of a batch records. Weighings are ordinals in their store, from 0.
namespace apunte {

/// The record with which the download may begin because the one before it was cut off: its data.
struct Copia {
    std::string datos;
};
/// Nothing is known of what was done with the batch before this note.
struct Desconocida {};
/// The download is over; bien when the indicator has closed it.
struct Fin {
    bool bien = false;
};
/// The first pass: its clock (days since 30 December 1899), and the destinations of the batch.
struct Pase {
    double reloj = 0;
    bool hoja = false;
    bool texto = false;
};
/// A destination is about to be written: the weighings that are not there yet, in their order.
struct Empieza {
    Destino destino = Destino::kHoja;
    Comienzo comienzo;
};
/// Of the part begun, exactly these have arrived, and nothing of it is in doubt any more.
struct Llega {
    Destino destino = Destino::kHoja;
    Tramos tramos;
};
/// All are there, flushed or saved.
struct Hecho {
    Destino destino = Destino::kHoja;
};
/// A person does not want them any more.
struct Descarte {};

}  // namespace apunte

using Apunte = std::variant<apunte::Copia, apunte::Desconocida, apunte::Fin, apunte::Pase,
                            apunte::Empieza, apunte::Llega, apunte::Hecho, apunte::Descarte>;

/// The step as a line without its end: fields between tabs.
std::string textoDeApunte(const Apunte& apunte);
/// Nothing when the line is no step.
std::optional<Apunte> apunteDeTexto(std::string_view linea);

}  // namespace bn
