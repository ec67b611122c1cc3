// SPDX-License-Identifier: MIT
#include "tools/simulador/Linea.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <system_error>
#include <utility>

#include "platform/windows/Asa.h"

namespace bn::simulador {

namespace {

using windows::Asa;

[[noreturn]] void fallar(const std::string& que) {
    const auto error = static_cast<int>(::GetLastError());
    throw ErrorLinea(que + ": " + std::system_category().message(error));
}

/// Takes over what a call has answered; que is what was asked of it.
Asa exigida(HANDLE asa, const std::string& que) {
    Asa tomada(asa);
    if (!tomada) fallar(que);
    return tomada;
}

constexpr const wchar_t* kParo = L"Local\\bnDX5-simulador-";

/// By its name the handler, which is given nothing, finds the event to set.
std::wstring nombreDelParo() { return kParo + std::to_wstring(::GetCurrentProcessId()); }

BOOL WINAPI alParar(DWORD /*porque*/) {
    const HANDLE suceso = ::OpenEventW(EVENT_MODIFY_STATE, FALSE, nombreDelParo().c_str());
    if (suceso == nullptr) return FALSE;
    ::SetEvent(suceso);
    ::CloseHandle(suceso);
    return TRUE;
}

/// The finest timer the system has: the usual one goes off at every 15 ms only.
HANDLE nuevoReloj() {
    constexpr DWORD kFino = 0x00000002;  // CREATE_WAITABLE_TIMER_HIGH_RESOLUTION
    const HANDLE reloj = ::CreateWaitableTimerExW(nullptr, nullptr, kFino, TIMER_ALL_ACCESS);
    return reloj != nullptr ? reloj : ::CreateWaitableTimerW(nullptr, FALSE, nullptr);
}

void ponerEnHora(const Asa& reloj, Instante hasta) {
    const int64_t resto = std::max<int64_t>(0, (hasta - ahora()).count());
    LARGE_INTEGER plazo{};
    plazo.QuadPart = -(resto + 99) / 100;  // negative: counted from now
    ::SetWaitableTimer(reloj.get(), &plazo, 0, nullptr, nullptr, FALSE);
}

bool ajustar(HANDLE puerto, const Parametros& parametros) {
    DCB modo{};
    modo.DCBlength = sizeof modo;
    if (!::GetCommState(puerto, &modo)) return false;
    modo.BaudRate = static_cast<DWORD>(parametros.baudios);
    modo.ByteSize = static_cast<BYTE>(parametros.bits);
    modo.StopBits = parametros.parada == 2 ? TWOSTOPBITS : ONESTOPBIT;
    modo.fParity = parametros.paridad != 'N';
    modo.Parity = parametros.paridad == 'E' ? EVENPARITY : NOPARITY;
    if (parametros.paridad == 'O') modo.Parity = ODDPARITY;
    modo.fBinary = TRUE;
    modo.fOutxCtsFlow = FALSE;
    modo.fOutxDsrFlow = FALSE;
    modo.fDsrSensitivity = FALSE;
    modo.fOutX = FALSE;
    modo.fInX = FALSE;
    modo.fErrorChar = FALSE;
    modo.fNull = FALSE;
    modo.fAbortOnError = FALSE;
    modo.fDtrControl = DTR_CONTROL_ENABLE;
    modo.fRtsControl = RTS_CONTROL_ENABLE;
    COMMTIMEOUTS sinLimite{};
    return ::SetCommState(puerto, &modo) && ::SetCommTimeouts(puerto, &sinLimite);
}

}  // namespace

Instante ahora() {
    return std::chrono::duration_cast<Instante>(
        std::chrono::steady_clock::now().time_since_epoch());
}

struct Paro::Interior {
    Asa suceso =
        exigida(::CreateEventW(nullptr, TRUE, FALSE, nombreDelParo().c_str()), "CreateEvent");
    Asa reloj = exigida(nuevoReloj(), "CreateWaitableTimer");
};

Paro::Paro() : interior_(std::make_unique<Interior>()) {
    ::SetConsoleOutputCP(CP_UTF8);
    if (!::SetConsoleCtrlHandler(alParar, TRUE)) fallar("SetConsoleCtrlHandler");
}

Paro::~Paro() { ::SetConsoleCtrlHandler(alParar, FALSE); }

bool Paro::dormirHasta(Instante cuando) {
    const std::array<HANDLE, 2> esperas = {interior_->suceso.get(), interior_->reloj.get()};
    while (ahora() < cuando) {
        ponerEnHora(interior_->reloj, cuando);
        if (::WaitForMultipleObjects(2, esperas.data(), FALSE, INFINITE) == WAIT_OBJECT_0) {
            return false;
        }
    }
    return ::WaitForSingleObject(interior_->suceso.get(), 0) != WAIT_OBJECT_0;
}

struct Linea::Interior {
    explicit Interior(const std::string& nombre)
        : ruta(nombre),
          puerto(
              exigida(::CreateFileW(nombreDelSistema(nombre).c_str(), GENERIC_READ | GENERIC_WRITE,
                                    0, nullptr, OPEN_EXISTING, FILE_FLAG_OVERLAPPED, nullptr),
                      "No se puede abrir " + nombre)) {}
    Interior(const Interior&) = delete;
    Interior& operator=(const Interior&) = delete;
    ~Interior() {
        if (leyendo) {
            ::CancelIoEx(puerto.get(), &lectura);
            recoger();
        }
    }

