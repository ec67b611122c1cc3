// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <csignal>
#include <optional>
#include <string_view>
#include <system_error>
#include <thread>

#include "platform/Escritorio.h"

namespace bn::escritorio {
namespace {

namespace fs = std::filesystem;

bool empiezaPor(std::string_view texto, std::string_view prefijo) {
    return texto.size() > prefijo.size() &&
           std::equal(prefijo.begin(), prefijo.end(), texto.begin(), [](char a, char b) {
               return a == std::tolower(static_cast<unsigned char>(b));
           });
}

bool esDireccion(std::string_view texto) {
    return empiezaPor(texto, "http://") || empiezaPor(texto, "https://");
}

/// How the viewer is to start: with none of the program's files (the port is one of them), none of
/// its blocked signals, in a session of its own, so that it outlives the program.
class ModoDeInicio {
 public:
    ModoDeInicio() {
        ::posix_spawn_file_actions_init(&ficheros_);
        ::posix_spawn_file_actions_addopen(&ficheros_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        ::posix_spawn_file_actions_addopen(&ficheros_, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        ::posix_spawn_file_actions_addopen(&ficheros_, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        ::posix_spawn_file_actions_addclosefrom_np(&ficheros_, STDERR_FILENO + 1);
        ::posix_spawnattr_init(&atributos_);
        sigset_t ninguna;
        ::sigemptyset(&ninguna);
        ::posix_spawnattr_setsigmask(&atributos_, &ninguna);
        ::posix_spawnattr_setflags(&atributos_, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK);
    }
    ModoDeInicio(const ModoDeInicio&) = delete;
    ModoDeInicio& operator=(const ModoDeInicio&) = delete;
    ~ModoDeInicio() {
        ::posix_spawn_file_actions_destroy(&ficheros_);
        ::posix_spawnattr_destroy(&atributos_);
    }

    /// The new process; nothing when the program is not there or cannot be run.
    std::optional<pid_t> iniciar(const char* programa, const std::string& argumento) const {
        std::string nombre = programa;
        std::string copia = argumento;
        const std::array<char*, 3> argumentos{nombre.data(), copia.data(), nullptr};
        pid_t proceso = 0;
        if (::posix_spawnp(&proceso, programa, &ficheros_, &atributos_, argumentos.data(),
                           environ) != 0) {
            return std::nullopt;
        }
        return proceso;
    }

 private:
    posix_spawn_file_actions_t ficheros_{};
    posix_spawnattr_t atributos_{};
};

/// Takes the viewer's end off the system when it comes: until then a thread waits for nothing else.
void recoger(pid_t proceso) {
    try {
        std::thread([proceso] { ::waitpid(proceso, nullptr, 0); }).detach();
    } catch (const std::system_error&) {
        // No thread to be had: the document is open all the same, and the system takes the ended
        // process away together with the program.
    }
}

}  // namespace

int32_t abrirDocumento(const std::string& rutaODireccion) {
    std::string destino = rutaODireccion;
    if (!esDireccion(destino)) {
        std::error_code error;
        if (destino.find('\0') != std::string::npos || !fs::exists(destino, error)) {
            return kNoEncontrado;
        }
        destino = fs::absolute(destino).string();  // a name that begins with '-' is not an option
    }
    const auto proceso = ModoDeInicio().iniciar("xdg-open", destino);
    if (!proceso) {
        return kSinPrograma;
    }
    recoger(*proceso);
    return kAbierto;
}

}  // namespace bn::escritorio
