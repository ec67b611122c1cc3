// SPDX-License-Identifier: MIT
#include "app/Puesto.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "app/Aspecto.h"
#include "app/Guardia.h"
#include "app/PlataformaVigilada.h"
#include "destinations/XCel.h"
#include "platform/Ficheros.h"

namespace bn {

namespace {

constexpr int32_t kEnSeguida = 1;            // ms: once the call that is running has unwound
constexpr int32_t kEntrePasos = 5 * 60'000;  // ms without a save pass
constexpr int32_t kHastaQueAcabe = 1'000;    // ms, while a download runs

/// A channel that is no channel is found here, before anything is shown; and the file stays as it
/// is.
std::shared_ptr<Setup> leerConfiguracion(Plataforma& plataforma) {
    auto cfg = std::make_shared<Setup>(plataforma);
    try {
        cfg->canal();
    } catch (...) {
        cfg->Abandonar();
        throw;
    }
    return cfg;
}

/// A count that notices how deep the program is inside notifications.
class Dentro {
 public:
    explicit Dentro(int& cuenta) : cuenta_(cuenta) { ++cuenta_; }
    Dentro(const Dentro&) = delete;
    Dentro& operator=(const Dentro&) = delete;
    ~Dentro() { --cuenta_; }

 private:
    int& cuenta_;
};

}  // namespace

/// In order of creation: whatever is made by the watched platform goes before the guard that it
/// reports to.
struct Puesto::Interior {
    Interior(Puesto& suyo, Plataforma& de);

    void borrarRestos();
    void prepararExcel();
    void nuevoControlador();
    void alCambiarEstado(int32_t& estado);
    void alFallar(const std::string& error);
    void relevar();
    void contarFallo(const std::string& error);
    void repasar();
    void pasarPendientes();
    void avisarFuera();
    void mensaje(const std::string& texto);
    bool iniciar(bool loPidenAhora);
    std::string textoDelFallo(const std::string& error) const;

