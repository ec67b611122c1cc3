// SPDX-License-Identifier: MIT
#include "platform/asio/Linea.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <asio/io_context.hpp>
#include <asio/windows/object_handle.hpp>
#include <cstring>
#include <system_error>
#include <utility>

#include "platform/MSComm.h"
#include "platform/windows/Asa.h"
#include "platform/windows/Texto.h"

namespace bn {
namespace {

using windows::Asa;

constexpr std::string_view kPrefijo = "\\\\.\\";

std::string causa(DWORD error) {
    switch (error) {
        case ERROR_FILE_NOT_FOUND:
        case ERROR_PATH_NOT_FOUND:
        case ERROR_INVALID_NAME:
        case ERROR_BAD_PATHNAME:
            return "no existe";
        case ERROR_ACCESS_DENIED:  // what a port held by another program answers
        case ERROR_SHARING_VIOLATION:
        case ERROR_BUSY:
            return "está en uso por otro programa";
        case ERROR_INVALID_FUNCTION:
        case ERROR_INVALID_HANDLE:
        case ERROR_NOT_SUPPORTED:
            return "no es un puerto serie";
        case ERROR_GEN_FAILURE:  // a port known to the system with no hardware behind it
        case ERROR_IO_DEVICE:
        case ERROR_DEV_NOT_EXIST:
        case ERROR_BAD_UNIT:
        case ERROR_NOT_READY:
            return "no existe o no responde";
        default:
            return "no se puede abrir (error " + std::to_string(error) + " del sistema)";
    }
}

[[noreturn]] void fallar(const std::string& dispositivo, const std::string& porque) {
    // The user knows the port as COM5.
    const bool conPrefijo = dispositivo.starts_with(kPrefijo);
    throw ErrorPuerto(dispositivo.substr(conPrefijo ? kPrefijo.size() : 0) + ": " + porque);
}

Asa abrirDispositivo(const std::string& dispositivo) {
    if (dispositivo.empty() || dispositivo.find('\0') != std::string::npos) {
        fallar(dispositivo, causa(ERROR_FILE_NOT_FOUND));
    }
    // "COM10" and above are found only under the full name.
    const bool entero = dispositivo.starts_with("\\\\");
    const std::wstring nombre =
        windows::ancho(entero ? dispositivo : std::string(kPrefijo) + dispositivo);
    Asa puerto(::CreateFileW(nombre.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                             OPEN_EXISTING, FILE_FLAG_OVERLAPPED, nullptr));
    if (!puerto) {
        fallar(dispositivo, causa(::GetLastError()));
    }
    return puerto;
}

/// Eight clean bits each way, no flow control, DTR and RTS on.
DCB modoCrudo(DCB modo, const AjustesLinea& ajustes) {
    modo.BaudRate = static_cast<DWORD>(ajustes.velocidad);
    modo.ByteSize = static_cast<BYTE>(ajustes.bitsDatos);
    modo.StopBits = ajustes.bitsParada == 2 ? TWOSTOPBITS : ONESTOPBIT;
    modo.Parity = ajustes.paridad == 'E' ? EVENPARITY : NOPARITY;
    if (ajustes.paridad == 'O') {
        modo.Parity = ODDPARITY;
    }
    modo.fBinary = TRUE;
    // A byte that arrives damaged must not pass for a good one; the system cannot drop it, but it
    // can put another in its place, which is no digit.
    modo.fParity = ajustes.paridad != 'N';
    modo.fErrorChar = ajustes.paridad != 'N';
    modo.ErrorChar = '?';
    modo.fNull = FALSE;
    modo.fAbortOnError = FALSE;
    modo.fOutxCtsFlow = FALSE;
    modo.fOutxDsrFlow = FALSE;
    modo.fDsrSensitivity = FALSE;
    modo.fOutX = FALSE;
    modo.fInX = FALSE;
    // Not used, and yet some drivers refuse a mode in which they are equal.
    modo.XonChar = 0x11;
    modo.XoffChar = 0x13;
    modo.fDtrControl = DTR_CONTROL_ENABLE;
    modo.fRtsControl = RTS_CONTROL_ENABLE;
    return modo;
}

void configurar(HANDLE puerto, const std::string& dispositivo, const AjustesLinea& ajustes) {
    DCB anterior{};
    anterior.DCBlength = sizeof anterior;
    if (!::GetCommState(puerto, &anterior)) {
        fallar(dispositivo, "no es un puerto serie");
    }
    DCB modo = modoCrudo(anterior, ajustes);
    if (!::SetCommState(puerto, &modo)) {
        fallar(dispositivo, "no admite los parámetros de la línea");
    }
    // No time-outs: a read ends when it has what it asked for. What it asks for is one byte, or
    // as many as are known to wait.
    COMMTIMEOUTS sinLimite{};
    if (!::SetCommTimeouts(puerto, &sinLimite)) {
        fallar(dispositivo, causa(::GetLastError()));
    }
    // Both are wishes: a driver may have buffers of its own size, and lines that are always on.
    constexpr DWORD kBuffers = 16 * 1024;
    ::SetupComm(puerto, kBuffers, kBuffers);
    ::EscapeCommFunction(puerto, SETDTR);
    ::EscapeCommFunction(puerto, SETRTS);
}

Asa nuevoSuceso() {
    Asa suceso(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    if (!suceso) {
        throw std::system_error(static_cast<int>(::GetLastError()), std::system_category());
    }
    return suceso;
}

/// One reading or writing at a time, that the system carries out meanwhile.
class Operacion {
 public:
    explicit Operacion(HANDLE puerto) : puerto_(puerto), suceso_(nuevoSuceso()) {}
    Operacion(const Operacion&) = delete;
    Operacion& operator=(const Operacion&) = delete;
    ~Operacion() { cancelar(); }

    bool enMarcha() const { return enMarcha_; }
    /// By the event, which the system sets last of all: what it has still to touch is not reused.
    bool acabada() const {
        return enMarcha_ && ::WaitForSingleObject(suceso_.get(), 0) == WAIT_OBJECT_0;
    }
    HANDLE suceso() const { return suceso_.get(); }

    /// Starts what the call asks for; the result, also a failure, comes with recoger.
    template <class Llamada>
    void empezar(Llamada llamada) {
        datos_ = OVERLAPPED{};
        datos_.hEvent = suceso_.get();
        ::ResetEvent(suceso_.get());
        enMarcha_ = true;
        fallida_ = !llamada(&datos_) && ::GetLastError() != ERROR_IO_PENDING;
        if (fallida_) {
            datos_.Internal = 0;
            ::SetEvent(suceso_.get());
        }
    }

    /// Waits for the end, if it has not come; how many bytes, nothing when the line is gone.
    std::optional<std::size_t> recoger() {
        enMarcha_ = false;
        DWORD bytes = 0;
        if (fallida_ || !::GetOverlappedResult(puerto_, &datos_, &bytes, TRUE)) {
            return std::nullopt;
        }
        return bytes;
    }

    /// How many bytes had been moved until then.
    std::optional<std::size_t> cancelar() {
        if (!enMarcha_) {
            return 0;
        }
        ::CancelIoEx(puerto_, &datos_);
        const auto bytes = recoger();
        return !bytes && ::GetLastError() == ERROR_OPERATION_ABORTED ? datos_.InternalHigh : bytes;
    }

 private:
    HANDLE puerto_;
    Asa suceso_;
    OVERLAPPED datos_{};
    bool enMarcha_ = false;
    bool fallida_ = false;
};

/// The system has no way to tell that bytes wait which every driver knows; what they all know is a
/// reading that goes on until a byte has come. So one byte is always being read ahead.
class LineaWindows final : public Linea {
 public:
    LineaWindows(asio::io_context& contexto, Asa puerto)
        : puerto_(std::move(puerto)),
          lectura_(puerto_.get()),
          escritura_(puerto_.get()),
          resto_(puerto_.get()),
          hayLectura_(contexto),
          hayEscritura_(contexto) {
        // Each waits on a handle of its own to the operation's event.
        vigilar(hayLectura_, lectura_);
        vigilar(hayEscritura_, escritura_);
    }

    LineaWindows(const LineaWindows&) = delete;
    LineaWindows& operator=(const LineaWindows&) = delete;

    ~LineaWindows() override {
        // An answer just written may still go out; a pile that nobody takes must not hold the
        // program.
        constexpr std::size_t kSalenAlCerrar = 16;
        constexpr DWORD kEspera = 600;  // so many bytes at the slowest speed
        if (escritura_.enMarcha() && escribiendo_ <= kSalenAlCerrar) {
            ::WaitForSingleObject(escritura_.suceso(), kEspera);
        }
    }

    void alPoderLeer(AlPoder aviso) override {
        if (!lectura_.enMarcha()) {
            leerPorDelante();
        }
        esperar(hayLectura_, std::move(aviso));
    }

    void alPoderEscribir(AlPoder aviso) override {
        if (!escritura_.enMarcha()) {
            ::SetEvent(escritura_.suceso());
        }
        esperar(hayEscritura_, std::move(aviso));
    }

    std::optional<std::size_t> leer(char* destino, std::size_t cabida) override {
        if (cabida == 0 || (lectura_.enMarcha() && !lectura_.acabada())) {
            return 0;
        }
        std::size_t leidos = 0;
        if (lectura_.enMarcha()) {
            const auto delante = lectura_.recoger();
            // None at all is how some adapters answer when they are pulled out.
            if (!delante || *delante == 0) {
                return std::nullopt;
            }
            *destino = byteDelante_;
            leidos = 1;
        }
        const auto esperan = enEspera();
        if (!esperan) {
            return std::nullopt;
        }
        const std::size_t mas = std::min(*esperan, cabida - leidos);
        if (mas == 0) {
            return leidos;
        }
        resto_.empezar([&](OVERLAPPED* datos) {
            return ::ReadFile(puerto_.get(), destino + leidos, static_cast<DWORD>(mas), nullptr,
                              datos);
        });
        // They are there already; a driver that has counted too many must not hold the program.
        constexpr DWORD kEsperaDelResto = 100;
        ::WaitForSingleObject(resto_.suceso(), kEsperaDelResto);
        const auto resto = resto_.acabada() ? resto_.recoger() : resto_.cancelar();
        return resto ? std::optional(leidos + *resto) : std::nullopt;
    }

    std::optional<std::size_t> escribir(std::string_view bytes) override {
        if (escritura_.enMarcha()) {
            if (!escritura_.acabada()) {
                return 0;
            }
            if (!escritura_.recoger()) {
                return std::nullopt;
            }
        }
        escribiendo_ = std::min(bytes.size(), salida_.size());
        if (escribiendo_ == 0) {
            return 0;
        }
        std::memcpy(salida_.data(), bytes.data(), escribiendo_);
        escritura_.empezar([this](OVERLAPPED* datos) {
            return ::WriteFile(puerto_.get(), salida_.data(), static_cast<DWORD>(escribiendo_),
                               nullptr, datos);
        });
        return escribiendo_;
    }

    void descartarRecibido() override {
        const bool leia = lectura_.enMarcha();
        // The byte read ahead goes first: what comes between the two steps is discarded too, and
        // not its beginning alone.
        lectura_.cancelar();
        ::PurgeComm(puerto_.get(), PURGE_RXCLEAR);
        if (leia) {
            leerPorDelante();
        }
    }

 private:
    void leerPorDelante() {
        lectura_.empezar([this](OVERLAPPED* datos) {
            return ::ReadFile(puerto_.get(), &byteDelante_, 1, nullptr, datos);
        });
    }

    /// How many bytes wait in the system; nothing when the line is gone.
    std::optional<std::size_t> enEspera() const {
        DWORD errores = 0;
        COMSTAT estado{};
        if (!::ClearCommError(puerto_.get(), &errores, &estado)) {
            return std::nullopt;
        }
        return estado.cbInQue;
    }

    static void vigilar(asio::windows::object_handle& vigia, const Operacion& operacion) {
        HANDLE copia = nullptr;
        const HANDLE proceso = ::GetCurrentProcess();
        if (!::DuplicateHandle(proceso, operacion.suceso(), proceso, &copia, 0, FALSE,
                               DUPLICATE_SAME_ACCESS)) {
            throw std::system_error(static_cast<int>(::GetLastError()), std::system_category());
        }
        vigia.assign(copia);
    }

    static void esperar(asio::windows::object_handle& vigia, AlPoder aviso) {
        vigia.async_wait([aviso = std::move(aviso)](std::error_code error) {
            if (error != asio::error::operation_aborted) {
                aviso(!error);
            }
        });
    }

    Asa puerto_;  // first: the operations end before it is closed
    char byteDelante_ = 0;
    std::array<char, 4096> salida_{};
    std::size_t escribiendo_ = 0;
    Operacion lectura_;
    Operacion escritura_;
    Operacion resto_;
    asio::windows::object_handle hayLectura_;
    asio::windows::object_handle hayEscritura_;
};

}  // namespace

std::unique_ptr<Linea> abrirLinea(asio::io_context& contexto, const std::string& dispositivo,
                                  const AjustesLinea& ajustes) {
    Asa puerto = abrirDispositivo(dispositivo);
    configurar(puerto.get(), dispositivo, ajustes);
    ::PurgeComm(puerto.get(), PURGE_RXCLEAR);
    return std::make_unique<LineaWindows>(contexto, std::move(puerto));
}

std::string dispositivoDelCanal(int16_t canal) {
    return std::string(kPrefijo) + "COM" + std::to_string(canal);
}

}  // namespace bn
