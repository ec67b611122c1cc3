// SPDX-License-Identifier: MIT
#include "tools/simulador/Linea.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <system_error>
#include <utility>

namespace bn::simulador {

namespace {

[[noreturn]] void fallar(const std::string& que, int error) {
    throw ErrorLinea(que + ": " + std::generic_category().message(error));
}

speed_t velocidad(int32_t baudios) {
    static constexpr std::array<std::pair<int32_t, speed_t>, 10> kVelocidades = {{
        {300, B300},
        {600, B600},
        {1200, B1200},
        {2400, B2400},
        {4800, B4800},
        {9600, B9600},
        {19200, B19200},
        {38400, B38400},
        {57600, B57600},
        {115200, B115200},
    }};
    for (const auto& [numero, codigo] : kVelocidades) {
        if (numero == baudios) return codigo;
    }
    return B9600;
}

// Bytes pass as they are: no echo, no line editing, no translation of line ends.
bool ajustar(int descriptor, const Parametros& parametros) {
    termios modo{};
    if (tcgetattr(descriptor, &modo) != 0) return false;
    cfmakeraw(&modo);
    modo.c_cflag &= ~static_cast<tcflag_t>(CSIZE | PARENB | PARODD | CSTOPB | CRTSCTS);
    modo.c_cflag |= static_cast<tcflag_t>(CLOCAL | CREAD);
    modo.c_cflag |= static_cast<tcflag_t>(parametros.bits == 7 ? CS7 : CS8);
    if (parametros.paridad != 'N') modo.c_cflag |= static_cast<tcflag_t>(PARENB);
    if (parametros.paridad == 'O') modo.c_cflag |= static_cast<tcflag_t>(PARODD);
    if (parametros.parada == 2) modo.c_cflag |= static_cast<tcflag_t>(CSTOPB);
    return cfsetspeed(&modo, velocidad(parametros.baudios)) == 0 &&
           tcsetattr(descriptor, TCSANOW, &modo) == 0;
}

timespec falta(Instante hasta) {
    const int64_t resto = std::max<int64_t>(0, (hasta - ahora()).count());
    return {static_cast<time_t>(resto / 1'000'000'000), static_cast<long>(resto % 1'000'000'000)};
}

// Under a temporary name first: whoever follows the link finds the old line or the new one.
void enlazar(const std::string& destino, const std::string& enlace) {
    std::error_code error;
    const std::string temporal = enlace + "." + std::to_string(getpid());
    std::filesystem::create_symlink(destino, temporal, error);
    if (!error) std::filesystem::rename(temporal, enlace, error);
    if (!error) return;
    std::error_code sinImportancia;
    std::filesystem::remove(temporal, sinImportancia);
    throw ErrorLinea("No se puede crear el enlace " + enlace + ": " + error.message());
}

}  // namespace

Instante ahora() {
    timespec hora{};
    clock_gettime(CLOCK_MONOTONIC, &hora);
    return std::chrono::seconds(hora.tv_sec) + std::chrono::nanoseconds(hora.tv_nsec);
}

struct Paro::Interior {
    explicit Interior(int numero) : descriptor(numero) {}
    Interior(const Interior&) = delete;
    Interior& operator=(const Interior&) = delete;
    ~Interior() { close(descriptor); }

    int descriptor;
};

Paro::Paro() {
    sigset_t senales;
    sigemptyset(&senales);
    sigaddset(&senales, SIGINT);
    sigaddset(&senales, SIGTERM);
    sigaddset(&senales, SIGHUP);
    if (pthread_sigmask(SIG_BLOCK, &senales, nullptr) != 0) fallar("sigmask", errno);
    const int descriptor = signalfd(-1, &senales, SFD_CLOEXEC | SFD_NONBLOCK);
    if (descriptor < 0) fallar("signalfd", errno);
    interior_ = std::make_unique<Interior>(descriptor);
    // The usual slack of 50 microseconds, at every piece of every frame, would show in the pace. A
    // system that refuses keeps its slack; nothing else changes.
    prctl(PR_SET_TIMERSLACK, 1UL);
}

Paro::~Paro() = default;

bool Paro::dormirHasta(Instante cuando) {
    pollfd espera{interior_->descriptor, POLLIN, 0};
    for (;;) {
        const timespec plazo = falta(cuando);
        const int resultado = ppoll(&espera, 1, &plazo, nullptr);
        if (resultado > 0) return false;
        if (resultado == 0 && ahora() >= cuando) return true;
    }
}

struct Linea::Interior {
    Interior() = default;
    Interior(const Interior&) = delete;
    Interior& operator=(const Interior&) = delete;
    ~Interior() {
        std::error_code error;
        if (!enlace.empty() && std::filesystem::read_symlink(enlace, error) == ruta) {
            std::filesystem::remove(enlace, error);
        }
        if (esclavo >= 0) close(esclavo);
        if (descriptor >= 0) close(descriptor);
    }

