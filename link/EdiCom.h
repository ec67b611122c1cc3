// SPDX-License-Identifier: MIT
#pragma once

#include <QCheckBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QMenu>
#include <functional>
#include <vector>

#include "config/Setup.h"
#include "link/FormularioCom.h"
#include "platform/Puertos.h"
#include "ventanas/DialogoPlano.h"

namespace bn {

/// The dialog of the communication settings.
class EdiCom : public DialogoPlano {
 public:
    explicit EdiCom(Plataforma& plataforma, QWidget* padre = nullptr);

    /// Edits the settings, without writing their file. True when the user accepted.
    bool Abrir(Setup& cfg);

    /// Where the list of serial devices comes from; tests put their own here.
    std::function<std::vector<PuertoPresente>()> puertos;

 protected:
    std::string validar() const override;

 private:
    QLineEdit* nuevaCaja(const char* nombre, std::string FormularioCom::*campo, int maximo);
    QWidget* crearCanal();
    void crearCampos(QGridLayout& rejilla);
    void crearAutomatica(QGridLayout& rejilla);
    void llenarMenu();
    void mostrar();
    void guardar(Setup& cfg);

    FormularioCom formulario_;
    QFrame* grupo_;
    QLineEdit *txCan_, *txParms_, *txCI_, *txCF_, *txPet_, *txTmO_, *txRet_, *txAutom_;
    QCheckBox* ckAutom_ = nullptr;
    QFrame* frAutom_ = nullptr;
    QMenu* menuPuertos_ = nullptr;
};

}  // namespace bn
