// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "config/Setup.h"
#include "destinations/XCel.h"
#include "download/PasoDeGuardado.h"
#include "download/Pendientes.h"
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
///
/// What has been acknowledged reaches each of its destinations once, whatever fails on the way: a
/// download that cannot save its weighings, or does not live to, leaves them pending in the
/// program's own folder, where this object and any later one finds them and saves them first.
class Descarga {
 public:
    /// Idle, with its own channel, store and spreadsheet wrapper.
    explicit Descarga(Plataforma& plataforma);
    Descarga(const Descarga&) = delete;
    Descarga& operator=(const Descarga&) = delete;
    ~Descarga();

    /// The settings of downloads and save passes; without them it makes its own.
    void DatosCfg(std::shared_ptr<Setup> configuracion);
    /// Starts a download. False, and nothing changed, while one is running, when the frame store or
    /// its note cannot be made, or when weighings that have not arrived can be put nowhere: those
    /// are never removed from the store.
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

    /// Weighings of ended downloads that are not in all their destinations.
    int32_t numPendientes() const;
    /// Why they are not, and what to do; Spanish, UTF-8; "" when none waits.
    std::string motivoPendientes() const;
    /// Saves them now, each destination by itself. Only in states 0, 4 and 5, else false; true when
    /// none waits any more. Leaves state, count and explanation alone. Never throws.
    bool guardarPendientes();
    /// Gives them up and keeps their data in "bnDescartadas-AAAAMMDD-HHMMSS.txt". In the same
    /// states; false when that file cannot be written. Never throws.
    bool descartarPendientes();
    /// What the last pass or the last attempt to start has to say although no weighing waits for
    /// it; Spanish, UTF-8, a sentence or more each.
    const std::vector<std::string>& avisos() const { return memoria_.avisos; }
    /// Whether they wait because something has failed, or a download cannot start.
    bool hayFallo() const;
    /// What a controller knows of the last pass, for the one that takes its place.
    struct Memoria {
        std::array<std::string, kDestinos.size()> fallos;  ///< by destination; "" for none
        std::string propio;                                ///< of the program's own files
        std::vector<std::string> avisos;
    };
    const Memoria& memoria() const { return memoria_; }
    void memoria(Memoria otra) { memoria_ = std::move(otra); }
    /// Whether weighings have been stored that no pass has tried to save, or the last pass ended
    /// before one destination had its share, because of the other.
    bool quedaSinIntentar() const { return quedaSinIntentar_; }

    /// A weighing has been accepted into the frame store.
    Evento<pesaDX5&> PesadaRecibida;
    /// The state has changed. Errors of the save pass leave through the notification that ran it.
    Evento<int32_t&> CambioEstado;

 private:
    void mCom_Pesada(int32_t numero, bool& aceptada, pesaDX5& pesada);
    void mCom_Resumen(int32_t recibidas, const std::string& explicacion);
    bool preparar();
    void anotarFin();
    void pasar(PasoDeGuardado::Fallo fallo);
    void recoger(const PasoDeGuardado& paso);
    void descartar();
    bool elegido(Destino destino) const;
    bool falloDeDestino() const;
    const std::shared_ptr<Setup>& configuracion();
    void cambiarEstado(int32_t estado);
    bool enCurso() const;
    bool puedePasar();

    Plataforma& plataforma_;
    int32_t estado_ = kEnReposo;
    std::shared_ptr<Setup> configuracion_;
    std::unique_ptr<sacoTramas> mSaco_;
    std::unique_ptr<XCel> mExcel_;
    int32_t recibidas_ = 0;
    bool abortar_ = false;
    std::string explicacion_;
    std::unique_ptr<fComm> mCom_;
    Pendientes pendientes_;
    Memoria memoria_;
    bool quedaSinIntentar_ = false;
    bool recibiendo_ = false;  // the batch of now is still growing, or in its own pass
};

}  // namespace bn
