// SPDX-License-Identifier: MIT
#pragma once

#include <QComboBox>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTableWidget>

#include "config/Setup.h"
#include "destinations/FormularioExc.h"
#include "ventanas/CampoDeFichero.h"
#include "ventanas/DialogoPlano.h"

namespace bn {

/// The dialog of the spreadsheet destination.
class EdiExc : public DialogoPlano {
 public:
    explicit EdiExc(Plataforma& plataforma, QWidget* padre = nullptr);

    /// Edits the settings, without writing their file. True when the user accepted.
    bool Abrir(Setup& cfg);

    /// Asks for the workbook; tests put their answer here.
    std::function<QString(const QString& actual)>& elegirFichero() { return libro_->elegir; }

    bool eventFilter(QObject* objeto, QEvent* evento) override;

 protected:
    std::string validar() const override;

 private:
    void crearCampos();
    void crearRejilla();
    bool alTeclear(const QKeyEvent& evento);
    bool alPulsarRaton(const QMouseEvent& evento);
    void alternar(int fila);
    void refrescarHojas();
    void mostrar();
    void mostrarRejilla();

    FormularioExc formulario_;
    QFrame* grupo_;
    CampoDeFichero* libro_ = nullptr;
    QComboBox* lstHoja_ = nullptr;
    QTableWidget* grd_ = nullptr;
};

}  // namespace bn
