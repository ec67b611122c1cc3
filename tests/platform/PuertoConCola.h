// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "platform/asio/PuertoAsio.h"
#include "tests/platform/ColaDeInterfaz.h"

namespace bn {

inline std::string bytesVariados(std::size_t cuantos) {
    std::string bytes(cuantos, '\0');
    for (std::size_t i = 0; i < cuantos; ++i) {
        bytes[i] = static_cast<char>((i * 7 + i / 256) % 256);
    }
    return bytes;
}

/// A queue, and ports that bring their notifications to it.
class PuertoConCola : public testing::Test {
 protected:
    std::unique_ptr<PuertoAsio> nuevoPuerto(const std::string& dispositivo) {
        return std::make_unique<PuertoAsio>(
            [this](std::function<void()> aviso) { cola_.poner(std::move(aviso)); },
            [dispositivo](int16_t) { return dispositivo; });
    }

    /// A port on that device, open, that counts its notifications.
    std::unique_ptr<PuertoAsio> abiertoEn(const std::string& dispositivo,
                                          const std::string& ajustes) {
        auto puerto = nuevoPuerto(dispositivo);
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
    int avisos_ = 0;
};

}  // namespace bn
