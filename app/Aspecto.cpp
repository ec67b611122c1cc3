// SPDX-License-Identifier: MIT
#include "app/Aspecto.h"

#include <array>

#include "download/Descarga.h"

namespace bn {

namespace {

constexpr int32_t kEstados = 6;

std::string codigo(const std::string& caracter) {
    return std::to_string(static_cast<unsigned char>(caracter.front()));
}

}  // namespace

const Aspecto& aspectoDeEstado(int32_t estado) {
    using enum Boton;
    static const std::array<Aspecto, kEstados> kTabla{{
        /* idle       */ {{kCerr, kMini, kDesc}, 0, Resultado::kOculto},
        /* requesting */ {{kCerr, kMini, kDesc}, 1, Resultado::kOculto},
        /* receiving  */ {{kMini, kAbor}, 2, Resultado::kOculto},
        /* saving     */ {{kMini}, 3, Resultado::kOculto},
        /* finished   */ {{kCerr, kMini, kDesc, kLimp}, 4, Resultado::kBien},
        /* failed     */ {{kCerr, kMini, kDesc, kLimp}, 4, Resultado::kMal},
    }};
    const bool conocido = estado >= 0 && estado < kEstados;
    return kTabla[static_cast<std::size_t>(conocido ? estado : kEnReposo)];
}

std::string textoDeResultado(int32_t recibidas) {
    if (recibidas == 0) return "No se han recibido pesadas";
    return std::to_string(recibidas) + " pesadas.\nRecibidas correctamente.";
}

std::string textoDePendientes(int32_t cuantas, const std::string& motivo) {
    if (cuantas == 0) return {};
    const std::string pesadas = cuantas == 1
                                    ? "1 pesada pendiente de guardar."
                                    : std::to_string(cuantas) + " pesadas pendientes de guardar.";
    return motivo.empty() ? pesadas : pesadas + " " + motivo;
}

std::string rotuloDeCanal(const Setup& cfg) {
    return "Canal: " + std::to_string(cfg.canal()) + "  " + cfg.Params() +
           "   CI:" + codigo(cfg.CaracterInicial()) + "   CF:" + codigo(cfg.CaracterFinal());
}

std::string rotuloDeExcel(const Setup& cfg) {
    const std::string libro = cfg.LibroExcel();
    return "Hoja Excel:    " + (libro.empty() ? libro : libro + "  (" + cfg.HojaExcel() + ")");
}

std::string rotuloDeTexto(const Setup& cfg) { return "Texto plano:  " + cfg.ArchivoTexto(); }

}  // namespace bn
