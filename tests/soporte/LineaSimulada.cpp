// SPDX-License-Identifier: MIT
#include "tests/soporte/LineaSimulada.h"

#include <algorithm>
#include <utility>

namespace bn::prueba {

namespace {

constexpr int64_t kBitsPorByte = 10;
constexpr Micros kSegundo = 1000 * kMilisegundo;

/// A timer in virtual time.
class TemporizadorSimulado : public Temporizador {
 public:
    TemporizadorSimulado(TiempoVirtual& tiempo, Entrega& entrega, LineaSimulada& linea)
        : tiempo_(tiempo), entrega_(entrega), linea_(linea) {}

    void Interval(int32_t milisegundos) override {
        intervalo_ = std::max<Micros>(milisegundos, 1) * kMilisegundo;
    }
    void Enabled(bool activo) override {
        if (activo == activo_) return;
        activo_ = activo;
        vigente_ = std::make_shared<bool>(true);
        if (activo_) armar();
    }
    bool Enabled() const override { return activo_; }

 private:
    void armar() {
        tiempo_.en(tiempo_.ahora() + intervalo_, [this, vigente = std::weak_ptr<bool>(vigente_)] {
            if (vigente.expired()) return;
            armar();
            entrega_.entregar([this, vigente] {
                if (vigente.expired()) return;
                linea_.enTemporizador = true;
                ++linea_.vencimiento;
                Timer();
                linea_.enTemporizador = false;
            });
        });
    }

