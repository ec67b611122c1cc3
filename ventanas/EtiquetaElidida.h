// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>

namespace bn {

/// A label whose long text is shortened in the middle to what fits; text() stays whole, and the
/// tool tip shows it.
class EtiquetaElidida : public QLabel {
 public:
    using QLabel::QLabel;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

 protected:
    void paintEvent(QPaintEvent* evento) override;
    bool event(QEvent* evento) override;
};

}  // namespace bn
