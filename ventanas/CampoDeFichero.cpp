// SPDX-License-Identifier: MIT
#include "ventanas/CampoDeFichero.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QToolButton>

#include "ventanas/Iconos.h"

namespace bn {

CampoDeFichero::CampoDeFichero(const QString& filtro, QWidget* padre)
    : QWidget(padre),
      elegir([this](const QString& actual) { return preguntar(actual); }),
      filtro_(filtro),
      caja_(new QLineEdit(this)) {
    caja_->setObjectName(QStringLiteral("txLibro"));
    auto* boton = new QToolButton(this);
    boton->setObjectName(QStringLiteral("cmdLibro"));
    boton->setIcon(icono(Icono::kCarpeta));
    boton->setFocusPolicy(Qt::StrongFocus);
    boton->setShortcut(QKeySequence(Qt::ALT | Qt::Key_E));
    boton->setAccessibleName(QStringLiteral("Examinar"));
    boton->setToolTip(QStringLiteral("Examinar (Alt+E)"));
    connect(boton, &QToolButton::clicked, this, [this] { buscar(); });
    boton_ = boton;
    auto* fila = new QHBoxLayout(this);
    fila->setContentsMargins(0, 0, 0, 0);
    fila->setSpacing(6);
    fila->addWidget(caja_, 1);
    fila->addWidget(boton_);
    setFocusProxy(caja_);
}

void CampoDeFichero::buscar() {
    const QString elegido = elegir(caja_->text());
    if (!elegido.isEmpty()) caja_->setText(QDir::toNativeSeparators(elegido));
    if (alElegir) alElegir();
}

QString CampoDeFichero::preguntar(const QString& actual) {
    QFileDialog dialogo(this, QStringLiteral("Elegir fichero"));
    dialogo.setNameFilter(filtro_);
    dialogo.setFileMode(QFileDialog::AnyFile);
    dialogo.setViewMode(QFileDialog::List);
    dialogo.setOption(QFileDialog::DontConfirmOverwrite);
    dialogo.setLabelText(QFileDialog::LookIn, QStringLiteral("Buscar en:"));
    dialogo.setLabelText(QFileDialog::FileName, QStringLiteral("&Nombre:"));
    dialogo.setLabelText(QFileDialog::FileType, QStringLiteral("Tipo:"));
    dialogo.setLabelText(QFileDialog::Accept, QStringLiteral("&Elegir"));
    dialogo.setLabelText(QFileDialog::Reject, QStringLiteral("&Cancelar"));
    const QFileInfo fichero(actual);
    if (!actual.isEmpty() && fichero.absoluteDir().exists()) {
        dialogo.setDirectory(fichero.absoluteDir());
        dialogo.selectFile(fichero.fileName());
    }
    if (dialogo.exec() != QDialog::Accepted || dialogo.selectedFiles().isEmpty()) return {};
    return dialogo.selectedFiles().constFirst();
}

}  // namespace bn
