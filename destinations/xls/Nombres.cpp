// SPDX-License-Identifier: MIT
#include "destinations/xls/Nombres.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <utility>

#include "destinations/xls/Bytes.h"
#include "destinations/xls/TextoBiff.h"

namespace bn::xls {
namespace {

constexpr size_t kPosLargoFormula = 4;
constexpr size_t kPosHoja = 8;
constexpr size_t kPosTexto = 14;
constexpr uint16_t kIncorporado = 0x20;
constexpr uint16_t kOculto = 1;
constexpr uint32_t kMaximoTexto = 255;

const char* const kIncorporados[] = {
    "Consolidate_Area", "Auto_Open",       "Auto_Close",   "Extract",        "Database",
    "Criteria",         "Print_Area",      "Print_Titles", "Recorder",       "Data_Form",
    "Auto_Activate",    "Auto_Deactivate", "Sheet_Title",  "_FilterDatabase"};

std::string textoIncorporado(const std::string& codigo) {
    const size_t numero = codigo.empty() ? 255 : static_cast<unsigned char>(codigo[0]);
    return numero < std::size(kIncorporados) ? kIncorporados[numero] : codigo;
}

NombreLeido leerRegistro(const std::string& registro, size_t* despuesDeTexto = nullptr) {
    const Vista datos(registro);
    NombreLeido nombre;
    size_t pos = 0;
    nombre.texto = leerTexto(registro, kPosTexto, datos.u8(3), &pos);
    if ((datos.u16(0) & kIncorporado) != 0) nombre.texto = textoIncorporado(nombre.texto);
    nombre.hoja = datos.u16(kPosHoja);
    const std::string_view formula = datos.trozo(pos, datos.u16(kPosLargoFormula));
    nombre.formula.assign(formula.begin(), formula.end());
    if (despuesDeTexto != nullptr) *despuesDeTexto = pos;
    return nombre;
}

std::string hacerRegistro(uint16_t opciones, const std::string& texto, const Rgce& formula) {
    const TextoBiff nombre = aBiff(texto);
    std::string datos;
    poner16(datos, opciones);
    poner8(datos, 0);
    poner8(datos, nombre.unidades);
    poner16(datos, static_cast<uint32_t>(formula.size()));
    datos.append(8, '\0');
    ponerTexto(datos, nombre);
    datos.append(formula.begin(), formula.end());
    return datos;
}

bool esLetra(char c) {
    return std::isalpha(static_cast<unsigned char>(c)) != 0 ||
           (static_cast<uint8_t>(c) & 0x80) != 0;
}

// "IV65536" and its like, in either way of writing references.
bool pareceReferencia(const std::string& texto) {
    size_t i = 0;
    while (i < texto.size() && std::isalpha(static_cast<unsigned char>(texto[i])) != 0) ++i;
    const bool letras = i >= 1 && i <= 2;
    const size_t cifras = i;
    while (i < texto.size() && std::isdigit(static_cast<unsigned char>(texto[i])) != 0) ++i;
    if (i == texto.size() && letras && i > cifras && i - cifras <= 5) return true;
    return mismoNombre(texto, "R") || mismoNombre(texto, "C");
}

bool esNombreValido(const std::string& texto) {
    if (texto.empty() || aBiff(texto).unidades > kMaximoTexto) return false;
    if (!esLetra(texto[0]) && texto[0] != '_' && texto[0] != '\\') return false;
    const bool caracteres = std::all_of(texto.begin(), texto.end(), [](char c) {
        return esLetra(c) || std::isdigit(static_cast<unsigned char>(c)) != 0 || c == '_' ||
               c == '.' || c == '\\' || c == '?';
    });
    return caracteres && !pareceReferencia(texto);
}

void exigirCorta(const Rgce& formula) {
    constexpr size_t kSitio = kMaximoDatos - kPosTexto - 1 - 2 * kMaximoTexto;
    if (formula.size() > kSitio) rechazar("La fórmula del nombre es demasiado larga.");
}

}  // namespace

Nombres::Nombres(Registros& globales) : globales_(globales) {
    for (const Registro& registro : globales_) {
        if (registro.id == id::kName) lista_.push_back(leerRegistro(registro.datos));
    }
    if (lista_.size() > 0xFFFF) danado("tiene demasiados nombres");
}

const NombreLeido& Nombres::leer(uint16_t lugar) const {
    if (lugar == 0 || lugar > lista_.size()) rechazar("El libro no tiene ese nombre.");
    return lista_[lugar - 1U];
}

std::optional<uint16_t> Nombres::buscar(const std::string& nombre, uint16_t hoja) const {
    for (size_t i = 0; i < lista_.size(); ++i) {
        if (lista_[i].hoja == hoja && mismoNombre(lista_[i].texto, nombre)) {
            return static_cast<uint16_t>(i + 1);
        }
    }
    return std::nullopt;
}

size_t Nombres::indiceDe(uint16_t lugar) const {
    size_t indice = buscarRegistro(globales_, id::kName);
    for (uint16_t i = 1; i < lugar; ++i) {
        indice = buscarRegistro(globales_, id::kName, indice + 1);
    }
    if (indice >= globales_.size()) rechazar("El libro no tiene ese nombre.");
    return indice;
}

void Nombres::cambiar(uint16_t lugar, const Rgce& formula) {
    exigirCorta(formula);
    const size_t indice = indiceDe(lugar);
    std::string& datos = globales_[indice].datos;
    size_t pos = 0;
    const Rgce vieja = leerRegistro(datos, &pos).formula;
    const std::string nueva(formula.begin(), formula.end());
    // The name's texts (menu, description) stand behind its formula and stay. What else stands
    // there belongs to the old formula's arrays; a formula that has any is followed by no texts.
    const Vista vista(datos);
    const size_t textos = size_t{vista.u8(10)} + vista.u8(11) + vista.u8(12) + vista.u8(13);
    const std::string cola = textos == 0 ? std::string() : datos.substr(pos + vieja.size());
    datos = datos.substr(0, pos) + nueva + cola;
    cambiar16(datos, kPosLargoFormula, static_cast<uint32_t>(formula.size()));
    lista_[lugar - 1U].formula = formula;
}

void Nombres::agregar(const std::string& nombre, const Rgce& formula) {
    if (!esNombreValido(nombre)) rechazar("\"" + nombre + "\" no puede ser el nombre de nada.");
    exigirCorta(formula);
    std::optional<size_t> sitio =
        trasUltimo(globales_, {id::kName, id::kNameComment, 0x0893, 0x0898, 0x0899});
    if (!sitio) sitio = trasUltimo(globales_, {id::kExternSheet});
    // The list of sheets may go on in further records.
    while (sitio && *sitio < globales_.size() && globales_[*sitio].id == id::kContinue) ++*sitio;
    if (!sitio) sitio = trasUltimo(globales_, {id::kSupBook, id::kCountry, id::kBoundSheet});
    globales_.insert(globales_.begin() + static_cast<ptrdiff_t>(sitio.value_or(1)),
                     Registro{id::kName, hacerRegistro(0, nombre, formula)});
    lista_.push_back({nombre, 0, formula});
}

void Nombres::remapear(const std::vector<int32_t>& nuevos) {
    for (uint16_t lugar = 1; lugar <= cuantos(); ++lugar) {
        NombreLeido& nombre = lista_[lugar - 1U];
        if (nombre.hoja == 0 || nombre.hoja > nuevos.size()) continue;
        const int32_t nuevo = nuevos[nombre.hoja - 1U];
        std::string& datos = globales_[indiceDe(lugar)].datos;
        if (nuevo >= 0) {
            nombre.hoja = static_cast<uint16_t>(nuevo + 1);
            cambiar16(datos, kPosHoja, nombre.hoja);
            continue;
        }
        const Rgce sinReferencia{0x1C, 0x17};
        nombre = {"_sinHoja" + std::to_string(lugar), 0, sinReferencia};
        datos = hacerRegistro(kOculto, nombre.texto, sinReferencia);
    }
}

}  // namespace bn::xls
