// SPDX-License-Identifier: MIT
#include "destinations/xls/LibroNuevo.h"

#include <initializer_list>

#include "destinations/xls/Bytes.h"
#include "destinations/xls/Registros.h"
#include "destinations/xls/TextoBiff.h"

namespace bn::xls {
namespace {

constexpr uint16_t kGlobales = 0x0005;
constexpr uint16_t kHoja = 0x0010;

void ponerPalabras(std::string& salida, uint16_t numero, std::initializer_list<uint32_t> palabras) {
    std::string datos;
    for (const uint32_t palabra : palabras) poner16(datos, palabra);
    ponerRegistro(salida, numero, datos);
}

void ponerBof(std::string& salida, uint16_t tipo) {
    // Version, kind, the build of the application whose format this is, what it needs to be read.
    ponerPalabras(salida, id::kBof, {0x0600, tipo, 0x18AF, 0x07CD, 0x80C9, 0, 0x0106, 0});
}

void ponerFuente(std::string& salida) {
    std::string datos;
    for (const uint32_t palabra : {200U, 0U, 0x7FFFU, 400U, 0U, 0U, 0U}) poner16(datos, palabra);
    const TextoBiff nombre = aBiff("Arial");
    poner8(datos, nombre.unidades);
    ponerTexto(datos, nombre);
    ponerRegistro(salida, id::kFont, datos);
}

// Font, number format, protection and kind, alignment, indent, which attributes are its own.
void ponerXf(std::string& salida, uint32_t fuente, uint32_t clase, uint32_t usados) {
    ponerPalabras(salida, id::kXf, {fuente, 0, clase, 0x0020, usados << 8, 0, 0, 0, 0, 0x20C0});
}

void ponerFormatos(std::string& salida) {
    constexpr uint32_t kEstilo = 0xFFF5;
    constexpr uint32_t kDeCelda = 0x0001;
    constexpr int kFuentes = 4;
    constexpr int kEstilosDeFila = 10;
    for (int i = 0; i < kFuentes; ++i) ponerFuente(salida);
    ponerXf(salida, 0, kEstilo, 0);
    for (const uint32_t fuente : {1U, 1U, 2U, 2U}) ponerXf(salida, fuente, kEstilo, 0xF4);
    for (int i = 0; i < kEstilosDeFila; ++i) ponerXf(salida, 0, kEstilo, 0xF4);
    ponerXf(salida, 0, kDeCelda, 0);
    ponerPalabras(salida, 0x0293, {0x8000, 0xFF00});  // STYLE: "Normal", built in
}

void ponerUsuario(std::string& salida) {
    std::string datos;
    const TextoBiff nombre = aBiff("bnDX5");
    poner16(datos, nombre.unidades);
    ponerTexto(datos, nombre);
    datos.resize(112, ' ');
    ponerRegistro(salida, 0x005C, datos);  // WRITEACCESS
}

void ponerAjustesDeCalculo(std::string& salida) {
    ponerPalabras(salida, 0x000D, {1});    // CALCMODE: automatic
    ponerPalabras(salida, 0x000C, {100});  // CALCCOUNT
    ponerPalabras(salida, 0x000F, {1});    // REFMODE: A1
    ponerPalabras(salida, 0x0011, {0});    // ITERATION
    std::string delta;
    ponerDoble(delta, 0.001);
    ponerRegistro(salida, 0x0010, delta);  // DELTA
    ponerPalabras(salida, 0x005F, {1});    // SAVERECALC
}

void ponerPagina(std::string& salida) {
    ponerPalabras(salida, 0x002A, {0});           // PRINTHEADERS
    ponerPalabras(salida, 0x002B, {0});           // PRINTGRIDLINES
    ponerPalabras(salida, 0x0082, {1});           // GRIDSET
    ponerPalabras(salida, 0x0080, {0, 0, 0, 0});  // GUTS
    ponerPalabras(salida, id::kDefaultRowHeight, {0, 255});
    ponerPalabras(salida, id::kWsBool, {0x04C1});
    ponerRegistro(salida, 0x0014, {});   // HEADER
    ponerRegistro(salida, 0x0015, {});   // FOOTER
    ponerPalabras(salida, 0x0083, {0});  // HCENTER
    ponerPalabras(salida, 0x0084, {0});  // VCENTER
    std::string pagina;
    for (const uint32_t palabra : {9U, 100U, 1U, 1U, 1U, 4U, 600U, 600U}) poner16(pagina, palabra);
    ponerDoble(pagina, 0.5);
    ponerDoble(pagina, 0.5);
    poner16(pagina, 1);
    ponerRegistro(salida, 0x00A1, pagina);  // SETUP: A4
}

}  // namespace

std::string subflujoDeHojaNueva() {
    std::string salida;
    ponerBof(salida, kHoja);
    ponerAjustesDeCalculo(salida);
    ponerPagina(salida);
    ponerPalabras(salida, id::kDefColWidth, {8});
    ponerPalabras(salida, id::kDimensions, {0, 0, 0, 0, 0, 0, 0});
    ponerPalabras(salida, id::kWindow2, {0x00B6, 0, 0, 64, 0, 0, 0, 0, 0});
    std::string seleccion;
    poner8(seleccion, 3);
    for (const uint32_t palabra : {0U, 0U, 0U, 1U, 0U, 0U}) poner16(seleccion, palabra);
    poner16(seleccion, 0);
    ponerRegistro(salida, 0x001D, seleccion);
    ponerRegistro(salida, id::kEof, {});
    return salida;
}

std::string flujoDeLibroNuevo(const std::string& hoja) {
    std::string salida;
    ponerBof(salida, kGlobales);
    ponerPalabras(salida, 0x00E1, {0x04B0});  // INTERFACEHDR
    ponerPalabras(salida, 0x00C1, {0});       // MMS
    ponerRegistro(salida, 0x00E2, {});        // INTERFACEEND
    ponerUsuario(salida);
    ponerPalabras(salida, 0x0042, {0x04B0});  // CODEPAGE: UTF-16
    ponerPalabras(salida, 0x0161, {0});       // DSF
    ponerPalabras(salida, id::kTabId, {1});
    ponerPalabras(salida, 0x009C, {14});  // FNGROUPCOUNT
    constexpr uint16_t kProtecciones[] = {0x0019, 0x0012, 0x0013, 0x01AF, 0x01BC};
    for (const uint16_t proteccion : kProtecciones) {
        ponerPalabras(salida, proteccion, {0});
    }
    ponerPalabras(salida, id::kWindow1, {0x0168, 0x010E, 0x3A5C, 0x23BE, 0x38, 0, 0, 1, 600});
    ponerPalabras(salida, 0x0040, {0});  // BACKUP
    ponerPalabras(salida, 0x008D, {0});  // HIDEOBJ
    ponerPalabras(salida, id::kDateMode, {0});
    ponerPalabras(salida, 0x000E, {1});  // PRECISION
    ponerPalabras(salida, 0x01B7, {0});  // REFRESHALL
    ponerPalabras(salida, 0x00DA, {0});  // BOOKBOOL
    ponerFormatos(salida);
    ponerPalabras(salida, 0x0160, {0});  // USESELFS
    const TextoBiff nombre = aBiff(hoja);
    std::string referencia;
    poner32(referencia, 0);
    poner16(referencia, 0);
    poner8(referencia, nombre.unidades);
    ponerTexto(referencia, nombre);
    const size_t posicion = salida.size() + 4;
    ponerRegistro(salida, id::kBoundSheet, referencia);
    ponerPalabras(salida, id::kCountry, {34, 34});
    ponerRegistro(salida, id::kEof, {});
    cambiar32(salida, posicion, static_cast<uint32_t>(salida.size()));
    std::string primera = subflujoDeHojaNueva();
    const size_t ventana = primera.rfind(std::string("\x3E\x02\x12\x00", 4));
    cambiar16(primera, ventana + 4, 0x06B6);  // WINDOW2: this sheet is selected and shown
    return salida + primera;
}

}  // namespace bn::xls
