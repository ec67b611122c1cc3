// SPDX-License-Identifier: MIT
#include "app/UnicaInstancia.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "platform/Escritorio.h"
#include "platform/Ficheros.h"

namespace bn {

UnicaInstancia::UnicaInstancia(const QString& carpeta)
    : llamada_(QDir(carpeta).filePath(QStringLiteral("bnDX5.mostrar"))),
      cerrojo_(
          ficheros::aRuta(QDir(carpeta).filePath(QStringLiteral("bnDX5.lock")).toStdString())) {}

bool UnicaInstancia::esLaPrimera() {
    // Anything but a lock that is held (a folder that cannot be written) is no reason not to start.
    if (cerrojo_.estado() != Cerrojo::Estado::kDeOtro) {
        vigilar();
        return true;
    }
    escritorio::cederElFrente();
    QFile llamada(llamada_);
    if (llamada.open(QIODevice::WriteOnly)) llamada.close();
    return false;
}

void UnicaInstancia::vigilar() {
    QFile::remove(llamada_);
    vigia_.addPath(QFileInfo(llamada_).path());
    QObject::connect(&vigia_, &QFileSystemWatcher::directoryChanged, &vigia_, [this] {
        if (QFile::remove(llamada_)) mostrar();
    });
}

}  // namespace bn
