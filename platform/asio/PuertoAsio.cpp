// SPDX-License-Identifier: MIT
#include "platform/asio/PuertoAsio.h"

#include <array>
#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>
#include <asio/post.hpp>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/asio/Linea.h"

namespace bn {
namespace {

constexpr int16_t kPrimerCanal = 1;

// Thousands of frames each: who lets more than this wait is not reading, or not listening.
constexpr std::size_t kMaximoRecibido = std::size_t{64} * 1024;
constexpr std::size_t kMaximoPorEnviar = std::size_t{64} * 1024;
constexpr std::size_t kTrozo = 4096;

}  // namespace

/// The port from one opening to its close, shared by the user-interface thread and the helper
/// thread. Whatever both touch is touched under the mutex; reading the line too, so that a discard
/// finds every byte either still in the line or already in the buffer.
class PuertoAsio::Apertura : public std::enable_shared_from_this<Apertura> {
 public:
    Apertura(PuertoAsio& puerto, const std::string& dispositivo)
        : puerto_(puerto),
          enInterfaz_(puerto.enInterfaz_),
          linea_(abrirLinea(contexto_, dispositivo, puerto.ajustes_)) {}

    Apertura(const Apertura&) = delete;
    Apertura& operator=(const Apertura&) = delete;

    ~Apertura() {
        const std::scoped_lock cerrojo(cerrojo_);
        soltarLinea();
    }

    /// Starts to receive; to be called once.
    void arrancar() {
        esperarLectura();
        hilo_ = std::jthread([this] { contexto_.run(); });
    }

    bool abierta() const {
        const std::scoped_lock cerrojo(cerrojo_);
        return linea_ != nullptr;
    }

    /// Writes straight away what the line takes; the helper thread sends the rest. What had arrived
    /// before is told apart from what answers.
    void enviar(std::string_view bytes) {
        recogerPendiente();
        const std::scoped_lock cerrojo(cerrojo_);
        if (!linea_) {
            return;
        }
        // A flood cannot be told apart: the discard after it forgets everything.
        anterior_.reset();
        if (recibido_.size() < kMaximoRecibido) anterior_ = recibido_.size();
        if (porEnviar_.empty()) {
            bytes.remove_prefix(escribir(bytes));
        }
        if (!linea_ || bytes.empty()) {
            return;
        }
        const bool habiaCola = !porEnviar_.empty();
        porEnviar_.append(bytes.substr(0, kMaximoPorEnviar - porEnviar_.size()));
        if (!habiaCola) {
            esperarEscritura();
        }
    }

    std::string tomarRecibido() {
        const std::scoped_lock cerrojo(cerrojo_);
        std::string tomado = std::exchange(recibido_, {});
        anterior_.reset();
        reanudarLectura();
        return tomado;
    }

    /// Takes what waits in the line, and tells of it.
    void recogerPendiente() {
        std::uint64_t descartes = 0;
        {
            const std::scoped_lock cerrojo(cerrojo_);
            if (!linea_ || recibido_.size() >= kMaximoRecibido) return;
            const std::size_t antes = recibido_.size();
            if (!leerLoQueEspera()) return soltarLinea();
            if (recibido_.size() == antes) return;
            descartes = descartes_;
        }
        avisar(descartes);
    }

    /// Right after a transmission, only what had arrived before it: an indicator that is quick
    /// enough may have answered meanwhile, and the answer to what was sent is not to be lost. On a
    /// wire no answer comes that soon; on a line of software it does.
    void descartarRecibido() {
        std::uint64_t descartes = 0;
        {
            const std::scoped_lock cerrojo(cerrojo_);
            descartes = ++descartes_;
            if (anterior_) {
                recibido_.erase(0, *anterior_);
                anterior_.reset();
            } else {
                if (linea_) linea_->descartarRecibido();
                recibido_.clear();
            }
            reanudarLectura();
            if (recibido_.empty()) return;
        }
        avisar(descartes);
    }

 private:
    /// Helper thread: takes what waits in the line and tells the user-interface thread.
    void puedeLeer(bool funciona) {
        std::uint64_t descartes = 0;
        {
            const std::scoped_lock cerrojo(cerrojo_);
            if (!linea_) {
                return;
            }
            const auto leidos =
                funciona ? linea_->leer(trozo_.data(), trozo_.size()) : std::nullopt;
            if (!leidos) {
                return soltarLinea();
            }
            recibido_.append(trozo_.data(), *leidos);
            descartes = descartes_;
            if (recibido_.size() < kMaximoRecibido) {
                esperarLectura();
            } else {
                lecturaParada_ = true;
            }
            if (*leidos == 0) {
                return;
            }
        }
        avisar(descartes);
    }

    /// False when the line is gone.
    bool leerLoQueEspera() {
        std::array<char, kTrozo> trozo{};
        std::optional<std::size_t> leidos;
        do {
            leidos = linea_->leer(trozo.data(), trozo.size());
            if (!leidos) return false;
            recibido_.append(trozo.data(), *leidos);
        } while (*leidos == trozo.size() && recibido_.size() < kMaximoRecibido);
        return true;
    }

