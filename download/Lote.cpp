// SPDX-License-Identifier: MIT
#include "download/Lote.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "link/sacoTramas.h"
#include "platform/Ficheros.h"

namespace bn {

namespace {

constexpr std::string_view kFinDeLinea = "\r\n";

bool acabaEnFinDeLinea(Disco& disco, const std::filesystem::path& fichero) {
    const std::uint64_t largo = ficheros::largo(disco, fichero).value_or(0);
    return largo >= kFinDeLinea.size() &&
           ficheros::leerDesde(disco, fichero, largo - kFinDeLinea.size()) == kFinDeLinea;
}

}  // namespace

Lote::Lote(Plataforma& plataforma, std::uint32_t numero, std::filesystem::path almacen,
           std::filesystem::path nota)
    : plataforma_(plataforma),
      numero_(numero),
      almacen_(std::move(almacen)),
      nota_(plataforma.disco(), std::move(nota)) {}

void Lote::releer() {
    try {
        nota_.leer();
        porQueIlegible_.clear();
        cuantas_ = 0;
        const bool hay = ficheros::largo(plataforma_.disco(), almacen_).value_or(0) > 0;
        const auto leidas = hay ? pesadas() : std::vector<std::string>();
        cuantas_ = leidas.size();
        ultima_ = leidas.empty() ? std::string() : leidas.back();
        if (!nota_.acabada() || !nota_.terminadaBien()) afianzar(leidas);
    } catch (const ErrorFichero& error) {
        porQueIlegible_ = error.what();
    }
}

/// Whoever stored the last one may not have lived to flush it. From now on it counts: it is saved,
/// and when the indicator sends it once more it is acknowledged.
void Lote::afianzar(const std::vector<std::string>& todas) {
    if (todas.empty()) return;
    std::uint64_t lugar = 0;
    for (const std::string& datos : todas) lugar += datos.size() + kFinDeLinea.size();
    const std::string linea = todas.back() + std::string(kFinDeLinea);
    ficheros::sobrescribir(plataforma_.disco(), almacen_, lugar - linea.size(), linea);
}

std::vector<std::string> Lote::pesadas() {
    sacoTramas saco(plataforma_, almacen_);
    if (!saco.iniRecupero()) {
        throw ErrorFichero(ficheros::aTexto(almacen_) +
                           ": no se pueden leer las pesadas recibidas");
    }
    std::vector<std::string> todas;
    for (std::string datos = saco.Recupero(); !datos.empty(); datos = saco.Recupero()) {
        todas.push_back(std::move(datos));
    }
    if (!todas.empty() && !acabaEnFinDeLinea(plataforma_.disco(), almacen_)) todas.pop_back();
    if (todas.size() < cuantas_) {
        throw ErrorFichero(ficheros::aTexto(almacen_) + ": faltan pesadas que se habían recibido");
    }
    return todas;
}

void Lote::asegurar(const std::vector<std::string>& todas) {
    if (!dudoso_) return;
    afianzar(todas);
    cuantas_ = todas.size();
    dudoso_ = false;
}

std::size_t Lote::porLlegar() const {
    if (nota_.acabada()) return 0;
    if (ilegible()) return std::max<std::size_t>(cuantas_, 1);
    std::size_t faltan = 0;
    for (std::size_t i = 0; i < cuantas_; ++i) {
        if (falta(i)) ++faltan;
    }
    return faltan;
}

bool Lote::falta(std::size_t ordinal) const {
    if (nota_.acabada()) return false;
    if (!nota_.hayPase()) return true;
    return std::any_of(kDestinos.begin(), kDestinos.end(), [&](Destino destino) {
        const Parte& parte = nota_.parte(destino);
        return parte.suya && !parte.hecha && !parte.llegadas.contiene(ordinal);
    });
}

const std::string& Lote::copia() const {
    static const std::string kNinguna;
    if (nota_.terminadaBien()) return kNinguna;
    return ultima_.empty() ? nota_.copia() : ultima_;
}

}  // namespace bn
