// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include "platform/Disco.h"
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
    /// A serial port, closed.
    virtual std::unique_ptr<MSComm> nuevoPuerto() = 0;
    /// A timer, disabled.
    virtual std::unique_ptr<Temporizador> nuevoTemporizador() = 0;
    /// A private, invisible spreadsheet application, started by its programmatic identifier or by
    /// its class. Throws when none can be started.
    virtual std::unique_ptr<excel::Application> nuevaAplicacionExcel(bool porIdentificador) = 0;
    /// What our own reader makes of a file whose opening another application refused: true for a
    /// workbook that is sound, also when it cannot be read now or by us. Never throws.
    virtual bool esLibroSano(const std::filesystem::path& /*libro*/) const { return false; }
    /// Local date and time, in days since 30 December 1899.
    virtual double ahora() const = 0;
    /// A message box with the critical icon and the default title; returns when it is closed.
    virtual void mensajeCritico(const std::string& texto) = 0;
    /// The same, but returns at once: it holds up neither timers nor ports. An outside without such
    /// boxes waits as mensajeCritico does.
    virtual void avisar(const std::string& texto) { mensajeCritico(texto); }
    /// A special folder of the shell (5: the user's documents), UTF-8; "" when there is none.
    virtual std::string carpetaEspecial(int32_t numero) const = 0;
    /// Opens a document or address with its program. Shell codes: > 32 done, 2 not found.
    virtual int32_t abrirDocumento(const std::string& rutaODireccion) = 0;

    /// Where its files lie.
    virtual Disco& disco() const { return discoDelSistema(); }

    /// Whether the program starts when the user logs on; an outside without logon answers false.
    virtual bool enArranque() const { return false; }
    /// Has it start, or not, when the user logs on. Throws ErrorFichero.
    virtual void enArranque(bool /*activo*/) {}
};

}  // namespace bn
