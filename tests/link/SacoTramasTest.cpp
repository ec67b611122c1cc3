// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "link/sacoTramas.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/PlataformaDePrueba.h"

namespace bn {
namespace {

class SacoTramas : public testing::Test {
 protected:
    prueba::CarpetaTemporal carpeta;
    PlataformaDePrueba plataforma{carpeta.ruta()};
    sacoTramas saco{plataforma};

    std::string contenido() const { return prueba::leerFichero(carpeta / "bnGuardo.txt"); }
    bool existe() const { return std::filesystem::exists(carpeta / "bnGuardo.txt"); }

    std::vector<std::string> leerTodo() {
        std::vector<std::string> datos;
        for (std::string uno = saco.Recupero(); !uno.empty(); uno = saco.Recupero()) {
            datos.push_back(uno);
        }
        return datos;
    }
};

TEST_F(SacoTramas, RefusesEverythingButAStartWhenNew) {
    EXPECT_FALSE(saco.Guardo("datos"));
    EXPECT_FALSE(existe());
    EXPECT_FALSE(saco.iniRecupero());
    EXPECT_EQ(saco.Recupero(), "");
    EXPECT_FALSE(saco.Final());
}

TEST_F(SacoTramas, StartsEmptyEvenOverAnOldFile) {
    prueba::escribirFichero(carpeta / "bnGuardo.txt", "de antes\r\n");
    EXPECT_TRUE(saco.iniGuardo());
    EXPECT_TRUE(existe());
    EXPECT_EQ(contenido(), "");
}

TEST_F(SacoTramas, KeepsEachRecordAsALineExactlyAsReceived) {
    ASSERT_TRUE(saco.iniGuardo());
    EXPECT_TRUE(saco.Guardo("  uno  "));
    EXPECT_EQ(contenido(), "  uno  \r\n");
    EXPECT_TRUE(saco.Guardo("D\xD1S"));
    EXPECT_EQ(contenido(), "  uno  \r\nD\xD1S\r\n");
}

TEST_F(SacoTramas, DoesNotHoldTheFileBetweenCalls) {
    ASSERT_TRUE(saco.iniGuardo());
    ASSERT_TRUE(saco.Guardo("uno"));
    std::filesystem::remove(carpeta / "bnGuardo.txt");
    EXPECT_TRUE(saco.Guardo("dos"));
    EXPECT_EQ(contenido(), "dos\r\n");
}

TEST_F(SacoTramas, CannotStartAgainWhileStoring) {
    ASSERT_TRUE(saco.iniGuardo());
    ASSERT_TRUE(saco.Guardo("uno"));
    EXPECT_FALSE(saco.iniGuardo());
    EXPECT_EQ(contenido(), "uno\r\n");
}

TEST_F(SacoTramas, GivesBackEveryRecordInOrder) {
    ASSERT_TRUE(saco.iniGuardo());
    for (const char* datos : {"uno", "dos", "tres"}) ASSERT_TRUE(saco.Guardo(datos));
    EXPECT_TRUE(saco.iniRecupero());
    EXPECT_FALSE(saco.Final());
    EXPECT_EQ(saco.Recupero(), "uno");
    EXPECT_EQ(saco.Recupero(), "dos");
    EXPECT_FALSE(saco.Final());
    EXPECT_EQ(saco.Recupero(), "tres");
    EXPECT_TRUE(saco.Final()) << "the last line closes the file";
    EXPECT_EQ(saco.Recupero(), "");
}

TEST_F(SacoTramas, IsAtItsEndAtOnceWhenEmpty) {
    ASSERT_TRUE(saco.iniGuardo());
    EXPECT_TRUE(saco.iniRecupero());
    EXPECT_TRUE(saco.Final());
    EXPECT_EQ(saco.Recupero(), "");
}

TEST_F(SacoTramas, CanBeReadAgainOnceRead) {
    ASSERT_TRUE(saco.iniGuardo());
    ASSERT_TRUE(saco.Guardo("uno"));
    for (int vez = 0; vez < 2; ++vez) {
        ASSERT_TRUE(saco.iniRecupero());
        EXPECT_EQ(leerTodo(), std::vector<std::string>{"uno"});
    }
}

TEST_F(SacoTramas, BlocksEverythingButReadingUntilTheEnd) {
    ASSERT_TRUE(saco.iniGuardo());
    ASSERT_TRUE(saco.Guardo("uno"));
    ASSERT_TRUE(saco.Guardo("dos"));
    ASSERT_TRUE(saco.iniRecupero());
    EXPECT_FALSE(saco.iniGuardo());
    EXPECT_FALSE(saco.iniRecupero());
    EXPECT_FALSE(saco.Guardo("tres"));
    EXPECT_EQ(contenido(), "uno\r\ndos\r\n");
    EXPECT_EQ(leerTodo().size(), 2U);
    EXPECT_FALSE(saco.Guardo("tres")) << "storing goes on only after a new start";
    EXPECT_TRUE(saco.iniGuardo());
    EXPECT_EQ(contenido(), "");
}

TEST_F(SacoTramas, GivesBackLineFeedsAndControlCodesInsideARecord) {
    const std::vector<std::string> raros = {std::string("a\nb"),
                                            std::string("a\rb"),
                                            std::string("\n\n"),
                                            std::string("fin\x1A"
                                                        "resto"),
                                            std::string("nulo\0dentro", 11),
                                            std::string("\n"),
                                            std::string("x\r")};
    ASSERT_TRUE(saco.iniGuardo());
    for (const auto& datos : raros) ASSERT_TRUE(saco.Guardo(datos));
    ASSERT_TRUE(saco.iniRecupero());
    EXPECT_EQ(leerTodo(), raros);
    EXPECT_TRUE(saco.Final());
}

TEST_F(SacoTramas, TakesAnEmptyRecordForTheEnd) {
    ASSERT_TRUE(saco.iniGuardo());
    for (const char* datos : {"uno", "", "dos"}) ASSERT_TRUE(saco.Guardo(datos));
    ASSERT_TRUE(saco.iniRecupero());
    EXPECT_EQ(saco.Recupero(), "uno");
    EXPECT_EQ(saco.Recupero(), "");
    EXPECT_FALSE(saco.Final());
    EXPECT_EQ(saco.Recupero(), "dos");
    EXPECT_TRUE(saco.Final());
}

TEST_F(SacoTramas, ReadsALastLineWithoutItsEnd) {
    ASSERT_TRUE(saco.iniGuardo());
    prueba::escribirFichero(carpeta / "bnGuardo.txt", "uno\r\ndo");
    ASSERT_TRUE(saco.iniRecupero());
    EXPECT_EQ(leerTodo(), (std::vector<std::string>{"uno", "do"}));
    EXPECT_TRUE(saco.Final());
}

TEST_F(SacoTramas, AnswersFalseWhenTheFileCannotBeMade) {
    std::filesystem::create_directory(carpeta / "bnGuardo.txt");
    EXPECT_FALSE(saco.iniGuardo());
    std::filesystem::remove(carpeta / "bnGuardo.txt");
    EXPECT_TRUE(saco.iniGuardo()) << "the failure left it new";
}

TEST_F(SacoTramas, AnswersFalseWhenARecordCannotBeStored) {
    ASSERT_TRUE(saco.iniGuardo());
    std::filesystem::remove(carpeta / "bnGuardo.txt");
    std::filesystem::create_directory(carpeta / "bnGuardo.txt");
    EXPECT_FALSE(saco.Guardo("uno")) << "a folder stands in its place";
    std::filesystem::remove(carpeta / "bnGuardo.txt");
    EXPECT_TRUE(saco.Guardo("uno")) << "the failure left it storing";
}

TEST_F(SacoTramas, AnswersFalseWhenTheFileCannotBeRead) {
    ASSERT_TRUE(saco.iniGuardo());
    std::filesystem::remove(carpeta / "bnGuardo.txt");
    EXPECT_FALSE(saco.iniRecupero());
    EXPECT_EQ(saco.Recupero(), "");
    EXPECT_FALSE(saco.Final());
    EXPECT_TRUE(saco.Guardo("uno")) << "the failure left it storing";
    EXPECT_TRUE(saco.iniRecupero());
}

TEST_F(SacoTramas, LetsGoOfAReadingThatWasNotFinished) {
    {
        sacoTramas otro(plataforma);
        ASSERT_TRUE(otro.iniGuardo());
        ASSERT_TRUE(otro.Guardo("uno"));
        ASSERT_TRUE(otro.iniRecupero());
    }
    EXPECT_TRUE(saco.iniGuardo());
    EXPECT_EQ(contenido(), "");
}

}  // namespace
}  // namespace bn
