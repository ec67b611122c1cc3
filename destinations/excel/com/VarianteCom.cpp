// SPDX-License-Identifier: MIT
#include "destinations/excel/com/VarianteCom.h"

#include <limits>
#include <new>
#include <utility>

#include "config/Codificacion.h"
#include "destinations/excel/ObjectModel.h"
#include "destinations/excel/com/ErrorCom.h"

namespace bn::excel::com {

namespace {

// Some headers of the system forget that these calls only read it.
VARIANT* comoOrigen(const VARIANT& crudo) { return const_cast<VARIANT*>(&crudo); }

struct Rellenar {
    VARIANT& crudo;

    void operator()(std::monostate) const {}
    void operator()(const std::string& texto) const {
        const std::wstring ancho = aAncho(texto);
        if (ancho.size() > std::numeric_limits<UINT>::max() / sizeof(wchar_t))
            throw std::bad_alloc();
        V_BSTR(&crudo) = SysAllocStringLen(ancho.data(), static_cast<UINT>(ancho.size()));
        if (!V_BSTR(&crudo)) throw std::bad_alloc();
        V_VT(&crudo) = VT_BSTR;
    }
    void operator()(double numero) const {
        V_VT(&crudo) = VT_R8;
        V_R8(&crudo) = numero;
    }
    void operator()(float numero) const {
        V_VT(&crudo) = VT_R4;
        V_R4(&crudo) = numero;
    }
    void operator()(int32_t numero) const {
        V_VT(&crudo) = VT_I4;
        V_I4(&crudo) = numero;
    }
    void operator()(bool logico) const {
        V_VT(&crudo) = VT_BOOL;
        V_BOOL(&crudo) = logico ? VARIANT_TRUE : VARIANT_FALSE;
    }
    void operator()(FechaOle fecha) const {
        V_VT(&crudo) = VT_DATE;
        V_DATE(&crudo) = fecha.dias;
    }
};

std::string textoDe(BSTR texto) {
    return texto ? deAncho({texto, SysStringLen(texto)}) : std::string();
}

/// A type that cells have and the program has not (currency, decimal, an error value).
Variante convertir(const VARIANT& crudo) {
    const VARTYPE simple = V_VT(&crudo) & VT_TYPEMASK;
    if (simple != V_VT(&crudo) || simple == VT_DISPATCH || simple == VT_UNKNOWN) {
        lanzarError(DISP_E_TYPEMISMATCH);
    }
    VarianteCom convertida;
    for (const VARTYPE tipo : {static_cast<VARTYPE>(VT_R8), static_cast<VARTYPE>(VT_BSTR)}) {
        if (SUCCEEDED(
                VariantChangeTypeEx(convertida.recibir(), comoOrigen(crudo), kIngles, 0, tipo))) {
            return convertida.valor();
        }
    }
    lanzarError(DISP_E_TYPEMISMATCH);
}

}  // namespace

std::wstring aAncho(std::string_view utf8) {
    const std::u16string unidades = utf8AU16(utf8);
    return {unidades.begin(), unidades.end()};
}

std::string deAncho(std::wstring_view texto) {
    return u16AUtf8(std::u16string(texto.begin(), texto.end()));
}

VarianteCom::VarianteCom(const Variante& valor) : VarianteCom() {
    std::visit(Rellenar{crudo_}, valor);
}

VarianteCom::VarianteCom(const VarianteCom& otra) : VarianteCom() {
    exigirExito(VariantCopy(&crudo_, comoOrigen(otra.crudo_)));
}

VarianteCom::VarianteCom(VarianteCom&& otra) noexcept : crudo_(otra.soltar()) {}

VarianteCom& VarianteCom::operator=(VarianteCom otra) noexcept {
    std::swap(crudo_, otra.crudo_);
    return *this;
}

VarianteCom VarianteCom::omitido() {
    VarianteCom variante;
    V_VT(&variante.crudo_) = VT_ERROR;
    V_ERROR(&variante.crudo_) = DISP_E_PARAMNOTFOUND;
    return variante;
}

VarianteCom VarianteCom::deObjeto(IDispatch* objeto) {
    VarianteCom variante;
    V_VT(&variante.crudo_) = VT_DISPATCH;
    V_DISPATCH(&variante.crudo_) = objeto;
    if (objeto) objeto->AddRef();
    return variante;
}

VarianteCom VarianteCom::deMatriz(SAFEARRAY* matriz) {
    VarianteCom variante;
    V_VT(&variante.crudo_) = VT_ARRAY | VT_VARIANT;
    V_ARRAY(&variante.crudo_) = matriz;
    return variante;
}

Variante VarianteCom::valor() const { return valorDe(crudo_); }

int32_t VarianteCom::entero() const {
    VarianteCom convertida;
    exigirExito(VariantChangeTypeEx(convertida.recibir(), comoOrigen(crudo_), kIngles, 0, VT_I4));
    return V_I4(&convertida.crudo_);
}

ComPtr<IDispatch> VarianteCom::objeto() const {
    ComPtr<IDispatch> objeto;
    const bool esObjeto = V_VT(&crudo_) == VT_DISPATCH || V_VT(&crudo_) == VT_UNKNOWN;
    if (!esObjeto || !V_UNKNOWN(&crudo_)) lanzarError(E_NOINTERFACE);
    exigirExito(V_UNKNOWN(&crudo_)->QueryInterface(IID_IDispatch,
                                                   reinterpret_cast<void**>(objeto.recibir())));
    return objeto;
}

SAFEARRAY* VarianteCom::matriz() const {
    return V_VT(&crudo_) == (VT_ARRAY | VT_VARIANT) ? V_ARRAY(&crudo_) : nullptr;
}

VARIANT* VarianteCom::recibir() {
    VariantClear(&crudo_);
    return &crudo_;
}

VARIANT VarianteCom::soltar() {
    const VARIANT cedido = crudo_;
    VariantInit(&crudo_);
    return cedido;
}

std::string comoSeLee(const Variante& valor) {
    constexpr LCID kEspanol = 3082;
    const VarianteCom original(valor);
    VarianteCom texto;
    VariantChangeTypeEx(texto.recibir(), comoOrigen(original.crudo()), kEspanol,
                        VARIANT_NOUSEROVERRIDE, VT_BSTR);
    return V_VT(&texto.crudo()) == VT_BSTR ? textoDe(V_BSTR(&texto.crudo())) : std::string();
}

Variante valorDe(const VARIANT& crudo) {
    switch (V_VT(&crudo)) {
        case VT_EMPTY:
        case VT_NULL:
            return {};
        case VT_BSTR:
            return textoDe(V_BSTR(&crudo));
        case VT_R8:
            return V_R8(&crudo);
        case VT_R4:
            return V_R4(&crudo);
        case VT_I4:
            return int32_t{V_I4(&crudo)};
        case VT_BOOL:
            return V_BOOL(&crudo) != VARIANT_FALSE;
        case VT_DATE:
            return FechaOle{V_DATE(&crudo)};
        default:
            return convertir(crudo);
    }
}

}  // namespace bn::excel::com
