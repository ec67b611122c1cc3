// SPDX-License-Identifier: MIT
#include "tests/sustituto/RangoSustituto.h"

#include <array>
#include <regex>
#include <utility>

namespace bn::sustituto {

namespace {

using excel::com::Area;
using excel::com::PosicionDeCelda;

// As versions up to 2003 have it.
constexpr std::size_t kTextoMaximoEnMatriz = 911;

VARIANT exigirContenido(const VARIANT& valor) {
    switch (V_VT(&valor)) {
        case VT_EMPTY:
        case VT_BSTR:
        case VT_R4:
        case VT_R8:
        case VT_I4:
        case VT_BOOL:
        case VT_DATE:
            return valor;
        default:
            throw Rechazo{DISP_E_TYPEMISMATCH};
    }
}

PosicionDeCelda celdaDeTexto(const std::smatch& partes, std::size_t letras, std::size_t cifras) {
    PosicionDeCelda celda{std::stoi(partes[cifras].str()), 0};
    for (const char letra : partes[letras].str()) celda.columna = celda.columna * 26 + letra - '@';
    return celda;
}

}  // namespace

Area areaDeReferencia(const std::string& referencia) {
    static const std::regex kCeldas("([A-Z]{1,3})([0-9]{1,7})(:([A-Z]{1,3})([0-9]{1,7}))?");
    static const std::regex kFilas("([0-9]{1,7}):([0-9]{1,7})");
    std::smatch partes;
    if (std::regex_match(referencia, partes, kCeldas)) {
        const PosicionDeCelda desde = celdaDeTexto(partes, 1, 2);
        return {desde, partes[3].matched ? celdaDeTexto(partes, 4, 5) : desde};
    }
    if (std::regex_match(referencia, partes, kFilas)) {
        return {{std::stoi(partes[1].str()), 1}, {std::stoi(partes[2].str()), 256}};
    }
    throw Rechazo{DISP_E_TYPEMISMATCH};
}

RangoSustituto::RangoSustituto(std::shared_ptr<Mundo> mundo, std::string nombre,
                               std::unique_ptr<excel::Range> motor, const Area& area)
    : ObjetoSustituto(std::move(mundo), "Range", "[" + std::move(nombre) + "]"),
      motor_(std::move(motor)),
      area_(area) {
    declarar();
    declararFormatos();
}

void RangoSustituto::declarar() {
    propiedad(L"Item", "rr", [this](const Argumentos& argumentos) {
        const int32_t fila = exigirEntero(*argumentos[0]);
        const int32_t columna = exigirEntero(*argumentos[1]);
        const PosicionDeCelda celda{area_.desde.fila + fila - 1, area_.desde.columna + columna - 1};
        return comoResultado(new RangoSustituto(mundo(), excel::com::referencia({celda, celda}),
                                                motor_->Item(fila, columna), {celda, celda}));
    });
    propiedad(L"FormulaR1C1", "", [this](const Argumentos&) { return leer(); });
    asignable(L"FormulaR1C1", [this](const VARIANT& valor) { escribir(valor); });
    metodo(L"Select", "", [this](const Argumentos&) {
        motor_->Select();
        return VarianteCom();
    });
    metodo(L"ClearContents", "", [this](const Argumentos&) {
        motor_->ClearContents();
        return VarianteCom();
    });
    metodo(L"Copy", "m", [this](const Argumentos&) {
        motor_->Copy();
        return VarianteCom();
    });
}

void RangoSustituto::declararFormatos() {
    asignable(L"HorizontalAlignment",
              [this](const VARIANT& valor) { motor_->HorizontalAlignment(exigirEntero(valor)); });
    asignable(L"ColumnWidth",
              [this](const VARIANT& valor) { motor_->ColumnWidth(exigirReal(valor)); });
    asignable(L"NumberFormat",
              [this](const VARIANT& valor) { motor_->NumberFormat(exigirTexto(valor)); });
}

VarianteCom RangoSustituto::leer() const {
    if (area_.celdas() == 1) return VarianteCom(motor_->FormulaR1C1());
    if (mundo()->diario.sinMatriz()) return {};
    std::array<SAFEARRAYBOUND, 2> limites{
        {{static_cast<ULONG>(area_.filas()), 1}, {static_cast<ULONG>(area_.columnas()), 1}}};
    VarianteCom matriz = VarianteCom::deMatriz(SafeArrayCreate(VT_VARIANT, 2, limites.data()));
    for (LONG fila = 1; fila <= area_.filas(); ++fila) {
        for (LONG columna = 1; columna <= area_.columnas(); ++columna) {
            const VarianteCom valor(motor_->Item(fila, columna)->FormulaR1C1());
            VARIANT crudo = valor.crudo();
            std::array<LONG, 2> indices{fila, columna};
            SafeArrayPutElement(matriz.matriz(), indices.data(), &crudo);
        }
    }
    return matriz;
}

void RangoSustituto::escribir(const VARIANT& valor) const {
    if (V_VT(&valor) == (VT_ARRAY | VT_VARIANT)) {
        escribirMatriz(V_ARRAY(&valor));
        return;
    }
    if (area_.celdas() != 1) throw Rechazo{DISP_E_TYPEMISMATCH};
    const Variante contenido = excel::com::valorDe(exigirContenido(valor));
    exigirAdmisible(contenido);
    motor_->FormulaR1C1(contenido);
}

void RangoSustituto::exigirAdmisible(const Variante& valor) const {
    const auto rechazado = mundo()->diario.orden("rechaza");
    if (rechazado && valor == Variante(*rechazado)) throw excel::ErrorExcel("No se admite");
}

void RangoSustituto::escribirMatriz(SAFEARRAY* matriz) const {
    LONG filas = 0;
    LONG columnas = 0;
    if (SafeArrayGetDim(matriz) != 2) throw Rechazo{DISP_E_BADINDEX};
    SafeArrayGetUBound(matriz, 1, &filas);
    SafeArrayGetUBound(matriz, 2, &columnas);
    if (filas != area_.filas() || columnas != area_.columnas()) throw Rechazo{DISP_E_BADINDEX};
    for (LONG fila = 1; fila <= filas; ++fila) {
        for (LONG columna = 1; columna <= columnas; ++columna) {
            std::array<LONG, 2> indices{fila, columna};
            VarianteCom elemento;
            if (FAILED(SafeArrayGetElement(matriz, indices.data(), elemento.recibir()))) {
                throw Rechazo{DISP_E_BADINDEX};
            }
            const Variante valor = excel::com::valorDe(exigirContenido(elemento.crudo()));
            const auto* texto = std::get_if<std::string>(&valor);
            if (texto && texto->size() > kTextoMaximoEnMatriz) {
                throw excel::ErrorExcel("Texto demasiado largo para una matriz");
            }
            exigirAdmisible(valor);
            motor_->Item(fila, columna)->FormulaR1C1(valor);
        }
    }
}

}  // namespace bn::sustituto
