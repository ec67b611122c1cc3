// SPDX-License-Identifier: MIT
#include "ventanas/Rejilla.h"

#include <QHeaderView>
#include <QPainter>
#include <QStyledItemDelegate>

#include "ventanas/Iconos.h"

namespace bn::rejilla {

namespace {

constexpr int kLadoDeMarca = 16;
constexpr int kHolguraDeFila = 10;

/// The mark's text is for those who cannot see the picture: only the picture is drawn.
class PintorDeMarcas : public QStyledItemDelegate {
 public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* pintor, const QStyleOptionViewItem& opcion,
               const QModelIndex& indice) const override {
        QStyleOptionViewItem fondo(opcion);
        initStyleOption(&fondo, indice);
        fondo.text.clear();
        fondo.icon = {};
        const auto* estilo = opcion.widget != nullptr ? opcion.widget->style() : nullptr;
        if (estilo == nullptr) return;
        estilo->drawControl(QStyle::CE_ItemViewItem, &fondo, pintor, opcion.widget);
        QRect sitio(0, 0, kLadoDeMarca, kLadoDeMarca);
        sitio.moveCenter(opcion.rect.center());
        indice.data(Qt::DecorationRole).value<QIcon>().paint(pintor, sitio);
    }
};

}  // namespace

QTableWidget* nueva(int filas, int columnas, QWidget* padre) {
    auto* grd = new QTableWidget(filas, columnas, padre);
    grd->setObjectName(QStringLiteral("grd"));
    grd->horizontalHeader()->hide();
    grd->verticalHeader()->hide();
    grd->horizontalHeader()->setMinimumSectionSize(0);
    grd->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    grd->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    grd->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    grd->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grd->setSelectionMode(QAbstractItemView::SingleSelection);
    grd->setTabKeyNavigation(false);
    grd->setWordWrap(false);
    grd->setItemDelegateForColumn(0, new PintorDeMarcas(grd));
    return grd;
}

void ajustarAltura(QTableWidget& grd) {
    const int alto = grd.fontMetrics().height() + kHolguraDeFila;
    grd.verticalHeader()->setMinimumSectionSize(alto);
    grd.verticalHeader()->setDefaultSectionSize(alto);
    constexpr int kBordes = 2;
    grd.setFixedHeight(alto * grd.rowCount() + kBordes);
}

QTableWidgetItem* poner(QTableWidget& grd, int fila, int columna, const QString& texto) {
    auto* celda = grd.item(fila, columna);
    if (celda == nullptr) {
        celda = new QTableWidgetItem;
        celda->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        grd.setItem(fila, columna, celda);
    }
    celda->setText(texto);
    return celda;
}

void marcar(QTableWidget& grd, int fila, bool marcada) {
    auto* celda = poner(grd, fila, 0, marcada ? QStringLiteral("·") : QString());
    celda->setIcon(icono(marcada ? Icono::kMarcado : Icono::kSinMarcar));
    celda->setData(Qt::AccessibleTextRole,
                   marcada ? QStringLiteral("se escribe") : QStringLiteral("no se escribe"));
}

}  // namespace bn::rejilla
