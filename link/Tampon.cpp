// SPDX-License-Identifier: MIT
#include "link/Tampon.h"

#include <string_view>

namespace bn {

namespace {

// Far beyond any frame: more than this without a terminator is noise, and only its end can matter.
constexpr std::size_t kRuidoMaximo = 4096;

// What follows the check character.
constexpr std::string_view kFinal = "\n\r";

}  // namespace

void Tampon::empezar() {
    bytes_.clear();
    cortadas_.clear();
    olvidadaAMedias_ = false;
    retenida_ = false;
}

bool Tampon::anadir(const std::string& bytes) {
    const bool habia = hayTrama();
    bytes_ += bytes;
    const bool terminan = bytes.find(protocolo_.Terminador()) != std::string::npos;
    if (bytes_.size() > kRuidoMaximo && bytes_.find(protocolo_.Terminador()) == std::string::npos) {
        olvidadaAMedias_ = aMedias();
        bytes_.erase(0, bytes_.size() - kRuidoMaximo);
    }
    retenida_ = retenida_ || esperaFinal();
    return hayTrama() && (terminan || !habia);
}

/// 0 when none is complete.
std::size_t Tampon::largoTrama() const {
    const std::size_t fin = bytes_.find(protocolo_.Terminador());
    if (fin == std::string::npos) return 0;
    const std::size_t corte = fin + 1;
    if (cortadas_.empty() || !cortadas_.contains(bytes_.substr(0, corte))) return corte;
    const std::string_view siguen = std::string_view(bytes_).substr(corte, kFinal.size());
    if (siguen == kFinal) return corte + kFinal.size();
    return kFinal.starts_with(siguen) ? 0 : corte;
}

/// A frame that its check character has cut before stands there, and its ending may still come.
bool Tampon::esperaFinal() const {
    return !hayTrama() && bytes_.find(protocolo_.Terminador()) != std::string::npos;
}

Tampon::Trama Tampon::tomar() {
    const std::size_t largo = largoTrama();
    Trama trama{bytes_.substr(0, largo), olvidadaAMedias_, false};
    trama.retenida = retenida_ && cortadas_.contains(trama.bytes);
    bytes_.erase(0, largo);
    olvidadaAMedias_ = false;
    retenida_ = false;
    return trama;
}

void Tampon::rechazada(const std::string& trama) {
    if (protocolo_.CortadaEnControl(trama)) cortadas_.insert(trama);
}

bool Tampon::aMedias() const {
    if (olvidadaAMedias_ || esperaFinal()) return true;
    const std::size_t fin = bytes_.rfind(protocolo_.Terminador());
    const std::size_t desde = fin == std::string::npos ? 0 : fin + 1;
    return protocolo_.HayInicio(std::string_view(bytes_).substr(desde));
}

void Tampon::olvidar() {
    olvidadaAMedias_ = aMedias();
    retenida_ = false;
    bytes_.clear();
}

}  // namespace bn
