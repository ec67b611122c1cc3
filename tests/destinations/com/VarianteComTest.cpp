// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "destinations/excel/ObjectModel.h"
#include "destinations/excel/com/ErrorCom.h"
#include "destinations/excel/com/VarianteCom.h"

namespace bn::excel::com {
namespace {

VARTYPE tipo(const Variante& valor) {
    const VarianteCom variante(valor);
    return V_VT(&variante.crudo());
}

TEST(VarianteDeAutomation, EachValueTravelsAsItsOwnType) {
    EXPECT_EQ(tipo(FechaOle{45000.5}), VT_DATE);
    EXPECT_EQ(tipo(12.5F), VT_R4);
    EXPECT_EQ(tipo(12.5), VT_R8);
    EXPECT_EQ(tipo(int32_t{7}), VT_I4);
    EXPECT_EQ(tipo(std::string("x")), VT_BSTR);
    EXPECT_EQ(tipo(true), VT_BOOL);
    EXPECT_EQ(tipo(Variante()), VT_EMPTY);
}

TEST(VarianteDeAutomation, EachValueComesBackAsItWent) {
    for (const Variante& valor : {Variante(FechaOle{45000.5}), Variante(12.5F), Variante(-0.1),
                                  Variante(int32_t{-7}), Variante(std::string("Matrícula ñ € 𝄞")),
                                  Variante(std::string()), Variante(false), Variante()}) {
        EXPECT_EQ(VarianteCom(valor).valor(), valor);
        EXPECT_EQ(VarianteCom(VarianteCom(valor)).valor(), valor);
    }
}

TEST(VarianteDeAutomation, ATextKeepsItsZeros) {
    const std::string texto("a\0b", 3);
    EXPECT_EQ(VarianteCom(Variante(texto)).valor(), Variante(texto));
}

TEST(VarianteDeAutomation, AnArgumentLeftOutIsMarkedAsNotFound) {
    const VarianteCom omitido = VarianteCom::omitido();
    EXPECT_EQ(V_VT(&omitido.crudo()), VT_ERROR);
    EXPECT_EQ(V_ERROR(&omitido.crudo()), DISP_E_PARAMNOTFOUND);
}

TEST(VarianteDeAutomation, TypesTheProgramLacksBecomeNumbers) {
    VARIANT crudo;
    VariantInit(&crudo);
    V_VT(&crudo) = VT_CY;
    V_CY(&crudo).int64 = 12'3400;
    EXPECT_EQ(valorDe(crudo), Variante(12.34));
    V_VT(&crudo) = VT_I2;
    V_I2(&crudo) = -5;
    EXPECT_EQ(valorDe(crudo), Variante(-5.0));
}

TEST(VarianteDeAutomation, AnObjectOrAnArrayIsNoValue) {
    VARIANT crudo;
    VariantInit(&crudo);
    V_VT(&crudo) = VT_DISPATCH;
    V_DISPATCH(&crudo) = nullptr;
    EXPECT_THROW(valorDe(crudo), ErrorExcel);
    EXPECT_THROW(VarianteCom(Variante(1.0)).objeto(), ErrorExcel);
    const VarianteCom matriz = VarianteCom::deMatriz(SafeArrayCreateVector(VT_VARIANT, 0, 2));
    EXPECT_THROW(matriz.valor(), ErrorExcel);
}

TEST(VarianteDeAutomation, AMovedValueLeavesNothingBehind) {
    VarianteCom origen(Variante(std::string("x")));
    const VarianteCom destino = std::move(origen);
    EXPECT_EQ(destino.valor(), Variante(std::string("x")));
    EXPECT_EQ(origen.valor(), Variante());  // NOLINT(bugprone-use-after-move)
}

TEST(VarianteDeAutomation, ACountMayComeAsAnyNumber) {
    VarianteCom corto;
    VARIANT* crudo = corto.recibir();
    V_VT(crudo) = VT_I2;
    V_I2(crudo) = 12;
    EXPECT_EQ(corto.entero(), 12);
    EXPECT_EQ(VarianteCom(Variante(int32_t{7})).entero(), 7);
    EXPECT_EQ(VarianteCom(Variante(3.0)).entero(), 3);
    EXPECT_THROW(VarianteCom(Variante(std::string("x"))).entero(), ErrorExcel);
}

TEST(ErroresDeAutomation, TakeTheSystemsWordsOrTheCode) {
    EXPECT_FALSE(textoDelSistema(E_ACCESSDENIED).empty());
    EXPECT_EQ(textoDelSistema(E_ACCESSDENIED).find_first_of("\r\n"), std::string::npos);
    EXPECT_EQ(textoDelSistema(static_cast<HRESULT>(0x800A1234)),
              "Error 0x800A1234 de la hoja de cálculo");
}

TEST(ErroresDeAutomation, ThreeCodesMeanBusy) {
    EXPECT_TRUE(estaOcupada(static_cast<HRESULT>(0x80010001)));
    EXPECT_TRUE(estaOcupada(static_cast<HRESULT>(0x8001010A)));
    EXPECT_TRUE(estaOcupada(static_cast<HRESULT>(0x800AC472)));
    EXPECT_FALSE(estaOcupada(S_OK));
    EXPECT_FALSE(estaOcupada(DISP_E_EXCEPTION));
    EXPECT_FALSE(estaOcupada(E_ACCESSDENIED));
}

TEST(ErroresDeAutomation, ABusyAnswerInsideAnExceptionIsFound) {
    Excepcion excepcion;
    excepcion.recibir()->scode = static_cast<SCODE>(0x800AC472);
    EXPECT_TRUE(estaOcupada(excepcion.causa(DISP_E_EXCEPTION)));
}

TEST(ErroresDeAutomation, ADescriptionIsTakenWhateverTheCode) {
    Excepcion excepcion;
    excepcion.recibir()->bstrDescription = SysAllocString(L"No se puede");
    std::string dicho;
    try {
        excepcion.lanzar(static_cast<HRESULT>(0x800A03EC));
    } catch (const ErrorExcel& e) {
        dicho = e.what();
    }
    EXPECT_EQ(dicho, "No se puede");
}

TEST(ErroresDeAutomation, ATextPutOffIsAskedFor) {
    Excepcion excepcion;
    excepcion.recibir()->pfnDeferredFillIn = [](EXCEPINFO* datos) -> HRESULT {
        datos->bstrDescription = SysAllocString(L"Más tarde");
        return S_OK;
    };
    try {
        excepcion.lanzar(DISP_E_EXCEPTION);
    } catch (const ErrorExcel& e) {
        EXPECT_STREQ(e.what(), "Más tarde");
    }
}

}  // namespace
}  // namespace bn::excel::com
