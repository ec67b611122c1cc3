// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QMessageBox>
#include <exception>

#include "app/PlataformaQt.h"
#include "app/fDescarga.h"

int main(int argc, char** argv) {
    QApplication programa(argc, argv);
    QApplication::setApplicationName(QStringLiteral("bnDX5"));
    QApplication::setStyle(QStringLiteral("Fusion"));
    try {
        bn::PlataformaQt plataforma;
        bn::fDescarga ventana(plataforma);
        ventana.show();
        return QApplication::exec();
    } catch (const std::exception& error) {
        // The settings cannot be understood: they stay as they are, for somebody to mend.
        QMessageBox::critical(nullptr, QStringLiteral("bnDX5"), QString::fromUtf8(error.what()));
        return 1;
    }
}
