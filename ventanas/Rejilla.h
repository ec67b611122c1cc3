// SPDX-License-Identifier: MIT
#pragma once

#include <QTableWidget>

namespace bn::rejilla {

/// A flat grid without headers, as high as its rows, whose column of marks shows only pictures.
QTableWidget* nueva(int filas, int columnas, QWidget* padre);

/// Fixes the grid's height to its rows. Call it once the fonts are those it is shown with.
void ajustarAltura(QTableWidget& grd);

/// A cell's text; the cell comes into being with it, never editable in place.
QTableWidgetItem* poner(QTableWidget& grd, int fila, int columna, const QString& texto);

/// The mark of a row: picture, and the text "·" when it is set.
void marcar(QTableWidget& grd, int fila, bool marcada);

}  // namespace bn::rejilla
