// SPDX-License-Identifier: MIT
#include "tests/simulacion/Mundo.h"

#include <algorithm>
#include <array>
#include <exception>
#include <utility>

#include "destinations/XCel.h"
#include "tests/simulacion/MundoPorDentro.h"
#include "tests/soporte/TramasDePrueba.h"

namespace bn::prueba {

namespace {

constexpr std::array<int64_t, 7> kBaudios = {300, 600, 1200, 2400, 4800, 9600, 19200};
constexpr std::array<Micros, 5> kAgrupa = {1 * kMilisegundo, 2 * kMilisegundo, 16 * kMilisegundo,
                                           60 * kMilisegundo, 250 * kMilisegundo};

template <class Serie>
auto uno(Azar& azar, const Serie& serie) {
    return serie.at(
        static_cast<std::size_t>(azar.entre(0, static_cast<int64_t>(serie.size()) - 1)));
}

SistemaDeFicheros sortearSistema(Azar& azar) {
    return azar.sale(0.5) ? SistemaDeFicheros::kExt4 : SistemaDeFicheros::kNtfs;
}

}  // namespace

Mundo::Mundo(uint64_t semilla, bool conTraza)
    : conTraza_(conTraza),
      azar_(semilla),
      disco_(sortearSistema(azar_)),
      hechura_(sortearHechura()),
      baudios_(uno(azar_, kBaudios)),
      agrupa_(uno(azar_, kAgrupa)),
      linea_(tiempo_, azar_, baudios_, agrupa_),
      indicador_(tiempo_, hechura_,
                 [this](const std::string& bytes, std::size_t envio) {
                     return linea_.emitir(bytes, envio);
                 }),
      plataforma_("/programa", tiempo_, linea_),
      percances_(azar_, disco_, plataforma_, [this](const std::string& s) { apuntar(s); }),
      ruidosa_(azar_.sale(0.5)),
      periodo_(static_cast<int32_t>(azar_.entre(5, 90))) {
    linea_.alOir = [this](char c, std::size_t salida) { indicador_.oir(c, salida); };
    linea_.alTransmitir = [this](const LineaSimulada::Salida& salida) {
        if (conTraza_) {
            apuntar(std::string("  programa: ") +
                    (salida.c == kAck[0]   ? "ACK"
                     : salida.c == kNak[0] ? "NAK"
                                           : "petición") +
                    (salida.repetida ? " (tiempo)" : ""));
        }
        observador_.transmite(salida);
        copiaReconocida_ = copiaReconocida_ || (++enviados_ > 1 && salida.c == kAck[0]);
        percances_.alTransmitir();
    };
    linea_.alLeer = [this](const std::string& bytes) {
        apuntar("  lee " + legible(bytes));
        observador_.lee(bytes);
    };
    linea_.alAbrir = [this] { alAbrirPuerto(); };
    if (conTraza_) {
        indicador_.alSuceder([this](const std::string& s) { apuntar("    indicador: " + s); });
        disco_.alOperar = [this](const Operacion& operacion) {
            using Tipo = Operacion::Tipo;
            const bool mira = operacion.tipo == Tipo::kMirar || operacion.tipo == Tipo::kMedir ||
                              operacion.tipo == Tipo::kLeer || operacion.tipo == Tipo::kResolver;
            if (!mira) apuntar("      disco: " + operacion.texto());
        };
    }
    plataforma_.usarDisco(disco_);
    plataforma_.horaActual = 45000.5;
    plataforma_.conExcel = azar_.sale(0.4);
    const Micros trama = 80 * 10 * kSegundo / baudios_ + agrupa_ + 100 * kMilisegundo;
    holgada_ = static_cast<int32_t>(3 * trama / kMilisegundo);
    instalar();
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
    if (!ruidosa_) return a;
    const auto quiza = [&](double cuanto) {
        return azar_.sale(0.3) ? cuanto * static_cast<double>(azar_.entre(1, 10)) / 10 : 0;
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
    a.retrasoMaximo = holgada_ * kMilisegundo * azar_.entre(1, 25) / 10;
    return a;
}

/// The folders, the settings, and what a person has in the destinations already.
void Mundo::instalar() {
    disco_.crearCarpeta(percances_.programa);
    disco_.crearCarpeta(percances_.oficina);
    escribirIni();
    if (azar_.sale(0.5)) {
        textoPrevio_ = azar_.sale(0.5) ? "Pesadas del año\r\n" : "Pesadas";
        disco_.poner(percances_.lineas, textoPrevio_);
    }
    if (azar_.sale(0.5)) ponerLibro();
}

void Mundo::escribirIni() {
    const auto codigo = static_cast<int>(static_cast<unsigned char>(hechura_.peticion));
    const auto intentos = static_cast<int>(azar_.entre(2, 12));
    disco_.poner(percances_.programa / "bnDX5.ini",
                 "[General]\r\nCaracteres=2;3;84;" + std::to_string(codigo) +
                     "\r\nTimeOut=" + std::to_string(holgada_) + ";" + std::to_string(intentos) +
                     "\r\nAutom=" + std::to_string(periodo_) +
                     ";False\r\n[Excel]\r\nUso=True\r\nLibro=" + percances_.libro +
                     "\r\n[Texto]\r\nUso=True\r\nDestino=" + ficheros::aTexto(percances_.lineas) +
                     "\r\n");
}

void Mundo::ponerLibro() {
    XCel libro(plataforma_);
    if (plataforma_.conExcel) bn::ponerLibro(plataforma_.excel, percances_.libro, {kHoja});
    if (plataforma_.conExcel) disco_.poner(percances_.libro, "libro");
    libro.AbrirParaEscribir(percances_.libro, kHoja, true);
    libro.Celda(1, 1, std::string("Fecha"));
    libro.Celda(3, 12, std::string(kNotaAjena));
    libro.Guardar({});
    primeraFila_ = 2;
}

void Mundo::apuntar(const std::string& suceso) {
    if (!conTraza_) return;
    const std::string ms = std::to_string(tiempo_.ahora() / kMilisegundo);
    resultado_.traza.push_back(std::string(8 - std::min<std::size_t>(8, ms.size()), ' ') + ms +
                               " " + suceso);
}

void Mundo::falta(const std::string& que) {
    apuntar("FALTA: " + que);
    resultado_.faltas.push_back(que);
}

// The program's life.

void Mundo::arrancar() {
    if (puesto_) return;
    if (!disco_.vivo()) disco_.revivir();
    apuntar("arranca el programa");
    try {
        puesto_ = std::make_unique<Puesto>(plataforma_);
    } catch (const std::exception& error) {
        apuntar(std::string("no arranca: ") + error.what());
        tiempo_.en(tiempo_.ahora() + 5 * kSegundo, [this] { arrancar(); });
        return;
    }
    puesto_->PesadaRecibida.conectar([this](pesaDX5& pesada) { pesadaRecibida(pesada.Datos()); });
    puesto_->CambioEstado.conectar([this](int32_t& estado) { alCambiarEstado(estado); });
    puesto_->avisoFuera.conectar([this](const std::string& texto) { apuntar("aviso: " + texto); });
}

void Mundo::muere(bool corte) {
    apuntar(corte ? "SE VA LA CORRIENTE" : "MATAN EL PROGRAMA");
    ++(corte ? resultado_.cortes : resultado_.muertes);
    disco_.morir();
    puesto_.reset();
    if (corte) disco_.cortarCorriente(azar_.bruto());
    linea_.enTemporizador = false;
    plataforma_.excel.instanciasAbiertas = 0;
    mirarDudosa();  // also after a download: the power may bring back what had been cut off
    enDescarga_ = false;
    disco_.morirEn(0);
    tiempo_.en(tiempo_.ahora() + azar_.entre(1, 20) * kSegundo, [this] { arrancar(); });
}

void Mundo::cerrar() {
    if (!puesto_) return;
    apuntar("se cierra el programa");
    ++resultado_.cierres;
    ++peticiones_;  // a failure to keep the settings is told
    puesto_.reset();
    if (enDescarga_) mirarDudosa();
    enDescarga_ = false;
}

void Mundo::transcurrir(Micros cuanto) {
    const Micros hasta = tiempo_.ahora() + cuanto;
    bool pasado = false;
    tiempo_.en(hasta, [&pasado] { pasado = true; });
    while (!pasado) {
        try {
            tiempo_.paso();
        } catch (const MuerteSubita&) {
            muere(percances_.corte());
        }
    }
}

/// A person at the desk, if there is a program to be used.
void Mundo::alguien(const std::function<void(Puesto&)>& orden) {
    if (!puesto_) return;
    ++peticiones_;
    orden(*puesto_);
}

void Mundo::episodio() {
    const Micros largo = azar_.entre(5, 400) * kSegundo;
    const auto alguna_vez = [&] { return tiempo_.ahora() + azar_.entre(0, largo / 1000) * 1000; };
    percances_.sortear();
    linea_.averias = sortearAverias();
    linea_.enchufada = true;
    if (azar_.sale(0.6)) percances_.sortearMuerte();
    for (int64_t i = azar_.entre(0, 8); i > 0; --i) tiempo_.en(alguna_vez(), [this] { pesar(); });
    if (azar_.sale(0.3)) {
        tiempo_.en(alguna_vez(), [this] {
            apuntar("alguien pide una descarga");
            alguien([](Puesto& puesto) { puesto.descargar(); });
        });
    }
    if (azar_.sale(0.2)) {
        tiempo_.en(alguna_vez(), [this] {
            apuntar("alguien pide guardar las pendientes");
            alguien([](Puesto& puesto) { puesto.guardarPendientes(); });
        });
    }
    if (azar_.sale(0.1)) {
        tiempo_.en(alguna_vez(), [this] {
            cerrar();
            tiempo_.en(tiempo_.ahora() + 3 * kSegundo, [this] { arrancar(); });
        });
    }
    if (azar_.sale(0.15)) tiempo_.en(alguna_vez(), [this] { retirarTexto(); });
    if (ruidosa_ && azar_.sale(0.1)) tiempo_.en(alguna_vez(), [this] { linea_.desenchufar(); });
    transcurrir(largo);
}

void Mundo::pesar() {
    PesadaDePrueba p;
    p.codigoB = std::to_string(++codigo_);
    if (azar_.sale(0.6)) p.fechaHora = "19/07/99 12:30";
    if (azar_.sale(0.2)) {
        p.albaran = "";
        p.matricula = "SIN";
        for (int64_t i = azar_.entre(1, 3); i > 0; --i) indicador_.pesar(p.datos());
        return;
    }
    p.albaran = std::to_string(++albaran_);
    if (azar_.sale(0.1)) {  // a check character of code 13
        for (char a = 'A'; a <= 'Z'; ++a) {
            for (char b = 'A'; b <= 'z'; ++b) {
                p.matricula = std::string{a, b};
                if (xorDe(p.datos()) == '\r') return indicador_.pesar(p.datos());
            }
        }
    }
    indicador_.pesar(p.datos());
}

/// Whether a note says that a part of the text file has been begun, and not how it ended.
bool Mundo::hayParteEmpezada() const {
    for (const std::string& nombre : disco_.nombres(percances_.programa)) {
        if (!nombre.ends_with(".nota")) continue;
        const std::string& nota = disco_.contenido(percances_.programa / nombre);
        const auto ultima = [&](const std::string& que) {
            const std::size_t sitio = nota.rfind(que + "\ttexto");
            return sitio == std::string::npos ? -1 : static_cast<int64_t>(sitio);
        };
        if (ultima("empieza") > std::max(ultima("llega"), ultima("hecho"))) return true;
    }
    return false;
}

/// Another program takes the lines in, and the file away.
void Mundo::retirarTexto() {
    if (!disco_.existe(percances_.lineas)) return;
    apuntar("alguien se lleva el fichero de texto");
    ++resultado_.retiradas;
    retirado_ += sinLoPrevio(disco_.contenido(percances_.lineas));
    const bool quedan = puesto_ && puesto_->controlador().numPendientes() > 0;
    if (quedan || hayParteEmpezada()) {
        retiradoEnDuda_ = true;
    }
    if (!retirado_.empty() && !retirado_.ends_with('\n')) retirado_ += "\r\n";
    disco_.quitar(percances_.lineas);
    textoPrevio_.clear();
}

/// The text file's contents without what a person had there.
std::string Mundo::sinLoPrevio(const std::string& contenido) {
    if (contenido == textoPrevio_) return {};
    if (!contenido.starts_with(textoPrevio_)) {
        falta("el principio del fichero de texto ha cambiado");
        return contenido;
    }
    std::size_t desde = textoPrevio_.size();
    // An open last line gets its end before anything else; each power cut there may leave a part.
    if (desde > 0 && !textoPrevio_.ends_with('\n')) {
        while (desde < contenido.size() && contenido[desde] >= 0 && contenido[desde] < ' ') ++desde;
    }
    return contenido.substr(desde);
}

// What is known of each download.

void Mundo::alAbrirPuerto() {
    apuntar("empieza una descarga");
    ++resultado_.descargas;
    observador_.empiezaDescarga();
    enDescarga_ = true;
    enEsta_ = 0;
    enviados_ = 0;
    copiaReconocida_ = false;
}

void Mundo::alCambiarEstado(int32_t estado) {
    apuntar("estado " + std::to_string(estado) + " " + puesto_->controlador().Explicacion());
    if (estado == kTerminada) ++resultado_.correctas;
    if (estado < kGuardando || !enDescarga_) return;
    mirarDudosa();
    enDescarga_ = false;
    observador_.acaba();
}

void Mundo::pesadaRecibida(const std::string& datos) {
    const bool numerada = datos.substr(9, 7) != std::string(7, ' ');
    // One acknowledged untold was its copy: then it has lasted, and this is one more.
    const bool primera = enEsta_ == 0 && !copiaReconocida_;
    if (hayDudosa_ && primera && numerada && guardadas_.back().datos == datos) {
        guardadas_.back().desdicha = true;
        observador_.desdecir();
    }
    hayDudosa_ = false;
    observador_.pesada(datos);
    guardadas_.push_back({datos});
    ++enEsta_;
    apuntar("  guardada " + claveDeDatos(datos));
}

/// A record may stand in the store that the program has not lived, or not been able, to tell.
void Mundo::mirarDudosa() {
    const auto almacen = percances_.programa / "bnGuardo.txt";
    const std::string todo = disco_.existe(almacen) ? disco_.contenido(almacen) : std::string();
    std::vector<std::string> lineas;
    std::size_t desde = 0;
    for (std::size_t fin = todo.find("\r\n"); fin != std::string::npos;
         fin = todo.find("\r\n", desde)) {
        lineas.push_back(todo.substr(desde, fin - desde));
        desde = fin + 2;
    }
    if (enDescarga_ && lineas.size() < enEsta_) falta("el almacén ha perdido pesadas contadas");
    const bool sabida = hayDudosa_ && !lineas.empty() && guardadas_.back().datos == lineas.back();
    if (sabida || lineas.size() <= enEsta_) return;
    apuntar("  dudosa " + claveDeDatos(lineas.back()));
    observador_.pesada(lineas.back());
    guardadas_.push_back({lineas.back(), true});
    hayDudosa_ = true;
}

void ResultadoMundo::sumar(const ResultadoMundo& otro) {
    descargas += otro.descargas;
    correctas += otro.correctas;
    registros += otro.registros;
    muertes += otro.muertes;
    cortes += otro.cortes;
    cierres += otro.cierres;
    retiradas += otro.retiradas;
    averiasDeDisco += otro.averiasDeDisco;
    averiasDeExcel += otro.averiasDeExcel;
    for (const auto& [causa, veces] : otro.disculpas) disculpas[causa] += veces;
    faltas.insert(faltas.end(), otro.faltas.begin(), otro.faltas.end());
}

ResultadoMundo simularMundo(uint64_t semilla, bool conTraza) {
    return Mundo(semilla, conTraza).vivir();
}

}  // namespace bn::prueba
