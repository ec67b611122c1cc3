// SPDX-License-Identifier: MIT
#include "destinations/xls/formula/Descompilador.h"

#include <bit>
#include <cmath>
#include <utility>
#include <vector>

#include "config/Codificacion.h"
#include "destinations/xls/formula/Analizador.h"
#include "destinations/xls/formula/Numeros.h"
#include "destinations/xls/formula/Ptg.h"
#include "destinations/xls/formula/Tokens.h"

namespace bn::xls {

namespace {

constexpr size_t kRgceMaximo = 8224;  // what one record can hold

// How tightly a text holds together; an operand looser than its operator needs parentheses, which
// other writers may have left out.
constexpr int kUnion = 0;
constexpr int kPorcentaje = 6;
constexpr int kSigno = 7;
constexpr int kAtomo = 11;

struct Trozo {
    std::string texto;
    int fuerza = kAtomo;
    bool falta = false;  // an argument left out
};

struct OperadorBinario {
    const char* texto;
    int fuerza;
};

std::optional<OperadorBinario> operadorBinario(uint8_t id) {
    switch (id) {
        case ptg::kAdd:
            return OperadorBinario{"+", 3};
        case ptg::kSub:
            return OperadorBinario{"-", 3};
        case ptg::kMul:
            return OperadorBinario{"*", 4};
        case ptg::kDiv:
            return OperadorBinario{"/", 4};
        case ptg::kPower:
            return OperadorBinario{"^", 5};
        case ptg::kConcat:
            return OperadorBinario{"&", 2};
        case ptg::kLt:
            return OperadorBinario{"<", 1};
        case ptg::kLe:
            return OperadorBinario{"<=", 1};
        case ptg::kEq:
            return OperadorBinario{"=", 1};
        case ptg::kGe:
            return OperadorBinario{">=", 1};
        case ptg::kGt:
            return OperadorBinario{">", 1};
        case ptg::kNe:
            return OperadorBinario{"<>", 1};
        case ptg::kUnion:
            return OperadorBinario{",", kUnion};
        case ptg::kIsect:
            return OperadorBinario{" ", 8};
        case ptg::kRange:
            return OperadorBinario{":", 9};
        default:
            return std::nullopt;
    }
}

class Escritor {
 public:
    Escritor(Notacion notacion, PosicionCelda celda, ContextoFormula& contexto)
        : notacion_(notacion), celda_(celda), contexto_(contexto) {}

    std::optional<std::string> escribir(std::span<const uint8_t> rgce) {
        if (rgce.size() > kRgceMaximo) return std::nullopt;
        const bool entendida = recorrerTokens(
            rgce, [this](size_t, std::span<const uint8_t> token) { return leer(token); });
        if (!entendida || pila_.size() != 1 || pila_[0].falta) return std::nullopt;
        return "=" + pila_[0].texto;
    }

 private:
    /// Each of these answers false for what cannot be put into words.
    bool leer(std::span<const uint8_t> token) {
        const uint8_t id = ptg::base(token[0]);
        if (const auto operador = operadorBinario(id)) return binario(*operador);
        switch (id) {
            case ptg::kUplus:
            case ptg::kUminus:
                return prefijo(id == ptg::kUplus ? "+" : "-");
            case ptg::kPercent:
                return porcentaje();
            case ptg::kParen:
                return parentesis();
            case ptg::kMissArg:
                pila_.push_back({"", kAtomo, true});
                return true;
            case ptg::kAttr:
                return atributo(token);
            case ptg::kStr:
            case ptg::kErr:
            case ptg::kBool:
            case ptg::kInt:
            case ptg::kNum:
                return literal(id, token);
            case ptg::kFunc:
            case ptg::kFuncVar:
                return funcion(id, token);
            case ptg::kMemArea:  // only cached: what they stand for follows as tokens
            case ptg::kMemErr:
            case ptg::kMemNoMem:
            case ptg::kMemFunc:
            case ptg::kMemAreaN:
            case ptg::kMemNoMemN:
                return true;
            default:
                return referencia(id, token);
        }
    }

    std::string tomarBlancos() { return std::exchange(blancos_, {}); }

    bool apilar(std::string texto, int fuerza = kAtomo) {
        pila_.push_back({tomarBlancos() + std::move(texto), fuerza});
        return true;
    }

    /// The topmost value, in parentheses if it holds together less than fuerza asks.
    std::optional<std::string> desapilar(int fuerza) {
        if (pila_.empty() || pila_.back().falta) return std::nullopt;
        Trozo trozo = std::move(pila_.back());
        pila_.pop_back();
        if (trozo.fuerza >= fuerza) return std::move(trozo.texto);
        return "(" + trozo.texto + ")";
    }

    bool binario(const OperadorBinario& operador) {
        const auto derecho = desapilar(operador.fuerza + 1);
        auto izquierdo = derecho ? desapilar(operador.fuerza) : std::nullopt;
        if (!izquierdo) return false;
        *izquierdo += tomarBlancos();
        *izquierdo += operador.texto;
        *izquierdo += *derecho;
        pila_.push_back({std::move(*izquierdo), operador.fuerza});
        return true;
    }

    bool prefijo(const char* signo) {
        const auto operando = desapilar(kSigno);
        return operando && apilar(signo + *operando, kSigno);
    }

    bool porcentaje() {
        auto operando = desapilar(kPorcentaje);
        if (!operando) return false;
        *operando += tomarBlancos();
        pila_.push_back({*operando + "%", kPorcentaje});
        return true;
    }

