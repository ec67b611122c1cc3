// SPDX-License-Identifier: MIT
#pragma once

#include <termios.h>

#include <cstddef>
#include <string>

namespace bn {

/// A pseudo-terminal: the far end of a line whose near end is a device that can be opened.
class PseudoTerminal {
 public:
    PseudoTerminal();
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;
    ~PseudoTerminal();

    const std::string& dispositivo() const { return dispositivo_; }
    /// Writes everything, or as much as goes in while nobody reads; how much.
    std::size_t escribir(const std::string& bytes);
    /// Reads until so many bytes have come, or for at most five seconds.
    std::string leer(std::size_t cuantos);
    /// What waits to be read now.
    std::string leerYa();
    /// Pulls the cable, adapter and all.
    void desaparecer();
    /// How many bytes the near end holds that nobody has read.
    int pendientes() const;
    /// Waits until the near end holds so many bytes that nobody has read.
    bool esperarPendientes(int cuantos) const;
    /// How the near end is set.
    termios modo() const;

 private:
    int maestro_;
    int cercano_;  // kept open, so that the device can be asked
    std::string dispositivo_;
};

}  // namespace bn
