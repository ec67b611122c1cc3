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

#include "tests/platform/PseudoTerminal.h"
#include "tests/platform/PuertoConCola.h"

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

/// Ports on a pseudo-terminal.
class Puerto : public PuertoConCola {
 protected:
    std::unique_ptr<PuertoAsio> abierto(const std::string& ajustes = "9600,N,8,1") {
        return abiertoEn(linea_.dispositivo(), ajustes);
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

    PseudoTerminal linea_;
};

}  // namespace bn
