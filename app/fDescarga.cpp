// SPDX-License-Identifier: MIT
#include "app/fDescarga.h"

#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QIcon>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <algorithm>
#include <array>
#include <utility>

#include "app/Aspecto.h"
#include "app/Bandeja.h"
#include "app/ControlesDescarga.h"
#include "app/LineaDeMuestra.h"
#include "app/MenuAcciones.h"
#include "app/Puesto.h"
#include "app/Version.h"
#include "config/APIsVarias.h"
#include "config/Setup.h"
#include "destinations/EdiExc.h"
#include "destinations/EdiTxt.h"
#include "download/Descarga.h"
#include "link/EdiCom.h"
#include "ventanas/Estilo.h"
#include "ventanas/MarcoPlano.h"

namespace bn {

namespace {

constexpr int32_t kUltimaFase = 4;
constexpr int32_t kNoEncontrado = 2;  // the shell's "file not found"
constexpr int kFinDeSesion = 10'000;  // ms
constexpr const char* kPaginaWeb = "https://www.balnor.example/";

QIcon gancho() { return QIcon(QStringLiteral(":/gancho.png")); }

void colorear(QLabel& etiqueta, const QColor& color) {
    QPalette paleta = etiqueta.palette();
    paleta.setColor(QPalette::WindowText, color);
    etiqueta.setPalette(paleta);
}

/// Alternatives that must not be clicked away by mistake: the harmless one is the default.
bool confirmar(QWidget* padre, const QString& pregunta, const QString& si) {
    QMessageBox caja(QMessageBox::Warning, QStringLiteral("bnDX5"), pregunta, QMessageBox::NoButton,
                     padre);
    const QAbstractButton* boton = caja.addButton(si, QMessageBox::AcceptRole);
    caja.setDefaultButton(caja.addButton(QStringLiteral("&Cancelar"), QMessageBox::RejectRole));
    caja.exec();
    return caja.clickedButton() == boton;
}

}  // namespace

struct fDescarga::Interior {
    Interior(Plataforma& exterior, QWidget& ventana)
        : puesto(exterior), ver(ventana), menu(ventana), mSys(gancho(), *menu.MnAcciones) {}

    Setup& cfg() { return puesto.configuracion(); }
    Descarga& mDes() { return puesto.controlador(); }

