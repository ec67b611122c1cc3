// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "destinations/excel/Variante.h"
#include "destinations/excel/com/ComPtr.h"

namespace bn::excel::com {

/// UTF-8 as Windows takes texts, and back.
std::wstring aAncho(std::string_view utf8);
std::string deAncho(std::wstring_view texto);

/// A VARIANT that releases what it holds.
class VarianteCom {
 public:
    VarianteCom() = default;
    /// Texts become VT_BSTR, numbers VT_R8, VT_R4 or VT_I4, date-times VT_DATE, nothing VT_EMPTY.
    explicit VarianteCom(const Variante& valor);
    VarianteCom(const VarianteCom& otra);
    VarianteCom(VarianteCom&& otra) noexcept;
    VarianteCom& operator=(VarianteCom otra) noexcept;
    ~VarianteCom() { VariantClear(&crudo_); }

    /// The mark of an argument that is left out.
    static VarianteCom omitido();
    static VarianteCom deObjeto(IDispatch* objeto);
    /// Takes over an array of VARIANT.
    static VarianteCom deMatriz(SAFEARRAY* matriz);

    /// The value; monostate for nothing. What the program has no type for comes as text or number
    /// in English notation. Throws ErrorExcel for an object or an array.
    Variante valor() const;
    /// A number of whatever type, as an integer. Throws ErrorExcel for anything else.
    int32_t entero() const;
    /// The object held; throws ErrorExcel when it is none.
    ComPtr<IDispatch> objeto() const;
    /// The array held; nullptr when it is none of VARIANT.
    SAFEARRAY* matriz() const;

    /// As the system takes it; what it points at lives no longer than this object.
    const VARIANT& crudo() const& { return crudo_; }
    const VARIANT& crudo() const&& = delete;
    /// Where a call leaves its result; what was held is let go.
    VARIANT* recibir();
    /// Gives up what it holds, for somebody else to release.
    VARIANT soltar();

 private:
    VARIANT crudo_{};  // VT_EMPTY
};

/// A value as a Spanish user reads it: "12,5", "15/03/2023 12:00:00".
std::string comoSeLee(const Variante& valor);

/// The value of a VARIANT that somebody else owns; as VarianteCom::valor.
Variante valorDe(const VARIANT& crudo);

}  // namespace bn::excel::com