    Puesto& puesto;
    Plataforma& exterior;
    Guardia guardia;
    PlataformaVigilada plataforma;
    std::shared_ptr<Setup> cfg;
    bool hayExcel = true;
    std::unique_ptr<Descarga> mDes;
    CuentaAtras cuenta;
    std::unique_ptr<Temporizador> relevo;  // not watched: it works where the guard lets nothing in
    std::unique_ptr<Temporizador> repaso;
    int dentro = 0;                     // notifications being handled, one inside the other
    bool pedida = false;                // a person asked for the download that runs, or ran last
    std::string averia;                 // the error that the controller is replaced for
    std::string fallo;                  // one outside any save pass, until something goes well
    std::string contado;                // what was last told outside
    std::vector<std::string> mensajes;  // of the platform, while nobody asked
};

Puesto::Interior::Interior(Puesto& suyo, Plataforma& de)
    : puesto(suyo),
      exterior(de),
      plataforma(
          de,
          [this](const auto& aviso) {
              const Dentro marca(dentro);
              guardia.atender(aviso);
          },
          [this](const auto& texto) { mensaje(texto); }),
      cfg(leerConfiguracion(plataforma)),
      cuenta(
          plataforma, [this] { return iniciar(false); }, [this] { return cfg->AutoCadaXSegs(); }),
      relevo(de.nuevoTemporizador()),
      repaso(plataforma.nuevoTemporizador()) {
    guardia.averia.conectar([this](const std::string& error) { alFallar(error); });
    guardia.tropiezo.conectar([this](const std::string& error) {
        exterior.avisar("Se ha producido un error:\n" + error);
    });
    relevo->Interval(kEnSeguida);
    relevo->Timer.conectar([this] { relevar(); });
    repaso->Interval(kEnSeguida);
    repaso->Timer.conectar([this] { repasar(); });
    prepararExcel();
    borrarRestos();
    nuevoControlador();
    repaso->Enabled(true);
}

/// What killed saves have left half written beside the workbook; of the program's own folder the
/// controller takes care, and beside the text file nothing is ever left.
void Puesto::Interior::borrarRestos() {
    const std::string libro = cfg->LibroExcel();
    if (libro.empty()) return;
    ficheros::borrarTemporales(plataforma.disco(), ficheros::aRuta(libro).parent_path());
}

/// What the program itself has switched off for want of a spreadsheet application comes back with
/// one.
void Puesto::Interior::prepararExcel() {
    hayExcel = XCel(plataforma).HayExcel();
    cfg->ExcelEnFalta(!hayExcel);
}

void Puesto::Interior::nuevoControlador() {
    mDes = std::make_unique<Descarga>(plataforma);
    mDes->DatosCfg(cfg);
    mDes->PesadaRecibida.conectar([this](pesaDX5& pesada) { puesto.PesadaRecibida(pesada); });
    mDes->CambioEstado.conectar([this](int32_t& estado) { alCambiarEstado(estado); });
}

void Puesto::Interior::alCambiarEstado(int32_t& estado) {
    if (estado == kGuardando) {
        repaso->Interval(kEntrePasos);
        repaso->Enabled(true);  // from now on
    }
    const bool terminada = estado == kTerminada || estado == kFallida;
    if (estado == kTerminada) fallo.clear();
    puesto.CambioEstado(estado);
    if (terminada && cfg->AutoCadaXSegs() > 0) cuenta.arrancar();
    if (terminada) avisarFuera();
    puesto.cambio();
}

bool Puesto::Interior::iniciar(bool loPidenAhora) {
    const bool iniciada = mDes->iniciarProceso();
    if (iniciada) {
        pedida = loPidenAhora;
        mensajes.clear();
    } else {
        avisarFuera();
    }
    puesto.cambio();
    return iniciada;
}

/// The failed call has still to unwind through what is about to be replaced.
void Puesto::Interior::alFallar(const std::string& error) {
    averia = error;
    relevo->Enabled(true);
}

void Puesto::Interior::relevar() {
    relevo->Enabled(false);
    const bool eraDeGuardar = mDes->Estado() == kGuardando;
    const bool quedaPorIntentar = mDes->quedaSinIntentar();
    Descarga::Memoria memoria = mDes->memoria();
    mDes.reset();  // closes its port, and quits Excel, before the new one can ask for them
    nuevoControlador();
    mDes->memoria(std::move(memoria));
    guardia.reanudar();
    if (quedaPorIntentar) pasarPendientes();
    if (!eraDeGuardar) fallo = averia;
    int32_t reposo = kEnReposo;
    puesto.CambioEstado(reposo);
    cuenta.arrancar();
    contarFallo(std::exchange(averia, {}));
    puesto.cambio();
}

/// Whoever asked for it gets a message box, everybody else the window and a word beside the icon.
void Puesto::Interior::contarFallo(const std::string& error) {
    const bool guardadas = mDes->numPendientes() == 0 && fallo.empty();
    if (!std::exchange(pedida, false)) return avisarFuera();
    if (!guardadas) exterior.avisar(textoDelFallo(error));
    contado = mDes->motivoPendientes();  // told already
}

std::string Puesto::Interior::textoDelFallo(const std::string& error) const {
    if (mDes->numPendientes() == 0) return "Se ha producido un error:\n" + error;
    const std::string motivo = mDes->motivoPendientes();
    const bool yaLoDice = motivo.find(error) != std::string::npos;
    return "No se han podido guardar las pesadas:\n" + (yaLoDice ? "" : error + "\n\n") +
           textoDePendientes(mDes->numPendientes(), motivo);
}

/// At the start, and when no pass has run for a while.
void Puesto::Interior::repasar() {
    const int32_t estado = mDes->Estado();
    if (estado == kPidiendo || estado == kRecibiendo) {
        repaso->Interval(kHastaQueAcabe);
        repaso->Enabled(true);
        return;
    }
    pasarPendientes();
    avisarFuera();
}

void Puesto::Interior::pasarPendientes() {
    const Dentro marca(dentro);
    repaso->Interval(kEntrePasos);
    repaso->Enabled(true);
    mensajes.clear();
    mDes->guardarPendientes();
    puesto.cambio();
}

/// One message at a time, told again only when it says something else.
void Puesto::Interior::avisarFuera() {
    std::string texto = fallo;
    if (texto.empty() && mDes->hayFallo()) {
        texto = mDes->motivoPendientes();
        for (const std::string& aviso : mDes->avisos())
            texto += (texto.empty() ? "" : "\n") + aviso;
    }
    if (texto == contado) return;
    contado = texto;
    if (!texto.empty()) puesto.avisoFuera(texto);
}

/// Boxes of the spreadsheet wrapper during a pass become the window's text: whoever asked for the
/// pass is told of its failure as a whole.
void Puesto::Interior::mensaje(const std::string& texto) {
    if (dentro == 0) return exterior.mensajeCritico(texto);
    const bool repetido = std::find(mensajes.begin(), mensajes.end(), texto) != mensajes.end();
    if (!texto.empty() && !repetido) mensajes.push_back(texto);
}

Puesto::Puesto(Plataforma& plataforma) : interior_(std::make_unique<Interior>(*this, plataforma)) {
    interior_->cuenta.arrancar();
}

Puesto::~Puesto() {
    interior_->mDes.reset();
    interior_->cfg.reset();
}

Setup& Puesto::configuracion() { return *interior_->cfg; }
Descarga& Puesto::controlador() { return *interior_->mDes; }
const Descarga& Puesto::controlador() const { return *interior_->mDes; }
CuentaAtras& Puesto::cuenta() { return interior_->cuenta; }
bool Puesto::hayExcel() const { return interior_->hayExcel; }
Plataforma& Puesto::plataforma() { return interior_->plataforma; }

bool Puesto::descargar() {
    bool iniciada = false;
    atender([&] { iniciada = interior_->iniciar(true); });
    return iniciada;
}

void Puesto::limpiar() {
    interior_->mDes->Reset();
    if (interior_->cfg->AutoCadaXSegs() > 0) interior_->cuenta.arrancar();
}

void Puesto::guardarPendientes() {
    if (!puedeCerrarse() || interior_->mDes->Estado() == kPidiendo) return;
    interior_->pasarPendientes();
    const Descarga& descarga = *interior_->mDes;
    if (descarga.numPendientes() == 0) return interior_->avisarFuera();
    interior_->contado = descarga.motivoPendientes();
    interior_->exterior.avisar(
        textoDePendientes(descarga.numPendientes(), descarga.motivoPendientes()));
}

bool Puesto::descartarPendientes() {
    const bool descartadas = interior_->mDes->descartarPendientes();
    if (!descartadas) {
        std::string texto = "No se han podido descartar las pesadas pendientes.";
        for (const std::string& aviso : interior_->mDes->avisos()) texto += "\n" + aviso;
        interior_->exterior.avisar(texto);
    }
    interior_->avisarFuera();
    cambio();
    return descartadas;
}

bool Puesto::puedeCerrarse() const {
    const int32_t estado = interior_->mDes->Estado();
    return estado != kRecibiendo && estado != kGuardando;
}

std::vector<std::string> Puesto::avisos() const {
    std::vector<std::string> todos = interior_->mDes->avisos();
    if (!interior_->fallo.empty()) todos.push_back("Se ha producido un error: " + interior_->fallo);
    const std::string motivo = interior_->mDes->motivoPendientes();
    for (const std::string& mensaje : interior_->mensajes) {
        if (motivo.find(mensaje) == std::string::npos) todos.push_back(mensaje);
    }
    return todos;
}

void Puesto::atender(const std::function<void()>& orden) {
    interior_->guardia.atenderUsuario(orden);
}

}  // namespace bn
