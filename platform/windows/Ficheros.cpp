// SPDX-License-Identifier: MIT
#include "platform/Ficheros.h"

#include <windows.h>

#include <algorithm>
#include <system_error>
#include <utility>

#include "platform/windows/Asa.h"
#include "platform/windows/RutaLarga.h"

namespace bn::ficheros {
namespace {

namespace fs = std::filesystem;
using windows::Asa;
using windows::paraElSistema;

constexpr DWORD kTodosComparten = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr std::size_t kTrozo = std::size_t{1} << 20;

bool noHay(DWORD error) {
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND ||
           error == ERROR_INVALID_NAME || error == ERROR_BAD_PATHNAME || error == ERROR_DIRECTORY ||
           error == ERROR_INVALID_DRIVE;
}

std::string causaDe(DWORD error) {
    if (noHay(error)) {
        return "no existe";
    }
    switch (error) {
        case ERROR_ACCESS_DENIED:
            return "acceso denegado";
        case ERROR_SHARING_VIOLATION:
        case ERROR_LOCK_VIOLATION:
        case ERROR_USER_MAPPED_FILE:
            return "está en uso por otro programa";
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL:
            return "el disco está lleno";
        case ERROR_FILE_TOO_LARGE:
            return "demasiado grande";
        case ERROR_WRITE_PROTECT:
            return "el disco es de solo lectura";
        case ERROR_READ_FAULT:
        case ERROR_WRITE_FAULT:
        case ERROR_CRC:
        case ERROR_IO_DEVICE:
            return "error de lectura o escritura del disco";
        case ERROR_FILENAME_EXCED_RANGE:
            return "el nombre es demasiado largo";
        case ERROR_TOO_MANY_OPEN_FILES:
            return "hay demasiados ficheros abiertos";
        case ERROR_NOT_READY:
            return "la unidad no está preparada";
        case ERROR_BAD_NETPATH:
        case ERROR_BAD_NET_NAME:
        case ERROR_NETNAME_DELETED:
        case ERROR_UNEXP_NET_ERR:
        case ERROR_NETWORK_UNREACHABLE:
            return "no se llega a la carpeta de la red";
        default:
            return "error " + std::to_string(error) + " del sistema";
    }
}

[[noreturn]] void fallar(const fs::path& ruta, const std::string& causa) {
    std::string texto = aTexto(ruta) + ": " + causa;
    // what() ends at the first zero.
    std::replace(texto.begin(), texto.end(), '\0', '?');
    throw ErrorFichero(texto);
}

[[noreturn]] void fallar(const fs::path& ruta, DWORD error) { fallar(ruta, causaDe(error)); }

bool hayCeros(const fs::path& ruta) { return ruta.native().find(L'\0') != std::wstring::npos; }

/// The system would take a path with a zero inside for another, shorter one.
void exigirSinCeros(const fs::path& ruta) {
    if (hayCeros(ruta)) {
        fallar(ruta, ERROR_FILE_NOT_FOUND);
    }
}

/// Of what stands under the name; INVALID_FILE_ATTRIBUTES when nothing does.
DWORD atributosDe(const fs::path& ruta) {
    return hayCeros(ruta) ? INVALID_FILE_ATTRIBUTES
                          : ::GetFileAttributesW(paraElSistema(ruta).c_str());
}

bool sonDeCarpeta(DWORD atributos) {
    return atributos != INVALID_FILE_ATTRIBUTES && (atributos & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

/// Renames over the file that has the name. Messages name the file as the caller knows it.
void colocarEn(const fs::path& destino, const fs::path& origen, const fs::path& nombre) {
    const std::wstring viejo = paraElSistema(origen);
    const std::wstring nuevo = paraElSistema(destino);
    // Not ReplaceFile: between its two renamings there is no file under the name.
    constexpr DWORD kModo = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
    // Virus scanners and indexers hold a file for a moment after it was written.
    constexpr int kIntentos = 10;
    constexpr DWORD kPausa = 20;
    for (int intento = 1; !::MoveFileExW(viejo.c_str(), nuevo.c_str(), kModo); ++intento) {
        const DWORD error = ::GetLastError();
        const bool pasara = error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED;
        if (!pasara || intento == kIntentos) {
            fallar(nombre, pasara ? ERROR_SHARING_VIOLATION : error);
        }
        ::Sleep(kPausa);
    }
}

/// An open file.
class Fichero {
 public:
    Fichero(const fs::path& ruta, DWORD acceso, DWORD creacion)
        : Fichero(ruta, acceso, creacion, ruta) {}
    /// Messages name it otherwise than by its path.
    Fichero(const fs::path& ruta, DWORD acceso, DWORD creacion, fs::path nombre)
        : nombre_(std::move(nombre)) {
        exigirSinCeros(ruta);
        const std::wstring sistema = paraElSistema(ruta);
        asa_ = Asa(::CreateFileW(sistema.c_str(), acceso, kTodosComparten, nullptr, creacion,
                                 FILE_ATTRIBUTE_NORMAL, nullptr));
        const DWORD respuesta = ::GetLastError();
        if (asa_) {
            return;
        }
        error_ = respuesta;
        esCarpeta_ = sonDeCarpeta(atributosDe(ruta));
    }

    /// Why it could not be opened; 0 when it is open.
    DWORD error() const { return error_; }
    HANDLE asa() const { return asa_.get(); }

    void exigirAbierto() const {
        if (esCarpeta_) {
            fallar(nombre_, "es una carpeta");
        }
        if (!asa_) {
            fallar(nombre_, error_);
        }
    }

    LONGLONG largo() const {
        LARGE_INTEGER bytes{};
        exigir(::GetFileSizeEx(asa(), &bytes));
        return bytes.QuadPart;
    }

    /// What comes next; 0 at the end.
    std::size_t leer(char* destino, std::size_t cabida) const {
        DWORD leidos = 0;
        exigir(::ReadFile(asa(), destino, static_cast<DWORD>(std::min(cabida, kTrozo)), &leidos,
                          nullptr));
        return leidos;
    }

    std::string leerTodo() const {
        std::string contenido;
        std::size_t leidos = 0;
        do {
            // The size is but a guess: others may be writing.
            const std::size_t hasta = contenido.size();
            const auto quedan = static_cast<std::size_t>(
                std::max<LONGLONG>(largo() - static_cast<LONGLONG>(hasta), 0));
            contenido.resize(hasta + std::min(quedan + 1, kTrozo));
            leidos = leer(contenido.data() + hasta, contenido.size() - hasta);
            contenido.resize(hasta + leidos);
        } while (leidos > 0);
        return contenido;
    }

    /// Puts the bytes behind the end, wherever that is by then.
    void escribirAlFinal(std::string_view bytes) const {
        while (!bytes.empty()) {
            OVERLAPPED alFinal{};
            alFinal.Offset = 0xFFFFFFFF;
            alFinal.OffsetHigh = 0xFFFFFFFF;
            DWORD escritos = 0;
            const auto cuantos = static_cast<DWORD>(std::min(bytes.size(), kTrozo));
            exigir(::WriteFile(asa(), bytes.data(), cuantos, &escritos, &alFinal));
            bytes.remove_prefix(escritos);
        }
    }

    bool recortar(LONGLONG bytes) const {
        LARGE_INTEGER sitio{};
        sitio.QuadPart = bytes;
        return ::SetFilePointerEx(asa(), sitio, nullptr, FILE_BEGIN) != 0 &&
               ::SetEndOfFile(asa()) != 0;
    }

    void sincronizar() const { exigir(::FlushFileBuffers(asa())); }
    void exigir(BOOL resultado) const {
        if (resultado == 0) {
            fallar(nombre_, ::GetLastError());
        }
    }
    void cerrar() { asa_.cerrar(); }

 private:
    fs::path nombre_;
    Asa asa_;
    DWORD error_ = 0;
    bool esCarpeta_ = false;
};

Fichero abrirParaAnadir(const fs::path& ruta) {
    Fichero fichero(ruta, GENERIC_WRITE, OPEN_ALWAYS);
    fichero.exigirAbierto();
    return fichero;
}

/// Writes behind the end and does what follows; when either fails, the file is what it was.
template <class Accion>
void anadirTodoONada(const Fichero& fichero, std::string_view bytes, Accion despues) {
    const LONGLONG largo = fichero.largo();
    try {
        fichero.escribirAlFinal(bytes);
        despues();
    } catch (const ErrorFichero&) {
        fichero.recortar(largo);  // best effort: the error that counts is the one on its way
        throw;
    }
}

/// The file that a name leads to, through links.
fs::path destinoReal(const fs::path& ruta, const Fichero& abierto) {
    if ((atributosDe(ruta) & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
        return ruta;
    }
    std::wstring destino(MAX_PATH, L'\0');
    for (;;) {
        const DWORD largo =
            ::GetFinalPathNameByHandleW(abierto.asa(), destino.data(),
                                        static_cast<DWORD>(destino.size()), FILE_NAME_NORMALIZED);
        if (largo == 0) {
            return ruta;
        }
        const bool cabe = largo < destino.size();
        destino.resize(largo);
        if (cabe) {
            return destino;
        }
    }
}

/// Where the new contents go, and what the old file's attributes are.
struct Sustituido {
    fs::path ruta;
    DWORD atributos = FILE_ATTRIBUTE_NORMAL;
};

/// Throws when what stands under the name must not be replaced.
Sustituido sustituible(const fs::path& ruta) {
    // Renaming needs only the folder; a file protected against writing must stay protected.
    const Fichero viejo(ruta, GENERIC_WRITE, OPEN_EXISTING);
    if (viejo.error() == ERROR_FILE_NOT_FOUND) {
        return {ruta};
    }
    viejo.exigirAbierto();
    if (::GetFileType(viejo.asa()) != FILE_TYPE_DISK) {
        fallar(ruta, "no es un fichero corriente");
    }
    Sustituido sustituido{destinoReal(ruta, viejo)};
    sustituido.atributos = atributosDe(sustituido.ruta);
    if ((sustituido.atributos & FILE_ATTRIBUTE_READONLY) != 0) {
        fallar(ruta, ERROR_ACCESS_DENIED);
    }
    return sustituido;
}

/// A new file beside another one, removed again unless it has taken the other's place.
class Temporal {
 public:
    Temporal(Sustituido sustituido, const fs::path& nombre)
        : sustituido_(std::move(sustituido)), nombre_(nombre), fichero_(abrirNuevo()) {}
    Temporal(const Temporal&) = delete;
    Temporal& operator=(const Temporal&) = delete;
    ~Temporal() {
        if (!colocado_) {
            fichero_.cerrar();
            ::DeleteFileW(paraElSistema(ruta_).c_str());
        }
    }

    const Fichero& fichero() const { return fichero_; }

    void colocar() {
        fichero_.cerrar();
        const std::wstring nuevo = paraElSistema(ruta_);
        fichero_.exigir(::SetFileAttributesW(nuevo.c_str(), sustituido_.atributos));
        colocarEn(sustituido_.ruta, ruta_, nombre_);
        colocado_ = true;
    }

 private:
    Fichero abrirNuevo() {
        // Leftovers of a run that was cut short may stand in the way.
        constexpr int kMaximoIntentos = 1000;
        const std::string comienzo = ".bn-" + std::to_string(::GetCurrentProcessId()) + "-";
        for (int i = 0;; ++i) {
            ruta_ = sustituido_.ruta.parent_path() / (comienzo + std::to_string(i) + ".tmp");
            Fichero nuevo(ruta_, GENERIC_WRITE, CREATE_NEW, nombre_);
            if (nuevo.error() == 0 || nuevo.error() != ERROR_FILE_EXISTS || i == kMaximoIntentos) {
                nuevo.exigirAbierto();
                return nuevo;
            }
        }
    }

    Sustituido sustituido_;
    fs::path nombre_;
    fs::path ruta_;
    Fichero fichero_;
    bool colocado_ = false;
};

}  // namespace

bool existe(const fs::path& ruta) { return atributosDe(ruta) != INVALID_FILE_ATTRIBUTES; }

bool esCarpeta(const fs::path& ruta) { return sonDeCarpeta(atributosDe(ruta)); }

std::optional<std::string> leer(const fs::path& ruta) {
    const Fichero fichero(ruta, GENERIC_READ, OPEN_EXISTING);
    if (noHay(fichero.error())) {
        return std::nullopt;
    }
    fichero.exigirAbierto();
    return fichero.leerTodo();
}

void crearVacio(const fs::path& ruta) {
    // Emptied after the opening: creating anew would be refused where the file is a hidden one.
    const Fichero fichero = abrirParaAnadir(ruta);
    fichero.exigir(fichero.recortar(0));
    fichero.sincronizar();
}

void anadir(const fs::path& ruta, std::string_view bytes) {
    const Fichero fichero = abrirParaAnadir(ruta);
    anadirTodoONada(fichero, bytes, [&fichero] { fichero.sincronizar(); });
}

void reemplazar(const fs::path& ruta, std::string_view bytes) {
    Temporal temporal(sustituible(ruta), ruta);
    temporal.fichero().escribirAlFinal(bytes);
    temporal.fichero().sincronizar();
    temporal.colocar();
}

void mover(const fs::path& origen, const fs::path& destino) {
    exigirSinCeros(origen);
    exigirSinCeros(destino);
    colocarEn(destino, origen, origen);
}

void borrar(const fs::path& ruta) {
    exigirSinCeros(ruta);
    if (!::DeleteFileW(paraElSistema(ruta).c_str())) {
        const DWORD error = ::GetLastError();
        if (!noHay(error)) {
            fallar(ruta, error);
        }
    }
}

struct Lineas::Interior {
    explicit Interior(const fs::path& ruta) : fichero(ruta, GENERIC_READ, OPEN_EXISTING) {
        fichero.exigirAbierto();
    }

    Fichero fichero;
};

Lineas::Lineas(const fs::path& ruta) : interior_(std::make_unique<Interior>(ruta)) {}

Lineas::~Lineas() = default;

std::size_t Lineas::leer(char* destino, std::size_t cabida) const {
    return interior_->fichero.leer(destino, cabida);
}

struct Anexo::Interior {
    explicit Interior(const fs::path& ruta) : fichero(abrirParaAnadir(ruta)) {}

    Fichero fichero;
};

Anexo::Anexo(const fs::path& ruta) : interior_(std::make_unique<Interior>(ruta)) {}

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
    if (interior) {
        interior->fichero.sincronizar();
    }
}

}  // namespace bn::ficheros
