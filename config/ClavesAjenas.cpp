// SPDX-License-Identifier: MIT
#include "config/ClavesAjenas.h"

#include <array>

#include "config/ArchivoIni.h"
#include "config/Codificacion.h"
#include "config/UtilTexto.h"

namespace bn {
namespace {

std::string leerClave(Disco& disco, const std::filesystem::path& ini, const std::string& seccion,
                      const std::string& clave) {
    ArchivoIni archivo(disco);
    archivo.Fichero(ini);
    archivo.Seccion(seccion);
    return archivo.Leer(clave);
}

}  // namespace

std::filesystem::path rutaDelIni(const Plataforma& plataforma) {
    return plataforma.carpetaPrograma() / "bnDX5.ini";
}

std::string dispositivoDePuerto(Disco& disco, const std::filesystem::path& ini, int16_t canal) {
    return leerClave(disco, ini, "Puertos", std::to_string(canal));
}

std::string motorExcel(Disco& disco, const std::filesystem::path& ini) {
    const std::string motor = mayusculas(leerClave(disco, ini, "Excel", "Motor"));
    for (const char* conocido : {"excel", "interno", "ninguno"}) {
        if (motor == mayusculas(conocido)) {
            return conocido;
        }
    }
    return "auto";
}

}  // namespace bn