    /// Every chunk gets its own OnComm, also when an earlier one has taken its bytes along; one
    /// whose bytes were discarded, or whose opening is over, gets none.
    void avisar(std::uint64_t descartes) {
        enInterfaz_([yo = weak_from_this(), descartes, &puerto = puerto_] {
            if (vale(yo, descartes)) {
                puerto.OnComm();
            }
        });
    }

    /// User-interface thread, the only one on which an opening ends: while there is one, there is
    /// its port.
    static bool vale(const std::weak_ptr<Apertura>& apertura, std::uint64_t descartes) {
        const auto yo = apertura.lock();
        if (!yo) {
            return false;
        }
        const std::scoped_lock cerrojo(yo->cerrojo_);
        if (yo->descartes_ != descartes) return false;
        yo->anterior_.reset();  // whoever discards now knows of all that has arrived
        return true;
    }

    /// Helper thread: goes on with the queue.
    void puedeEscribir(bool funciona) {
        const std::scoped_lock cerrojo(cerrojo_);
        if (!linea_) {
            return;
        }
        if (!funciona) {
            return soltarLinea();
        }
        porEnviar_.erase(0, escribir(porEnviar_));
        if (linea_ && !porEnviar_.empty()) {
            esperarEscritura();
        }
    }

    std::size_t escribir(std::string_view bytes) {
        const auto escritos = linea_->escribir(bytes);
        if (!escritos) {
            soltarLinea();
        }
        return escritos.value_or(0);
    }

    void esperarLectura() {
        linea_->alPoderLeer([this](bool funciona) { puedeLeer(funciona); });
    }

    void esperarEscritura() {
        linea_->alPoderEscribir([this](bool funciona) { puedeEscribir(funciona); });
    }

    void reanudarLectura() {
        if (std::exchange(lecturaParada_, false) && linea_) {
            esperarLectura();
        }
    }

    /// The end of the line, wanted or not: the helper thread closes it, for a device that is going
    /// away may take its time over it, and ends with its last call-back.
    void soltarLinea() {
        if (!linea_) {
            return;
        }
        asio::post(contexto_, [linea = std::move(linea_)]() mutable { linea.reset(); });
        trabajo_.reset();
    }

    PuertoAsio& puerto_;
    EnInterfaz enInterfaz_;
    asio::io_context contexto_{1};
    asio::executor_work_guard<asio::io_context::executor_type> trabajo_{contexto_.get_executor()};
    std::array<char, kTrozo> trozo_{};  // helper thread only

    mutable std::mutex cerrojo_;
    std::unique_ptr<Linea> linea_;  // none: closed, or vanished
    std::string recibido_;
    std::optional<std::size_t> anterior_;  // how much of it had arrived before the last sending
    std::string porEnviar_;                // not empty: the line is being waited for
    std::uint64_t descartes_ = 0;
    bool lecturaParada_ = false;

    std::jthread hilo_;  // last: joined before anything that it uses goes
};

PuertoAsio::PuertoAsio(EnInterfaz enInterfaz, DispositivoDe dispositivoDe)
    : enInterfaz_(std::move(enInterfaz)), dispositivoDe_(std::move(dispositivoDe)) {}

PuertoAsio::~PuertoAsio() = default;

void PuertoAsio::CommPort(int16_t numero) {
    if (numero < kPrimerCanal) {
        throw ErrorPuerto("El canal " + std::to_string(numero) + " no existe");
    }
    canal_ = numero;
}

void PuertoAsio::Settings(const std::string& ajustes) { ajustes_ = leerAjustesLinea(ajustes); }

void PuertoAsio::PortOpen(bool abrir) {
    apertura_.reset();
    if (!abrir) {
        return;
    }
    const std::string dispositivo = dispositivoDe_(canal_);
    try {
        auto apertura = std::make_shared<Apertura>(*this, dispositivo);
        apertura->arrancar();
        apertura_ = std::move(apertura);
    } catch (const std::system_error& error) {  // no thread, or no descriptor left for one
        throw ErrorPuerto(dispositivo + ": no se puede abrir (error " +
                          std::to_string(error.code().value()) + " del sistema)");
    }
}

bool PuertoAsio::PortOpen() const { return apertura_ && apertura_->abierta(); }

void PuertoAsio::Output(const std::string& bytes) {
    if (apertura_) {
        apertura_->enviar(bytes);
    }
}

std::string PuertoAsio::Input() { return apertura_ ? apertura_->tomarRecibido() : std::string(); }

void PuertoAsio::InBufferCount(int16_t cero) {
    if (apertura_ && cero == 0) {
        apertura_->descartarRecibido();
    }
}

void PuertoAsio::recogerPendiente() {
    if (apertura_) apertura_->recogerPendiente();
}

int16_t PuertoAsio::CommEvent() const { return kComEvReceive; }

}  // namespace bn
