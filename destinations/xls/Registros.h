// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace bn::xls {

/// Numbers of the records the engine reads or writes, by the format's own names.
namespace id {
inline constexpr uint16_t kFormula = 0x0006;
inline constexpr uint16_t kEof = 0x000A;
inline constexpr uint16_t kExternSheet = 0x0017;
inline constexpr uint16_t kName = 0x0018;
inline constexpr uint16_t kVerticalPageBreaks = 0x001A;
inline constexpr uint16_t kProtect = 0x0012;
inline constexpr uint16_t kHorizontalPageBreaks = 0x001B;
inline constexpr uint16_t kDateMode = 0x0022;
inline constexpr uint16_t kFilePass = 0x002F;
inline constexpr uint16_t kFont = 0x0031;
inline constexpr uint16_t kContinue = 0x003C;
inline constexpr uint16_t kWindow1 = 0x003D;
inline constexpr uint16_t kDefColWidth = 0x0055;
inline constexpr uint16_t kUncalced = 0x005E;
inline constexpr uint16_t kColInfo = 0x007D;
inline constexpr uint16_t kWsBool = 0x0081;
inline constexpr uint16_t kBoundSheet = 0x0085;
inline constexpr uint16_t kCountry = 0x008C;
inline constexpr uint16_t kMulRk = 0x00BD;
inline constexpr uint16_t kMulBlank = 0x00BE;
inline constexpr uint16_t kRString = 0x00D6;
inline constexpr uint16_t kDbCell = 0x00D7;
inline constexpr uint16_t kXf = 0x00E0;
inline constexpr uint16_t kMergedCells = 0x00E5;
inline constexpr uint16_t kSst = 0x00FC;
inline constexpr uint16_t kLabelSst = 0x00FD;
inline constexpr uint16_t kExtSst = 0x00FF;
inline constexpr uint16_t kTabId = 0x013D;
inline constexpr uint16_t kSupBook = 0x01AE;
inline constexpr uint16_t kDimensions = 0x0200;
inline constexpr uint16_t kBlank = 0x0201;
inline constexpr uint16_t kNumber = 0x0203;
inline constexpr uint16_t kLabel = 0x0204;
inline constexpr uint16_t kBoolErr = 0x0205;
inline constexpr uint16_t kString = 0x0207;
inline constexpr uint16_t kRow = 0x0208;
inline constexpr uint16_t kIndex = 0x020B;
inline constexpr uint16_t kArray = 0x0221;
inline constexpr uint16_t kDefaultRowHeight = 0x0225;
inline constexpr uint16_t kTable = 0x0236;
inline constexpr uint16_t kWindow2 = 0x023E;
inline constexpr uint16_t kRk = 0x027E;
inline constexpr uint16_t kFormat = 0x041E;
inline constexpr uint16_t kShrFmla = 0x04BC;
inline constexpr uint16_t kBof = 0x0809;
inline constexpr uint16_t kXfCrc = 0x087C;
inline constexpr uint16_t kXfExt = 0x087D;
inline constexpr uint16_t kNameComment = 0x0894;
}  // namespace id

/// The most a record's data may hold; what is longer goes on in CONTINUE records.
inline constexpr size_t kMaximoDatos = 8224;

/// A record where it stands in a stream.
struct RegistroVisto {
    size_t posicion = 0;
    uint16_t id = 0;
    std::string_view datos;
    size_t despues() const { return posicion + 4 + datos.size(); }
};

/// Throws ErrorExcel when a record that is edited where it stands is too short to be one.
void exigirLargo(const RegistroVisto& registro);

/// Walks the records of a stream from a position; a record that runs over the end throws
/// ErrorExcel.
class LectorRegistros {
 public:
    explicit LectorRegistros(std::string_view flujo, size_t posicion = 0)
        : flujo_(flujo), posicion_(posicion) {}
    /// The next record; nothing when fewer than four bytes are left.
    std::optional<RegistroVisto> siguiente();
    size_t posicion() const { return posicion_; }

 private:
    std::string_view flujo_;
    size_t posicion_ = 0;
};

/// A record on its own.
struct Registro {
    uint16_t id = 0;
    std::string datos;
};
using Registros = std::vector<Registro>;

/// Appends a record's head and data. The data must fit one record.
void ponerRegistro(std::string& salida, uint16_t id, std::string_view datos);

/// Whether the data of a record that holds one switch have it on.
bool estaPuesta(std::string_view datos);

/// Index of the first record of that number at or behind desde; size() when there is none.
size_t buscarRegistro(const Registros& lista, uint16_t id, size_t desde = 0);

/// Index just behind the last record of any of those numbers; nothing when there is none.
std::optional<size_t> trasUltimo(const Registros& lista, std::initializer_list<uint16_t> ids);

/// Bounds of one substream, its BOF and its EOF included.
struct Subflujo {
    size_t inicio = 0;
    size_t fin = 0;
    uint16_t tipo = 0;
};

/// The substreams of a Workbook stream, nested ones inside their outer one. Whatever follows the
/// last EOF is padding. Throws ErrorExcel when BOF and EOF do not pair.
std::vector<Subflujo> subflujos(std::string_view flujo);

}  // namespace bn::xls
