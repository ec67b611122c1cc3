// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "config/Setup.h"
#include "destinations/XCel.h"
#include "link/fComm.h"
#include "link/sacoTramas.h"
#include "platform/Evento.h"
#include "platform/Plataforma.h"

namespace bn {

/// Values of Descarga::Estado.
inline constexpr int32_t kEnReposo = 0;
inline constexpr int32_t kPidiendo = 1;
inline constexpr int32_t kRecibiendo = 2;
inline constexpr int32_t kGuardando = 3;
inline constexpr int32_t kTerminada = 4;
inline constexpr int32_t kFallida = 5;

/// Runs one download: from the request to the weighings saved in their destinations. While the
/// indicator sends, every weighing only goes into the frame store; the destinations are written
/// when it has finished. Shows nothing; tells its owner through two events.
class Descarga {
 public:
    /// Idle, with its own channel, store and spreadsheet wrapper.
    explicit Descarga(Plataforma& plataforma);
    Descarga(const Descarga&) = delete;
    Descarga& operator=(const Descarga&) = delete;
    ~Descarga();

    /// The settings of the next download; without them it makes its own.
    void DatosCfg(std::shared_ptr<Setup> configuracion);
    /// Starts a download. False, and nothing changed, while one is running or when the frame store
    /// cannot be started.
    bool iniciarProceso();
    /// Back to idle; nothing while a download is running.
    void Reset();
    /// Ends the running download when the next weighing arrives.
    void Abortar();

    /// kEnReposo to kFallida.
    int32_t Estado() const;
    /// Weighings received; 0 in states 0 and 1.
    int32_t numRecibidas() const;
    /// Why the download failed or was interrupted, Spanish UTF-8; "" when it ended normally.
    std::string Explicacion() const;

    /// A weighing has been accepted into the frame store.
    Evento<pesaDX5&> PesadaRecibida;
    /// The state has changed. Errors of the save pass leave through the notification that ran it.
    Evento<int32_t&> CambioEstado;

 private:
    void mCom_Pesada(int32_t numero, bool& aceptada, pesaDX5& pesada);
    void mCom_Resumen(int32_t recibidas, const std::string& explicacion);
    void cambiarEstado(int32_t estado);
    bool enCurso() const;

    Plataforma& plataforma_;
    int32_t estado_ = kEnReposo;
    std::shared_ptr<Setup> configuracion_;
    std::unique_ptr<sacoTramas> mSaco_;
    std::unique_ptr<XCel> mExcel_;
    int32_t recibidas_ = 0;
    bool abortar_ = false;
    std::string explicacion_;
    std::unique_ptr<fComm> mCom_;
};

}  // namespace bn