    bool parentesis() {
        const auto dentro = desapilar(kUnion);
        if (!dentro) return false;
        const std::string cierre = std::exchange(blancosCerrar_, {});
        return apilar(std::exchange(blancosAbrir_, {}) + "(" + *dentro + cierre + ")");
    }

    bool atributo(std::span<const uint8_t> token) {
        if ((token[1] & ptg::kAttrSum) != 0) return llamada(*buscarFuncion(kFuncionSuma), 1);
        if ((token[1] & ptg::kAttrSpace) == 0) return true;
        const std::string texto(token[3], (token[2] & ptg::kLineas) != 0 ? '\n' : ' ');
        switch (token[2] & ~ptg::kLineas) {
            case ptg::kBlancosAbrir:
                blancosAbrir_ += texto;
                return true;
            case ptg::kBlancosCerrar:
                blancosCerrar_ += texto;
                return true;
            default:
                blancos_ += texto;
                return true;
        }
    }

    bool literal(uint8_t id, std::span<const uint8_t> token) {
        if (id == ptg::kStr) return texto(token);
        if (id == ptg::kBool) return apilar(token[1] != 0 ? "TRUE" : "FALSE");
        if (id == ptg::kInt) return apilar(std::to_string(ptg::leer16(token, 1)));
        if (id == ptg::kErr) {
            const char* error = textoDeError(token[1]);
            return error != nullptr && apilar(error);
        }
        uint64_t bits = 0;
        for (size_t i = 8; i > 0; --i) bits = bits << 8 | token[i];
        const auto valor = std::bit_cast<double>(bits);
        return std::isfinite(valor) && apilar(escribirNumero(valor), valor < 0 ? kSigno : kAtomo);
    }

    bool texto(std::span<const uint8_t> token) {
        const bool ancho = token[2] == 1;
        std::u16string unidades;
        for (size_t i = 3; i < token.size(); i += ancho ? 2 : 1) {
            const char16_t unidad = ancho ? ptg::leer16(token, i) : token[i];
            unidades += unidad;
            if (unidad == u'"') unidades += unidad;
        }
        return apilar("\"" + u16AUtf8(unidades) + "\"");
    }

    bool funcion(uint8_t id, std::span<const uint8_t> token) {
        const bool fija = id == ptg::kFunc;
        // The upper bits of a variable call (prompt, command) make it no worksheet function.
        const Funcion* f = buscarFuncion(ptg::leer16(token, fija ? 1 : 2));
        if (f == nullptr || (fija && f->minimo != f->maximo)) return false;
        return llamada(*f, fija ? f->minimo : token[1]);
    }

    bool llamada(const Funcion& f, size_t argumentos) {
        if (argumentos > pila_.size()) return false;
        std::string texto(f.nombre);
        texto += '(';
        for (size_t i = pila_.size() - argumentos; i < pila_.size(); ++i) {
            const bool suelto = pila_[i].fuerza == kUnion;
            if (i > pila_.size() - argumentos) texto += ',';
            texto += suelto ? "(" + pila_[i].texto + ")" : pila_[i].texto;
        }
        pila_.resize(pila_.size() - argumentos);
        return apilar(texto + std::exchange(blancosCerrar_, {}) + ")");
    }

    bool referencia(uint8_t id, std::span<const uint8_t> token) {
        switch (id) {
            case ptg::kRef:
            case ptg::kArea:
                return celdas("", token.subspan(1), nullptr);
            case ptg::kRefN:
            case ptg::kAreaN:
                return celdas("", token.subspan(1), &celda_);
            case ptg::kRefErr:
            case ptg::kAreaErr:
                return apilar("#REF!");
            case ptg::kName: {
                const auto nombre = contexto_.nombreDeIndice(ptg::leer16(token, 1));
                return nombre && apilar(*nombre);
            }
            case ptg::kRef3d:
            case ptg::kArea3d:
            case ptg::kRefErr3d:
            case ptg::kAreaErr3d:
                return tridimensional(id, token);
            default:
                return false;
        }
    }

    bool tridimensional(uint8_t id, std::span<const uint8_t> token) {
        const auto hojas = contexto_.hojasDeXti(ptg::leer16(token, 1));
        const bool rota = id == ptg::kRefErr3d || id == ptg::kAreaErr3d;
        if (!hojas) return false;
        const std::string prefijo = escribirHojas(hojas->first, hojas->second);
        return rota ? apilar(prefijo + "#REF!") : celdas(prefijo, token.subspan(3), nullptr);
    }

    bool celdas(const std::string& prefijo, std::span<const uint8_t> bytes,
                const PosicionCelda* desde) {
        const auto r = decodificarReferencia(bytes, desde);
        return r && apilar(prefijo + escribirReferencia(notacion_, *r, celda_));
    }

    Notacion notacion_;
    PosicionCelda celda_;
    ContextoFormula& contexto_;
    std::vector<Trozo> pila_;
    std::string blancos_;  // before the next token, and before its parentheses
    std::string blancosAbrir_;
    std::string blancosCerrar_;
};

}  // namespace

std::optional<std::string> descompilar(std::span<const uint8_t> rgce, PosicionCelda celda,
                                       ContextoFormula& contexto) {
    return Escritor(Notacion::kR1C1, celda, contexto).escribir(rgce);
}

std::optional<std::string> descompilarNombre(std::span<const uint8_t> rgce,
                                             ContextoFormula& contexto) {
    return Escritor(Notacion::kA1, {}, contexto).escribir(rgce);
}

}  // namespace bn::xls
