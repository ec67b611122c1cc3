// SPDX-License-Identifier: MIT
#include "tests/link/SimulacionLinea.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <utility>

#include "link/fComm.h"
#include "tests/link/ObservadorLinea.h"
#include "tests/soporte/IndicadorSimulado.h"
#include "tests/soporte/LineaSimulada.h"
#include "tests/soporte/TramasDePrueba.h"

namespace bn::prueba {

namespace {

constexpr Micros kSegundo = 1000 * kMilisegundo;

/// One world: an indicator, a line and a channel, with the faults that the seed gives them.
class Mundo {
 public:
    Mundo(uint64_t semilla, bool conTraza);
    ResultadoSimulacion vivir();

 private:
    Hechura sortearHechura();
    AveriasLinea sortearAverias();
    void nuevoCanal();
    void pesar();
    void descargar(bool sana);
    void pasar(Micros cuanto);
    void pesadaRecibida(bool& seguir, const pesaDX5& pesada);

    void apuntar(const std::string& suceso);
    void apuntarLectura(const std::string& bytes);
    static std::string legible(const std::string& bytes);

    ResultadoSimulacion resultado_;
    bool conTraza_;
    Azar azar_;
    TiempoVirtual tiempo_;
    Hechura hechura_;
    int64_t baudios_;
    Micros agrupa_;
    LineaSimulada linea_;
    IndicadorSimulado indicador_;
    ObservadorLinea observador_{linea_, indicador_};
    PlataformaSimulada plataforma_;
    std::unique_ptr<fComm> canal_;

