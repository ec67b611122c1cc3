// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QWidget>

namespace bn {

/// A line of text under a ruler of its columns, with the span of one field set off.
class ReglaDeLinea : public QWidget {
 public:
    explicit ReglaDeLinea(QWidget* padre = nullptr);

    /// desde: first column of the span, from 1; largo 0: no span.
    void mostrar(const QString& linea, int desde, int largo);
    QString linea() const { return linea_; }
    /// Where a column begins, from the left edge.
    int izquierdaDe(int columna) const;

    QSize sizeHint() const override;

 protected:
    void paintEvent(QPaintEvent* evento) override;

 private:
    void pintarRegla(QPainter& pintor) const;

    QString linea_;
    int desde_ = 0;
    int largo_ = 0;
};

}  // namespace bn
