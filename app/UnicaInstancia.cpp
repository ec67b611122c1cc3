// SPDX-License-Identifier: MIT
#include "app/UnicaInstancia.h"

#include <QDir>
#include <QFile>

namespace bn {

UnicaInstancia::UnicaInstancia(const QString& carpeta)
    : llamada_(QDir(carpeta).filePath(QStringLiteral("bnDX5.mostrar"))),
      cerrojo_(QDir(carpeta).filePath(QStringLiteral("bnDX5.lock"))) {
    // A lock lives as long as its program, however long that runs.
    cerrojo_.setStaleLockTime(0);
}

bool UnicaInstancia::esLaPrimera() {
    if (cerrojo_.tryLock()) {
        vigilar();
        return true;
    }
    // Anything but a lock that is held (a folder that cannot be written) is no reason not to start.
    if (cerrojo_.error() != QLockFile::LockFailedError) return true;
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
