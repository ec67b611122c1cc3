// SPDX-License-Identifier: MIT
#include "destinations/xls/formula/Analizador.h"

#include <array>
#include <bit>
#include <cmath>

#include "config/Codificacion.h"
#include "destinations/excel/ObjectModel.h"
#include "destinations/xls/formula/Numeros.h"
#include "destinations/xls/formula/Ptg.h"

namespace bn::xls {

namespace {

constexpr size_t kLargoMaximo = 8192;  // bytes of text
constexpr int kHonduraMaxima = 64;
constexpr size_t kTextoMaximo = 255;  // UTF-16 units of a text in a formula

constexpr auto kErrores = std::to_array<std::pair<uint8_t, const char*>>({{0x00, "#NULL!"},
                                                                          {0x07, "#DIV/0!"},
                                                                          {0x0F, "#VALUE!"},
                                                                          {0x17, "#REF!"},
                                                                          {0x1D, "#NAME?"},
                                                                          {0x24, "#NUM!"},
                                                                          {0x2A, "#N/A"}});

struct SignoOperador {
    std::string_view texto;
    uint8_t id;
    int rango;
};

// The longer sign first where one begins another.
constexpr auto kOperadores = std::to_array<SignoOperador>({{"<=", ptg::kLe, 0},
                                                           {"<>", ptg::kNe, 0},
                                                           {">=", ptg::kGe, 0},
                                                           {"<", ptg::kLt, 0},
                                                           {">", ptg::kGt, 0},
                                                           {"=", ptg::kEq, 0},
                                                           {"&", ptg::kConcat, 1},
                                                           {"+", ptg::kAdd, 2},
                                                           {"-", ptg::kSub, 2},
                                                           {"*", ptg::kMul, 3},
                                                           {"/", ptg::kDiv, 3},
                                                           {"^", ptg::kPower, 4}});
constexpr int kRangos = 5;

bool esBlanco(char c) { return c == ' ' || c == '\n'; }
bool esCifra(char c) { return c >= '0' && c <= '9'; }

class Analizador {
 public:
    Analizador(Notacion notacion, std::string_view texto, PosicionCelda celda)
        : notacion_(notacion), texto_(texto), celda_(celda) {}

    Nodo formula() {
        if (texto_.size() > kLargoMaximo) fallar("es demasiado larga");
        if (!esUtf8Valido(texto_)) fallar("su texto no es válido");
        if (actual() != '=') fallar("no empieza por =");
        ++pos_;
        Nodo nodo = expresion(0);
        leerBlancos();
        if (pos_ < texto_.size()) fallar("no se entiende \"" + resto() + "\"");
        return nodo;
    }

 private:
    // Counts a level for as long as it lives, so that no text can exhaust the stack.
    class Nivel {
     public:
        explicit Nivel(Analizador& dueno) : dueno_(dueno) {
            if (dueno_.hondura_ >= kHonduraMaxima) dueno_.fallar("tiene demasiados niveles");
            ++dueno_.hondura_;
        }
        Nivel(const Nivel&) = delete;
        Nivel& operator=(const Nivel&) = delete;
        ~Nivel() { --dueno_.hondura_; }

     private:
        Analizador& dueno_;
    };

    [[noreturn]] void fallar(const std::string& motivo) const {
        throw excel::ErrorExcel("La fórmula no es correcta: " + motivo + " (posición " +
                                std::to_string(caracteresDelante() + 1) + ").");
    }

    size_t caracteresDelante() const {
        size_t n = 0;
        for (const char c : texto_.substr(0, pos_)) {
            if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) ++n;
        }
        return n;
    }

    char actual() const { return pos_ < texto_.size() ? texto_[pos_] : '\0'; }

    std::string resto() const {
        size_t fin = std::min(texto_.size(), pos_ + 20);
        while (fin < texto_.size() && (static_cast<unsigned char>(texto_[fin]) & 0xC0) == 0x80) {
            ++fin;
        }
        return std::string(texto_.substr(pos_, fin - pos_));
    }

