// SPDX-License-Identifier: MIT
// What only this system does: files that others hold, attributes, names and paths of its own kind.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "platform/Ficheros.h"
#include "platform/NombreFechado.h"
#include "platform/windows/Asa.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/ErrorFicheroDe.h"
#include "tests/soporte/windows/CarpetaLarga.h"

namespace bn {
namespace {

Disco& sistema = discoDelSistema();

namespace fs = std::filesystem;
using prueba::errorDe;
using testing::ElementsAre;
using testing::IsEmpty;
using windows::Asa;

/// Another program that has the file open.
Asa otroLoTiene(const fs::path& ruta, DWORD loQueComparte) {
    Asa otro(::CreateFileW(ruta.c_str(), GENERIC_READ, loQueComparte, nullptr, OPEN_EXISTING,
                           FILE_ATTRIBUTE_NORMAL, nullptr));
    EXPECT_TRUE(static_cast<bool>(otro));
    return otro;
}

void hacerTodo(const fs::path& ruta) {
    ficheros::crearVacio(sistema, ruta);
    ficheros::anadir(sistema, ruta, "uno\r\n");
    ficheros::Anexo anexo(sistema, ruta);
    anexo.escribir("dos\r\n");
    anexo.cerrar();
    EXPECT_EQ(ficheros::leer(sistema, ruta), "uno\r\ndos\r\n");
    ficheros::reemplazar(sistema, ruta, "tres");
    EXPECT_EQ(ficheros::leer(sistema, ruta), "tres");
}

TEST(FicherosWindows, NamesOfAnyAlphabetAreTheirOwn) {
    const prueba::CarpetaTemporal carpeta;
    const fs::path ruta = carpeta.ruta() / ficheros::aRuta("Báscula ñ € Вес 計量.txt");
    hacerTodo(ruta);
    EXPECT_EQ(ficheros::aTexto(ruta.filename()), "Báscula ñ € Вес 計量.txt");
    int cuantos = 0;
    for (const auto& entrada : fs::directory_iterator(carpeta.ruta())) {
        EXPECT_EQ(entrada.path().filename().native(), ruta.filename().native());
        ++cuantos;
    }
    EXPECT_EQ(cuantos, 1);
}

TEST(FicherosWindows, PathsMayBeLongerThanTheSystemsUsualLimit) {
    const prueba::CarpetaLarga larga;
    ASSERT_GT(larga.ruta().native().size(), std::size_t{MAX_PATH});
    EXPECT_TRUE(ficheros::esCarpeta(sistema, larga.ruta()));
    EXPECT_FALSE(ficheros::existe(sistema, larga / "Pesadas.txt"));
    hacerTodo(larga / "Pesadas.txt");
    EXPECT_TRUE(ficheros::existe(sistema, larga / "Pesadas.txt"));
    EXPECT_FALSE(ficheros::esCarpeta(sistema, larga / "Pesadas.txt"));
    EXPECT_EQ(ficheros::leer(sistema, larga / "otro.txt"), std::nullopt);
    EXPECT_EQ(nombreFechado(sistema, larga / "Pesadas", 0, ".txt"),
              larga / "Pesadas18991230-000000.txt");
    ficheros::mover(sistema, larga / "Pesadas.txt", larga / "Pesadas18991230-000000.txt");
    EXPECT_THAT(larga.nombres(), ElementsAre("Pesadas18991230-000000.txt"));
    EXPECT_EQ(nombreFechado(sistema, larga / "Pesadas", 0, ".txt"),
              larga / "Pesadas18991230-000000-2.txt");
    {
        ficheros::Lineas lineas(sistema, larga / "Pesadas18991230-000000.txt");
        EXPECT_EQ(lineas.siguiente(), "tres");
        EXPECT_TRUE(lineas.final());
    }
    ficheros::borrar(sistema, larga / "Pesadas18991230-000000.txt");
    EXPECT_THAT(larga.nombres(), IsEmpty());
}

TEST(FicherosWindows, AFileThatAnotherProgramHoldsIsToldApart) {
    const prueba::CarpetaTemporal carpeta;
    const fs::path ruta = carpeta / "a.txt";
    prueba::escribirFichero(ruta, "intacto");
    const std::string esperado = ficheros::aTexto(ruta) + ": está en uso por otro programa";
    {
        const Asa otro = otroLoTiene(ruta, 0);
        EXPECT_EQ(errorDe([&] { ficheros::leer(sistema, ruta); }), esperado);
        EXPECT_EQ(errorDe([&] { ficheros::crearVacio(sistema, ruta); }), esperado);
        EXPECT_EQ(errorDe([&] { ficheros::anadir(sistema, ruta, "x"); }), esperado);
        EXPECT_EQ(errorDe([&] { ficheros::reemplazar(sistema, ruta, "x"); }), esperado);
        EXPECT_EQ(errorDe([&] { ficheros::Anexo anexo(sistema, ruta); }), esperado);
        EXPECT_EQ(errorDe([&] { ficheros::Lineas lineas(sistema, ruta); }), esperado);
        EXPECT_EQ(errorDe([&] { ficheros::mover(sistema, ruta, carpeta / "b.txt"); }), esperado);
        EXPECT_EQ(errorDe([&] { ficheros::borrar(sistema, ruta); }), esperado);
        EXPECT_TRUE(ficheros::existe(sistema, ruta));
    }
    EXPECT_EQ(prueba::leerFichero(ruta), "intacto");
    EXPECT_THAT(carpeta.nombres(), ElementsAre("a.txt"));
}

TEST(FicherosWindows, AFileThatCannotBeReplacedStaysAndNoTemporaryBesideIt) {
    const prueba::CarpetaTemporal carpeta;
    const fs::path ruta = carpeta / "a.txt";
    prueba::escribirFichero(ruta, "intacto");
    {
        const Asa otro = otroLoTiene(ruta, FILE_SHARE_READ | FILE_SHARE_WRITE);
        EXPECT_EQ(errorDe([&] { ficheros::reemplazar(sistema, ruta, "x"); }),
                  ficheros::aTexto(ruta) + ": está en uso por otro programa");
    }
    EXPECT_EQ(prueba::leerFichero(ruta), "intacto");
    EXPECT_THAT(carpeta.nombres(), ElementsAre("a.txt"));
}

TEST(FicherosWindows, OthersMayReadWhileTheFileIsWritten) {
    const prueba::CarpetaTemporal carpeta;
    const fs::path ruta = carpeta / "a.txt";
    ficheros::crearVacio(sistema, ruta);
    const Asa otro = otroLoTiene(ruta, FILE_SHARE_READ | FILE_SHARE_WRITE);
    ficheros::anadir(sistema, ruta, "uno");
    ficheros::Anexo anexo(sistema, ruta);
    anexo.escribir("dos");
    EXPECT_EQ(prueba::leerFichero(ruta), "unodos");
}

TEST(FicherosWindows, AFileProtectedAgainstWritingIsNotReplaced) {
    const prueba::CarpetaTemporal carpeta;
    const fs::path ruta = carpeta / "a.ini";
    prueba::escribirFichero(ruta, "intacto");
    ASSERT_TRUE(::SetFileAttributesW(ruta.c_str(), FILE_ATTRIBUTE_READONLY));
    EXPECT_EQ(errorDe([&] { ficheros::reemplazar(sistema, ruta, "x"); }),
              ficheros::aTexto(ruta) + ": acceso denegado");
    EXPECT_EQ(prueba::leerFichero(ruta), "intacto");
    EXPECT_THAT(carpeta.nombres(), ElementsAre("a.ini"));
    ::SetFileAttributesW(ruta.c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST(FicherosWindows, AHiddenFileStaysHidden) {
    const prueba::CarpetaTemporal carpeta;
    const fs::path ruta = carpeta / "a.ini";
    prueba::escribirFichero(ruta, "viejo");
    ASSERT_TRUE(::SetFileAttributesW(ruta.c_str(), FILE_ATTRIBUTE_HIDDEN));
    const auto oculto = [&] {
        return (::GetFileAttributesW(ruta.c_str()) & FILE_ATTRIBUTE_HIDDEN) != 0;
    };
    ficheros::reemplazar(sistema, ruta, "nuevo");
    EXPECT_EQ(prueba::leerFichero(ruta), "nuevo");
    EXPECT_TRUE(oculto());
    ficheros::crearVacio(sistema, ruta);
    EXPECT_EQ(prueba::leerFichero(ruta), "");
    EXPECT_TRUE(oculto());
}

TEST(FicherosWindows, LeavesNoHandleOpenAlsoWhenItFails) {
    const prueba::CarpetaTemporal carpeta;
    const auto abiertas = [] {
        DWORD cuantas = 0;
        EXPECT_TRUE(::GetProcessHandleCount(::GetCurrentProcess(), &cuantas));
        return cuantas;
    };
    const auto vuelta = [&] {
        hacerTodo(carpeta / "a.txt");
        ficheros::Lineas(sistema, carpeta / "a.txt").siguiente();
        ficheros::mover(sistema, carpeta / "a.txt", carpeta / "b.txt");
        errorDe([&] { ficheros::reemplazar(sistema, carpeta.ruta(), "x"); });
        errorDe([&] { ficheros::anadir(sistema, carpeta / "no" / "a.txt", "x"); });
        errorDe([&] { ficheros::Lineas lineas(sistema, carpeta / "a.txt"); });
    };
    vuelta();
    const DWORD antes = abiertas();
    for (int i = 0; i < 20; ++i) {
        vuelta();
    }
    EXPECT_LE(abiertas(), antes);
}

TEST(FicherosWindows, ADeviceIsNoFileToReplace) {
    EXPECT_NE(errorDe([] { ficheros::reemplazar(sistema, "NUL", "x"); }), "");
}

}  // namespace
}  // namespace bn
