// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "platform/Ficheros.h"
#include "tests/platform/EnCadaDisco.h"
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

class FicherosEn : public prueba::EnCadaDisco {};

INSTANTIATE_TEST_SUITE_P(Disco, FicherosEn, testing::Values("sistema", "simulado"),
                         [](const auto& instancia) { return instancia.param; });

TEST(Ficheros, PathsGoToUtf8TextAndBack) {
    const std::string texto = "/tmp/Báscula ñ €/Pesadas.xls";
    EXPECT_EQ(ficheros::aTexto(ficheros::aRuta(texto)), texto);
    EXPECT_EQ(ficheros::aRuta("a/ñ.txt").filename(), std::filesystem::path(u8"ñ.txt"));
    EXPECT_EQ(ficheros::aTexto(ficheros::aRuta("")), "");
}

TEST_P(FicherosEn, ReadsEveryByteOfAFile) {
    std::string bytes("\0\r\n\x1A\xFF", 5);
    for (int i = 0; i < 200000; ++i) {
        bytes.push_back(static_cast<char>(i * 7));
    }
    escribirFichero(carpeta / "a.bin", bytes);
    EXPECT_TRUE(ficheros::leer(disco, carpeta / "a.bin") == bytes);
}

TEST_P(FicherosEn, ReadingAMissingFileGivesNothing) {
    EXPECT_EQ(ficheros::leer(disco, carpeta / "a.txt"), std::nullopt);
    EXPECT_EQ(ficheros::leer(disco, carpeta / "missing" / "a.txt"), std::nullopt);
    escribirFichero(carpeta / "file", "x");
    EXPECT_EQ(ficheros::leer(disco, carpeta / "file" / "a.txt"), std::nullopt);
}

TEST_P(FicherosEn, ReadingAnEmptyFileGivesAnEmptyText) {
    escribirFichero(carpeta / "a.txt", "");
    EXPECT_EQ(ficheros::leer(disco, carpeta / "a.txt"), "");
}

TEST_P(FicherosEn, CrearVacioMakesAndEmptiesAFile) {
    ficheros::crearVacio(disco, carpeta / "a.txt");
    EXPECT_EQ(leerFichero(carpeta / "a.txt"), "");
    escribirFichero(carpeta / "a.txt", "old");
    ficheros::crearVacio(disco, carpeta / "a.txt");
    EXPECT_EQ(leerFichero(carpeta / "a.txt"), "");
}

TEST_P(FicherosEn, AnadirPutsBytesBehindTheEnd) {
    ficheros::anadir(disco, carpeta / "a.txt", std::string_view("a\0b\n", 4));
    ficheros::anadir(disco, carpeta / "a.txt", "");
    ficheros::anadir(disco, carpeta / "a.txt", "c\r\n");
    EXPECT_EQ(leerFichero(carpeta / "a.txt"), std::string("a\0b\nc\r\n", 7));
}

TEST_P(FicherosEn, ReemplazarPutsTheNewContentsInPlaceAndLeavesNothingBesideThem) {
    ficheros::reemplazar(disco, carpeta / "a.ini", "first, and longer");
    EXPECT_EQ(leerFichero(carpeta / "a.ini"), "first, and longer");
    ficheros::reemplazar(disco, carpeta / "a.ini", "second");
    EXPECT_EQ(leerFichero(carpeta / "a.ini"), "second");
    EXPECT_THAT(carpeta.nombres(), ElementsAre("a.ini"));
}

TEST_P(FicherosEn, AnAnexoWritesLineByLineBehindWhatWasThere) {
    escribirFichero(carpeta / "a.txt", "old\r\n");
    {
        ficheros::Anexo anexo(disco, carpeta / "a.txt");
        anexo.escribir("one\r\n");
        EXPECT_EQ(leerFichero(carpeta / "a.txt"), "old\r\none\r\n");
        anexo.escribir("two\r\n");
        anexo.cerrar();
        anexo.cerrar();
        EXPECT_THROW(anexo.escribir("three"), std::logic_error);
    }
    EXPECT_EQ(leerFichero(carpeta / "a.txt"), "old\r\none\r\ntwo\r\n");
}

