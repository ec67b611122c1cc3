// SPDX-License-Identifier: MIT
#include "download/BusquedaEnTexto.h"

#include <algorithm>
#include <deque>
#include <map>
#include <utility>

namespace bn {

namespace {

constexpr std::string_view kFinDeLinea = "\r\n";

/// What a power cut may have left of the bytes, nothing else before, between or behind it.
bool sonRestosDe(std::string_view restos, std::string_view escritos) {
    return restos.size() <= escritos.size() &&
           std::equal(restos.begin(), restos.end(), escritos.begin(),
                      [](char hay, char habia) { return hay == habia || hay == '\0'; });
}

HallazgoEnTexto completar(std::string_view restos, const std::vector<std::string>& lineas) {
    HallazgoEnTexto hallazgo;
    std::string enteras;
    std::size_t cuantas = 0;
    for (; enteras.size() < restos.size(); ++cuantas) enteras += lineas[cuantas];
    if (cuantas == 0) return hallazgo;
    hallazgo.halladas.anadir(0, cuantas);
    hallazgo.trozos.push_back({0, std::move(enteras)});
    return hallazgo;
}

void hallar(HallazgoEnTexto& hallazgo, std::size_t cual, const std::string& linea,
            std::size_t lugar) {
    hallazgo.halladas.anadir(cual, cual + 1);
    auto& trozos = hallazgo.trozos;
    if (trozos.empty() || trozos.back().lugar + trozos.back().bytes.size() != lugar) {
        trozos.push_back({lugar, {}});
    }
    trozos.back().bytes += linea;
}

HallazgoEnTexto buscarUnaAUna(std::string_view detras, const std::vector<std::string>& lineas) {
    HallazgoEnTexto hallazgo;
    std::map<std::string_view, std::deque<std::size_t>> porHallar;
    for (std::size_t i = 0; i < lineas.size(); ++i) porHallar[lineas[i]].push_back(i);
    std::size_t desde = 0;
    for (std::size_t fin = detras.find(kFinDeLinea); fin != std::string_view::npos;
         fin = detras.find(kFinDeLinea, desde)) {
        const std::size_t siguiente = fin + kFinDeLinea.size();
        const auto igual = porHallar.find(detras.substr(desde, siguiente - desde));
        if (igual != porHallar.end() && !igual->second.empty()) {
            const std::size_t cual = igual->second.front();
            igual->second.pop_front();
            hallar(hallazgo, cual, lineas[cual], desde);
        }
        desde = siguiente;
    }
    const std::string_view cola = detras.substr(desde);
    for (std::size_t i = 0; !cola.empty() && i < lineas.size(); ++i) {
        if (hallazgo.halladas.contiene(i) || !lineas[i].starts_with(cola)) continue;
        hallar(hallazgo, i, lineas[i], desde);
        break;
    }
    return hallazgo;
}

}  // namespace

HallazgoEnTexto buscarEnTexto(std::string_view detras, const std::vector<std::string>& lineas) {
    std::string escritos;
    for (const std::string& linea : lineas) escritos += linea;
    return sonRestosDe(detras, escritos) ? completar(detras, lineas)
                                         : buscarUnaAUna(detras, lineas);
}

}  // namespace bn
