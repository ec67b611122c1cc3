// SPDX-License-Identifier: MIT
#include "platform/Disco.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

namespace bn {
namespace {

namespace fs = std::filesystem;
using Causa = ErrorFichero::Causa;

constexpr mode_t kPermisosNuevo = 0666;

struct Motivo {
    std::string texto;
    Causa causa;
};

Motivo motivoDe(int error) {
    switch (error) {
        case EACCES:
        case EPERM:
            return {"acceso denegado", Causa::kSinPermiso};
        case ENOENT:
            return {"no existe", Causa::kNoExiste};
        case ENOTDIR:
            return {"no existe la carpeta", Causa::kNoExiste};
        case ENOSPC:
        case EDQUOT:
            return {"el disco está lleno", Causa::kLleno};
        case EISDIR:
            return {"es una carpeta", Causa::kEsCarpeta};
        case EFBIG:
            return {"demasiado grande", Causa::kOtra};
        case EROFS:
            return {"el disco es de solo lectura", Causa::kSoloLectura};
        case EIO:
            return {"error de lectura o escritura del disco", Causa::kAveria};
        case ENODEV:
        case ENXIO:
        case ENOTCONN:
        case ESTALE:
        case EHOSTDOWN:
        case EHOSTUNREACH:
        case ENETUNREACH:
        case ETIMEDOUT:
            return {"no se llega a la unidad", Causa::kAveria};
        case ENAMETOOLONG:
            return {"el nombre es demasiado largo", Causa::kOtra};
        case EMFILE:
        case ENFILE:
            return {"hay demasiados ficheros abiertos", Causa::kOtra};
        case ELOOP:
            return {"demasiados enlaces simbólicos", Causa::kOtra};
        case EBUSY:
        case ETXTBSY:
            return {"está en uso", Causa::kEnUso};
        default:
            return {"error " + std::to_string(error) + " del sistema", Causa::kOtra};
    }
}

[[noreturn]] void fallar(const fs::path& ruta, int error) {
    const Motivo motivo = motivoDe(error);
    throw ErrorFichero(ruta, motivo.texto, motivo.causa);
}

/// Calls again as long as a signal interrupts.
template <class Llamada>
auto repetir(Llamada llamada) {
    auto resultado = llamada();
    while (resultado == -1 && errno == EINTR) {
        resultado = llamada();
    }
    return resultado;
}

int abrirNumero(const fs::path& ruta, int modo) {
    return repetir([&] { return ::open(ruta.c_str(), modo | O_CLOEXEC, kPermisosNuevo); });
}

class FicheroLinux final : public Disco::Fichero {
 public:
    FicheroLinux(int numero, fs::path nombre) : nombre_(std::move(nombre)), numero_(numero) {}
    FicheroLinux(const FicheroLinux&) = delete;
    FicheroLinux& operator=(const FicheroLinux&) = delete;
    // Not called again when interrupted: the number is free already.
    ~FicheroLinux() override { ::close(numero_); }

    std::size_t leer(std::uint64_t desde, char* destino, std::size_t cabida) override {
        const auto sitio = static_cast<off_t>(desde);
        ssize_t leidos = repetir([&] { return ::pread(numero_, destino, cabida, sitio); });
        // A pipe has no places: it gives what comes next.
        if (leidos == -1 && errno == ESPIPE) {
            leidos = repetir([&] { return ::read(numero_, destino, cabida); });
        }
        exigir(leidos != -1);
        return static_cast<std::size_t>(leidos);
    }

    std::size_t escribir(std::uint64_t desde, std::string_view bytes) override {
        const auto sitio = static_cast<off_t>(desde);
        return escritos(
            repetir([&] { return ::pwrite(numero_, bytes.data(), bytes.size(), sitio); }));
    }

    std::size_t anadir(std::string_view bytes) override {
        return escritos(repetir([&] { return ::write(numero_, bytes.data(), bytes.size()); }));
    }

    std::uint64_t largo() override {
        return static_cast<std::uint64_t>(std::max<off_t>(estado().st_size, 0));
    }

    void cortar(std::uint64_t largo) override {
        exigir(repetir([&] { return ::ftruncate(numero_, static_cast<off_t>(largo)); }) == 0);
    }

    void sincronizar() override {
        // What has no disk behind it (a pipe, a device) answers so: nothing is there to be flushed.
        exigir(repetir([&] { return ::fsync(numero_); }) == 0 || errno == EINVAL || errno == EROFS);
    }

