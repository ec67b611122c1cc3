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
    "El libro es de una versión anterior a Excel 97; guárdelo antes como libro de Excel 97-2003.";
constexpr const char* kCifrado =
    "El libro está protegido con contraseña; quítesela con su programa y vuelva a guardarlo.";
constexpr const char* kOdf =
    "El fichero es un libro ODF (.ods), aunque se llame .xls; guárdelo antes como libro de Excel "
    "97-2003.";
constexpr const char* kXlsx =
    "El fichero es un libro XLSX, aunque se llame .xls; guárdelo antes como libro de Excel "
    "97-2003.";
constexpr const char* kXml =
    "El fichero es un libro guardado como XML o página web, aunque se llame .xls; guárdelo antes "
    "como libro de Excel 97-2003.";

bool contiene(std::string_view texto, std::string_view parte) {
    return texto.find(parte) != std::string_view::npos;
}

// Says what a file is that is no compound file, as far as its bytes tell.
[[noreturn]] void rechazarFichero(std::string_view fichero) {
    constexpr size_t kComienzo = 4096;
    const std::string_view comienzo = fichero.substr(0, kComienzo);
    if (fichero.empty()) throw ErrorLibroDanado("El fichero está vacío.");
    if (fichero.starts_with("PK")) {
        if (contiene(comienzo, "application/vnd.oasis.opendocument")) rechazar(kOdf);
        if (contiene(fichero, "[Content_Types].xml")) rechazar(kXlsx);
        throw ErrorLibroDanado(
            "El fichero es un archivo comprimido o un libro XLSX cortado, no un libro de Excel "
            "(.xls).");
    }
    const size_t letra = comienzo.find_first_not_of(" \t\r\n\xEF\xBB\xBF");
    if (letra != std::string_view::npos && comienzo[letra] == '<') {
        const bool deExcel = contiene(comienzo, "urn:schemas-microsoft-com:office:");
        if (deExcel || contiene(comienzo, "urn:oasis:names:tc:opendocument")) {
            rechazar(kXml);
        }
        throw ErrorLibroDanado("El fichero es una página HTML o XML, no un libro de Excel (.xls).");
    }
    const bool flujoSuelto = fichero.size() > 2 && fichero[0] == 9 && (fichero[1] & 0xF1) == 0;
    if (flujoSuelto) rechazar(kAntiguo);
    throw ErrorLibroDanado("El fichero no es un libro de Excel (.xls).");
}

// Number of the substream that begins there, in the order of the stream; 0, that of the globals,
// for none.
size_t buscarSubflujo(const std::vector<Subflujo>& bordes, size_t inicio) {
    const auto lugar =
        std::lower_bound(bordes.begin(), bordes.end(), inicio,
                         [](const Subflujo& borde, size_t pos) { return borde.inicio < pos; });
    if (lugar == bordes.end() || lugar->inicio != inicio) return 0;
    return static_cast<size_t>(lugar - bordes.begin());
}

}  // namespace

std::shared_ptr<Libro> Libro::abrir(std::string_view fichero, int anio) {
    if (!Compuesto::loParece(fichero)) rechazarFichero(fichero);
    Compuesto compuesto = Compuesto::abrir(fichero);
    const auto numero = compuesto.buscar("Workbook");
    if (!numero) {
        if (compuesto.buscar("EncryptedPackage")) rechazar(kCifrado);
        if (compuesto.buscar("Book")) rechazar(kAntiguo);
        throw ErrorLibroDanado("El fichero no contiene ningún libro de Excel.");
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
            exigirLargo(*registro);
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
    std::vector<bool> citados(bordes.size(), false);
    size_t filas = 0;
    for (const Registro& registro : globales_) {
        if (registro.id != id::kBoundSheet) continue;
        const size_t lugar = buscarSubflujo(bordes, Vista(registro.datos).u32(0));
        if (lugar == 0 || citados[lugar]) danado("una hoja no está donde dice");
        citados[lugar] = true;
        leerHoja(registro, bordes[lugar]);
        const Hoja& leida = *hojas_.back();
        if (leida.esDeCalculo()) filas += leida.celdas->tabla().filasEnMemoria();
        exigirCabida(filas, flujo_.size());
    }
    if (hojas_.empty()) danado("no tiene hojas");
    for (size_t i = 1; i < bordes.size(); ++i) {
        if (citados[i]) continue;
        sinReferencia_.push_back(
            std::string_view(flujo_).substr(bordes[i].inicio, bordes[i].fin - bordes[i].inicio));
    }
}

void Libro::leerHoja(const Registro& boundSheet, const Subflujo& bordes) {
    const Vista datos(boundSheet.datos);
    auto hoja = std::make_shared<Hoja>();
    hoja->libro = this;
    hoja->nombre = leerTexto(boundSheet.datos, 7, datos.u8(6));
    hoja->oculta = (datos.u8(4) & 3) != 0;
    hoja->posicion = bordes.inicio;
    hoja->original = std::string_view(flujo_).substr(bordes.inicio, bordes.fin - bordes.inicio);
    if (datos.u8(5) == 0 && bordes.tipo == kTipoHoja) {
        hoja->celdas = std::make_unique<HojaDeCeldas>(hoja->original, *formatos_, *cadenas_);
    }
    hojas_.push_back(std::move(hoja));
}

}  // namespace bn::xls
