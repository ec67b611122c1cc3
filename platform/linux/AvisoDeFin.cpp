// SPDX-License-Identifier: MIT
#include "platform/AvisoDeFin.h"

#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdint>
#include <thread>
#include <utility>

namespace bn {

/// The signals are blocked in the thread that makes this, and so in those that it makes later: only
/// the descriptor hears them.
struct AvisoDeFin::Interior {
    explicit Interior(std::function<void()> aviso) : alAcabar(std::move(aviso)) {
        ::sigemptyset(&senales);
        for (const int senal : {SIGTERM, SIGINT, SIGHUP}) ::sigaddset(&senales, senal);
        ::pthread_sigmask(SIG_BLOCK, &senales, &anteriores);
        escucha = ::signalfd(-1, &senales, SFD_CLOEXEC);
        paro = ::eventfd(0, EFD_CLOEXEC);
        hilo = std::thread([this] { escuchar(); });
    }
    Interior(const Interior&) = delete;
    Interior& operator=(const Interior&) = delete;
    ~Interior() {
        const std::uint64_t uno = 1;
        if (::write(paro, &uno, sizeof uno) == sizeof uno) hilo.join();
        ::close(escucha);
        ::close(paro);
        ::pthread_sigmask(SIG_SETMASK, &anteriores, nullptr);
    }

    void escuchar() const {
        for (;;) {
            std::array<pollfd, 2> esperas{{{escucha, POLLIN, 0}, {paro, POLLIN, 0}}};
            if (::poll(esperas.data(), esperas.size(), -1) == -1) continue;
            if (esperas[1].revents != 0) return;
            signalfd_siginfo senal{};
            if (::read(escucha, &senal, sizeof senal) == sizeof senal) alAcabar();
        }
    }

    std::function<void()> alAcabar;
    sigset_t senales{};
    sigset_t anteriores{};
    int escucha = -1;
    int paro = -1;
    std::thread hilo;
};

AvisoDeFin::AvisoDeFin(std::function<void()> alAcabar)
    : interior_(std::make_unique<Interior>(std::move(alAcabar))) {}

AvisoDeFin::~AvisoDeFin() = default;

}  // namespace bn
