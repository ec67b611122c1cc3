// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "platform/Ficheros.h"
#include "tests/soporte/CarpetaTemporal.h"

namespace bn {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// The text of the ErrorFichero that an action throws; "" when it throws none.
template <class Accion>
std::string errorDe(Accion accion) {
    try {
        accion();
    } catch (const ErrorFichero& error) {
        return error.what();
    }
    return "";
}

TEST(Ficheros, PathsGoToUtf8TextAndBack) {
    const std::string texto = "/tmp/Báscula ñ €/Pesadas.xls";
    EXPECT_EQ(ficheros::aTexto(ficheros::aRuta(texto)), texto);
    EXPECT_EQ(ficheros::aRuta("a/ñ.txt").filename(), std::filesystem::path(u8"ñ.txt"));
    EXPECT_EQ(ficheros::aTexto(ficheros::aRuta("")), "");
}

TEST(Ficheros, ReadsEveryByteOfAFile) {
    const prueba::CarpetaTemporal carpeta;
    std::string bytes("\0\r\n\x1A\xFF", 5);
    for (int i = 0; i < 200000; ++i) {
        bytes.push_back(static_cast<char>(i * 7));
    }
    prueba::escribirFichero(carpeta / "a.bin", bytes);
    EXPECT_TRUE(ficheros::leer(carpeta / "a.bin") == bytes);
}

TEST(Ficheros, ReadingAMissingFileGivesNothing) {
    const prueba::CarpetaTemporal carpeta;
    EXPECT_EQ(ficheros::leer(carpeta / "a.txt"), std::nullopt);
    EXPECT_EQ(ficheros::leer(carpeta / "missing" / "a.txt"), std::nullopt);
    prueba::escribirFichero(carpeta / "file", "x");
    EXPECT_EQ(ficheros::leer(carpeta / "file" / "a.txt"), std::nullopt);
}

TEST(Ficheros, ReadingAnEmptyFileGivesAnEmptyText) {
    const prueba::CarpetaTemporal carpeta;
    prueba::escribirFichero(carpeta / "a.txt", "");
    EXPECT_EQ(ficheros::leer(carpeta / "a.txt"), "");
}

TEST(Ficheros, CrearVacioMakesAndEmptiesAFile) {
    const prueba::CarpetaTemporal carpeta;
    ficheros::crearVacio(carpeta / "a.txt");
    EXPECT_EQ(prueba::leerFichero(carpeta / "a.txt"), "");
    prueba::escribirFichero(carpeta / "a.txt", "old");
    ficheros::crearVacio(carpeta / "a.txt");
    EXPECT_EQ(prueba::leerFichero(carpeta / "a.txt"), "");
}

TEST(Ficheros, AnadirPutsBytesBehindTheEnd) {
    const prueba::CarpetaTemporal carpeta;
    ficheros::anadir(carpeta / "a.txt", std::string_view("a\0b\n", 4));
    ficheros::anadir(carpeta / "a.txt", "");
    ficheros::anadir(carpeta / "a.txt", "c\r\n");
    EXPECT_EQ(prueba::leerFichero(carpeta / "a.txt"), std::string("a\0b\nc\r\n", 7));
}

TEST(Ficheros, ReemplazarPutsTheNewContentsInPlaceAndLeavesNothingBesideThem) {
    const prueba::CarpetaTemporal carpeta;
    ficheros::reemplazar(carpeta / "a.ini", "first, and longer");
    EXPECT_EQ(prueba::leerFichero(carpeta / "a.ini"), "first, and longer");
    ficheros::reemplazar(carpeta / "a.ini", "second");
    EXPECT_EQ(prueba::leerFichero(carpeta / "a.ini"), "second");
    EXPECT_THAT(carpeta.nombres(), ElementsAre("a.ini"));
}

TEST(Ficheros, AnAnexoWritesLineByLineBehindWhatWasThere) {
    const prueba::CarpetaTemporal carpeta;
    prueba::escribirFichero(carpeta / "a.txt", "old\r\n");
    {
        ficheros::Anexo anexo(carpeta / "a.txt");
        anexo.escribir("one\r\n");
        EXPECT_EQ(prueba::leerFichero(carpeta / "a.txt"), "old\r\none\r\n");
        anexo.escribir("two\r\n");
        anexo.cerrar();
        anexo.cerrar();
        EXPECT_THROW(anexo.escribir("three"), std::logic_error);
    }
    EXPECT_EQ(prueba::leerFichero(carpeta / "a.txt"), "old\r\none\r\ntwo\r\n");
}

TEST(Ficheros, AnAnexoCreatesAMissingFileAndKeepsItsLinesWithoutCerrar) {
    const prueba::CarpetaTemporal carpeta;
    {
        ficheros::Anexo anexo(carpeta / "a.txt");
        EXPECT_EQ(prueba::leerFichero(carpeta / "a.txt"), "");
        anexo.escribir("one");
    }
    EXPECT_EQ(prueba::leerFichero(carpeta / "a.txt"), "one");
}

TEST(Ficheros, EveryOperationNamesAFolderThatStandsInThePlaceOfTheFile) {
    const prueba::CarpetaTemporal carpeta;
    const std::filesystem::path ruta = carpeta / "a.txt";
    std::filesystem::create_directory(ruta);
    const std::string esperado = ficheros::aTexto(ruta) + ": es una carpeta";
    EXPECT_EQ(errorDe([&] { ficheros::leer(ruta); }), esperado);
    EXPECT_EQ(errorDe([&] { ficheros::crearVacio(ruta); }), esperado);
    EXPECT_EQ(errorDe([&] { ficheros::anadir(ruta, "x"); }), esperado);
    EXPECT_EQ(errorDe([&] { ficheros::reemplazar(ruta, "x"); }), esperado);
    EXPECT_EQ(errorDe([&] { ficheros::Anexo anexo(ruta); }), esperado);
    EXPECT_TRUE(std::filesystem::is_directory(ruta));
    EXPECT_THAT(carpeta.nombres(), ElementsAre("a.txt"));
}

TEST(Ficheros, EveryWritingOperationNamesAFileInAMissingFolder) {
    const prueba::CarpetaTemporal carpeta;
    const std::filesystem::path ruta = carpeta / "missing" / "a.txt";
    const std::string esperado = ficheros::aTexto(ruta) + ": no existe";
    EXPECT_EQ(errorDe([&] { ficheros::crearVacio(ruta); }), esperado);
    EXPECT_EQ(errorDe([&] { ficheros::anadir(ruta, "x"); }), esperado);
    EXPECT_EQ(errorDe([&] { ficheros::reemplazar(ruta, "x"); }), esperado);
    EXPECT_EQ(errorDe([&] { ficheros::Anexo anexo(ruta); }), esperado);
    EXPECT_THAT(carpeta.nombres(), IsEmpty());
}

TEST(Ficheros, APathWithAZeroInsideIsNotTakenForAShorterOne) {
    const prueba::CarpetaTemporal carpeta;
    std::filesystem::path ruta = carpeta / "a.txt";
    ruta += std::string("\0.bak", 5);
    EXPECT_THAT(errorDe([&] { ficheros::crearVacio(ruta); }), HasSubstr("no existe"));
    EXPECT_THAT(errorDe([&] { ficheros::reemplazar(ruta, "x"); }), HasSubstr("no existe"));
    EXPECT_THAT(carpeta.nombres(), IsEmpty());
}

TEST(Ficheros, AnEmptyPathIsAnError) {
    EXPECT_NE(errorDe([] { ficheros::crearVacio({}); }), "");
    EXPECT_NE(errorDe([] { ficheros::anadir({}, "x"); }), "");
    EXPECT_NE(errorDe([] { ficheros::reemplazar({}, "x"); }), "");
}

}  // namespace
}  // namespace bn
