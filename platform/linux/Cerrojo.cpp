// SPDX-License-Identifier: MIT
#include "platform/Cerrojo.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace bn {

struct Cerrojo::Sistema {
    explicit Sistema(const std::filesystem::path& ruta)
        : fichero(ruta), numero(::open(ruta.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666)) {
        // Another user's file can be held all the same.
        if (numero < 0 && errno == EACCES) numero = ::open(ruta.c_str(), O_RDONLY | O_CLOEXEC);
    }
    Sistema(const Sistema&) = delete;
    Sistema& operator=(const Sistema&) = delete;
    ~Sistema() {
        if (numero >= 0) ::close(numero);
    }

    /// False when the file has been removed by its last holder since it was opened.
    bool sigueEnSuSitio() const {
        struct stat abierto {};
        struct stat visto {};
        return ::fstat(numero, &abierto) == 0 && ::stat(fichero.c_str(), &visto) == 0 &&
               abierto.st_dev == visto.st_dev && abierto.st_ino == visto.st_ino;
    }

    std::filesystem::path fichero;
    int numero;
};

Cerrojo::Cerrojo(const std::filesystem::path& fichero) {
    constexpr int kVeces = 10;  // each time the file would have to have been removed meanwhile
    for (int vez = 0; vez < kVeces; ++vez) {
        sistema_ = std::make_unique<Sistema>(fichero);
        if (sistema_->numero < 0) return;
        if (::flock(sistema_->numero, LOCK_EX | LOCK_NB) != 0) {
            estado_ = errno == EWOULDBLOCK ? Estado::kDeOtro : Estado::kImposible;
            return;
        }
        if (sistema_->sigueEnSuSitio()) {
            estado_ = Estado::kNuestro;
            return;
        }
    }
}

Cerrojo::~Cerrojo() {
    if (estado_ == Estado::kNuestro) ::unlink(sistema_->fichero.c_str());
}

}  // namespace bn
