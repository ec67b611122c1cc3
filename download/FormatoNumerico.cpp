// SPDX-License-Identifier: MIT
#include "download/FormatoNumerico.h"

#include <algorithm>
#include <cstddef>

#include "download/FormatoPartes.h"

namespace bn::formato {
namespace {

enum class Pieza { kLiteral, kDigito, kPunto, kComa, kPorcentaje, kExponente };

bool esMarcador(char c) { return c == '0' || c == '#'; }

// Names each element of one section. The first point is the decimal one, and an exponent must
// follow a digit place; later ones stand for themselves.
class LectorNumerico {
 public:
    explicit LectorNumerico(std::string_view seccion) : lector_(seccion) {}

    bool siguiente() {
        Elemento elemento;
        if (!lector_.siguiente(elemento)) return false;
        texto_ = elemento.texto;
        pieza_ = elemento.literal ? Pieza::kLiteral : nombrar(elemento.texto[0]);
        return true;
    }
    Pieza pieza() const { return pieza_; }
    std::string_view texto() const { return texto_; }

 private:
    Pieza nombrar(char c) {
        switch (c) {
            case '0':
            case '#':
                hayDigito_ = true;
                return hayExponente_ ? Pieza::kLiteral : Pieza::kDigito;
            case '.':
                if (hayPunto_) return Pieza::kLiteral;
                hayPunto_ = true;
                return Pieza::kPunto;
            case ',':
                return Pieza::kComa;
            case '%':
                return Pieza::kPorcentaje;
            case 'E':
            case 'e':
                return exponente() ? Pieza::kExponente : Pieza::kLiteral;
            default:
                return Pieza::kLiteral;
        }
    }

    bool exponente() {
        const std::string_view resto = lector_.desdeActual();
        if (!hayDigito_ || hayExponente_ || resto.size() < 3) return false;
        if ((resto[1] != '+' && resto[1] != '-') || !esMarcador(resto[2])) return false;
        const std::size_t fin = std::min(resto.find_first_not_of("0#", 2), resto.size());
        texto_ = resto.substr(0, fin);
        lector_.consumir(fin);
        hayExponente_ = true;
        return true;
    }

    Lector lector_;
    Pieza pieza_ = Pieza::kLiteral;
    std::string_view texto_;
    bool hayDigito_ = false;
    bool hayPunto_ = false;
    bool hayExponente_ = false;
};

// What a section asks for, counted before anything is written.
struct Plantilla {
    std::ptrdiff_t enteros = 0;
    std::ptrdiff_t minimoEnteros = 0;
    std::ptrdiff_t decimales = 0;
    std::ptrdiff_t minimoDecimales = 0;
    std::ptrdiff_t potencia = 0;
    bool agrupa = false;
    bool cientifica = false;

    bool tieneMarcadores() const { return enteros + decimales > 0; }
};

Plantilla analizar(std::string_view seccion) {
    Plantilla plantilla;
    std::ptrdiff_t comas = 0;
    bool trasElPunto = false;
    LectorNumerico lector(seccion);
    while (lector.siguiente()) {
        const Pieza pieza = lector.pieza();
        const bool cero = lector.texto() == "0";
        if (pieza == Pieza::kDigito && trasElPunto) {
            ++plantilla.decimales;
            if (cero) plantilla.minimoDecimales = plantilla.decimales;
        } else if (pieza == Pieza::kDigito) {
            ++plantilla.enteros;
            if (cero || plantilla.minimoEnteros > 0) ++plantilla.minimoEnteros;
            plantilla.agrupa = plantilla.agrupa || comas > 0;
            comas = 0;
        } else if (pieza == Pieza::kComa && !trasElPunto && plantilla.enteros > 0) {
            ++comas;
        } else if (pieza == Pieza::kPunto) {
            trasElPunto = true;
        } else if (pieza == Pieza::kPorcentaje) {
            plantilla.potencia += 2;
        } else if (pieza == Pieza::kExponente) {
            plantilla.cientifica = true;
        }
    }
    // Commas with no digit place between them and the decimal point do not group: they scale.
    plantilla.potencia -= 3 * comas;
    return plantilla;
}

// Scales and rounds to the places of the template; answers the exponent of a scientific one.
std::ptrdiff_t ajustar(Decimal& valor, const Plantilla& plantilla) {
    if (valor.esCero()) return 0;
    valor.punto += plantilla.potencia;
    if (!plantilla.cientifica) {
        valor.redondear(plantilla.decimales);
        return 0;
    }
    std::ptrdiff_t exponente = valor.punto - plantilla.enteros;
    valor.punto = plantilla.enteros;
    valor.redondear(plantilla.decimales);
    if (valor.punto > plantilla.enteros) {
        valor.punto = plantilla.enteros;
        ++exponente;
    }
    return exponente;
}

// Writes a number already rounded into the places of its section.
class Escritor {
 public:
    Escritor(const Decimal& valor, const Plantilla& plantilla, std::ptrdiff_t exponente)
        : valor_(valor),
          plantilla_(plantilla),
          exponente_(exponente),
          totalEnteros_(std::max(plantilla.minimoEnteros, valor.punto)),
          totalDecimales_(std::max(plantilla.minimoDecimales, cifras() - valor.punto)) {}

