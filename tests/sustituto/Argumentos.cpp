// SPDX-License-Identifier: MIT
#include <array>
#include <sstream>
#include <variant>

#include "tests/sustituto/ObjetoSustituto.h"

namespace bn::sustituto {

namespace {

constexpr LONG kElementosEnDiario = 24;

const VARIANT& exigirTipo(const VARIANT& argumento, VARTYPE tipo) {
    if (V_VT(&argumento) != tipo) throw Rechazo{DISP_E_TYPEMISMATCH};
    return argumento;
}

LONG largo(SAFEARRAY* matriz, UINT dimension) {
    LONG desde = 0;
    LONG hasta = 0;
    SafeArrayGetLBound(matriz, dimension, &desde);
    SafeArrayGetUBound(matriz, dimension, &hasta);
    return hasta - desde + 1;
}

std::string matrizParaDiario(SAFEARRAY* matriz) {
    if (SafeArrayGetDim(matriz) != 2) return "matriz que no es de dos dimensiones";
    const LONG filas = largo(matriz, 1);
    const LONG columnas = largo(matriz, 2);
    std::string texto = "matriz " + std::to_string(filas) + "x" + std::to_string(columnas);
    if (filas * columnas > kElementosEnDiario) return texto;
    for (LONG fila = 1; fila <= filas; ++fila) {
        texto += fila == 1 ? " {" : " | ";
        for (LONG columna = 1; columna <= columnas; ++columna) {
            std::array<LONG, 2> indices{fila, columna};
            VarianteCom elemento;
            SafeArrayGetElement(matriz, indices.data(), elemento.recibir());
            texto += (columna == 1 ? "" : "; ") + paraDiario(elemento.crudo());
        }
    }
    return texto + "}";
}

struct EnTexto {
    std::string operator()(std::monostate) const { return "EMPTY"; }
    std::string operator()(const std::string& texto) const { return "BSTR \"" + texto + "\""; }
    std::string operator()(double numero) const { return conTipo("R8 ", numero); }
    std::string operator()(float numero) const { return conTipo("R4 ", numero); }
    std::string operator()(int32_t numero) const { return conTipo("I4 ", numero); }
    std::string operator()(bool logico) const { return logico ? "BOOL True" : "BOOL False"; }
    std::string operator()(FechaOle fecha) const { return conTipo("DATE ", fecha.dias); }

    template <class Numero>
    static std::string conTipo(const char* tipo, Numero numero) {
        std::ostringstream texto;
        texto.imbue(std::locale::classic());
        texto.precision(15);
        texto << tipo << numero;
        return texto.str();
    }
};

}  // namespace

std::string exigirTexto(const VARIANT& argumento) {
    return std::get<std::string>(excel::com::valorDe(exigirTipo(argumento, VT_BSTR)));
}

int32_t exigirEntero(const VARIANT& argumento) { return V_I4(&exigirTipo(argumento, VT_I4)); }

double exigirReal(const VARIANT& argumento) { return V_R8(&exigirTipo(argumento, VT_R8)); }

bool exigirLogico(const VARIANT& argumento) {
    return V_BOOL(&exigirTipo(argumento, VT_BOOL)) != VARIANT_FALSE;
}

VarianteCom comoResultado(ObjetoSustituto* nuevo) {
    const ComPtr<IDispatch> duenio(nuevo);
    return VarianteCom::deObjeto(nuevo);
}

std::string paraDiario(const VARIANT& valor) {
    if (V_VT(&valor) == VT_DISPATCH) {
        const auto* objeto = dynamic_cast<ObjetoSustituto*>(V_DISPATCH(&valor));
        return objeto ? objeto->etiqueta() : "objeto ajeno";
    }
    if (V_VT(&valor) == (VT_ARRAY | VT_VARIANT)) return matrizParaDiario(V_ARRAY(&valor));
    if ((V_VT(&valor) & VT_ARRAY) != 0) return "matriz que no es de VARIANT";
    return std::visit(EnTexto{}, excel::com::valorDe(valor));
}

}  // namespace bn::sustituto