    static std::wstring nombreDelSistema(const std::string& nombre) {
        const std::wstring ancho(nombre.begin(), nombre.end());  // ports have ASCII names
        return ancho.starts_with(L"\\\\") ? ancho : L"\\\\.\\" + ancho;
    }

    [[noreturn]] void perdida() const { fallar("Se ha perdido la línea " + ruta); }

    /// One byte is always being read ahead: there is no other way to wait for one.
    void leerPorDelante() {
        if (leyendo) return;
        lectura = OVERLAPPED{};
        lectura.hEvent = hayLectura.get();
        if (!::ReadFile(puerto.get(), &delante, 1, nullptr, &lectura) &&
            ::GetLastError() != ERROR_IO_PENDING) {
            perdida();
        }
        leyendo = true;
    }

    bool recoger() {
        DWORD bytes = 0;
        leyendo = false;
        return ::GetOverlappedResult(puerto.get(), &lectura, &bytes, TRUE) && bytes == 1;
    }

    std::string ruta;
    Asa puerto;
    Asa hayLectura = exigida(::CreateEventW(nullptr, TRUE, FALSE, nullptr), "CreateEvent");
    Asa hayEscritura = exigida(::CreateEventW(nullptr, TRUE, FALSE, nullptr), "CreateEvent");
    Asa reloj = exigida(nuevoReloj(), "CreateWaitableTimer");
    OVERLAPPED lectura{};
    char delante = 0;
    bool leyendo = false;
};

Linea::Linea(std::unique_ptr<Interior> interior) : interior_(std::move(interior)) {}

Linea::~Linea() = default;

const std::string& Linea::ruta() const { return interior_->ruta; }

bool Linea::real() const { return true; }

std::unique_ptr<Linea> Linea::pseudoterminal(const std::string& /*enlace*/) {
    throw ErrorLinea("En Windows no hay pseudoterminales: use --dispositivo con un puerto, COM5");
}

std::unique_ptr<Linea> Linea::dispositivo(const std::string& ruta, const Parametros& parametros) {
    auto interior = std::make_unique<Interior>(ruta);
    if (!ajustar(interior->puerto.get(), parametros)) {
        fallar(ruta + " no se deja ajustar como puerto serie");
    }
    return std::unique_ptr<Linea>(new Linea(std::move(interior)));
}

void Linea::escribir(std::string_view bytes) {
    OVERLAPPED datos{};
    datos.hEvent = interior_->hayEscritura.get();
    DWORD escritos = 0;
    const HANDLE puerto = interior_->puerto.get();
    if (!::WriteFile(puerto, bytes.data(), static_cast<DWORD>(bytes.size()), nullptr, &datos) &&
        ::GetLastError() != ERROR_IO_PENDING) {
        interior_->perdida();
    }
    // As much time as the slowest line takes for the longest frame; then nobody listens.
    constexpr DWORD kEspera = 10000;
    if (::WaitForSingleObject(datos.hEvent, kEspera) != WAIT_OBJECT_0) {
        ::CancelIoEx(puerto, &datos);
    }
    if (!::GetOverlappedResult(puerto, &datos, &escritos, TRUE) &&
        ::GetLastError() != ERROR_OPERATION_ABORTED) {
        interior_->perdida();
    }
}

void Linea::vaciarEntrada() {
    if (interior_->leyendo) {
        ::CancelIoEx(interior_->puerto.get(), &interior_->lectura);
        interior_->recoger();  // its byte, if it had come, is forgotten with the rest
    }
    ::PurgeComm(interior_->puerto.get(), PURGE_RXCLEAR);
}

std::optional<std::string> Linea::leer(std::optional<Instante> hasta, const Paro& paro) {
    interior_->leerPorDelante();
    const std::array<HANDLE, 3> esperas = {paro.interior_->suceso.get(),
                                           interior_->hayLectura.get(), interior_->reloj.get()};
    if (hasta) ponerEnHora(interior_->reloj, *hasta);
    const DWORD cuantas = hasta ? 3 : 2;
    const DWORD cual = ::WaitForMultipleObjects(cuantas, esperas.data(), FALSE, INFINITE);
    if (cual == WAIT_OBJECT_0) return std::nullopt;
    if (cual != WAIT_OBJECT_0 + 1) return "";
    if (!interior_->recoger()) interior_->perdida();
    return std::string(1, interior_->delante);
}

}  // namespace bn::simulador