    void heredar(const fs::path& otro) override {
        struct stat viejo {};
        if (::stat(otro.c_str(), &viejo) == -1) fallar(otro, errno);
        // Only the superuser can keep a stranger's file the stranger's; for the others it becomes
        // their own, which is the price of replacing it whole.
        const bool mismoDueno = ::fchown(numero_, viejo.st_uid, viejo.st_gid) == 0;
        const mode_t permisos = viejo.st_mode & (mismoDueno ? 07777U : 0777U);
        exigir(::fchmod(numero_, permisos) == 0);
    }

    struct stat estado() const {
        struct stat datos {};
        exigir(::fstat(numero_, &datos) == 0);
        return datos;
    }

 private:
    void exigir(bool resultado) const {
        if (!resultado) fallar(nombre_, errno);
    }

    std::size_t escritos(ssize_t resultado) const {
        exigir(resultado != -1);
        if (resultado == 0) fallar(nombre_, ENOSPC);
        return static_cast<std::size_t>(resultado);
    }

    fs::path nombre_;
    int numero_;
};

int banderasDe(Disco::Modo modo) {
    switch (modo) {
        case Disco::Modo::kLeer:
            return O_RDONLY;
        case Disco::Modo::kEscribir:
            return O_WRONLY;
        case Disco::Modo::kAnadir:
            return O_WRONLY | O_APPEND;
        case Disco::Modo::kCrear:
            return O_WRONLY | O_APPEND | O_CREAT;
    }
    return O_RDONLY;
}

class DiscoLinux final : public Disco {
 public:
    std::unique_ptr<Fichero> abrir(const fs::path& ruta, Modo modo) override {
        const int numero = abrirNumero(ruta, banderasDe(modo));
        if (numero == -1) fallar(ruta, errno);
        auto fichero = std::make_unique<FicheroLinux>(numero, ruta);
        // Only for reading is a folder opened like a file.
        if (modo == Modo::kLeer && S_ISDIR(fichero->estado().st_mode)) fallar(ruta, EISDIR);
        return fichero;
    }

    std::unique_ptr<Fichero> nuevo(const fs::path& ruta) override {
        const int numero = abrirNumero(ruta, O_WRONLY | O_CREAT | O_EXCL);
        if (numero == -1 && errno == EEXIST) return nullptr;
        if (numero == -1) fallar(ruta, errno);
        return std::make_unique<FicheroLinux>(numero, ruta);
    }

    Clase queHay(const fs::path& ruta) override {
        struct stat datos {};
        if (::stat(ruta.c_str(), &datos) == -1) {
            if (errno == ENOENT || errno == ENOTDIR) return Clase::kNada;
            fallar(ruta, errno);
        }
        if (S_ISDIR(datos.st_mode)) return Clase::kCarpeta;
        return S_ISREG(datos.st_mode) ? Clase::kFichero : Clase::kOtra;
    }

    fs::path destinoReal(const fs::path& ruta) override {
        constexpr int kMaximoEnlaces = 40;
        fs::path real = ruta;
        for (int i = 0; i < kMaximoEnlaces; ++i) {
            std::error_code error;
            const fs::path destino = fs::read_symlink(real, error);
            if (error) return real;
            real = real.parent_path() / destino;
        }
        fallar(ruta, ELOOP);
    }

    std::vector<fs::path> listar(const fs::path& carpeta) override {
        std::vector<fs::path> nombres;
        std::error_code error;
        for (fs::directory_iterator it(carpeta, error), fin; !error && it != fin;
             it.increment(error)) {
            nombres.push_back(it->path().filename());
        }
        if (error) fallar(carpeta, error.value());
        return nombres;
    }

    void renombrar(const fs::path& origen, const fs::path& destino) override {
        if (::rename(origen.c_str(), destino.c_str()) == -1) fallar(origen, errno);
    }

    void borrar(const fs::path& ruta) override {
        if (::unlink(ruta.c_str()) == -1) fallar(ruta, errno);
    }

    void sincronizarCarpeta(const fs::path& carpeta) override {
        const int numero = abrirNumero(carpeta, O_RDONLY | O_DIRECTORY);
        // A folder may let files in without letting itself be read.
        if (numero == -1 && errno == EACCES) return;
        if (numero == -1) fallar(carpeta, errno);
        FicheroLinux(numero, carpeta).sincronizar();
    }

    void esperar(std::chrono::milliseconds tiempo) override { std::this_thread::sleep_for(tiempo); }

    std::uint32_t proceso() const override { return static_cast<std::uint32_t>(::getpid()); }
};

}  // namespace

Disco& discoDelSistema() {
    static DiscoLinux disco;
    return disco;
}

}  // namespace bn
