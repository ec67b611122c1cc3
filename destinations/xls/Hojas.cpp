// SPDX-License-Identifier: MIT
#include "destinations/xls/Hojas.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "destinations/xls/Bytes.h"
#include "destinations/xls/LibroNuevo.h"
#include "destinations/xls/TextoBiff.h"

namespace bn::xls {
namespace {

constexpr uint32_t kMaximoNombre = 31;
constexpr size_t kMaximoHojas = 4096;
constexpr uint16_t kSeleccionada = 0x0600;  // WINDOW2: selected, and shown in front

bool estaTomado(const Libro& libro, const std::string& nombre, const Hoja* salvo) {
    auto& hojas = const_cast<Libro&>(libro).hojas();
    return std::any_of(hojas.begin(), hojas.end(), [&](const auto& hoja) {
        return hoja.get() != salvo && mismoNombre(hoja->nombre, nombre);
    });
}

std::string nombreLibre(const Libro& libro) {
    for (size_t i = 1;; ++i) {
        std::string nombre = "Hoja" + std::to_string(i);
        if (!estaTomado(libro, nombre, nullptr)) return nombre;
    }
}

void exigirNombre(const Hoja& hoja, const std::string& nombre) {
    const uint32_t unidades = aBiff(nombre).unidades;
    const bool permitido = unidades >= 1 && unidades <= kMaximoNombre &&
                           nombre.find_first_of("\\/?*[]:") == std::string::npos &&
                           nombre.find('\0') == std::string::npos && nombre.front() != '\'' &&
                           nombre.back() != '\'';
    if (!permitido) {
        rechazar("\"" + nombre +
                 "\" no puede ser el nombre de una hoja: de 1 a 31 caracteres, sin \\ / ? * [ ] : "
                 "ni apóstrofo al principio o al final.");
    }
    if (estaTomado(*hoja.libro, nombre, &hoja)) {
        rechazar("El libro ya tiene una hoja llamada \"" + nombre + "\".");
    }
}

std::string boundSheet(const std::string& principio, const std::string& nombre) {
    const TextoBiff texto = aBiff(nombre);
    std::string datos = principio.substr(0, 6);
    poner8(datos, texto.unidades);
    ponerTexto(datos, texto);
    return datos;
}

// Index among the globals of the n-th sheet's BOUNDSHEET.
size_t indiceBoundSheet(Libro& libro, size_t lugar) {
    size_t indice = buscarRegistro(libro.globales(), id::kBoundSheet);
    for (size_t i = 0; i < lugar; ++i) {
        indice = buscarRegistro(libro.globales(), id::kBoundSheet, indice + 1);
    }
    if (indice >= libro.globales().size()) rechazar("La hoja ya no está en el libro.");
    return indice;
}

void insertarIdentificador(Libro& libro, size_t lugar) {
    const size_t indice = buscarRegistro(libro.globales(), id::kTabId);
    if (indice == libro.globales().size()) return;
    std::string& datos = libro.globales()[indice].datos;
    uint32_t mayor = 0;
    for (size_t pos = 0; pos + 2 <= datos.size(); pos += 2) {
        mayor = std::max<uint32_t>(mayor, Vista(datos).u16(pos));
    }
    std::string nuevo;
    poner16(nuevo, mayor + 1);
    datos.insert(std::min(datos.size(), 2 * lugar), nuevo);
}

void quitarIdentificador(Libro& libro, size_t lugar) {
    const size_t indice = buscarRegistro(libro.globales(), id::kTabId);
    if (indice == libro.globales().size()) return;
    std::string& datos = libro.globales()[indice].datos;
    if (2 * lugar + 2 <= datos.size()) datos.erase(2 * lugar, 2);
}

void seleccionar(Hoja& hoja) {
    if (!hoja.esDeCalculo()) return;
    Registros& cola = hoja.celdas->cola();
    const size_t lugar = buscarRegistro(cola, id::kWindow2);
    if (lugar == cola.size()) return;
    std::string& datos = cola[lugar].datos;
    const uint32_t opciones = Vista(datos).u16(0);
    if ((opciones & kSeleccionada) == kSeleccionada) return;
    cambiar16(datos, 0, opciones | kSeleccionada);
    hoja.tocada = true;
}

// The window's sheet in front and its first tab follow the sheets to their new places.
void moverVentana(Libro& libro, const std::vector<int32_t>& nuevos) {
    const size_t ultima = libro.hojas().size() - 1;
    const auto seguir = [&](size_t vieja) {
        if (vieja >= nuevos.size()) return size_t{0};
        if (nuevos[vieja] >= 0) return static_cast<size_t>(nuevos[vieja]);
        return std::min(vieja, ultima);
    };
    for (Registro& registro : libro.globales()) {
        if (registro.id != id::kWindow1) continue;
        const Vista datos(registro.datos);
        size_t delante = seguir(datos.u16(10));
        const size_t primera = seguir(datos.u16(12));
        while (libro.hojas()[delante]->oculta) delante = (delante + 1) % libro.hojas().size();
        const bool quitada = nuevos.size() > libro.hojas().size();
        cambiar16(registro.datos, 10, static_cast<uint32_t>(delante));
        cambiar16(registro.datos, 12, static_cast<uint32_t>(primera));
        if (!quitada) continue;
        cambiar16(registro.datos, 14, 1);
        seleccionar(*libro.hojas()[delante]);
    }
}

void renumerar(Libro& libro, const std::vector<int32_t>& nuevos) {
    libro.librosExternos().remapear(nuevos, libro.hojas().size());
    libro.nombres().remapear(nuevos);
    moverVentana(libro, nuevos);
}

}  // namespace

std::shared_ptr<Hoja> anadirHoja(Libro& libro, const Hoja& tras) {
    libro.exigirEstructuraLibre();
    libro.tocar();
    if (libro.hojas().size() >= kMaximoHojas) rechazar("El libro no admite más hojas.");
    const size_t anterior = libro.lugarDe(tras);
    const size_t lugar = anterior + 1;
    std::vector<int32_t> nuevos;
    for (size_t i = 0; i < libro.hojas().size(); ++i) {
        nuevos.push_back(static_cast<int32_t>(i < lugar ? i : i + 1));
    }
    auto hoja = std::make_shared<Hoja>();
    hoja->libro = &libro;
    hoja->nombre = nombreLibre(libro);
    hoja->celdas =
        std::make_unique<HojaDeCeldas>(subflujoDeHojaNueva(), libro.formatos(), libro.cadenas());
    hoja->tocada = true;
    const auto sitio = static_cast<ptrdiff_t>(indiceBoundSheet(libro, anterior) + 1);
    libro.globales().insert(
        libro.globales().begin() + sitio,
        Registro{id::kBoundSheet, boundSheet(std::string(6, '\0'), hoja->nombre)});
    libro.hojas().insert(libro.hojas().begin() + static_cast<ptrdiff_t>(lugar), hoja);
    insertarIdentificador(libro, lugar);
    renumerar(libro, nuevos);
    return hoja;
}

void renombrarHoja(Hoja& hoja, const std::string& nombre) {
    if (hoja.nombre == nombre) return;
    exigirNombre(hoja, nombre);
    Libro& libro = *hoja.libro;
    libro.exigirEstructuraLibre();
    libro.tocar();
    std::string& datos = libro.globales()[indiceBoundSheet(libro, libro.lugarDe(hoja))].datos;
    datos = boundSheet(datos, nombre);
    hoja.nombre = nombre;
}

void borrarHoja(Hoja& hoja) {
    Libro& libro = *hoja.libro;
    libro.exigirEstructuraLibre();
    const size_t lugar = libro.lugarDe(hoja);
    const bool quedaVisible =
        std::any_of(libro.hojas().begin(), libro.hojas().end(),
                    [&](const auto& otra) { return otra.get() != &hoja && !otra->oculta; });
    if (!quedaVisible) rechazar("El libro ha de conservar al menos una hoja visible.");
    libro.tocarContenido();
    std::vector<int32_t> nuevos;
    for (size_t i = 0; i < libro.hojas().size(); ++i) {
        const auto numero = static_cast<int32_t>(i);
        nuevos.push_back(i < lugar ? numero : i == lugar ? -1 : numero - 1);
    }
    const auto sitio = static_cast<ptrdiff_t>(indiceBoundSheet(libro, lugar));
    libro.globales().erase(libro.globales().begin() + sitio);
    libro.hojas().erase(libro.hojas().begin() + static_cast<ptrdiff_t>(lugar));
    quitarIdentificador(libro, lugar);
    renumerar(libro, nuevos);
}

}  // namespace bn::xls
