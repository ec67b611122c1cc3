// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <array>

#include "destinations/excel/com/ComPtr.h"
#include "destinations/excel/com/VarianteCom.h"
#include "tests/destinations/com/ConSustituto.h"

// The stand-in must refuse what the program is not meant to call, or the other tests show nothing.

namespace bn::prueba {
namespace {

using excel::com::ComPtr;
using excel::com::VarianteCom;

class SustitutoDeExcel : public ConSustituto {
 protected:
    void SetUp() override {
        ConSustituto::SetUp();
        ASSERT_TRUE(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)));
        CLSID clase;
        ASSERT_EQ(CLSIDFromProgID(L"Excel.Application", &clase), S_OK);
        ASSERT_EQ(CoCreateInstance(clase, nullptr, CLSCTX_SERVER, IID_IDispatch,
                                   reinterpret_cast<void**>(aplicacion_.recibir())),
                  S_OK);
    }
    void TearDown() override {
        aplicacion_ = {};
        ConSustituto::TearDown();
        CoUninitialize();
    }

    static HRESULT buscar(IDispatch* objeto, const wchar_t* nombre, DISPID& id,
                          LCID idioma = 1033) {
        auto* texto = const_cast<wchar_t*>(nombre);
        return objeto->GetIDsOfNames(IID_NULL, &texto, 1, idioma, &id);
    }
    static HRESULT llamar(IDispatch* objeto, const wchar_t* nombre, WORD forma,
                          std::vector<VARIANT> argumentos, VarianteCom& resultado,
                          LCID idioma = 1033) {
        DISPID id = 0;
        if (const HRESULT codigo = buscar(objeto, nombre, id); FAILED(codigo)) return codigo;
        DISPPARAMS parametros{argumentos.data(), nullptr, static_cast<UINT>(argumentos.size()), 0};
        return objeto->Invoke(id, IID_NULL, idioma, forma, &parametros, resultado.recibir(),
                              nullptr, nullptr);
    }

    ComPtr<IDispatch> aplicacion_;
    VarianteCom resultado_;
};

TEST_F(SustitutoDeExcel, RefusesUnknownMembers) {
    DISPID id = 0;
    EXPECT_EQ(buscar(aplicacion_.get(), L"Caption", id), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(buscar(aplicacion_.get(), L"Quit", id), S_OK);
    VarianteCom nada;
    DISPPARAMS sinArgumentos{};
    EXPECT_EQ(aplicacion_->Invoke(999, IID_NULL, 1033, DISPATCH_METHOD, &sinArgumentos,
                                  nada.recibir(), nullptr, nullptr),
              DISP_E_MEMBERNOTFOUND);
}

TEST_F(SustitutoDeExcel, RefusesAnyOtherLocale) {
    DISPID id = 0;
    EXPECT_EQ(buscar(aplicacion_.get(), L"Quit", id, 3082), DISP_E_UNKNOWNLCID);
    EXPECT_EQ(llamar(aplicacion_.get(), L"Quit", DISPATCH_METHOD, {}, resultado_, 0),
              DISP_E_UNKNOWNLCID);
}

TEST_F(SustitutoDeExcel, RefusesTheWrongNumberOrTypeOfArguments) {
    const VarianteCom uno(Variante(int32_t{1}));
    const VARIANT numero = uno.crudo();
    EXPECT_EQ(llamar(aplicacion_.get(), L"Quit", DISPATCH_METHOD, {numero}, resultado_),
              DISP_E_BADPARAMCOUNT);
    ASSERT_EQ(llamar(aplicacion_.get(), L"Workbooks", DISPATCH_PROPERTYGET, {}, resultado_), S_OK);
    const ComPtr<IDispatch> libros = resultado_.objeto();
    resultado_ = {};
    EXPECT_EQ(llamar(libros.get(), L"Open", DISPATCH_METHOD, {}, resultado_),
              DISP_E_PARAMNOTOPTIONAL);
    EXPECT_EQ(llamar(libros.get(), L"Add", DISPATCH_METHOD, {numero}, resultado_),
              DISP_E_TYPEMISMATCH);
    EXPECT_EQ(llamar(libros.get(), L"Open", DISPATCH_METHOD, {numero}, resultado_),
              DISP_E_PARAMNOTOPTIONAL)
        << "what it could ask is to be answered before";
    EXPECT_EQ(
        llamar(libros.get(), L"Open", DISPATCH_METHOD, std::vector<VARIANT>(7, numero), resultado_),
        DISP_E_BADPARAMCOUNT)
        << "nothing else may be given";
}

TEST_F(SustitutoDeExcel, RefusesAMemberInAnotherForm) {
    EXPECT_EQ(llamar(aplicacion_.get(), L"DisplayAlerts", DISPATCH_PROPERTYGET, {}, resultado_),
              DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(llamar(aplicacion_.get(), L"Quit", DISPATCH_PROPERTYGET, {}, resultado_),
              DISP_E_MEMBERNOTFOUND);
}

TEST_F(SustitutoDeExcel, RefusesUnknownArgumentNames) {
    ASSERT_EQ(llamar(aplicacion_.get(), L"Workbooks", DISPATCH_PROPERTYGET, {}, resultado_), S_OK);
    const ComPtr<IDispatch> libros = resultado_.objeto();
    ASSERT_EQ(llamar(libros.get(), L"Add", DISPATCH_METHOD, {}, resultado_), S_OK);
    const ComPtr<IDispatch> libro = resultado_.objeto();
    ASSERT_EQ(llamar(libro.get(), L"Names", DISPATCH_PROPERTYGET, {}, resultado_), S_OK);
    const ComPtr<IDispatch> nombres = resultado_.objeto();
    resultado_ = {};
    std::array<DISPID, 2> ids{};
    std::array<wchar_t*, 2> textos{const_cast<wchar_t*>(L"Add"), const_cast<wchar_t*>(L"Nombre")};
    EXPECT_EQ(nombres->GetIDsOfNames(IID_NULL, textos.data(), 2, 1033, ids.data()),
              DISP_E_UNKNOWNNAME);
    const VarianteCom uno(Variante(int32_t{1}));
    const VARIANT posicion = uno.crudo();
    EXPECT_EQ(llamar(nombres.get(), L"Add", DISPATCH_METHOD, {posicion, posicion}, resultado_),
              DISP_E_NONAMEDARGS)
        << "its arguments go by name";
}

}  // namespace
}  // namespace bn::prueba
