// SPDX-License-Identifier: MIT
#include "download/CamposPesada.h"

#include "config/Setup.h"

namespace bn {

Variante valorDeCampo(const pesaDX5& pesada, int32_t campo) {
    switch (campo) {
        case kFechaHora:
            return FechaOle{pesada.FechaHora()};
        case kMatricula:
            return pesada.Matricula();
        case kAlbaran:
            return pesada.Albaran();
        case kCodigoA:
            return pesada.Codigo(1);
        case kCodigoB:
            return pesada.Codigo(2);
        case kCodigoC:
            return pesada.Codigo(3);
        case kPesoTara:
            return pesada.Tara();
        case kPesoNeto:
            return pesada.Neto();
        default:
            return {};
    }
}

bool esCampoNumerico(int32_t campo) { return campo != kFechaHora && campo != kMatricula; }

}  // namespace bn
