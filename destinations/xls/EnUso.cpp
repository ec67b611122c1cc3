// SPDX-License-Identifier: MIT
#include "destinations/xls/EnUso.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "config/Codificacion.h"
#include "destinations/xls/TextoBiff.h"
#include "platform/Ficheros.h"

namespace bn::xls {
namespace {

namespace fs = std::filesystem;

// Who has it, and by which file that is known; no file when the system itself says so.
struct Senal {
    Ocupante ocupante;
    fs::path fichero;
};

// The parts between commas up to the first semicolon; a backslash keeps the character behind it.
std::vector<std::string> partesOdf(std::string_view contenido) {
    std::vector<std::string> partes(1);
    for (size_t i = 0; i < contenido.size(); ++i) {
        const char c = contenido[i];
        if (c == ';') break;
        if (c == ',') {
            partes.emplace_back();
        } else if (c == '\\' && i + 1 < contenido.size()) {
            partes.back() += contenido[++i];
        } else {
            partes.back() += c;
        }
    }
    return partes;
}

// Some writers give a computer's name with its domain, others without.
std::string sinDominio(const std::string& equipo) {
    return mayusculas(equipo.substr(0, equipo.find('.')));
}

// What the sign says: nothing when it stands there but cannot be read, no value when it does not.
std::optional<std::string> leerSenal(Disco& disco, const fs::path& fichero) {
    if (!ficheros::existe(disco, fichero) || ficheros::esCarpeta(disco, fichero))
        return std::nullopt;
    try {
        return ficheros::leer(disco, fichero);
    } catch (const ErrorFichero&) {
        return "";  // that it stands there says enough
    }
}

// LibreOffice takes no lock on the workbook itself, and what it leaves beside it stays there when
// it is killed. On this computer such a rest is known by there being no LibreOffice at all. Of
// another computer nothing can be known, and what that one has not saved yet is not to be
// overwritten: its sign counts until somebody removes it, as the message says.
std::optional<Senal> senalOdf(Disco& disco, const fs::path& libro, const Equipo& equipo) {
    fs::path nombre = ".~lock.";
    nombre += libro.filename();
    nombre += "#";
    const fs::path fichero = libro.parent_path() / nombre;
    const std::optional<std::string> contenido = leerSenal(disco, fichero);
    if (!contenido) return std::nullopt;
    const Ocupante ocupante = ocupanteOdf(*contenido);
    const bool deAqui =
        ocupante.equipo.empty() || sinDominio(ocupante.equipo) == sinDominio(equipo.nombre);
    if (deAqui && !equipo.enMarcha("soffice.bin")) return std::nullopt;
    return Senal{ocupante, fichero};
}

// Excel keeps its file open for as long as it has the workbook. Where that can be seen, one that
// nobody has open is the rest of an Excel that was killed.
std::optional<Senal> senalExcel(Disco& disco, const fs::path& libro, const Equipo& equipo) {
    fs::path nombre = "~$";
    nombre += libro.filename();
    const fs::path fichero = libro.parent_path() / nombre;
    const std::optional<std::string> contenido = leerSenal(disco, fichero);
    if (!contenido || equipo.tenencia(fichero) == Tenencia::kLibre) return std::nullopt;
    return Senal{ocupanteExcel(*contenido), fichero};
}

std::optional<Senal> senalDe(Disco& disco, const fs::path& libro, const Equipo& equipo) {
    std::optional<Senal> senal = senalOdf(disco, libro, equipo);
    if (!senal) senal = senalExcel(disco, libro, equipo);
    if (!senal && equipo.tenencia(libro) == Tenencia::kTomado) senal = Senal{};
    return senal;
}

fs::path sinEnlaces(Disco& disco, const fs::path& libro) {
    try {
        return disco.destinoReal(libro);
    } catch (const ErrorFichero&) {
        return libro;  // whoever opens or writes it will be told
    }
}

std::string aviso(const fs::path& libro, const Senal& senal) {
    const Ocupante& quien = senal.ocupante;
    std::string texto = "El libro \"" + ficheros::aTexto(libro) +
                        "\" está en uso: lo tiene abierto " +
                        (quien.usuario.empty() ? "otro programa" : quien.usuario);
    if (!quien.equipo.empty()) texto += " en el equipo " + quien.equipo;
    texto += ". Ciérrelo allí";
    if (!senal.fichero.empty()) {
        texto += "; si ya no está abierto, borre el fichero \"" +
                 ficheros::aTexto(senal.fichero.filename()) + "\" que hay a su lado";
    }
    return texto + '.';
}

}  // namespace

Ocupante ocupanteOdf(std::string_view contenido) {
    const std::vector<std::string> partes = partesOdf(contenido);
    Ocupante ocupante;
    if (partes.size() > 1) ocupante.usuario = partes[0].empty() ? partes[1] : partes[0];
    if (partes.size() > 2) ocupante.equipo = partes[2];
    return ocupante;
}

// One byte of length and the name in one byte each, 54 bytes; then the same in two bytes each.
Ocupante ocupanteExcel(std::string_view contenido) {
    constexpr size_t kAncho = 55;
    const auto largo = [&](size_t pos) {
        return pos < contenido.size() ? static_cast<unsigned char>(contenido[pos]) : size_t{0};
    };
    const size_t anchos = largo(kAncho);
    if (anchos > 0 && kAncho + 2 + 2 * anchos <= contenido.size()) {
        return {deBiff(contenido.substr(kAncho + 2, 2 * anchos), true), {}};
    }
    const std::string_view nombre = contenido.substr(std::min<size_t>(1, contenido.size()));
    return {cp1252AUtf8(std::string(nombre.substr(0, std::min(largo(0), kAncho - 1)))), {}};
}

std::string avisoDeEnUso(Disco& disco, const fs::path& libro, const Equipo& equipo) {
    std::optional<Senal> senal = senalDe(disco, libro, equipo);
    // Opened by way of a link, its sign may lie beside either name.
    const fs::path real = sinEnlaces(disco, libro);
    if (!senal && real != libro) senal = senalDe(disco, real, equipo);
    return senal ? aviso(libro, *senal) : std::string();
}

}  // namespace bn::xls
