// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "platform/Ficheros.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/ErrorFicheroDe.h"

namespace bn {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using prueba::errorDe;

std::vector<std::string> leerLineas(ficheros::Lineas& lineas) {
    std::vector<std::string> todas;
    while (!lineas.final()) todas.push_back(lineas.siguiente());
    return todas;
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

TEST(Ficheros, TellsFilesFoldersAndNothingApart) {
    const prueba::CarpetaTemporal carpeta;
    prueba::escribirFichero(carpeta / "a.txt", "");
    EXPECT_TRUE(ficheros::existe(carpeta / "a.txt"));
    EXPECT_FALSE(ficheros::esCarpeta(carpeta / "a.txt"));
    EXPECT_TRUE(ficheros::existe(carpeta.ruta()));
    EXPECT_TRUE(ficheros::esCarpeta(carpeta.ruta()));
    for (const std::string nada : {"missing", "missing/a.txt", "a.txt/a.txt"}) {
        EXPECT_FALSE(ficheros::existe(carpeta / nada)) << nada;
        EXPECT_FALSE(ficheros::esCarpeta(carpeta / nada)) << nada;
    }
    const std::string conCero = ficheros::aTexto(carpeta.ruta()) + std::string("\0x", 2);
    EXPECT_FALSE(ficheros::existe(ficheros::aRuta(conCero)));
    EXPECT_FALSE(ficheros::esCarpeta(ficheros::aRuta(conCero)));
}

TEST(Ficheros, MoverGivesAFileAnotherNameOverWhatHadIt) {
    const prueba::CarpetaTemporal carpeta;
    prueba::escribirFichero(carpeta / "a.txt", "uno");
    ficheros::mover(carpeta / "a.txt", carpeta / "b.txt");
    EXPECT_THAT(carpeta.nombres(), ElementsAre("b.txt"));
    prueba::escribirFichero(carpeta / "a.txt", "dos");
    ficheros::mover(carpeta / "a.txt", carpeta / "b.txt");
    EXPECT_THAT(carpeta.nombres(), ElementsAre("b.txt"));
    EXPECT_EQ(prueba::leerFichero(carpeta / "b.txt"), "dos");
}

TEST(Ficheros, WhatCannotBeMovedStaysAndIsNamed) {
    const prueba::CarpetaTemporal carpeta;
    EXPECT_EQ(errorDe([&] { ficheros::mover(carpeta / "a.txt", carpeta / "b.txt"); }),
              ficheros::aTexto(carpeta / "a.txt") + ": no existe");
    prueba::escribirFichero(carpeta / "a.txt", "uno");
    EXPECT_EQ(errorDe([&] { ficheros::mover(carpeta / "a.txt", carpeta / "no" / "b.txt"); }),
              ficheros::aTexto(carpeta / "a.txt") + ": no existe");
    EXPECT_EQ(prueba::leerFichero(carpeta / "a.txt"), "uno");
}

TEST(Ficheros, BorrarRemovesAFileAndMindsNoneMissing) {
    const prueba::CarpetaTemporal carpeta;
    prueba::escribirFichero(carpeta / "a.txt", "uno");
    ficheros::borrar(carpeta / "a.txt");
    EXPECT_THAT(carpeta.nombres(), IsEmpty());
    EXPECT_NO_THROW(ficheros::borrar(carpeta / "a.txt"));
    EXPECT_NO_THROW(ficheros::borrar(carpeta / "missing" / "a.txt"));
    EXPECT_THROW(ficheros::borrar(carpeta.ruta()), ErrorFichero);
    EXPECT_TRUE(std::filesystem::is_directory(carpeta.ruta()));
}

TEST(Ficheros, LinesEndAtCarriageReturnAndLineFeedTogether) {
    const prueba::CarpetaTemporal carpeta;
    const std::vector<std::string> esperadas{"uno", "", "a\nb\rc", "\r", std::string("x\0y", 3),
                                             "el\r"};
    prueba::escribirFichero(carpeta / "a.txt",
                            std::string("uno\r\n\r\na\nb\rc\r\n\r\r\nx\0y\r\nel\r", 25));
    ficheros::Lineas lineas(carpeta / "a.txt");
    EXPECT_EQ(leerLineas(lineas), esperadas);
    EXPECT_EQ(lineas.siguiente(), "");
}

TEST(Ficheros, LinesAreWholeWhereverTheFileIsCutIntoBlocks) {
    const prueba::CarpetaTemporal carpeta;
    // Reads come in blocks of 65536: the first line's end lies before, across and behind its end.
    for (std::size_t largo = 65532; largo <= 65540; ++largo) {
        const std::vector<std::string> esperadas{std::string(largo, 'a'), std::string(300000, 'b'),
                                                 "c"};
        std::string bytes;
        for (const auto& linea : esperadas) bytes += linea + "\r\n";
        prueba::escribirFichero(carpeta / "a.txt", bytes);
        ficheros::Lineas lineas(carpeta / "a.txt");
        EXPECT_TRUE(leerLineas(lineas) == esperadas) << largo;
    }
}

TEST(Ficheros, AnEmptyFileHasNoLineAndAMissingOneCannotBeOpened) {
    const prueba::CarpetaTemporal carpeta;
    prueba::escribirFichero(carpeta / "a.txt", "");
    ficheros::Lineas lineas(carpeta / "a.txt");
    EXPECT_TRUE(lineas.final());
    EXPECT_EQ(lineas.siguiente(), "");
    EXPECT_EQ(errorDe([&] { ficheros::Lineas ninguna(carpeta / "b.txt"); }),
              ficheros::aTexto(carpeta / "b.txt") + ": no existe");
    EXPECT_EQ(errorDe([&] {
                  ficheros::Lineas deCarpeta(carpeta.ruta());
                  deCarpeta.final();
              }),
              ficheros::aTexto(carpeta.ruta()) + ": es una carpeta");
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
