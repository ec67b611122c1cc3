// SPDX-License-Identifier: MIT
#include "platform/asio/PuertoAsio.h"

#include <algorithm>
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

    /// Writes straight away what the line takes; the helper thread sends the rest.
    void enviar(std::string_view bytes) {
        const std::scoped_lock cerrojo(cerrojo_);
        if (!linea_) {
            return;
        }
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
        reanudarLectura();
        return tomado;
    }

    /// Takes what waits in the line, and tells of it.
    void recogerPendiente() {
        Avisos avisos;
        {
            const std::scoped_lock cerrojo(cerrojo_);
            if (!linea_ || recibido_.size() >= kMaximoRecibido) return;
            const std::size_t antes = recibido_.size();
            if (!leerLoQueEspera()) return soltarLinea();
            avisos = avisosDe(antes);
        }
        avisar(avisos);
    }

    void descartarRecibido() {
        const std::scoped_lock cerrojo(cerrojo_);
        ++descartes_;
        if (linea_) linea_->descartarRecibido();
        recibido_.clear();
        reanudarLectura();
    }

 private:
    /// What has to be told of bytes that have arrived, unless they are discarded before.
    struct Avisos {
        std::size_t cuantos = 0;
        std::uint64_t descartes = 0;
    };

    /// Helper thread: takes what waits in the line and tells the user-interface thread.
    void puedeLeer(bool funciona) {
        Avisos avisos;
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
            const std::size_t antes = recibido_.size();
            recibido_.append(trozo_.data(), *leidos);
            avisos = avisosDe(antes);
            if (recibido_.size() < kMaximoRecibido) {
                esperarLectura();
            } else {
                lecturaParada_ = true;
            }
        }
        avisar(avisos);
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

    /// One for each carriage return, and one for a rest without: who takes one frame at each OnComm
    /// leaves none behind, however many come in one chunk.
    Avisos avisosDe(std::size_t desde) const {
        const auto nuevo = std::string_view(recibido_).substr(desde);
        const auto finales = static_cast<std::size_t>(std::count(nuevo.begin(), nuevo.end(), '\r'));
        const bool resto = !nuevo.empty() && nuevo.back() != '\r';
        return {finales + (resto ? 1 : 0), descartes_};
    }

    /// Every notification is delivered, also when an earlier one has taken its bytes along; one
    /// whose bytes were discarded, or whose opening is over, is not.
    void avisar(Avisos avisos) {
        for (std::size_t i = 0; i < avisos.cuantos; ++i) {
            enInterfaz_([yo = weak_from_this(), descartes = avisos.descartes, &puerto = puerto_] {
                if (vale(yo, descartes)) {
                    puerto.OnComm();
                }
            });
        }
    }

    /// User-interface thread, the only one on which an opening ends: while there is one, there is
    /// its port.
    static bool vale(const std::weak_ptr<Apertura>& apertura, std::uint64_t descartes) {
        const auto yo = apertura.lock();
        if (!yo) {
            return false;
        }
        const std::scoped_lock cerrojo(yo->cerrojo_);
        return yo->descartes_ == descartes;
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
    std::string porEnviar_;  // not empty: the line is being waited for
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
