// SPDX-License-Identifier: MIT
#include "destinations/xls/Libro.h"

#include <algorithm>
#include <utility>

#include "destinations/xls/Bytes.h"
#include "destinations/xls/LibroNuevo.h"

namespace bn::xls {
namespace {

// Shorter streams live in the mini stream; the workbook's never does.
constexpr size_t kMinimoFlujo = 4096;

// Rows that stand far apart cost a few bytes of the file each and a whole block of rows in memory:
// so many are allowed for, beside those that the file's size can fill.
constexpr size_t kFilasDispersas = size_t{16} * kFilas;
constexpr size_t kMinimoPorFila = 8;

// Records that stand behind the string table, among the globals.
bool vaTrasCadenas(uint16_t numero) {
    constexpr uint16_t kDetras[] = {0x0801, 0x080B, 0x0863, 0x0865, 0x0867,
                                    0x0876, 0x088C, 0x0896, 0x0897, 0x089B};
    return numero == id::kEof ||
           std::find(std::begin(kDetras), std::end(kDetras), numero) != std::end(kDetras);
}

}  // namespace

std::shared_ptr<Libro> Libro::nuevo(int anio) {
    std::shared_ptr<Libro> libro(
        new Libro(Compuesto::nuevo(), 1, flujoDeLibroNuevo("Hoja1"), anio));
    libro->tocado_ = true;
    return libro;
}

size_t Libro::lugarDe(const Hoja& hoja) const {
    const auto lugar = std::find_if(hojas_.begin(), hojas_.end(),
                                    [&](const auto& otra) { return otra.get() == &hoja; });
    if (lugar == hojas_.end()) rechazar("La hoja ya no está en el libro.");
    return static_cast<size_t>(lugar - hojas_.begin());
}

bool Libro::fechas1904() const {
    const size_t lugar = buscarRegistro(globales_, id::kDateMode);
    return lugar < globales_.size() && Vista(globales_[lugar].datos).u16(0) == 1;
}

void Libro::exigirEstructuraLibre() const {
    const size_t lugar = buscarRegistro(globales_, id::kProtect);
    if (lugar == globales_.size() || !estaPuesta(globales_[lugar].datos)) return;
    rechazar(
        "El libro tiene protegida su estructura: no admite que se añadan, borren ni cambien de "
        "nombre sus hojas. Quítele la protección, o use una de las hojas que tiene.");
}

void Libro::tocar() {
    if (compartido_) {
        rechazar(
            "El libro es compartido (guarda su historial de cambios) y no se puede modificar.");
    }
    tocado_ = true;
}

void Libro::tocarContenido() {
    tocar();
    contenidoTocado_ = true;
}

void Libro::tocar(Hoja& hoja) {
    tocar();
    hoja.tocada = true;
}

void Libro::tocarContenido(Hoja& hoja) {
    tocarContenido();
    hoja.tocada = true;
}

std::string Libro::serializar() {
    compuesto_.flujo(numeroFlujo_, tocado_ ? componerFlujo() : flujo_);
    // The same contents for older versions of the application, now out of date.
    const auto gemelo = tocado_ ? compuesto_.buscar("Book") : std::nullopt;
    if (gemelo) compuesto_.quitar(*gemelo);
    std::string fichero = compuesto_.serializar();
    compuesto_.flujo(numeroFlujo_, {});
    return fichero;
}

// The same when reading and when writing, so that what has been saved can be opened again.
void Libro::exigirCabida(size_t filas, size_t bytes) {
    const size_t limite = kFilasDispersas + bytes / kMinimoPorFila;
    if (filas <= limite) return;
    rechazar("Las hojas del libro tienen sus datos repartidos por demasiadas filas (" +
             std::to_string(filas) + "; en un libro de este tamaño caben " +
             std::to_string(limite) + "). Júntelos o repártalos entre varios libros.");
}

void Libro::prepararCadenas() {
    if (cadenas_->cuantas() == 0) return;
    size_t lugar = buscarRegistro(globales_, id::kSst);
    if (lugar == globales_.size()) {
        while (lugar > 0 && vaTrasCadenas(globales_[lugar - 1].id)) --lugar;
        globales_.insert(globales_.begin() + static_cast<ptrdiff_t>(lugar), Registro{id::kSst, {}});
    }
    const bool conIndice = buscarRegistro(globales_, id::kExtSst) < globales_.size();
    if (!conIndice && cadenas_->cambiada()) {
        globales_.insert(globales_.begin() + static_cast<ptrdiff_t>(lugar + 1),
                         Registro{id::kExtSst, {}});
    }
}

std::string Libro::componerFlujo() {
    prepararCadenas();
    std::string flujo;
    flujo.reserve(flujo_.size() + flujo_.size() / 2 + 65536);
    std::vector<size_t> referencias;
    ponerGlobales(flujo, referencias);
    size_t filas = 0;
    for (size_t i = 0; i < hojas_.size(); ++i) {
        const Hoja& hoja = *hojas_[i];
        if (hoja.esDeCalculo()) filas += hoja.celdas->tabla().filasEnMemoria();
        const size_t posicion = flujo.size();
        cambiar32(flujo, referencias.at(i), static_cast<uint32_t>(posicion));
        const bool pendiente =
            contenidoTocado_ && hoja.esDeCalculo() && hoja.celdas->tieneFormulas();
        flujo += hoja.tocada ? hoja.celdas->serializar(posicion, pendiente)
                             : moverSubflujo(hoja.original, hoja.posicion, posicion, pendiente);
    }
    for (const std::string_view suelto : sinReferencia_) flujo += suelto;
    exigirCabida(filas, flujo.size());
    if (flujo.size() < kMinimoFlujo) flujo.resize(kMinimoFlujo, '\0');
    return flujo;
}

// referencias receives where each BOUNDSHEET keeps its sheet's position.
void Libro::ponerGlobales(std::string& flujo, std::vector<size_t>& referencias) {
    size_t posicionSst = 0;
    for (const Registro& registro : globales_) {
        switch (registro.id) {
            case id::kSst:
                posicionSst = flujo.size();
                cadenas_->serializar(flujo);
                break;
            case id::kExtSst:
                ponerIndiceDeCadenas(flujo, registro.datos, posicionSst);
                break;
            case id::kXfCrc:
                ponerRegistro(
                    flujo, registro.id,
                    formatos_->ampliado() ? formatos_->suma(registro.datos) : registro.datos);
                break;
            default:
                if (registro.id == id::kBoundSheet) referencias.push_back(flujo.size() + 4);
                ponerRegistro(flujo, registro.id, registro.datos);
        }
    }
}

// The index of an unchanged table keeps its shape, unused places included, and only moves.
void Libro::ponerIndiceDeCadenas(std::string& flujo, const std::string& original,
                                 size_t posicionSst) {
    if (cadenas_->cambiada() || original.empty()) {
        const uint32_t porGrupo = original.size() < 2 ? 0 : Vista(original).u16(0);
        ponerRegistro(flujo, id::kExtSst, cadenas_->indice(posicionSst, porGrupo));
        return;
    }
    std::string datos = original;
    const auto delta = static_cast<uint32_t>(posicionSst - posicionSst_);
    for (size_t pos = 2; pos + 8 <= datos.size(); pos += 8) {
        const uint32_t valor = Vista(datos).u32(pos);
        if (valor != 0) cambiar32(datos, pos, valor + delta);
    }
    ponerRegistro(flujo, id::kExtSst, datos);
}

}  // namespace bn::xls
