// SPDX-License-Identifier: MIT
#include "download/FormatoPartes.h"

#include "download/FormatoFecha.h"

namespace bn::formato {

bool Lector::siguiente(Elemento& elemento) {
    if (posicion_ >= formato_.size()) return false;
    actual_ = posicion_;
    const char c = formato_[posicion_];
    if (c == '"') {
        const std::size_t cierre = formato_.find('"', posicion_ + 1);
        const bool cerrada = cierre != std::string_view::npos;
        const std::size_t fin = cerrada ? cierre : formato_.size();
        elemento = {true, formato_.substr(posicion_ + 1, fin - posicion_ - 1)};
        posicion_ = cerrada ? cierre + 1 : fin;
    } else if (c == '\\' && posicion_ + 1 < formato_.size()) {
        elemento = {true, formato_.substr(posicion_ + 1, 1)};
        posicion_ += 2;
    } else {
        elemento = {false, formato_.substr(posicion_, 1)};
        ++posicion_;
    }
    return true;
}

Secciones dividir(std::string_view formato) {
    Secciones secciones;
    Lector lector(formato);
    Elemento elemento;
    std::size_t inicio = 0;
    while (secciones.cuantas < secciones.textos.size()) {
        bool hay = lector.siguiente(elemento);
        while (hay && (elemento.literal || elemento.texto[0] != ';')) {
            hay = lector.siguiente(elemento);
        }
        const std::size_t fin = hay ? formato.size() - lector.desdeActual().size() : formato.size();
        secciones.textos[secciones.cuantas++] = formato.substr(inicio, fin - inicio);
        if (!hay) break;
        inicio = fin + 1;
    }
    return secciones;
}

Clase clasificar(std::string_view formato) {
    Lector lector(formato);
    Elemento elemento;
    while (lector.siguiente(elemento)) {
        if (elemento.literal) continue;
        switch (elemento.texto[0]) {
            case '0':
            case '#':
            case '%':
                return Clase::kNumero;
            case '@':
            case '&':
            case '<':
            case '>':
            case '!':
                return Clase::kTexto;
            default:
                if (leerCodigo(lector.desdeActual()).letra != 0) return Clase::kFecha;
        }
    }
    return Clase::kNumero;
}

}  // namespace bn::formato
