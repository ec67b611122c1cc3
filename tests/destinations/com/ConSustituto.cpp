// SPDX-License-Identifier: MIT
#include "tests/destinations/com/ConSustituto.h"

#include <array>
#include <filesystem>
#include <fstream>

#include "destinations/excel/com/VarianteCom.h"
#include "destinations/xls/MotorInterno.h"
#include "platform/Ficheros.h"
#include "tests/sustituto/Diario.h"

namespace bn::prueba {

namespace {

/// The stand-in, beside the test program.
HMODULE sustituto() {
    static HMODULE const kModulo = [] {
        std::array<wchar_t, 1024> programa{};
        GetModuleFileNameW(nullptr, programa.data(), static_cast<DWORD>(programa.size()));
        const auto dll =
            std::filesystem::path(programa.data()).replace_filename("bn_sustituto.dll");
        return LoadLibraryW(dll.c_str());
    }();
    return kModulo;
}

HRESULT llamar(const char* puerta) {
    const FARPROC direccion = GetProcAddress(sustituto(), puerta);
    if (!direccion) return E_FAIL;
    return reinterpret_cast<HRESULT(WINAPI*)()>(reinterpret_cast<void*>(direccion))();
}

std::vector<std::string> lineas(const std::filesystem::path& fichero) {
    std::vector<std::string> todas;
    std::ifstream entrada(fichero, std::ios::binary);
    for (std::string linea; std::getline(entrada, linea);) todas.push_back(linea);
    return todas;
}

}  // namespace

void ConSustituto::alServidor(const char* puerta) { ASSERT_EQ(llamar(puerta), S_OK); }

void ConSustituto::SetUp() {
    ASSERT_NE(sustituto(), nullptr);
    alServidor("DllUnregisterServer");
    alServidor("DllRegisterServer");
    SetEnvironmentVariableW(sustituto::kVariableDiario, (carpeta_ / "diario.txt").c_str());
    ordenar("");
}

void ConSustituto::TearDown() {
    excel_.reset();
    EXPECT_EQ(llamar("DllCanUnloadNow"), S_OK) << "objects of the application are still held";
    alServidor("DllUnregisterServer");
}

void ConSustituto::ordenar(const std::string& ordenes) {
    SetEnvironmentVariableW(sustituto::kVariableOrdenes, excel::com::aAncho(ordenes).c_str());
}

std::vector<std::string> ConSustituto::llamadas() {
    std::vector<std::string> todas = lineas(carpeta_ / "diario.txt");
    todas.erase(todas.begin(), todas.begin() + static_cast<std::ptrdiff_t>(leidas_));
    leidas_ += todas.size();
    return todas;
}

std::vector<std::string> ConSustituto::diario() {
    std::vector<std::string> miembros = llamadas();
    std::erase_if(miembros, [](const std::string& linea) { return linea.starts_with("? "); });
    return miembros;
}

std::string ConSustituto::ruta(const std::string& nombre) const {
    return ficheros::aTexto(carpeta_ / nombre);
}

void ConSustituto::crearLibro(const std::string& nombre,
                              const std::vector<std::vector<Variante>>& filas) {
    PlataformaDePrueba interna(carpeta_.ruta());
    XCel libro(interna);
    libro.AbrirParaEscribir(ruta(nombre), "Pesadas", true);
    int16_t fila = 0;
    for (const auto& valores : filas) {
        ++fila;
        int16_t columna = 0;
        for (const Variante& valor : valores) libro.Celda(fila, ++columna, valor);
    }
    libro.Guardar("");
}

Variante ConSustituto::leerCelda(const std::string& nombre, int16_t fila, int16_t columna) {
    PlataformaDePrueba interna(carpeta_.ruta());
    XCel libro(interna);
    EXPECT_TRUE(libro.AbrirParaLeer(ruta(nombre), "Pesadas"));
    const Variante valor = libro.Celda(fila, columna);
    libro.Cerrar();
    return valor;
}

}  // namespace bn::prueba
