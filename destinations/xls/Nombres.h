// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "destinations/xls/Registros.h"
#include "destinations/xls/formula/Contexto.h"

namespace bn::xls {

/// A defined name (NAME) as it stands in the workbook.
struct NombreLeido {
    std::string texto;  // UTF-8; a built-in name's by its English name
    uint16_t hoja = 0;  // 0: of the workbook; n: of the n-th sheet only
    Rgce formula;
};

/// The workbook's defined names. Formulas call them by their 1-based place, so that names are added
/// behind the last one, changed in their place, and never removed.
class Nombres {
 public:
    /// Reads what the globals hold, which must outlive this object.
    explicit Nombres(Registros& globales);

    uint16_t cuantos() const { return static_cast<uint16_t>(lista_.size()); }
    /// Throws ErrorExcel for a place there is not.
    const NombreLeido& leer(uint16_t lugar) const;
    /// Place of a name of the workbook (hoja 0) or of one sheet, any letter case.
    std::optional<uint16_t> buscar(const std::string& nombre, uint16_t hoja) const;

    void cambiar(uint16_t lugar, const Rgce& formula);
    /// Adds a name of the workbook; throws ErrorExcel when it is no valid one.
    void agregar(const std::string& nombre, const Rgce& formula);

    /// The workbook's sheets have changed places: nuevos tells each old one's, -1 for a removed
    /// one. A removed sheet's own names keep their place as hidden names that refer to nothing.
    void remapear(const std::vector<int32_t>& nuevos);

 private:
    size_t indiceDe(uint16_t lugar) const;

    Registros& globales_;
    std::vector<NombreLeido> lista_;
};

}  // namespace bn::xls