    std::string leerBlancos() {
        const size_t inicio = pos_;
        while (esBlanco(actual())) ++pos_;
        return std::string(texto_.substr(inicio, pos_ - inicio));
    }

    const SignoOperador* operadorDeRango(int rango) const {
        for (const SignoOperador& o : kOperadores) {
            if (texto_.substr(pos_, o.texto.size()) == o.texto) {
                return o.rango == rango ? &o : nullptr;
            }
        }
        return nullptr;
    }

    Nodo expresion(int rango) {
        if (rango == kRangos) return porcentaje();
        Nodo cadena;
        cadena.tipo = Nodo::Tipo::kCadena;
        cadena.hijos.push_back(expresion(rango + 1));
        for (;;) {
            const size_t antes = pos_;
            std::string blancos = leerBlancos();
            const SignoOperador* operador = operadorDeRango(rango);
            if (operador == nullptr) {
                pos_ = antes;
                break;
            }
            pos_ += operador->texto.size();
            cadena.operadores.push_back({operador->id, std::move(blancos)});
            cadena.hijos.push_back(expresion(rango + 1));
        }
        if (cadena.operadores.empty()) return sacarHijo(cadena);
        return cadena;
    }

    static Nodo sacarHijo(Nodo& padre) {
        Nodo hijo = std::move(padre.hijos.front());
        return hijo;
    }

    /// A sign binds tighter than "%", as in a worksheet.
    Nodo porcentaje() {
        Nodo nodo = prefijo();
        for (int veces = 0;; ++veces) {
            const size_t antes = pos_;
            std::string blancos = leerBlancos();
            if (actual() != '%') {
                pos_ = antes;
                return nodo;
            }
            if (veces == kHonduraMaxima) fallar("tiene demasiados niveles");
            ++pos_;
            Nodo tanto;
            tanto.tipo = Nodo::Tipo::kPorcentaje;
            tanto.blancos = std::move(blancos);
            tanto.hijos.push_back(std::move(nodo));
            nodo = std::move(tanto);
        }
    }

    Nodo prefijo() {
        const Nivel nivel(*this);
        std::string blancos = leerBlancos();
        if (actual() != '-' && actual() != '+') return operando(std::move(blancos));
        Nodo nodo;
        nodo.tipo = Nodo::Tipo::kPrefijo;
        nodo.blancos = std::move(blancos);
        nodo.operadores.push_back({actual() == '-' ? ptg::kUminus : ptg::kUplus, {}});
        ++pos_;
        nodo.hijos.push_back(prefijo());
        return nodo;
    }

    Nodo operando(std::string blancos) {
        Nodo nodo = operandoSinBlancos();
        nodo.blancos = std::move(blancos);
        return nodo;
    }

    Nodo operandoSinBlancos() {
        if (pos_ == texto_.size()) fallar("falta un valor");
        if (actual() == '(') return parentesis();
        if (actual() == '"') return literalDeTexto();
        if (actual() == '#') return literalDeError();
        if (actual() == '\'') return trasHojas(hojasEntreComillas());
        if (auto hojas = hojasSinComillas()) return trasHojas(std::move(*hojas));
        if (const auto r = leerReferencia(notacion_, texto_, pos_, celda_)) {
            if (actual() == ':') fallar("no se admite el operador :");
            Nodo nodo;
            nodo.tipo = Nodo::Tipo::kReferencia;
            nodo.referencia = *r;
            return nodo;
        }
        if (esCifra(actual()) || actual() == '.') return literalDeNumero();
        if (esDePalabra(actual())) return palabra();
        fallar("no se entiende \"" + resto() + "\"");
    }

    Nodo parentesis() {
        ++pos_;
        Nodo nodo;
        nodo.tipo = Nodo::Tipo::kParentesis;
        nodo.hijos.push_back(expresion(0));
        nodo.blancosCierre = leerBlancos();
        if (actual() != ')') fallar("falta un paréntesis de cierre");
        ++pos_;
        return nodo;
    }

