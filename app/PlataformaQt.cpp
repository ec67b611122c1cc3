// SPDX-License-Identifier: MIT
#include "app/PlataformaQt.h"

#include <QCoreApplication>
#include <QEvent>
#include <QMessageBox>
#include <QMetaObject>
#include <QPushButton>
#include <utility>

#include "app/TemporizadorQt.h"
#include "config/ClavesAjenas.h"
#include "destinations/excel/ObjectModel.h"
#include "destinations/xls/MotorInterno.h"
#include "platform/Escritorio.h"
#include "platform/asio/Linea.h"
#include "platform/asio/PuertoAsio.h"

namespace bn {

PlataformaQt::PlataformaQt()
    : carpeta_(escritorio::carpetaPropia()), motor_(motorExcel(rutaDelIni(*this))) {}

std::filesystem::path PlataformaQt::carpetaPrograma() const { return carpeta_; }

std::unique_ptr<MSComm> PlataformaQt::nuevoPuerto() {
    // Posted from the port's helper thread; nothing of it runs before it has reached this one.
    const auto enInterfaz = [this](std::function<void()> aviso) {
        QMetaObject::invokeMethod(
            &receptor_, [this, aviso = std::move(aviso)] { entrega_.entregar(aviso); },
            Qt::QueuedConnection);
    };
    return std::make_unique<PuertoAsio>(enInterfaz,
                                        [this](int16_t canal) { return dispositivo(canal); });
}

std::string PlataformaQt::dispositivo(int16_t canal) const {
    const std::string propio = dispositivoDePuerto(rutaDelIni(*this), canal);
    return propio.empty() ? dispositivoDelCanal(canal) : propio;
}

std::unique_ptr<Temporizador> PlataformaQt::nuevoTemporizador() {
    return std::make_unique<TemporizadorQt>(
        entrega_, [this] { QCoreApplication::sendPostedEvents(&receptor_, QEvent::MetaCall); });
}

std::unique_ptr<excel::Application> PlataformaQt::nuevaAplicacionExcel(bool /*porIdentificador*/) {
    if (motor_ == "auto" || motor_ == "interno") {
        return xls::nuevaAplicacionInterna([this] { return ahora(); });
    }
    throw excel::ErrorExcel("Este equipo no dispone de una hoja de cálculo");
}

double PlataformaQt::ahora() const { return escritorio::ahora(); }

void PlataformaQt::mensajeCritico(const std::string& texto) {
    QMessageBox caja(QMessageBox::Critical, QStringLiteral("bnDX5"), QString::fromStdString(texto));
    caja.setTextFormat(Qt::PlainText);
    caja.addButton(QStringLiteral("&Aceptar"), QMessageBox::AcceptRole);
    caja.exec();
}

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
