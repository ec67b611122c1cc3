// SPDX-License-Identifier: MIT
#pragma once

#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollArea>
#include <QTableWidget>
#include <functional>
#include <string>

#include "config/Setup.h"
#include "destinations/FormularioTxt.h"
#include "ventanas/CampoDeFichero.h"
#include "ventanas/DialogoPlano.h"
#include "ventanas/ReglaDeLinea.h"

namespace bn {

/// The dialog of the text destination.
class EdiTxt : public DialogoPlano {
 public:
    explicit EdiTxt(Plataforma& plataforma, QWidget* padre = nullptr);

    /// Edits the settings, without writing their file. True when the user accepted.
    bool Abrir(Setup& cfg);

    /// What gives the line, UTF-8, that a weighing would have under the layout as it is edited.
    /// Without it there is no preview.
    void VistaPrevia(std::function<std::string(const FormularioTxt&)> linea);
    /// Asks for the text file; tests put their answer here.
    std::function<QString(const QString& actual)>& elegirFichero() { return libro_->elegir; }

    bool eventFilter(QObject* objeto, QEvent* evento) override;

 protected:
    std::string validar() const override;

 private:
    void crearCampos();
    void crearRejilla();
    void crearEditor();
    QWidget* crearVista();
    bool enEditor(QEvent* evento);
    bool enRejilla(QEvent* evento);
    bool alTeclear(const QKeyEvent& evento);
    bool alPulsarRaton(const QMouseEvent& evento);
    bool mover(const QKeyEvent& evento);
    void entrar(int fila, int columna);
    void irA(int fila, int columna);
    void alternar(int fila);
    void abrirEditor();
    void txEd_Change(const QString& texto);
    void txEd_LostFocus(Qt::FocusReason motivo);
    void mostrar();
    void mostrarFila(int fila);
    void mostrarVista();

    FormularioTxt formulario_;
    std::function<std::string(const FormularioTxt&)> linea_;
    QFrame* grupo_;
    CampoDeFichero* libro_ = nullptr;
    QTableWidget* grd_ = nullptr;
    QLineEdit* txEd_ = nullptr;
    QWidget* marcoVista_ = nullptr;
    QScrollArea* rollo_ = nullptr;
    ReglaDeLinea* vista_ = nullptr;
    bool ocupado_ = false;  // the grid is being filled or moved, not edited
};

}  // namespace bn