    int descriptor = -1;
    int esclavo = -1;  // held open, so that the line outlives the computer's closing its side
    std::string ruta;
    std::string enlace;
};

Linea::Linea(std::unique_ptr<Interior> interior) : interior_(std::move(interior)) {}

Linea::~Linea() = default;

const std::string& Linea::ruta() const { return interior_->ruta; }

bool Linea::real() const { return interior_->esclavo < 0; }

std::unique_ptr<Linea> Linea::pseudoterminal(const std::string& enlace) {
    auto interior = std::make_unique<Interior>();
    std::array<char, PATH_MAX> nombre{};
    if (openpty(&interior->descriptor, &interior->esclavo, nombre.data(), nullptr, nullptr) != 0) {
        fallar("No se puede abrir un pseudoterminal", errno);
    }
    if (!ajustar(interior->esclavo, {}) || fcntl(interior->descriptor, F_SETFL, O_NONBLOCK) != 0) {
        fallar("No se puede preparar el pseudoterminal", errno);
    }
    interior->ruta = nombre.data();
    if (!enlace.empty()) {
        enlazar(interior->ruta, enlace);
        interior->enlace = enlace;
    }
    return std::unique_ptr<Linea>(new Linea(std::move(interior)));
}

std::unique_ptr<Linea> Linea::dispositivo(const std::string& ruta, const Parametros& parametros) {
    auto interior = std::make_unique<Interior>();
    interior->descriptor = open(ruta.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (interior->descriptor < 0) fallar("No se puede abrir " + ruta, errno);
    if (!ajustar(interior->descriptor, parametros)) {
        fallar(ruta + " no se deja ajustar como puerto serie", errno);
    }
    interior->ruta = ruta;
    return std::unique_ptr<Linea>(new Linea(std::move(interior)));
}

void Linea::escribir(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t escritos = write(interior_->descriptor, bytes.data(), bytes.size());
        if (escritos > 0) {
            bytes.remove_prefix(static_cast<std::size_t>(escritos));
        } else if (errno == EAGAIN) {
            return;
        } else if (errno != EINTR) {
            fallar("Se ha perdido la línea " + interior_->ruta, errno);
        }
    }
}

void Linea::vaciarEntrada() {
    std::array<char, 256> tirados{};
    while (read(interior_->descriptor, tirados.data(), tirados.size()) > 0) {
    }
}

std::optional<std::string> Linea::leer(std::optional<Instante> hasta, const Paro& paro) {
    std::array<pollfd, 2> esperas = {
        {{interior_->descriptor, POLLIN, 0}, {paro.interior_->descriptor, POLLIN, 0}}};
    timespec plazo{};
    if (hasta) plazo = falta(*hasta);
    if (ppoll(esperas.data(), esperas.size(), hasta ? &plazo : nullptr, nullptr) <= 0) return "";
    if (esperas[1].revents != 0) return std::nullopt;
    std::array<char, 256> leidos{};
    const ssize_t cuantos = read(interior_->descriptor, leidos.data(), leidos.size());
    if (cuantos > 0) return std::string(leidos.data(), static_cast<std::size_t>(cuantos));
    if (cuantos < 0 && (errno == EAGAIN || errno == EINTR)) return "";
    fallar("Se ha perdido la línea " + interior_->ruta, cuantos == 0 ? ENODEV : errno);
}

}  // namespace bn::simulador
