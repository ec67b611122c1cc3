// SPDX-License-Identifier: MIT
#include <array>
#include <utility>

#include "platform/Ficheros.h"

namespace bn::ficheros {

namespace {

constexpr std::string_view kFinDeLinea = "\r\n";

}  // namespace

std::string aTexto(const std::filesystem::path& ruta) {
    const std::u8string utf8 = ruta.u8string();
    return {utf8.begin(), utf8.end()};
}

std::filesystem::path aRuta(const std::string& texto) {
    return {std::u8string(texto.begin(), texto.end())};
}

bool Lineas::final() { return desde_ == leido_.size() && !leerMas(); }

std::string Lineas::siguiente() {
    std::size_t visto = 0;
    for (;;) {
        const std::size_t fin = leido_.find(kFinDeLinea, desde_ + visto);
        if (fin != std::string::npos) {
            const std::size_t comienzo = std::exchange(desde_, fin + kFinDeLinea.size());
            return leido_.substr(comienzo, fin - comienzo);
        }
        // A carriage return that stands last may still get its line feed.
        visto = leido_.size() - desde_;
        if (visto > 0) --visto;
        if (!leerMas()) return leido_.substr(std::exchange(desde_, leido_.size()));
    }
}

/// Drops the lines already given and puts what comes next behind the rest; false at the end.
bool Lineas::leerMas() {
    leido_.erase(0, std::exchange(desde_, 0));
    std::array<char, 65536> trozo{};
    const std::size_t leidos = leer(trozo.data(), trozo.size());
    leido_.append(trozo.data(), leidos);
    return leidos > 0;
}

}  // namespace bn::ficheros
