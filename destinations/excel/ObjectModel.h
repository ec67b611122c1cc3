// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "destinations/excel/Variante.h"

/// The part of the spreadsheet application's object model that the program uses, member for member.
/// Two backends stand behind it: the application itself through Automation, and the embedded
/// engine.
///
/// Every object is released with its unique_ptr; an object outlived by its application answers
/// every call with ErrorExcel. Every member throws ErrorExcel. Texts are UTF-8; rows, columns and
/// indices are 1-based; number formats and formulas are in the application's English notation.
namespace bn::excel {

/// What the spreadsheet application says of a call it refused; what() is the description, UTF-8.
class ErrorExcel : public std::runtime_error {
 public:
    using std::runtime_error::runtime_error;
};

/// Why Workbooks::Open did not open a file that exists. what() names the workbook, the cause and
/// what to do about it.
class ErrorDeApertura : public ErrorExcel {
 public:
    enum class Clase {
        kDanado,  ///< damaged, or no workbook at all
        kSano  ///< sound, but not to be opened now or by us: in use, protected, of another format
    };
    ErrorDeApertura(const std::string& texto, Clase clase) : ErrorExcel(texto), clase_(clase) {}
    Clase clase() const { return clase_; }

 private:
    Clase clase_;
};

/// Base of all the model's interfaces.
class Objeto {
 public:
    Objeto() = default;
    Objeto(const Objeto&) = delete;
    Objeto& operator=(const Objeto&) = delete;
    virtual ~Objeto() = default;
};

/// Values of HorizontalAlignment.
inline constexpr int32_t kAlinearDerecha = -4152;
inline constexpr int32_t kAlinearIzquierda = -4131;
inline constexpr int32_t kAlinearCentro = -4108;

/// One cell or an area of cells.
class Range : public Objeto {
 public:
    /// The cell at a row and column counted from the area's first.
    virtual std::unique_ptr<Range> Item(int32_t fila, int32_t columna) = 0;
    /// A constant's text or number, a formula in R1C1 notation; "" for an empty cell.
    virtual Variante FormulaR1C1() = 0;
    /// Sets as a typed entry would: numbers, dates and formulas are recognised.
    virtual void FormulaR1C1(const Variante& valor) = 0;
    virtual void Select() = 0;
    /// Empties the cells and keeps their formats.
    virtual void ClearContents() = 0;
    /// To the clipboard of the application.
    virtual void Copy() = 0;
    virtual void HorizontalAlignment(int32_t alineacion) = 0;
    /// In widths of the digit 0, 0 to 255.
    virtual void ColumnWidth(double ancho) = 0;
    virtual void NumberFormat(const std::string& formato) = 0;
};

class HPageBreaks : public Objeto {
 public:
    /// Breaks the page above the area's first row.
    virtual void Add(Range& before) = 0;
};

class Worksheet : public Objeto {
 public:
    virtual std::string Name() = 0;
    virtual void Name(const std::string& nombre) = 0;
    virtual void Delete() = 0;
    /// All the cells.
    virtual std::unique_ptr<excel::Range> Cells() = 0;
    /// One whole column, one whole row.
    virtual std::unique_ptr<excel::Range> Columns(int32_t indice) = 0;
    virtual std::unique_ptr<excel::Range> Rows(int32_t indice) = 0;
    /// By reference text: "A12", "A1:C3".
    virtual std::unique_ptr<excel::Range> Range(const std::string& referencia) = 0;
    /// Whole rows by reference text: "1:3".
    virtual std::unique_ptr<excel::Range> Rows(const std::string& referencia) = 0;
    /// The clipboard at the selection.
    virtual void Paste() = 0;
    virtual std::unique_ptr<excel::HPageBreaks> HPageBreaks() = 0;
    virtual void PrintOut(int32_t copies, bool collate) = 0;
    virtual void PrintPreview() = 0;
};

/// The worksheets of a workbook, in their order.
class Sheets : public Objeto {
 public:
    virtual int32_t Count() = 0;
    virtual std::unique_ptr<Worksheet> Item(int32_t indice) = 0;
    virtual std::vector<std::unique_ptr<Worksheet>> enumerar() = 0;
    virtual std::unique_ptr<Worksheet> Add(Worksheet& after) = 0;
};

/// One defined name (the member Name forbids that name to the class).
class NombreDefinido : public Objeto {
 public:
    virtual std::string Name() = 0;
    /// With its leading "=".
    virtual std::string RefersTo() = 0;
    virtual void RefersTo(const std::string& referencia) = 0;
};

class Names : public Objeto {
 public:
    virtual std::vector<std::unique_ptr<NombreDefinido>> enumerar() = 0;
    virtual void Add(const std::string& nombre, const std::string& referencia) = 0;
};

class Workbook : public Objeto {
 public:
    virtual std::unique_ptr<Sheets> Worksheets() = 0;
    virtual std::unique_ptr<excel::Names> Names() = 0;
    virtual std::string Name() = 0;
    /// modoDeAcceso 1: no change. The file format is the application's own.
    virtual void SaveAs(const std::string& libro, int32_t modoDeAcceso) = 0;
    virtual void Close() = 0;
    /// Throws ErrorDeApertura when the workbook can only be read because somebody else has it. A
    /// backend whose Open already refuses such a workbook has nothing to add.
    virtual void exigirLibre() {}
};

class Workbooks : public Objeto {
 public:
    /// Throws ErrorDeApertura for a file that exists, when it knows what is wrong with it.
    virtual std::unique_ptr<Workbook> Open(const std::string& libro) = 0;
    virtual std::unique_ptr<Workbook> Add() = 0;
    /// A new workbook made after a template.
    virtual std::unique_ptr<Workbook> Add(const std::string& plantilla) = 0;
    virtual std::unique_ptr<Workbook> Item(int32_t indice) = 0;
};

class Application : public Objeto {
 public:
    virtual void DisplayAlerts(bool mostrar) = 0;
    virtual std::unique_ptr<excel::Workbooks> Workbooks() = 0;
    virtual std::unique_ptr<Range> Selection() = 0;
    virtual std::unique_ptr<Range> ActiveCell() = 0;
    virtual void CutCopyMode(bool modo) = 0;
    virtual void Visible(bool visible) = 0;
    virtual void Quit() = 0;
};

}  // namespace bn::excel
