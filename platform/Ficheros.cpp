// SPDX-License-Identifier: MIT
#include "platform/Ficheros.h"

#include <stdexcept>
#include <utility>

#include "platform/FicheroPaciente.h"

namespace bn::ficheros {
namespace {

using Causa = ErrorFichero::Causa;
using Modo = Disco::Modo;

/// What stands under the name; nothing where it cannot be looked at.
Disco::Clase claseDe(Disco& disco, const std::filesystem::path& ruta) {
    if (hayCeros(ruta)) return Disco::Clase::kNada;
    try {
        return insistir(disco, [&] { return disco.queHay(ruta); });
    } catch (const ErrorFichero&) {
        return Disco::Clase::kNada;  // what asks this cannot use it either
    }
}

/// Nothing when there is no such file.
std::optional<FicheroPaciente> abrirSiHay(Disco& disco, const std::filesystem::path& ruta,
                                          Modo modo) {
    try {
        return std::optional<FicheroPaciente>(std::in_place, disco, ruta, modo);
    } catch (const ErrorFichero& error) {
        if (error.causa() != Causa::kNoExiste) throw;
        return std::nullopt;
    }
}

/// A file open for appending.
struct ParaAnadir {
    FicheroPaciente fichero;
    bool creado = false;
};

ParaAnadir abrirParaAnadir(Disco& disco, const std::filesystem::path& ruta) {
    auto existente = abrirSiHay(disco, ruta, Modo::kAnadir);
    if (existente) return {*std::move(existente)};
    return {FicheroPaciente(disco, ruta, Modo::kCrear), true};
}

void sincronizarSuNombre(Disco& disco, const std::filesystem::path& ruta) {
    sincronizarNombre(disco, insistir(disco, [&] { return disco.destinoReal(ruta); }));
}

/// Writes and does what follows; when either fails, the file is no longer than it was.
template <class Escritura>
void todoONada(const FicheroPaciente& fichero, Escritura escritura) {
    const std::uint64_t antes = fichero.largo();
    try {
        escritura();
    } catch (const ErrorFichero&) {
        fichero.recortar(antes);
        throw;
    }
}

}  // namespace

std::string aTexto(const std::filesystem::path& ruta) {
    const std::u8string utf8 = ruta.u8string();
    return {utf8.begin(), utf8.end()};
}

std::filesystem::path aRuta(const std::string& texto) {
    return {std::u8string(texto.begin(), texto.end())};
}

bool existe(Disco& disco, const std::filesystem::path& ruta) {
    return claseDe(disco, ruta) != Disco::Clase::kNada;
}

bool esCarpeta(Disco& disco, const std::filesystem::path& ruta) {
    return claseDe(disco, ruta) == Disco::Clase::kCarpeta;
}

std::vector<std::string> listar(Disco& disco, const std::filesystem::path& carpeta) {
    exigirSinCeros(carpeta);
    std::vector<std::string> nombres;
    for (const auto& nombre : insistir(disco, [&] { return disco.listar(carpeta); })) {
        nombres.push_back(aTexto(nombre));
    }
    return nombres;
}

std::optional<std::uint64_t> largo(Disco& disco, const std::filesystem::path& ruta) {
    const auto fichero = abrirSiHay(disco, ruta, Modo::kLeer);
    if (!fichero) return std::nullopt;
    return fichero->largo();
}

std::optional<std::string> leer(Disco& disco, const std::filesystem::path& ruta) {
    const auto fichero = abrirSiHay(disco, ruta, Modo::kLeer);
    if (!fichero) return std::nullopt;
    return fichero->leerTodo(0, std::string::npos);
}

std::string leerDesde(Disco& disco, const std::filesystem::path& ruta, std::uint64_t desde,
                      std::size_t limite) {
    return FicheroPaciente(disco, ruta, Modo::kLeer).leerTodo(desde, limite);
}

void crearVacio(Disco& disco, const std::filesystem::path& ruta) {
    // Emptied after the opening: a disk may refuse to make anew what is there but hidden.
    const FicheroPaciente fichero(disco, ruta, Modo::kCrear);
    if (fichero.largo() > 0) fichero.cortar(0);
    fichero.sincronizar();
    sincronizarSuNombre(disco, ruta);
}

void anadir(Disco& disco, const std::filesystem::path& ruta, std::string_view bytes) {
    const ParaAnadir abierto = abrirParaAnadir(disco, ruta);
    todoONada(abierto.fichero, [&] {
        abierto.fichero.anadirTodo(bytes);
        abierto.fichero.sincronizar();
    });
    if (abierto.creado) sincronizarSuNombre(disco, ruta);
}

void sobrescribir(Disco& disco, const std::filesystem::path& ruta, std::uint64_t desde,
                  std::string_view bytes) {
    const FicheroPaciente fichero(disco, ruta, Modo::kEscribir);
    todoONada(fichero, [&] {
        fichero.escribirTodo(desde, bytes);
        fichero.sincronizar();
    });
}

void volcar(Disco& disco, const std::filesystem::path& ruta) {
    try {
        const FicheroPaciente fichero(disco, ruta, Modo::kEscribir);
        fichero.sincronizar();
        sincronizarCarpeta(disco, ruta.parent_path());
    } catch (const ErrorFichero& error) {
        if (error.causa() == ErrorFichero::Causa::kAveria) throw;
        return;  // whoever holds it, or took it away, has it as it was written
    }
}

void cortar(Disco& disco, const std::filesystem::path& ruta, std::uint64_t largo) {
    const FicheroPaciente fichero(disco, ruta, Modo::kEscribir);
    if (fichero.largo() > largo) fichero.cortar(largo);
    fichero.sincronizar();
}

void mover(Disco& disco, const std::filesystem::path& origen,
           const std::filesystem::path& destino) {
    exigirSinCeros(origen);
    exigirSinCeros(destino);
    insistir(disco, [&] { disco.renombrar(origen, destino); });
    try {
        sincronizarNombre(disco, destino);
    } catch (const ErrorFichero&) {
        // It has its new name, and going back might fail as well.
        return;
    }
}

void borrar(Disco& disco, const std::filesystem::path& ruta) {
    exigirSinCeros(ruta);
    try {
        insistir(disco, [&] { disco.borrar(ruta); });
    } catch (const ErrorFichero& error) {
        if (error.causa() != Causa::kNoExiste) throw;
    }
}

void sincronizarCarpeta(Disco& disco, const std::filesystem::path& carpeta) {
    exigirSinCeros(carpeta);
    insistir(disco, [&] { disco.sincronizarCarpeta(carpeta.empty() ? "." : carpeta); });
}

class Anexo::Interior {
 public:
    Interior(Disco& disco, std::filesystem::path ruta)
        : disco_(disco), ruta_(std::move(ruta)), abierto_(abrirParaAnadir(disco, ruta_)) {}