    TiempoVirtual& tiempo_;
    Entrega& entrega_;
    LineaSimulada& linea_;
    std::shared_ptr<bool> vigente_;
    Micros intervalo_ = kMilisegundo;
    bool activo_ = false;
};

}  // namespace

PuertoSimulado::PuertoSimulado(LineaSimulada& linea, Entrega& entrega)
    : linea_(linea), entrega_(entrega) {
    linea_.puerto_ = this;
}

PuertoSimulado::~PuertoSimulado() { linea_.puerto_ = nullptr; }

void PuertoSimulado::PortOpen(bool abrir) {
    if (abrir && !linea_.enchufada) throw ErrorPuerto("COM1: no existe");
    abierto_ = abrir;
    InBufferCount(0);
    if (abrir && linea_.alAbrir) linea_.alAbrir();
}

void PuertoSimulado::Output(const std::string& bytes) {
    if (!abierto_) return;
    for (const char c : bytes) linea_.transmitir(c);
}

std::string PuertoSimulado::Input() {
    linea_.origenes.insert(linea_.origenes.end(), origenes_.begin(), origenes_.end());
    if (linea_.alLeer && !recibido_.empty()) linea_.alLeer(recibido_);
    origenes_.clear();
    return std::exchange(recibido_, {});
}

void PuertoSimulado::InBufferCount(int16_t) {
    ++descartes_;
    recibido_.clear();
    origenes_.clear();
}

void PuertoSimulado::llegar(const std::string& bytes, const std::vector<std::size_t>& origenes) {
    if (!abierto_) return;
    recibido_ += bytes;
    origenes_.insert(origenes_.end(), origenes.begin(), origenes.end());
    const auto finales = std::count(bytes.begin(), bytes.end(), '\r');
    for (int64_t i = 0; i < finales + (bytes.back() == '\r' ? 0 : 1); ++i) {
        entrega_.entregar([this, vida = std::weak_ptr<bool>(vivo_), descartes = descartes_] {
            if (!vida.expired() && descartes == descartes_) OnComm();
        });
    }
}

void PuertoSimulado::desenchufar() {
    abierto_ = false;
    InBufferCount(0);
}

LineaSimulada::LineaSimulada(TiempoVirtual& tiempo, Azar& azar, int64_t baudios, Micros agrupa)
    : tiempo_(tiempo), azar_(azar), porByte_(kBitsPorByte * kSegundo / baudios), agrupa_(agrupa) {}

Micros LineaSimulada::emitir(const std::string& trama, std::size_t envio) {
    const Micros inicio = tiempo_.ahora();
    if (enchufada && !azar_.sale(averias.pierdeTrama))
        entregarATrozos(estropear(trama, envio, inicio));
    return inicio + porByte_ * static_cast<Micros>(trama.size());
}

std::vector<LineaSimulada::Byte> LineaSimulada::estropear(const std::string& trama,
                                                          std::size_t envio, Micros inicio) {
    const auto alguno = [&] { return azar_.entre(0, static_cast<int64_t>(trama.size()) - 1); };
    const int64_t corte = azar_.sale(averias.cortaTrama) ? alguno() : 1 << 20;
    const int64_t tarde = azar_.sale(averias.retrasaTrama) ? alguno() : 1 << 20;
    const Micros retraso = azar_.entre(0, averias.retrasoMaximo);
    std::vector<Byte> llegan;
    for (int64_t i = 0; i < static_cast<int64_t>(trama.size()) && i < corte; ++i) {
        const Micros cuando = inicio + porByte_ * (i + 1) + (i >= tarde ? retraso : 0);
        const char c = trama[static_cast<std::size_t>(i)];
        if (azar_.sale(averias.ruido)) {
            const bool retorno = azar_.sale(0.25);
            llegan.push_back({cuando, retorno ? '\r' : otro(c), kRuido});
        }
        if (azar_.sale(averias.pierde)) continue;
        llegan.push_back({cuando, azar_.sale(averias.altera) ? otro(c) : c, envio});
    }
    return llegan;
}

/// Bytes of one moment of the grid arrive in one piece.
void LineaSimulada::entregarATrozos(const std::vector<Byte>& bytes) {
    for (std::size_t i = 0; i < bytes.size();) {
        std::string trozo;
        std::vector<std::size_t> suyos;
        const auto rejilla = [&](Micros cuando) {
            return (std::max(cuando, ultimaLlegada_) + agrupa_ - 1) / agrupa_ * agrupa_;
        };
        const Micros cuando = rejilla(bytes[i].cuando);
        for (; i < bytes.size() && rejilla(bytes[i].cuando) == cuando; ++i) {
            trozo += bytes[i].c;
            suyos.push_back(bytes[i].origen);
        }
        ultimaLlegada_ = cuando;
        tiempo_.en(cuando, [this, trozo, suyos] {
            if (puerto_ != nullptr && enchufada) puerto_->llegar(trozo, suyos);
        });
    }
}

void LineaSimulada::transmitir(char c) {
    const std::size_t numero = salidas_.size();
    salidas_.push_back({c, enTemporizador});
    if (alTransmitir) alTransmitir(salidas_.back());
    if (!enchufada || azar_.sale(averias.pierdeRespuesta)) return;
    const char oida = azar_.sale(averias.alteraRespuesta) ? otro(c) : c;
    const Micros retraso =
        azar_.sale(averias.retrasaRespuesta) ? azar_.entre(0, averias.retrasoMaximo) : 0;
    ultimaRespuesta_ = std::max(tiempo_.ahora(), ultimaRespuesta_) + porByte_ + retraso;
    tiempo_.en(ultimaRespuesta_, [this, oida, numero] {
        if (enchufada) alOir(oida, numero);
    });
}

void LineaSimulada::desenchufar() {
    enchufada = false;
    if (puerto_ != nullptr) puerto_->desenchufar();
}

/// Noise prefers nothing, but an answer altered into another answer is what matters.
char LineaSimulada::otro(char c) {
    return static_cast<char>(static_cast<unsigned char>(c) ^
                             static_cast<unsigned char>(azar_.entre(1, 255)));
}

PlataformaSimulada::PlataformaSimulada(std::filesystem::path carpeta, TiempoVirtual& tiempo,
                                       LineaSimulada& linea)
    : PlataformaDePrueba(std::move(carpeta)), tiempo_(tiempo), linea_(linea) {}

std::unique_ptr<MSComm> PlataformaSimulada::nuevoPuerto() {
    return std::make_unique<PuertoSimulado>(linea_, entrega_);
}

std::unique_ptr<Temporizador> PlataformaSimulada::nuevoTemporizador() {
    return std::make_unique<TemporizadorSimulado>(tiempo_, entrega_, linea_);
}

}  // namespace bn::prueba
