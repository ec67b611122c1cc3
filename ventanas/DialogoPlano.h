// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QFrame>
#include <QLabel>
#include <QVBoxLayout>
#include <string>

#include "platform/Plataforma.h"

namespace bn {

/// What the settings dialogs share: the flat frame with its title, the buttons Acepto and Cancelo,
/// and the rule that a form that does not validate says why and stays open.
class DialogoPlano : public QDialog {
 protected:
    DialogoPlano(Plataforma& plataforma, const char* nombre, const QString& titulo, QWidget* padre);

    /// The first failure of the form, "" when it can be accepted.
    virtual std::string validar() const = 0;

    /// Shows the dialog modally. True when the user accepted.
    bool preguntar();
    Plataforma& plataforma() const { return plataforma_; }

    /// A framed group of the dialog's body, under the ones before it.
    QFrame* nuevoGrupo();
    /// A label in front of a control, with its mnemonic.
    static QLabel* rotulo(const QString& texto, QWidget* control, QWidget* padre);

 private:
    QWidget* crearCabecera(const QString& titulo);
    QWidget* crearBotones();
    void aceptar();

    Plataforma& plataforma_;
    QVBoxLayout* grupos_ = nullptr;
};

}  // namespace bn
