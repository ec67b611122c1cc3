// SPDX-License-Identifier: MIT
#include "link/EdiCom.h"

#include <QHBoxLayout>
#include <QToolButton>
#include <exception>

#include "link/CanalesPresentes.h"
#include "ventanas/Iconos.h"
#include "ventanas/TeclasNumericas.h"

namespace bn {

namespace {

constexpr int kMargen = 14;
constexpr int kSeparacion = 10;
constexpr int kAnchuraDeNumero = 64;
constexpr int kSeparacionDeColumnas = 16;

}  // namespace

EdiCom::EdiCom(Plataforma& plataforma, QWidget* padre)
    : DialogoPlano(plataforma, "EdiCom", QStringLiteral("Comunicación con el indicador"), padre),
      puertos([&plataforma] { return canalesPresentes(plataforma); }),
      grupo_(nuevoGrupo()),
      txCan_(nuevaCaja("txCan", &FormularioCom::txCan, 5)),
      txParms_(nuevaCaja("txParms", &FormularioCom::txParms, 40)),
      txCI_(nuevaCaja("txCI", &FormularioCom::txCI, 5)),
      txCF_(nuevaCaja("txCF", &FormularioCom::txCF, 5)),
      txPet_(nuevaCaja("txPet", &FormularioCom::txPet, 5)),
      txTmO_(nuevaCaja("txTmO", &FormularioCom::txTmO, 6)),
      txRet_(nuevaCaja("txRet", &FormularioCom::txRet, 5)),
      txAutom_(nuevaCaja("txAutom", &FormularioCom::txAutom, 6)) {
    auto* rejilla = new QGridLayout(grupo_);
    rejilla->setContentsMargins(kMargen, 12, kMargen, kMargen);
    rejilla->setHorizontalSpacing(kSeparacion);
    rejilla->setVerticalSpacing(kSeparacion);
    auto* titulo = new QLabel(QStringLiteral("Detalles de la comunicación"), grupo_);
    titulo->setObjectName(QStringLiteral("lbGrupo"));
    rejilla->addWidget(titulo, 0, 0, 1, 6);
    crearCampos(*rejilla);
    crearAutomatica(*rejilla);
    for (auto* caja : {txCan_, txTmO_, txRet_}) new TeclasNumericas(*caja);
    mostrar();
}

QLineEdit* EdiCom::nuevaCaja(const char* nombre, std::string FormularioCom::*campo, int maximo) {
    auto* caja = new QLineEdit(grupo_);
    caja->setObjectName(QLatin1String(nombre));
    caja->setMaxLength(maximo);
    caja->setFixedWidth(kAnchuraDeNumero);
    connect(caja, &QLineEdit::textChanged, this,
            [this, campo](const QString& texto) { formulario_.*campo = texto.toStdString(); });
    return caja;
}

/// The channel, and beside it the list of the devices that are there.
QWidget* EdiCom::crearCanal() {
    auto* marco = new QWidget(grupo_);
    auto* fila = new QHBoxLayout(marco);
    fila->setContentsMargins(0, 0, 0, 0);
    fila->setSpacing(6);
    auto* boton = new QToolButton(marco);
    boton->setObjectName(QStringLiteral("cmdPuertos"));
    boton->setIcon(icono(Icono::kPuerto));
    boton->setFocusPolicy(Qt::StrongFocus);
    boton->setAccessibleName(QStringLiteral("Puertos de este equipo"));
    boton->setToolTip(QStringLiteral("Puertos de este equipo"));
    menuPuertos_ = new QMenu(boton);
    menuPuertos_->setObjectName(QStringLiteral("mnPuertos"));
    connect(menuPuertos_, &QMenu::aboutToShow, this, [this] { llenarMenu(); });
    boton->setMenu(menuPuertos_);
    boton->setPopupMode(QToolButton::InstantPopup);
    fila->addWidget(txCan_);
    fila->addWidget(boton);
    return marco;
}

void EdiCom::crearCampos(QGridLayout& rejilla) {
    const auto poner = [&](const char* texto, QLineEdit* caja, int fila, int columna) {
        auto* etiqueta = rotulo(QString::fromUtf8(texto), caja, grupo_);
        if (columna > 0) etiqueta->setContentsMargins(kSeparacionDeColumnas, 0, 0, 0);
        rejilla.addWidget(etiqueta, fila, columna);
        rejilla.addWidget(caja, fila, columna + 1, Qt::AlignLeft);
    };
    txCan_->setAccessibleName(QStringLiteral("Canal"));
    txParms_->setAccessibleName(QStringLiteral("Parámetros"));
    rejilla.addWidget(rotulo(QStringLiteral("Ca&nal, Parámetros"), txCan_, grupo_), 1, 0);
    rejilla.addWidget(crearCanal(), 1, 1, Qt::AlignLeft);
    txParms_->setMinimumWidth(kAnchuraDeNumero);
    txParms_->setMaximumWidth(QWIDGETSIZE_MAX);
    auto* fila = new QHBoxLayout;
    fila->setContentsMargins(kSeparacionDeColumnas, 0, 0, 0);
    fila->addWidget(txParms_);
    rejilla.addLayout(fila, 1, 2, 1, 4);

    txCI_->setAccessibleName(QStringLiteral("Carácter inicial"));
    txCF_->setAccessibleName(QStringLiteral("Carácter final"));
    txPet_->setAccessibleName(QStringLiteral("Carácter de petición"));
    for (auto* caja : {txCI_, txCF_, txPet_}) {
        caja->setToolTip(caja->accessibleName() +
                         QStringLiteral(": su código, de 0 a 255, o el propio carácter"));
    }
    poner("C&I", txCI_, 2, 0);
    poner("C&F", txCF_, 2, 2);
    poner("P&et", txPet_, 2, 4);
    txTmO_->setToolTip(QStringLiteral("Milisegundos de espera, de 1 a 32000"));
    txRet_->setToolTip(QStringLiteral("Número máximo de intentos, de 1 a 32"));
    poner("&TimeOut", txTmO_, 3, 0);
    poner("&Retrys", txRet_, 3, 2);
}

void EdiCom::crearAutomatica(QGridLayout& rejilla) {
    ckAutom_ = new QCheckBox(QStringLiteral("&Descarga Automática"), grupo_);
    ckAutom_->setObjectName(QStringLiteral("ckAutom"));
    frAutom_ = new QFrame(grupo_);
    frAutom_->setObjectName(QStringLiteral("frAutom"));
    QSizePolicy politica = frAutom_->sizePolicy();
    politica.setRetainSizeWhenHidden(true);
    frAutom_->setSizePolicy(politica);
    auto* fila = new QHBoxLayout(frAutom_);
    fila->setContentsMargins(0, 0, 0, 0);
    fila->setSpacing(kSeparacion);
    txAutom_->setAccessibleName(QStringLiteral("Segundos entre descargas automáticas"));
    fila->addWidget(new QLabel(QStringLiteral("cada"), frAutom_));
    fila->addWidget(txAutom_);
    fila->addWidget(rotulo(QStringLiteral("&seg."), txAutom_, frAutom_));
    fila->addStretch(1);
    rejilla.addWidget(ckAutom_, 4, 0, 1, 2);
    rejilla.addWidget(frAutom_, 4, 2, 1, 4);
    connect(ckAutom_, &QCheckBox::toggled, this, [this](bool marcado) {
        formulario_.ckAutom = marcado;
        frAutom_->setVisible(marcado);
    });
    // They were made in the order of the fields; the user goes through them in that of the dialog.
    setTabOrder(txCan_, findChild<QToolButton*>(QStringLiteral("cmdPuertos")));
    setTabOrder(findChild<QToolButton*>(QStringLiteral("cmdPuertos")), txParms_);
    setTabOrder(txParms_, txCI_);
    setTabOrder(txRet_, ckAutom_);
    setTabOrder(ckAutom_, txAutom_);
}

/// A device that no channel opens is shown all the same, so that it can be told from the others.
void EdiCom::llenarMenu() {
    menuPuertos_->clear();
    try {
        for (const auto& puerto : puertos()) {
            QString texto = QString::fromStdString(puerto.dispositivo + "   " + puerto.descripcion);
            texto.replace(QLatin1Char('&'), QLatin1String("&&"));
            const QString canal = QString::number(puerto.canal);
            auto* entrada = menuPuertos_->addAction(
                texto + (puerto.canal > 0 ? QStringLiteral("   (canal %1)").arg(canal)
                                          : QStringLiteral("   (sin canal)")));
            entrada->setEnabled(puerto.canal > 0);
            connect(entrada, &QAction::triggered, this, [this, canal] { txCan_->setText(canal); });
        }
    } catch (const std::exception&) {
        // The list only helps to choose; what could be found is in it.
    }
    if (menuPuertos_->isEmpty()) {
        menuPuertos_->addAction(QStringLiteral("No se ha encontrado ningún puerto serie"))
            ->setEnabled(false);
    }
}

std::string EdiCom::validar() const { return formulario_.validar(); }

void EdiCom::mostrar() {
    const FormularioCom cargado = formulario_;  // each text shown comes back as an edit
    const auto poner = [](QLineEdit* caja, const std::string& texto) {
        caja->setText(QString::fromStdString(texto));
    };
    poner(txCan_, cargado.txCan);
    poner(txParms_, cargado.txParms);
    poner(txCI_, cargado.txCI);
    poner(txCF_, cargado.txCF);
    poner(txPet_, cargado.txPet);
    poner(txTmO_, cargado.txTmO);
    poner(txRet_, cargado.txRet);
    poner(txAutom_, cargado.txAutom);
    ckAutom_->setChecked(cargado.ckAutom);
    frAutom_->setVisible(cargado.ckAutom);
    txCan_->setFocus();
    txCan_->selectAll();
}

bool EdiCom::Abrir(Setup& cfg) {
    formulario_.cargar(cfg);
    mostrar();
    if (!preguntar()) return false;
    guardar(cfg);
    return true;
}

void EdiCom::guardar(Setup& cfg) {
    try {
        formulario_.guardar(cfg);
    } catch (const std::exception& error) {
        plataforma().mensajeCritico(error.what());  // the period; all the rest has been stored
    }
}

}  // namespace bn
