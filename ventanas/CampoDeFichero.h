// SPDX-License-Identifier: MIT
#pragma once

#include <QLineEdit>
#include <QWidget>
#include <functional>

namespace bn {

/// A text box with a path (txLibro) and the button beside it (cmdLibro) that looks for a file. The
/// file may be one that does not exist yet, in a folder that does.
class CampoDeFichero : public QWidget {
 public:
    /// filtro as the file dialog shows it: "Archivos de texto (*.txt)".
    CampoDeFichero(const QString& filtro, QWidget* padre);

    QLineEdit* caja() const { return caja_; }
    QWidget* boton() const { return boton_; }

    /// Asks the user for a file, beginning at the present one; "" when the user cancels. Tests put
    /// their answer here.
    std::function<QString(const QString& actual)> elegir;
    /// Called when the file dialog has been closed, its answer in the box.
    std::function<void()> alElegir;

 private:
    QString preguntar(const QString& actual);
    void buscar();

    QString filtro_;
    QLineEdit* caja_;
    QWidget* boton_;
};

}  // namespace bn
