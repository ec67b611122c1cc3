// SPDX-License-Identifier: MIT
#include "destinations/FormularioExc.h"

#include <cstddef>
#include <cstdint>
#include <exception>
#include <utility>

#include "destinations/RutaDestino.h"

namespace bn {

namespace {

constexpr int kLetras = 26;
constexpr int kUltimaColumna = kLetras + kLetras * kLetras;
constexpr char32_t kRetroceso = 8;
constexpr char32_t kIntro = 13;
// The digit one is refused and the vertical bar is not: the file name's list differs in that.
constexpr const char* kProhibidosEnHoja = "\\/:*?\"<>1";

std::size_t indice(int fila) { return static_cast<std::size_t>(fila); }

char letraNumero(int posicion) { return static_cast<char>('A' + posicion - 1); }

/// 1 to 26, or 0 when it is no letter.
int posicionDe(char32_t letra) {
    if (letra >= U'a' && letra <= U'z') letra -= U'a' - U'A';
    return letra >= U'A' && letra <= U'Z' ? static_cast<int>(letra - U'A') + 1 : 0;
}

std::string columnaSiguiente(const std::string& letras) {
    return FormularioExc::columnaALetras(FormularioExc::letrasAColumna(letras) + 1);
}

std::string columnaAnterior(const std::string& letras) {
    const int columna = FormularioExc::letrasAColumna(letras);
    return FormularioExc::columnaALetras(columna == 0 ? kUltimaColumna : columna - 1);
}

}  // namespace

std::string FormularioExc::columnaALetras(int columna) {
    if (columna < 1 || columna > kUltimaColumna) return "";
    const int primera = (columna - 1) / kLetras;
    const char ultima = letraNumero(columna - primera * kLetras);
    if (primera == 0) return {ultima};
    return {letraNumero(primera), ultima};
}

int FormularioExc::letrasAColumna(const std::string& letras) {
    if (letras.empty() || letras.size() > 2) return 0;
    int columna = 0;
    for (const char letra : letras) {
        const int posicion = posicionDe(static_cast<unsigned char>(letra));
        if (posicion == 0) return 0;
        columna = columna * kLetras + posicion;
    }
    return columna;
}

bool FormularioExc::existe(int fila) { return fila >= 0 && fila < kCamposPesada; }

FormularioExc::Fila& FormularioExc::actual() { return filas_[indice(fila_)]; }

void FormularioExc::cargar(const Setup& cfg) {
    *this = FormularioExc{};
    txLibro = cfg.LibroExcel();
    lstHoja = cfg.HojaExcel();
    for (int fila = 0; fila < kCamposPesada; ++fila) {
        Fila& nueva = filas_[indice(fila)];
        nueva.letras = columnaALetras(cfg.ColumnaExcel(fila));
        nueva.marcada = !nueva.letras.empty();
    }
}

bool FormularioExc::marcada(int fila) const { return existe(fila) && filas_[indice(fila)].marcada; }

std::string FormularioExc::letras(int fila) const {
    return existe(fila) ? filas_[indice(fila)].letras : "";
}

std::string FormularioExc::apartadas(int fila) const {
    return existe(fila) ? filas_[indice(fila)].apartadas : "";
}

void FormularioExc::alternar(int fila) {
    if (!existe(fila)) return;
    Fila& tocada = filas_[indice(fila)];
    tocada.marcada = !tocada.marcada;
    if (tocada.marcada) {
        tocada.letras = tocada.apartadas;
    } else {
        tocada.apartadas = std::exchange(tocada.letras, "");
    }
    if (fila != fila_) escribiendo_ = false;  // the current row was left for a moment
}

int FormularioExc::filaActual() const { return fila_; }

void FormularioExc::irAFila(int fila) { irACelda(fila, columna_); }

void FormularioExc::irACelda(int fila, int columna) {
    if (!existe(fila) || (fila == fila_ && columna == columna_)) return;
    fila_ = fila;
    columna_ = columna;
    escribiendo_ = false;
}

void FormularioExc::teclaSuprimir() {
    if (actual().marcada) actual().letras.clear();
}

/// The first letter typed replaces what was there, the second one joins it.
void FormularioExc::escribirLetra(char letra) {
    std::string& letras = actual().letras;
    if (!escribiendo_) {
        letras = letra;
    } else if (letras.size() < 2) {
        letras += letra;
    }
    escribiendo_ = true;
}

void FormularioExc::tecla(char32_t caracter) {
    if (!actual().marcada) return;
    std::string& letras = actual().letras;
    switch (caracter) {
        case kRetroceso:
            if (!letras.empty()) letras.pop_back();
            break;
        case kIntro: {
            // The letters go along to the row entered, checked or not.
            const std::string llevadas = letras;
            irAFila((fila_ + 1) % kCamposPesada);
            actual().letras = llevadas;
            break;
        }
        case U' ':
            letras.clear();
            break;
        case U'+':
            letras = columnaSiguiente(letras);
            break;
        case U'-':
            letras = columnaAnterior(letras);
            break;
        default:
            if (posicionDe(caracter) > 0) escribirLetra(letraNumero(posicionDe(caracter)));
    }
}

std::string FormularioExc::validar() const {
    std::string error = errorDeRuta(txLibro, "*.xls");
    if (!error.empty()) return error;
    if (lstHoja.empty() || lstHoja.find_first_of(kProhibidosEnHoja) != std::string::npos) {
        return "El nombre de la Hoja es incorrecto";
    }
    return errorDeColumnas();
}

/// The last row is compared with the others but is never asked for letters of its own.
std::string FormularioExc::errorDeColumnas() const {
    for (std::size_t i = 0; i + 1 < filas_.size(); ++i) {
        if (!filas_[i].marcada) continue;
        if (filas_[i].letras.empty()) return "Hay columnas de campo sin especificar";
        for (std::size_t j = i + 1; j < filas_.size(); ++j) {
            if (filas_[j].letras == filas_[i].letras) return "Hay columnas de campo repetidas";
        }
    }
    return "";
}

void FormularioExc::guardar(Setup& cfg) const {
    cfg.LibroExcel(txLibro);
    cfg.HojaExcel(lstHoja);
    for (int fila = 0; fila < kCamposPesada; ++fila) {
        cfg.ColumnaExcel(fila, static_cast<int16_t>(letrasAColumna(letras(fila))));
    }
}

void FormularioExc::refrescarHojas(XCel& excel) {
    if (!excel.HayExcel() || !excel.AbrirParaLeer(txLibro, "")) return;
    try {
        auto leidas = excel.ListaDeHojas();
        excel.Cerrar();
        hojas = std::move(leidas);
    } catch (const std::exception&) {
        // The list only helps to choose: a workbook that cannot be read is no reason to stop.
        return;
    }
}

}  // namespace bn
