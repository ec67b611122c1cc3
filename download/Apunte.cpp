// SPDX-License-Identifier: MIT
#include "download/Apunte.h"

#include <charconv>
#include <cmath>
#include <system_error>
#include <utility>
#include <vector>

namespace bn {

namespace {

constexpr char kEntreCampos = '\t';

/// A field keeps clear of the characters that part fields and lines.
std::string proteger(std::string_view campo) {
    std::string texto;
    for (const char c : campo) {
        switch (c) {
            case '\t':
                texto += "\\t";
                break;
            case '\r':
                texto += "\\r";
                break;
            case '\n':
                texto += "\\n";
                break;
            case '\\':
                texto += "\\\\";
                break;
            default:
                texto += c;
        }
    }
    return texto;
}

std::optional<std::string> desproteger(std::string_view campo) {
    std::string texto;
    for (std::size_t i = 0; i < campo.size(); ++i) {
        if (campo[i] != '\\') {
            texto += campo[i];
            continue;
        }
        if (++i == campo.size()) return std::nullopt;
        constexpr std::string_view kSignos = "trn\\";
        constexpr std::string_view kValores = "\t\r\n\\";
        const std::size_t cual = kSignos.find(campo[i]);
        if (cual == std::string_view::npos) return std::nullopt;
        texto += kValores[cual];
    }
    return texto;
}

template <class... Campos>
std::string unir(std::string_view nombre, const Campos&... campos) {
    std::string linea(nombre);
    ((linea += kEntreCampos, linea += proteger(campos)), ...);
    return linea;
}

template <class Numero>
std::string cifras(Numero numero) {
    std::array<char, 40> texto{};
    return {texto.data(), std::to_chars(texto.data(), texto.data() + texto.size(), numero).ptr};
}

template <class Numero>
std::optional<Numero> numero(std::string_view texto) {
    Numero valor{};
    const auto [fin, error] = std::from_chars(texto.data(), texto.data() + texto.size(), valor);
    if (error != std::errc() || fin != texto.data() + texto.size()) return std::nullopt;
    return valor;
}

const char* nombreDe(Destino destino) { return destino == Destino::kHoja ? "hoja" : "texto"; }

std::optional<Destino> destinoDe(std::string_view nombre) {
    for (const Destino destino : kDestinos) {
        if (nombre == nombreDe(destino)) return destino;
    }
    return std::nullopt;
}

std::string enTexto(const apunte::Copia& a) { return unir("copia", a.datos); }
std::string enTexto(const apunte::Desconocida& /*a*/) { return "desconocida"; }
std::string enTexto(const apunte::Fin& a) {
    return unir("fin", std::string(a.bien ? "bien" : "mal"));
}
std::string enTexto(const apunte::Pase& a) {
    return unir("pase", cifras(a.reloj), std::string(a.hoja ? "hoja" : "-"),
                std::string(a.texto ? "texto" : "-"));
}

std::string enTexto(const apunte::Empieza& a) {
    const Comienzo& c = a.comienzo;
    std::string linea =
        unir("empieza", std::string(nombreDe(a.destino)), cifras(c.lugar), c.fichero);
    if (a.destino == Destino::kHoja) {
        linea += kEntreCampos + proteger(c.hoja);
        for (const int16_t columna : c.columnas) linea += kEntreCampos + cifras(columna);
    } else {
        for (const auto& campo : c.campos) {
            linea += kEntreCampos + cifras(campo.posicion) + kEntreCampos + cifras(campo.largo) +
                     kEntreCampos + proteger(campo.formato);
        }
    }
    return linea;
}

std::string enTexto(const apunte::Llega& a) {
    return unir("llega", std::string(nombreDe(a.destino)), a.tramos.texto());
}
std::string enTexto(const apunte::Hecho& a) {
    return unir("hecho", std::string(nombreDe(a.destino)));
}
std::string enTexto(const apunte::Descarte& /*a*/) { return "descarte"; }

using Campos = std::vector<std::string>;

std::optional<Campos> partir(std::string_view linea) {
    Campos campos;
    for (;;) {
        const std::size_t fin = linea.find(kEntreCampos);
        auto campo = desproteger(linea.substr(0, fin));
        if (!campo) return std::nullopt;
        campos.push_back(*std::move(campo));
        if (fin == std::string_view::npos) return campos;
        linea.remove_prefix(fin + 1);
    }
}

std::optional<Apunte> pase(const Campos& campos) {
    if (campos.size() != 4) return std::nullopt;
    const auto reloj = numero<double>(campos[1]);
    if (!reloj || !std::isfinite(*reloj)) return std::nullopt;
    return apunte::Pase{*reloj, campos[2] == "hoja", campos[3] == "texto"};
}

bool leerColumnas(const Campos& campos, std::size_t desde, ColumnasDeHoja& columnas) {
    if (campos.size() != desde + columnas.size()) return false;
    for (std::size_t i = 0; i < columnas.size(); ++i) {
        const auto columna = numero<int16_t>(campos[desde + i]);
        if (!columna) return false;
        columnas[i] = *columna;
    }
    return true;
}

bool leerCampos(const Campos& campos, std::size_t desde, CamposDeLinea& deLinea) {
    if (campos.size() != desde + 3 * deLinea.size()) return false;
    for (std::size_t i = 0; i < deLinea.size(); ++i) {
        const auto posicion = numero<int16_t>(campos[desde + 3 * i]);
        const auto largo = numero<int16_t>(campos[desde + 3 * i + 1]);
        if (!posicion || !largo) return false;
        deLinea[i] = {*posicion, *largo, campos[desde + 3 * i + 2]};
    }
    return true;
}

std::optional<Apunte> empieza(const Campos& campos, Destino destino) {
    if (campos.size() < 5) return std::nullopt;
    const auto lugar = numero<std::uint64_t>(campos[2]);
    if (!lugar) return std::nullopt;
    apunte::Empieza leido{destino, {}};
    leido.comienzo.lugar = *lugar;
    leido.comienzo.fichero = campos[3];
    if (destino == Destino::kHoja) {
        leido.comienzo.hoja = campos[4];
        if (!leerColumnas(campos, 5, leido.comienzo.columnas)) return std::nullopt;
    } else if (!leerCampos(campos, 4, leido.comienzo.campos)) {
        return std::nullopt;
    }
    return leido;
}

/// The steps of one destination.
std::optional<Apunte> deDestino(const Campos& campos) {
    if (campos.size() < 2) return std::nullopt;
    const auto destino = destinoDe(campos[1]);
    if (!destino) return std::nullopt;
    if (campos[0] == "empieza") return empieza(campos, *destino);
    if (campos[0] == "hecho" && campos.size() == 2) return apunte::Hecho{*destino};
    if (campos[0] != "llega" || campos.size() != 3) return std::nullopt;
    const auto tramos = Tramos::deTexto(campos[2]);
    if (!tramos) return std::nullopt;
    return apunte::Llega{*destino, *tramos};
}

}  // namespace

std::string textoDeApunte(const Apunte& apunte) {
    return std::visit([](const auto& uno) { return enTexto(uno); }, apunte);
}

std::optional<Apunte> apunteDeTexto(std::string_view linea) {
    const auto campos = partir(linea);
    if (!campos) return std::nullopt;
    const std::string& nombre = campos->front();
    if (campos->size() == 1) {
        if (nombre == "desconocida") return apunte::Desconocida{};
        if (nombre == "descarte") return apunte::Descarte{};
        return std::nullopt;
    }
    if (nombre == "copia") return apunte::Copia{(*campos)[1]};
    if (nombre == "fin") return apunte::Fin{(*campos)[1] == "bien"};
    if (nombre == "pase") return pase(*campos);
    return deDestino(*campos);
}

}  // namespace bn
