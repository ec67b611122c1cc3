// SPDX-License-Identifier: MIT
#pragma once

#include <QFrame>
#include <QObject>
#include <QPoint>
#include <QWidget>
#include <array>
#include <optional>

namespace bn {

/// What all the program's windows share: no system frame, four lines as a border, one flat style,
/// and moving by dragging the background.
class MarcoPlano : public QObject {
 public:
    /// Dresses the window, which owns the frame from then on. Call it before the window is shown.
    static void poner(QWidget& ventana);

    bool eventFilter(QObject* objeto, QEvent* evento) override;

 private:
    explicit MarcoPlano(QWidget& ventana);
    void colocarLineas();
    bool arrastrar(QEvent* evento);

    QWidget& ventana_;
    std::array<QFrame*, 4> lineas_{};
    std::optional<QPoint> asidero_;  // where the background was pressed, from the window's corner
};

}  // namespace bn
