// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "destinations/excel/ObjectModel.h"
#include "destinations/excel/Variante.h"
#include "platform/Plataforma.h"

namespace bn {

/// What the new workbook that AbrirParaEscribir made takes the place of.
enum class EnLugarDe {
    kNada,    ///< no file, or none was needed: the workbook was opened
    kDanado,  ///< a file that is damaged, or no workbook at all
    kSano     ///< a sound workbook that cannot be opened now, or by us
};

/// The program's one wrapper around the spreadsheet application: a private, invisible instance, one
/// workbook, one current worksheet. Rows and columns are 1-based; texts are UTF-8.
///
/// Only HayExcel and the three Abrir… catch errors (their messages are message boxes); every other
/// member throws excel::ErrorExcel, also when nothing is open.
class XCel {
 public:
    explicit XCel(Plataforma& plataforma);
    XCel(const XCel&) = delete;
    XCel& operator=(const XCel&) = delete;
    ~XCel();

    /// True when the spreadsheet application can be started. Leaves nothing open.
    bool HayExcel();
    /// Opens the workbook, or starts a new one in its place, at the sheet, or adds it last. With
    /// conservar false the sheet's contents are erased, formats stay.
    void AbrirParaEscribir(const std::string& libro, const std::string& hoja, bool conservar);
    /// Opens the workbook at the sheet, or at its first one when hoja is empty. True when opened.
    bool AbrirParaLeer(const std::string& libro, const std::string& hoja);
    /// What the new workbook of the last AbrirParaEscribir stands for. Whoever saves it in place of
    /// kSano destroys a good workbook.
    EnLugarDe enLugarDe() const { return enLugarDe_; }
    /// Whether the sheet that the last AbrirParaEscribir asked for is the current one: false when
    /// it could neither be found nor be added under its name.
    bool enHojaPedida() const { return enHojaPedida_; }
    /// Whether the last AbrirParaEscribir began a new workbook.
    bool esNuevo() const { return sustituye_; }
    /// Whether the last Abrir… could start the application.
    bool arranco() const { return arranco_; }
    /// Why the last Abrir… did not open what it was asked for; Spanish, "" when it did.
    std::string motivo() const { return motivo_; }
    /// The worksheets' names, in workbook order.
    std::vector<std::string> ListaDeHojas();
    /// Makes the sheet current; false, and nothing changed, when there is none of that name.
    bool EstablecerHoja(const std::string& hoja);
    std::string NombreHoja();
    /// Starts a new workbook made after a template, at its first sheet.
    void AbrirPlantilla(const std::string& plantilla);

    /// The cell's constant, or its formula in R1C1 notation; "" when empty.
    Variante Celda(int16_t fila, int16_t columna);
    /// Sets the cell as a typed entry would.
    void Celda(int16_t fila, int16_t columna, const Variante& valor);
    void IrA(int16_t fila, int16_t columna);

    /// Widths are in widths of the digit 0; alignment only when ancho is not above 0.
    void AjusteColumnaDerecha(int16_t columna, float ancho);
    void AjusteColumnaIzquierda(int16_t columna, float ancho);
    void AjusteCeldaIzquierda(int16_t fila, int16_t columna);
    void AnchoColumna(int16_t columna, float ancho);
    void ColumnaNumerica(int16_t columna);
    void ColumnaFecha(int16_t columna);
    /// Whole numbers padded with zeros to that many digits.
    void ColumnaNumCero(int16_t columna, int16_t digitos);
    /// Repeats the first rows at fila and breaks the page there.
    void ReplicarCabecera(int16_t filasCabecera, int16_t fila);
    void SaltoPagina(int16_t fila);

    /// What a workbook-level defined name holds, as text without its "="; monostate when missing.
    Variante ValorNombre(const std::string& nombre);
    void ValorNombre(const std::string& nombre, const Variante& valor);

    void Imprimir();
    void PrintPreview();
    /// Saves (to libro, or where it was opened when empty) and quits. A file there that could not
    /// be opened is first kept beside it as "NAME.AAAAMMDD-HHMMSS.bak"; throws ErrorFichero when it
    /// cannot be, and leaves it alone.
    /// After SaveAs everything is let go, even when Quit fails and throws.
    void Guardar(const std::string& libro);
    /// The copy that the last Guardar kept; empty when none was needed.
    std::filesystem::path conservado() const { return conservado_; }
    /// Quits without saving. Everything is let go, even when Quit fails and throws.
    void Cerrar();

 private:
    bool iniciar(std::string& error);
    void abandonar();
    void soltar();
    void terminar();
    bool abrirOSustituir(const std::string& libro);
    void clasificar(const std::string& libro, const std::string& descripcion);
    bool situarEnHoja(const std::string& hoja, bool conservar);
    void agregarHoja(const std::string& hoja);
    bool buscarHoja(const std::string& nombre);
    void dejarSoloLaActual(std::string& error);
    void conservarElAnterior();
    std::unique_ptr<excel::Range> celda(int16_t fila, int16_t columna);
    void alinearColumna(int16_t columna, int32_t alineacion, float ancho);
    std::unique_ptr<excel::NombreDefinido> buscarNombre(const std::string& nombre);
    // Each throws excel::ErrorExcel when nothing is open.
    excel::Application& aplicacion();
    excel::Workbook& libro();
    excel::Worksheet& hoja();

    Plataforma& plataforma_;
    std::unique_ptr<excel::Application> aplicacion_;
    std::unique_ptr<excel::Workbook> libro_;
    std::unique_ptr<excel::Worksheet> hoja_;
    bool sustituye_ = false;  // the workbook is a new one in place of what could not be opened
    EnLugarDe enLugarDe_ = EnLugarDe::kNada;
    bool enHojaPedida_ = false;
    bool arranco_ = false;
    std::string motivo_;
    std::filesystem::path conservado_;
    std::string rutaLibro_;
    std::string nombreHoja_;
};

}  // namespace bn
