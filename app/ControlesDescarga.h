// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractButton>
#include <QCheckBox>
#include <QFrame>
#include <QLabel>
#include <QWidget>

#include "app/Aspecto.h"
#include "ventanas/EtiquetaElidida.h"
#include "ventanas/EtiquetaPulsable.h"

namespace bn {

/// The main window's controls and where they stand; nothing of what they do. All are owned by the
/// window; each carries its member's name as its object name.
struct ControlesDescarga {
    explicit ControlesDescarga(QWidget& ventana);

    /// The button of the row that comes and goes with the state.
    QAbstractButton& boton(Boton cual) const;

    QLabel* lbVer = nullptr;
    QAbstractButton* imgLink = nullptr;

    EtiquetaElidida* lbCanal = nullptr;
    QAbstractButton* cmdCom = nullptr;
    QCheckBox* ckTxto = nullptr;
    EtiquetaElidida* lbTexto = nullptr;
    QAbstractButton* vTxto = nullptr;
    QAbstractButton* cmdTxto = nullptr;
    QCheckBox* ckXcel = nullptr;
    EtiquetaElidida* lbExcel = nullptr;
    QAbstractButton* vXcel = nullptr;
    QAbstractButton* cmdXcel = nullptr;
    QFrame* frNoXcel = nullptr;

    QLabel* lbReposo = nullptr;
    QLabel* lbFase1 = nullptr;
    QLabel* lbFase2 = nullptr;
    QLabel* lbRx = nullptr;
    QLabel* lbFase3 = nullptr;
    QLabel* lbGu = nullptr;
    QFrame* frResul = nullptr;
    QLabel* lbResulBien = nullptr;
    QLabel* lbResulMal = nullptr;
    QLabel* lbMensaje = nullptr;

    QFrame* frPend = nullptr;
    QLabel* lbPend = nullptr;
    QAbstractButton* cmdPend = nullptr;
    QLabel* lbAviso = nullptr;

    EtiquetaPulsable* lbAuto = nullptr;
    QLabel* lbSeg = nullptr;
    QCheckBox* ckInicio = nullptr;
    QCheckBox* ckMini = nullptr;

    QAbstractButton* cmdCerr = nullptr;
    QAbstractButton* cmdMini = nullptr;
    QAbstractButton* cmdDesc = nullptr;
    QAbstractButton* cmdAbor = nullptr;
    QAbstractButton* cmdLimp = nullptr;

 private:
    QWidget* crearCabecera();
    QWidget* crearDestinos();
    QWidget* crearFases();
    QWidget* crearResultado();
    QWidget* crearPendientes();
    QWidget* crearCuenta();
    QWidget* crearBotones();

    QWidget& ventana_;
};

}  // namespace bn
