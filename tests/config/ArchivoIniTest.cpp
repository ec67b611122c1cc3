// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "config/ArchivoIni.h"
#include "platform/Ficheros.h"
#include "tests/soporte/CarpetaTemporal.h"

namespace bn {
namespace {

class PruebaArchivoIni : public testing::Test {
 protected:
    /// A fresh reader: what another program would find.
    std::string leer(const std::string& seccion, const std::string& clave) const {
        ArchivoIni archivo(discoDelSistema());
        archivo.Fichero(ruta);
        archivo.Seccion(seccion);
        return archivo.Leer(clave);
    }

    void escribir(const std::string& seccion, const std::string& clave,
                  const std::string& valor) const {
        ArchivoIni archivo(discoDelSistema());
        archivo.Fichero(ruta);
        archivo.Seccion(seccion);
        archivo.Escribir(clave, valor);
        archivo.Guardar();
    }

    /// The file after one key was written into it.
    std::string tras(const std::string& antes, const std::string& seccion, const std::string& clave,
                     const std::string& valor) const {
        prueba::escribirFichero(ruta, antes);
        escribir(seccion, clave, valor);
        return prueba::leerFichero(ruta);
    }

    prueba::CarpetaTemporal carpeta;
    std::filesystem::path ruta = carpeta / "a.ini";
};
using ArchivoIniLee = PruebaArchivoIni;
using ArchivoIniEscribe = PruebaArchivoIni;
using ArchivoIniCodifica = PruebaArchivoIni;

TEST_F(ArchivoIniLee, NothingFromAMissingFileSectionOrKey) {
    EXPECT_EQ(leer("A", "k"), "");
    prueba::escribirFichero(ruta, "[A]\r\nk=1\r\n");
    EXPECT_EQ(leer("B", "k"), "");
    EXPECT_EQ(leer("A", "l"), "");
    EXPECT_EQ(leer("A", ""), "");
    EXPECT_FALSE(std::filesystem::exists(carpeta / "b.ini"));
}

TEST_F(ArchivoIniLee, TheKeyOfTheRightSection) {
    prueba::escribirFichero(ruta, "k=0\r\n[A]\r\nk=1\r\nl=2\r\n[B]\r\nk=3\r\n");
    EXPECT_EQ(leer("A", "k"), "1");
    EXPECT_EQ(leer("A", "l"), "2");
    EXPECT_EQ(leer("B", "k"), "3");
    EXPECT_EQ(leer("B", "l"), "");
}

TEST_F(ArchivoIniLee, NamesInAnyLetterCaseAlsoSpanishOnes) {
    prueba::escribirFichero(ruta, "[gEnErAl]\r\nCANAL=1\r\n[AÑO]\r\nPeñón=x\r\n");
    EXPECT_EQ(leer("General", "Canal"), "1");
    EXPECT_EQ(leer("año", "PEÑÓN"), "x");
}

TEST_F(ArchivoIniLee, BlanksAroundKeyAndValueAreNoPartOfThem) {
    prueba::escribirFichero(ruta, "  [ A b ]  \r\n\t k l \t= \t x  y \t\r\n");
    EXPECT_EQ(leer("A b", "k l"), "x  y");
    EXPECT_EQ(leer("Ab", "k l"), "");
    EXPECT_EQ(leer("A b", "kl"), "");
}

TEST_F(ArchivoIniLee, AValueMayHoldEqualsSignsSemicolonsAndBrackets) {
    prueba::escribirFichero(ruta, "[A]\nk=a=b;c#d [e]\nl=;\nm==\n");
    EXPECT_EQ(leer("A", "k"), "a=b;c#d [e]");
    EXPECT_EQ(leer("A", "l"), ";");
    EXPECT_EQ(leer("A", "m"), "=");
}

TEST_F(ArchivoIniLee, CommentsAreNotKeys) {
    prueba::escribirFichero(ruta, "[A]\n;k=1\n # k=2\n ;[B]\nk=3\n");
    EXPECT_EQ(leer("A", "k"), "3");
    EXPECT_EQ(leer("A", ";k"), "");
    EXPECT_EQ(leer("B", "k"), "");
}

TEST_F(ArchivoIniLee, TheFirstOfSeveralEqualNames) {
    prueba::escribirFichero(ruta, "[A]\nk=1\nk=2\n[B]\nx=9\n[a]\nk=3\nl=4\n");
    EXPECT_EQ(leer("A", "k"), "1");
    EXPECT_EQ(leer("A", "l"), "4");
}

TEST_F(ArchivoIniLee, EveryKindOfLineEndAndALastLineWithoutOne) {
    prueba::escribirFichero(ruta, "[A]\rk=1\r\nl=2\nm=3\r\r\n\nn=4");
    EXPECT_EQ(leer("A", "k"), "1");
    EXPECT_EQ(leer("A", "l"), "2");
    EXPECT_EQ(leer("A", "m"), "3");
    EXPECT_EQ(leer("A", "n"), "4");
}

TEST_F(ArchivoIniLee, LinesThatMakeNoSenseAreSkipped) {
    prueba::escribirFichero(ruta, "garbage\n[A]\n[unclosed\n=x\nword\n]\n[]\n[A] ; note\nk=1\n");
    EXPECT_EQ(leer("A", "k"), "1");
    EXPECT_EQ(leer("A", "word"), "");
    EXPECT_EQ(leer("unclosed", "k"), "");
}

TEST_F(ArchivoIniLee, TheFileOnceWhenFirstNeeded) {
    ArchivoIni archivo(discoDelSistema());
    archivo.Fichero(ruta);
    archivo.Seccion("A");
    prueba::escribirFichero(ruta, "[A]\nk=1\n");
    EXPECT_EQ(archivo.Leer("k"), "1");
    prueba::escribirFichero(ruta, "[A]\nk=2\n");
    EXPECT_EQ(archivo.Leer("k"), "1");
    archivo.Fichero(ruta);
    EXPECT_EQ(archivo.Leer("k"), "2");
}

TEST_F(ArchivoIniLee, AnUnreadableFileIsAnErrorEveryTime) {
    std::filesystem::create_directory(ruta);
    ArchivoIni archivo(discoDelSistema());
    archivo.Fichero(ruta);
    archivo.Seccion("A");
    EXPECT_THROW(archivo.Leer("k"), ErrorFichero);
    EXPECT_THROW(archivo.Leer("k"), ErrorFichero);
    EXPECT_THROW(archivo.Escribir("k", "1"), ErrorFichero);
    EXPECT_THROW(archivo.Guardar(), ErrorFichero);
}

TEST_F(ArchivoIniEscribe, NothingToTheFileBeforeGuardar) {
    ArchivoIni archivo(discoDelSistema());
    archivo.Fichero(ruta);
    archivo.Seccion("A");
    archivo.Escribir("k", "1");
    EXPECT_EQ(archivo.Leer("k"), "1");
    EXPECT_FALSE(std::filesystem::exists(ruta));
    archivo.Guardar();
    EXPECT_EQ(prueba::leerFichero(ruta), "[A]\r\nk=1\r\n");
    archivo.Escribir("k", "2");
    archivo.Guardar();
    EXPECT_EQ(prueba::leerFichero(ruta), "[A]\r\nk=2\r\n");
}

TEST_F(ArchivoIniEscribe, ANewFileWithoutMarkAndBlankLines) {
    ArchivoIni archivo(discoDelSistema());
    archivo.Fichero(ruta);
    archivo.Seccion("Añada");
    archivo.Escribir("k", "1");
    archivo.Escribir("l", "");
    archivo.Seccion("B");
    archivo.Escribir("k", "ñ");
    archivo.Seccion("AÑADA");
    archivo.Escribir("m", "3");
    archivo.Guardar();
    EXPECT_EQ(prueba::leerFichero(ruta), "[Añada]\r\nk=1\r\nl=\r\nm=3\r\n[B]\r\nk=ñ\r\n");
}

TEST_F(ArchivoIniEscribe, AKeyIntoItsPlaceAndNothingElse) {
    const std::string antes =
        "; head\r\n\r\n[A]\r\n# note\r\n k = 1 \r\nforeign\r\n\r\n[B]\r\nk=5\r\n\r\n";
    EXPECT_EQ(tras(antes, "a", "K", "7"),
              "; head\r\n\r\n[A]\r\n# note\r\nk=7\r\nforeign\r\n\r\n[B]\r\nk=5\r\n\r\n");
}

TEST_F(ArchivoIniEscribe, ANewKeyBehindTheLastLineOfItsSectionThatIsNotBlank) {
    EXPECT_EQ(tras("[A]\r\nk=1\r\n; note\r\n\r\n \r\n[B]\r\n", "A", "l", "2"),
              "[A]\r\nk=1\r\n; note\r\nl=2\r\n\r\n \r\n[B]\r\n");
    EXPECT_EQ(tras("[A]\r\n\r\n[B]\r\n", "A", "l", "2"), "[A]\r\nl=2\r\n\r\n[B]\r\n");
    EXPECT_EQ(tras("[A]\r\nk=1", "A", "l", "2"), "[A]\r\nk=1\r\nl=2\r\n");
}

TEST_F(ArchivoIniEscribe, ANewSectionAtTheEnd) {
    EXPECT_EQ(tras("[A]\r\nk=1\r\n\r\n", "B", "l", "2"), "[A]\r\nk=1\r\n\r\n[B]\r\nl=2\r\n");
    EXPECT_EQ(tras("no end of line", "B", "l", "2"), "no end of line\r\n[B]\r\nl=2\r\n");
    EXPECT_EQ(tras("", "B", "l", "2"), "[B]\r\nl=2\r\n");
}

TEST_F(ArchivoIniEscribe, AKeyOfADoubledSectionWhereItStands) {
    const std::string antes = "[A]\r\nk=1\r\n[B]\r\n[A]\r\nk=2\r\nl=3\r\n";
    EXPECT_EQ(tras(antes, "A", "l", "9"), "[A]\r\nk=1\r\n[B]\r\n[A]\r\nk=2\r\nl=9\r\n");
    EXPECT_EQ(tras(antes, "A", "k", "9"), "[A]\r\nk=9\r\n[B]\r\n[A]\r\nk=2\r\nl=3\r\n");
    EXPECT_EQ(tras(antes, "A", "m", "9"), "[A]\r\nk=1\r\nm=9\r\n[B]\r\n[A]\r\nk=2\r\nl=3\r\n");
}

TEST_F(ArchivoIniEscribe, EveryLineEndAsCarriageReturnAndLineFeed) {
    EXPECT_EQ(tras("a\nb\rc\r\n\n[A]\nk=1", "A", "k", "2"), "a\r\nb\r\nc\r\n\r\n[A]\r\nk=2\r\n");
}

TEST_F(ArchivoIniEscribe, AValueWithLineBreaksIntoOneLine) {
    EXPECT_EQ(tras("", "A", "k", "1\r\n[B]\nl=2\rm"), "[A]\r\nk=1 [B] l=2 m\r\n");
    EXPECT_EQ(leer("B", "l"), "");
    EXPECT_EQ(tras("", "A\n[B]", "k\r\nl", "1"), "[A [B]]\r\nk l=1\r\n");
}

TEST_F(ArchivoIniEscribe, ValuesThatComeBackAsTheyWere) {
    for (const char* valor : {"",
                              " ",
                              "  x",
                              "x  ",
                              "\tx\t",
                              "\"",
                              "\"\"",
                              "\"x\"",
                              "\" x\"",
                              "\"\" x\"\"",
                              " \"x\" ",
                              "\"x",
                              "a \"b\" c",
                              "=",
                              ";",
                              "[A]",
                              "k=1",
                              "\"a\";;\"b\"",
                              "\" a\";;\"b \"",
                              "'x '",
                              "ñ€→😀"}) {
        tras("[A]\r\nk=old\r\nl=1\r\n", "A", "k", valor);
        EXPECT_EQ(leer("A", "k"), valor);
        EXPECT_EQ(leer("A", "l"), "1");
    }
}

TEST_F(ArchivoIniEscribe, QuotationMarksOnlyWhereOuterBlanksNeedThem) {
    EXPECT_EQ(tras("", "A", "k", "\"a\";;\"b\""), "[A]\r\nk=\"a\";;\"b\"\r\n");
    EXPECT_EQ(tras("", "A", "k", "x "), "[A]\r\nk=\"x \"\r\n");
}

TEST_F(ArchivoIniEscribe, TheFileAlsoWhenNothingWasSet) {
    prueba::escribirFichero(ruta, "[A]\nk=1");
    ArchivoIni archivo(discoDelSistema());
    archivo.Fichero(ruta);
    archivo.Guardar();
    EXPECT_EQ(prueba::leerFichero(ruta), "[A]\r\nk=1\r\n");
}

TEST_F(ArchivoIniEscribe, NothingWhenTheFileCannotBeReplaced) {
    ArchivoIni archivo(discoDelSistema());
    archivo.Fichero(carpeta / "missing" / "a.ini");
    archivo.Seccion("A");
    archivo.Escribir("k", "1");
    EXPECT_THROW(archivo.Guardar(), ErrorFichero);
    EXPECT_THAT(carpeta.nombres(), testing::IsEmpty());
}

TEST_F(ArchivoIniCodifica, AUtf8FileStaysUtf8WithItsMark) {
    EXPECT_EQ(tras("\xEF\xBB\xBF[A]\r\nk=ñ\r\n", "A", "l", "€"),
              "\xEF\xBB\xBF[A]\r\nk=ñ\r\nl=€\r\n");
    EXPECT_EQ(leer("A", "k"), "ñ");
    EXPECT_EQ(leer("A", "l"), "€");
    EXPECT_EQ(tras("\xEF\xBB\xBF", "A", "k", "1"), "\xEF\xBB\xBF[A]\r\nk=1\r\n");
}

TEST_F(ArchivoIniCodifica, AUtf8FileWithoutMarkGetsNone) {
    EXPECT_EQ(tras("[A]\r\nk=ñ\r\n", "A", "l", "€"), "[A]\r\nk=ñ\r\nl=€\r\n");
}

TEST_F(ArchivoIniCodifica, AWindows1252FileStaysSo) {
    prueba::escribirFichero(ruta, "; a\xF1o\r\n[A]\r\nk=B\xE1scula \x80\r\n");
    EXPECT_EQ(leer("A", "k"), "Báscula €");
    escribir("A", "l", "Ñ…");
    EXPECT_EQ(prueba::leerFichero(ruta), "; a\xF1o\r\n[A]\r\nk=B\xE1scula \x80\r\nl=\xD1\x85\r\n");
    EXPECT_EQ(leer("A", "l"), "Ñ…");
}

TEST_F(ArchivoIniCodifica, EveryByteOfAWindows1252FileIsKept) {
    std::string comentario = "; ";
    for (int i = 0; i < 256; ++i) {
        if (i != '\r' && i != '\n') {
            comentario.push_back(static_cast<char>(i));
        }
    }
    EXPECT_EQ(tras(comentario + "\r\n[A]\r\nk=1\r\n", "A", "k", "2"),
              comentario + "\r\n[A]\r\nk=2\r\n");
}

TEST_F(ArchivoIniCodifica, AWindows1252FileBecomesUtf8ForAValueThatItCannotHold) {
    EXPECT_EQ(tras("[A]\r\nk=\xF1\r\n", "A", "l", "→"), "[A]\r\nk=ñ\r\nl=→\r\n");
    EXPECT_EQ(leer("A", "k"), "ñ");
}

TEST_F(ArchivoIniCodifica, AWindows1252FileThatWouldBeTakenForUtf8BecomesUtf8) {
    EXPECT_EQ(tras("[A]\r\nk=\xF1\r\n", "A", "k", "Ã±"), "[A]\r\nk=Ã±\r\n");
    EXPECT_EQ(leer("A", "k"), "Ã±");
}

TEST_F(ArchivoIniCodifica, AValueThatIsNoUtf8DoesNotSpoilTheFile) {
    EXPECT_EQ(tras("[A]\r\nk=ñ\r\n", "A", "l", "x\xFFy"), "[A]\r\nk=ñ\r\nl=x\uFFFDy\r\n");
}

TEST_F(ArchivoIniCodifica, AMarkBeforeADamagedTextDoesNotHideTheFirstSection) {
    prueba::escribirFichero(ruta, "\xEF\xBB\xBF[A]\r\nk=\xF1\r\n");
    EXPECT_EQ(leer("A", "k"), "ñ");
}

/// Ten million bytes of what no hand writes: read, written into and saved without delay.
class ArchivoIniAguanta : public PruebaArchivoIni,
                          public testing::WithParamInterface<const char*> {};

TEST_P(ArchivoIniAguanta, AHugeFileOfGarbage) {
    const std::string trozo(GetParam());
    std::string basura = "[General]\nk=1\n";
    while (basura.size() < 10'000'000) {
        basura += trozo == "nul" ? std::string(5000, '\0') : trozo;
    }
    prueba::escribirFichero(ruta, basura);
    const auto inicio = std::chrono::steady_clock::now();
    ArchivoIni archivo(discoDelSistema());
    archivo.Fichero(ruta);
    archivo.Seccion("General");
    EXPECT_EQ(archivo.Leer("k"), "1");
    for (const std::string clave : {"a", "b", "c", "d", "e", "f", "g", "h", "i", "j"}) {
        EXPECT_EQ(archivo.Leer(clave), "");
    }
    archivo.Seccion("Z");
    archivo.Escribir("k", "2");
    archivo.Guardar();
    EXPECT_LT(std::chrono::steady_clock::now() - inicio, std::chrono::seconds(20));
    EXPECT_TRUE(prueba::leerFichero(ruta).ends_with("[Z]\r\nk=2\r\n"));
}

INSTANTIATE_TEST_SUITE_P(Basura, ArchivoIniAguanta,
                         testing::Values("x", "[", "]", "=", "nul", "\xFF", "\xC3\xB1", "\r", "\n",
                                         "[\n", "[]\n", "=\n", "xyz=\n", "\"", ";\r"),
                         [](const auto& caso) { return "Caso" + std::to_string(caso.index); });

}  // namespace
}  // namespace bn
