// SPDX-License-Identifier: MIT
#include "download/FormatoNombres.h"

#include <algorithm>
#include <array>

namespace bn::formato {
namespace {

struct Entrada {
    std::string_view nombre;
    Clase clase;
    std::string_view formato;
};

// Windows-1252: \x80 is the euro, \xED the accented i.
constexpr std::array<Entrada, 16> kNombres = {{
    {"general number", Clase::kNumero, ""},
    {"currency", Clase::kNumero, "#,##0.00 \x80"},
    {"fixed", Clase::kNumero, "0.00"},
    {"standard", Clase::kNumero, "#,##0.00"},
    {"percent", Clase::kNumero, "0.00%"},
    {"scientific", Clase::kNumero, "0.00E+00"},
    {"yes/no", Clase::kNumero, "\"S\xED\";\"S\xED\";\"No\""},
    {"true/false", Clase::kNumero, R"("Verdadero";"Verdadero";"Falso")"},
    {"on/off", Clase::kNumero, R"("Activado";"Activado";"Desactivado")"},
    {"general date", Clase::kFecha, "c"},
    {"long date", Clase::kFecha, "dddddd"},
    {"medium date", Clase::kFecha, "dd-mmm-yy"},
    {"short date", Clase::kFecha, "ddddd"},
    {"long time", Clase::kFecha, "ttttt"},
    {"medium time", Clase::kFecha, "hh:nn AM/PM"},
    {"short time", Clase::kFecha, "hh:nn"},
}};

bool igualSinCaja(std::string_view nombre, std::string_view texto) {
    return std::equal(nombre.begin(), nombre.end(), texto.begin(), texto.end(), [](char a, char b) {
        return a == (b >= 'A' && b <= 'Z' ? b - 'A' + 'a' : b);
    });
}

}  // namespace

std::optional<FormatoConNombre> buscarNombre(std::string_view nombre) {
    for (const Entrada& entrada : kNombres) {
        if (igualSinCaja(entrada.nombre, nombre)) {
            return FormatoConNombre{entrada.clase, entrada.formato};
        }
    }
    return std::nullopt;
}

}  // namespace bn::formato
