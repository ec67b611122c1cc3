// SPDX-License-Identifier: MIT
#include "config/CamposSetup.h"

#include <limits>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "config/APIsVarias.h"
#include "config/ArchivoIni.h"
#include "config/Codificacion.h"
#include "config/UtilTexto.h"
#include "platform/Ficheros.h"

namespace bn {
namespace {

using utiltexto::aBooleano;
using utiltexto::deBooleano;

/// For a message: a damaged file may hold megabytes where a number is due.
std::string citar(std::string_view texto) {
    constexpr std::size_t kMaximo = 60;
    const std::u32string caracteres = utf8AU32(texto.substr(0, 4 * kMaximo));
    return "\"" + u32AUtf8(std::u32string_view(caracteres).substr(0, kMaximo)) +
           (caracteres.size() > kMaximo ? "...\"" : "\"");
}

template <class Entero>
void leerEntero(Entero& campo, std::string_view texto) {
    using Limites = std::numeric_limits<Entero>;
    const double valor = utiltexto::redondearPar(utiltexto::numeroInicial(texto));
    if (valor < Limites::min() || valor > Limites::max()) {
        throw std::overflow_error("el número " + citar(texto) + " no cabe entre " +
                                  std::to_string(Limites::min()) + " y " +
                                  std::to_string(Limites::max()));
    }
    campo = static_cast<Entero>(valor);
}

/// The items of a list that have a field to go to.
std::vector<std::string_view> elementos(const std::string& lista) {
    return utiltexto::partir(lista, ';', kCamposPesada);
}

template <class... Enteros>
void leerEnteros(const std::string& lista, Enteros&... campos) {
    const std::vector<std::string_view> partes = elementos(lista);
    std::size_t i = 0;
    const auto leerSiguiente = [&partes, &i](auto& campo) {
        if (i < partes.size()) {
            leerEntero(campo, partes[i++]);
        }
    };
    (leerSiguiente(campos), ...);
}

/// One list item per field, given by a function of the field's number.
template <class Funcion>
std::string listaDeCampos(Funcion elemento) {
    std::string lista;
    for (std::size_t k = 0; k < kCamposPesada; ++k) {
        utiltexto::anadirALista(lista, elemento(k), ";", k == 0);
    }
    return lista;
}

template <class... Elementos>
std::string unir(const std::string& primero, const Elementos&... demas) {
    std::string lista;
    utiltexto::anadirALista(lista, primero, ";", true);
    (utiltexto::anadirALista(lista, demas, ";", false), ...);
    return lista;
}

void leerAutomatico(CamposSetup& c, const std::string& valor) {
    leerEnteros(valor, c.autoCadaXSegs);
    const std::vector<std::string_view> partes = elementos(valor);
    if (partes.size() > 1) {
        c.ejecutarMinimizado = aBooleano(partes[1]);
    }
}

void leerColumnasExcel(CamposSetup& c, const std::string& valor) {
    const std::vector<std::string_view> partes = elementos(valor);
    for (std::size_t k = 0; k < partes.size(); ++k) {
        leerEntero(c.columnaExcel[k], partes[k]);
    }
}

void leerColumnasTexto(CamposSetup& c, const std::string& valor) {
    const std::vector<std::string_view> partes = elementos(valor);
    for (std::size_t k = 0; k < partes.size(); ++k) {
        const std::vector<std::string_view> par = utiltexto::partir(partes[k], ',', 2);
        if (par.size() < 2) {
            throw std::runtime_error("a la columna " + citar(partes[k]) + " le falta su ancho");
        }
        leerEntero(c.texto[k].posicion, par[0]);
        leerEntero(c.texto[k].largo, par[1]);
    }
}

void leerFormatos(CamposSetup& c, const std::string& valor) {
    const std::vector<std::string_view> partes = elementos(valor);
    for (std::size_t k = 0; k < partes.size(); ++k) {
        c.texto[k].formato = partes[k];
    }
}

/// One key of the file: how its text, never empty, becomes fields, and the fields its text.
struct Clave {
    const char* seccion;
    const char* nombre;
    void (*leer)(CamposSetup&, const std::string&);
    std::string (*escribir)(const CamposSetup&);
};
using Campos = CamposSetup;
using Texto = std::string;

// In the order of the file.
constexpr std::array<Clave, 14> kClaves = {{
    {"General", "Canal", [](Campos& c, const Texto& v) { leerEntero(c.canal, v); },
     [](const Campos& c) { return std::to_string(c.canal); }},
    {"General", "Param", [](Campos& c, const Texto& v) { c.params = v; },
     [](const Campos& c) { return c.params; }},
    {"General", "Caracteres",
     [](Campos& c, const Texto& v) {
         leerEnteros(v, c.cInicial, c.cFinal, c.cPesada, c.cPeticion);
     },
     [](const Campos& c) {
         return unir(std::to_string(c.cInicial), std::to_string(c.cFinal),
                     std::to_string(c.cPesada), std::to_string(c.cPeticion));
     }},
    {"General", "TimeOut",
     [](Campos& c, const Texto& v) { leerEnteros(v, c.timeout, c.maxRetrys); },
     [](const Campos& c) { return unir(std::to_string(c.timeout), std::to_string(c.maxRetrys)); }},
    {"General", "Autom", leerAutomatico,
     [](const Campos& c) {
         return unir(std::to_string(c.autoCadaXSegs), deBooleano(c.ejecutarMinimizado));
     }},
    {"General", "Checksum", [](Campos& c, const Texto& v) { leerEntero(c.checksum, v); },
     [](const Campos& c) { return std::to_string(c.checksum); }},
    {"Excel", "Uso", [](Campos& c, const Texto& v) { c.usoExcel = aBooleano(v); },
     [](const Campos& c) { return deBooleano(c.usoExcel); }},
    {"Excel", "Libro", [](Campos& c, const Texto& v) { c.libroExcel = v; },
     [](const Campos& c) { return c.libroExcel; }},
    {"Excel", "Hoja", [](Campos& c, const Texto& v) { c.hojaExcel = v; },
     [](const Campos& c) { return c.hojaExcel; }},
    {"Excel", "Columnas", leerColumnasExcel,
     [](const Campos& c) {
         return listaDeCampos([&c](std::size_t k) { return std::to_string(c.columnaExcel[k]); });
     }},
    {"Texto", "Uso", [](Campos& c, const Texto& v) { c.usoTexto = aBooleano(v); },
     [](const Campos& c) { return deBooleano(c.usoTexto); }},
    {"Texto", "Destino", [](Campos& c, const Texto& v) { c.archivoTexto = v; },
     [](const Campos& c) { return c.archivoTexto; }},
    {"Texto", "Columnas", leerColumnasTexto,
     [](const Campos& c) {
         return listaDeCampos([&c](std::size_t k) {
             return std::to_string(c.texto[k].posicion) + "," + std::to_string(c.texto[k].largo);
         });
     }},
    {"Texto", "Formatos", leerFormatos,
     [](const Campos& c) {
         return listaDeCampos([&c](std::size_t k) { return c.texto[k].formato; });
     }},
}};

// Stands in the file only where it has ever been true.
constexpr const char* kSeccionEnFalta = "Excel";
constexpr const char* kClaveEnFalta = "EnFalta";

std::string situar(const std::filesystem::path& ini, const Clave& clave, const char* causa) {
    return ficheros::aTexto(ini) + ": [" + clave.seccion + "] " + clave.nombre + ": " + causa;
}

/// The bare file name when there is no documents folder.
std::string enDocumentos(const Plataforma& plataforma, const char* nombre) {
    const std::string carpeta = CarpetaEspecial(plataforma, 0, kCarpetaDocumentos);
    return ficheros::aTexto(ficheros::aRuta(carpeta) / nombre);
}

}  // namespace

const std::array<std::string, kCamposPesada>& nombresDeCampos() {
    static const std::array<std::string, kCamposPesada> kNombres = {
        "Fecha Hora", "Matrícula", "Nº Albarán", "Código A",
        "Código B",   "Código C",  "Peso Tara",  "Peso Neto"};
    return kNombres;
}

CamposSetup PorDefecto(const Plataforma& plataforma) {
    CamposSetup campos;
    campos.libroExcel = enDocumentos(plataforma, "Pesadas.xls");
    campos.archivoTexto = enDocumentos(plataforma, "Pesadas.txt");
    return campos;
}

void LeerIni(CamposSetup& campos, Disco& disco, const std::filesystem::path& ini) {
    ArchivoIni archivo(disco);
    archivo.Fichero(ini);
    for (const Clave& clave : kClaves) {
        archivo.Seccion(clave.seccion);
        const std::string valor = archivo.Leer(clave.nombre);
        if (valor.empty()) {
            continue;
        }
        try {
            clave.leer(campos, valor);
        } catch (const std::overflow_error& error) {
            throw std::overflow_error(situar(ini, clave, error.what()));
        } catch (const std::runtime_error& error) {
            throw std::runtime_error(situar(ini, clave, error.what()));
        }
    }
    archivo.Seccion(kSeccionEnFalta);
    campos.excelEnFalta = !campos.usoExcel && aBooleano(archivo.Leer(kClaveEnFalta));
}

void GrabarIni(const CamposSetup& campos, Disco& disco, const std::filesystem::path& ini) {
    ArchivoIni archivo(disco);
    archivo.Fichero(ini);
    for (const Clave& clave : kClaves) {
        archivo.Seccion(clave.seccion);
        archivo.Escribir(clave.nombre, clave.escribir(campos));
    }
    archivo.Seccion(kSeccionEnFalta);
    if (campos.excelEnFalta || !archivo.Leer(kClaveEnFalta).empty()) {
        archivo.Escribir(kClaveEnFalta, deBooleano(campos.excelEnFalta));
    }
    archivo.Guardar();
}

}  // namespace bn
