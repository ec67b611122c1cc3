// SPDX-License-Identifier: MIT
#include "platform/asio/AjustesLinea.h"

#include <array>
#include <optional>
#include <string_view>

#include "platform/MSComm.h"

namespace bn {
namespace {

template <class Valor>
struct Opcion {
    std::string_view texto;
    Valor valor;
};

constexpr std::array<Opcion<int32_t>, 7> kVelocidades{{{"300", 300},
                                                       {"600", 600},
                                                       {"1200", 1200},
                                                       {"2400", 2400},
                                                       {"4800", 4800},
                                                       {"9600", 9600},
                                                       {"19200", 19200}}};
constexpr std::array<Opcion<char>, 6> kParidades{
    {{"N", 'N'}, {"E", 'E'}, {"O", 'O'}, {"n", 'N'}, {"e", 'E'}, {"o", 'O'}}};
constexpr std::array<Opcion<int16_t>, 2> kBitsDatos{{{"7", 7}, {"8", 8}}};
constexpr std::array<Opcion<int16_t>, 2> kBitsParada{{{"1", 1}, {"2", 2}}};

/// Takes the text up to the next comma off the rest; nothing when the rest has been used up.
std::optional<std::string_view> tomarCampo(std::optional<std::string_view>& resto) {
    if (!resto) {
        return std::nullopt;
    }
    const std::size_t coma = resto->find(',');
    const std::string_view campo = resto->substr(0, coma);
    if (coma == std::string_view::npos) {
        resto.reset();
    } else {
        resto->remove_prefix(coma + 1);
    }
    return campo;
}

template <class Opciones, class Valor>
bool elegir(const Opciones& opciones, std::optional<std::string_view> campo, Valor& valor) {
    for (const auto& opcion : opciones) {
        if (opcion.texto == campo) {
            valor = opcion.valor;
            return true;
        }
    }
    return false;
}

}  // namespace

AjustesLinea leerAjustesLinea(const std::string& texto) {
    AjustesLinea ajustes;
    std::optional<std::string_view> resto = texto;
    const bool comprendido = elegir(kVelocidades, tomarCampo(resto), ajustes.velocidad) &&
                             elegir(kParidades, tomarCampo(resto), ajustes.paridad) &&
                             elegir(kBitsDatos, tomarCampo(resto), ajustes.bitsDatos) &&
                             elegir(kBitsParada, tomarCampo(resto), ajustes.bitsParada) && !resto;
    if (!comprendido) {
        throw ErrorPuerto("Parámetros de la línea no válidos: \"" + texto + "\"");
    }
    return ajustes;
}

}  // namespace bn
