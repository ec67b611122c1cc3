// SPDX-License-Identifier: MIT
#include "platform/Ficheros.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

namespace bn::ficheros {
namespace {

constexpr mode_t kPermisosNuevo = 0666;

std::string causaDe(int error) {
    switch (error) {
        case EACCES:
        case EPERM:
            return "acceso denegado";
        case ENOENT:
            return "no existe";
        case ENOTDIR:
            return "no existe la carpeta";
        case ENOSPC:
        case EDQUOT:
            return "el disco está lleno";
        case EISDIR:
            return "es una carpeta";
        case EFBIG:
            return "demasiado grande";
        case EROFS:
            return "el disco es de solo lectura";
        case EIO:
            return "error de lectura o escritura del disco";
        case ENAMETOOLONG:
            return "el nombre es demasiado largo";
        case EMFILE:
        case ENFILE:
            return "hay demasiados ficheros abiertos";
        case ELOOP:
            return "demasiados enlaces simbólicos";
        case EBUSY:
        case ETXTBSY:
            return "está en uso";
        default:
            return "error " + std::to_string(error) + " del sistema";
    }
}

[[noreturn]] void fallar(const std::filesystem::path& ruta, const std::string& causa) {
    std::string texto = aTexto(ruta) + ": " + causa;
    // what() ends at the first zero.
    std::replace(texto.begin(), texto.end(), '\0', '?');
    throw ErrorFichero(texto);
}

[[noreturn]] void fallar(const std::filesystem::path& ruta, int error) {
    fallar(ruta, causaDe(error));
}

/// Calls again as long as a signal interrupts.
template <class Llamada>
auto insistir(Llamada llamada) {
    auto resultado = llamada();
    while (resultado == -1 && errno == EINTR) {
        resultado = llamada();
    }
    return resultado;
}

bool hayCeros(const std::filesystem::path& ruta) {
    return ruta.native().find('\0') != std::string::npos;
}

/// The system would take a path with a zero inside for another, shorter one.
void exigirSinCeros(const std::filesystem::path& ruta) {
    if (hayCeros(ruta)) {
        fallar(ruta, ENOENT);
    }
}

/// An open file.
class Descriptor {
 public:
    Descriptor(const std::filesystem::path& ruta, int modo) : Descriptor(ruta, modo, ruta) {}
    /// Messages name it otherwise than by its path.
    Descriptor(const std::filesystem::path& ruta, int modo, std::filesystem::path nombre)
        : nombre_(std::move(nombre)) {
        exigirSinCeros(ruta);
        numero_ = insistir([&] { return ::open(ruta.c_str(), modo | O_CLOEXEC, kPermisosNuevo); });
        error_ = numero_ == -1 ? errno : 0;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    Descriptor(Descriptor&& otro) noexcept
        : nombre_(std::move(otro.nombre_)),
          numero_(std::exchange(otro.numero_, -1)),
          error_(otro.error_) {}
    Descriptor& operator=(Descriptor&&) = delete;
    ~Descriptor() { cerrar(); }

    /// Why it could not be opened; 0 when it is open.
    int error() const { return error_; }
    int numero() const { return numero_; }
    const std::filesystem::path& nombre() const { return nombre_; }

    void exigirAbierto() const {
        if (numero_ == -1) {
            fallar(nombre_, error_);
        }
    }

    struct stat estado() const {
        struct stat datos {};
        if (::fstat(numero_, &datos) == -1) {
            fallar(nombre_, errno);
        }
        return datos;
    }

    /// What comes next; 0 at the end.
    std::size_t leer(char* destino, std::size_t cabida) const {
        const ssize_t leidos = insistir([&] { return ::read(numero_, destino, cabida); });
        if (leidos == -1) {
            fallar(nombre_, errno);
        }
        return static_cast<std::size_t>(leidos);
    }

    std::string leerTodo() const {
        std::string contenido;
        contenido.reserve(static_cast<std::size_t>(std::max<off_t>(estado().st_size, 0)));
        std::array<char, 65536> buffer{};
        while (const std::size_t leidos = leer(buffer.data(), buffer.size())) {
            contenido.append(buffer.data(), leidos);
        }
        return contenido;
    }

    void escribirTodo(std::string_view bytes) const {
        while (!bytes.empty()) {
            const ssize_t escritos =
                insistir([&] { return ::write(numero_, bytes.data(), bytes.size()); });
            if (escritos <= 0) {
                fallar(nombre_, escritos == 0 ? ENOSPC : errno);
            }
            bytes.remove_prefix(static_cast<std::size_t>(escritos));
        }
    }

    void sincronizar() const {
        // What has no disk behind it (a pipe, a device) answers so: nothing is there to be flushed.
        if (insistir([&] { return ::fsync(numero_); }) == -1 && errno != EINVAL && errno != EROFS) {
            fallar(nombre_, errno);
        }
    }

    /// Best effort: whoever cuts back is already on the way to tell of a worse failure.
    void recortar(off_t largo) const noexcept {
        if (insistir([&] { return ::ftruncate(numero_, largo); }) == 0) {
            insistir([&] { return ::fsync(numero_); });
        }
    }

    void cerrar() noexcept {
        if (numero_ != -1) {
            // Not called again when interrupted: the number is free already.
            ::close(std::exchange(numero_, -1));
        }
    }

 private:
    std::filesystem::path nombre_;
    int numero_ = -1;
    int error_ = 0;
};

/// The file that symbolic links lead to, whether it exists or not.
std::filesystem::path destinoReal(std::filesystem::path ruta) {
    constexpr int kMaximoEnlaces = 40;
    for (int i = 0; i < kMaximoEnlaces; ++i) {
        std::error_code error;
        const std::filesystem::path destino = std::filesystem::read_symlink(ruta, error);
        if (error) {
            return ruta;
        }
        ruta = ruta.parent_path() / destino;
    }
    fallar(ruta, ELOOP);
}

/// A file that has just come into being, or under a new name, lasts only when its folder does.
void sincronizarCarpeta(const std::filesystem::path& fichero) {
    const std::filesystem::path carpeta = fichero.parent_path();
    const Descriptor abierta(carpeta.empty() ? "." : carpeta, O_RDONLY | O_DIRECTORY);
    // A folder may let files in without letting itself be read; there is no way to flush it then.
    if (abierta.error() == EACCES) {
        return;
    }
    abierta.exigirAbierto();
    abierta.sincronizar();
}

Descriptor abrirParaAnadir(const std::filesystem::path& ruta, bool& creado) {
    Descriptor existente(ruta, O_WRONLY | O_APPEND);
    creado = existente.error() == ENOENT;
    if (!creado) {
        existente.exigirAbierto();
        return existente;
    }
    Descriptor nuevo(ruta, O_WRONLY | O_APPEND | O_CREAT);
    nuevo.exigirAbierto();
    return nuevo;
}

/// A new file beside another one, removed again unless it has taken the other's place.
class Temporal {
 public:
    Temporal(std::filesystem::path definitivo, const std::filesystem::path& nombre)
        : definitivo_(std::move(definitivo)), fichero_(abrirNuevo(nombre)) {}
    Temporal(const Temporal&) = delete;
    Temporal& operator=(const Temporal&) = delete;
    ~Temporal() {
        if (!colocado_) {
            ::unlink(ruta_.c_str());
        }
    }

