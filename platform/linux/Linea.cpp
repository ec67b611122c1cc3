// SPDX-License-Identifier: MIT
#include "platform/asio/Linea.h"

#include <fcntl.h>
#include <linux/serial.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <asio/io_context.hpp>
#include <asio/posix/stream_descriptor.hpp>
#include <cerrno>
#include <system_error>
#include <utility>

#include "platform/MSComm.h"

namespace bn {
namespace {

std::string causa(int error) {
    switch (error) {
        case ENOENT:
        case ENOTDIR:
        case ENXIO:
        case ENODEV:
            return "no existe";
        case EACCES:
        case EPERM:
            return "acceso denegado";
        case EBUSY:
        case EWOULDBLOCK:
            return "está en uso por otro programa";
        case ENOTTY:
        case EISDIR:
        case EINVAL:
            return "no es un puerto serie";
        case EIO:  // a port known to the system with no hardware behind it
            return "no existe o no responde";
        default:
            return "no se puede abrir (error " + std::to_string(error) + " del sistema)";
    }
}

[[noreturn]] void fallar(const std::string& dispositivo, int error) {
    throw ErrorPuerto(dispositivo + ": " + causa(error));
}

/// A file descriptor, closed unless it is handed on.
class Descriptor {
 public:
    explicit Descriptor(int numero) : numero_(numero) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (numero_ >= 0) {
            ::close(numero_);
        }
    }
    int numero() const { return numero_; }
    int entregar() { return std::exchange(numero_, -1); }

