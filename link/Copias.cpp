// SPDX-License-Identifier: MIT
#include "link/Copias.h"

#include <utility>

namespace bn {

namespace {

bool igual(const pesaDX5& pesada, const std::string& datos) {
    return pesada.Albaran() != 0 && pesada.Datos() == datos;
}

}  // namespace

void Copias::empezar() {
    esperada_ = std::exchange(paraElProximo_, {});
    ultima_.clear();
    nakDeMas_ = false;
    cabeCopia_ = false;
}

bool Copias::esLaEsperada(const pesaDX5& pesada) {
    return igual(pesada, std::exchange(esperada_, {}));
}

bool Copias::esLaDelNak(const pesaDX5& pesada) {
    return cabeCopia_ && igual(pesada, ultima_) && std::exchange(cabeCopia_, false);
}

void Copias::aceptada(const std::string& datos) {
    ultima_ = datos;
    cabeCopia_ = std::exchange(nakDeMas_, false);
}

}  // namespace bn
