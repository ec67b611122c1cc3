// SPDX-License-Identifier: MIT
// Files read and written in places, listed, measured and cleared away.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <stdexcept>
#include <string>

#include "platform/Ficheros.h"
#include "tests/platform/EnCadaDisco.h"
#include "tests/soporte/ErrorFicheroDe.h"

namespace bn {
namespace {

using prueba::causaDe;
using prueba::errorDe;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using Causa = ErrorFichero::Causa;

class FicherosSitio : public prueba::EnCadaDisco {
 protected:
    std::filesystem::path ruta = carpeta / "a.txt";
};

INSTANTIATE_TEST_SUITE_P(Disco, FicherosSitio, testing::Values("sistema", "simulado"),
                         [](const auto& instancia) { return instancia.param; });

TEST_P(FicherosSitio, ListsTheNamesOfAFolder) {
    EXPECT_THAT(ficheros::listar(disco, carpeta.ruta()), IsEmpty());
    escribirFichero(carpeta / "Añó €.txt", "");
    escribirFichero(ruta, "");
    EXPECT_THAT(ficheros::listar(disco, carpeta.ruta()),
                UnorderedElementsAre("a.txt", "Añó €.txt"));
    EXPECT_EQ(causaDe([&] { ficheros::listar(disco, carpeta / "no"); }), Causa::kNoExiste);
    EXPECT_EQ(errorDe([&] { ficheros::listar(disco, carpeta / "no"); }),
              ficheros::aTexto(carpeta / "no") + ": no existe");
}

TEST_P(FicherosSitio, MeasuresAFileAndGivesNothingForAMissingOne) {
    EXPECT_EQ(ficheros::largo(disco, ruta), std::nullopt);
    EXPECT_EQ(ficheros::largo(disco, carpeta / "no" / "a.txt"), std::nullopt);
    escribirFichero(ruta, "");
    EXPECT_EQ(ficheros::largo(disco, ruta), 0U);
    escribirFichero(ruta, std::string(70000, 'x'));
    EXPECT_EQ(ficheros::largo(disco, ruta), 70000U);
    EXPECT_EQ(causaDe([&] { ficheros::largo(disco, carpeta.ruta()); }), Causa::kEsCarpeta);
}

TEST_P(FicherosSitio, ReadsFromAPlaceToTheEndOrToALimit) {
    escribirFichero(ruta, "0123456789");
    EXPECT_EQ(ficheros::leerDesde(disco, ruta, 0), "0123456789");
    EXPECT_EQ(ficheros::leerDesde(disco, ruta, 7), "789");
    EXPECT_EQ(ficheros::leerDesde(disco, ruta, 10), "");
    EXPECT_EQ(ficheros::leerDesde(disco, ruta, 1000), "");
    EXPECT_EQ(ficheros::leerDesde(disco, ruta, 3, 4), "3456");
    EXPECT_EQ(ficheros::leerDesde(disco, ruta, 8, 4), "89");
    EXPECT_EQ(ficheros::leerDesde(disco, ruta, 8, 0), "");
    EXPECT_EQ(causaDe([&] { ficheros::leerDesde(disco, carpeta / "no.txt", 0); }),
              Causa::kNoExiste);
}

TEST_P(FicherosSitio, ReadsFromAPlaceInAFileOfManyBlocks) {
    std::string bytes;
    for (int i = 0; i < 3000000; ++i) bytes.push_back(static_cast<char>(i * 7 + i / 1000));
    escribirFichero(ruta, bytes);
    EXPECT_TRUE(ficheros::leerDesde(disco, ruta, 12345) == bytes.substr(12345));
    EXPECT_TRUE(ficheros::leerDesde(disco, ruta, 12345, 2000000) == bytes.substr(12345, 2000000));
}

TEST_P(FicherosSitio, WritesInPlaceAndMayLengthenTheFile) {
    escribirFichero(ruta, "0123456789");
    ficheros::sobrescribir(disco, ruta, 2, "ab");
    EXPECT_EQ(leerFichero(ruta), "01ab456789");
    ficheros::sobrescribir(disco, ruta, 8, "cdef");
    EXPECT_EQ(leerFichero(ruta), "01ab4567cdef");
    ficheros::sobrescribir(disco, ruta, 12, "g");
    ficheros::sobrescribir(disco, ruta, 0, "");
    EXPECT_EQ(leerFichero(ruta), "01ab4567cdefg");
}

TEST_P(FicherosSitio, WritingInPlaceAndCuttingNeverCreateAFile) {
    EXPECT_EQ(causaDe([&] { ficheros::sobrescribir(disco, ruta, 0, "x"); }), Causa::kNoExiste);
    EXPECT_EQ(causaDe([&] { ficheros::cortar(disco, ruta, 0); }), Causa::kNoExiste);
    EXPECT_THAT(carpeta.nombres(), IsEmpty());
}

TEST_P(FicherosSitio, CutsAFileOffButNeverLengthensIt) {
    escribirFichero(ruta, "0123456789");
    ficheros::cortar(disco, ruta, 11);
    EXPECT_EQ(leerFichero(ruta), "0123456789");
    ficheros::cortar(disco, ruta, 4);
    EXPECT_EQ(leerFichero(ruta), "0123");
    ficheros::cortar(disco, ruta, 0);
    EXPECT_EQ(leerFichero(ruta), "");
}

TEST_P(FicherosSitio, AnAnexoKnowsWhereTheNextLineWillStand) {
    escribirFichero(ruta, "old\r\n");
    ficheros::Anexo anexo(disco, ruta);
    EXPECT_EQ(anexo.largo(), 5U);
    anexo.escribir("one\r\n");
    EXPECT_EQ(anexo.largo(), 10U);
    anexo.cerrar();
    EXPECT_THROW(anexo.largo(), std::logic_error);
}

TEST_P(FicherosSitio, FlushesAFolderAndTellsWhenThereIsNone) {
    EXPECT_NO_THROW(ficheros::sincronizarCarpeta(disco, carpeta.ruta()));
    EXPECT_NO_THROW(ficheros::sincronizarCarpeta(disco, {}));
    EXPECT_EQ(causaDe([&] { ficheros::sincronizarCarpeta(disco, carpeta / "no"); }),
              Causa::kNoExiste);
}

TEST_P(FicherosSitio, ClearsAwayTheTemporariesOfOtherProcessesAndNothingElse) {
    const std::string propio = ".bn-" + std::to_string(disco.proceso()) + "-0.tmp";
    const std::string ajeno = ".bn-" + std::to_string(disco.proceso() + 1) + "-12.tmp";
    for (const std::string& nombre :
         {propio, ajeno, std::string(".bn-77777-0.tmp"), std::string(".bn-x-0.tmp"),
          std::string(".bn-77777-.tmp"), std::string(".bn-77777-0.tmp.xls"),
          std::string("a.bn-77777-0.tmp"), std::string(".bn-77777.tmp")}) {
        escribirFichero(carpeta / nombre, "half");
    }
    ficheros::borrarTemporales(disco, carpeta.ruta());
    EXPECT_THAT(carpeta.nombres(),
                UnorderedElementsAre(propio, ".bn-x-0.tmp", ".bn-77777-.tmp", ".bn-77777-0.tmp.xls",
                                     "a.bn-77777-0.tmp", ".bn-77777.tmp"));
    EXPECT_NO_THROW(ficheros::borrarTemporales(disco, carpeta / "no"));
}

TEST_P(FicherosSitio, AnErrorTellsItsCauseAndItsExplanation) {
    const ErrorFichero sinMas("a.txt: algo");
    EXPECT_EQ(sinMas.causa(), Causa::kOtra);
    EXPECT_EQ(sinMas.explicacion(), "a.txt: algo");
    const ErrorFichero lleno("a.txt", "el disco está lleno", Causa::kLleno);
    EXPECT_STREQ(lleno.what(), "a.txt: el disco está lleno");
    EXPECT_EQ(lleno.causa(), Causa::kLleno);
    EXPECT_EQ(lleno.explicacion(), "el disco está lleno");
    const std::filesystem::path conCero(std::string("a\0b", 3));
    EXPECT_STREQ(ErrorFichero(conCero, "no existe", Causa::kNoExiste).what(), "a?b: no existe");
    EXPECT_EQ(causaDe([&] { ficheros::anadir(disco, carpeta / "no" / "a.txt", "x"); }),
              Causa::kNoExiste);
    EXPECT_EQ(causaDe([&] { ficheros::anadir(disco, carpeta.ruta(), "x"); }), Causa::kEsCarpeta);
    EXPECT_EQ(causaDe([&] { ficheros::reemplazar(disco, carpeta.ruta(), "x"); }),
              Causa::kEsCarpeta);
}

}  // namespace
}  // namespace bn
