// SPDX-License-Identifier: MIT
#include "destinations/xls/Formulas.h"

#include <algorithm>
#include <span>
#include <utility>

#include "destinations/xls/Bytes.h"
#include "destinations/xls/TextoBiff.h"
#include "destinations/xls/formula/Compilador.h"
#include "destinations/xls/formula/Descompilador.h"
#include "destinations/xls/formula/Desplazamiento.h"
#include "destinations/xls/formula/Tokens.h"

namespace bn::xls {
namespace {

constexpr size_t kPosLargo = 20;  // in a FORMULA record's data
constexpr size_t kPosTokens = 22;
constexpr uint16_t kCalcularSiempre = 1;

Rgce tokensEn(std::string_view datos, size_t posLargo) {
    const Vista vista(datos);
    const std::string_view bytes = vista.trozo(posLargo + 2, vista.u16(posLargo));
    return {bytes.begin(), bytes.end()};
}

// A cell's whole records, one by one: FORMULA first, then what belongs to it.
std::optional<RegistroVisto> buscarEn(std::string_view registros, uint16_t numero) {
    LectorRegistros lector(registros);
    while (const auto registro = lector.siguiente()) {
        if (registro->id == numero) return registro;
    }
    return std::nullopt;
}

Rgce tokensDe(const std::string& registros) {
    return tokensEn(std::string_view(registros).substr(4), kPosLargo);
}

// What stands behind a formula's own tokens and belongs to them: the values of constant arrays.
std::string valoresDeMatrices(const std::string& registros) {
    const RegistroVisto formula = *LectorRegistros(registros).siguiente();
    const Vista datos(formula.datos);
    return std::string(datos.desde(kPosTokens + size_t{datos.u16(kPosLargo)}));
}

// The FORMULA record with other tokens and at another cell, and its text result behind it. What
// hands the tokens over to other cells (SHRFMLA and its like) is left out.
std::string conTokens(const std::string& registros, const Rgce& tokens, PosicionCelda posicion,
                      const std::string& valores = {}) {
    LectorRegistros lector(registros);
    const auto formula = lector.siguiente();
    std::string datos(Vista(formula->datos).trozo(0, kPosTokens));
    cambiar16(datos, 0, static_cast<uint32_t>(posicion.fila));
    cambiar16(datos, 2, static_cast<uint32_t>(posicion.columna));
    cambiar16(datos, kPosLargo, static_cast<uint32_t>(tokens.size()));
    datos.append(tokens.begin(), tokens.end());
    datos += valores;
    if (datos.size() > kMaximoDatos) rechazar("La fórmula es demasiado larga.");
    std::string salida;
    ponerRegistro(salida, id::kFormula, datos);
    bool enTexto = false;
    while (const auto registro = lector.siguiente()) {
        enTexto = registro->id == id::kString || (enTexto && registro->id == id::kContinue);
        if (enTexto) ponerRegistro(salida, registro->id, registro->datos);
    }
    return salida;
}

struct Compartida {
    Area area;
    Rgce tokens;
    bool deMatriz = false;
};

std::optional<Compartida> compartidaEn(const std::string& registros) {
    if (const auto registro = buscarEn(registros, id::kShrFmla)) {
        const Vista datos(registro->datos);
        return Compartida{{datos.u16(0), datos.u16(2), datos.u8(4), datos.u8(5)},
                          tokensEn(registro->datos, 8),
                          false};
    }
    if (const auto registro = buscarEn(registros, id::kArray)) {
        const Vista datos(registro->datos);
        return Compartida{{datos.u16(0), datos.u16(2), datos.u8(4), datos.u8(5)},
                          tokensEn(registro->datos, 12),
                          true};
    }
    return std::nullopt;
}

std::optional<Compartida> compartidaDe(const TablaDeCeldas& tabla, const Rgce& tokens) {
    const auto ancla = anclaCompartida(tokens);
    if (!ancla) return std::nullopt;
    const Celda* celda = tabla.buscar(ancla->fila, ancla->columna);
    if (celda == nullptr || !esFormula(tabla, *celda)) return std::nullopt;
    return compartidaEn(tabla.crudo(*celda));
}

}  // namespace

std::optional<size_t> ContextoDeLibro::lugarDeHoja(const std::string& nombre) const {
    for (size_t i = 0; i < libro_.hojas().size(); ++i) {
        if (mismoNombre(libro_.hojas()[i]->nombre, nombre)) return i;
    }
    return std::nullopt;
}

std::optional<uint16_t> ContextoDeLibro::xtiDeHojas(const std::string& primera,
                                                    const std::string& ultima) {
    const auto desde = lugarDeHoja(primera);
    const auto hasta = lugarDeHoja(ultima);
    if (!desde || !hasta || *hasta < *desde) return std::nullopt;
    libro_.tocar();
    return libro_.librosExternos().xti(static_cast<int32_t>(*desde), static_cast<int32_t>(*hasta),
                                       libro_.hojas().size());
}

std::optional<std::pair<std::string, std::string>> ContextoDeLibro::hojasDeXti(uint16_t xti) {
    const auto hojas = libro_.librosExternos().hojas(xti);
    if (!hojas || static_cast<size_t>(hojas->second) >= libro_.hojas().size()) return std::nullopt;
    return std::pair(libro_.hojas()[static_cast<size_t>(hojas->first)]->nombre,
                     libro_.hojas()[static_cast<size_t>(hojas->second)]->nombre);
}

std::optional<uint16_t> ContextoDeLibro::indiceDeNombre(const std::string& nombre) {
    if (hoja_ != nullptr) {
        const auto hoja = static_cast<uint16_t>(libro_.lugarDe(*hoja_) + 1);
        if (const auto local = libro_.nombres().buscar(nombre, hoja)) return local;
    }
    return libro_.nombres().buscar(nombre, 0);
}

std::optional<std::string> ContextoDeLibro::nombreDeIndice(uint16_t indice) {
    if (indice == 0 || indice > libro_.nombres().cuantos()) return std::nullopt;
    return libro_.nombres().leer(indice).texto;
}

bool esFormula(const TablaDeCeldas& tabla, const Celda& celda) {
    return celda.tipo == TipoCelda::kCruda && Vista(tabla.crudo(celda)).u16(0) == id::kFormula;
}

std::string textoDeFormula(Hoja& hoja, const Celda& celda, PosicionCelda posicion) {
    const TablaDeCeldas& tabla = hoja.celdas->tabla();
    Rgce tokens = tokensDe(tabla.crudo(celda));
    if (const auto compartida = compartidaDe(tabla, tokens)) tokens = compartida->tokens;
    ContextoDeLibro contexto(*hoja.libro, &hoja);
    return descompilar(tokens, posicion, contexto).value_or(kIndescifrable);
}

std::string registroDeFormula(Hoja& hoja, const std::string& texto, PosicionCelda posicion,
                              uint16_t xf) {
    ContextoDeLibro contexto(*hoja.libro, &hoja);
    const Rgce tokens = compilar(texto, posicion, contexto);
    std::string datos;
    poner16(datos, static_cast<uint32_t>(posicion.fila));
    poner16(datos, static_cast<uint32_t>(posicion.columna));
    poner16(datos, xf);
    ponerDoble(datos, 0);
    poner16(datos, kCalcularSiempre);
    poner32(datos, 0);
    poner16(datos, static_cast<uint32_t>(tokens.size()));
    datos.append(tokens.begin(), tokens.end());
    if (datos.size() > kMaximoDatos) rechazar("La fórmula es demasiado larga.");
    std::string salida;
    ponerRegistro(salida, id::kFormula, datos);
    return salida;
}

std::string copiarFormula(Hoja& hoja, const Celda& celda, PosicionCelda desde,
                          PosicionCelda hasta) {
    constexpr const char* kIncomprensible =
        "Una de las celdas que se copian contiene una fórmula que no se puede copiar.";
    const TablaDeCeldas& tabla = hoja.celdas->tabla();
    const std::string& registros = tabla.crudo(celda);
    Rgce tokens = tokensDe(registros);
    std::string valores = valoresDeMatrices(registros);
    if (anclaCompartida(tokens)) {
        valores.clear();
        const auto compartida = compartidaDe(tabla, tokens);
        if (!compartida || compartida->deMatriz) rechazar(kIncomprensible);
        const auto propios = descompartir(compartida->tokens, desde);
        if (!propios) rechazar(kIncomprensible);
        tokens = *propios;
    }
    const auto movidos =
        aplicarDesplazamiento(tokens, hasta.fila - desde.fila, hasta.columna - desde.columna);
    if (!movidos) rechazar(kIncomprensible);
    return conTokens(registros, *movidos, hasta, valores);
}

void soltarCompartida(Hoja& hoja, const Celda& celda, PosicionCelda posicion) {
    TablaDeCeldas& tabla = hoja.celdas->tabla();
    const auto compartida = compartidaEn(tabla.crudo(celda));
    if (!compartida || compartida->deMatriz) return;
    const int32_t ultima = std::min(compartida->area.fila1, tabla.cuantasFilas() - 1);
    std::vector<std::pair<const Celda*, std::string>> nuevos;
    for (int32_t i = compartida->area.fila0; i <= ultima; ++i) {
        for (const Celda& otra : tabla.fila(i)->celdas) {
            if (!compartida->area.contiene(i, otra.columna) || !esFormula(tabla, otra)) continue;
            const std::string& registros = tabla.crudo(otra);
            const PosicionCelda sitio{i, otra.columna};
            if (sitio == posicion || anclaCompartida(tokensDe(registros)) != posicion) continue;
            const auto propios = descompartir(compartida->tokens, sitio);
            if (!propios)
                rechazar(
                    "Otras celdas dependen de la fórmula de esta, que no se puede "
                    "separar de ellas.");
            nuevos.emplace_back(&otra, conTokens(registros, *propios, sitio));
        }
    }
    for (auto& [otra, registros] : nuevos) tabla.crudo(*otra) = std::move(registros);
}

void exigirDivisible(Hoja& hoja, const Area& area) {
    std::vector<Area>& areas = hoja.celdas->areasIndivisibles();
    for (const Area& entera : areas) {
        if (entera.toca(area) && !area.contiene(entera)) {
            rechazar("No se puede cambiar solo una parte de una matriz o de una tabla de datos.");
        }
    }
    std::erase_if(areas, [&](const Area& entera) { return area.contiene(entera); });
}

}  // namespace bn::xls
