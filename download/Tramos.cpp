// SPDX-License-Identifier: MIT
#include "download/Tramos.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <limits>

namespace bn {

namespace {

std::optional<std::size_t> ordinal(std::string_view cifras) {
    std::size_t valor = 0;
    const auto [fin, error] = std::from_chars(cifras.data(), cifras.data() + cifras.size(), valor);
    const bool entero = error == std::errc() && fin == cifras.data() + cifras.size();
    if (!entero || valor == std::numeric_limits<std::size_t>::max()) return std::nullopt;
    return valor;
}

}  // namespace

void Tramos::anadir(std::size_t desde, std::size_t hasta) {
    if (desde >= hasta) return;
    auto primero = tramos_.upper_bound(desde);
    if (primero != tramos_.begin() && std::prev(primero)->second >= desde) --primero;
    while (primero != tramos_.end() && primero->first <= hasta) {
        desde = std::min(desde, primero->first);
        hasta = std::max(hasta, primero->second);
        primero = tramos_.erase(primero);
    }
    tramos_.emplace(desde, hasta);
}

void Tramos::anadir(const Tramos& otros) {
    for (const auto& [desde, hasta] : otros.tramos_) anadir(desde, hasta);
}

bool Tramos::contiene(std::size_t ordinal) const {
    const auto siguiente = tramos_.upper_bound(ordinal);
    return siguiente != tramos_.begin() && ordinal < std::prev(siguiente)->second;
}

std::size_t Tramos::cuantos() const {
    std::size_t total = 0;
    for (const auto& [desde, hasta] : tramos_) total += hasta - desde;
    return total;
}

std::string Tramos::texto() const {
    std::string lista;
    for (const auto& [desde, hasta] : tramos_) {
        if (!lista.empty()) lista += ',';
        lista += std::to_string(desde);
        if (hasta - desde > 1) lista += "-" + std::to_string(hasta - 1);
    }
    return lista;
}

std::optional<Tramos> Tramos::deTexto(std::string_view texto) {
    Tramos leidos;
    while (!texto.empty()) {
        const std::string_view tramo = texto.substr(0, texto.find(','));
        texto.remove_prefix(std::min(texto.size(), tramo.size() + 1));
        const std::size_t guion = tramo.find('-');
        const auto desde = ordinal(tramo.substr(0, guion));
        const auto hasta =
            guion == std::string_view::npos ? desde : ordinal(tramo.substr(guion + 1));
        if (!desde || !hasta || *hasta < *desde) return std::nullopt;
        leidos.anadir(*desde, *hasta + 1);
    }
    return leidos;
}

}  // namespace bn