    std::uint64_t largo() const { return abierto_.fichero.largo(); }
    void escribir(std::string_view bytes) const {
        todoONada(abierto_.fichero, [&] { abierto_.fichero.anadirTodo(bytes); });
    }
    void sincronizar() const {
        abierto_.fichero.sincronizar();
        if (abierto_.creado) sincronizarSuNombre(disco_, ruta_);
    }

 private:
    Disco& disco_;
    std::filesystem::path ruta_;
    ParaAnadir abierto_;
};

Anexo::Anexo(Disco& disco, const std::filesystem::path& ruta)
    : interior_(std::make_unique<Interior>(disco, ruta)) {}

Anexo::~Anexo() {
    try {
        cerrar();
    } catch (...) {
        // Whoever could tell the user has had the chance: cerrar.
        return;
    }
}

Anexo::Interior& Anexo::abierto() const {
    if (!interior_) throw std::logic_error("un Anexo cerrado no se puede usar");
    return *interior_;
}

std::uint64_t Anexo::largo() const { return abierto().largo(); }

void Anexo::escribir(std::string_view bytes) { abierto().escribir(bytes); }

void Anexo::cerrar() {
    const std::unique_ptr<Interior> interior = std::move(interior_);
    if (interior) interior->sincronizar();
}

}  // namespace bn::ficheros
