// SPDX-License-Identifier: MIT
// Plays the indicator for a program under test and measures how fast that one answers.
//
//   banco_giro PESADAS BAUDIOS ENLACE COMMAND [ARGUMENT...]
//
// Makes the link ENLACE to a pseudo-terminal, starts the command, and answers its request with so
// many long records. BAUDIOS 0 sends each frame in one burst; otherwise every byte, and every
// answer, takes the time it would take on the wire. Writes one line of JSON. A command that
// does not end by itself is ended two seconds after the exchange.
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "tools/simulador/Linea.h"
#include "tools/simulador/Pesadas.h"
#include "tools/simulador/Ritmo.h"
#include "tools/simulador/Tramas.h"

namespace bn::banco {
namespace {

using namespace simulador;
using std::chrono::nanoseconds;

constexpr uint64_t kSemilla = 1;
constexpr std::chrono::seconds kEsperaPeticion{60};
constexpr std::chrono::seconds kEsperaRespuesta{10};
constexpr std::chrono::seconds kGracia{2};

/// The program under test, in a process of its own.
class Probado {
 public:
    explicit Probado(char** orden) : pid_(fork()) {
        if (pid_ < 0) throw std::runtime_error("no process to be had");
        if (pid_ > 0) return;
        setpgid(0, 0);
        sigset_t ninguna;
        sigemptyset(&ninguna);
        sigprocmask(SIG_SETMASK, &ninguna, nullptr);
        // Standard output belongs to the measures.
        dup2(STDERR_FILENO, STDOUT_FILENO);
        execvp(orden[0], orden);
        std::perror(orden[0]);
        _exit(127);
    }
    Probado(const Probado&) = delete;
    Probado& operator=(const Probado&) = delete;
    ~Probado() {
        if (haTerminado()) return;
        kill(-pid_, SIGTERM);
        if (haTerminado()) return;
        kill(-pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }

 private:
    /// Waits for it, for a while.
    bool haTerminado() const {
        for (const Instante fin = ahora() + kGracia; ahora() < fin; usleep(10'000)) {
            if (waitpid(pid_, nullptr, WNOHANG) != 0) return true;
        }
        return false;
    }

    pid_t pid_;
};

/// The exchange, and the times it took.
class Intercambio {
 public:
    Intercambio(Linea& linea, Paro& paro, const Ritmo& ritmo)
        : linea_(linea), paro_(paro), ritmo_(ritmo) {}

    void esperarPeticion() {
        // Whatever the program under test sends while it starts, the request is what counts.
        while (recibirUno(kEsperaPeticion) != Caracteres{}.peticion) {
        }
        libre_ = ahora() + ritmo_.duracion(1);
    }

    /// Sends the frame and waits for its acknowledge; how long that took to arrive after the
    /// frame's last byte had.
    nanoseconds enviar(const std::string& bytes) {
        const std::vector<Trozo> trozos = ritmo_.plan({{{}, bytes}}, false);
        const Instante inicio = libre_;
        for (const Trozo& trozo : trozos) {
            // Without pace there is nothing to wait for.
            if (trozo.cuando.count() > 0 && !paro_.dormirHasta(inicio + trozo.cuando)) parar();
            if (&trozo != &trozos.back()) linea_.escribir(trozo.bytes);
        }
        const Instante ultimo = ahora();
        linea_.escribir(trozos.back().bytes);
        if (recibirUno(kEsperaRespuesta) != kAck) {
            throw std::runtime_error("a frame was not acknowledged");
        }
        const Instante respondido = ahora();
        libre_ = respondido + ritmo_.duracion(1);
        return respondido - ultimo;
    }

    /// When the last answer has crossed the wire.
    Instante libre() const { return libre_; }

 private:
    char recibirUno(std::chrono::seconds limite) {
        const Instante fin = ahora() + limite;
        while (ahora() < fin) {
            const auto bytes = linea_.leer(fin, paro_);
            if (!bytes) parar();
            if (bytes->size() == 1) return bytes->front();
            if (bytes->size() > 1) throw std::runtime_error("more than one byte was answered");
        }
        throw std::runtime_error("no answer");
    }

    [[noreturn]] static void parar() { throw std::runtime_error("stopped"); }

    Linea& linea_;
    Paro& paro_;
    Ritmo ritmo_;
    Instante libre_{0};
};

double cuantil(const std::vector<nanoseconds>& ordenados, double parte) {
    const auto lugar = static_cast<std::size_t>(parte * static_cast<double>(ordenados.size() - 1));
    return static_cast<double>(ordenados[lugar].count()) / 1e3;
}

void medir(int pesadas, int32_t baudios, const std::string& enlace, char** orden) {
    Paro paro;
    const auto linea = Linea::pseudoterminal(enlace);
    const Ritmo ritmo = baudios == 0 ? Ritmo() : Ritmo(Parametros{baudios, 'N', 8, 1});
    Intercambio intercambio(*linea, paro, ritmo);
    Pesadas inventadas(kSemilla, Forma::kLarga);
    std::vector<std::string> tramas;
    std::size_t bytes = 0;
    for (int i = 0; i < pesadas; ++i) {
        tramas.push_back(trama(inventadas.siguiente(), {}));
        bytes += tramas.back().size();
    }

    const Probado probado(orden);
    intercambio.esperarPeticion();
    const Instante inicio = intercambio.libre();
    std::vector<nanoseconds> giros;
    giros.reserve(tramas.size());
    for (const std::string& una : tramas) giros.push_back(intercambio.enviar(una));
    const nanoseconds total = intercambio.libre() - inicio;
    intercambio.enviar(trama(datosContador(pesadas % 10'000, 4), {}));

    std::sort(giros.begin(), giros.end());
    const auto segundos = [](nanoseconds n) { return static_cast<double>(n.count()) / 1e9; };
    std::printf(
        "{\"pesadas\": %d, \"baudios\": %d, \"bytes\": %zu, \"segundos\": %.6f, "
        "\"limite_tramas\": %.6f, \"limite_con_respuestas\": %.6f, \"mediana_us\": %.1f, "
        "\"p99_us\": %.1f, \"maximo_us\": %.1f}\n",
        pesadas, baudios, bytes, segundos(total), segundos(ritmo.duracion(bytes)),
        segundos(ritmo.duracion(bytes + tramas.size())), cuantil(giros, 0.5), cuantil(giros, 0.99),
        cuantil(giros, 1.0));
    std::fflush(stdout);
}

}  // namespace
}  // namespace bn::banco

int main(int argc, char** argv) {
    if (argc < 5 || std::atoi(argv[1]) < 1) {
        std::fputs("banco_giro PESADAS BAUDIOS ENLACE COMMAND [ARGUMENT...]\n", stderr);
        return 2;
    }
    try {
        bn::banco::medir(std::atoi(argv[1]), std::atoi(argv[2]), argv[3], argv + 4);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "banco_giro: %s\n", error.what());
        return 1;
    }
}
