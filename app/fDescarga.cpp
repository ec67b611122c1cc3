// SPDX-License-Identifier: MIT
#include "app/fDescarga.h"

#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QIcon>
#include <QMetaObject>
#include <algorithm>
#include <array>
#include <utility>

#include "app/Aspecto.h"
#include "app/Bandeja.h"
#include "app/ControlesDescarga.h"
#include "app/CuentaAtras.h"
#include "app/Guardia.h"
#include "app/LineaDeMuestra.h"
#include "app/MenuAcciones.h"
#include "app/PlataformaVigilada.h"
#include "app/Rescate.h"
#include "app/Version.h"
#include "config/APIsVarias.h"
#include "config/Setup.h"
#include "destinations/EdiExc.h"
#include "destinations/EdiTxt.h"
#include "download/Descarga.h"
#include "link/EdiCom.h"
#include "platform/Ficheros.h"
#include "ventanas/Estilo.h"
#include "ventanas/MarcoPlano.h"

namespace bn {

namespace {

constexpr int32_t kUltimaFase = 4;
constexpr int32_t kNoEncontrado = 2;  // the shell's "file not found"
constexpr const char* kPaginaWeb = "https://www.balnor.example/";

QIcon gancho() { return QIcon(QStringLiteral(":/gancho.png")); }

void colorear(QLabel& etiqueta, const QColor& color) {
    QPalette paleta = etiqueta.palette();
    paleta.setColor(QPalette::WindowText, color);
    etiqueta.setPalette(paleta);
}

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

}  // namespace

/// In order of creation: whatever is made by the platform goes before the guard it reports to.
struct fDescarga::Interior {
    Interior(Plataforma& exterior, QWidget& ventana)
        : rescate(exterior),
          guardia(exterior, rescate, [this] { return enDescarga(); }),
          plataforma(exterior, [this](const auto& aviso) { guardia.atender(aviso); }),
          cfg(leerConfiguracion(plataforma)),
          cuenta(
              plataforma, [this] { return iniciarDescarga(); },
              [this] { return cfg->AutoCadaXSegs(); }),
          ver(ventana),
          menu(ventana),
          mSys(gancho(), *menu.MnAcciones) {}

    bool enDescarga() const {
        const int32_t estado = mDes ? mDes->Estado() : kEnReposo;
        return estado == kPidiendo || estado == kRecibiendo || estado == kGuardando;
    }

    /// Starts a download, unless one is running or the last one's weighings cannot be put aside.
    bool iniciarDescarga() {
        if (enDescarga()) return false;
        if (rescate.despejar()) return mDes->iniciarProceso();
        if (!std::exchange(atascoContado, true)) {
            plataforma.mensajeCritico(
                "No se puede empezar otra descarga: las pesadas de la anterior no se han guardado, "
                "y no se puede apartar el fichero\n" +
                ficheros::aTexto(sacoTramas::fichero(plataforma)) +
                "\n\nCópielo a otro sitio y bórrelo.");
        }
        return false;
    }

