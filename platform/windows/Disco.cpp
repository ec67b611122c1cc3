// SPDX-License-Identifier: MIT
#include "platform/Disco.h"

#include <windows.h>

#include <algorithm>
#include <limits>
#include <string>
#include <utility>

#include "platform/windows/Asa.h"
#include "platform/windows/RutaLarga.h"

namespace bn {
namespace {

namespace fs = std::filesystem;
using windows::Asa;
using windows::paraElSistema;
using Causa = ErrorFichero::Causa;

constexpr DWORD kTodosComparten = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr std::size_t kTrozo = std::size_t{1} << 20;

struct Motivo {
    std::string texto;
    Causa causa;
};

bool noHay(DWORD error) {
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND ||
           error == ERROR_INVALID_NAME || error == ERROR_BAD_PATHNAME || error == ERROR_DIRECTORY ||
           error == ERROR_INVALID_DRIVE;
}

Motivo motivoDe(DWORD error) {
    if (noHay(error)) return {"no existe", Causa::kNoExiste};
    switch (error) {
        case ERROR_ACCESS_DENIED:
            return {"acceso denegado", Causa::kSinPermiso};
        case ERROR_SHARING_VIOLATION:
        case ERROR_LOCK_VIOLATION:
        case ERROR_USER_MAPPED_FILE:
        case ERROR_DELETE_PENDING:
            return {"está en uso por otro programa", Causa::kEnUso};
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL:
            return {"el disco está lleno", Causa::kLleno};
        case ERROR_FILE_TOO_LARGE:
            return {"demasiado grande", Causa::kOtra};
        case ERROR_WRITE_PROTECT:
            return {"el disco es de solo lectura", Causa::kSoloLectura};
        case ERROR_READ_FAULT:
        case ERROR_WRITE_FAULT:
        case ERROR_CRC:
        case ERROR_IO_DEVICE:
        case ERROR_DISK_CORRUPT:
        case ERROR_FILE_CORRUPT:
            return {"error de lectura o escritura del disco", Causa::kAveria};
        case ERROR_FILENAME_EXCED_RANGE:
            return {"el nombre es demasiado largo", Causa::kOtra};
        case ERROR_TOO_MANY_OPEN_FILES:
            return {"hay demasiados ficheros abiertos", Causa::kOtra};
        case ERROR_NOT_READY:
        case ERROR_DEVICE_NOT_CONNECTED:
            return {"la unidad no está preparada", Causa::kAveria};
        case ERROR_BAD_NETPATH:
        case ERROR_BAD_NET_NAME:
        case ERROR_NETNAME_DELETED:
        case ERROR_UNEXP_NET_ERR:
        case ERROR_NETWORK_UNREACHABLE:
            return {"no se llega a la carpeta de la red", Causa::kAveria};
        default:
            return {"error " + std::to_string(error) + " del sistema", Causa::kOtra};
    }
}

[[noreturn]] void fallar(const fs::path& ruta, DWORD error) {
    const Motivo motivo = motivoDe(error);
    throw ErrorFichero(ruta, motivo.texto, motivo.causa);
}

/// Tells apart what the system answers with one and the same refusal.
[[noreturn]] void rechazado(const fs::path& ruta, DWORD error) {
    const DWORD atributos = ::GetFileAttributesW(paraElSistema(ruta).c_str());
    if (atributos != INVALID_FILE_ATTRIBUTES && (atributos & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        throw ErrorFichero(ruta, "es una carpeta", Causa::kEsCarpeta);
    }
    // Removed already, but somebody still has it open: not even its attributes can be seen.
    const bool seVa = error == ERROR_ACCESS_DENIED && atributos == INVALID_FILE_ATTRIBUTES &&
                      ::GetLastError() == ERROR_ACCESS_DENIED;
    fallar(ruta, seVa ? ERROR_DELETE_PENDING : error);
}

OVERLAPPED enElSitio(std::uint64_t sitio) {
    OVERLAPPED lugar{};
    lugar.Offset = static_cast<DWORD>(sitio & 0xFFFFFFFF);
    lugar.OffsetHigh = static_cast<DWORD>(sitio >> 32);
    return lugar;
}

class FicheroWindows final : public Disco::Fichero {
 public:
    FicheroWindows(Asa asa, fs::path nombre) : nombre_(std::move(nombre)), asa_(std::move(asa)) {}

    std::size_t leer(std::uint64_t desde, char* destino, std::size_t cabida) override {
        OVERLAPPED lugar = enElSitio(desde);
        DWORD leidos = 0;
        const auto cuantos = static_cast<DWORD>(std::min(cabida, kTrozo));
        if (::ReadFile(asa_.get(), destino, cuantos, &leidos, &lugar)) return leidos;
        const DWORD error = ::GetLastError();
        if (error != ERROR_HANDLE_EOF) fallar(nombre_, error);
        return 0;
    }

    std::size_t escribir(std::uint64_t desde, std::string_view bytes) override {
        OVERLAPPED lugar = enElSitio(desde);
        DWORD escritos = 0;
        const auto cuantos = static_cast<DWORD>(std::min(bytes.size(), kTrozo));
        exigir(::WriteFile(asa_.get(), bytes.data(), cuantos, &escritos, &lugar));
        if (escritos == 0) fallar(nombre_, ERROR_DISK_FULL);
        return escritos;
    }

    std::size_t anadir(std::string_view bytes) override {
        constexpr auto kAlFinal = std::numeric_limits<std::uint64_t>::max();
        return escribir(kAlFinal, bytes);
    }

    std::uint64_t largo() override {
        LARGE_INTEGER bytes{};
        exigir(::GetFileSizeEx(asa_.get(), &bytes));
        return static_cast<std::uint64_t>(bytes.QuadPart);
    }

    void cortar(std::uint64_t largo) override {
        LARGE_INTEGER sitio{};
        sitio.QuadPart = static_cast<LONGLONG>(largo);
        exigir(::SetFilePointerEx(asa_.get(), sitio, nullptr, FILE_BEGIN));
        exigir(::SetEndOfFile(asa_.get()));
    }

    void sincronizar() override { exigir(::FlushFileBuffers(asa_.get())); }

    void heredar(const fs::path& otro) override {
        const DWORD atributos = ::GetFileAttributesW(paraElSistema(otro).c_str());
        if (atributos == INVALID_FILE_ATTRIBUTES) fallar(otro, ::GetLastError());
        exigir(::SetFileAttributesW(paraElSistema(nombre_).c_str(), atributos));
    }

 private:
    void exigir(BOOL resultado) const {
        if (resultado == 0) fallar(nombre_, ::GetLastError());
    }

    fs::path nombre_;
    Asa asa_;
};

/// Without any access asked for, nobody who holds the file stands in the way.
Asa mirar(const fs::path& ruta) {
    return Asa(::CreateFileW(paraElSistema(ruta).c_str(), 0, kTodosComparten, nullptr,
                             OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

bool protegido(const fs::path& ruta) {
    const DWORD atributos = ::GetFileAttributesW(paraElSistema(ruta).c_str());
    return atributos != INVALID_FILE_ATTRIBUTES && (atributos & FILE_ATTRIBUTE_READONLY) != 0;
}

class DiscoWindows final : public Disco {
 public:
    std::unique_ptr<Fichero> abrir(const fs::path& ruta, Modo modo) override {
        const DWORD acceso = modo == Modo::kLeer ? GENERIC_READ : GENERIC_WRITE;
        const DWORD creacion = modo == Modo::kCrear ? OPEN_ALWAYS : OPEN_EXISTING;
        Asa asa = abrirAsa(ruta, acceso, creacion);
        if (!asa) rechazado(ruta, ::GetLastError());
        // An administrator may open it all the same, and the protection would be gone.
        if (modo != Modo::kLeer && protegido(ruta)) fallar(ruta, ERROR_ACCESS_DENIED);
        return std::make_unique<FicheroWindows>(std::move(asa), ruta);
    }

    std::unique_ptr<Fichero> nuevo(const fs::path& ruta) override {
        Asa asa = abrirAsa(ruta, GENERIC_WRITE, CREATE_NEW);
        if (asa) return std::make_unique<FicheroWindows>(std::move(asa), ruta);
        const DWORD error = ::GetLastError();
        if (error == ERROR_FILE_EXISTS) return nullptr;
        rechazado(ruta, error);
    }

    Clase queHay(const fs::path& ruta) override {
        const DWORD atributos = ::GetFileAttributesW(paraElSistema(ruta).c_str());
        if (atributos == INVALID_FILE_ATTRIBUTES) {
            const DWORD error = ::GetLastError();
            if (noHay(error)) return Clase::kNada;
            rechazado(ruta, error);
        }
        if ((atributos & FILE_ATTRIBUTE_DIRECTORY) != 0) return Clase::kCarpeta;
        // The names of devices have attributes too.
        const Asa asa = mirar(ruta);
        if (!asa) return noHay(::GetLastError()) ? Clase::kNada : Clase::kFichero;
        return ::GetFileType(asa.get()) == FILE_TYPE_DISK ? Clase::kFichero : Clase::kOtra;
    }

    fs::path destinoReal(const fs::path& ruta) override {
        const DWORD atributos = ::GetFileAttributesW(paraElSistema(ruta).c_str());
        if (atributos == INVALID_FILE_ATTRIBUTES ||
            (atributos & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
            return ruta;
        }
        const Asa asa = mirar(ruta);
        std::wstring destino(MAX_PATH, L'\0');
        while (asa) {
            const DWORD largo = ::GetFinalPathNameByHandleW(asa.get(), destino.data(),
                                                            static_cast<DWORD>(destino.size()),
                                                            FILE_NAME_NORMALIZED);
            if (largo == 0) break;
            const bool cabe = largo < destino.size();
            destino.resize(largo);
            if (cabe) return destino;
        }
        return ruta;
    }

    std::vector<fs::path> listar(const fs::path& carpeta) override {
        std::vector<fs::path> nombres;
        WIN32_FIND_DATAW hallado{};
        const HANDLE busqueda = ::FindFirstFileW(paraElSistema(carpeta / "*").c_str(), &hallado);
        if (busqueda == INVALID_HANDLE_VALUE) fallar(carpeta, ::GetLastError());
        do {
            const fs::path nombre = hallado.cFileName;
            if (nombre != "." && nombre != "..") nombres.push_back(nombre);
        } while (::FindNextFileW(busqueda, &hallado));
        const DWORD error = ::GetLastError();
        ::FindClose(busqueda);
        if (error != ERROR_NO_MORE_FILES) fallar(carpeta, error);
        return nombres;
    }

    void renombrar(const fs::path& origen, const fs::path& destino) override {
        // Not ReplaceFile: between its two renamings there is no file under the name.
        constexpr DWORD kModo = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
        if (::MoveFileExW(paraElSistema(origen).c_str(), paraElSistema(destino).c_str(), kModo)) {
            return;
        }
        const DWORD error = ::GetLastError();
        // Somebody who has the old file open is answered for with either.
        fallar(origen, error == ERROR_ACCESS_DENIED ? ERROR_SHARING_VIOLATION : error);
    }

    void borrar(const fs::path& ruta) override {
        if (!::DeleteFileW(paraElSistema(ruta).c_str())) rechazado(ruta, ::GetLastError());
    }

    void sincronizarCarpeta(const fs::path& carpeta) override {
        const Asa asa(::CreateFileW(paraElSistema(carpeta).c_str(), GENERIC_WRITE, kTodosComparten,
                                    nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
        const bool hecho = asa && ::FlushFileBuffers(asa.get());
        const DWORD error = ::GetLastError();
        // Not every file system and not every user can. NTFS does not depend on it: its journal
        // keeps names in order, and a renaming is written through.
        if (!hecho && (noHay(error) || motivoDe(error).causa == Causa::kAveria)) {
            fallar(carpeta, error);
        }
    }

    void esperar(std::chrono::milliseconds tiempo) override {
        ::Sleep(static_cast<DWORD>(tiempo.count()));
    }

    std::uint32_t proceso() const override { return ::GetCurrentProcessId(); }

 private:
    static Asa abrirAsa(const fs::path& ruta, DWORD acceso, DWORD creacion) {
        const std::wstring sistema = paraElSistema(ruta);
        return Asa(::CreateFileW(sistema.c_str(), acceso, kTodosComparten, nullptr, creacion,
                                 FILE_ATTRIBUTE_NORMAL, nullptr));
    }
};

}  // namespace

Disco& discoDelSistema() {
    static DiscoWindows disco;
    return disco;
}

}  // namespace bn
