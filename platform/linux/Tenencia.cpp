// SPDX-License-Identifier: MIT
#include "platform/Tenencia.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <fstream>
#include <system_error>

namespace bn {
namespace {

namespace fs = std::filesystem;

/// How a network's folder answers for a file that its other reader does not share.
bool noSeComparte(int error) { return error == EBUSY || error == ETXTBSY || error == EAGAIN; }

/// Locks that belong to the opened file: those of this process count as well.
bool conCerrojoDeTramo(int numero) {
    struct flock tramo {};
    tramo.l_type = F_WRLCK;
    tramo.l_whence = SEEK_SET;
    return ::fcntl(numero, F_OFD_GETLK, &tramo) == 0 && tramo.l_type != F_UNLCK;
}

/// Closing the file gives back what was locked to find out.
bool conCerrojoEntero(int numero) {
    return ::flock(numero, LOCK_EX | LOCK_NB) == -1 && errno == EWOULDBLOCK;
}

}  // namespace

Tenencia tenenciaDe(const fs::path& fichero) {
    constexpr int kComunes = O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    int numero = ::open(fichero.c_str(), O_RDWR | kComunes);
    if (numero == -1 && noSeComparte(errno)) return Tenencia::kTomado;
    if (numero == -1) numero = ::open(fichero.c_str(), O_RDONLY | kComunes);
    if (numero == -1 && noSeComparte(errno)) return Tenencia::kTomado;
    if (numero == -1) return errno == ENOENT ? Tenencia::kLibre : Tenencia::kNoSeSabe;
    const bool tomado = conCerrojoDeTramo(numero) || conCerrojoEntero(numero);
    ::close(numero);
    // Here locks bind nobody, and most programs take none.
    return tomado ? Tenencia::kTomado : Tenencia::kNoSeSabe;
}

bool estaEnMarcha(const std::string& programa) {
    std::error_code error;
    fs::directory_iterator procesos("/proc", error);
    if (error) return true;
    for (const fs::directory_iterator fin; procesos != fin; procesos.increment(error)) {
        std::string nombre;
        std::ifstream fichero(procesos->path() / "comm");
        if (std::getline(fichero, nombre) && nombre == programa) return true;
    }
    return false;
}

std::string nombreDelEquipo() {
    std::array<char, 256> nombre{};
    return ::gethostname(nombre.data(), nombre.size() - 1) == 0 ? nombre.data() : "";
}

}  // namespace bn
