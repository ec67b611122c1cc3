// SPDX-License-Identifier: MIT
#include <array>
#include <utility>

#include "platform/FicheroPaciente.h"
#include "platform/Ficheros.h"

namespace bn::ficheros {

namespace {

constexpr std::string_view kFinDeLinea = "\r\n";

}  // namespace

class Lineas::Interior {
 public:
    Interior(Disco& disco, const std::filesystem::path& ruta)
        : fichero_(disco, ruta, Disco::Modo::kLeer) {}

    /// Puts what comes next behind the text; false at the end.
    bool leerMas(std::string& texto) {
        std::array<char, 65536> trozo{};
        const std::size_t leidos = fichero_.leer(sitio_, trozo.data(), trozo.size());
        texto.append(trozo.data(), leidos);
        sitio_ += leidos;
        return leidos > 0;
    }

 private:
    FicheroPaciente fichero_;
    std::uint64_t sitio_ = 0;
};

Lineas::Lineas(Disco& disco, const std::filesystem::path& ruta)
    : interior_(std::make_unique<Interior>(disco, ruta)) {}

Lineas::~Lineas() = default;

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
    return interior_->leerMas(leido_);
}

}  // namespace bn::ficheros
