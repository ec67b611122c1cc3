// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "tools/simulador/Indicador.h"
#include "tools/simulador/Ritmo.h"

namespace bn::simulador {

/// A line that cannot be opened or has broken; what() is UTF-8 Spanish.
class ErrorLinea : public std::runtime_error {
 public:
    using std::runtime_error::runtime_error;
};

/// Now, by the system's steady clock.
Instante ahora();

/// The user's wish to stop (Ctrl+C, or the system asking the program to end), noticed wherever the
/// program waits. One per program, made before anything waits.
class Paro {
 public:
    Paro();
    Paro(const Paro&) = delete;
    Paro& operator=(const Paro&) = delete;
    ~Paro();

    /// Waits until then; false, at once, when the program has to stop.
    bool dormirHasta(Instante cuando);

 private:
    friend class Linea;
    struct Interior;
    std::unique_ptr<Interior> interior_;
};

/// The indicator's end of the line.
class Linea {
 public:
    /// A new pseudo-terminal; the computer opens ruta(), or the link when one is asked for. Throws
    /// where the system has none.
    static std::unique_ptr<Linea> pseudoterminal(const std::string& enlace);
    /// A serial port.
    static std::unique_ptr<Linea> dispositivo(const std::string& ruta,
                                              const Parametros& parametros);

    Linea(const Linea&) = delete;
    Linea& operator=(const Linea&) = delete;
    /// Closes; removes the link if it is still its own.
    ~Linea();

    /// What the computer has to open.
    const std::string& ruta() const;
    /// Whether the line itself takes the time its bytes need.
    bool real() const;
    /// Sends at once. What does not fit is lost, as on a line where nobody listens.
    void escribir(std::string_view bytes);
    /// Forgets what was received and not read.
    void vaciarEntrada();
    /// Waits for bytes, at most until then; empty when none came. Nothing when it has to stop.
    std::optional<std::string> leer(std::optional<Instante> hasta, const Paro& paro);

 private:
    struct Interior;
    explicit Linea(std::unique_ptr<Interior> interior);

    std::unique_ptr<Interior> interior_;
};

}  // namespace bn::simulador
