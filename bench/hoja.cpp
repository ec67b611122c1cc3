// SPDX-License-Identifier: MIT
// Weighings appended to a workbook by the embedded engine, as the save pass does it: the first free
// row is searched, every cell is written, the workbook is saved.
//
//   banco_hoja nuevo  DATOS -    LIBRO VECES    into a new workbook
//   banco_hoja anexar DATOS BASE LIBRO VECES    into a copy of another one
//   banco_hoja buscar -     BASE -     VECES    only the search for the first free row
//
// DATOS: one weighing a line, eight fields between tabs, the date-time as a number of days. Writes
// the seconds of each repetition, one a line. The peers take the same arguments.
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include "bench/PlataformaDeBanco.h"
#include "destinations/XCel.h"

namespace bn::banco {
namespace {

constexpr int16_t kCampos = 8;
constexpr const char* kHoja = "Pesadas";

using Fila = std::array<Variante, kCampos>;

std::vector<Fila> leerDatos(const std::string& ruta) {
    std::ifstream fichero(ruta);
    std::vector<Fila> filas;
    for (std::string linea; std::getline(fichero, linea);) {
        std::istringstream campos(linea);
        std::array<std::string, kCampos> textos;
        for (std::string& texto : textos) std::getline(campos, texto, '\t');
        const auto entero = [&textos](std::size_t i) { return int32_t{std::stoi(textos[i])}; };
        filas.push_back({FechaOle{std::stod(textos[0])}, textos[1], entero(2), entero(3), entero(4),
                         entero(5), std::stof(textos[6]), std::stof(textos[7])});
    }
    if (filas.empty()) throw std::runtime_error("no weighings in " + ruta);
    return filas;
}

bool estaVacia(const Variante& celda) {
    const auto* texto = std::get_if<std::string>(&celda);
    return texto != nullptr ? texto->empty() : std::holds_alternative<std::monostate>(celda);
}

/// Through XCel, whose rows end at 32767.
class PorXCel {
 public:
    PorXCel(Plataforma& plataforma, const std::string& libro) : xcel_(plataforma) {
        xcel_.AbrirParaEscribir(libro, kHoja, true);
        marca_ = xcel_.ValorNombre("bnUltima");
    }
    Variante leer(int32_t fila, int16_t columna) {
        return xcel_.Celda(static_cast<int16_t>(fila), columna);
    }
    void escribir(int32_t fila, int16_t columna, const Variante& valor) {
        xcel_.Celda(static_cast<int16_t>(fila), columna, valor);
    }
    void guardar() { xcel_.Guardar({}); }

 private:
    XCel xcel_;
    Variante marca_;
};

/// Through the object model, call for call as XCel does it, for rows below that.
class PorModelo {
 public:
    PorModelo(Plataforma& plataforma, std::string libro)
        : ruta_(std::move(libro)), aplicacion_(plataforma.nuevaAplicacionExcel(false)) {
        aplicacion_->DisplayAlerts(false);
        libro_ = aplicacion_->Workbooks()->Open(ruta_);
        for (auto& candidata : libro_->Worksheets()->enumerar()) {
            if (candidata->Name() == kHoja) hoja_ = std::move(candidata);
        }
        if (!hoja_) throw std::runtime_error("no such sheet");
    }
    Variante leer(int32_t fila, int16_t columna) {
        return hoja_->Cells()->Item(fila, columna)->FormulaR1C1();
    }
    void escribir(int32_t fila, int16_t columna, const Variante& valor) {
        hoja_->Cells()->Item(fila, columna)->FormulaR1C1(valor);
    }
    void guardar() {
        libro_->SaveAs(ruta_, 1);
        aplicacion_->Quit();
    }

 private:
    std::string ruta_;
    std::unique_ptr<excel::Application> aplicacion_;
    std::unique_ptr<excel::Workbook> libro_;
    std::unique_ptr<excel::Worksheet> hoja_;
};

template <class Libro>
bool filaVacia(Libro& libro, int32_t fila) {
    for (int16_t columna = 1; columna <= kCampos; ++columna) {
        if (!estaVacia(libro.leer(fila, columna))) return false;
    }
    return true;
}

template <class Libro>
int32_t primeraFila(Libro& libro) {
    int32_t fila = 1;
    while (!filaVacia(libro, fila)) ++fila;
    return fila;
}

template <class Libro>
void anadir(Plataforma& plataforma, const std::string& ruta, const std::vector<Fila>& filas) {
    Libro libro(plataforma, ruta);
    int32_t fila = primeraFila(libro);
    for (const Fila& campos : filas) {
        for (int16_t columna = 1; columna <= kCampos; ++columna) {
            libro.escribir(fila, columna, campos[static_cast<std::size_t>(columna - 1)]);
        }
        ++fila;
    }
    libro.guardar();
}

template <class Trabajo>
void cronometrar(Trabajo trabajo) {
    const auto inicio = std::chrono::steady_clock::now();
    trabajo();
    const std::chrono::duration<double> tardado = std::chrono::steady_clock::now() - inicio;
    std::printf("%.6f\n", tardado.count());
}

void buscar(Plataforma& plataforma, const std::string& base, int veces) {
    PorXCel libro(plataforma, base);
    for (int i = 0; i < veces; ++i) {
        int32_t fila = 0;
        cronometrar([&] { fila = primeraFila(libro); });
        if (fila < 2) throw std::runtime_error("the workbook holds nothing");
    }
}

void medir(char** argumentos) {
    const std::string caso = argumentos[1];
    const std::string base = argumentos[3];
    const std::string salida = argumentos[4];
    const int veces = std::atoi(argumentos[5]);
    PlataformaDeBanco plataforma(std::filesystem::current_path());
    if (caso == "buscar") return buscar(plataforma, base, veces);
    const std::vector<Fila> filas = leerDatos(argumentos[2]);
    for (int i = 0; i < veces; ++i) {
        std::filesystem::remove(salida);
        if (caso == "nuevo") {
            cronometrar([&] { anadir<PorXCel>(plataforma, salida, filas); });
        } else {
            std::filesystem::copy_file(base, salida);
            cronometrar([&] { anadir<PorModelo>(plataforma, salida, filas); });
        }
    }
}

}  // namespace
}  // namespace bn::banco

int main(int argc, char** argv) {
    if (argc != 6) {
        std::fputs("banco_hoja nuevo|anexar|buscar DATOS BASE LIBRO VECES\n", stderr);
        return 2;
    }
    try {
        bn::banco::medir(argv);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "banco_hoja: %s\n", error.what());
        return 1;
    }
}
