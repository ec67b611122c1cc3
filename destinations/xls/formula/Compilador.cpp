// SPDX-License-Identifier: MIT
#include "destinations/xls/formula/Compilador.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "destinations/excel/ObjectModel.h"
#include "destinations/xls/formula/Analizador.h"
#include "destinations/xls/formula/Ptg.h"

namespace bn::xls {

namespace {

using Hojas = std::pair<std::string, std::string>;

constexpr size_t kRgceMaximo = 1800;

/// Turns the parts of a formula into tokens, operands before their operator. Each part is told the
/// class its place asks for; that is what tells a reader whether a reference stands for itself, for
/// the one value in this row or column, or for all its values.
class Emisor {
 public:
    /// hojaPropia: references without a sheet get this one (names); nothing: none (cells).
    Emisor(ContextoFormula& contexto, std::optional<Hojas> hojaPropia)
        : contexto_(contexto), hojaPropia_(std::move(hojaPropia)) {}

    Rgce compilar(const Nodo& raiz) {
        if (esVolatil(raiz)) atributo(ptg::kAttrVolatil, 0);
        emitir(raiz, enNombre() ? 'R' : 'V');
        if (rgce_.size() > kRgceMaximo) {
            throw excel::ErrorExcel("La fórmula no es correcta: es demasiado larga.");
        }
        return std::move(rgce_);
    }

 private:
    bool enNombre() const { return hojaPropia_.has_value(); }

    static bool esVolatil(const Nodo& nodo) {
        return (nodo.funcion != nullptr && nodo.funcion->volatil) ||
               std::any_of(nodo.hijos.begin(), nodo.hijos.end(), esVolatil);
    }

    /// The class of an operator's operands.
    char claseDeOperando(char clase) const { return clase == 'A' || enNombre() ? 'A' : 'V'; }

    void atributo(uint8_t tipo, uint32_t dato) {
        rgce_.push_back(ptg::kAttr);
        rgce_.push_back(tipo);
        ptg::agregar16(rgce_, dato);
    }

    /// Room for the blanks in front of a token; donde: kBlancos, kBlancosAbrir or kBlancosCerrar.
    void blancos(const std::string& texto, uint8_t donde) {
        for (size_t i = 0; i < texto.size();) {
            size_t fin = texto.find_first_not_of(texto[i], i);
            fin = std::min({fin, texto.size(), i + 255});
            const auto tipo = static_cast<uint32_t>(donde + (texto[i] == '\n' ? ptg::kLineas : 0));
            atributo(ptg::kAttrSpace, tipo | static_cast<uint32_t>(fin - i) << 8);
            i = fin;
        }
    }

    void emitir(const Nodo& nodo, char clase) {
        switch (nodo.tipo) {
            case Nodo::Tipo::kLiteral:
                blancos(nodo.blancos, ptg::kBlancos);
                rgce_.insert(rgce_.end(), nodo.token.begin(), nodo.token.end());
                break;
            case Nodo::Tipo::kReferencia:
            case Nodo::Tipo::kReferenciaRota:
                referencia(nodo, clase);
                break;
            case Nodo::Tipo::kNombre:
                nombre(nodo, clase);
                break;
            case Nodo::Tipo::kCadena:
                cadena(nodo, claseDeOperando(clase));
                break;
            case Nodo::Tipo::kPrefijo:
                emitir(nodo.hijos[0], claseDeOperando(clase));
                blancos(nodo.blancos, ptg::kBlancos);
                rgce_.push_back(nodo.operadores[0].id);
                break;
            case Nodo::Tipo::kPorcentaje:
                emitir(nodo.hijos[0], claseDeOperando(clase));
                blancos(nodo.blancos, ptg::kBlancos);
                rgce_.push_back(ptg::kPercent);
                break;
            case Nodo::Tipo::kParentesis:
                emitir(nodo.hijos[0], clase);
                blancos(nodo.blancos, ptg::kBlancosAbrir);
                blancos(nodo.blancosCierre, ptg::kBlancosCerrar);
                rgce_.push_back(ptg::kParen);
                break;
            case Nodo::Tipo::kFuncion:
                funcion(nodo, clase);
                break;
            case Nodo::Tipo::kFalta:
                rgce_.push_back(ptg::kMissArg);
                break;
        }
    }

    void cadena(const Nodo& nodo, char clase) {
        emitir(nodo.hijos[0], clase);
        for (size_t i = 0; i < nodo.operadores.size(); ++i) {
            emitir(nodo.hijos[i + 1], clase);
            blancos(nodo.operadores[i].blancos, ptg::kBlancos);
            rgce_.push_back(nodo.operadores[i].id);
        }
    }