    static Nodo literal(Rgce token) {
        Nodo nodo;
        nodo.tipo = Nodo::Tipo::kLiteral;
        nodo.token = std::move(token);
        return nodo;
    }

    Nodo literalDeTexto() {
        std::string contenido;
        for (++pos_;; ++pos_) {
            if (pos_ == texto_.size()) fallar("faltan las comillas de cierre");
            if (actual() == '"' && texto_.substr(pos_, 2) != "\"\"") break;
            if (actual() == '"') ++pos_;
            contenido += actual();
        }
        ++pos_;
        const std::u16string unidades = utf8AU16(contenido);
        if (unidades.size() > kTextoMaximo) fallar("un texto pasa de 255 caracteres");
        bool ancho = false;
        for (const char16_t u : unidades) ancho = ancho || u > 0xFF;
        Rgce token{ptg::kStr, static_cast<uint8_t>(unidades.size()),
                   static_cast<uint8_t>(ancho ? 1 : 0)};
        for (const char16_t u : unidades) {
            token.push_back(static_cast<uint8_t>(u));
            if (ancho) token.push_back(static_cast<uint8_t>(u >> 8));
        }
        return literal(std::move(token));
    }

    Nodo literalDeError() {
        const auto error = leerErrorLiteral(texto_.substr(pos_));
        if (!error) fallar("no se entiende \"" + resto() + "\"");
        pos_ += error->second;
        return literal({ptg::kErr, error->first});
    }

    Nodo literalDeNumero() {
        const size_t inicio = pos_;
        while (esCifra(actual()) || actual() == '.') ++pos_;
        if (actual() == 'E' || actual() == 'e') {
            ++pos_;
            if (actual() == '+' || actual() == '-') ++pos_;
            while (esCifra(actual())) ++pos_;
        }
        const auto valor = leerNumero(texto_.substr(inicio, pos_ - inicio));
        if (!valor || esDePalabra(actual())) {
            pos_ = inicio;
            fallar("\"" + resto() + "\" no es un número admitido");
        }
        constexpr double kMaximoDeEntero = 65535;
        const bool entero = *valor <= kMaximoDeEntero && std::trunc(*valor) == *valor;
        Rgce token{entero ? ptg::kInt : ptg::kNum};
        if (entero) {
            ptg::agregar16(token, static_cast<uint32_t>(*valor));
        } else {
            const auto bits = std::bit_cast<uint64_t>(*valor);
            for (unsigned i = 0; i < 8; ++i) token.push_back(static_cast<uint8_t>(bits >> (8 * i)));
        }
        return literal(std::move(token));
    }

    /// Leaves pos_ behind a bare word; "" when there is none.
    std::string leerPalabra() {
        const size_t inicio = pos_;
        while (esDePalabra(actual())) ++pos_;
        return std::string(texto_.substr(inicio, pos_ - inicio));
    }

    using Hojas = std::pair<std::string, std::string>;

    /// Sheet! or First:Last! in front of a reference; pos_ stays when there is none.
    std::optional<Hojas> hojasSinComillas() {
        const size_t inicio = pos_;
        const std::string primera = leerPalabra();
        std::string ultima = primera;
        if (actual() == ':') {
            ++pos_;
            ultima = leerPalabra();
        }
        if (actual() == '!' && !primera.empty() && !ultima.empty()) {
            ++pos_;
            return Hojas(primera, ultima);
        }
        pos_ = inicio;
        return std::nullopt;
    }

    Hojas hojasEntreComillas() {
        std::string contenido;
        for (++pos_;; ++pos_) {
            if (pos_ == texto_.size()) fallar("faltan las comillas de cierre de la hoja");
            if (actual() == '\'' && texto_.substr(pos_, 2) != "''") break;
            if (actual() == '\'') ++pos_;
            contenido += actual();
        }
        ++pos_;
        if (actual() != '!') fallar("falta ! tras la hoja");
        ++pos_;
        const size_t dosPuntos = contenido.find(':');  // no sheet's name can hold one
        if (dosPuntos == std::string::npos) return {contenido, contenido};
        return {contenido.substr(0, dosPuntos), contenido.substr(dosPuntos + 1)};
    }

