// SPDX-License-Identifier: MIT
#include "ventanas/DialogoPlano.h"

#include <QHBoxLayout>
#include <QPushButton>

#include "ventanas/MarcoPlano.h"

namespace bn {

namespace {

constexpr int kMargen = 14;
constexpr int kSeparacion = 10;
constexpr int kAnchuraDeBoton = 110;
constexpr double kAumentoDeTitulo = 1.25;

}  // namespace

DialogoPlano::DialogoPlano(Plataforma& plataforma, const char* nombre, const QString& titulo,
                           QWidget* padre)
    : QDialog(padre), plataforma_(plataforma) {
    setObjectName(QLatin1String(nombre));
    setWindowTitle(titulo);
    MarcoPlano::poner(*this);
    auto* columna = new QVBoxLayout(this);
    columna->setContentsMargins(1, 1, 1, 1);
    columna->setSpacing(0);
    columna->addWidget(crearCabecera(titulo));
    auto* cuerpo = new QVBoxLayout;
    cuerpo->setContentsMargins(kMargen, kMargen, kMargen, kMargen);
    cuerpo->setSpacing(kSeparacion);
    grupos_ = new QVBoxLayout;
    grupos_->setSpacing(kSeparacion);
    cuerpo->addLayout(grupos_);
    cuerpo->addWidget(crearBotones());
    columna->addLayout(cuerpo);
    columna->setSizeConstraint(QLayout::SetFixedSize);
}

QWidget* DialogoPlano::crearCabecera(const QString& titulo) {
    auto* cabecera = new QFrame(this);
    cabecera->setObjectName(QStringLiteral("frCabecera"));
    auto* texto = new QLabel(titulo, cabecera);
    texto->setObjectName(QStringLiteral("lbTitulo"));
    QFont letra = texto->font();
    letra.setPointSizeF(letra.pointSizeF() * kAumentoDeTitulo);
    letra.setBold(true);
    texto->setFont(letra);
    auto* fila = new QHBoxLayout(cabecera);
    fila->setContentsMargins(kMargen, 10, kMargen, 10);
    fila->addWidget(texto);
    return cabecera;
}

QWidget* DialogoPlano::crearBotones() {
    auto* marco = new QWidget(this);
    auto* fila = new QHBoxLayout(marco);
    fila->setContentsMargins(0, 2, 0, 0);
    fila->setSpacing(8);
    fila->addStretch(1);
    const auto crear = [&](const char* nombre, const QString& texto) {
        auto* boton = new QPushButton(texto, marco);
        boton->setObjectName(QLatin1String(nombre));
        boton->setMinimumWidth(kAnchuraDeBoton);
        fila->addWidget(boton);
        return boton;
    };
    auto* acepto = crear("Acepto", QStringLiteral("&Acepto"));
    acepto->setDefault(true);
    connect(acepto, &QPushButton::clicked, this, [this] { aceptar(); });
    connect(crear("Cancelo", QStringLiteral("&Cancelo")), &QPushButton::clicked, this,
            &QDialog::reject);
    return marco;
}

void DialogoPlano::aceptar() {
    const std::string error = validar();
    if (error.empty()) {
        accept();
    } else {
        plataforma_.mensajeCritico(error);
    }
}

bool DialogoPlano::preguntar() { return exec() == Accepted; }

QFrame* DialogoPlano::nuevoGrupo() {
    auto* grupo = new QFrame(this);
    grupo->setObjectName(QStringLiteral("frGrupo"));
    grupos_->addWidget(grupo);
    return grupo;
}

QLabel* DialogoPlano::rotulo(const QString& texto, QWidget* control, QWidget* padre) {
    auto* etiqueta = new QLabel(texto, padre);
    etiqueta->setBuddy(control);
    if (control->accessibleName().isEmpty()) {
        QString nombre = texto;
        control->setAccessibleName(nombre.remove(QLatin1Char('&')).remove(QLatin1Char(':')));
    }
    return etiqueta;
}

}  // namespace bn
