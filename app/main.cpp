// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QMessageBox>
#include <QMetaObject>
#include <cstdlib>
#include <exception>

#include "app/PlataformaQt.h"
#include "app/TextosDeQt.h"
#include "app/UnicaInstancia.h"
#include "app/fDescarga.h"
#include "platform/AvisoDeFin.h"
#include "platform/Ficheros.h"

int main(int argc, char** argv) {
    // Before any thread that the program makes, Qt's among them. What runs when the signal comes
    // ends first: a save pass, or the handling of a frame.
    const bn::AvisoDeFin fin([] {
        QCoreApplication* const programa = QCoreApplication::instance();
        if (programa == nullptr) std::_Exit(0);  // nothing is open yet, or any more
        QMetaObject::invokeMethod(
            programa, [] { QCoreApplication::exit(0); }, Qt::QueuedConnection);
    });
    QApplication programa(argc, argv);
    QApplication::setApplicationName(QStringLiteral("bnDX5"));
    bn::TextosDeQt textos;
    QApplication::installTranslator(&textos);
    QApplication::setQuitOnLastWindowClosed(false);  // hidden, it goes on in the notification area
    QApplication::setStyle(QStringLiteral("Fusion"));
    try {
        bn::PlataformaQt plataforma;
        bn::UnicaInstancia instancia(
            QString::fromStdString(bn::ficheros::aTexto(plataforma.carpetaPrograma())));
        if (!instancia.esLaPrimera()) return 0;
        bn::fDescarga ventana(plataforma);
        instancia.mostrar.conectar([&ventana] { ventana.volverAVer(); });
        QObject::connect(&programa, &QGuiApplication::commitDataRequest, &ventana,
                         [&ventana] { ventana.obedecer(); });
        ventana.presentar();
        return QApplication::exec();
    } catch (const std::exception& error) {
        // The settings cannot be understood: they stay as they are, for somebody to mend.
        QMessageBox::critical(nullptr, QStringLiteral("bnDX5"), QString::fromUtf8(error.what()));
        return 1;
    }
}
