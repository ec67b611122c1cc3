// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <functional>

namespace bn {

/// A label that can be pressed, with the mouse or, when it has the focus, with the space bar or
/// Enter.
class EtiquetaPulsable : public QLabel {
 public:
    explicit EtiquetaPulsable(const QString& texto, QWidget* padre = nullptr);

    std::function<void()> alPulsar;

 protected:
    void mousePressEvent(QMouseEvent* evento) override;
    void keyPressEvent(QKeyEvent* evento) override;
    void paintEvent(QPaintEvent* evento) override;
};

}  // namespace bn
