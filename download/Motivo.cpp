// SPDX-License-Identifier: MIT
#include "download/Motivo.h"

#include "download/SalidaHoja.h"
#include "platform/Ficheros.h"

namespace bn::motivo {

namespace {

const char* const kSolas = " Se guardarán solas.";

std::string lugar(Destino destino) {
    return destino == Destino::kHoja ? "No se puede guardar en la hoja de cálculo. "
                                     : "No se puede guardar en el fichero de texto. ";
}

const char* consejo(ErrorFichero::Causa causa) {
    using Causa = ErrorFichero::Causa;
    switch (causa) {
        case Causa::kNoExiste:
            return "Su carpeta o su unidad no está: vuelva a crearla o a conectarla, o elija otro "
                   "sitio.";
        case Causa::kSinPermiso:
            return "Pida permiso para escribir ahí, o elija otro sitio.";
        case Causa::kLleno:
            return "Libere espacio en el disco, o elija otro sitio.";
        case Causa::kEnUso:
            return "Ciérrelo en el programa que lo tiene abierto.";
        case Causa::kEsCarpeta:
            return "Cambie el nombre a esa carpeta, o elija otro fichero.";
        case Causa::kSoloLectura:
            return "Quite la protección contra escritura, o elija otro sitio.";
        case Causa::kAveria:
            return "Revise el disco, o elija otro sitio.";
        case Causa::kOtra:
            break;
    }
    return "Compruebe el disco y la carpeta, o elija otro sitio.";
}

/// A sentence of another program's may lack its end.
std::string conPunto(std::string texto) {
    while (!texto.empty() && (texto.back() == '\n' || texto.back() == ' ')) texto.pop_back();
    if (!texto.empty() && texto.back() != '.') texto += '.';
    return texto;
}

}  // namespace

std::string deFallo(Destino destino, const std::exception& error) {
    const std::string causa = lugar(destino) + conPunto(error.what()) + " ";
    if (const auto* deFichero = dynamic_cast<const ErrorFichero*>(&error)) {
        return causa + consejo(deFichero->causa()) + kSolas;
    }
    if (dynamic_cast<const HojaLlena*>(&error) != nullptr) {
        return causa + "Empiece otra hoja u otro libro." + kSolas;
    }
    return causa + "Compruebe el libro y que nadie lo tenga abierto." + kSolas;
}

std::string deDesmarcado(Destino destino) {
    return std::string("Esperan a que se marque otra vez ") +
           (destino == Destino::kHoja ? "«Hoja Excel»." : "«Texto plano».");
}

std::string deFaltaExcel() {
    return "Son para la hoja de cálculo, y este equipo no dispone de MS Excel (R). Cuando se pueda "
           "abrir, cierre este programa y ábralo otra vez." +
           std::string(kSolas);
}

std::string deNingunDestino() {
    return "No hay ningún destino marcado: marque «Hoja Excel» o «Texto plano».";
}

std::string deFicherosPropios(const std::string& causa) {
    return "No se puede trabajar con los ficheros del programa. " + conPunto(causa) +
           " Compruebe el disco y el permiso para escribir en esa carpeta." + kSolas;
}

std::string deEspera() { return "Se van a guardar en seguida."; }

std::string deAtasco(const std::string& causa) {
    return "No se puede empezar otra descarga: no se puede escribir en la carpeta del programa. " +
           conPunto(causa) + " Libere espacio o dé permiso para escribir en ella.";
}

}  // namespace bn::motivo