    Rescate rescate;
    Guardia guardia;
    PlataformaVigilada plataforma;
    std::shared_ptr<Setup> cfg;
    std::unique_ptr<Descarga> mDes;
    CuentaAtras cuenta;
    ControlesDescarga ver;
    MenuAcciones menu;
    Bandeja mSys;
    std::string ultimoFalloAvisado;
    bool atascoContado = false;  // told once, not at every end of the countdown
};

fDescarga::fDescarga(Plataforma& plataforma, QWidget* padre) : QWidget(padre) {
    setObjectName(QStringLiteral("fDescarga"));
    setWindowTitle(QStringLiteral("bnDX5"));
    setWindowIcon(gancho());
    MarcoPlano::poner(*this);
    interior_ = std::make_unique<Interior>(plataforma, *this);

    interior_->ver.lbVer->setText(QStringLiteral("ver. ") + QLatin1String(kVersion));
    mostrarDestinos(XCel(interior_->plataforma).HayExcel());
    interior_->ver.ckInicio->setChecked(interior_->plataforma.enArranque());
    interior_->ver.ckMini->setChecked(interior_->cfg->EjecutarMinimizado());
    refrescarRotulos();
    conectarControles();
    crearControlador();
    mostrarBotones(kEnReposo);
    interior_->ver.cmdDesc->setFocus();
    interior_->cuenta.arrancar();
    recogerRestos();
}

fDescarga::~fDescarga() {
    interior_->cfg.reset();  // the controller holds it until it goes
    interior_->mSys.quitar();
    interior_->mDes.reset();
}

void fDescarga::presentar() {
    interior_->mSys.poner();
    if (interior_->cfg->EjecutarMinimizado()) {
        ocultar();
    } else {
        show();
    }
}

void fDescarga::volverAVer() {
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void fDescarga::ocultar() {
    interior_->mSys.poner();
    if (Bandeja::disponible()) {
        hide();
    } else {
        showMinimized();  // a window hidden without an icon to bring it back would be lost
    }
}

void fDescarga::closeEvent(QCloseEvent* evento) {
    evento->accept();
    interior_->mSys.quitar();
    QCoreApplication::quit();
}

void fDescarga::contextMenuEvent(QContextMenuEvent* evento) {
    interior_->menu.MnAcciones->popup(evento->globalPos());
}

/// Without a spreadsheet application its controls give way to a notice.
void fDescarga::mostrarDestinos(bool hayExcel) {
    auto& ver = interior_->ver;
    if (!hayExcel) interior_->cfg->UsoExcel(false);
    ver.ckXcel->setEnabled(hayExcel);
    for (QWidget* control :
         std::initializer_list<QWidget*>{ver.ckXcel, ver.lbExcel, ver.vXcel, ver.cmdXcel}) {
        control->setVisible(hayExcel);
    }
    ver.frNoXcel->setVisible(!hayExcel);
    ver.ckXcel->setChecked(interior_->cfg->UsoExcel());
    ver.ckTxto->setChecked(interior_->cfg->UsoTexto());
}

void fDescarga::conectarControles() {
    conectarBotones();
    conectarDestinos();
    conectarMenu();
    interior_->ver.lbAuto->alPulsar = [this] {
        interior_->guardia.atenderUsuario([this] { pulsarCuenta(); });
    };
    interior_->cuenta.cambio.conectar([this] { mostrarCuenta(); });
    interior_->mSys.DblClick.conectar([this] { volverAVer(); });
    // The failed call has still to unwind through what is about to be replaced.
    interior_->guardia.averia.conectar([this] {
        QMetaObject::invokeMethod(
            this, [this] { empezarDeNuevo(); }, Qt::QueuedConnection);
    });
}

void fDescarga::alPulsar(QAbstractButton* boton, std::function<void()> accion) {
    connect(boton, &QAbstractButton::clicked, this,
            [this, accion = std::move(accion)] { interior_->guardia.atenderUsuario(accion); });
}

void fDescarga::conectarBotones() {
    auto& ver = interior_->ver;
    alPulsar(ver.cmdDesc, [this] { interior_->iniciarDescarga(); });
    alPulsar(ver.cmdAbor, [this] { interior_->mDes->Abortar(); });
    alPulsar(ver.cmdLimp, [this] {
        interior_->mDes->Reset();
        if (interior_->cfg->AutoCadaXSegs() > 0) interior_->cuenta.arrancar();
    });
    alPulsar(ver.cmdCerr, [this] { close(); });
    alPulsar(ver.cmdMini, [this] { ocultar(); });
    alPulsar(ver.ckMini, [this] {
        interior_->cfg->EjecutarMinimizado(interior_->ver.ckMini->isChecked());
        interior_->cfg->Update();
    });
    alPulsar(ver.ckInicio, [this] { cambiarInicio(); });
    alPulsar(ver.imgLink, [this] { AbrirDocumento(interior_->plataforma, kPaginaWeb); });
}

void fDescarga::conectarDestinos() {
    auto& ver = interior_->ver;
    alPulsar(ver.ckXcel, [this] { cambiarDestinos(); });
    alPulsar(ver.ckTxto, [this] { cambiarDestinos(); });
    alPulsar(ver.vXcel, [this] { this->ver(interior_->cfg->LibroExcel()); });
    alPulsar(ver.vTxto, [this] { this->ver(interior_->cfg->ArchivoTexto()); });
    alPulsar(ver.cmdCom, [this] { editarComunicacion(); });
    alPulsar(ver.cmdXcel, [this] { editarExcel(); });
    alPulsar(ver.cmdTxto, [this] { editarTexto(); });
}

void fDescarga::conectarMenu() {
    const auto& menu = interior_->menu;
    const auto alElegir = [this](QAction* entrada, std::function<void()> accion) {
        connect(entrada, &QAction::triggered, this,
                [this, accion = std::move(accion)] { interior_->guardia.atenderUsuario(accion); });
    };
    alElegir(menu.mnVerEllo, [this] { volverAVer(); });
    alElegir(menu.mnDescarga, [this] { interior_->iniciarDescarga(); });
    alElegir(menu.MnComunica, [this] { editarComunicacion(); });
    alElegir(menu.mnExcel, [this] { editarExcel(); });
    alElegir(menu.MnTexto, [this] { editarTexto(); });
    alElegir(menu.mnCerrar, [this] { close(); });
}

void fDescarga::crearControlador() {
    interior_->mDes = std::make_unique<Descarga>(interior_->plataforma);
    interior_->mDes->DatosCfg(interior_->cfg);
    interior_->mDes->PesadaRecibida.conectar([this](pesaDX5&) { mDes_PesadaRecibida(); });
    interior_->mDes->CambioEstado.conectar([this](int32_t& estado) { mDes_CambioEstado(estado); });
}

void fDescarga::empezarDeNuevo() {
    interior_->mDes.reset();  // closes its port before the new one can ask for it
    crearControlador();
    interior_->guardia.reanudar();
    mDes_CambioEstado(kEnReposo);
    interior_->cuenta.arrancar();
}

void fDescarga::recogerRestos() {
    const auto restos = interior_->rescate.recoger();
    if (!restos) return;
    const std::string texto = textoDeRestos(*restos);
    // Told once the window is there, and without holding up the automatic downloads.
    QMetaObject::invokeMethod(
        this, [this, texto] { interior_->plataforma.mensajeCritico(texto); }, Qt::QueuedConnection);
}

void fDescarga::mDes_PesadaRecibida() {
    auto& ver = interior_->ver;
    // Painted as soon as this notification is over: the acknowledge must not wait for the screen.
    ver.lbRx->setText(QString::number(interior_->mDes->numRecibidas()));
}

void fDescarga::mDes_CambioEstado(int32_t estado) {
    auto& ver = interior_->ver;
    if (estado == kRecibiendo) interior_->rescate.empezar();
    ver.lbRx->setText(QString::number(interior_->mDes->numRecibidas()));
    mostrarBotones(estado);
    mostrarFase(aspectoDeEstado(estado).fase);
    mostrarResultado(estado);
    // The save pass follows at once and holds the window until it ends.
    if (estado == kGuardando) repaint();
    if (estado == kTerminada || estado == kFallida) {
        interior_->rescate.acabar();
        avisarDelFallo(estado);
        if (interior_->cfg->AutoCadaXSegs() > 0) interior_->cuenta.arrancar();
    }
}

void fDescarga::mostrarBotones(int32_t estado) {
    const auto& visibles = aspectoDeEstado(estado).botones;
    const QWidget* foco = focusWidget();
    const bool faltabaDesc = interior_->ver.cmdDesc->isHidden();
    for (const Boton boton :
         {Boton::kCerr, Boton::kMini, Boton::kDesc, Boton::kAbor, Boton::kLimp}) {
        const bool visible = std::find(visibles.begin(), visibles.end(), boton) != visibles.end();
        interior_->ver.boton(boton).setVisible(visible);
    }
    conservarFoco(foco, faltabaDesc && !interior_->ver.cmdDesc->isHidden());
    // The menu must not do what the buttons do not offer.
    interior_->menu.mnCerrar->setEnabled(!interior_->ver.cmdCerr->isHidden());
    interior_->menu.mnDescarga->setEnabled(!interior_->ver.cmdDesc->isHidden());
}

/// Left to itself the focus would leave a vanishing button for the other end of the window. It
/// waits on cmdMini, which is always there and does no harm, and goes back with cmdDesc.
void fDescarga::conservarFoco(const QWidget* antes, bool vuelveDesc) {
    auto& ver = interior_->ver;
    const bool haDesaparecido = antes != nullptr && antes->isHidden();
    if (!haDesaparecido && !(vuelveDesc && antes == ver.cmdMini)) return;
    (ver.cmdDesc->isHidden() ? ver.cmdMini : ver.cmdDesc)->setFocus();
}

/// A phase stands out in green when it appears, and those before it turn grey.
void fDescarga::mostrarFase(int32_t fase) {
    auto& ver = interior_->ver;
    if (fase < kUltimaFase) ver.frResul->hide();
    ver.lbReposo->setVisible(fase == 0);
    ver.lbGu->setText(fase < kUltimaFase ? QStringLiteral("un momento…") : QString());
    const std::array<std::array<QLabel*, 2>, 3> fases{{
        {ver.lbFase1, ver.lbFase1},
        {ver.lbFase2, ver.lbRx},
        {ver.lbFase3, ver.lbGu},
    }};
    for (std::size_t i = 0; i < fases.size(); ++i) {
        const bool visible = fase > static_cast<int32_t>(i);
        const bool aparece = visible && fases[i][0]->isHidden();
        for (auto* etiqueta : fases[i]) {
            if (aparece) colorear(*etiqueta, estilo::kVerde);
            etiqueta->setVisible(visible);
        }
        for (std::size_t anterior = 0; aparece && anterior < i; ++anterior) {
            for (auto* etiqueta : fases[anterior]) colorear(*etiqueta, estilo::kGris);
        }
    }
    if (fase < kUltimaFase) return;
    for (const auto& etiquetas : fases) {
        for (auto* etiqueta : etiquetas) colorear(*etiqueta, estilo::kGris);
    }
}

void fDescarga::mostrarResultado(int32_t estado) {
    auto& ver = interior_->ver;
    const Resultado resultado = aspectoDeEstado(estado).resultado;
    if (resultado == Resultado::kOculto) return;
    const bool bien = resultado == Resultado::kBien;
    ver.lbResulBien->setVisible(bien);
    ver.lbResulMal->setVisible(!bien);
    ver.lbMensaje->setVisible(!bien);
    if (bien) {
        ver.lbResulBien->setText(
            QString::fromStdString(textoDeResultado(interior_->mDes->numRecibidas())));
    } else {
        ver.lbMensaje->setText(QString::fromStdString(interior_->mDes->Explicacion()));
    }
    ver.frResul->show();
}

void fDescarga::mostrarCuenta() {
    auto& ver = interior_->ver;
    const QColor color = interior_->cuenta.enMarcha() ? estilo::kAzul : estilo::kApagado;
    ver.lbSeg->setText(QString::fromStdString(interior_->cuenta.texto()));
    colorear(*ver.lbAuto, color);
    colorear(*ver.lbSeg, color);
}

void fDescarga::pulsarCuenta() {
    if (interior_->cuenta.enMarcha()) {
        interior_->cuenta.pausar();
    } else {
        interior_->cuenta.reanudar();
    }
}

void fDescarga::cambiarInicio() {
    QCheckBox& ckInicio = *interior_->ver.ckInicio;
    try {
        interior_->plataforma.enArranque(ckInicio.isChecked());
    } catch (...) {
        // The box must not promise what has not been written. Only the user's own click is listened
        // to, so this raises none.
        ckInicio.setChecked(interior_->plataforma.enArranque());
        throw;
    }
}

void fDescarga::cambiarDestinos() {
    auto& ver = interior_->ver;
    Setup& cfg = *interior_->cfg;
    cfg.UsoExcel(ver.ckXcel->isChecked());
    cfg.UsoTexto(ver.ckTxto->isChecked());
    refrescarRotulos();
    cfg.Update();
}

void fDescarga::refrescarRotulos() {
    auto& ver = interior_->ver;
    const Setup& cfg = *interior_->cfg;
    ver.lbCanal->setText(QString::fromStdString(rotuloDeCanal(cfg)));
    ver.lbExcel->setText(QString::fromStdString(rotuloDeExcel(cfg)));
    ver.lbTexto->setText(QString::fromStdString(rotuloDeTexto(cfg)));
    for (QWidget* control : std::initializer_list<QWidget*>{ver.lbExcel, ver.vXcel, ver.cmdXcel}) {
        control->setEnabled(cfg.UsoExcel());
    }
    for (QWidget* control : std::initializer_list<QWidget*>{ver.lbTexto, ver.vTxto, ver.cmdTxto}) {
        control->setEnabled(cfg.UsoTexto());
    }
    interior_->menu.mnExcel->setEnabled(cfg.UsoExcel());
    interior_->menu.MnTexto->setEnabled(cfg.UsoTexto());
}

void fDescarga::ver(const std::string& documento) {
    if (AbrirDocumento(interior_->plataforma, documento) != kNoEncontrado) return;
    interior_->plataforma.mensajeCritico("No existe el fichero '" + documento + "' ");
}

void fDescarga::editarComunicacion() {
    const bool enMarcha = interior_->cuenta.enMarcha();
    interior_->cuenta.pausar();
    if (EdiCom(interior_->plataforma, this).Abrir(*interior_->cfg)) {
        interior_->cfg->Update();
        refrescarRotulos();
        interior_->cuenta.arrancar();  // the period may be another one, or none
    } else if (enMarcha) {
        interior_->cuenta.reanudar();
    }
}

void fDescarga::editarExcel() {
    if (!EdiExc(interior_->plataforma, this).Abrir(*interior_->cfg)) return;
    interior_->cfg->Update();
    refrescarRotulos();
}

void fDescarga::editarTexto() {
    EdiTxt dialogo(interior_->plataforma, this);
    dialogo.VistaPrevia([this](const FormularioTxt& formulario) {
        return lineaDeMuestra(interior_->plataforma, formulario);
    });
    if (!dialogo.Abrir(*interior_->cfg)) return;
    interior_->cfg->Update();
    refrescarRotulos();
}

/// Nobody sees the result frame of a hidden window: its first failure is told beside the icon, and
/// the same one again only after something else has happened.
void fDescarga::avisarDelFallo(int32_t estado) {
    const std::string fallo = estado == kFallida ? interior_->mDes->Explicacion() : std::string();
    const bool oculta = isHidden() || isMinimized();
    if (oculta && !fallo.empty() && fallo != interior_->ultimoFalloAvisado) {
        interior_->mSys.avisar(QStringLiteral("La descarga de pesadas ha fallado"),
                               QString::fromStdString(fallo));
    }
    if (oculta || fallo.empty()) interior_->ultimoFalloAvisado = fallo;
}

}  // namespace bn
