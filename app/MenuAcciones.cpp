// SPDX-License-Identifier: MIT
#include "app/MenuAcciones.h"

namespace bn {

MenuAcciones::MenuAcciones(QWidget& ventana) : MnAcciones(new QMenu(&ventana)) {
    MnAcciones->setObjectName(QStringLiteral("MnAcciones"));
    mnVerEllo = entrada("mnVerEllo", "&Ver ventana");
    mnDescarga = entrada("mnDescarga", "&Descargar ahora");
    mnPend = entrada("mnPend", "&Guardar las pendientes ahora");
    mnDescartar = entrada("mnDescartar", "D&escartar las pendientes…");
    MnAcciones->addSeparator();
    MnComunica = entrada("MnComunica", "C&omunicación…");
    mnExcel = entrada("mnExcel", "&Hoja Excel…");
    MnTexto = entrada("MnTexto", "&Texto plano…");
    MnAcciones->addSeparator();
    mnCerrar = entrada("mnCerrar", "&Cerrar");
    MnAcciones->setDefaultAction(mnVerEllo);
}

QAction* MenuAcciones::entrada(const char* nombre, const char* texto) {
    QAction* accion = MnAcciones->addAction(QString::fromUtf8(texto));
    accion->setObjectName(QLatin1String(nombre));
    return accion;
}

}  // namespace bn