    Nodo trasHojas(Hojas hojas) {
        Nodo nodo;
        nodo.hojas = std::move(hojas);
        constexpr std::string_view kRota = "#REF!";
        if (texto_.substr(pos_, kRota.size()) == kRota) {
            pos_ += kRota.size();
            nodo.tipo = Nodo::Tipo::kReferenciaRota;
            return nodo;
        }
        const auto r = leerReferencia(notacion_, texto_, pos_, celda_);
        if (!r) fallar("no es una referencia \"" + resto() + "\"");
        if (actual() == ':') fallar("no se admite el operador :");
        nodo.tipo = Nodo::Tipo::kReferencia;
        nodo.referencia = *r;
        return nodo;
    }

    Nodo palabra() {
        Nodo nodo;
        nodo.palabra = leerPalabra();
        const std::string enMayusculas = mayusculasAscii(nodo.palabra);
        const size_t tras = pos_;
        leerBlancos();
        if (actual() == '(') return funcion(enMayusculas);
        pos_ = tras;
        if (enMayusculas == "TRUE" || enMayusculas == "FALSE") {
            return literal({ptg::kBool, static_cast<uint8_t>(enMayusculas == "TRUE" ? 1 : 0)});
        }
        nodo.tipo = Nodo::Tipo::kNombre;
        return nodo;
    }

    Nodo funcion(const std::string& nombre) {
        Nodo nodo;
        nodo.tipo = Nodo::Tipo::kFuncion;
        nodo.funcion = buscarFuncion(nombre);
        if (nodo.funcion == nullptr) fallar("no se conoce la función " + nombre);
        ++pos_;
        argumentos(nodo);
        const size_t n = nodo.hijos.size();
        if (n < nodo.funcion->minimo || n > nodo.funcion->maximo) {
            fallar("la función " + nombre + " no admite " + std::to_string(n) + " argumentos");
        }
        return nodo;
    }

    void argumentos(Nodo& nodo) {
        const size_t inicio = pos_;
        nodo.blancosCierre = leerBlancos();
        if (actual() == ')') {
            ++pos_;
            return;
        }
        pos_ = inicio;
        for (;;) {
            nodo.hijos.push_back(argumento());
            if (nodo.hijos.size() > kMaximoDeArgumentos) fallar("pasa de 30 argumentos");
            nodo.blancosCierre = leerBlancos();
            if (actual() != ',') break;
            ++pos_;
        }
        if (actual() != ')') fallar("falta un paréntesis de cierre");
        ++pos_;
    }

    Nodo argumento() {
        const size_t inicio = pos_;
        leerBlancos();
        const bool falta = actual() == ',' || actual() == ')';
        pos_ = inicio;
        return falta ? Nodo{} : expresion(0);
    }

    Notacion notacion_;
    std::string_view texto_;
    PosicionCelda celda_;
    size_t pos_ = 0;
    int hondura_ = 0;
};

}  // namespace

Nodo analizar(Notacion notacion, std::string_view formula, PosicionCelda celda) {
    return Analizador(notacion, formula, celda).formula();
}

std::optional<std::pair<uint8_t, size_t>> leerErrorLiteral(std::string_view texto) {
    for (const auto& [codigo, nombre] : kErrores) {
        const size_t n = std::string_view(nombre).size();
        if (mayusculasAscii(texto.substr(0, n)) == nombre) return std::pair(codigo, n);
    }
    return std::nullopt;
}

const char* textoDeError(uint8_t codigo) {
    for (const auto& [numero, nombre] : kErrores) {
        if (numero == codigo) return nombre;
    }
    return nullptr;
}

std::string mayusculasAscii(std::string_view texto) {
    std::string resultado(texto);
    for (char& c : resultado) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return resultado;
}

}  // namespace bn::xls