TEST_P(FicherosEn, AnAnexoCreatesAMissingFileAndKeepsItsLinesWithoutCerrar) {
    {
        ficheros::Anexo anexo(disco, carpeta / "a.txt");
        EXPECT_EQ(leerFichero(carpeta / "a.txt"), "");
        anexo.escribir("one");
    }
    EXPECT_EQ(leerFichero(carpeta / "a.txt"), "one");
}

TEST_P(FicherosEn, TellsFilesFoldersAndNothingApart) {
    escribirFichero(carpeta / "a.txt", "");
    EXPECT_TRUE(ficheros::existe(disco, carpeta / "a.txt"));
    EXPECT_FALSE(ficheros::esCarpeta(disco, carpeta / "a.txt"));
    EXPECT_TRUE(ficheros::existe(disco, carpeta.ruta()));
    EXPECT_TRUE(ficheros::esCarpeta(disco, carpeta.ruta()));
    for (const std::string nada : {"missing", "missing/a.txt", "a.txt/a.txt"}) {
        EXPECT_FALSE(ficheros::existe(disco, carpeta / nada)) << nada;
        EXPECT_FALSE(ficheros::esCarpeta(disco, carpeta / nada)) << nada;
    }
    const std::string conCero = ficheros::aTexto(carpeta.ruta()) + std::string("\0x", 2);
    EXPECT_FALSE(ficheros::existe(disco, ficheros::aRuta(conCero)));
    EXPECT_FALSE(ficheros::esCarpeta(disco, ficheros::aRuta(conCero)));
}

TEST_P(FicherosEn, MoverGivesAFileAnotherNameOverWhatHadIt) {
    escribirFichero(carpeta / "a.txt", "uno");
    ficheros::mover(disco, carpeta / "a.txt", carpeta / "b.txt");
    EXPECT_THAT(carpeta.nombres(), ElementsAre("b.txt"));
    escribirFichero(carpeta / "a.txt", "dos");
    ficheros::mover(disco, carpeta / "a.txt", carpeta / "b.txt");
    EXPECT_THAT(carpeta.nombres(), ElementsAre("b.txt"));
    EXPECT_EQ(leerFichero(carpeta / "b.txt"), "dos");
}

TEST_P(FicherosEn, WhatCannotBeMovedStaysAndIsNamed) {
    EXPECT_EQ(errorDe([&] { ficheros::mover(disco, carpeta / "a.txt", carpeta / "b.txt"); }),
              ficheros::aTexto(carpeta / "a.txt") + ": no existe");
    escribirFichero(carpeta / "a.txt", "uno");
    EXPECT_EQ(errorDe([&] { ficheros::mover(disco, carpeta / "a.txt", carpeta / "no" / "b.txt"); }),
              ficheros::aTexto(carpeta / "a.txt") + ": no existe");
    EXPECT_EQ(leerFichero(carpeta / "a.txt"), "uno");
}

TEST_P(FicherosEn, BorrarRemovesAFileAndMindsNoneMissing) {
    escribirFichero(carpeta / "a.txt", "uno");
    ficheros::borrar(disco, carpeta / "a.txt");
    EXPECT_THAT(carpeta.nombres(), IsEmpty());
    EXPECT_NO_THROW(ficheros::borrar(disco, carpeta / "a.txt"));
    EXPECT_NO_THROW(ficheros::borrar(disco, carpeta / "missing" / "a.txt"));
    EXPECT_THROW(ficheros::borrar(disco, carpeta.ruta()), ErrorFichero);
    EXPECT_TRUE(ficheros::esCarpeta(disco, carpeta.ruta()));
}

TEST_P(FicherosEn, LinesEndAtCarriageReturnAndLineFeedTogether) {
    const std::vector<std::string> esperadas{"uno", "", "a\nb\rc", "\r", std::string("x\0y", 3),
                                             "el\r"};
    escribirFichero(carpeta / "a.txt", std::string("uno\r\n\r\na\nb\rc\r\n\r\r\nx\0y\r\nel\r", 25));
    ficheros::Lineas lineas(disco, carpeta / "a.txt");
    EXPECT_EQ(leerLineas(lineas), esperadas);
    EXPECT_EQ(lineas.siguiente(), "");
}