    int32_t holgada_ = 500;
    int32_t espera_ = 500;
    int16_t intentos_ = 4;
    int albaran_ = 0;
    bool terminada_ = true;
    bool correcta_ = false;
    std::size_t abortarTras_ = 0;
    std::string ultimaDudosa_;
    std::size_t lecturaHasta_ = 0;  // the last line of the trace is a reading that may go on
};

constexpr int64_t kBaudios[] = {300, 600, 1200, 2400, 4800, 9600, 19200};
constexpr Micros kAgrupa[] = {1 * kMilisegundo, 2 * kMilisegundo, 16 * kMilisegundo,
                              60 * kMilisegundo, 250 * kMilisegundo};

Mundo::Mundo(uint64_t semilla, bool conTraza)
    : conTraza_(conTraza),
      azar_(semilla),
      hechura_(sortearHechura()),
      baudios_(kBaudios[azar_.entre(0, 6)]),
      agrupa_(kAgrupa[azar_.entre(0, 4)]),
      linea_(tiempo_, azar_, baudios_, agrupa_),
      indicador_(tiempo_, hechura_,
                 [this](const std::string& bytes, std::size_t envio) {
                     return linea_.emitir(bytes, envio);
                 }),
      plataforma_(std::filesystem::path("."), tiempo_, linea_) {
    linea_.alOir = [this](char c, std::size_t salida) {
        if (conTraza_) apuntar("    llega " + legible({c}));
        indicador_.oir(c, salida);
    };
    linea_.alTransmitir = [this](const LineaSimulada::Salida& salida) {
        if (conTraza_)
            apuntar("  programa: " + legible({salida.c}) + (salida.repetida ? " (tiempo)" : ""));
        observador_.transmite(salida);
    };
    linea_.alLeer = [this](const std::string& bytes) {
        apuntarLectura(bytes);
        observador_.lee(bytes);
    };
    if (conTraza_) {
        indicador_.alSuceder([this](const std::string& s) { apuntar("    indicador: " + s); });
    }
    // As long as a frame takes and more, as a rule; too short now and then.
    const Micros trama = 80 * 10 * kSegundo / baudios_ + agrupa_ + 100 * kMilisegundo;
    holgada_ = static_cast<int32_t>(3 * trama / kMilisegundo);
    espera_ = static_cast<int32_t>(holgada_ * azar_.entre(azar_.sale(0.2) ? 1 : 5, 20) / 10);
    intentos_ = static_cast<int16_t>(azar_.entre(2, 12));
    nuevoCanal();
}

Hechura Mundo::sortearHechura() {
    Hechura h;
    h.sorda = azar_.sale(0.5);
    h.guardaLaPrimera = azar_.sale(0.3);
    h.empiezaDeNuevo = azar_.sale(0.5);
    h.peticion = azar_.sale(0.3) ? kAck[0] : 'P';
    h.espera = azar_.sale(0.5) ? 0 : azar_.entre(2, 12) * kSegundo;
    h.cuentaDesde = azar_.sale(0.5) ? static_cast<int>(azar_.entre(30, 60)) : 0;
    h.reaccion = azar_.entre(1, 60) * kMilisegundo;
    return h;
}

AveriasLinea Mundo::sortearAverias() {
    AveriasLinea a;
    const auto quiza = [&](double cuanto) {
        return azar_.sale(0.35) ? cuanto * static_cast<double>(azar_.entre(1, 10)) / 10 : 0;
    };
    a.altera = quiza(0.003);
    a.pierde = quiza(0.003);
    a.ruido = quiza(0.006);
    a.pierdeTrama = quiza(0.08);
    a.cortaTrama = quiza(0.08);
    a.retrasaTrama = quiza(0.15);
    a.pierdeRespuesta = quiza(0.08);
    a.alteraRespuesta = quiza(0.02);
    a.retrasaRespuesta = quiza(0.1);
    a.retrasoMaximo = espera_ * kMilisegundo * azar_.entre(1, 25) / 10;
    return a;
}

void Mundo::nuevoCanal() {
    canal_.reset();
    canal_ = std::make_unique<fComm>(plataforma_);
    canal_->Pesada.conectar(
        [this](int32_t&, bool& seguir, pesaDX5& pesada) { pesadaRecibida(seguir, pesada); });
    canal_->Resumen.conectar([this](int32_t& cuenta, std::string& mensaje) {
        apuntar("Resumen(" + std::to_string(cuenta) + ", \"" + mensaje + "\")");
        observador_.acaba();
        terminada_ = true;
        correcta_ = mensaje.empty();
    });
}

void Mundo::pesar() {
    PesadaDePrueba p;
    if (azar_.sale(0.6)) p.fechaHora = "19/07/99 12:30";
    if (azar_.sale(0.3)) {
        p.albaran = "";
        p.matricula = "SIN";
        for (int64_t i = azar_.entre(1, 3); i > 0; --i) indicador_.pesar(p.datos());
        return;
    }
    p.albaran = std::to_string(++albaran_);
    if (azar_.sale(0.2)) {  // a check character of code 13
        for (char a = 'A'; a <= 'z'; ++a) {
            for (char b = 'A'; b <= 'Z'; ++b) {
                p.matricula = std::string{a, b};
                if (xorDe(p.datos()) == '\r') return indicador_.pesar(p.datos());
            }
        }
    }
    indicador_.pesar(p.datos());
}

void Mundo::descargar(bool sana) {
    linea_.averias = sana ? AveriasLinea{} : sortearAverias();
    const bool muere = !sana && azar_.sale(0.05);
    const bool tira = !sana && azar_.sale(0.05);
    const Micros percance = tiempo_.ahora() + azar_.entre(0, 20 * espera_) * kMilisegundo;
    abortarTras_ = !sana && azar_.sale(0.05) ? static_cast<std::size_t>(azar_.entre(0, 5)) : 999;
    apuntar("descarga " + std::to_string(resultado_.descargas));
    terminada_ = correcta_ = false;
    linea_.enchufada = true;
    observador_.empiezaDescarga();
    const std::size_t antes = observador_.altas();
    canal_->TimeoutYRetrys(sana ? holgada_ : espera_, sana ? 20 : intentos_);
    canal_->Caracteres("\x02", "\x03", {hechura_.peticion}, 0);
    canal_->CopiaEsperada(ultimaDudosa_);
    canal_->Pedir(1, "9600,N,8,1");
    while (!terminada_ && tiempo_.paso()) {
        if (tiempo_.ahora() < percance || !linea_.enchufada) continue;
        if (muere) {
            apuntar("el programa muere");
            nuevoCanal();
            break;
        }
        if (tira) {
            apuntar("el cable se suelta");
            linea_.desenchufar();
        }
    }
    ++resultado_.descargas;
    if (correcta_) ++resultado_.correctas;
    if (correcta_) {
        ultimaDudosa_.clear();
    } else if (observador_.altas() > antes) {
        ultimaDudosa_ = indicador_.registros()[observador_.ultimo()];
    }
}

void Mundo::pasar(Micros cuanto) {
    bool pasado = false;
    tiempo_.en(tiempo_.ahora() + cuanto, [&pasado] { pasado = true; });
    while (!pasado) tiempo_.paso();
}

void Mundo::pesadaRecibida(bool& seguir, const pesaDX5& pesada) {
    if (observador_.altas() >= abortarTras_) return;
    seguir = true;
    const std::size_t registro = observador_.pesada(pesada.Datos());
    apuntar("  Pesada: registro " + std::to_string(registro));
}

ResultadoSimulacion Mundo::vivir() {
    const int64_t descargas = azar_.entre(1, 4);
    for (int64_t d = 0; d < descargas; ++d) {
        for (int64_t i = azar_.entre(0, 8); i > 0; --i) pesar();
        descargar(false);
        pasar(azar_.entre(50, 20000) * kMilisegundo);
    }
    // The faults end; an indicator that had waited for an answer may need a second request.
    for (int vez = 0; vez < 4 && (indicador_.pendientes() > 0 || !correcta_); ++vez) {
        pasar(30 * kSegundo);
        descargar(true);
    }
    resultado_.registros = static_cast<int>(indicador_.registros().size());
    observador_.juzgar(resultado_);
    return std::move(resultado_);
}

void Mundo::apuntar(const std::string& suceso) {
    if (!conTraza_) return;
    std::string linea = std::to_string(tiempo_.ahora() / kMilisegundo);
    resultado_.traza.push_back(std::string(8 - std::min<std::size_t>(8, linea.size()), ' ') +
                               linea + " " + suceso);
}

/// One line for what comes byte by byte.
void Mundo::apuntarLectura(const std::string& bytes) {
    if (!conTraza_) return;
    const bool sigue = !resultado_.traza.empty() && resultado_.traza.size() == lecturaHasta_;
    if (sigue) {
        resultado_.traza.back() += legible(bytes);
    } else {
        apuntar("  lee " + legible(bytes));
    }
    lecturaHasta_ = resultado_.traza.size();
    if (bytes.back() == '\r') lecturaHasta_ = 0;
}

std::string Mundo::legible(const std::string& bytes) {
    std::string texto;
    for (const char c : bytes) {
        if (c == kAck[0])
            texto += "ACK";
        else if (c == kNak[0])
            texto += "NAK";
        else if (c >= ' ' && c <= '~')
            texto += c;
        else
            texto += "<" + std::to_string(static_cast<unsigned char>(c)) + ">";
    }
    return texto;
}

}  // namespace

ResultadoSimulacion simularLinea(uint64_t semilla, bool conTraza) {
    return Mundo(semilla, conTraza).vivir();
}

}  // namespace bn::prueba
