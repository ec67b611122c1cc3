// SPDX-License-Identifier: MIT
#include <charconv>
#include <optional>
#include <utility>

#include "platform/FicheroPaciente.h"
#include "platform/Ficheros.h"

namespace bn::ficheros {
namespace {

namespace fs = std::filesystem;
using Causa = ErrorFichero::Causa;

constexpr std::string_view kComienzo = ".bn-";
constexpr std::string_view kFinal = ".tmp";

std::string nombreTemporal(std::uint32_t proceso, int numero) {
    return std::string(kComienzo) + std::to_string(proceso) + "-" + std::to_string(numero) +
           std::string(kFinal);
}

/// Takes a number off the beginning of the text.
std::optional<std::uint32_t> sacarNumero(std::string_view& texto) {
    std::uint32_t numero = 0;
    const auto [fin, error] = std::from_chars(texto.data(), texto.data() + texto.size(), numero);
    if (error != std::errc{}) return std::nullopt;
    texto.remove_prefix(static_cast<std::size_t>(fin - texto.data()));
    return numero;
}

/// Whose temporary the name is; nothing when it is none.
std::optional<std::uint32_t> procesoDe(std::string_view nombre) {
    if (!nombre.starts_with(kComienzo)) return std::nullopt;
    nombre.remove_prefix(kComienzo.size());
    const auto proceso = sacarNumero(nombre);
    if (!proceso || !nombre.starts_with('-')) return std::nullopt;
    nombre.remove_prefix(1);
    return sacarNumero(nombre) && nombre == kFinal ? proceso : std::nullopt;
}

/// A new file beside another one, removed again unless it has taken the other's place.
class Temporal {
 public:
    Temporal(Disco& disco, fs::path definitivo)
        : disco_(disco),
          definitivo_(std::move(definitivo)),
          fichero_(std::in_place, disco, nuevo()) {}
    Temporal(const Temporal&) = delete;
    Temporal& operator=(const Temporal&) = delete;
    ~Temporal() {
        if (colocado_) return;
        try {
            fichero_.reset();
            insistir(disco_, [&] { disco_.borrar(ruta_); });
        } catch (...) {
            return;  // borrarTemporales takes it away some day
        }
    }

    const FicheroPaciente& fichero() const { return *fichero_; }

    /// Closes it and gives it the other's name.
    void colocar() {
        fichero_.reset();
        insistir(disco_, [&] { disco_.renombrar(ruta_, definitivo_); });
        colocado_ = true;
    }

 private:
    std::unique_ptr<Disco::Fichero> nuevo() {
        // Leftovers of a run that was cut short may stand in the way.
        constexpr int kMaximoIntentos = 1000;
        for (int i = 0; i < kMaximoIntentos; ++i) {
            ruta_ = definitivo_.parent_path() / nombreTemporal(disco_.proceso(), i);
            auto fichero = insistir(disco_, [&] { return disco_.nuevo(ruta_); });
            if (fichero) return fichero;
        }
        throw ErrorFichero(definitivo_, "hay demasiados ficheros temporales", Causa::kOtra);
    }

    Disco& disco_;
    fs::path definitivo_;
    fs::path ruta_;
    std::optional<FicheroPaciente> fichero_;
    bool colocado_ = false;
};

/// Whether there is a file to be replaced. Throws when what stands under the name must not be.
bool exigirSustituible(Disco& disco, const fs::path& ruta) {
    switch (insistir(disco, [&] { return disco.queHay(ruta); })) {
        case Disco::Clase::kNada:
            return false;
        case Disco::Clase::kCarpeta:
            throw ErrorFichero(ruta, "es una carpeta", Causa::kEsCarpeta);
        case Disco::Clase::kOtra:
            throw ErrorFichero(ruta, "no es un fichero corriente", Causa::kOtra);
        case Disco::Clase::kFichero:
            break;
    }
    // Renaming needs only the folder; a file protected against writing must stay protected.
    const FicheroPaciente protegido(disco, ruta, Disco::Modo::kEscribir);
    return true;
}

void reemplazarDestino(Disco& disco, const fs::path& destino, std::string_view bytes) {
    const bool hay = exigirSustituible(disco, destino);
    Temporal temporal(disco, destino);
    if (hay) temporal.fichero().heredar(destino);
    temporal.fichero().escribirTodo(0, bytes);
    temporal.fichero().sincronizar();
    temporal.colocar();
    sincronizarNombre(disco, destino);
}

}  // namespace

void reemplazar(Disco& disco, const fs::path& ruta, std::string_view bytes) {
    exigirSinCeros(ruta);
    try {
        reemplazarDestino(disco, insistir(disco, [&] { return disco.destinoReal(ruta); }), bytes);
    } catch (const ErrorFichero& error) {
        // Whoever asked knows neither the temporary nor where a link leads.
        throw ErrorFichero(ruta, std::string(error.explicacion()), error.causa());
    }
}

void borrarTemporales(Disco& disco, const fs::path& carpeta) {
    std::vector<std::string> nombres;
    try {
        nombres = listar(disco, carpeta);
    } catch (const ErrorFichero&) {
        return;  // leftovers only take room: the next time may do
    }
    for (const std::string& nombre : nombres) {
        const auto proceso = procesoDe(nombre);
        if (!proceso || *proceso == disco.proceso()) continue;
        try {
            borrar(disco, carpeta / aRuta(nombre));
        } catch (const ErrorFichero&) {
            continue;  // the next time may do
        }
    }
}

}  // namespace bn::ficheros