TEST_P(FicherosEn, LinesAreWholeWhereverTheFileIsCutIntoBlocks) {
    // Reads come in blocks of 65536: the first line's end lies before, across and behind its end.
    for (std::size_t largo = 65532; largo <= 65540; ++largo) {
        const std::vector<std::string> esperadas{std::string(largo, 'a'), std::string(300000, 'b'),
                                                 "c"};
        std::string bytes;
        for (const auto& linea : esperadas) bytes += linea + "\r\n";
        escribirFichero(carpeta / "a.txt", bytes);
        ficheros::Lineas lineas(disco, carpeta / "a.txt");
        EXPECT_TRUE(leerLineas(lineas) == esperadas) << largo;
    }
}

TEST_P(FicherosEn, AnEmptyFileHasNoLineAndAMissingOneCannotBeOpened) {
    escribirFichero(carpeta / "a.txt", "");
    ficheros::Lineas lineas(disco, carpeta / "a.txt");
    EXPECT_TRUE(lineas.final());
    EXPECT_EQ(lineas.siguiente(), "");
    EXPECT_EQ(errorDe([&] { ficheros::Lineas ninguna(disco, carpeta / "b.txt"); }),
              ficheros::aTexto(carpeta / "b.txt") + ": no existe");
    EXPECT_EQ(errorDe([&] {
                  ficheros::Lineas deCarpeta(disco, carpeta.ruta());
                  deCarpeta.final();
              }),
              ficheros::aTexto(carpeta.ruta()) + ": es una carpeta");
}

TEST_P(FicherosEn, EveryOperationNamesAFolderThatStandsInThePlaceOfTheFile) {
    const std::filesystem::path ruta = carpeta / "a.txt";
    crearCarpeta(ruta);
    const std::string esperado = ficheros::aTexto(ruta) + ": es una carpeta";
    EXPECT_EQ(errorDe([&] { ficheros::leer(disco, ruta); }), esperado);
    EXPECT_EQ(errorDe([&] { ficheros::crearVacio(disco, ruta); }), esperado);
    EXPECT_EQ(errorDe([&] { ficheros::anadir(disco, ruta, "x"); }), esperado);
    EXPECT_EQ(errorDe([&] { ficheros::reemplazar(disco, ruta, "x"); }), esperado);
    EXPECT_EQ(errorDe([&] { ficheros::Anexo anexo(disco, ruta); }), esperado);
    EXPECT_TRUE(ficheros::esCarpeta(disco, ruta));
    EXPECT_THAT(carpeta.nombres(), ElementsAre("a.txt"));
}

TEST_P(FicherosEn, EveryWritingOperationNamesAFileInAMissingFolder) {
    const std::filesystem::path ruta = carpeta / "missing" / "a.txt";
    const std::string esperado = ficheros::aTexto(ruta) + ": no existe";
    EXPECT_EQ(errorDe([&] { ficheros::crearVacio(disco, ruta); }), esperado);
    EXPECT_EQ(errorDe([&] { ficheros::anadir(disco, ruta, "x"); }), esperado);
    EXPECT_EQ(errorDe([&] { ficheros::reemplazar(disco, ruta, "x"); }), esperado);
    EXPECT_EQ(errorDe([&] { ficheros::Anexo anexo(disco, ruta); }), esperado);
    EXPECT_THAT(carpeta.nombres(), IsEmpty());
}

TEST_P(FicherosEn, APathWithAZeroInsideIsNotTakenForAShorterOne) {
    std::filesystem::path ruta = carpeta / "a.txt";
    ruta += std::string("\0.bak", 5);
    EXPECT_THAT(errorDe([&] { ficheros::crearVacio(disco, ruta); }), HasSubstr("no existe"));
    EXPECT_THAT(errorDe([&] { ficheros::reemplazar(disco, ruta, "x"); }), HasSubstr("no existe"));
    EXPECT_THAT(carpeta.nombres(), IsEmpty());
}

TEST_P(FicherosEn, AnEmptyPathIsAnError) {
    EXPECT_NE(errorDe([&] { ficheros::crearVacio(disco, {}); }), "");
    EXPECT_NE(errorDe([&] { ficheros::anadir(disco, {}, "x"); }), "");
    EXPECT_NE(errorDe([&] { ficheros::reemplazar(disco, {}, "x"); }), "");
}

}  // namespace
}  // namespace bn
