// SPDX-License-Identifier: MIT
#include "download/Nota.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>
#include <utility>

#include "platform/Ficheros.h"

namespace bn {

namespace {

constexpr std::string_view kCabecera = "bnDX5 nota 1\r\n";
constexpr std::string_view kFinDeLinea = "\r\n";
constexpr std::size_t kCifrasDeSuma = 8;

/// FNV-1a: it has to tell a torn line from a whole one, nothing more.
std::uint32_t sumar(std::uint32_t suma, std::string_view bytes) {
    constexpr std::uint32_t kPrimo = 16777619;
    for (const char c : bytes) suma = (suma ^ static_cast<unsigned char>(c)) * kPrimo;
    return suma;
}

std::uint32_t sumaDeCabecera() { return sumar(2166136261U, kCabecera); }

std::string hexadecimal(std::uint32_t suma) {
    std::string cifras(kCifrasDeSuma, '0');
    for (auto cifra = cifras.rbegin(); cifra != cifras.rend(); ++cifra, suma /= 16) {
        *cifra = "0123456789abcdef"[suma % 16];
    }
    return cifras;
}

}  // namespace

Nota::Nota(Disco& disco, std::filesystem::path fichero)
    : disco_(disco), fichero_(std::move(fichero)) {}

bool Nota::leer() {
    const auto contenido = ficheros::leer(disco_, fichero_);
    estado_ = {};
    porVolcar_ = true;
    if (!contenido || !contenido->starts_with(kCabecera)) return false;
    estado_.texto = kCabecera;
    estado_.suma = sumaDeCabecera();
    for (;;) {
        const std::string_view resto = std::string_view(*contenido).substr(estado_.texto.size());
        const std::size_t fin = resto.find(kFinDeLinea);
        if (fin == std::string_view::npos || fin <= kCifrasDeSuma) break;
        const std::string_view linea = resto.substr(kCifrasDeSuma + 1, fin - kCifrasDeSuma - 1);
        const std::uint32_t suma = sumar(estado_.suma, linea);
        const auto apunte = apunteDeTexto(linea);
        if (resto.substr(0, kCifrasDeSuma + 1) != hexadecimal(suma) + ' ' || !apunte) break;
        estado_.texto += resto.substr(0, fin + kFinDeLinea.size());
        estado_.suma = suma;
        aplicar(*apunte);
    }
    return true;
}

std::string Nota::lineas(const std::vector<Apunte>& apuntes, std::uint32_t& suma) const {
    std::string texto;
    for (const Apunte& apunte : apuntes) {
        const std::string linea = textoDeApunte(apunte);
        suma = sumar(suma, linea);
        texto += hexadecimal(suma) + ' ' + linea;
        texto += kFinDeLinea;
    }
    return texto;
}

/// Over what stands there, which nobody needs: a note is made while its store is empty. One that
/// carries a step over from another note takes its place whole.
void Nota::crear(const std::vector<Apunte>& apuntes) {
    std::uint32_t suma = sumaDeCabecera();
    std::string texto = std::string(kCabecera) + lineas(apuntes, suma);
    std::string bytes = texto;
    bytes.resize(std::max(bytes.size(), Nota::kTamano), ' ');
    const auto largo = ficheros::largo(disco_, fichero_);
    if (apuntes.empty()) {
        if (!largo || *largo > Nota::kTamano) ficheros::crearVacio(disco_, fichero_);
        ficheros::sobrescribir(disco_, fichero_, 0, bytes);
    } else {
        ficheros::reemplazar(disco_, fichero_, bytes);
    }
    estado_ = {};
    estado_.texto = std::move(texto);
    estado_.suma = suma;
    porVolcar_ = false;
    for (const Apunte& apunte : apuntes) aplicar(apunte);
}

/// Behind the lines that count. After a reading or a failure they go with it: a flush that failed
/// may have left lines that are seen but not on the disk, and no later one brings them there.
void Nota::escribir(const std::string& bytes) {
    const bool todo = std::exchange(porVolcar_, true);
    try {
        ficheros::sobrescribir(disco_, fichero_, todo ? 0 : estado_.texto.size(),
                               todo ? estado_.texto + bytes : bytes);
    } catch (const ErrorFichero& error) {
        if (error.causa() != ErrorFichero::Causa::kNoExiste) throw;
        ficheros::reemplazar(disco_, fichero_, estado_.texto + bytes);
    }
    porVolcar_ = false;
}

/// Blanks up to the note's size follow, so that nothing stale does.
void Nota::apuntar(const std::vector<Apunte>& otros) {
    std::vector<Apunte> apuntes = aplazados_;
    apuntes.insert(apuntes.end(), otros.begin(), otros.end());
    if (estado_.texto.empty()) return crear(apuntes);
    std::uint32_t suma = estado_.suma;
    std::string bytes = lineas(apuntes, suma);
    if (estado_.texto.size() + bytes.size() > estado_.lleno) {
        compactar();
        suma = estado_.suma;
        bytes = lineas(apuntes, suma);
    }
    const std::string nuevas = bytes;
    bytes.resize(
        std::max(bytes.size(), Nota::kTamano - std::min(Nota::kTamano, estado_.texto.size())), ' ');
    escribir(bytes);
    estado_.texto += nuevas;
    estado_.suma = suma;
    for (const Apunte& apunte : apuntes) aplicar(apunte);
    aplazados_.clear();
}

void Nota::afianzar() {
    if (porVolcar_ && !estado_.texto.empty()) escribir({});
}

/// What all lines together say, in as few as it takes.
std::vector<Apunte> Nota::resumen() const {
    std::vector<Apunte> apuntes;
    if (!estado_.copia.empty()) apuntes.emplace_back(apunte::Copia{estado_.copia});
    if (estado_.desconocida) apuntes.emplace_back(apunte::Desconocida{});
    if (estado_.terminadaBien) apuntes.emplace_back(apunte::Fin{true});
    if (estado_.hayPase)
        apuntes.emplace_back(apunte::Pase{estado_.reloj, estado_.hoja.suya, estado_.enTexto.suya});
    for (const Destino destino : kDestinos) {
        const Parte& una = parte(destino);
        if (una.anterior) apuntes.emplace_back(apunte::Empieza{destino, *una.anterior});
        if (!una.llegadas.vacio()) apuntes.emplace_back(apunte::Llega{destino, una.llegadas});
        if (una.empezada) apuntes.emplace_back(apunte::Empieza{destino, *una.empezada});
        if (una.hecha) apuntes.emplace_back(apunte::Hecho{destino});
    }
    if (estado_.descartada) apuntes.emplace_back(apunte::Descarte{});
    return apuntes;
}

/// A note whose destination has failed for weeks gets full; where there is no room to write it
/// anew, it grows.
void Nota::compactar() {
    std::uint32_t suma = sumaDeCabecera();
    const std::string texto = std::string(kCabecera) + lineas(resumen(), suma);
    estado_.lleno = 2 * std::max(texto.size(), estado_.lleno);
    if (texto.size() >= estado_.texto.size()) return;
    std::string bytes = texto;
    bytes.resize(std::max(bytes.size(), Nota::kTamano), ' ');
    try {
        ficheros::reemplazar(disco_, fichero_, bytes);
    } catch (const ErrorFichero&) {
        return;  // the note as it stands is good, only long
    }
    estado_.texto = texto;
    estado_.suma = suma;
    porVolcar_ = false;
}

const Parte& Nota::parte(Destino destino) const {
    return destino == Destino::kHoja ? estado_.hoja : estado_.enTexto;
}

Parte& Nota::deDestino(Destino destino) {
    return destino == Destino::kHoja ? estado_.hoja : estado_.enTexto;
}

bool Nota::acabada() const {
    if (estado_.descartada) return true;
    const auto servida = [](const Parte& una) { return !una.suya || una.hecha; };
    return estado_.hayPase && (estado_.hoja.suya || estado_.enTexto.suya) &&
           servida(estado_.hoja) && servida(estado_.enTexto);
}

void Nota::aplicar(const Apunte& apunte) {
    struct {
        Nota& nota;

        void operator()(const apunte::Copia& a) const { nota.estado_.copia = a.datos; }
        void operator()(const apunte::Desconocida& /*a*/) const { nota.estado_.desconocida = true; }
        void operator()(const apunte::Fin& a) const {
            nota.estado_.terminadaBien = a.bien;
            if (a.bien) nota.estado_.copia.clear();
        }
        void operator()(const apunte::Pase& a) const {
            nota.estado_.hayPase = true;
            nota.estado_.reloj = a.reloj;
            nota.estado_.hoja.suya = a.hoja;
            nota.estado_.enTexto.suya = a.texto;
        }
        void operator()(const apunte::Empieza& a) const {
            nota.deDestino(a.destino).empezada = a.comienzo;
        }
        void operator()(const apunte::Llega& a) const {
            Parte& parte = nota.deDestino(a.destino);
            parte.llegadas.anadir(a.tramos);
            if (parte.empezada && !a.tramos.vacio()) parte.anterior = parte.empezada;
            parte.empezada.reset();
        }
        void operator()(const apunte::Hecho& a) const {
            nota.deDestino(a.destino).hecha = true;
            nota.deDestino(a.destino).empezada.reset();
        }
        void operator()(const apunte::Descarte& /*a*/) const { nota.estado_.descartada = true; }
    } const enLaNota{*this};
    std::visit(enLaNota, apunte);
}

}  // namespace bn
