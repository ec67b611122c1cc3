// SPDX-License-Identifier: MIT
#include "tests/destinations/xls/Ayudas.h"

#include <atomic>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "destinations/xls/Compuesto.h"

namespace bn::xls::prueba {

namespace fs = std::filesystem;

std::string leerFichero(const fs::path& ruta) {
    std::ifstream entrada(ruta, std::ios::binary);
    if (!entrada) throw std::runtime_error("cannot read " + ruta.string());
    return {std::istreambuf_iterator<char>(entrada), {}};
}

void escribirFichero(const fs::path& ruta, std::string_view bytes) {
    std::ofstream salida(ruta, std::ios::binary);
    salida.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!salida) throw std::runtime_error("cannot write " + ruta.string());
}

std::string muestra(const std::string& nombre) {
    return leerFichero(fs::path(BN_MUESTRAS) / (nombre + ".xls"));
}

std::vector<std::string> muestrasLegibles() {
    return {"s1_perl_writeexcel", "s1b_badminichain",  "s2_xlwt_bigsst", "s3_lo_chart",
            "s4_gnumeric",        "s4b_gnumeric_dual", "s5_poi",         "s6_handmade"};
}

Carpeta::Carpeta() {
    static std::atomic<unsigned> numero{0};
    do {
        ruta_ = fs::temp_directory_path() /
                ("prueba_xls_" +
                 std::to_string(reinterpret_cast<uintptr_t>(this) ^
                                static_cast<uintptr_t>(
                                    fs::file_time_type::clock::now().time_since_epoch().count())) +
                 "_" + std::to_string(numero++));
    } while (!fs::create_directory(ruta_));
}

Carpeta::~Carpeta() {
    std::error_code error;
    fs::remove_all(ruta_, error);
}

std::string hex(std::string_view bytes) {
    constexpr char kCifras[] = "0123456789ABCDEF";
    std::string texto;
    for (const char c : bytes) {
        if (!texto.empty()) texto += ' ';
        texto += kCifras[static_cast<unsigned char>(c) >> 4];
        texto += kCifras[static_cast<unsigned char>(c) & 15];
    }
    return texto;
}

std::string deHex(std::string_view texto) {
    std::string bytes;
    std::string cifras;
    for (const char c : texto) {
        if (c == ' ') continue;
        cifras += c;
        if (cifras.size() < 2) continue;
        bytes += static_cast<char>(std::stoi(cifras, nullptr, 16));
        cifras.clear();
    }
    return bytes;
}

std::string flujoDe(const std::string& fichero) {
    const Compuesto compuesto = Compuesto::abrir(fichero);
    return compuesto.flujo(compuesto.buscar("Workbook").value());
}

std::vector<Registro> registrosDe(const std::string& fichero, size_t subflujo) {
    const std::string flujo = flujoDe(fichero);
    const Subflujo borde = subflujos(flujo).at(subflujo);
    LectorRegistros lector(std::string_view(flujo).substr(0, borde.fin), borde.inicio);
    std::vector<Registro> lista;
    while (const auto registro = lector.siguiente()) {
        lista.push_back({registro->id, std::string(registro->datos)});
    }
    return lista;
}

std::vector<std::string> datosDe(const std::vector<Registro>& registros, uint16_t id) {
    std::vector<std::string> lista;
    for (const Registro& registro : registros) {
        if (registro.id == id) lista.push_back(hex(registro.datos));
    }
    return lista;
}

}  // namespace bn::xls::prueba
