// SPDX-License-Identifier: MIT
#include "ventanas/Estilo.h"

namespace bn::estilo {

namespace {

constexpr QColor kTinta{29, 39, 51};
constexpr QColor kPapel{255, 255, 255};
constexpr QColor kFondo{246, 248, 250};
constexpr QColor kAcento{11, 92, 173};
constexpr QColor kTenue{150, 158, 167};

}  // namespace

QPalette paleta() {
    QPalette paleta;
    paleta.setColor(QPalette::Window, kFondo);
    paleta.setColor(QPalette::WindowText, kTinta);
    paleta.setColor(QPalette::Base, kPapel);
    paleta.setColor(QPalette::AlternateBase, kFondo);
    paleta.setColor(QPalette::Text, kTinta);
    paleta.setColor(QPalette::Button, kPapel);
    paleta.setColor(QPalette::ButtonText, kTinta);
    paleta.setColor(QPalette::Highlight, kAcento);
    paleta.setColor(QPalette::HighlightedText, kPapel);
    paleta.setColor(QPalette::PlaceholderText, kTenue);
    for (const auto papel : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        paleta.setColor(QPalette::Disabled, papel, kTenue);
    }
    return paleta;
}

QString hoja() {
    return QStringLiteral(R"(
QFrame#lineaDeBorde { background: #5d7288; border: none; }
QFrame#frCabecera { background: #1f3a5f; border: none; }
QFrame#frDestinos, QFrame#frFases, QFrame#frAuto, QFrame#frGrupo {
    background: #ffffff; border: 1px solid #d3dae1; border-radius: 4px; }
QFrame#frResul { background: #f6f8fa; border: none; border-radius: 4px; }
QLabel#lbTitulo { color: #ffffff; }
QLabel#lbGrupo { font-weight: bold; }
QDialog QLabel#lbAviso { color: #6e7882; }
QPushButton, QToolButton {
    background: #ffffff; border: 1px solid #b4bfca; border-radius: 4px; padding: 5px 12px; }
QToolButton { padding: 3px; }
QPushButton:hover, QToolButton:hover { background: #eaf2fb; border-color: #0b5cad; }
QPushButton:pressed, QToolButton:pressed { background: #d5e6f7; }
QPushButton:focus, QToolButton:focus { border: 2px solid #0b5cad; padding: 4px 11px; }
QToolButton:focus { padding: 2px; }
QPushButton:disabled, QToolButton:disabled { background: #f1f3f5; border-color: #dde2e7; }
QPushButton#cmdDesc, QPushButton#Acepto { background: #0b5cad; border-color: #0b5cad; color: #ffffff; }
QPushButton#cmdDesc:hover, QPushButton#Acepto:hover { background: #0d6cca; }
QPushButton#cmdDesc:pressed, QPushButton#Acepto:pressed { background: #094b8d; }
QPushButton#cmdDesc:focus, QPushButton#Acepto:focus { border: 2px solid #06294d; }
QLineEdit, QComboBox {
    background: #ffffff; border: 1px solid #b4bfca; border-radius: 3px; padding: 3px 6px; }
QLineEdit:focus, QComboBox:focus { border: 2px solid #0b5cad; padding: 2px 5px; }
QLineEdit:disabled, QComboBox:disabled { background: #f1f3f5; }
QCheckBox { spacing: 7px; padding: 2px; border: 1px solid transparent; border-radius: 3px; }
QCheckBox:focus { border-color: #0b5cad; }
QComboBox::drop-down { border: none; width: 24px; }
QComboBox::down-arrow { image: url(:/flecha.png); width: 10px; height: 10px; }
QComboBox QAbstractItemView { background: #ffffff; border: 1px solid #b4bfca; outline: 0;
    selection-background-color: #d5e6f7; selection-color: #1d2733; }
QTableWidget { background: #ffffff; border: 1px solid #b4bfca; padding: 1px; outline: 0;
    gridline-color: #e3e8ed; selection-background-color: #d5e6f7; selection-color: #1d2733; }
QTableWidget:focus { border: 2px solid #0b5cad; padding: 0; }
QTableWidget::item:selected { background: #d5e6f7; color: #1d2733; }
QScrollArea#rolloVista { background: #ffffff; border: 1px solid #b4bfca; }
QLineEdit#txEd { border: 2px solid #0b5cad; border-radius: 0; padding: 0 1px; }
QToolButton::menu-indicator { image: none; }
QHeaderView::section { background: #eef2f6; border: none; border-right: 1px solid #d3dae1;
    border-bottom: 1px solid #b4bfca; padding: 4px 6px; }
QMenu { background: #ffffff; border: 1px solid #b4bfca; padding: 4px 0; }
QMenu::item { padding: 5px 24px; }
QMenu::item:selected { background: #d5e6f7; color: #1d2733; }
QMenu::item:disabled { color: #969ea7; }
QMenu::separator { height: 1px; background: #e3e8ed; margin: 4px 8px; }
)");
}

}  // namespace bn::estilo
