// SPDX-License-Identifier: MIT
#include "app/TextosDeQt.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace bn {

namespace {

struct Texto {
    std::string_view original;
    const char* espanol;
};

constexpr std::array kTextos = {
    // fields
    Texto{"&Undo", "&Deshacer"},
    Texto{"&Redo", "&Rehacer"},
    Texto{"Cu&t", "Cor&tar"},
    Texto{"&Copy", "&Copiar"},
    Texto{"&Paste", "&Pegar"},
    Texto{"Delete", "Borrar"},
    Texto{"Select All", "Seleccionar todo"},
    // standard buttons
    Texto{"OK", "Aceptar"},
    Texto{"&OK", "&Aceptar"},
    Texto{"Open", "Abrir"},
    Texto{"&Open", "&Abrir"},
    Texto{"Save", "Guardar"},
    Texto{"&Save", "&Guardar"},
    Texto{"Cancel", "Cancelar"},
    Texto{"&Cancel", "&Cancelar"},
    Texto{"Close", "Cerrar"},
    Texto{"&Close", "&Cerrar"},
    Texto{"&Yes", "&Sí"},
    Texto{"&No", "&No"},
    // file dialogs
    Texto{"Find Directory", "Buscar carpeta"},
    Texto{"Save As", "Guardar como"},
    Texto{"Directory:", "Carpeta:"},
    Texto{"File &name:", "&Nombre:"},
    Texto{"&Choose", "&Elegir"},
    Texto{"Look in:", "Buscar en:"},
    Texto{"Files of type:", "Tipo:"},
    Texto{"Back", "Atrás"},
    Texto{"Go back", "Volver"},
    Texto{"Forward", "Adelante"},
    Texto{"Go forward", "Avanzar"},
    Texto{"Parent Directory", "Carpeta superior"},
    Texto{"Go to the parent directory", "Ir a la carpeta superior"},
    Texto{"Create New Folder", "Crear carpeta"},
    Texto{"Create a New Folder", "Crear una carpeta"},
    Texto{"&New Folder", "Carpeta &nueva"},
    Texto{"New Folder", "Carpeta nueva"},
    Texto{"List View", "Lista"},
    Texto{"Change to list view mode", "Ver como lista"},
    Texto{"Detail View", "Detalles"},
    Texto{"Change to detail view mode", "Ver con detalles"},
    Texto{"Sidebar", "Lugares"},
    Texto{"List of places and bookmarks", "Lugares y marcadores"},
    Texto{"Files", "Ficheros"},
    Texto{"Name", "Nombre"},
    Texto{"Size", "Tamaño"},
    Texto{"Type", "Tipo"},
    Texto{"Kind", "Clase"},
    Texto{"Date Modified", "Modificado"},
    Texto{"Computer", "Equipo"},
    Texto{"My Computer", "Mi equipo"},
    Texto{"Drive", "Unidad"},
    Texto{"File", "Fichero"},
    Texto{"Folder", "Carpeta"},
    Texto{"Recent Places", "Lugares recientes"},
    Texto{"&Rename", "&Cambiar nombre"},
    Texto{"&Delete", "&Borrar"},
    Texto{"Show &hidden files", "Mostrar los &ocultos"},
    Texto{"All Files (*)", "Todos los ficheros (*)"},
    Texto{"Remove", "Quitar"},
    Texto{"%1 already exists.\nDo you want to replace it?", "%1 ya existe.\n¿Quiere sustituirlo?"},
    Texto{"%1\nFile not found.\nPlease verify the correct file name was given.",
          "%1\nNo se encuentra el fichero.\nCompruebe que el nombre es correcto."},
    Texto{"%1\nDirectory not found.\nPlease verify the correct directory name was given.",
          "%1\nNo se encuentra la carpeta.\nCompruebe que el nombre es correcto."},
    Texto{"'%1' is write protected.\nDo you want to delete it anyway?",
          "'%1' está protegido contra escritura.\n¿Quiere borrarlo igualmente?"},
    Texto{"Are you sure you want to delete '%1'?", "¿Seguro que quiere borrar '%1'?"},
    Texto{"Could not delete directory.", "No se ha podido borrar la carpeta."},
};

}  // namespace

QString TextosDeQt::translate(const char* /*contexto*/, const char* original,
                              const char* /*aclaracion*/, int /*numero*/) const {
    const auto* texto = std::find_if(kTextos.begin(), kTextos.end(), [original](const Texto& uno) {
        return uno.original == original;
    });
    return texto == kTextos.end() ? QString() : QString::fromUtf8(texto->espanol);
}

}  // namespace bn