    const Descriptor& fichero() const { return fichero_; }

    void heredar(const struct stat& viejo) const {
        // Only the superuser can keep a stranger's file the stranger's; for the others it becomes
        // their own, which is the price of replacing it whole.
        const bool mismoDueno = ::fchown(fichero_.numero(), viejo.st_uid, viejo.st_gid) == 0;
        const mode_t permisos = viejo.st_mode & (mismoDueno ? 07777U : 0777U);
        if (::fchmod(fichero_.numero(), permisos) == -1) {
            fallar(fichero_.nombre(), errno);
        }
    }

    void colocar() {
        if (::rename(ruta_.c_str(), definitivo_.c_str()) == -1) {
            fallar(fichero_.nombre(), errno);
        }
        colocado_ = true;
    }

 private:
    Descriptor abrirNuevo(const std::filesystem::path& nombre) {
        // Leftovers of a run that was cut short may stand in the way.
        constexpr int kMaximoIntentos = 1000;
        const std::string comienzo = ".bn-" + std::to_string(::getpid()) + "-";
        int error = EEXIST;
        for (int i = 0; i < kMaximoIntentos && error == EEXIST; ++i) {
            ruta_ = definitivo_.parent_path() / (comienzo + std::to_string(i) + ".tmp");
            Descriptor nuevo(ruta_, O_WRONLY | O_CREAT | O_EXCL, nombre);
            if (nuevo.error() == 0) {
                return nuevo;
            }
            error = nuevo.error();
        }
        fallar(nombre, error);
    }

