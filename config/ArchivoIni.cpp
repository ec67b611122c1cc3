// SPDX-License-Identifier: MIT
#include "config/ArchivoIni.h"

#include <algorithm>
#include <utility>

#include "config/Codificacion.h"
#include "config/UtilTexto.h"
#include "platform/Ficheros.h"

namespace bn {
namespace {

using utiltexto::sinBlancos;

constexpr std::string_view kMarcaUtf8 = "\xEF\xBB\xBF";
constexpr std::string_view kFinDeLinea = "\r\n";

/// Takes the first line off, with or without its end: CR LF, a lone LF or a lone CR.
std::string_view sacarLinea(std::string_view& texto) {
    const std::size_t fin = texto.find_first_of(kFinDeLinea);
    const std::string_view linea = texto.substr(0, fin);
    texto.remove_prefix(linea.size());
    texto.remove_prefix(texto.starts_with(kFinDeLinea) ? 2
                                                       : std::min<std::size_t>(texto.size(), 1));
    return linea;
}

bool esSeccion(std::string_view linea) {
    linea = sinBlancos(linea);
    return linea.starts_with('[') && linea.find(']') != std::string_view::npos;
}

std::string nombreDeSeccion(std::string_view linea) {
    linea = sinBlancos(linea);
    return mayusculas(sinBlancos(linea.substr(1, linea.find(']') - 1)));
}

/// The key of a line; nothing in a comment, a section or a line without "=".
std::string_view claveDe(std::string_view linea) {
    linea = sinBlancos(linea);
    const std::size_t igual = linea.find('=');
    if (igual == std::string_view::npos || linea.starts_with(';') || linea.starts_with('#') ||
        esSeccion(linea)) {
        return {};
    }
    return sinBlancos(linea.substr(0, igual));
}

/// True when the text needs quotation marks to keep its outer blanks, or already looks as if it had
/// been given them: those would be taken off again.
bool pideComillas(std::string_view texto) {
    while (texto.size() >= 2 && texto.starts_with('"') && texto.ends_with('"')) {
        texto = texto.substr(1, texto.size() - 2);
    }
    return texto.size() != sinBlancos(texto).size();
}

std::string_view sinComillas(std::string_view texto) {
    if (texto.size() < 2 || !texto.starts_with('"') || !texto.ends_with('"')) {
        return texto;
    }
    const std::string_view dentro = texto.substr(1, texto.size() - 2);
    return pideComillas(dentro) ? dentro : texto;
}

/// The text in one line and in valid UTF-8, so that no value can damage the lines around it.
std::string enUnaLinea(std::string_view texto) {
    std::string salida;
    salida.reserve(texto.size());
    while (!texto.empty()) {
        const std::size_t antes = texto.size();
        const std::string_view linea = sacarLinea(texto);
        const bool hayCorte = linea.size() < antes - texto.size();
        salida += linea;
        salida += hayCorte ? " " : "";
    }
    return esUtf8Valido(salida) ? salida : u32AUtf8(utf8AU32(salida));
}

/// The end of the last line that is not blank: where a new key goes.
std::size_t finDeLoEscrito(std::string_view texto) {
    const std::size_t ultimo = texto.find_last_not_of(" \t\r\n");
    return ultimo == std::string_view::npos ? 0 : texto.find('\n', ultimo) + 1;
}

}  // namespace

void ArchivoIni::Fichero(const std::filesystem::path& ruta) {
    ruta_ = ruta;
    leido_ = false;
}

void ArchivoIni::Seccion(const std::string& nombre) { seccion_ = enUnaLinea(nombre); }

std::string ArchivoIni::Leer(const std::string& clave) {
    leerFichero();
    const Lugar lugar = buscar(clave);
    if (lugar.bloque == nullptr) {
        return {};
    }
    const auto linea = std::string_view(lugar.bloque->texto).substr(lugar.inicio, lugar.largo);
    return std::string(sinComillas(sinBlancos(linea.substr(linea.find('=') + 1))));
}

void ArchivoIni::Escribir(const std::string& clave, const std::string& valor) {
    leerFichero();
    std::string asignado = "=" + enUnaLinea(valor);
    if (pideComillas(std::string_view(asignado).substr(1))) {
        asignado.insert(1, 1, '"').push_back('"');
    }
    const Lugar lugar = buscar(clave);
    if (lugar.bloque != nullptr) {
        std::string& texto = lugar.bloque->texto;
        // The key stays spelt as the file has it.
        const std::string antes(claveDe(std::string_view(texto).substr(lugar.inicio, lugar.largo)));
        texto.replace(lugar.inicio, lugar.largo, antes + asignado);
        return;
    }
    const std::string nombre = mayusculas(seccion_);
    auto bloque = std::find_if(bloques_.begin(), bloques_.end(),
                               [&nombre](const Bloque& b) { return b.nombre == nombre; });
    if (bloque == bloques_.end()) {
        ponerLinea("[" + seccion_ + "]");
        bloque = std::prev(bloques_.end());
    }
    bloque->texto.insert(finDeLoEscrito(bloque->texto),
                         enUnaLinea(clave) + asignado + std::string(kFinDeLinea));
}

void ArchivoIni::Guardar() {
    leerFichero();
    std::string texto;
    for (const Bloque& bloque : bloques_) {
        texto += bloque.texto;
    }
    if (cp1252_) {
        const std::string enCp1252 = utf8ACp1252(texto);
        // Bytes that happen to be valid UTF-8 would be read back as something else.
        cp1252_ = cabeEnCp1252(texto) && (!esUtf8Valido(enCp1252) || enCp1252 == texto);
        texto = cp1252_ ? enCp1252 : texto;
    }
    ficheros::reemplazar(disco_, ruta_, conMarca_ ? std::string(kMarcaUtf8) + texto : texto);
}

void ArchivoIni::leerFichero() {
    if (std::exchange(leido_, true)) {
        return;
    }
    bloques_.assign(1, Bloque{});
    std::string contenido;
    try {
        contenido = ficheros::leer(disco_, ruta_).value_or("");
    } catch (...) {
        leido_ = false;
        throw;
    }
    if (contenido.starts_with("\xFF\xFE") || contenido.starts_with("\xFE\xFF")) {
        leido_ = false;
        throw ErrorFichero(ficheros::aTexto(ruta_) +
                           ": está guardado como Unicode de 16 bits; guárdelo como UTF-8");
    }
    conMarca_ = contenido.starts_with(kMarcaUtf8);
    contenido.erase(0, conMarca_ ? kMarcaUtf8.size() : 0);
    cp1252_ = !esUtf8Valido(contenido);
    if (cp1252_) {
        contenido = cp1252AUtf8(contenido);
    }
    for (std::string_view resto = contenido; !resto.empty();) {
        ponerLinea(sacarLinea(resto));
    }
}

void ArchivoIni::ponerLinea(std::string_view linea) {
    if (esSeccion(linea)) {
        bloques_.push_back(Bloque{nombreDeSeccion(linea), {}});
    }
    bloques_.back().texto.append(linea).append(kFinDeLinea);
}

ArchivoIni::Lugar ArchivoIni::buscar(std::string_view clave) {
    const std::string nombre = mayusculas(seccion_);
    const std::string buscada = mayusculas(clave);
    for (Bloque& bloque : bloques_) {
        if (bloque.nombre != nombre) {
            continue;
        }
        const std::string_view texto = bloque.texto;
        for (std::size_t inicio = 0, fin = 0; inicio < texto.size(); inicio = fin + 2) {
            fin = texto.find('\r', inicio);
            const std::string_view linea = texto.substr(inicio, fin - inicio);
            const std::string_view hallada = claveDe(linea);
            // Comparing lengths first spares the capitals of nearly every line.
            if (!hallada.empty() && hallada.size() == clave.size() &&
                mayusculas(hallada) == buscada) {
                return {&bloque, inicio, linea.size()};
            }
        }
    }
    return {nullptr, 0, 0};
}

}  // namespace bn
