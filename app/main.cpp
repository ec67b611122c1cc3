// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QMessageBox>
#include <exception>

#include "app/PlataformaQt.h"
#include "app/UnicaInstancia.h"
#include "app/fDescarga.h"
#include "platform/Ficheros.h"

int main(int argc, char** argv) {
    QApplication programa(argc, argv);
    QApplication::setApplicationName(QStringLiteral("bnDX5"));
    QApplication::setQuitOnLastWindowClosed(false);  // hidden, it goes on in the notification area
    QApplication::setStyle(QStringLiteral("Fusion"));
    try {
        bn::PlataformaQt plataforma;
        bn::UnicaInstancia instancia(
            QString::fromStdString(bn::ficheros::aTexto(plataforma.carpetaPrograma())));
        if (!instancia.esLaPrimera()) return 0;
        bn::fDescarga ventana(plataforma);
        instancia.mostrar.conectar([&ventana] { ventana.volverAVer(); });
        ventana.presentar();
        return QApplication::exec();
    } catch (const std::exception& error) {
        // The settings cannot be understood: they stay as they are, for somebody to mend.
        QMessageBox::critical(nullptr, QStringLiteral("bnDX5"), QString::fromUtf8(error.what()));
        return 1;
    }
}