    void referencia(const Nodo& nodo, char clase) {
        blancos(nodo.blancos, ptg::kBlancos);
        const bool rota = nodo.tipo == Nodo::Tipo::kReferenciaRota;
        const bool area = nodo.referencia.area;
        const auto& hojas = nodo.hojas ? nodo.hojas : hojaPropia_;
        if (!hojas) {
            rgce_.push_back(ptg::conClase(area ? ptg::kArea : ptg::kRef, clase));
        } else {
            const uint8_t base = rota ? ptg::kRefErr3d : area ? ptg::kArea3d : ptg::kRef3d;
            rgce_.push_back(ptg::conClase(base, clase));
            ptg::agregar16(rgce_, xti(*hojas));
        }
        codificarReferencia(rgce_, nodo.referencia);
    }

    uint16_t xti(const Hojas& hojas) {
        const auto numero = contexto_.xtiDeHojas(hojas.first, hojas.second);
        if (!numero) {
            const bool varias = hojas.first != hojas.second;
            throw excel::ErrorExcel("La fórmula no es correcta: no existe la hoja \"" +
                                    hojas.first + (varias ? ":" + hojas.second : "") + "\".");
        }
        return *numero;
    }

    void nombre(const Nodo& nodo, char clase) {
        const auto indice = contexto_.indiceDeNombre(nodo.palabra);
        if (!indice) {
            throw excel::ErrorExcel("La fórmula no es correcta: no existe el nombre \"" +
                                    nodo.palabra + "\".");
        }
        blancos(nodo.blancos, ptg::kBlancos);
        rgce_.push_back(ptg::conClase(ptg::kName, clase));
        ptg::agregar16(rgce_, *indice);
        ptg::agregar16(rgce_, 0);
    }

    char claseDeArgumento(const Funcion& f, size_t i, char clase) const {
        const char pedida = f.parametro(i);
        if (pedida == 'P') return clase == 'A' ? 'A' : 'R';
        if (pedida == 'V') return claseDeOperando(clase);
        return pedida;
    }

    char claseDeResultado(const Funcion& f, char clase) const {
        if (f.resultado == 'R') return clase;
        if (clase == 'A' || enNombre()) return 'A';
        return clase == 'R' ? f.resultado : 'V';
    }

    void funcion(const Nodo& nodo, char clase) {
        const Funcion& f = *nodo.funcion;
        if (f.numero == kFuncionSi) {
            condicion(nodo, clase);
            return;
        }
        for (size_t i = 0; i < nodo.hijos.size(); ++i) {
            emitir(nodo.hijos[i], claseDeArgumento(f, i, clase));
        }
        blancosDeFuncion(nodo);
        if (f.numero == kFuncionSuma && nodo.hijos.size() == 1) {
            atributo(ptg::kAttrSum, 0);
            return;
        }
        llamada(nodo, clase);
    }

    void blancosDeFuncion(const Nodo& nodo) {
        blancos(nodo.blancos, ptg::kBlancos);
        blancos(nodo.blancosCierre, ptg::kBlancosCerrar);
    }

    void llamada(const Nodo& nodo, char clase) {
        const Funcion& f = *nodo.funcion;
        const bool fija = f.minimo == f.maximo;
        rgce_.push_back(
            ptg::conClase(fija ? ptg::kFunc : ptg::kFuncVar, claseDeResultado(f, clase)));
        if (!fija) rgce_.push_back(static_cast<uint8_t>(nodo.hijos.size()));
        ptg::agregar16(rgce_, f.numero);
    }

    /// IF evaluates only one of its branches: jumps lead past the other one.
    void condicion(const Nodo& nodo, char clase) {
        const auto argumento = [&](size_t i) {
            emitir(nodo.hijos[i], claseDeArgumento(*nodo.funcion, i, clase));
        };
        argumento(0);
        const size_t siNo = rgce_.size();
        atributo(ptg::kAttrIf, 0);
        std::vector<size_t> saltos;
        for (size_t i = 1; i < nodo.hijos.size(); ++i) {
            argumento(i);
            // Nothing may come between the last jump and the call: readers look for the pair.
            if (i + 1 == nodo.hijos.size()) blancosDeFuncion(nodo);
            saltos.push_back(rgce_.size());
            atributo(ptg::kAttrSkip, 0);
            if (i == 1) anotar(siNo, rgce_.size() - (siNo + 4));
        }
        llamada(nodo, clase);
        for (const size_t salto : saltos) anotar(salto, rgce_.size() - (salto + 4) - 1);
    }

    void anotar(size_t atributo, size_t distancia) {
        ptg::poner16(rgce_, atributo + 2, static_cast<uint32_t>(distancia));
    }

    ContextoFormula& contexto_;
    std::optional<Hojas> hojaPropia_;
    Rgce rgce_;
};

}  // namespace

Rgce compilar(std::string_view formulaR1C1, PosicionCelda celda, ContextoFormula& contexto) {
    return Emisor(contexto, std::nullopt).compilar(analizar(Notacion::kR1C1, formulaR1C1, celda));
}

Rgce compilarNombre(std::string_view refersTo, const std::string& hojaActiva,
                    ContextoFormula& contexto) {
    return Emisor(contexto, Hojas(hojaActiva, hojaActiva))
        .compilar(analizar(Notacion::kA1, refersTo, {}));
}

}  // namespace bn::xls
