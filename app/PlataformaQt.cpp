// SPDX-License-Identifier: MIT
#include "app/PlataformaQt.h"

#include <QApplication>
#include <QEvent>
#include <QMessageBox>
#include <QMetaObject>
#include <QPushButton>
#include <QWidget>
#include <QWindow>
#include <utility>

#include "app/TemporizadorQt.h"
#include "config/ClavesAjenas.h"
#include "destinations/excel/DelSistema.h"
#include "destinations/xls/MotorInterno.h"
#include "platform/Escritorio.h"
#include "platform/asio/Linea.h"
#include "platform/asio/PuertoAsio.h"

namespace bn {

namespace {

QWidget* ventanaALaVista() {
    if (QWidget* dialogo = QApplication::activeModalWidget()) return dialogo;
    for (QWidget* ventana : QApplication::topLevelWidgets()) {
        const Qt::WindowType tipo = ventana->windowType();  // tool tips and menus come and go
        const bool queda = tipo == Qt::Window || tipo == Qt::Dialog;
        if (queda && ventana->isVisible() && !ventana->isMinimized()) return ventana;
    }
    return nullptr;
}

void componer(QMessageBox& caja, const std::string& texto) {
    caja.setIcon(QMessageBox::Critical);
    caja.setWindowTitle(QStringLiteral("bnDX5"));
    caja.setTextFormat(Qt::PlainText);
    caja.setText(QString::fromStdString(texto));
    caja.addButton(QStringLiteral("&Aceptar"), QMessageBox::AcceptRole);
}

/// A message behind the window that waits for its answer would look as if the program hung; and one
/// of a program hidden in the notification area must not come up behind somebody else's window.
void ponerDelante(QMessageBox& caja) {
    QWidget* ventana = ventanaALaVista();
    if (!ventana) caja.setWindowFlag(Qt::WindowStaysOnTopHint);
    caja.winId();  // makes the window that the next line needs
    if (ventana) caja.windowHandle()->setTransientParent(ventana->windowHandle());
}

}  // namespace

PlataformaQt::PlataformaQt()
    : carpeta_(escritorio::carpetaPropia()), motor_(motorExcel(disco(), rutaDelIni(*this))) {}

std::filesystem::path PlataformaQt::carpetaPrograma() const { return carpeta_; }

/// A port that the platform knows while it lives.
class PlataformaQt::Puerto : public PuertoAsio {
 public:
    Puerto(std::vector<Puerto*>& todos, EnInterfaz enInterfaz, DispositivoDe dispositivoDe)
        : PuertoAsio(std::move(enInterfaz), std::move(dispositivoDe)), todos_(todos) {
        todos_.push_back(this);
    }
    Puerto(const Puerto&) = delete;
    Puerto& operator=(const Puerto&) = delete;
    ~Puerto() override { std::erase(todos_, this); }

 private:
    std::vector<Puerto*>& todos_;
};

std::unique_ptr<MSComm> PlataformaQt::nuevoPuerto() {
    // Posted from the port's helper thread; nothing of it runs before it has reached this one.
    const auto enInterfaz = [this](std::function<void()> aviso) {
        QMetaObject::invokeMethod(
            &receptor_, [this, aviso = std::move(aviso)] { entrega_.entregar(aviso); },
            Qt::QueuedConnection);
    };
    return std::make_unique<Puerto>(puertos_, enInterfaz,
                                    [this](int16_t canal) { return dispositivo(canal); });
}

/// Before a timer's tick: whatever has reached the ports was there before it.
void PlataformaQt::entregarLoLlegado() {
    for (Puerto* puerto : puertos_) puerto->recogerPendiente();
    QCoreApplication::sendPostedEvents(&receptor_, QEvent::MetaCall);
}

std::string PlataformaQt::dispositivo(int16_t canal) const {
    const std::string propio = dispositivoDePuerto(disco(), rutaDelIni(*this), canal);
    return propio.empty() ? dispositivoDelCanal(canal) : propio;
}

std::unique_ptr<Temporizador> PlataformaQt::nuevoTemporizador() {
    return std::make_unique<TemporizadorQt>(entrega_, [this] { entregarLoLlegado(); });
}

std::unique_ptr<excel::Application> PlataformaQt::nuevaAplicacionExcel(bool porIdentificador) {
    if (motor_ == "auto") return decidirMotor(porIdentificador);
    if (motor_ == "excel") return excel::nuevaAplicacionDelSistema(porIdentificador);
    if (motor_ == "interno")
        return xls::nuevaAplicacionInterna([this] { return ahora(); }, disco());
    throw excel::ErrorExcel("Este equipo no dispone de una hoja de cálculo");
}

/// Once, at the first request, which comes at start: a later failure of the system's application
/// must not hand the workbook that it may hold open to the other backend.
std::unique_ptr<excel::Application> PlataformaQt::decidirMotor(bool porIdentificador) {
    try {
        auto aplicacion = excel::nuevaAplicacionDelSistema(porIdentificador);
        motor_ = "excel";
        return aplicacion;
    } catch (const excel::ErrorExcel&) {
        motor_ = "interno";  // not installed, or not able to start
    }
    return nuevaAplicacionExcel(porIdentificador);
}

bool PlataformaQt::esLibroSano(const std::filesystem::path& libro) const {
    return xls::esLibroSano(disco(), libro);
}

double PlataformaQt::ahora() const { return escritorio::ahora(); }

void PlataformaQt::mensajeCritico(const std::string& texto) {
    QMessageBox caja;
    componer(caja, texto);
    ponerDelante(caja);
    caja.exec();
}

/// One at a time: what it has to say is brought up to date.
void PlataformaQt::avisar(const std::string& texto) {
    if (aviso_) {
        aviso_->setText(QString::fromStdString(texto));
        return;
    }
    aviso_ = new QMessageBox;
    aviso_->setAttribute(Qt::WA_DeleteOnClose);
    componer(*aviso_, texto);
    ponerDelante(*aviso_);
    aviso_->open();
}

PlataformaQt::~PlataformaQt() { delete aviso_; }

std::string PlataformaQt::carpetaEspecial(int32_t numero) const {
    return escritorio::carpetaEspecial(numero);
}

int32_t PlataformaQt::abrirDocumento(const std::string& rutaODireccion) {
    return escritorio::abrirDocumento(rutaODireccion);
}

bool PlataformaQt::enArranque() const { return escritorio::estaEnArranque(); }

void PlataformaQt::enArranque(bool activo) {
    escritorio::ponerEnArranque(activo, escritorio::ejecutable());
}

}  // namespace bn
