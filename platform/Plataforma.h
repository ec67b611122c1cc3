// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include "platform/MSComm.h"
#include "platform/Temporizador.h"

namespace bn {

namespace excel {
class Application;
}

/// Everything the program asks of the outside: one object, handed down from app/.
class Plataforma {
 public:
    Plataforma() = default;
    Plataforma(const Plataforma&) = delete;
    Plataforma& operator=(const Plataforma&) = delete;
    virtual ~Plataforma() = default;

    /// The program's own folder: settings, frame store and trace lie there.
    virtual std::filesystem::path carpetaPrograma() const = 0;
    virtual std::unique_ptr<MSComm> nuevoPuerto() = 0;
    virtual std::unique_ptr<Temporizador> nuevoTemporizador() = 0;
    /// A private, invisible spreadsheet application, started by its programmatic identifier or by
    /// its class. Throws when none can be started.
    virtual std::unique_ptr<excel::Application> nuevaAplicacionExcel(bool porIdentificador) = 0;
    /// Local date and time, in days since 30 December 1899.
    virtual double ahora() const = 0;
    /// A message box with the critical icon and the default title; returns when it is closed.
    virtual void mensajeCritico(const std::string& texto) = 0;
    /// A special folder of the shell (5: the user's documents), UTF-8; "" when there is none.
    virtual std::string carpetaEspecial(int32_t numero) const = 0;
    /// Opens a document or address with its program. Shell codes: > 32 done, 2 not found.
    virtual int32_t abrirDocumento(const std::string& rutaODireccion) = 0;

    /// Whether the program starts when the user logs on; an outside without logon answers false.
    virtual bool enArranque() const { return false; }
    /// Has it start, or not, when the user logs on. Throws ErrorFichero.
    virtual void enArranque(bool /*activo*/) {}
};

}  // namespace bn
