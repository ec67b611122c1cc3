// SPDX-License-Identifier: MIT
#include "destinations/XCel.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <system_error>
#include <utility>

#include "config/Codificacion.h"
#include "platform/Ficheros.h"
#include "platform/NombreFechado.h"

namespace bn {

namespace {

constexpr int32_t kAccesoSinCambio = 1;

/// Runs a step whose failure does not stop the procedure, and keeps what the application said.
template <class Paso>
bool intentar(std::string& error, Paso&& paso) {
    try {
        std::forward<Paso>(paso)();
        return true;
    } catch (const std::exception& e) {
        error = e.what();
        return false;
    }
}

bool mismoNombre(const std::string& uno, const std::string& otro) {
    return mayusculas(uno) == mayusculas(otro);
}

template <class Numero>
std::string textoDeNumero(Numero valor) {
    std::array<char, 32> cifras{};
    const auto fin = std::to_chars(cifras.data(), cifras.data() + cifras.size(), valor).ptr;
    return {cifras.data(), fin};
}

/// A value as it stands in a reference text, in English notation.
std::string textoDeValor(const Variante& valor) {
    struct {
        std::string operator()(std::monostate) const { return {}; }
        std::string operator()(const std::string& texto) const { return texto; }
        std::string operator()(double numero) const { return textoDeNumero(numero); }
        std::string operator()(float numero) const { return textoDeNumero(numero); }
        std::string operator()(int32_t numero) const { return textoDeNumero(numero); }
        std::string operator()(bool logico) const { return logico ? "TRUE" : "FALSE"; }
        std::string operator()(FechaOle fecha) const { return textoDeNumero(fecha.dias); }
    } const enTexto;
    return std::visit(enTexto, valor);
}

}  // namespace

XCel::XCel(Plataforma& plataforma) : plataforma_(plataforma) {}

XCel::~XCel() {
    std::string error;  // nobody is left to tell it to: the point is to leave no process behind
    if (aplicacion_) intentar(error, [this] { aplicacion_->Quit(); });
    soltar();
}

bool XCel::HayExcel() {
    std::string error;
    std::unique_ptr<excel::Application> aplicacion;
    if (!intentar(error, [&] { aplicacion = plataforma_.nuevaAplicacionExcel(true); }))
        return false;
    intentar(error, [&] { aplicacion->Quit(); });
    return true;
}

/// Starts an instance of its own, without prompts. What was held before is let go, not quit.
bool XCel::iniciar(std::string& error) {
    soltar();
    enLugarDe_ = EnLugarDe::kNada;
    enHojaPedida_ = false;
    motivo_.clear();
    conservado_.clear();
    arranco_ = intentar(error, [this] { aplicacion_ = plataforma_.nuevaAplicacionExcel(false); });
    if (!arranco_) {
        motivo_ = "No se puede abrir ninguna hoja de cálculo: " + error;
        plataforma_.mensajeCritico(error);
        return false;
    }
    intentar(error, [this] { aplicacion_->DisplayAlerts(false); });
    return true;
}

void XCel::abandonar() {
    std::string error;  // the failure that brought us here is the one to tell
    intentar(error, [this] { aplicacion_->Quit(); });
    soltar();
}

void XCel::AbrirParaEscribir(const std::string& libro, const std::string& hoja, bool conservar) {
    std::string error;
    if (!iniciar(error)) return;
    if (!abrirOSustituir(libro)) return;
    rutaLibro_ = libro;
    if (!situarEnHoja(hoja, conservar)) return;
    if (sustituye_ && hoja_) dejarSoloLaActual(error);
    nombreHoja_ = hoja;
}

/// Opens the workbook, or makes a new one in its place. False when neither can be done: then
/// nothing is left open.
bool XCel::abrirOSustituir(const std::string& libro) {
    std::string error;
    std::unique_ptr<excel::Workbooks> libros;
    bool seguir = intentar(error, [&] { libros = aplicacion_->Workbooks(); });
    if (seguir) {
        try {
            libro_ = libros->Open(libro);
            libro_->exigirLibre();
            return true;
        } catch (const excel::ErrorDeApertura& e) {
            const bool sano = e.clase() == excel::ErrorDeApertura::Clase::kSano;
            enLugarDe_ = sano ? EnLugarDe::kSano : EnLugarDe::kDanado;
            motivo_ = e.what();
        } catch (const std::exception& e) {
            clasificar(libro, e.what());
        }
        libros.reset();
        if (libro_) intentar(error, [this] { libro_->Close(); });
        seguir = intentar(error, [this] { libro_ = aplicacion_->Workbooks()->Add(); });
    }
    if (!seguir) {
        abandonar();
        if (motivo_.empty()) motivo_ = "No se puede abrir el libro \"" + libro + "\": " + error;
        plataforma_.mensajeCritico(error);
    }
    sustituye_ = seguir;
    return seguir;
}

/// An application that only says that it could not open a file leaves it to us to find out why.
void XCel::clasificar(const std::string& libro, const std::string& descripcion) {
    const std::filesystem::path ruta = ficheros::aRuta(libro);
    bool sano = true;  // what the disk cannot show must not be taken for missing or damaged
    try {
        if (!ficheros::largo(plataforma_.disco(), ruta)) return;
        sano = plataforma_.esLibroSano(ruta);
    } catch (const ErrorFichero&) {
        sano = true;
    }
    enLugarDe_ = sano ? EnLugarDe::kSano : EnLugarDe::kDanado;
    motivo_ = "No se puede abrir el libro \"" + libro + "\": " + descripcion;
}

/// Makes the sheet current, adding it when there is none of its name. False, and nothing left open,
/// when the sheets cannot be looked through: one more sheet might stand beside the right one.
bool XCel::situarEnHoja(const std::string& hoja, bool conservar) {
    std::string error;
    bool encontrada = false;
    if (!intentar(error, [&] { encontrada = buscarHoja(hoja); })) {
        abandonar();
        motivo_ = "No se pueden ver las hojas del libro \"" + rutaLibro_ + "\": " + error;
        return false;
    }
    enHojaPedida_ = encontrada;
    if (!encontrada) agregarHoja(hoja);
    if (encontrada && !conservar) intentar(error, [this] { hoja_->Cells()->ClearContents(); });
    return true;
}

void XCel::agregarHoja(const std::string& hoja) {
    std::string error;
    intentar(error, [this] {
        const auto hojas = libro_->Worksheets();
        hoja_ = hojas->Add(*hojas->Item(hojas->Count()));
    });
    if (hoja_) enHojaPedida_ = intentar(error, [&] { hoja_->Name(hoja); });
    if (enHojaPedida_) return;
    if (!motivo_.empty()) motivo_ += ' ';
    motivo_ +=
        "No se puede añadir la hoja \"" + hoja + "\" al libro \"" + rutaLibro_ + "\": " + error;
}

void XCel::dejarSoloLaActual(std::string& error) {
    std::string actual;
    std::vector<std::unique_ptr<excel::Worksheet>> hojas;
    if (!intentar(error, [&] {
            actual = hoja_->Name();
            hojas = libro_->Worksheets()->enumerar();
        })) {
        return;
    }
    for (const auto& hoja : hojas) {
        intentar(error, [&] {
            if (!mismoNombre(hoja->Name(), actual)) hoja->Delete();
        });
    }
}

bool XCel::AbrirParaLeer(const std::string& libro, const std::string& hoja) {
    std::string error;
    if (!iniciar(error)) return false;
    if (!intentar(error, [&] { libro_ = aplicacion_->Workbooks()->Open(libro); })) {
        abandonar();
        motivo_ = error;
        return false;
    }
    rutaLibro_ = libro;
    bool encontrada = false;
    if (hoja.empty()) {
        encontrada = intentar(error, [this] { hoja_ = libro_->Worksheets()->Item(1); });
    } else {
        intentar(error, [&] { encontrada = buscarHoja(hoja); });
    }
    if (encontrada) {
        nombreHoja_ = hoja;
        return true;
    }
    const std::string pendiente = error;
    intentar(error, [this] { libro_->Close(); });
    abandonar();
    motivo_ = pendiente.empty() ? "El libro \"" + libro + "\" no tiene la hoja \"" + hoja + "\"."
                                : pendiente;
    // A sheet that is simply absent is no error of the application: the box is then empty.
    plataforma_.mensajeCritico(pendiente);
    return false;
}

void XCel::AbrirPlantilla(const std::string& plantilla) {
    std::string error;
    if (!iniciar(error)) return;
    if (!intentar(error, [&] { libro_ = aplicacion_->Workbooks()->Add(plantilla); })) {
        motivo_ = error;
        error.clear();
        abandonar();
        plataforma_.mensajeCritico(error);
        return;
    }
    intentar(error, [this] { rutaLibro_ = aplicacion_->Workbooks()->Item(1)->Name(); });
    intentar(error, [this] { hoja_ = libro_->Worksheets()->Item(1); });
    intentar(error, [this] { nombreHoja_ = hoja().Name(); });
}

std::vector<std::string> XCel::ListaDeHojas() {
    std::vector<std::string> nombres;
    for (const auto& hoja : libro().Worksheets()->enumerar()) nombres.push_back(hoja->Name());
    return nombres;
}

/// Makes the sheet of that name current, letter case ignored; changes nothing when there is none.
bool XCel::buscarHoja(const std::string& nombre) {
    for (auto& candidata : libro().Worksheets()->enumerar()) {
        if (!mismoNombre(candidata->Name(), nombre)) continue;
        hoja_ = std::move(candidata);
        return true;
    }
    return false;
}

bool XCel::EstablecerHoja(const std::string& hoja) { return buscarHoja(hoja); }

std::string XCel::NombreHoja() { return hoja().Name(); }

std::unique_ptr<excel::Range> XCel::celda(int16_t fila, int16_t columna) {
    return hoja().Cells()->Item(fila, columna);
}

Variante XCel::Celda(int16_t fila, int16_t columna) { return celda(fila, columna)->FormulaR1C1(); }

void XCel::Celda(int16_t fila, int16_t columna, const Variante& valor) {
    celda(fila, columna)->FormulaR1C1(valor);
}

void XCel::IrA(int16_t fila, int16_t columna) { celda(fila, columna)->Select(); }

void XCel::alinearColumna(int16_t columna, int32_t alineacion, float ancho) {
    const auto rango = hoja().Columns(columna);
    rango->HorizontalAlignment(alineacion);
    if (ancho > 0) rango->ColumnWidth(ancho);
}

void XCel::AjusteColumnaDerecha(int16_t columna, float ancho) {
    alinearColumna(columna, excel::kAlinearDerecha, ancho);
}

void XCel::AjusteColumnaIzquierda(int16_t columna, float ancho) {
    alinearColumna(columna, excel::kAlinearIzquierda, ancho);
}

void XCel::AjusteCeldaIzquierda(int16_t fila, int16_t columna) {
    celda(fila, columna)->HorizontalAlignment(excel::kAlinearIzquierda);
}

void XCel::AnchoColumna(int16_t columna, float ancho) {
    hoja().Columns(columna)->ColumnWidth(ancho);
}

void XCel::ColumnaNumerica(int16_t columna) {
    const auto rango = hoja().Columns(columna);
    // The odd negative section, and the zero section that shows nothing, are what users want.
    rango->NumberFormat("#,##0.00;#,-##0.00;#");
    rango->HorizontalAlignment(excel::kAlinearDerecha);
}

void XCel::ColumnaFecha(int16_t columna) {
    const auto rango = hoja().Columns(columna);
    rango->NumberFormat("dd/mm/yyyy");
    rango->HorizontalAlignment(excel::kAlinearCentro);
}

void XCel::ColumnaNumCero(int16_t columna, int16_t digitos) {
    const auto rango = hoja().Columns(columna);
    rango->HorizontalAlignment(excel::kAlinearCentro);
    rango->NumberFormat(std::string(static_cast<std::size_t>(std::max<int16_t>(digitos, 0)), '0'));
}

void XCel::ReplicarCabecera(int16_t filasCabecera, int16_t fila) {
    hoja().Rows("1:" + std::to_string(filasCabecera))->Select();
    aplicacion_->Selection()->Copy();
    hoja().Range("A" + std::to_string(fila))->Select();
    hoja().Paste();
    aplicacion_->CutCopyMode(false);
    hoja().HPageBreaks()->Add(*aplicacion_->ActiveCell());
}

void XCel::SaltoPagina(int16_t fila) { hoja().HPageBreaks()->Add(*hoja().Rows(fila)); }

std::unique_ptr<excel::NombreDefinido> XCel::buscarNombre(const std::string& nombre) {
    for (auto& definido : libro().Names()->enumerar()) {
        if (mismoNombre(definido->Name(), nombre)) return std::move(definido);
    }
    return nullptr;
}

Variante XCel::ValorNombre(const std::string& nombre) {
    const auto definido = buscarNombre(nombre);
    if (!definido) return {};
    const std::string referencia = definido->RefersTo();
    return referencia.empty() ? referencia : referencia.substr(1);
}

void XCel::ValorNombre(const std::string& nombre, const Variante& valor) {
    const std::string referencia = "=" + textoDeValor(valor);
    if (const auto definido = buscarNombre(nombre)) {
        definido->RefersTo(referencia);
    } else {
        libro().Names()->Add(nombre, referencia);
    }
}

void XCel::Imprimir() { hoja().PrintOut(1, true); }

void XCel::PrintPreview() {
    aplicacion().Visible(true);
    hoja().PrintPreview();
}

void XCel::Guardar(const std::string& libro) {
    excel::Workbook& abierto = this->libro();
    const std::string& destino = libro.empty() ? rutaLibro_ : libro;
    conservado_.clear();
    if (sustituye_ && destino == rutaLibro_) conservarElAnterior();
    abierto.SaveAs(destino, kAccesoSinCambio);
    terminar();
}

/// A damaged workbook, or one of another program, may still hold a year of weighings.
void XCel::conservarElAnterior() {
    Disco& disco = plataforma_.disco();
    const std::filesystem::path anterior = ficheros::aRuta(rutaLibro_);
    if (!ficheros::existe(disco, anterior) || ficheros::esCarpeta(disco, anterior)) return;
    std::filesystem::path comienzo = anterior;
    comienzo += ".";
    const std::filesystem::path copia = nombreFechado(disco, comienzo, plataforma_.ahora(), ".bak");
    ficheros::reemplazar(disco, copia, ficheros::leer(disco, anterior).value_or(""));
    conservado_ = copia;
}

void XCel::Cerrar() { terminar(); }

/// An application that does not quit is of no more use than one that has: it is let go all the
/// same.
void XCel::terminar() {
    try {
        aplicacion().Quit();
    } catch (const std::exception&) {
        soltar();
        throw;
    }
    soltar();
}

/// Releases everything, the innermost object first.
void XCel::soltar() {
    hoja_.reset();
    libro_.reset();
    aplicacion_.reset();
    sustituye_ = false;
}

namespace {

template <class Objeto>
Objeto& exigir(const std::unique_ptr<Objeto>& objeto) {
    if (!objeto) throw excel::ErrorExcel("No hay ningún libro de cálculo abierto");
    return *objeto;
}

}  // namespace

excel::Application& XCel::aplicacion() { return exigir(aplicacion_); }
excel::Workbook& XCel::libro() { return exigir(libro_); }
excel::Worksheet& XCel::hoja() { return exigir(hoja_); }

}  // namespace bn
