// SPDX-License-Identifier: MIT
#include "config/Setup.h"

#include <algorithm>
#include <exception>
#include <limits>
#include <stdexcept>
#include <string_view>

#include "config/ClavesAjenas.h"
#include "config/Codificacion.h"
#include "config/UtilTexto.h"
#include "platform/Ficheros.h"

namespace bn {
namespace {

constexpr int16_t kMaximoTexto = 80;

/// Keeps the value when it lies within the limits, both included.
template <class Campo, class Valor>
void guardarEntre(Campo& campo, Valor valor, Valor minimo, Valor maximo) {
    if (valor >= minimo && valor <= maximo) {
        campo = valor;
    }
}

void AsignarCodigo(int16_t& codigo, double valor) {
    if (valor >= 0 && valor <= 255) {
        codigo = static_cast<int16_t>(utiltexto::redondearPar(valor));
    }
}

/// The code of the first character: of UTF-8 text its Windows-1252 one, else the byte itself.
void AsignarCodigo(int16_t& codigo, const std::string& texto) {
    if (texto.empty()) {
        return;
    }
    const bool esTexto = texto.size() > 1 && esUtf8Valido(texto);
    const std::string bytes = esTexto ? utf8ACp1252(texto) : texto;
    codigo = static_cast<unsigned char>(bytes.front());
}

void asignarCaracter(int16_t& codigo, const std::string& caracter) {
    if (caracter.size() == 1) {
        AsignarCodigo(codigo, caracter);
    }
}

/// A code from the file may be any number; its low byte is the character.
std::string caracterDe(int16_t codigo) {
    return std::string(1, static_cast<char>(static_cast<unsigned char>(codigo)));
}

bool sonParametros(const std::string& valor) {
    static constexpr std::array<std::string_view, 7> kVelocidades = {"300",  "600",  "1200", "2400",
                                                                     "4800", "9600", "19200"};
    std::string resto = mayusculas(valor);
    const std::string velocidad = utiltexto::sacarPrimero(resto, ",");
    return std::find(kVelocidades.begin(), kVelocidades.end(), velocidad) != kVelocidades.end() &&
           utiltexto::coincide(resto, "[NEO],[78],[12]");
}

bool esCampo(int32_t campo) { return campo >= 0 && campo < kCamposPesada; }

/// For an index that esCampo has passed.
std::size_t indice(int32_t campo) { return static_cast<std::size_t>(campo); }

/// True when another field than campo already has this value.
template <class Funcion>
bool tomadoPorOtro(int32_t campo, int16_t valor, Funcion valorDe) {
    for (int32_t otro = 0; otro < kCamposPesada; ++otro) {
        if (otro != campo && valorDe(otro) == valor) {
            return true;
        }
    }
    return false;
}

/// Position and width go together: without one of them the field is not written.
void quitar(CampoDeTexto& campo) { campo = {0, 0, ""}; }

}  // namespace

Setup::Setup(Plataforma& plataforma) : plataforma_(plataforma), campos_(PorDefecto(plataforma)) {
    LeerIni(campos_, plataforma_.disco(), rutaDelIni(plataforma_));
}

void Setup::Abandonar() { abandonado_ = true; }

Setup::~Setup() {
    if (abandonado_) {
        return;
    }
    try {
        try {
            Update();
        } catch (const std::exception& error) {
            plataforma_.mensajeCritico(std::string("No se ha podido guardar la configuración.\n") +
                                       error.what());
        }
    } catch (...) {
        // Nobody is left to tell: even the message failed, and a destructor must not throw.
        return;
    }
}

int16_t Setup::canal() const {
    using Limites = std::numeric_limits<int16_t>;
    if (campos_.canal < Limites::min() || campos_.canal > Limites::max()) {
        throw std::overflow_error(ficheros::aTexto(rutaDelIni(plataforma_)) +
                                  ": [General] Canal: el canal " + std::to_string(campos_.canal) +
                                  " no existe");
    }
    return static_cast<int16_t>(campos_.canal);
}

void Setup::canal(int16_t valor) { guardarEntre<int32_t, int16_t>(campos_.canal, valor, 1, 16); }

const std::string& Setup::Params() const { return campos_.params; }

void Setup::Params(const std::string& valor) {
    if (sonParametros(valor)) {
        campos_.params = valor;
    }
}

std::string Setup::CaracterInicial() const { return caracterDe(campos_.cInicial); }
std::string Setup::CaracterFinal() const { return caracterDe(campos_.cFinal); }
std::string Setup::CaracterPesada() const { return caracterDe(campos_.cPesada); }
std::string Setup::CaracterPeticion() const { return caracterDe(campos_.cPeticion); }

void Setup::CaracterInicial(const std::string& c) { asignarCaracter(campos_.cInicial, c); }
void Setup::CaracterFinal(const std::string& c) { asignarCaracter(campos_.cFinal, c); }
void Setup::CaracterPesada(const std::string& c) { asignarCaracter(campos_.cPesada, c); }
void Setup::CaracterPeticion(const std::string& c) { asignarCaracter(campos_.cPeticion, c); }

void Setup::cInicial(const std::string& texto) { AsignarCodigo(campos_.cInicial, texto); }
void Setup::cFinal(const std::string& texto) { AsignarCodigo(campos_.cFinal, texto); }
void Setup::cPesada(const std::string& texto) { AsignarCodigo(campos_.cPesada, texto); }
void Setup::cPeticion(const std::string& texto) { AsignarCodigo(campos_.cPeticion, texto); }
void Setup::cPeticion(double codigo) { AsignarCodigo(campos_.cPeticion, codigo); }

int32_t Setup::Timeout() const { return campos_.timeout; }
void Setup::Timeout(int32_t valor) { guardarEntre(campos_.timeout, valor, 1, 32000); }

int16_t Setup::MaxRetrys() const { return campos_.maxRetrys; }
void Setup::MaxRetrys(int16_t valor) {
    guardarEntre<int16_t, int16_t>(campos_.maxRetrys, valor, 1, 32);
}

int16_t Setup::Checksum() const { return campos_.checksum; }
void Setup::Checksum(int16_t valor) {
    guardarEntre<int16_t, int16_t>(campos_.checksum, valor, 0, 2);
}

int32_t Setup::AutoCadaXSegs() const { return campos_.autoCadaXSegs; }

void Setup::AutoCadaXSegs(int32_t valor) {
    if (valor < 0) {
        return;
    }
    if (valor > std::numeric_limits<int16_t>::max()) {
        throw std::overflow_error("El periodo de " + std::to_string(valor) +
                                  " segundos es demasiado grande: el máximo es 32767");
    }
    campos_.autoCadaXSegs = static_cast<int16_t>(valor);
}

bool Setup::EjecutarMinimizado() const { return campos_.ejecutarMinimizado; }
void Setup::EjecutarMinimizado(bool valor) { campos_.ejecutarMinimizado = valor; }

bool Setup::UsoExcel() const { return campos_.usoExcel; }
void Setup::UsoExcel(bool valor) {
    campos_.usoExcel = valor;
    campos_.excelEnFalta = false;
}

bool Setup::ExcelEnFalta() const { return campos_.excelEnFalta; }

void Setup::ExcelEnFalta(bool falta) {
    if (falta && campos_.usoExcel) {
        UsoExcel(false);
        campos_.excelEnFalta = true;
    } else if (!falta && campos_.excelEnFalta) {
        UsoExcel(true);
    }
}

std::string Setup::LibroExcel() const { return campos_.usoExcel ? campos_.libroExcel : ""; }

void Setup::LibroExcel(const std::string& valor) {
    if (valor.empty()) {
        campos_.usoExcel = false;
    } else {
        campos_.libroExcel = valor;
    }
}

std::string Setup::HojaExcel() const { return campos_.usoExcel ? campos_.hojaExcel : ""; }

void Setup::HojaExcel(const std::string& valor) {
    if (valor.empty()) {
        campos_.usoExcel = false;
    } else if (valor.find_first_of("*.,") == std::string::npos) {
        campos_.hojaExcel = valor;
    }
}

int16_t Setup::ColumnaExcel(int32_t campo) const {
    return esCampo(campo) ? campos_.columnaExcel[indice(campo)] : int16_t{0};
}

void Setup::ColumnaExcel(int32_t campo, int16_t valor) {
    if (!esCampo(campo) || valor < 0) {
        return;
    }
    const auto columnaDe = [this](int32_t otro) { return ColumnaExcel(otro); };
    if (valor == 0 || !tomadoPorOtro(campo, valor, columnaDe)) {
        campos_.columnaExcel[indice(campo)] = valor;
    }
}

bool Setup::UsoTexto() const { return campos_.usoTexto; }
void Setup::UsoTexto(bool valor) { campos_.usoTexto = valor; }

std::string Setup::ArchivoTexto() const { return campos_.usoTexto ? campos_.archivoTexto : ""; }

void Setup::ArchivoTexto(const std::string& valor) {
    if (valor.empty()) {
        campos_.usoTexto = false;
    } else {
        campos_.archivoTexto = valor;
    }
}

int16_t Setup::Posicion(int32_t campo) const {
    return esCampo(campo) ? campos_.texto[indice(campo)].posicion : int16_t{0};
}

void Setup::Posicion(int32_t campo, int16_t valor) {
    if (!esCampo(campo) || valor < 0 || valor > kMaximoTexto) {
        return;
    }
    const auto posicionDe = [this](int32_t otro) { return Posicion(otro); };
    if (valor == 0) {
        quitar(campos_.texto[indice(campo)]);
    } else if (!tomadoPorOtro(campo, valor, posicionDe)) {
        campos_.texto[indice(campo)].posicion = valor;
    }
}

int16_t Setup::Largo(int32_t campo) const {
    return esCampo(campo) ? campos_.texto[indice(campo)].largo : int16_t{0};
}

void Setup::Largo(int32_t campo, int16_t valor) {
    if (!esCampo(campo) || valor < 0 || valor > kMaximoTexto) {
        return;
    }
    if (valor == 0) {
        quitar(campos_.texto[indice(campo)]);
    } else {
        campos_.texto[indice(campo)].largo = valor;
    }
}

std::string Setup::Formato(int32_t campo) const {
    return esCampo(campo) ? campos_.texto[indice(campo)].formato : "";
}

void Setup::Formato(int32_t campo, const std::string& valor) {
    if (esCampo(campo)) {
        campos_.texto[indice(campo)].formato = valor;
    }
}

void Setup::Update() { GrabarIni(campos_, plataforma_.disco(), rutaDelIni(plataforma_)); }

}  // namespace bn
