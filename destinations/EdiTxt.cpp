// SPDX-License-Identifier: MIT
#include "destinations/EdiTxt.h"

#include <QApplication>
#include <QGridLayout>
#include <QHeaderView>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <array>
#include <utility>

#include "ventanas/Rejilla.h"
#include "ventanas/TeclasNumericas.h"

namespace bn {

namespace {

using Txt = FormularioTxt;

constexpr int kMargen = 14;
constexpr int kSeparacion = 10;
constexpr int kFilas = 1 + kCamposPesada;  // the header is a row of the grid
constexpr int kColumnas = 6;
constexpr int kAnchuraDeMarca = 22;
constexpr int kAnchuraDeCampo = 120;
constexpr int kAnchuraDeNumero = 56;
constexpr std::array<const char*, kColumnas> kCabeceras = {"",    "Campo", "Formato",
                                                           "Pos", "Lon",   ""};

int campoDe(int fila) { return fila - 1; }

bool esNumero(int columna) { return columna == Txt::kPosicion || columna == Txt::kLargo; }

Qt::Alignment alineacion(int columna) {
    return (esNumero(columna) ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter;
}

}  // namespace

EdiTxt::EdiTxt(Plataforma& plataforma, QWidget* padre)
    : DialogoPlano(plataforma, "EdiTxt", QStringLiteral("Guardar pesadas en Fichero de Texto"),
                   padre),
      grupo_(nuevoGrupo()) {
    crearCampos();
    crearRejilla();
    crearEditor();
    mostrar();
}

void EdiTxt::crearCampos() {
    auto* rejilla = new QGridLayout(grupo_);
    rejilla->setContentsMargins(kMargen, kMargen, kMargen, kMargen);
    rejilla->setHorizontalSpacing(kSeparacion);
    rejilla->setVerticalSpacing(kSeparacion);
    rejilla->setColumnStretch(1, 1);
    libro_ = new CampoDeFichero(QStringLiteral("Archivos de texto (*.txt)"), grupo_);
    connect(libro_->caja(), &QLineEdit::textChanged, this,
            [this](const QString& texto) { formulario_.txLibro = texto.toStdString(); });
    grd_ = rejilla::nueva(kFilas, kColumnas, grupo_);
    rejilla->addWidget(rotulo(QStringLiteral("&Fichero:"), libro_->caja(), grupo_), 0, 0);
    rejilla->addWidget(libro_, 0, 1);
    auto* campos = rotulo(QStringLiteral("Ca&mpos:"), grd_, grupo_);
    campos->setContentsMargins(0, 5, 0, 0);
    rejilla->addWidget(campos, 1, 0, Qt::AlignTop);
    rejilla->addWidget(grd_, 1, 1);
    auto* aviso =
        new QLabel(QStringLiteral("Ctrl+Espacio escribe o deja de escribir el campo."), grupo_);
    aviso->setObjectName(QStringLiteral("lbAviso"));
    rejilla->addWidget(aviso, 2, 1);
    rejilla->addWidget(crearVista(), 3, 0, 1, 2);
}

void EdiTxt::crearRejilla() {
    grd_->setAccessibleName(QStringLiteral("Campos de la línea"));
    auto* cabecera = grd_->horizontalHeader();
    cabecera->setSectionResizeMode(QHeaderView::Fixed);
    cabecera->setSectionResizeMode(Txt::kFormato, QHeaderView::Stretch);
    grd_->setColumnWidth(Txt::kMarca, kAnchuraDeMarca);
    grd_->setColumnWidth(Txt::kCampo, kAnchuraDeCampo);
    grd_->setColumnWidth(Txt::kPosicion, kAnchuraDeNumero);
    grd_->setColumnWidth(Txt::kLargo, kAnchuraDeNumero);
    grd_->setColumnHidden(Txt::kApartado, true);
    rejilla::ajustarAltura(*grd_);
    for (int columna = 0; columna < kColumnas; ++columna) {
        auto* celda = rejilla::poner(
            *grd_, 0, columna, QString::fromUtf8(kCabeceras[static_cast<std::size_t>(columna)]));
        celda->setFlags(Qt::NoItemFlags);
        celda->setBackground(QColor(238, 242, 246));
        celda->setForeground(palette().color(QPalette::WindowText));
        celda->setTextAlignment(alineacion(columna));
    }
    connect(grd_, &QTableWidget::currentCellChanged, this, [this](int fila, int columna, int, int) {
        if (!ocupado_) entrar(fila, columna);
    });
    grd_->installEventFilter(this);
    grd_->viewport()->installEventFilter(this);
}

void EdiTxt::crearEditor() {
    txEd_ = new QLineEdit(grd_->viewport());
    txEd_->setObjectName(QStringLiteral("txEd"));
    txEd_->hide();
    connect(txEd_, &QLineEdit::textChanged, this,
            [this](const QString& texto) { txEd_Change(texto); });
    new TeclasNumericas(*txEd_, [this] { return esNumero(grd_->currentColumn()); });
    txEd_->installEventFilter(this);
}

QWidget* EdiTxt::crearVista() {
    marcoVista_ = new QWidget(grupo_);
    auto* columna = new QVBoxLayout(marcoVista_);
    columna->setContentsMargins(0, 0, 0, 0);
    columna->setSpacing(6);
    columna->addWidget(
        new QLabel(QStringLiteral("Así quedará la línea de una pesada:"), marcoVista_));
    vista_ = new ReglaDeLinea;
    rollo_ = new QScrollArea(marcoVista_);
    rollo_->setObjectName(QStringLiteral("rolloVista"));
    rollo_->setWidget(vista_);
    rollo_->setFocusPolicy(Qt::NoFocus);
    rollo_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    rollo_->setMinimumWidth(vista_->sizeHint().width() + 2);
    rollo_->setFixedHeight(vista_->sizeHint().height() +
                           rollo_->horizontalScrollBar()->sizeHint().height() + 2);
    columna->addWidget(rollo_);
    marcoVista_->hide();
    return marcoVista_;
}

bool EdiTxt::eventFilter(QObject* objeto, QEvent* evento) {
    if (objeto == txEd_ && enEditor(evento)) return true;
    if (grd_ != nullptr && (objeto == grd_ || objeto == grd_->viewport()) && enRejilla(evento)) {
        return true;
    }
    return DialogoPlano::eventFilter(objeto, evento);
}

bool EdiTxt::enEditor(QEvent* evento) {
    if (evento->type() == QEvent::FocusOut) {
        txEd_LostFocus(static_cast<QFocusEvent*>(evento)->reason());
    }
    return evento->type() == QEvent::KeyPress && alTeclear(*static_cast<QKeyEvent*>(evento));
}

bool EdiTxt::enRejilla(QEvent* evento) {
    switch (evento->type()) {
        case QEvent::FocusIn:
            // Entered by the keyboard: where the user left it, with the editor open.
            if (grd_->currentRow() < 1) irA(1, Txt::kFormato);
            abrirEditor();
            return false;
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
            return alPulsarRaton(*static_cast<QMouseEvent*>(evento));
        default:
            return false;
    }
}

bool EdiTxt::alTeclear(const QKeyEvent& evento) {
    if (evento.key() == Qt::Key_Space && evento.modifiers().testFlag(Qt::ControlModifier)) {
        alternar(grd_->currentRow());
        abrirEditor();
        return true;
    }
    if (evento.key() == Qt::Key_Backtab) {
        libro_->boton()->setFocus(Qt::BacktabFocusReason);  // the grid would send it back here
        return true;
    }
    return mover(evento);
}

/// The arrows: out of the cell when the caret is at the edge they point to, else within its text.
bool EdiTxt::mover(const QKeyEvent& evento) {
    const int fila = grd_->currentRow();
    const int columna = grd_->currentColumn();
    const bool sola = !(evento.modifiers() & ~Qt::KeypadModifier);
    const bool seleccion = txEd_->hasSelectedText();
    const int desde = seleccion ? txEd_->selectionStart() : txEd_->cursorPosition();
    const int hasta = seleccion ? txEd_->selectionEnd() : desde;
    switch (evento.key()) {
        case Qt::Key_Up:
            if (fila > 1) entrar(fila - 1, columna);
            return true;
        case Qt::Key_Down:
            if (fila < kFilas - 1) entrar(fila + 1, columna);
            return true;
        case Qt::Key_Left:
            if (!sola || desde > 0 || columna <= Txt::kFormato) return false;
            entrar(fila, columna - 1);
            return true;
        case Qt::Key_Right:
            if (!sola || hasta < txEd_->text().size() || columna >= Txt::kLargo) return false;
            entrar(fila, columna + 1);
            return true;
        default:
            return false;
    }
}

bool EdiTxt::alPulsarRaton(const QMouseEvent& evento) {
    const auto sitio = grd_->indexAt(evento.position().toPoint());
    if (sitio.isValid()) entrar(sitio.row(), sitio.column());
    return true;
}

/// A cell entered or clicked: its mark is switched, or it is edited.
void EdiTxt::entrar(int fila, int columna) {
    if (fila < 1 || fila >= kFilas) return;
    if (columna == Txt::kMarca) alternar(fila);
    irA(fila, qBound<int>(Txt::kFormato, columna, Txt::kLargo));
    abrirEditor();
}

void EdiTxt::irA(int fila, int columna) {
    const QScopedValueRollback<bool> ocupado(ocupado_, true);
    grd_->setCurrentCell(fila, columna);
}

void EdiTxt::alternar(int fila) {
    formulario_.alternar(campoDe(fila));
    mostrarFila(fila);
    mostrarVista();
}

void EdiTxt::abrirEditor() {
    const int fila = grd_->currentRow();
    const int columna = grd_->currentColumn();
    {
        const QSignalBlocker callado(txEd_);
        txEd_->setMaxLength(Txt::maximo(columna));
        txEd_->setText(QString::fromStdString(formulario_.celda(campoDe(fila), columna)));
    }
    txEd_->setAlignment(alineacion(columna));
    txEd_->setAccessibleName(QString::fromUtf8(kCabeceras[static_cast<std::size_t>(columna)]) +
                             QStringLiteral(", ") + grd_->item(fila, Txt::kCampo)->text());
    txEd_->setGeometry(grd_->visualItemRect(grd_->item(fila, columna)).adjusted(-1, -1, 1, 1));
    txEd_->selectAll();
    txEd_->show();
    txEd_->raise();
    txEd_->setFocus();
    mostrarVista();
}

void EdiTxt::txEd_Change(const QString& texto) {
    if (ocupado_) return;
    const int fila = grd_->currentRow();
    const int columna = grd_->currentColumn();
    formulario_.escribir(campoDe(fila), columna, texto.toStdString());
    mostrarFila(fila);
    mostrarVista();
    // What the cell does not take, pasted letters for one, does not stay in the editor either.
    const QString guardado = QString::fromStdString(formulario_.celda(campoDe(fila), columna));
    if (guardado != texto) txEd_->setText(guardado);
}

/// A message box or a menu over the dialog gives the focus back to where it was.
void EdiTxt::txEd_LostFocus(Qt::FocusReason motivo) {
    if (motivo == Qt::ActiveWindowFocusReason || motivo == Qt::PopupFocusReason) return;
    if (QApplication::focusWidget() == grd_) return;
    txEd_->hide();
}

std::string EdiTxt::validar() const { return formulario_.validar(); }

void EdiTxt::mostrar() {
    const QScopedValueRollback<bool> ocupado(ocupado_, true);
    const std::string fichero = formulario_.txLibro;
    libro_->caja()->setText(QString::fromStdString(fichero));
    for (int fila = 1; fila < kFilas; ++fila) mostrarFila(fila);
    grd_->setCurrentCell(1, Txt::kFormato);
    txEd_->hide();
    mostrarVista();
    libro_->caja()->setFocus();
}

void EdiTxt::mostrarFila(int fila) {
    const int campo = campoDe(fila);
    rejilla::marcar(*grd_, fila, formulario_.escrito(campo));
    for (int columna = Txt::kCampo; columna < kColumnas; ++columna) {
        rejilla::poner(*grd_, fila, columna,
                       QString::fromStdString(formulario_.celda(campo, columna)))
            ->setTextAlignment(alineacion(columna));
    }
}

void EdiTxt::VistaPrevia(std::function<std::string(const FormularioTxt&)> linea) {
    linea_ = std::move(linea);
    marcoVista_->setVisible(static_cast<bool>(linea_));
    mostrarVista();
}

void EdiTxt::mostrarVista() {
    if (!linea_) return;
    const auto campos = formulario_.disposicion();
    const int campo = campoDe(grd_->currentRow());
    const auto& actual = campos[static_cast<std::size_t>(qBound(0, campo, kCamposPesada - 1))];
    vista_->mostrar(QString::fromStdString(linea_(formulario_)), actual.posicion, actual.largo);
    if (actual.posicion > 0) rollo_->ensureVisible(vista_->izquierdaDe(actual.posicion), 0);
}

bool EdiTxt::Abrir(Setup& cfg) {
    formulario_.cargar(cfg);
    mostrar();
    if (!preguntar()) return false;
    formulario_.guardar(cfg);
    return true;
}

}  // namespace bn
