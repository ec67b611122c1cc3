// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "config/Codificacion.h"
#include "destinations/xls/formula/Contexto.h"

namespace bn::xls {

/// A workbook of three sheets and two names; hands out sheet numbers as they are asked for.
class LibroDePrueba : public ContextoFormula {
 public:
    std::vector<std::string> hojas{"Hoja1", "Otra hoja", "O'Brien"};
    std::vector<std::string> nombres{"total", "último_mes"};
    std::vector<std::pair<std::string, std::string>> xtis;

    std::optional<uint16_t> xtiDeHojas(const std::string& primera,
                                       const std::string& ultima) override {
        const auto uno = hoja(primera), otro = hoja(ultima);
        if (!uno || !otro) return std::nullopt;
        for (size_t i = 0; i < xtis.size(); ++i) {
            if (xtis[i] == std::pair(*uno, *otro)) return static_cast<uint16_t>(i);
        }
        xtis.emplace_back(*uno, *otro);
        return static_cast<uint16_t>(xtis.size() - 1);
    }

    std::optional<std::pair<std::string, std::string>> hojasDeXti(uint16_t xti) override {
        return xti < xtis.size() ? std::optional(xtis[xti]) : std::nullopt;
    }

    std::optional<uint16_t> indiceDeNombre(const std::string& nombre) override {
        for (size_t i = 0; i < nombres.size(); ++i) {
            if (mayusculas(nombres[i]) == mayusculas(nombre)) return static_cast<uint16_t>(i + 1);
        }
        return std::nullopt;
    }

    std::optional<std::string> nombreDeIndice(uint16_t indice) override {
        const bool hay = indice >= 1 && indice <= nombres.size();
        return hay ? std::optional(nombres[indice - 1U]) : std::nullopt;
    }

 private:
    std::optional<std::string> hoja(const std::string& nombre) const {
        for (const std::string& h : hojas) {
            if (mayusculas(h) == mayusculas(nombre)) return h;
        }
        return std::nullopt;
    }
};

}  // namespace bn::xls
