// SPDX-License-Identifier: MIT
#include "tools/simulador/Ritmo.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace bn::simulador {

namespace {

// What a port's own buffer commonly gathers before it tells the system.
constexpr std::size_t kTrozo = 8;

constexpr std::array<std::string_view, 10> kBaudios = {"300",  "600",   "1200",  "2400",  "4800",
                                                       "9600", "19200", "38400", "57600", "115200"};

}  // namespace

std::optional<Parametros> leerParametros(std::string_view texto) {
    const std::size_t coma = texto.find(',');
    if (coma == std::string_view::npos) return std::nullopt;
    const std::string_view baudios = texto.substr(0, coma);
    const std::string_view resto = texto.substr(coma + 1);
    if (std::find(kBaudios.begin(), kBaudios.end(), baudios) == kBaudios.end()) return std::nullopt;
    const auto es = [&resto](std::size_t donde, std::string_view cuales) {
        return cuales.find(resto[donde]) != std::string_view::npos;
    };
    if (resto.size() != 5 || !es(0, "NEO") || resto[1] != ',' || !es(2, "78") || resto[3] != ',' ||
        !es(4, "12")) {
        return std::nullopt;
    }
    return Parametros{std::stoi(std::string(baudios)), resto[0], resto[2] - '0', resto[4] - '0'};
}

Ritmo::Ritmo(const Parametros& parametros)
    : bitsPorByte_(1 + parametros.bits + (parametros.paridad == 'N' ? 0 : 1) + parametros.parada),
      baudios_(parametros.baudios) {}

std::chrono::nanoseconds Ritmo::duracion(std::size_t bytes) const {
    constexpr int64_t kSegundo = 1'000'000'000;
    return std::chrono::nanoseconds(static_cast<int64_t>(bytes) * bitsPorByte_ * kSegundo /
                                    baudios_);
}

std::vector<Trozo> Ritmo::plan(const Envio& envio, bool alSalir) const {
    std::vector<Trozo> trozos;
    std::chrono::nanoseconds pausas{0};
    std::size_t enviados = 0;
    for (const Tramo& tramo : envio) {
        pausas += tramo.pausa;
        std::size_t desde = 0;
        while (desde < tramo.bytes.size()) {
            // The odd piece goes first: the last one, whole, then holds the trailer.
            const std::size_t quedan = tramo.bytes.size() - desde;
            std::size_t cuantos = bitsPorByte_ == 0 ? quedan : quedan % kTrozo;
            if (cuantos == 0) cuantos = kTrozo;
            const std::size_t cuenta = alSalir ? enviados : enviados + cuantos;
            trozos.push_back({pausas + duracion(cuenta), tramo.bytes.substr(desde, cuantos)});
            desde += cuantos;
            enviados += cuantos;
        }
    }
    return trozos;
}

}  // namespace bn::simulador
