// SPDX-License-Identifier: MIT
#include <algorithm>
#include <utility>

#include "destinations/xls/Bytes.h"
#include "destinations/xls/Libro.h"
#include "destinations/xls/TextoBiff.h"

namespace bn::xls {
namespace {

constexpr uint16_t kBiff8 = 0x0600;
constexpr uint16_t kTipoGlobales = 0x0005;
constexpr uint16_t kTipoHoja = 0x0010;

constexpr const char* kAntiguo =
    "El libro es de una versión anterior a Excel 97 y no se puede abrir; guárdelo antes como libro "
    "de Excel 97-2003.";
constexpr const char* kCifrado =
    "El libro está cifrado o protegido con contraseña y no se puede abrir.";

// Says what a file is that is no compound file, as far as its first bytes tell.
[[noreturn]] void rechazarFichero(std::string_view fichero) {
    if (fichero.empty()) rechazar("El fichero está vacío.");
    if (fichero.starts_with("PK")) {
        rechazar(
            "El fichero es un libro XLSX, aunque se llame .xls; guárdelo antes como libro de "
            "Excel 97-2003.");
    }
    const size_t letra = fichero.substr(0, 512).find_first_not_of(" \t\r\n\xEF\xBB\xBF");
    if (letra != std::string_view::npos && fichero[letra] == '<') {
        rechazar("El fichero es una página HTML o XML, no un libro de Excel (.xls).");
    }
    const bool flujoSuelto = fichero.size() > 2 && fichero[0] == 9 && (fichero[1] & 0xF1) == 0;
    if (flujoSuelto) rechazar(kAntiguo);
    rechazar("El fichero no es un libro de Excel (.xls).");
}

}  // namespace

std::shared_ptr<Libro> Libro::abrir(std::string_view fichero, int anio) {
    if (!Compuesto::loParece(fichero)) rechazarFichero(fichero);
    Compuesto compuesto = Compuesto::abrir(fichero);
    const auto numero = compuesto.buscar("Workbook");
    if (!numero) {
        if (compuesto.buscar("EncryptedPackage")) rechazar(kCifrado);
        if (compuesto.buscar("Book")) rechazar(kAntiguo);
        rechazar("El fichero no contiene ningún libro de Excel.");
    }
    std::string flujo = compuesto.flujo(*numero);
    compuesto.flujo(*numero, {});
    return std::shared_ptr<Libro>(new Libro(std::move(compuesto), *numero, std::move(flujo), anio));
}

Libro::Libro(Compuesto compuesto, size_t numeroFlujo, std::string flujo, int anio)
    : compuesto_(std::move(compuesto)),
      numeroFlujo_(numeroFlujo),
      flujo_(std::move(flujo)),
      anio_(anio) {
    // What comes behind an encryption record is no records at all, so it is looked for first.
    const Vista vista(flujo_);
    if (vista.size() < 8 || vista.u16(0) != id::kBof) danado("no empieza como un libro");
    if (vista.u16(4) != kBiff8) rechazar(kAntiguo);
    LectorRegistros lector(flujo_);
    while (const auto registro = lector.siguiente()) {
        if (registro->id == id::kFilePass) rechazar(kCifrado);
        if (registro->id == id::kEof) break;
    }
    const std::vector<Subflujo> bordes = subflujos(flujo_);
    if (bordes.empty() || bordes[0].tipo != kTipoGlobales) danado("no empieza como un libro");
    leerGlobales(bordes[0]);
    compartido_ = compuesto_.buscar("Revision Log") || compuesto_.buscar("User Names");
    formatos_ = std::make_unique<Formatos>(globales_);
    externos_ = std::make_unique<LibrosExternos>(globales_);
    nombres_ = std::make_unique<Nombres>(globales_);
    leerHojas(bordes);
}

// The string table is taken out of the list; its first record stays there, empty, to hold its
// place.
void Libro::leerGlobales(const Subflujo& bordes) {
    LectorRegistros lector(std::string_view(flujo_).substr(0, bordes.fin), bordes.inicio);
    std::vector<std::string> trozos;
    bool enTabla = false;
    while (const auto registro = lector.siguiente()) {
        enTabla = registro->id == id::kSst || (enTabla && registro->id == id::kContinue);
        if (!enTabla) {
            globales_.push_back({registro->id, std::string(registro->datos)});
            continue;
        }
        if (registro->id == id::kSst) {
            if (!trozos.empty()) danado("tiene dos tablas de textos");
            posicionSst_ = registro->posicion;
            globales_.push_back({id::kSst, {}});
        }
        trozos.emplace_back(registro->datos);
    }
    cadenas_ =
        trozos.empty() ? std::make_unique<Cadenas>() : std::make_unique<Cadenas>(std::move(trozos));
}

void Libro::leerHojas(const std::vector<Subflujo>& bordes) {
    for (const Registro& registro : globales_) {
        if (registro.id == id::kBoundSheet) leerHoja(registro, bordes);
    }
    if (hojas_.empty()) danado("no tiene hojas");
    for (size_t i = 1; i < bordes.size(); ++i) {
        const bool citado = std::any_of(hojas_.begin(), hojas_.end(), [&](const auto& hoja) {
            return hoja->posicion == bordes[i].inicio;
        });
        if (citado) continue;
        sinReferencia_.push_back(
            std::string_view(flujo_).substr(bordes[i].inicio, bordes[i].fin - bordes[i].inicio));
    }
}

void Libro::leerHoja(const Registro& boundSheet, const std::vector<Subflujo>& bordes) {
    const Vista datos(boundSheet.datos);
    const size_t posicion = datos.u32(0);
    const auto lugar = std::find_if(bordes.begin() + 1, bordes.end(), [&](const Subflujo& borde) {
        return borde.inicio == posicion;
    });
    const bool repetida = std::any_of(hojas_.begin(), hojas_.end(),
                                      [&](const auto& otra) { return otra->posicion == posicion; });
    if (lugar == bordes.end() || repetida) danado("una hoja no está donde dice");
    auto hoja = std::make_shared<Hoja>();
    hoja->libro = this;
    hoja->nombre = leerTexto(boundSheet.datos, 7, datos.u8(6));
    hoja->oculta = (datos.u8(4) & 3) != 0;
    hoja->posicion = posicion;
    hoja->original = std::string_view(flujo_).substr(posicion, lugar->fin - posicion);
    if (datos.u8(5) == 0 && lugar->tipo == kTipoHoja) {
        hoja->celdas = std::make_unique<HojaDeCeldas>(hoja->original, *formatos_, *cadenas_);
    }
    hojas_.push_back(std::move(hoja));
}

}  // namespace bn::xls
