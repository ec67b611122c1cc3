// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "platform/Ficheros.h"
#include "platform/Plataforma.h"

namespace bn {

/// The frame store: keeps the data of every weighing of a download in "bnGuardo.txt", one a line,
/// so that nothing acknowledged is lost before it has reached its destinations.
class sacoTramas {
 public:
    /// New: only iniGuardo is allowed.
    explicit sacoTramas(Plataforma& plataforma);
    /// A store that stands already, under any name: as one that has been read.
    sacoTramas(Plataforma& plataforma, std::filesystem::path almacen);

    /// Empties the store for a new download. False while storing or reading, or when the file
    /// cannot be made.
    bool iniGuardo();
    /// Appends one record; true only when it is on the disk itself, flushed.
    bool Guardo(const std::string& datos);
    /// Starts reading. False on a new instance, while reading, or when the file cannot be read.
    bool iniRecupero();
    /// The next record; "" when there is none. Throws ErrorFichero.
    std::string Recupero();
    /// True when everything has been read.
    bool Final() const;

    /// Where the store lies.
    static std::filesystem::path fichero(const Plataforma& plataforma);

 private:
    enum class Modo : int16_t { kNuevo = 0, kGuardando = 1, kLeyendo = 2, kLeido = 3 };

    Plataforma& plataforma_;
    std::filesystem::path almacen_;
    Modo modo_ = Modo::kNuevo;
    std::optional<ficheros::Lineas> lectura_;
};

}  // namespace bn
