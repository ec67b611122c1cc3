// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>

#include "platform/Plataforma.h"

namespace bn {

/// Saves the frame store from the next download, which empties it. A download that does not reach
/// its end (an error in the save pass, a power cut, a killed program) leaves weighings that the
/// indicator has already forgotten.
///
/// While a download holds such weighings, the file "bnGuardo.marca" stands beside the store.
class Rescate {
 public:
    explicit Rescate(Plataforma& plataforma);

    /// The first weighing of a download has been accepted. Throws ErrorFichero.
    void empezar();
    /// The download has ended by itself: everything is where it belongs.
    void acabar();

    /// Copies the store, flushed, to "bnGuardo-AAAAMMDD-HHMMSS.txt" beside it; moves it there where
    /// there is no room for a copy. The copy's path, or the store's own when even that fails;
    /// nothing when the store holds nothing. Never throws.
    std::optional<std::filesystem::path> apartar();

    struct Pendientes {
        std::filesystem::path fichero;  ///< where they are kept
        std::size_t pesadas = 0;        ///< 0 when they cannot be counted
    };
    /// At start: puts aside what a download that was cut off has left; nothing when none was. Never
    /// throws.
    std::optional<Pendientes> recoger();

 private:
    std::filesystem::path marca() const;

    Plataforma& plataforma_;
};

}  // namespace bn
