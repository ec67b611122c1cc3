// SPDX-License-Identifier: MIT
#include "link/FormularioCom.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <optional>

#include "config/Codificacion.h"
#include "config/UtilTexto.h"

namespace bn {

namespace {

using utiltexto::numeroInicial;
using utiltexto::redondearPar;

constexpr double kUltimoCodigo = 255;

std::string codigoDe(const std::string& caracter) {
    return std::to_string(static_cast<unsigned char>(caracter.front()));
}

/// Rounded and held within the type: what lies outside is left to the setter to refuse.
template <class Entero>
Entero aEntero(const std::string& texto) {
    using Limites = std::numeric_limits<Entero>;
    return static_cast<Entero>(
        std::clamp<double>(redondearPar(numeroInicial(texto)), Limites::min(), Limites::max()));
}

bool estaEntre(const std::string& texto, double minimo, double maximo) {
    const double valor = numeroInicial(texto);
    return valor >= minimo && valor <= maximo;
}

/// The byte that a character field stands for: a number is a code, any other single character
/// itself. Nothing when the field is wrong.
std::optional<std::string> caracterDe(std::string texto) {
    if (utiltexto::esNumerico(texto)) {
        std::replace(texto.begin(), texto.end(), ',', '.');
        const double codigo = redondearPar(numeroInicial(texto));
        if (codigo < 0 || codigo > kUltimoCodigo) return std::nullopt;
        return std::string(1, static_cast<char>(static_cast<unsigned char>(codigo)));
    }
    if (utf8AU32(texto).size() != 1 || !cabeEnCp1252(texto)) return std::nullopt;
    return utf8ACp1252(texto);
}

bool esVelocidad(const std::string& texto) {
    constexpr std::array<double, 7> kVelocidades = {300, 600, 1200, 2400, 4800, 9600, 19200};
    return std::find(kVelocidades.begin(), kVelocidades.end(), numeroInicial(texto)) !=
           kVelocidades.end();
}

}  // namespace

void FormularioCom::cargar(const Setup& cfg) {
    txCan = std::to_string(cfg.canal());
    txParms = cfg.Params();
    txCI = codigoDe(cfg.CaracterInicial());
    txCF = codigoDe(cfg.CaracterFinal());
    txPet = codigoDe(cfg.CaracterPeticion());
    txTmO = std::to_string(cfg.Timeout());
    txRet = std::to_string(cfg.MaxRetrys());
    const int32_t periodo = cfg.AutoCadaXSegs();
    ckAutom = periodo > 0;
    txAutom = periodo == 0 ? "" : std::to_string(periodo);
}

std::string FormularioCom::validar() const {
    const double canal = numeroInicial(txCan);
    if (!(canal > 0 && canal <= 16)) return "El canal indicado es incorrecto";
    std::string resto = txParms;
    if (!esVelocidad(utiltexto::sacarPrimero(resto, ","))) {
        return "La velocidad especificada es incorrecta";
    }
    if (!utiltexto::coincide(resto, "[NEO],[78],[12]")) {
        return "Alguno de los parámetros indicados es incorrecto";
    }
    if (!caracterDe(txCI) || !caracterDe(txCF) || !caracterDe(txPet)) {
        return "Alguno de los  caracteres especificados es incorrecto";
    }
    if (!estaEntre(txTmO, 1, 32000)) return "El valor del 'time out' es incorrecto";
    if (!estaEntre(txRet, 1, 32)) return "El número de 'retrys' es incorrecto";
    if (ckAutom && !(numeroInicial(txAutom) > 0)) {
        return "El valor de los segundos de descarga automátrica, es incorrecto";
    }
    return "";
}

void FormularioCom::guardar(Setup& cfg) const {
    cfg.canal(aEntero<int16_t>(txCan));
    cfg.Params(txParms);
    cfg.CaracterInicial(caracterDe(txCI).value_or(""));
    cfg.CaracterFinal(caracterDe(txCF).value_or(""));
    cfg.CaracterPeticion(caracterDe(txPet).value_or(""));
    cfg.Timeout(aEntero<int32_t>(txTmO));
    cfg.MaxRetrys(aEntero<int16_t>(txRet));
    cfg.AutoCadaXSegs(ckAutom ? aEntero<int32_t>(txAutom) : 0);
}

}  // namespace bn