    Puesto puesto;
    ControlesDescarga ver;
    MenuAcciones menu;
    Bandeja mSys;
    std::string ultimoFalloAvisado;
    QString porQueNoSeCierra;
    bool hayQueCerrar = false;  // the session ends
};

fDescarga::fDescarga(Plataforma& plataforma, QWidget* padre) : QWidget(padre) {
    setObjectName(QStringLiteral("fDescarga"));
    setWindowTitle(QStringLiteral("bnDX5"));
    setWindowIcon(gancho());
    MarcoPlano::poner(*this);
    interior_ = std::make_unique<Interior>(plataforma, *this);

    interior_->ver.lbVer->setText(QStringLiteral("ver. ") + QLatin1String(kVersion));
    mostrarDestinos(interior_->puesto.hayExcel());
    interior_->ver.ckInicio->setChecked(interior_->puesto.plataforma().enArranque());
    interior_->ver.ckMini->setChecked(interior_->cfg().EjecutarMinimizado());
    refrescarRotulos();
    conectarControles();
    mostrarBotones(kEnReposo);
    interior_->ver.cmdDesc->setFocus();
    mostrarCuenta();
    mostrarPendientes();
}

fDescarga::~fDescarga() { interior_->mSys.quitar(); }

void fDescarga::presentar() {
    interior_->mSys.poner();
    if (interior_->cfg().EjecutarMinimizado()) {
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

void fDescarga::obedecer() {
    interior_->hayQueCerrar = true;
    // Somebody else may call the end of the session off.
    QTimer::singleShot(kFinDeSesion, this, [this] { interior_->hayQueCerrar = false; });
}

/// While weighings are under way nobody closes it by mistake: neither by its button, which is not
/// there, nor by the keyboard or the task bar.
void fDescarga::closeEvent(QCloseEvent* evento) {
    if (!interior_->hayQueCerrar && !interior_->puesto.puedeCerrarse()) {
        evento->ignore();
        interior_->porQueNoSeCierra =
            QStringLiteral("No se puede cerrar mientras se reciben o se guardan pesadas.");
        return mostrarPendientes();
    }
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
    ver.ckXcel->setEnabled(hayExcel);
    for (QWidget* control :
         std::initializer_list<QWidget*>{ver.ckXcel, ver.lbExcel, ver.vXcel, ver.cmdXcel}) {
        control->setVisible(hayExcel);
    }
    ver.frNoXcel->setVisible(!hayExcel);
    ver.ckXcel->setChecked(interior_->cfg().UsoExcel());
    ver.ckTxto->setChecked(interior_->cfg().UsoTexto());
}

void fDescarga::conectarControles() {
    conectarBotones();
    conectarDestinos();
    conectarMenu();
    interior_->ver.lbAuto->alPulsar = [this] {
        interior_->puesto.atender([this] { pulsarCuenta(); });
    };
    Puesto& puesto = interior_->puesto;
    puesto.cuenta().cambio.conectar([this] { mostrarCuenta(); });
    puesto.PesadaRecibida.conectar([this](pesaDX5&) { mDes_PesadaRecibida(); });
    puesto.CambioEstado.conectar([this](int32_t& estado) { mDes_CambioEstado(estado); });
    puesto.cambio.conectar([this] { mostrarPendientes(); });
    puesto.avisoFuera.conectar([this](const std::string& texto) {
        interior_->mSys.avisar(QStringLiteral("Las pesadas no se pueden guardar"),
                               QString::fromStdString(texto));
    });
    interior_->mSys.DblClick.conectar([this] { volverAVer(); });
}

void fDescarga::alPulsar(QAbstractButton* boton, std::function<void()> accion) {
    connect(boton, &QAbstractButton::clicked, this,
            [this, accion = std::move(accion)] { interior_->puesto.atender(accion); });
}

void fDescarga::conectarBotones() {
    auto& ver = interior_->ver;
    alPulsar(ver.cmdDesc, [this] { interior_->puesto.descargar(); });
    alPulsar(ver.cmdAbor, [this] { interior_->mDes().Abortar(); });
    alPulsar(ver.cmdLimp, [this] { interior_->puesto.limpiar(); });
    alPulsar(ver.cmdPend, [this] { interior_->puesto.guardarPendientes(); });
    alPulsar(ver.cmdCerr, [this] { close(); });
    alPulsar(ver.cmdMini, [this] { ocultar(); });
    alPulsar(ver.ckMini, [this] {
        interior_->cfg().EjecutarMinimizado(interior_->ver.ckMini->isChecked());
        interior_->cfg().Update();
    });
    alPulsar(ver.ckInicio, [this] { cambiarInicio(); });
    alPulsar(ver.imgLink, [this] { AbrirDocumento(interior_->puesto.plataforma(), kPaginaWeb); });
}

void fDescarga::conectarDestinos() {
    auto& ver = interior_->ver;
    alPulsar(ver.ckXcel, [this] { cambiarDestinos(); });
    alPulsar(ver.ckTxto, [this] { cambiarDestinos(); });
    alPulsar(ver.vXcel, [this] { this->ver(interior_->cfg().LibroExcel()); });
    alPulsar(ver.vTxto, [this] { this->ver(interior_->cfg().ArchivoTexto()); });
    alPulsar(ver.cmdCom, [this] { editarComunicacion(); });
    alPulsar(ver.cmdXcel, [this] { editarExcel(); });
    alPulsar(ver.cmdTxto, [this] { editarTexto(); });
}

void fDescarga::conectarMenu() {
    const auto& menu = interior_->menu;
    const auto alElegir = [this](QAction* entrada, std::function<void()> accion) {
        connect(entrada, &QAction::triggered, this,
                [this, accion = std::move(accion)] { interior_->puesto.atender(accion); });
    };
    alElegir(menu.mnVerEllo, [this] { volverAVer(); });
    alElegir(menu.mnDescarga, [this] { interior_->puesto.descargar(); });
    alElegir(menu.mnPend, [this] { interior_->puesto.guardarPendientes(); });
    alElegir(menu.mnDescartar, [this] { descartarPendientes(); });
    alElegir(menu.MnComunica, [this] { editarComunicacion(); });
    alElegir(menu.mnExcel, [this] { editarExcel(); });
    alElegir(menu.MnTexto, [this] { editarTexto(); });
    alElegir(menu.mnCerrar, [this] { close(); });
}

/// What waits, and what there is to say beside it.
void fDescarga::mostrarPendientes() {
    auto& ver = interior_->ver;
    const Descarga& mDes = interior_->mDes();
    const int32_t cuantas = mDes.numPendientes();
    ver.lbPend->setText(
        QString::fromStdString(textoDePendientes(cuantas, mDes.motivoPendientes())));
    QString aviso = interior_->porQueNoSeCierra;
    for (const std::string& uno : interior_->puesto.avisos()) {
        aviso += (aviso.isEmpty() ? QString() : QStringLiteral("\n")) + QString::fromStdString(uno);
    }
    ver.lbAviso->setText(aviso);
    ver.lbPend->setVisible(cuantas > 0);
    ver.cmdPend->setVisible(cuantas > 0);
    ver.lbAviso->setVisible(!aviso.isEmpty());
    ver.frPend->setVisible(cuantas > 0 || !aviso.isEmpty());
    const int32_t estado = mDes.Estado();
    const bool libre = estado == kEnReposo || estado == kTerminada || estado == kFallida;
    ver.cmdPend->setEnabled(libre);
    interior_->menu.mnPend->setEnabled(libre && cuantas > 0);
    interior_->menu.mnDescartar->setEnabled(libre && cuantas > 0);
}

void fDescarga::descartarPendientes() {
    const int32_t cuantas = interior_->mDes().numPendientes();
    const QString pregunta =
        (cuantas == 1 ? QStringLiteral("Hay 1 pesada que no se ha podido guardar. ¿Descartarla?")
                      : QStringLiteral("Hay %1 pesadas que no se han podido guardar. "
                                       "¿Descartarlas?")
                            .arg(cuantas)) +
        QStringLiteral(
            "\n\nNo se escribirán en sus destinos. Se conservan en un fichero "
            "bnDescartadas con la fecha de hoy, en la carpeta del programa.");
    if (confirmar(this, pregunta, QStringLiteral("&Descartar"))) {
        interior_->puesto.descartarPendientes();
    }
}

void fDescarga::mDes_PesadaRecibida() {
    auto& ver = interior_->ver;
    // Painted as soon as this notification is over: the acknowledge must not wait for the screen.
    ver.lbRx->setText(QString::number(interior_->mDes().numRecibidas()));
}

void fDescarga::mDes_CambioEstado(int32_t estado) {
    auto& ver = interior_->ver;
    interior_->porQueNoSeCierra.clear();
    ver.lbRx->setText(QString::number(interior_->mDes().numRecibidas()));
    mostrarBotones(estado);
    mostrarFase(aspectoDeEstado(estado).fase);
    mostrarResultado(estado);
    // The save pass follows at once and holds the window until it ends.
    if (estado == kGuardando) repaint();
    if (estado == kTerminada || estado == kFallida) avisarDelFallo(estado);
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
            QString::fromStdString(textoDeResultado(interior_->mDes().numRecibidas())));
    } else {
        ver.lbMensaje->setText(QString::fromStdString(interior_->mDes().Explicacion()));
    }
    ver.frResul->show();
}

void fDescarga::mostrarCuenta() {
    auto& ver = interior_->ver;
    const QColor color = interior_->puesto.cuenta().enMarcha() ? estilo::kAzul : estilo::kApagado;
    ver.lbSeg->setText(QString::fromStdString(interior_->puesto.cuenta().texto()));
    colorear(*ver.lbAuto, color);
    colorear(*ver.lbSeg, color);
}

void fDescarga::pulsarCuenta() {
    if (interior_->puesto.cuenta().enMarcha()) {
        interior_->puesto.cuenta().pausar();
    } else {
        interior_->puesto.cuenta().reanudar();
    }
}

void fDescarga::cambiarInicio() {
    QCheckBox& ckInicio = *interior_->ver.ckInicio;
    try {
        interior_->puesto.plataforma().enArranque(ckInicio.isChecked());
    } catch (...) {
        // The box must not promise what has not been written. Only the user's own click is listened
        // to, so this raises none.
        ckInicio.setChecked(interior_->puesto.plataforma().enArranque());
        throw;
    }
}

void fDescarga::cambiarDestinos() {
    auto& ver = interior_->ver;
    Setup& cfg = interior_->cfg();
    cfg.UsoExcel(ver.ckXcel->isChecked());
    cfg.UsoTexto(ver.ckTxto->isChecked());
    refrescarRotulos();
    mostrarPendientes();
    cfg.Update();
}

void fDescarga::refrescarRotulos() {
    auto& ver = interior_->ver;
    const Setup& cfg = interior_->cfg();
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
    if (AbrirDocumento(interior_->puesto.plataforma(), documento) != kNoEncontrado) return;
    interior_->puesto.plataforma().mensajeCritico("No existe el fichero '" + documento + "' ");
}

void fDescarga::editarComunicacion() {
    CuentaAtras& cuenta = interior_->puesto.cuenta();
    const bool enMarcha = cuenta.enMarcha();
    const bool retenida = cuenta.retenida();
    cuenta.pausar();
    if (EdiCom(interior_->puesto.plataforma(), this).Abrir(interior_->cfg())) {
        interior_->cfg().Update();
        refrescarRotulos();
        // The period may be another one, or none; what the user holds stays held.
        const bool sigueRetenida = retenida && interior_->cfg().AutoCadaXSegs() > 0;
        if (!sigueRetenida) cuenta.arrancar();
    } else if (enMarcha) {
        cuenta.reanudar();
    }
}

void fDescarga::editarExcel() {
    if (!EdiExc(interior_->puesto.plataforma(), this).Abrir(interior_->cfg())) return;
    interior_->cfg().Update();
    refrescarRotulos();
}

void fDescarga::editarTexto() {
    EdiTxt dialogo(interior_->puesto.plataforma(), this);
    dialogo.VistaPrevia([this](const FormularioTxt& formulario) {
        return lineaDeMuestra(interior_->puesto.plataforma(), formulario);
    });
    if (!dialogo.Abrir(interior_->cfg())) return;
    interior_->cfg().Update();
    refrescarRotulos();
}

/// Nobody sees the result frame of a hidden window: its first failure is told beside the icon, and
/// the same one again only after something else has happened.
void fDescarga::avisarDelFallo(int32_t estado) {
    const std::string fallo = estado == kFallida ? interior_->mDes().Explicacion() : std::string();
    const bool oculta = isHidden() || isMinimized();
    if (oculta && !fallo.empty() && fallo != interior_->ultimoFalloAvisado) {
        interior_->mSys.avisar(QStringLiteral("La descarga de pesadas ha fallado"),
                               QString::fromStdString(fallo));
    }
    if (oculta || fallo.empty()) interior_->ultimoFalloAvisado = fallo;
}

}  // namespace bn
