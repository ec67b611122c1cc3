// SPDX-License-Identifier: MIT
#include "platform/Ficheros.h"

namespace bn::ficheros {

std::string aTexto(const std::filesystem::path& ruta) {
    const std::u8string utf8 = ruta.u8string();
    return {utf8.begin(), utf8.end()};
}

std::filesystem::path aRuta(const std::string& texto) {
    return {std::u8string(texto.begin(), texto.end())};
}

}  // namespace bn::ficheros