    std::filesystem::path definitivo_;
    std::filesystem::path ruta_;
    Descriptor fichero_;
    bool colocado_ = false;
};

/// What stands under the name; nothing when the name is free. Throws when it must not be replaced.
std::optional<struct stat> sustituible(const std::filesystem::path& ruta) {
    exigirSinCeros(ruta);
    struct stat datos {};
    if (::stat(ruta.c_str(), &datos) == -1) {
        if (errno == ENOENT) {
            return std::nullopt;
        }
        fallar(ruta, errno);
    }
    if (S_ISDIR(datos.st_mode)) {
        fallar(ruta, EISDIR);
    }
    if (!S_ISREG(datos.st_mode)) {
        fallar(ruta, "no es un fichero corriente");
    }
    // Renaming needs only the folder; a file protected against writing must stay protected.
    if (::faccessat(AT_FDCWD, ruta.c_str(), W_OK, AT_EACCESS) == -1) {
        fallar(ruta, errno);
    }
    return datos;
}

/// Writes behind the end and does what follows; when either fails, the file is what it was.
template <class Accion>
void anadirTodoONada(const Descriptor& fichero, std::string_view bytes, Accion despues) {
    const off_t largo = fichero.estado().st_size;
    try {
        fichero.escribirTodo(bytes);
        despues();
    } catch (const ErrorFichero&) {
        fichero.recortar(largo);
        throw;
    }
}

}  // namespace

bool existe(const std::filesystem::path& ruta) {
    std::error_code error;
    return !hayCeros(ruta) && std::filesystem::exists(ruta, error);
}

bool esCarpeta(const std::filesystem::path& ruta) {
    std::error_code error;
    return !hayCeros(ruta) && std::filesystem::is_directory(ruta, error);
}

std::optional<std::string> leer(const std::filesystem::path& ruta) {
    const Descriptor fichero(ruta, O_RDONLY);
    if (fichero.error() == ENOENT || fichero.error() == ENOTDIR) {
        return std::nullopt;
    }
    fichero.exigirAbierto();
    return fichero.leerTodo();
}

void crearVacio(const std::filesystem::path& ruta) {
    const Descriptor fichero(ruta, O_WRONLY | O_CREAT | O_TRUNC);
    fichero.exigirAbierto();
    fichero.sincronizar();
    sincronizarCarpeta(destinoReal(ruta));
}

void anadir(const std::filesystem::path& ruta, std::string_view bytes) {
    bool creado = false;
    const Descriptor fichero = abrirParaAnadir(ruta, creado);
    anadirTodoONada(fichero, bytes, [&fichero] { fichero.sincronizar(); });
    if (creado) {
        sincronizarCarpeta(destinoReal(ruta));
    }
}

void reemplazar(const std::filesystem::path& ruta, std::string_view bytes) {
    const std::filesystem::path destino = destinoReal(ruta);
    const std::optional<struct stat> viejo = sustituible(destino);
    Temporal temporal(destino, ruta);
    if (viejo) {
        temporal.heredar(*viejo);
    }
    temporal.fichero().escribirTodo(bytes);
    temporal.fichero().sincronizar();
    temporal.colocar();
    sincronizarCarpeta(destino);
}

void mover(const std::filesystem::path& origen, const std::filesystem::path& destino) {
    exigirSinCeros(origen);
    exigirSinCeros(destino);
    if (::rename(origen.c_str(), destino.c_str()) == -1) {
        fallar(origen, errno);
    }
    try {
        sincronizarCarpeta(destino);
    } catch (const ErrorFichero&) {
        // It has its new name, and going back might fail as well.
        return;
    }
}

void borrar(const std::filesystem::path& ruta) {
    exigirSinCeros(ruta);
    if (::unlink(ruta.c_str()) == -1 && errno != ENOENT && errno != ENOTDIR) {
        fallar(ruta, errno);
    }
}

struct Lineas::Interior {
    explicit Interior(const std::filesystem::path& ruta) : fichero(ruta, O_RDONLY) {
        fichero.exigirAbierto();
    }

    Descriptor fichero;
};

Lineas::Lineas(const std::filesystem::path& ruta) : interior_(std::make_unique<Interior>(ruta)) {}

Lineas::~Lineas() = default;

std::size_t Lineas::leer(char* destino, std::size_t cabida) const {
    return interior_->fichero.leer(destino, cabida);
}

struct Anexo::Interior {
    explicit Interior(const std::filesystem::path& ruta) : fichero(abrirParaAnadir(ruta, creado)) {}

    bool creado = false;
    Descriptor fichero;
};

Anexo::Anexo(const std::filesystem::path& ruta) : interior_(std::make_unique<Interior>(ruta)) {}

Anexo::~Anexo() {
    try {
        cerrar();
    } catch (const ErrorFichero&) {
        // Whoever could tell the user has had the chance: cerrar.
        return;
    }
}

void Anexo::escribir(std::string_view bytes) {
    if (!interior_) {
        throw std::logic_error("escribir en un Anexo cerrado");
    }
    anadirTodoONada(interior_->fichero, bytes, [] {});
}

void Anexo::cerrar() {
    const std::unique_ptr<Interior> interior = std::move(interior_);
    if (!interior) {
        return;
    }
    interior->fichero.sincronizar();
    if (interior->creado) {
        sincronizarCarpeta(destinoReal(interior->fichero.nombre()));
    }
}

}  // namespace bn::ficheros
