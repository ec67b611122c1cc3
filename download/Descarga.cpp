// SPDX-License-Identifier: MIT
#include "download/Descarga.h"

#include <algorithm>
#include <utility>

#include "download/Motivo.h"
#include "platform/Ficheros.h"
#include "platform/NombreFechado.h"

namespace bn {

namespace {

constexpr const char* kFinDeLinea = "\r\n";

std::size_t indice(Destino destino) { return static_cast<std::size_t>(destino); }

/// Whether a batch still has something for a destination.
bool espera(const Lote& lote, Destino destino) {
    const Parte& parte = lote.nota().parte(destino);
    return parte.suya && !parte.hecha;
}

}  // namespace

Descarga::Descarga(Plataforma& plataforma)
    : plataforma_(plataforma),
      mSaco_(std::make_unique<sacoTramas>(plataforma)),
      mExcel_(std::make_unique<XCel>(plataforma)),
      mCom_(std::make_unique<fComm>(plataforma)),
      pendientes_(plataforma) {
    mCom_->Pesada.conectar([this](int32_t& numero, bool& aceptada, pesaDX5& pesada) {
        mCom_Pesada(numero, aceptada, pesada);
    });
    mCom_->Resumen.conectar([this](int32_t& recibidas, std::string& explicacion) {
        mCom_Resumen(recibidas, explicacion);
    });
}

Descarga::~Descarga() {
    mCom_.reset();
    mExcel_.reset();
    mSaco_.reset();
    configuracion_.reset();
}

void Descarga::DatosCfg(std::shared_ptr<Setup> configuracion) {
    configuracion_ = std::move(configuracion);
}

const std::shared_ptr<Setup>& Descarga::configuracion() {
    if (!configuracion_) configuracion_ = std::make_shared<Setup>(plataforma_);
    return configuracion_;
}

bool Descarga::iniciarProceso() {
    if (enCurso()) return false;
    const std::shared_ptr<Setup> cfg = configuracion();
    const int16_t canal = cfg->canal();  // settings that cannot be used change nothing either
    if (!preparar()) return false;
    mCom_->TimeoutYRetrys(cfg->Timeout(), cfg->MaxRetrys());
    mCom_->Caracteres(cfg->CaracterInicial(), cfg->CaracterFinal(), cfg->CaracterPeticion(),
                      cfg->Checksum());
    mCom_->CopiaEsperada(pendientes_.copia());
    mCom_->Pedir(canal, cfg->Params());
    recibidas_ = 0;
    abortar_ = false;
    explicacion_.clear();
    cambiarEstado(kPidiendo);
    return true;
}

/// Nothing that has not arrived stands in the way, the store is empty, and its note is there.
bool Descarga::preparar() {
    memoria_.avisos.clear();
    if (!pendientes_.despejar()) {
        memoria_.avisos = {motivo::deAtasco(pendientes_.atasco())};
        return false;
    }
    auto saco = std::make_unique<sacoTramas>(plataforma_);
    if (!saco->iniGuardo()) {
        memoria_.avisos = {motivo::deAtasco(ficheros::aTexto(sacoTramas::fichero(plataforma_)))};
        return false;
    }
    if (!pendientes_.preparar()) {
        memoria_.avisos = {motivo::deAtasco(pendientes_.atasco())};
        return false;
    }
    mSaco_ = std::move(saco);
    recibiendo_ = true;
    return true;
}

void Descarga::Reset() {
    if (enCurso()) return;
    recibidas_ = 0;
    explicacion_.clear();
    if (estado_ != kEnReposo) cambiarEstado(kEnReposo);
}

void Descarga::Abortar() {
    if (estado_ == kPidiendo || estado_ == kRecibiendo) abortar_ = true;
}

int32_t Descarga::Estado() const { return estado_; }

int32_t Descarga::numRecibidas() const {
    return estado_ == kEnReposo || estado_ == kPidiendo ? 0 : recibidas_;
}

std::string Descarga::Explicacion() const { return explicacion_; }

void Descarga::mCom_Pesada(int32_t numero, bool& aceptada, pesaDX5& pesada) {
    if (abortar_) return;
    aceptada = mSaco_->Guardo(pesada.Datos());
    if (!aceptada) return pendientes_.actual()->dudar();
    pendientes_.actual()->sumar();
    quedaSinIntentar_ = true;
    recibidas_ = numero;
    if (estado_ != kRecibiendo) cambiarEstado(kRecibiendo);
    PesadaRecibida(pesada);
}

void Descarga::mCom_Resumen(int32_t recibidas, const std::string& explicacion) {
    explicacion_ = explicacion;
    recibidas_ = recibidas;
    const bool fallidaSinPesadas = !explicacion.empty() && recibidas == 0;
    if (fallidaSinPesadas) {
        recibiendo_ = false;
        return cambiarEstado(kFallida);
    }
    cambiarEstado(kGuardando);
    anotarFin();
    // Errors of a pass that has nothing but this download to save end it for both destinations:
    // whoever delivered the summary hears of them at once.
    const auto lotes = pendientes_.porLlegar();
    const bool soloEsta = lotes.empty() || lotes.front() == pendientes_.actual();
    pasar(soloEsta ? PasoDeGuardado::Fallo::kDeTodo : PasoDeGuardado::Fallo::kDeCadaUna);
    cambiarEstado(explicacion_.empty() ? kTerminada : kFallida);
}

/// A download that the indicator has closed has heard every acknowledge.
void Descarga::anotarFin() {
    if (!explicacion_.empty()) return;
    Lote& lote = *pendientes_.actual();
    lote.nota().aplazar(apunte::Fin{true});
    if (lote.cuantas() > 0 || lote.nota().copia().empty()) return;
    try {
        lote.nota().apuntar({});
    } catch (const ErrorFichero&) {
        return;  // the next download may take a weighing for a copy only if it is one to the letter
    }
}

void Descarga::pasar(PasoDeGuardado::Fallo fallo) {
    const auto lotes = pendientes_.porLlegar();
    PasoDeGuardado paso(plataforma_, *configuracion(), *mExcel_);
    try {
        paso.ejecutar(lotes, fallo);
    } catch (const std::exception& error) {
        recoger(paso);
        if (!falloDeDestino()) memoria_.propio = motivo::deFicherosPropios(error.what());
        throw;
    }
    recoger(paso);
}

/// What the pass has to tell, and what it has left to be cleared away.
void Descarga::recoger(const PasoDeGuardado& paso) {
    recibiendo_ = false;
    quedaSinIntentar_ = paso.quedaSinIntentar();
    memoria_.avisos = paso.avisos();
    memoria_.propio.clear();
    for (const Destino destino : kDestinos) {
        std::string& fallo = memoria_.fallos.at(indice(destino));
        fallo.clear();
        if (!paso.error(destino)) continue;
        try {
            std::rethrow_exception(paso.error(destino));
        } catch (const std::exception& error) {
            fallo = motivo::deFallo(destino, error);
        }
    }
    pendientes_.retirar();
}

/// Whether the batches may be touched, and can be seen.
bool Descarga::puedePasar() {
    if (enCurso()) return false;
    const bool vistas = pendientes_.releer();
    if (!vistas) memoria_.avisos = {motivo::deFicherosPropios(pendientes_.atasco())};
    return vistas;
}

bool Descarga::guardarPendientes() {
    if (!puedePasar()) return false;
    if (pendientes_.porLlegar().empty()) {
        pendientes_.retirar();
        return true;
    }
    try {
        pasar(PasoDeGuardado::Fallo::kDeCadaUna);
    } catch (const std::exception& error) {
        // What the pass itself has met is known by now; before it only the settings can fail.
        if (!hayFallo()) memoria_.avisos = {error.what()};
    }
    return numPendientes() == 0;
}

bool Descarga::descartarPendientes() {
    if (!puedePasar()) return false;
    try {
        descartar();
        return true;
    } catch (const std::exception& error) {
        memoria_.avisos = {motivo::deFicherosPropios(error.what())};
        return false;
    }
}

/// The copy first: what it keeps is given up only then.
void Descarga::descartar() {
    const auto lotes = pendientes_.porLlegar();
    std::string copia;
    for (Lote* lote : lotes) {
        const LoteEnCurso leido{*lote, lote->pesadas()};
        for (std::size_t i = 0; i < leido.pesadas.size(); ++i) {
            if (lote->falta(i)) copia += leido.pesadas[i] + kFinDeLinea;
        }
    }
    if (lotes.empty()) return;
    Disco& disco = plataforma_.disco();
    const auto carpeta = plataforma_.carpetaPrograma();
    ficheros::reemplazar(
        disco, nombreFechado(disco, carpeta / "bnDescartadas-", plataforma_.ahora(), ".txt"),
        copia);
    for (Lote* lote : lotes) lote->nota().apuntar({apunte::Descarte{}});
    memoria_ = {};
    pendientes_.retirar();
}

int32_t Descarga::numPendientes() const {
    std::size_t total = pendientes_.cuantas();
    const Lote* actual = pendientes_.actual();
    if (recibiendo_ && actual != nullptr) total -= actual->porLlegar();
    return static_cast<int32_t>(total);
}

bool Descarga::hayFallo() const {
    const auto ilegible = [](const Lote* lote) { return lote->ilegible(); };
    const auto lotes = pendientes_.porLlegar();
    return falloDeDestino() || !memoria_.propio.empty() || !pendientes_.atasco().empty() ||
           std::any_of(lotes.begin(), lotes.end(), ilegible);
}

bool Descarga::falloDeDestino() const {
    return std::any_of(memoria_.fallos.begin(), memoria_.fallos.end(),
                       [](const std::string& fallo) { return !fallo.empty(); });
}

std::string Descarga::motivoPendientes() const {
    if (numPendientes() == 0) return {};
    bool sinDestino = false;
    std::array<bool, kDestinos.size()> faltan{};
    std::string propio = memoria_.propio;
    for (const Lote* lote : pendientes_.porLlegar()) {
        if (recibiendo_ && lote == pendientes_.actual()) continue;
        if (lote->ilegible()) propio = motivo::deFicherosPropios(lote->porQueIlegible());
        sinDestino = sinDestino || !lote->nota().hayPase();
        for (const Destino destino : kDestinos) {
            faltan.at(indice(destino)) = faltan.at(indice(destino)) || espera(*lote, destino);
        }
    }
    std::vector<std::string> motivos;
    if (!propio.empty()) motivos.push_back(propio);
    for (const Destino destino : kDestinos) {
        if (!faltan.at(indice(destino))) continue;
        if (configuracion_ && !elegido(destino)) {
            const bool falta = destino == Destino::kHoja && configuracion_->ExcelEnFalta();
            motivos.push_back(falta ? motivo::deFaltaExcel() : motivo::deDesmarcado(destino));
        } else if (!memoria_.fallos.at(indice(destino)).empty()) {
            motivos.push_back(memoria_.fallos.at(indice(destino)));
        }
    }
    const bool ninguno = configuracion_ && !configuracion_->UsoTexto() &&
                         !configuracion_->UsoExcel() && !configuracion_->ExcelEnFalta();
    if (sinDestino && ninguno) motivos.push_back(motivo::deNingunDestino());
    if (motivos.empty()) motivos.push_back(motivo::deEspera());
    std::string texto;
    for (const std::string& uno : motivos) texto += (texto.empty() ? "" : "\n") + uno;
    return texto;
}

bool Descarga::elegido(Destino destino) const {
    return destino == Destino::kHoja ? configuracion_->UsoExcel() : configuracion_->UsoTexto();
}

/// Handlers get the controller's own state.
void Descarga::cambiarEstado(int32_t estado) {
    estado_ = estado;
    CambioEstado(estado_);
}

bool Descarga::enCurso() const {
    return estado_ == kPidiendo || estado_ == kRecibiendo || estado_ == kGuardando;
}

}  // namespace bn
