// SPDX-License-Identifier: MIT
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <utility>

#include "platform/asio/PuertoAsio.h"
#include "tests/platform/ColaDeInterfaz.h"
#include "tests/platform/PseudoTerminal.h"

namespace bn {

inline constexpr std::size_t kMega = 1024 * 1024;

/// Waits for what no notification tells of.
inline bool llegaASer(const std::function<bool()>& condicion) {
    const auto fin = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (!condicion()) {
        if (std::chrono::steady_clock::now() > fin) {
            return false;
        }
        std::this_thread::yield();
    }
    return true;
}

inline std::string bytesVariados(std::size_t cuantos) {
    std::string bytes(cuantos, '\0');
    for (std::size_t i = 0; i < cuantos; ++i) {
        bytes[i] = static_cast<char>((i * 7 + i / 256) % 256);
    }
    return bytes;
}

/// A pseudo-terminal, a queue, and ports that bring the two together.
class Puerto : public testing::Test {
 protected:
    std::unique_ptr<PuertoAsio> nuevoPuerto(const std::string& dispositivo) {
        return std::make_unique<PuertoAsio>(
            [this](std::function<void()> aviso) { cola_.poner(std::move(aviso)); },
            [dispositivo](int16_t) { return dispositivo; });
    }

    /// A port on the pseudo-terminal, open, that counts its notifications.
    std::unique_ptr<PuertoAsio> abierto(const std::string& ajustes = "9600,N,8,1") {
        auto puerto = nuevoPuerto(linea_.dispositivo());
        puerto->CommPort(1);
        puerto->Settings(ajustes);
        puerto->PortOpen(true);
        puerto->OnComm.conectar([this] { ++avisos_; });
        return puerto;
    }

    std::string recibir(PuertoAsio& puerto, std::size_t cuantos) {
        std::string recibido;
        cola_.hasta([&] {
            recibido += puerto.Input();
            return recibido.size() >= cuantos;
        });
        return recibido;
    }

    /// Writes until neither port nor system takes more; how much went in.
    std::size_t llenar(const std::string& torrente) {
        std::size_t escritos = 0;
        EXPECT_TRUE(llegaASer([&] {
            const std::size_t mas = linea_.escribir(torrente.substr(escritos));
            escritos += mas;
            return mas == 0 && linea_.pendientes() >= 4000;
        }));
        return escritos;
    }

    std::string errorAlAbrir(const std::string& dispositivo) {
        const auto puerto = nuevoPuerto(dispositivo);
        try {
            puerto->PortOpen(true);
        } catch (const ErrorPuerto& error) {
            EXPECT_FALSE(puerto->PortOpen());
            return error.what();
        }
        return "";
    }

    ColaDeInterfaz cola_;
    PseudoTerminal linea_;
    int avisos_ = 0;
};

}  // namespace bn
