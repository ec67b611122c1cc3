// SPDX-License-Identifier: MIT
#include "destinations/xls/Formatos.h"

#include <algorithm>
#include <array>
#include <utility>

#include "destinations/xls/Bytes.h"
#include "destinations/xls/TextoBiff.h"

namespace bn::xls {
namespace {

constexpr size_t kLargoXf = 20;
constexpr size_t kPosNumero = 2;
constexpr size_t kPosProteccion = 4;
constexpr uint8_t kBloquea = 0x01;
constexpr size_t kPosAlineacion = 6;
constexpr size_t kPosUsados = 9;
constexpr uint8_t kUsaNumero = 0x04;
constexpr uint8_t kUsaAlineacion = 0x10;
constexpr size_t kPosXfDeExtension = 14;
// As many as the application itself takes.
constexpr size_t kMaximoXf = 4050;
constexpr uint16_t kPrimeroPropio = 164;
constexpr uint16_t kTexto = 49;

// Number formats that need no FORMAT record, in English notation.
const std::pair<const char*, uint16_t> kConocidos[] = {
    {"General", 0},    {"0", 1},          {"0.00", 2},         {"#,##0", 3},
    {"#,##0.00", 4},   {"0%", 9},         {"0.00%", 10},       {"0.00E+00", 11},
    {"# ?/?", 12},     {"# ?\?/?\?", 13}, {"m/d/yy", 14},      {"d-mmm-yy", 15},
    {"d-mmm", 16},     {"mmm-yy", 17},    {"h:mm AM/PM", 18},  {"h:mm:ss AM/PM", 19},
    {"h:mm", 20},      {"h:mm:ss", 21},   {"m/d/yy h:mm", 22}, {"mm:ss", 45},
    {"[h]:mm:ss", 46}, {"mm:ss.0", 47},   {"##0.0E+0", 48},    {"@", kTexto}};

char minuscula(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

std::array<uint32_t, 256> tablaDeSuma() {
    std::array<uint32_t, 256> tabla{};
    for (uint32_t i = 0; i < tabla.size(); ++i) {
        uint32_t v = i << 24;
        for (int bit = 0; bit < 8; ++bit) v = (v & 0x80000000U) != 0 ? (v << 1) ^ 0xAF : v << 1;
        tabla[i] = v & 0xFFFF;
    }
    return tabla;
}

}  // namespace

bool codigoEsFecha(const std::string& codigo) {
    std::string letras;
    bool entreComillas = false;
    for (size_t i = 0; i < codigo.size(); ++i) {
        const char c = minuscula(codigo[i]);
        if (c == '"') {
            entreComillas = !entreComillas;
        } else if (entreComillas) {
            continue;
        } else if (c == '\\' || c == '_' || c == '*') {
            ++i;
        } else if (c == '[') {
            const size_t cierre = codigo.find(']', i);
            const char dentro = i + 1 < codigo.size() ? minuscula(codigo[i + 1]) : ']';
            const bool transcurrido = dentro == 'h' || dentro == 'm' || dentro == 's';
            if (!transcurrido && cierre != std::string::npos) i = cierre;
        } else {
            letras += c;
        }
    }
    return letras.find("general") == std::string::npos &&
           letras.find_first_of("dmyhs") != std::string::npos;
}

Formatos::Formatos(Registros& globales) : globales_(globales) {
    for (const Registro& registro : globales) {
        const Vista datos(registro.datos);
        if (registro.id == id::kXf) {
            if (datos.size() < kLargoXf) danado("un formato de celda está cortado");
            porDatos_.emplace(registro.datos, static_cast<uint16_t>(xfs_.size()));
            xfs_.push_back(registro.datos);
        } else if (registro.id == id::kFormat) {
            codigos_[datos.u16(0)] = leerTexto(registro.datos, 4, datos.u16(2));
        }
        if (xfs_.size() > 0xFFFF) danado("tiene demasiados formatos de celda");
    }
}

void Formatos::exigir(uint16_t xf) const {
    if (xf >= xfs_.size()) danado("una celda pide un formato que no está");
}

uint16_t Formatos::numeroDe(uint16_t xf) const {
    exigir(xf);
    return Vista(xfs_[xf]).u16(kPosNumero);
}

bool Formatos::bloquea(uint16_t xf) const {
    exigir(xf);
    return (static_cast<uint8_t>(xfs_[xf][kPosProteccion]) & kBloquea) != 0;
}

bool Formatos::esGeneral(uint16_t xf) const {
    const uint16_t numero = numeroDe(xf);
    const auto propio = codigos_.find(numero);
    if (propio == codigos_.end()) return numero == 0;
    std::string codigo = propio->second;
    std::transform(codigo.begin(), codigo.end(), codigo.begin(), minuscula);
    return codigo == "general";
}

bool Formatos::esTexto(uint16_t xf) const {
    const uint16_t numero = numeroDe(xf);
    const auto propio = codigos_.find(numero);
    return propio == codigos_.end() ? numero == kTexto : propio->second == "@";
}

bool Formatos::esFecha(uint16_t xf) const {
    const uint16_t numero = numeroDe(xf);
    const auto propio = codigos_.find(numero);
    if (propio != codigos_.end()) return codigoEsFecha(propio->second);
    return (numero >= 14 && numero <= 22) || (numero >= 45 && numero <= 47);
}

uint16_t Formatos::numeroDeCodigo(const std::string& codigo) {
    for (const auto& [texto, numero] : kConocidos) {
        if (codigo == texto && codigos_.find(numero) == codigos_.end()) return numero;
    }
    uint16_t ultimo = kPrimeroPropio - 1;
    for (const auto& [numero, texto] : codigos_) {
        if (texto == codigo) return numero;
        ultimo = std::max(ultimo, numero);
    }
    const TextoBiff texto = aBiff(codigo);
    if (texto.unidades == 0 || texto.unidades > 255 || ultimo == 0xFFFF) {
        rechazar("El formato numérico \"" + codigo + "\" no se puede usar.");
    }
    const auto numero = static_cast<uint16_t>(ultimo + 1);
    Registro nuevo{id::kFormat, {}};
    poner16(nuevo.datos, numero);
    poner16(nuevo.datos, texto.unidades);
    ponerTexto(nuevo.datos, texto);
    const size_t sitio = trasUltimo(globales_, {id::kFormat})
                             .value_or(trasUltimo(globales_, {id::kFont}).value_or(1));
    globales_.insert(globales_.begin() + static_cast<ptrdiff_t>(sitio), std::move(nuevo));
    codigos_[numero] = codigo;
    return numero;
}

uint16_t Formatos::conFormato(uint16_t xf, const std::string& codigo) {
    exigir(xf);
    std::string clave = codigo;
    poner16(clave, xf);
    const auto sabido = porFormato_.find(clave);
    if (sabido != porFormato_.end()) return sabido->second;
    std::string datos = xfs_[xf];
    cambiar16(datos, kPosNumero, numeroDeCodigo(codigo));
    datos[kPosUsados] = static_cast<char>(datos[kPosUsados] | kUsaNumero);
    const uint16_t nuevo = agregar(xf, std::move(datos));
    porFormato_.emplace(std::move(clave), nuevo);
    return nuevo;
}

uint16_t Formatos::conAlineacion(uint16_t xf, uint8_t alineacion) {
    exigir(xf);
    std::string datos = xfs_[xf];
    datos[kPosAlineacion] = static_cast<char>((datos[kPosAlineacion] & ~7) | (alineacion & 7));
    datos[kPosUsados] = static_cast<char>(datos[kPosUsados] | kUsaAlineacion);
    return agregar(xf, std::move(datos));
}

uint16_t Formatos::agregar(uint16_t original, std::string datos) {
    if (datos == xfs_[original]) return original;
    const auto igual = porDatos_.find(datos);
    if (igual != porDatos_.end()) return igual->second;
    if (xfs_.size() >= kMaximoXf)
        rechazar(
            "El libro ya tiene 4.050 formatos de celda distintos y no caben más; quite los que "
            "no use o empiece un libro nuevo.");
    const auto nuevo = static_cast<uint16_t>(xfs_.size());
    const size_t sitio = *trasUltimo(globales_, {id::kXf});
    globales_.insert(globales_.begin() + static_cast<ptrdiff_t>(sitio), Registro{id::kXf, datos});
    porDatos_.emplace(datos, nuevo);
    xfs_.push_back(std::move(datos));
    copiarExtension(original, nuevo);
    ampliado_ = true;
    return nuevo;
}

void Formatos::copiarExtension(uint16_t original, uint16_t copia) {
    for (size_t i = 0; i < globales_.size(); ++i) {
        if (globales_[i].id != id::kXfExt || globales_[i].datos.size() < kPosXfDeExtension + 2) {
            continue;
        }
        if (Vista(globales_[i].datos).u16(kPosXfDeExtension) != original) continue;
        Registro nuevo = globales_[i];
        cambiar16(nuevo.datos, kPosXfDeExtension, copia);
        const size_t sitio = *trasUltimo(globales_, {id::kXfExt});
        globales_.insert(globales_.begin() + static_cast<ptrdiff_t>(sitio), std::move(nuevo));
        return;
    }
}

std::string Formatos::suma(std::string datosXfCrc) const {
    const std::array<uint32_t, 256> tabla = tablaDeSuma();
    uint32_t suma = 0;
    for (const std::string& xf : xfs_) {
        for (const char c : xf) {
            suma = (suma << 8) ^ tabla[(suma >> 24) ^ static_cast<unsigned char>(c)];
        }
    }
    cambiar16(datosXfCrc, 14, static_cast<uint32_t>(xfs_.size()));
    cambiar32(datosXfCrc, 16, suma);
    return datosXfCrc;
}

}  // namespace bn::xls
