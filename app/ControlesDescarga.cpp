// SPDX-License-Identifier: MIT
#include "app/ControlesDescarga.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QIcon>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <initializer_list>

#include "ventanas/Estilo.h"
#include "ventanas/IconosDeAccion.h"

namespace bn {

namespace {

constexpr int kMargen = 14;
constexpr int kSeparacion = 8;
constexpr int kAnchura = 560;
constexpr int kLadoDeIcono = 28;
constexpr int kLadoDeBoton = 18;

template <class Control>
Control* nombrado(Control* control, const char* nombre) {
    control->setObjectName(QLatin1String(nombre));
    return control;
}

QLabel* etiqueta(const char* nombre, const QString& texto, QWidget* padre) {
    return nombrado(new QLabel(texto, padre), nombre);
}

void agrandar(QLabel* etiqueta, double factor, bool negrita) {
    QFont letra = etiqueta->font();
    letra.setPointSizeF(letra.pointSizeF() * factor);
    letra.setBold(negrita);
    etiqueta->setFont(letra);
}

void colorear(QLabel* etiqueta, const QColor& color) {
    QPalette paleta = etiqueta->palette();
    paleta.setColor(QPalette::WindowText, color);
    etiqueta->setPalette(paleta);
}

/// A small button that is only a picture; what it is for is said by its tool tip.
QToolButton* botonDeIcono(const char* nombre, const QIcon& icono, const char* paraQue,
                          const QKeySequence& atajo, QWidget* padre) {
    auto* boton = nombrado(new QToolButton(padre), nombre);
    const QString texto = QString::fromUtf8(paraQue);
    boton->setIcon(icono);
    boton->setIconSize({kLadoDeBoton, kLadoDeBoton});
    boton->setFocusPolicy(Qt::StrongFocus);
    boton->setAccessibleName(texto);
    boton->setShortcut(atajo);
    boton->setToolTip(texto + " (" + atajo.toString(QKeySequence::NativeText) + ")");
    return boton;
}

/// Space stays kept for what comes and goes, so that nothing jumps.
void guardarSitio(QWidget* control) {
    QSizePolicy politica = control->sizePolicy();
    politica.setRetainSizeWhenHidden(true);
    control->setSizePolicy(politica);
}

/// As many lines as it takes at the width that there is, which it does not ask for.
void partirEnLineas(QLabel* etiqueta) {
    etiqueta->setWordWrap(true);
    QSizePolicy politica(QSizePolicy::Ignored, QSizePolicy::Preferred);
    politica.setHeightForWidth(true);
    etiqueta->setSizePolicy(politica);
}

/// What the widest of the texts takes in the label's letter.
int anchuraDeTextos(const QLabel& etiqueta, std::initializer_list<const char*> textos) {
    int anchura = 0;
    for (const char* texto : textos) {
        const int suya = etiqueta.fontMetrics().horizontalAdvance(QString::fromUtf8(texto));
        anchura = std::max(anchura, suya);
    }
    return anchura + 2;
}

}  // namespace

ControlesDescarga::ControlesDescarga(QWidget& ventana) : ventana_(ventana) {
    auto* columna = new QVBoxLayout(&ventana);
    columna->setContentsMargins(1, 1, 1, 1);
    columna->setSpacing(0);
    columna->addWidget(crearCabecera());
    auto* cuerpo = new QVBoxLayout;
    cuerpo->setContentsMargins(kMargen, kMargen, kMargen, kMargen);
    cuerpo->setSpacing(kSeparacion + 2);
    cuerpo->addWidget(crearDestinos());
    cuerpo->addWidget(crearFases(), 1);
    cuerpo->addWidget(crearPendientes());
    cuerpo->addWidget(crearCuenta());
    cuerpo->addWidget(crearBotones());
    columna->addLayout(cuerpo, 1);
    // Not a minimum width of the window: that would keep it from growing with its texts.
    columna->addStrut(kAnchura);
    // What comes takes its own room, and gives it back when it goes.
    columna->setSizeConstraint(QLayout::SetFixedSize);
}

QWidget* ControlesDescarga::crearCabecera() {
    auto* cabecera = nombrado(new QFrame(&ventana_), "frCabecera");
    auto* fila = new QHBoxLayout(cabecera);
    fila->setContentsMargins(kMargen, 10, kMargen, 10);
    auto* icono = new QLabel(cabecera);
    icono->setPixmap(QIcon(QStringLiteral(":/gancho.png")).pixmap(kLadoDeIcono, kLadoDeIcono));
    auto* titulo = new QLabel(QStringLiteral("Descarga de pesadas"), cabecera);
    agrandar(titulo, 1.25, true);
    colorear(titulo, Qt::white);
    lbVer = etiqueta("lbVer", {}, cabecera);
    colorear(lbVer, QColor(190, 205, 222));
    fila->addWidget(icono);
    fila->addWidget(titulo);
    fila->addStretch(1);
    fila->addWidget(lbVer);
    imgLink = botonDeIcono("imgLink", iconos::enlace(), "Página web de Balnor",
                           QKeySequence(Qt::ALT | Qt::Key_W), cabecera);
    fila->addWidget(imgLink);
    return cabecera;
}

QWidget* ControlesDescarga::crearDestinos() {
    auto* marco = nombrado(new QFrame(&ventana_), "frDestinos");
    auto* rejilla = new QGridLayout(marco);
    rejilla->setContentsMargins(kMargen, 10, 10, 10);
    rejilla->setHorizontalSpacing(kSeparacion);
    rejilla->setVerticalSpacing(6);
    rejilla->setColumnStretch(1, 1);

    lbCanal = nombrado(new EtiquetaElidida(marco), "lbCanal");
    cmdCom = botonDeIcono("cmdCom", iconos::ajustes(), "Cambiar la comunicación",
                          QKeySequence(Qt::ALT | Qt::Key_1), marco);
    rejilla->addWidget(lbCanal, 0, 0, 1, 2);
    rejilla->addWidget(cmdCom, 0, 3);

    ckXcel = nombrado(new QCheckBox(marco), "ckXcel");
    ckXcel->setAccessibleName(QStringLiteral("Guardar en la hoja Excel"));
    lbExcel = nombrado(new EtiquetaElidida(marco), "lbExcel");
    rejilla->addWidget(ckXcel, 1, 0);
    rejilla->addWidget(lbExcel, 1, 1);
    vXcel = botonDeIcono("vXcel", iconos::ver(), "Ver la hoja Excel",
                         QKeySequence(Qt::ALT | Qt::Key_4), marco);
    cmdXcel = botonDeIcono("cmdXcel", iconos::ajustes(), "Cambiar la hoja Excel",
                           QKeySequence(Qt::ALT | Qt::Key_2), marco);
    rejilla->addWidget(vXcel, 1, 2);
    rejilla->addWidget(cmdXcel, 1, 3);

    frNoXcel = nombrado(new QFrame(marco), "frNoXcel");
    auto* aviso = new QLabel(QStringLiteral("Este equipo no dispone de MS Excel (R)"), frNoXcel);
    colorear(aviso, estilo::kApagado);
    auto* fila = new QHBoxLayout(frNoXcel);
    fila->setContentsMargins(0, 4, 0, 4);
    fila->addWidget(aviso);
    fila->addStretch(1);
    frNoXcel->hide();
    // A row of its own: sharing one would take the spacing from both.
    rejilla->addWidget(frNoXcel, 2, 0, 1, 4);

    ckTxto = nombrado(new QCheckBox(marco), "ckTxto");
    ckTxto->setAccessibleName(QStringLiteral("Guardar en el fichero de texto"));
    lbTexto = nombrado(new EtiquetaElidida(marco), "lbTexto");
    rejilla->addWidget(ckTxto, 3, 0);
    rejilla->addWidget(lbTexto, 3, 1);
    vTxto = botonDeIcono("vTxto", iconos::ver(), "Ver el fichero de texto",
                         QKeySequence(Qt::ALT | Qt::Key_5), marco);
    cmdTxto = botonDeIcono("cmdTxto", iconos::ajustes(), "Cambiar el fichero de texto",
                           QKeySequence(Qt::ALT | Qt::Key_3), marco);
    rejilla->addWidget(vTxto, 3, 2);
    rejilla->addWidget(cmdTxto, 3, 3);
    return marco;
}

QWidget* ControlesDescarga::crearFases() {
    auto* marco = nombrado(new QFrame(&ventana_), "frFases");
    auto* rejilla = new QGridLayout(marco);
    rejilla->setContentsMargins(kMargen, 12, kMargen, 12);
    rejilla->setHorizontalSpacing(kSeparacion);
    // Below the labels instead: the grid leaves it out where one item lies over others.
    rejilla->setVerticalSpacing(0);
    rejilla->setColumnStretch(1, 1);
    lbFase1 = etiqueta("lbFase1", QStringLiteral("Pidiendo pesadas"), marco);
    lbFase2 = etiqueta("lbFase2", QStringLiteral("Recibiendo pesadas:"), marco);
    lbRx = etiqueta("lbRx", QStringLiteral("0"), marco);
    lbFase3 = etiqueta("lbFase3", QStringLiteral("Guardando pesadas"), marco);
    lbGu = etiqueta("lbGu", QStringLiteral("un momento…"), marco);
    for (auto* fase : {lbFase1, lbFase2, lbRx, lbFase3, lbGu}) {
        agrandar(fase, 1.1, fase == lbRx);
        fase->setContentsMargins(0, 0, 0, 6);
        guardarSitio(fase);
        fase->hide();
    }
    rejilla->addWidget(lbFase1, 0, 0, 1, 2);
    rejilla->addWidget(lbFase2, 1, 0);
    rejilla->addWidget(lbRx, 1, 1);
    rejilla->addWidget(lbFase3, 2, 0);
    rejilla->addWidget(lbGu, 2, 1);
    rejilla->addWidget(crearResultado(), 3, 0, 1, 2);
    lbReposo = etiqueta("lbReposo", QStringLiteral("A la espera de una descarga"), marco);
    colorear(lbReposo, estilo::kApagado);
    rejilla->addWidget(lbReposo, 0, 0, 4, 2, Qt::AlignCenter);
    rejilla->setRowStretch(4, 1);
    return marco;
}

QWidget* ControlesDescarga::crearResultado() {
    frResul = nombrado(new QFrame(&ventana_), "frResul");
    auto* columna = new QVBoxLayout(frResul);
    columna->setContentsMargins(10, 8, 10, 8);
    columna->setSpacing(2);
    lbResulBien = etiqueta("lbResulBien", QStringLiteral(" \n "), frResul);
    lbResulMal =
        etiqueta("lbResulMal", QStringLiteral("La descarga no ha terminado bien"), frResul);
    lbMensaje = etiqueta("lbMensaje", {}, frResul);
    partirEnLineas(lbMensaje);
    agrandar(lbResulBien, 1.1, true);
    agrandar(lbResulMal, 1.1, true);
    colorear(lbResulBien, estilo::kVerde);
    colorear(lbResulMal, estilo::kRojo);
    for (auto* parte : {lbResulBien, lbResulMal, lbMensaje}) {
        parte->setTextFormat(Qt::PlainText);
        columna->addWidget(parte);
    }
    // Room for the longest result from the start: a message of three lines.
    frResul->setMinimumHeight(lbMensaje->fontMetrics().lineSpacing() * 6);
    guardarSitio(frResul);
    frResul->hide();
    return frResul;
}

/// There only while there is something to say.
QWidget* ControlesDescarga::crearPendientes() {
    frPend = nombrado(new QFrame(&ventana_), "frPend");
    auto* rejilla = new QGridLayout(frPend);
    rejilla->setContentsMargins(kMargen, 8, 10, 8);
    rejilla->setHorizontalSpacing(kSeparacion);
    rejilla->setColumnStretch(0, 1);
    lbPend = etiqueta("lbPend", {}, frPend);
    colorear(lbPend, estilo::kRojo);
    lbAviso = etiqueta("lbAviso", {}, frPend);
    for (auto* texto : {lbPend, lbAviso}) {
        texto->setTextFormat(Qt::PlainText);
        partirEnLineas(texto);
        texto->setTextInteractionFlags(Qt::TextSelectableByMouse);
        texto->hide();
    }
    cmdPend = nombrado(new QPushButton(QStringLiteral("&Guardar ahora"), frPend), "cmdPend");
    cmdPend->setToolTip(QStringLiteral("Guardar ahora las pesadas pendientes"));
    cmdPend->hide();
    rejilla->addWidget(lbPend, 0, 0);
    rejilla->addWidget(cmdPend, 0, 1, Qt::AlignTop);
    rejilla->addWidget(lbAviso, 1, 0, 1, 2);
    frPend->hide();
    return frPend;
}

QWidget* ControlesDescarga::crearCuenta() {
    auto* marco = nombrado(new QFrame(&ventana_), "frAuto");
    auto* fila = new QHBoxLayout(marco);
    fila->setContentsMargins(kMargen, 8, kMargen, 8);
    lbAuto =
        nombrado(new EtiquetaPulsable(QStringLiteral("Próxima descarga automática (seg.):"), marco),
                 "lbAuto");
    lbAuto->setToolTip(QStringLiteral("Pulse para retener o reanudar la cuenta"));
    lbSeg = etiqueta("lbSeg", {}, marco);
    agrandar(lbSeg, 1.0, true);
    lbSeg->setMinimumWidth(anchuraDeTextos(*lbSeg, {"(retenida)", "(deshabi.)", "32767"}));
    ckInicio = nombrado(new QCheckBox(QStringLiteral("Ejec. al i&nicio"), marco), "ckInicio");
    ckInicio->setToolTip(QStringLiteral("Ejecutar al iniciar la sesión"));
    ckMini = nombrado(new QCheckBox(QStringLiteral("Ejec. &minimizado"), marco), "ckMini");
    ckMini->setToolTip(QStringLiteral("Empezar con la ventana oculta"));
    fila->addWidget(lbAuto);
    fila->addWidget(lbSeg);
    fila->addStretch(1);
    fila->addWidget(ckInicio);
    fila->addWidget(ckMini);
    return marco;
}

QWidget* ControlesDescarga::crearBotones() {
    auto* marco = new QWidget(&ventana_);
    auto* fila = new QHBoxLayout(marco);
    fila->setContentsMargins(0, 2, 0, 0);
    fila->setSpacing(kSeparacion);
    const auto crear = [&](const char* nombre, const char* texto) {
        auto* boton = nombrado(new QPushButton(QString::fromUtf8(texto), marco), nombre);
        boton->setAutoDefault(true);
        fila->addWidget(boton, 1);
        return boton;
    };
    cmdCerr = crear("cmdCerr", "&Cerrar");
    cmdMini = crear("cmdMini", "&Ocultar ventana");
    cmdDesc = crear("cmdDesc", "&Descargar ahora");
    cmdAbor = crear("cmdAbor", "&Interrumpir");
    cmdLimp = crear("cmdLimp", "&Limpiar");
    return marco;
}

QAbstractButton& ControlesDescarga::boton(Boton cual) const {
    switch (cual) {
        case Boton::kCerr:
            return *cmdCerr;
        case Boton::kMini:
            return *cmdMini;
        case Boton::kDesc:
            return *cmdDesc;
        case Boton::kAbor:
            return *cmdAbor;
        case Boton::kLimp:
            break;
    }
    return *cmdLimp;
}

}  // namespace bn
