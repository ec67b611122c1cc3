// SPDX-License-Identifier: MIT
#include "app/LineaDeMuestra.h"

#include "config/Codificacion.h"
#include "download/LineaTexto.h"
#include "link/pesaDX5.h"

namespace bn {

namespace {

/// Plate, delivery note, three codes, tare, net, date and time.
constexpr const char* kPesadaDeMuestra =
    "1234BCD  0000057 00000011 00000022 00000033 0012340 0025660 14/03/24 10:25";

}  // namespace

std::string lineaDeMuestra(Plataforma& plataforma, const FormularioTxt& formulario) {
    pesaDX5 pesada(plataforma);
    pesada.DatosValidos(kPesadaDeMuestra);
    return cp1252AUtf8(lineaTexto(pesada, formulario.disposicion()));
}

}  // namespace bn
