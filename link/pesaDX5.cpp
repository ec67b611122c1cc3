// SPDX-License-Identifier: MIT
#include "link/pesaDX5.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <system_error>

#include "config/UtilTexto.h"
#include "link/FechaTexto.h"
#include "platform/Ficheros.h"

namespace bn {

namespace {

constexpr char kTerminador = '\r';
constexpr char kAck = 6;
constexpr char kNak = 21;

// What follows the check character, in this order.
constexpr const char* kFinal = "\n\r";
// Start, end, check character, line feed and carriage return.
constexpr std::size_t kEnvoltura = 5;
constexpr std::size_t kLargoCorta = 59;
constexpr std::size_t kLargoLarga = 74;

constexpr int16_t kSinRegistro = 0;
constexpr int16_t kRegistroPesada = 1;
constexpr int16_t kRegistroContador = 2;

constexpr int16_t kProbarChecksum = 0;
constexpr int16_t kTrazarChecksum = 2;

std::string_view recortar(std::string_view texto) {
    const std::size_t primero = texto.find_first_not_of(' ');
    if (primero == std::string_view::npos) return {};
    return texto.substr(primero, texto.find_last_not_of(' ') - primero + 1);
}

/// The value of a text that passes the numeric test: the indicator's decimal point may be "." or
/// ",".
template <class Numero>
std::optional<Numero> numero(std::string_view texto) {
    texto = recortar(texto);
    if (!utiltexto::esNumerico(texto)) return std::nullopt;
    if (texto.front() == '+') texto.remove_prefix(1);
    std::array<char, kLargoLarga> cifras{};
    if (texto.size() > cifras.size()) return std::nullopt;
    for (std::size_t i = 0; i < texto.size(); ++i) cifras[i] = texto[i] == ',' ? '.' : texto[i];
    Numero valor = 0;
    const char* const fin = cifras.data() + texto.size();
    const auto leido = std::from_chars(cifras.data(), fin, valor);
    // Whatever is not read to its end is no number: a wrong weight must never look right.
    if (leido.ec != std::errc() || leido.ptr != fin) return std::nullopt;
    return valor;
}

std::optional<int32_t> entero(std::string_view texto) {
    const auto valor = numero<double>(texto);
    if (!valor) return std::nullopt;
    const double redondo = utiltexto::redondearPar(*valor);
    if (redondo < std::numeric_limits<int32_t>::min() ||
        redondo > std::numeric_limits<int32_t>::max()) {
        return std::nullopt;
    }
    return static_cast<int32_t>(redondo);
}

std::optional<int32_t> enteroOBlanco(std::string_view texto) {
    return recortar(texto).empty() ? 0 : entero(texto);
}

unsigned char control(std::string_view datos) {
    unsigned char suma = 0;
    for (const char c : datos) suma ^= static_cast<unsigned char>(c);
    return suma;
}

}  // namespace

pesaDX5::pesaDX5(Plataforma& plataforma) : plataforma_(plataforma) { componerPatron(); }

void pesaDX5::Caracteres(const std::string& inicial, const std::string& final,
                         const std::string& peticion, int16_t checksum) {
    if (inicial.size() != 1 || final.size() != 1 || peticion.size() != 1) return;
    inicial_ = inicial;
    final_ = final;
    peticion_ = peticion;
    checksum_ = checksum;
    componerPatron();
}

// A start or end character with a meaning in wildcard patterns keeps that meaning.
void pesaDX5::componerPatron() { patron_ = inicial_ + "*" + final_ + "?" + kFinal; }

int16_t pesaDX5::TramaValida(const std::string& trama) {
    tipo_ = kSinRegistro;
    datos_.clear();
    // A start or end character that stands for "any run" lets shorter texts match.
    if (trama.size() < kEnvoltura || !utiltexto::coincide(trama, patron_)) return tipo_;

    const std::string_view datos = std::string_view(trama).substr(1, trama.size() - kEnvoltura);
    const unsigned char calculado = control(datos);
    const auto recibido = static_cast<unsigned char>(trama[trama.size() - 3]);
    if (checksum_ == kProbarChecksum && calculado != recibido) return tipo_;
    if (checksum_ == kTrazarChecksum) trazar(datos, calculado, recibido);
    return analizar(datos, std::nullopt);
}

int16_t pesaDX5::DatosValidos(const std::string& datos) {
    tipo_ = kSinRegistro;
    datos_.clear();
    return analizar(datos, std::nullopt);
}

bool pesaDX5::HayInicio(std::string_view bytes) const {
    return std::any_of(bytes.begin(), bytes.end(), [&](char c) {
        return utiltexto::coincide({&c, 1}, inicial_);
    });
}

bool pesaDX5::CortadaEnControl(const std::string& trama) const {
    const std::string entera = trama + kFinal;
    if (trama.back() != kTerminador || entera.size() < kEnvoltura) return false;
    if (!utiltexto::coincide(entera, patron_)) return false;
    const std::string_view datos = std::string_view(entera).substr(1, entera.size() - kEnvoltura);
    return checksum_ != kProbarChecksum || control(datos) == kTerminador;
}

int16_t pesaDX5::DatosValidos(const std::string& datos, double reloj) {
    tipo_ = kSinRegistro;
    datos_.clear();
    return analizar(datos, reloj);
}

int16_t pesaDX5::analizar(std::string_view datos, std::optional<double> reloj) {
    switch (datos.size()) {
        case 4:
        case 5:
            analizarContador(datos);
            break;
        case kLargoCorta:
        case kLargoLarga:
            analizarPesada(datos, reloj);
            break;
        default:
            break;
    }
    return tipo_;
}

void pesaDX5::analizarContador(std::string_view datos) {
    const auto contador = entero(datos);
    if (!contador) return;
    contador_ = *contador;
    tipo_ = kRegistroContador;
}

void pesaDX5::analizarPesada(std::string_view datos, std::optional<double> reloj) {
    const auto albaran = enteroOBlanco(datos.substr(9, 7));
    if (!albaran) return;
    const auto codigo1 = enteroOBlanco(datos.substr(17, 8));
    if (!codigo1) return;
    const auto codigo2 = enteroOBlanco(datos.substr(26, 8));
    if (!codigo2) return;
    const auto codigo3 = enteroOBlanco(datos.substr(35, 8));
    if (!codigo3) return;
    const auto tara = numero<float>(datos.substr(44, 7));
    if (!tara) return;
    const auto neto = numero<float>(datos.substr(52, 7));
    if (!neto) return;
    // The short form carries no date: it was weighed when it arrives.
    const auto fechaHora = datos.size() == kLargoLarga
                               ? reconocerFecha(datos.substr(60, 14))
                               : std::optional(reloj ? *reloj : plataforma_.ahora());
    if (!fechaHora) return;

    campos_.matricula = recortar(datos.substr(0, 8));
    campos_.albaran = *albaran;
    campos_.codigo = {*codigo1, *codigo2, *codigo3};
    campos_.tara = *tara;
    campos_.neto = *neto;
    campos_.fechaHora = *fechaHora;
    datos_ = datos;
    tipo_ = kRegistroPesada;
}

void pesaDX5::trazar(std::string_view datos, unsigned char calculado,
                     unsigned char recibido) const {
    std::string linea;
    for (const char c : datos) {
        if (!linea.empty()) linea += ' ';
        linea += std::to_string(static_cast<unsigned char>(c));
    }
    linea += "  >" + std::to_string(calculado) + "  >" + std::to_string(recibido) + "\r\n";
    ficheros::anadir(plataforma_.disco(), plataforma_.carpetaPrograma() / "traza.txt", linea);
}

bool pesaDX5::esPesada() const { return tipo_ == kRegistroPesada; }

std::string pesaDX5::Datos() const { return esPesada() ? datos_ : std::string(); }
double pesaDX5::FechaHora() const { return esPesada() ? campos_.fechaHora : 0; }
std::string pesaDX5::Matricula() const { return esPesada() ? campos_.matricula : std::string(); }
int32_t pesaDX5::Albaran() const { return esPesada() ? campos_.albaran : 0; }

int32_t pesaDX5::Codigo(int16_t indice) const {
    if (!esPesada() || indice < 1 || indice > 3) return 0;
    return campos_.codigo[static_cast<std::size_t>(indice - 1)];
}

float pesaDX5::Tara() const { return esPesada() ? campos_.tara : 0; }
float pesaDX5::Neto() const { return esPesada() ? campos_.neto : 0; }
float pesaDX5::Bruto() const { return esPesada() ? campos_.tara + campos_.neto : 0; }
int32_t pesaDX5::Contador() const { return tipo_ == kRegistroContador ? contador_ : 0; }
int16_t pesaDX5::Tipo() const { return tipo_; }

std::string pesaDX5::TramaPeticion() const { return peticion_; }
std::string pesaDX5::Terminador() const { return {kTerminador}; }
std::string pesaDX5::ACK() const { return {kAck}; }
std::string pesaDX5::NAK() const { return {kNak}; }

}  // namespace bn
