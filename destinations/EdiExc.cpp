// SPDX-License-Identifier: MIT
#include "destinations/EdiExc.h"

#include <QGridLayout>
#include <QHeaderView>
#include <QSignalBlocker>

#include "ventanas/Rejilla.h"

namespace bn {

namespace {

constexpr int kMargen = 14;
constexpr int kSeparacion = 10;
constexpr int kAnchuraDeCampos = 380;
constexpr int kColumnas = 4;
constexpr int kColumnaLetras = 2;
constexpr int kColumnaApartadas = 3;
constexpr int kAnchuraDeMarca = 18;
constexpr int kAnchuraDeLetras = 32;
constexpr char32_t kIntro = 13;
constexpr char32_t kRetroceso = 8;
constexpr char32_t kPrimerVisible = 32;

}  // namespace

EdiExc::EdiExc(Plataforma& plataforma, QWidget* padre)
    : DialogoPlano(plataforma, "EdiExc", QStringLiteral("Guardar pesadas en Hoja de Cálculo Excel"),
                   padre),
      grupo_(nuevoGrupo()) {
    crearCampos();
    crearRejilla();
    mostrar();
}

void EdiExc::crearCampos() {
    auto* rejilla = new QGridLayout(grupo_);
    rejilla->setContentsMargins(kMargen, kMargen, kMargen, kMargen);
    rejilla->setHorizontalSpacing(kSeparacion);
    rejilla->setVerticalSpacing(kSeparacion);
    rejilla->setColumnStretch(1, 1);
    rejilla->setColumnMinimumWidth(1, kAnchuraDeCampos);

    libro_ = new CampoDeFichero(QStringLiteral("Hojas de cálculo Excel (*.xls)"), grupo_);
    libro_->alElegir = [this] { refrescarHojas(); };
    connect(libro_->caja(), &QLineEdit::textChanged, this,
            [this](const QString& texto) { formulario_.txLibro = texto.toStdString(); });
    lstHoja_ = new QComboBox(grupo_);
    lstHoja_->setObjectName(QStringLiteral("lstHoja"));
    lstHoja_->setEditable(true);
    lstHoja_->setInsertPolicy(QComboBox::NoInsert);
    lstHoja_->setCompleter(nullptr);  // a new name that begins like an old one is a new name
    connect(lstHoja_, &QComboBox::editTextChanged, this,
            [this](const QString& texto) { formulario_.lstHoja = texto.toStdString(); });
    grd_ = rejilla::nueva(kCamposPesada, kColumnas, grupo_);

    rejilla->addWidget(rotulo(QStringLiteral("&Libro:"), libro_->caja(), grupo_), 0, 0);
    rejilla->addWidget(libro_, 0, 1);
    rejilla->addWidget(rotulo(QStringLiteral("&Hoja:"), lstHoja_, grupo_), 1, 0);
    rejilla->addWidget(lstHoja_, 1, 1);
    auto* campos = rotulo(QStringLiteral("Ca&mpos:"), grd_, grupo_);
    campos->setContentsMargins(0, 5, 0, 0);
    rejilla->addWidget(campos, 2, 0, Qt::AlignTop);
    rejilla->addWidget(grd_, 2, 1);
    auto* aviso =
        new QLabel(QStringLiteral("Escriba las letras de la columna de cada campo, o use + y −.\n"
                                  "Ctrl+Espacio marca o desmarca el campo."),
                   grupo_);
    aviso->setObjectName(QStringLiteral("lbAviso"));
    rejilla->addWidget(aviso, 3, 1);
}

void EdiExc::crearRejilla() {
    grd_->setAccessibleName(QStringLiteral("Columna de cada campo"));
    grd_->setSelectionBehavior(QAbstractItemView::SelectRows);
    auto* cabecera = grd_->horizontalHeader();
    cabecera->setSectionResizeMode(QHeaderView::Fixed);
    cabecera->setSectionResizeMode(1, QHeaderView::Stretch);
    grd_->setColumnWidth(0, kAnchuraDeMarca);
    grd_->setColumnWidth(kColumnaLetras, kAnchuraDeLetras);
    grd_->setColumnHidden(kColumnaApartadas, true);
    rejilla::ajustarAltura(*grd_);
    connect(grd_, &QTableWidget::currentCellChanged, this,
            [this](int fila, int columna, int, int) { formulario_.irACelda(fila, columna); });
    grd_->installEventFilter(this);
    grd_->viewport()->installEventFilter(this);
}

bool EdiExc::eventFilter(QObject* objeto, QEvent* evento) {
    const auto tipo = evento->type();
    if (objeto == grd_ && tipo == QEvent::KeyPress) {
        if (alTeclear(*static_cast<QKeyEvent*>(evento))) return true;
    }
    if (grd_ != nullptr && objeto == grd_->viewport() &&
        (tipo == QEvent::MouseButtonPress || tipo == QEvent::MouseButtonDblClick)) {
        if (alPulsarRaton(*static_cast<QMouseEvent*>(evento))) return true;
    }
    return DialogoPlano::eventFilter(objeto, evento);
}

/// True when the key was the form's, also when the form makes nothing of it.
bool EdiExc::alTeclear(const QKeyEvent& evento) {
    const bool control = evento.modifiers().testFlag(Qt::ControlModifier);
    if (control && evento.key() == Qt::Key_Space) {
        alternar(formulario_.filaActual());
        return true;
    }
    const auto codigos = evento.text().toUcs4();
    if (evento.key() == Qt::Key_Delete) {
        formulario_.teclaSuprimir();
    } else if (evento.key() == Qt::Key_Return || evento.key() == Qt::Key_Enter) {
        formulario_.tecla(kIntro);
    } else if (evento.key() == Qt::Key_Backspace) {
        formulario_.tecla(kRetroceso);
    } else if (!codigos.isEmpty() && codigos.front() >= kPrimerVisible) {
        formulario_.tecla(codigos.front());
    } else {
        return false;
    }
    mostrarRejilla();
    return true;
}

bool EdiExc::alPulsarRaton(const QMouseEvent& evento) {
    const auto sitio = grd_->indexAt(evento.position().toPoint());
    if (!sitio.isValid()) return false;
    grd_->setCurrentCell(sitio.row(), sitio.column());
    if (sitio.column() == 0) alternar(formulario_.filaActual());
    return true;
}

void EdiExc::alternar(int fila) {
    formulario_.alternar(fila);
    mostrarRejilla();
}

void EdiExc::refrescarHojas() {
    XCel excel(plataforma());
    formulario_.refrescarHojas(excel);
    const QSignalBlocker callado(lstHoja_);
    lstHoja_->clear();
    for (const auto& hoja : formulario_.hojas) lstHoja_->addItem(QString::fromStdString(hoja));
    lstHoja_->setEditText(QString::fromStdString(formulario_.lstHoja));
}

std::string EdiExc::validar() const { return formulario_.validar(); }

void EdiExc::mostrar() {
    const FormularioExc cargado = formulario_;  // each text shown comes back as an edit
    libro_->caja()->setText(QString::fromStdString(cargado.txLibro));
    lstHoja_->setEditText(QString::fromStdString(cargado.lstHoja));
    mostrarRejilla();
    libro_->caja()->setFocus();
}

void EdiExc::mostrarRejilla() {
    for (int fila = 0; fila < kCamposPesada; ++fila) {
        rejilla::marcar(*grd_, fila, formulario_.marcada(fila));
        rejilla::poner(*grd_, fila, 1,
                       QString::fromStdString(nombresDeCampos()[static_cast<std::size_t>(fila)]));
        rejilla::poner(*grd_, fila, kColumnaLetras,
                       QString::fromStdString(formulario_.letras(fila)))
            ->setTextAlignment(Qt::AlignCenter);
        rejilla::poner(*grd_, fila, kColumnaApartadas,
                       QString::fromStdString(formulario_.apartadas(fila)));
    }
    if (grd_->currentRow() != formulario_.filaActual()) {
        grd_->setCurrentCell(formulario_.filaActual(), qMax(grd_->currentColumn(), 0));
    }
}

bool EdiExc::Abrir(Setup& cfg) {
    formulario_.cargar(cfg);
    mostrar();
    refrescarHojas();
    if (!preguntar()) return false;
    formulario_.guardar(cfg);
    return true;
}

}  // namespace bn