 private:
    int numero_;
};

speed_t velocidadDelSistema(int32_t baudios) {
    switch (baudios) {
        case 300:
            return B300;
        case 600:
            return B600;
        case 1200:
            return B1200;
        case 2400:
            return B2400;
        case 4800:
            return B4800;
        case 19200:
            return B19200;
        default:
            return B9600;
    }
}

/// Opens without waiting for a carrier. Only character devices are opened at all: opening alone can
/// do something to other things (a pipe's other end would wake up).
int abrirDispositivo(const std::string& dispositivo) {
    struct stat datos {};
    if (::stat(dispositivo.c_str(), &datos) != 0) {
        fallar(dispositivo, errno);
    }
    if (!S_ISCHR(datos.st_mode)) {
        fallar(dispositivo, ENOTTY);
    }
    const int numero = ::open(dispositivo.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (numero < 0) {
        fallar(dispositivo, errno);
    }
    return numero;
}

/// Keeps other programs out. The lock stops another bnDX5 and every program that locks too, also
/// where an administrator runs both; the system's exclusive mark stops the rest.
void reservar(int numero, const std::string& dispositivo) {
    if (::flock(numero, LOCK_EX | LOCK_NB) != 0) {
        fallar(dispositivo, errno);
    }
    int exclusivo = 0;
    if (::ioctl(numero, TIOCGEXCL, &exclusivo) == 0 && exclusivo != 0) {
        fallar(dispositivo, EBUSY);
    }
}

/// Eight clean bits each way. A byte that arrives damaged (parity, framing) is dropped, not handed
/// on as it is nor replaced: a weighing frame is known by its length, so a frame short of one byte
/// is refused and asked for again, whereas a stand-in could pass inside a plate.
void ponerModoCrudo(termios& modo) {
    modo.c_iflag = IGNBRK | INPCK | IGNPAR;
    modo.c_oflag = 0;
    modo.c_lflag = 0;
    modo.c_cc[VMIN] = 1;  // so that a read of nothing at all can only mean that the line is gone
    modo.c_cc[VTIME] = 0;
}

void ponerAjustes(termios& modo, const AjustesLinea& ajustes) {
    // Without HUPCL: DTR stays up between two downloads, for converters that live on it.
    modo.c_cflag = CREAD | CLOCAL;
    modo.c_cflag |= ajustes.bitsDatos == 7 ? CS7 : CS8;
    if (ajustes.bitsParada == 2) {
        modo.c_cflag |= CSTOPB;
    }
    if (ajustes.paridad != 'N') {
        modo.c_cflag |= PARENB;
    }
    if (ajustes.paridad == 'O') {
        modo.c_cflag |= PARODD;
    }
    const speed_t velocidad = velocidadDelSistema(ajustes.velocidad);
    ::cfsetispeed(&modo, velocidad);
    ::cfsetospeed(&modo, velocidad);
}

void configurar(int numero, const std::string& dispositivo, const AjustesLinea& ajustes) {
    termios modo{};
    if (::tcgetattr(numero, &modo) != 0) {
        fallar(dispositivo, errno);
    }
    ponerModoCrudo(modo);
    ponerAjustes(modo, ajustes);
    if (::tcsetattr(numero, TCSANOW, &modo) != 0) {
        fallar(dispositivo, errno);
    }

    // The call above answers well when any one of the settings was taken.
    termios puesto{};
    if (::tcgetattr(numero, &puesto) != 0) {
        fallar(dispositivo, errno);
    }
    if (::cfgetospeed(&puesto) != ::cfgetospeed(&modo)) {
        throw ErrorPuerto(dispositivo + ": no admite " + std::to_string(ajustes.velocidad) +
                          " baudios");
    }
}

/// DTR and RTS on; true when the line has them (a pseudo-terminal does not).
bool levantarLineas(int numero) {
    const int lineas = TIOCM_DTR | TIOCM_RTS;
    return ::ioctl(numero, TIOCMBIS, &lineas) == 0;
}

/// Asks the driver to hand bytes on at once: USB adapters may collect them for 16 ms otherwise.
/// Drivers that do not know it go on as they are.
void pedirPrisa(int numero) {
    serial_struct datos{};
    if (::ioctl(numero, TIOCGSERIAL, &datos) != 0) {
        return;
    }
    datos.flags |= ASYNC_LOW_LATENCY;
    static_cast<void>(::ioctl(numero, TIOCSSERIAL, &datos));
}

class LineaLinux final : public Linea {
 public:
    LineaLinux(asio::io_context& contexto, Descriptor& descriptor)
        : descriptor_(contexto, descriptor.numero()) {
        descriptor.entregar();
    }

    LineaLinux(const LineaLinux&) = delete;
    LineaLinux& operator=(const LineaLinux&) = delete;

    ~LineaLinux() override {
        const int numero = descriptor_.native_handle();
        ::ioctl(numero, TIOCNXCL);
        // Closing waits until the line has sent everything. An answer just written may still go
        // out; a pile that nobody takes must not hold the program.
        int pendientes = 0;
        if (::ioctl(numero, TIOCOUTQ, &pendientes) == 0 && pendientes > kSalenAlCerrar) {
            ::tcflush(numero, TCOFLUSH);
        }
        std::error_code ignorado;  // closed is closed
        descriptor_.close(ignorado);
    }

    void alPoderLeer(AlPoder aviso) override {
        esperar(asio::posix::descriptor_base::wait_read, std::move(aviso));
    }

    void alPoderEscribir(AlPoder aviso) override {
        esperar(asio::posix::descriptor_base::wait_write, std::move(aviso));
    }

    std::optional<std::size_t> leer(char* destino, std::size_t cabida) override {
        const ssize_t leidos = ::read(descriptor_.native_handle(), destino, cabida);
        if (leidos > 0) {
            return static_cast<std::size_t>(leidos);
        }
        if (leidos < 0 && (errno == EAGAIN || errno == EINTR)) {
            return 0;
        }
        return std::nullopt;
    }

    std::optional<std::size_t> escribir(std::string_view bytes) override {
        const ssize_t escritos = ::write(descriptor_.native_handle(), bytes.data(), bytes.size());
        if (escritos >= 0) {
            return static_cast<std::size_t>(escritos);
        }
        if (errno == EAGAIN || errno == EINTR) {
            return 0;
        }
        return std::nullopt;
    }

    void descartarRecibido() override { ::tcflush(descriptor_.native_handle(), TCIFLUSH); }

 private:
    static constexpr int kSalenAlCerrar = 16;

    void esperar(asio::posix::descriptor_base::wait_type que, AlPoder aviso) {
        descriptor_.async_wait(que, [aviso = std::move(aviso)](std::error_code error) {
            if (error != asio::error::operation_aborted) {
                aviso(!error);
            }
        });
    }

    asio::posix::stream_descriptor descriptor_;
};

}  // namespace

std::unique_ptr<Linea> abrirLinea(asio::io_context& contexto, const std::string& dispositivo,
                                  const AjustesLinea& ajustes) {
    Descriptor descriptor(abrirDispositivo(dispositivo));
    const int numero = descriptor.numero();
    if (::isatty(numero) == 0) {
        fallar(dispositivo, errno);
    }
    reservar(numero, dispositivo);
    configurar(numero, dispositivo, ajustes);
    // A pseudo-terminal would keep the exclusive mark of a program that was killed, so it is set
    // only on real lines, where it goes with the last close.
    if (levantarLineas(numero)) {
        ::ioctl(numero, TIOCEXCL);
        pedirPrisa(numero);
    }
    ::tcflush(numero, TCIFLUSH);
    return std::make_unique<LineaLinux>(contexto, descriptor);
}

std::string dispositivoDelCanal(int16_t canal) { return "/dev/ttyS" + std::to_string(canal - 1); }

}  // namespace bn
