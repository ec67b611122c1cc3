// SPDX-License-Identifier: MIT
#pragma once

#include <QFileSystemWatcher>
#include <QString>

#include "platform/Cerrojo.h"
#include "platform/Evento.h"

namespace bn {

/// One running program per program folder: two would fight for the port and the frame store.
class UnicaInstancia {
 public:
    explicit UnicaInstancia(const QString& carpeta);

    /// True for the first. For a later one false, and the first is asked to show its window.
    bool esLaPrimera();

    /// A later start has asked for the window.
    Evento<> mostrar;

 private:
    void vigilar();

    QString llamada_;  // a file that a later start leaves for the first one to find
    Cerrojo cerrojo_;
    QFileSystemWatcher vigia_;
};

}  // namespace bn