    void escribir(std::string_view seccion, std::string& salida) {
        LectorNumerico lector(seccion);
        while (lector.siguiente()) {
            switch (lector.pieza()) {
                case Pieza::kDigito:
                    digito(salida);
                    break;
                case Pieza::kPunto:
                    if (plantilla_.enteros == 0) hastaPosicion(0, salida);
                    salida += ',';
                    trasElPunto_ = true;
                    break;
                case Pieza::kComa:
                    break;
                case Pieza::kExponente:
                    exponente(lector.texto(), salida);
                    break;
                case Pieza::kLiteral:
                case Pieza::kPorcentaje:
                    salida += lector.texto();
                    break;
            }
        }
    }

 private:
    std::ptrdiff_t cifras() const { return static_cast<std::ptrdiff_t>(valor_.digitos.size()); }

    char cifra(std::ptrdiff_t indice) const {
        if (indice < 0 || indice >= cifras()) return '0';
        return valor_.digitos[static_cast<std::size_t>(indice)];
    }

    void digito(std::string& salida) {
        if (trasElPunto_) {
            if (marcador_ < totalDecimales_) salida += cifra(valor_.punto + marcador_);
            ++marcador_;
            return;
        }
        ++enteroActual_;
        hastaPosicion(plantilla_.enteros - enteroActual_, salida);
    }

    // Positions count from the decimal point to the left; the first place takes all surplus digits.
    void hastaPosicion(std::ptrdiff_t posicion, std::string& salida) {
        while (totalEnteros_ > posicion) {
            --totalEnteros_;
            salida += cifra(valor_.punto - 1 - totalEnteros_);
            if (plantilla_.agrupa && totalEnteros_ > 0 && totalEnteros_ % 3 == 0) salida += '.';
        }
    }

    void exponente(std::string_view simbolo, std::string& salida) const {
        salida += simbolo[0];
        if (exponente_ < 0) salida += '-';
        if (exponente_ >= 0 && simbolo[1] == '+') salida += '+';
        const std::string texto = std::to_string(exponente_ < 0 ? -exponente_ : exponente_);
        const std::size_t primerCero = simbolo.find('0');
        const std::size_t minimo =
            primerCero == std::string_view::npos ? 0 : simbolo.size() - primerCero;
        if (texto.size() < minimo) salida.append(minimo - texto.size(), '0');
        salida += texto;
    }

    const Decimal& valor_;
    const Plantilla& plantilla_;
    std::ptrdiff_t exponente_;
    std::ptrdiff_t totalEnteros_;
    std::ptrdiff_t totalDecimales_;
    std::ptrdiff_t enteroActual_ = 0;
    std::ptrdiff_t marcador_ = 0;
    bool trasElPunto_ = false;
};

std::string_view seccionDeCero(const Secciones& secciones) {
    return secciones[2].empty() ? secciones[0] : secciones[2];
}

}  // namespace

std::string formatearNumero(const Decimal& valor, std::string_view formato) {
    const Secciones secciones = dividir(formato);
    const bool propiaDeNegativos = valor.negativo && !secciones[1].empty();
    std::string_view seccion = secciones[0];
    if (valor.esCero()) seccion = seccionDeCero(secciones);
    if (propiaDeNegativos) seccion = secciones[1];

    Plantilla plantilla = analizar(seccion);
    Decimal ajustado = valor;
    const std::ptrdiff_t exponente = ajustar(ajustado, plantilla);
    const bool quedaEnCero = plantilla.tieneMarcadores() && ajustado.esCero();
    if (quedaEnCero && !valor.esCero()) {
        seccion = seccionDeCero(secciones);
        plantilla = analizar(seccion);
    }
    if (seccion.empty()) return textoGeneral(valor);

    std::string salida;
    if (valor.negativo && !propiaDeNegativos && !quedaEnCero) salida += '-';
    Escritor(ajustado, plantilla, exponente).escribir(seccion, salida);
    return salida;
}

std::string formatearNada(std::string_view formato) {
    const std::string_view seccion = dividir(formato)[3];
    const Plantilla plantilla = analizar(seccion);
    std::string salida;
    Escritor(Decimal{}, plantilla, 0).escribir(seccion, salida);
    return salida;
}

}  // namespace bn::formato
