// SPDX-License-Identifier: MIT
#include "tests/platform/PseudoTerminal.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <thread>

namespace bn {
namespace {

constexpr std::chrono::seconds kLimite{5};

int comprobado(int numero) {
    if (numero < 0) {
        throw std::runtime_error("no pseudo-terminal to be had");
    }
    return numero;
}

}  // namespace

PseudoTerminal::PseudoTerminal()
    : maestro_(comprobado(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC))) {
    comprobado(::grantpt(maestro_));
    comprobado(::unlockpt(maestro_));
    std::array<char, 128> nombre{};
    comprobado(-::ptsname_r(maestro_, nombre.data(), nombre.size()));
    dispositivo_ = nombre.data();
    cercano_ = comprobado(::open(dispositivo_.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
}

PseudoTerminal::~PseudoTerminal() { desaparecer(); }

std::size_t PseudoTerminal::escribir(const std::string& bytes) {
    std::size_t hechos = 0;
    while (hechos < bytes.size()) {
        const ssize_t n = ::write(maestro_, bytes.data() + hechos, bytes.size() - hechos);
        if (n <= 0) {
            break;
        }
        hechos += static_cast<std::size_t>(n);
    }
    return hechos;
}

std::string PseudoTerminal::leer(std::size_t cuantos) {
    std::string leido;
    const auto fin = std::chrono::steady_clock::now() + kLimite;
    while (leido.size() < cuantos && std::chrono::steady_clock::now() < fin) {
        pollfd espera{maestro_, POLLIN, 0};
        ::poll(&espera, 1, 100);
        leido += leerYa();
    }
    return leido;
}

std::string PseudoTerminal::leerYa() {
    std::string leido;
    std::array<char, 4096> trozo{};
    for (ssize_t n = 0; (n = ::read(maestro_, trozo.data(), trozo.size())) > 0;) {
        leido.append(trozo.data(), static_cast<std::size_t>(n));
    }
    return leido;
}

void PseudoTerminal::desaparecer() {
    if (maestro_ >= 0) {
        ::close(cercano_);
        ::close(maestro_);
    }
    maestro_ = cercano_ = -1;
}

int PseudoTerminal::pendientes() const {
    int cuantos = 0;
    comprobado(::ioctl(cercano_, FIONREAD, &cuantos));
    return cuantos;
}

bool PseudoTerminal::esperarPendientes(int cuantos) const {
    const auto fin = std::chrono::steady_clock::now() + kLimite;
    while (pendientes() < cuantos) {
        if (std::chrono::steady_clock::now() > fin) {
            return false;
        }
        std::this_thread::yield();
    }
    return true;
}

termios PseudoTerminal::modo() const {
    termios modo{};
    comprobado(::tcgetattr(cercano_, &modo));
    return modo;
}

}  // namespace bn
