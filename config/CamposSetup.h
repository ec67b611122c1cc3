// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>

#include "platform/Plataforma.h"

namespace bn {

/// The fields of a weighing, in the order shared by worksheet columns, text layout and dialogs.
enum CampoPesada : int32_t {
    kFechaHora = 0,
    kMatricula = 1,
    kAlbaran = 2,
    kCodigoA = 3,
    kCodigoB = 4,
    kCodigoC = 5,
    kPesoTara = 6,
    kPesoNeto = 7,
};
inline constexpr int32_t kCamposPesada = 8;

/// The fields' names as the user sees them, UTF-8.
const std::array<std::string, kCamposPesada>& nombresDeCampos();

/// Where the text destination puts a field, and how; posicion 0: it does not.
struct CampoDeTexto {
    int16_t posicion;
    int16_t largo;
    std::string formato;

    bool operator==(const CampoDeTexto&) const = default;
};

/// Everything that "bnDX5.ini" holds, as it is held there, unchecked. The two paths apart, each
/// member begins with its default.
struct CamposSetup {
    int32_t canal = 1;
    std::string params = "9600,N,8,1";
    int16_t cInicial = 2;
    int16_t cFinal = 3;
    int16_t cPesada = 'T';
    int16_t cPeticion = 6;
    int32_t timeout = 600;
    int16_t maxRetrys = 4;
    int16_t autoCadaXSegs = 30;
    bool ejecutarMinimizado = false;
    int16_t checksum = 0;
    bool usoExcel = true;
    std::string libroExcel;
    std::string hojaExcel = "Pesadas";
    std::array<int16_t, kCamposPesada> columnaExcel = {1, 2, 3, 4, 5, 6, 7, 8};
    bool excelEnFalta = false;
    bool usoTexto = true;
    std::string archivoTexto;
    std::array<CampoDeTexto, kCamposPesada> texto = {{{1, 16, "dd/mm/yyyy hh:nn"},
                                                      {18, 8, ""},
                                                      {27, 7, "0000000"},
                                                      {35, 8, "00000000"},
                                                      {44, 8, "00000000"},
                                                      {53, 8, "00000000"},
                                                      {62, 7, "######0"},
                                                      {70, 7, "######0"}}};
};

/// The defaults, the paths in the user's documents folder included.
CamposSetup PorDefecto(const Plataforma& plataforma);

/// Overlays what the file holds; a missing or empty key changes nothing. Throws, naming the file,
/// the key and the value, std::overflow_error for a number too large for its field,
/// std::runtime_error for a text column without its width, and ErrorFichero.
void LeerIni(CamposSetup& campos, Disco& disco, const std::filesystem::path& ini);

/// Writes every key; what else the file holds stays. Throws ErrorFichero.
void GrabarIni(const CamposSetup& campos, Disco& disco, const std::filesystem::path& ini);

}  // namespace bn
