// SPDX-License-Identifier: MIT
// How the settings come from their file and go back into it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "config/Codificacion.h"
#include "config/Setup.h"
#include "platform/Ficheros.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/PlataformaDePrueba.h"

namespace bn {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const char* const kPorDefecto =
    "[General]\r\n"
    "Canal=1\r\n"
    "Param=9600,N,8,1\r\n"
    "Caracteres=2;3;84;6\r\n"
    "TimeOut=600;4\r\n"
    "Autom=30;False\r\n"
    "Checksum=0\r\n"
    "[Excel]\r\n"
    "Uso=True\r\n"
    "Libro=Pesadas.xls\r\n"
    "Hoja=Pesadas\r\n"
    "Columnas=1;2;3;4;5;6;7;8\r\n"
    "[Texto]\r\n"
    "Uso=True\r\n"
    "Destino=Pesadas.txt\r\n"
    "Columnas=1,16;18,8;27,7;35,8;44,8;53,8;62,7;70,7\r\n"
    "Formatos=dd/mm/yyyy hh:nn;;0000000;00000000;00000000;00000000;######0;######0\r\n";

class SetupIni : public testing::Test {
 protected:
    /// The text of what creating a Setup throws; "" when it can be created.
    template <class Error>
    std::string errorCon(const std::string& contenido) {
        prueba::escribirFichero(ini, contenido);
        try {
            const bn::Setup setup(plataforma);
        } catch (const Error& error) {
            EXPECT_EQ(prueba::leerFichero(ini), contenido)
                << "a file not understood stays as it is";
            return error.what();
        }
        return "";
    }

    prueba::CarpetaTemporal carpeta;
    PlataformaDePrueba plataforma{carpeta.ruta()};
    std::filesystem::path ini = carpeta / "bnDX5.ini";
};

TEST_F(SetupIni, WithoutAFileEverySettingHasItsDefault) {
    plataforma.documentos = "/home/Begoña";
    const auto enDocumentos = [this](const char* nombre) {
        return bn::ficheros::aTexto(bn::ficheros::aRuta(plataforma.documentos) / nombre);
    };
    const bn::Setup setup(plataforma);
    EXPECT_EQ(setup.canal(), 1);
    EXPECT_EQ(setup.Params(), "9600,N,8,1");
    EXPECT_EQ(setup.CaracterInicial(), "\x02");
    EXPECT_EQ(setup.CaracterFinal(), "\x03");
    EXPECT_EQ(setup.CaracterPesada(), "T");
    EXPECT_EQ(setup.CaracterPeticion(), "\x06");
    EXPECT_EQ(setup.Timeout(), 600);
    EXPECT_EQ(setup.MaxRetrys(), 4);
    EXPECT_EQ(setup.AutoCadaXSegs(), 30);
    EXPECT_FALSE(setup.EjecutarMinimizado());
    EXPECT_EQ(setup.Checksum(), 0);
    EXPECT_TRUE(setup.UsoExcel());
    EXPECT_EQ(setup.LibroExcel(), enDocumentos("Pesadas.xls"));
    EXPECT_EQ(setup.HojaExcel(), "Pesadas");
    EXPECT_TRUE(setup.UsoTexto());
    EXPECT_EQ(setup.ArchivoTexto(), enDocumentos("Pesadas.txt"));
    const std::array<int16_t, 8> posiciones = {1, 18, 27, 35, 44, 53, 62, 70};
    const std::array<int16_t, 8> largos = {16, 8, 7, 8, 8, 8, 7, 7};
    const std::array<std::string, 8> formatos = {"dd/mm/yyyy hh:nn", "",         "0000000",
                                                 "00000000",         "00000000", "00000000",
                                                 "######0",          "######0"};
    for (int32_t i = 0; i < kCamposPesada; ++i) {
        const auto k = static_cast<std::size_t>(i);
        EXPECT_EQ(setup.ColumnaExcel(i), i + 1);
        EXPECT_EQ(setup.Posicion(i), posiciones[k]);
        EXPECT_EQ(setup.Largo(i), largos[k]);
        EXPECT_EQ(setup.Formato(i), formatos[k]);
    }
    EXPECT_FALSE(std::filesystem::exists(ini)) << "creating writes nothing";
}

TEST_F(SetupIni, TheDefaultPathsLieInTheDocumentsFolderOrAreBareNames) {
    plataforma.documentos = "/docs/";
    EXPECT_EQ(bn::Setup(plataforma).LibroExcel(), "/docs/Pesadas.xls");
    std::filesystem::remove(ini);
    plataforma.documentos = "";
    const bn::Setup setup(plataforma);
    EXPECT_EQ(setup.LibroExcel(), "Pesadas.xls");
    EXPECT_EQ(setup.ArchivoTexto(), "Pesadas.txt");
}

TEST_F(SetupIni, UpdateWritesTheDefaultsByteForByte) {
    bn::Setup setup(plataforma);
    setup.Update();
    EXPECT_EQ(prueba::leerFichero(ini), kPorDefecto);
    EXPECT_THAT(carpeta.nombres(), ElementsAre("bnDX5.ini"));
}

TEST_F(SetupIni, ReleaseWritesTheFileEvenWhenItWasOnlyRead) {
    { const bn::Setup setup(plataforma); }
    EXPECT_EQ(prueba::leerFichero(ini), kPorDefecto);
    { const bn::Setup setup(plataforma); }
    EXPECT_EQ(prueba::leerFichero(ini), kPorDefecto);
    EXPECT_THAT(plataforma.mensajes, IsEmpty());
}

TEST_F(SetupIni, EverySettingIsWrittenAndReadBack) {
    bn::Setup uno(plataforma);
    uno.canal(16);
    uno.Params("19200,e,7,2");
    uno.CaracterInicial("A");
    uno.CaracterFinal("\xFF");
    uno.CaracterPesada(std::string(1, '\0'));
    uno.cPeticion(21);
    uno.Timeout(32000);
    uno.MaxRetrys(32);
    uno.Checksum(2);
    uno.AutoCadaXSegs(32767);
    uno.EjecutarMinimizado(true);
    uno.LibroExcel("C:\\Año 2024\\Báscula; €.xls");
    uno.HojaExcel("Hoja = 1");
    uno.ColumnaExcel(0, 702);
    uno.ColumnaExcel(1, 0);
    uno.UsoExcel(false);
    uno.ArchivoTexto("/x/ñ.txt");
    uno.UsoTexto(false);
    uno.Posicion(3, 0);
    uno.Largo(7, 80);
    uno.Formato(1, ">@@@@");
    uno.Update();
    EXPECT_EQ(prueba::leerFichero(ini),
              "[General]\r\nCanal=16\r\nParam=19200,e,7,2\r\nCaracteres=65;255;0;21\r\n"
              "TimeOut=32000;32\r\nAutom=32767;True\r\nChecksum=2\r\n"
              "[Excel]\r\nUso=False\r\nLibro=C:\\Año 2024\\Báscula; €.xls\r\nHoja=Hoja = 1\r\n"
              "Columnas=702;0;3;4;5;6;7;8\r\n"
              "[Texto]\r\nUso=False\r\nDestino=/x/ñ.txt\r\n"
              "Columnas=1,16;18,8;27,7;0,0;44,8;53,8;62,7;70,80\r\n"
              "Formatos=dd/mm/yyyy hh:nn;>@@@@;0000000;;00000000;00000000;######0;######0\r\n");
    bn::Setup dos(plataforma);
    EXPECT_EQ(dos.canal(), 16);
    EXPECT_EQ(dos.Params(), "19200,e,7,2");
    EXPECT_EQ(dos.CaracterInicial(), "A");
    EXPECT_EQ(dos.CaracterFinal(), "\xFF");
    EXPECT_EQ(dos.CaracterPesada(), std::string(1, '\0'));
    EXPECT_EQ(dos.CaracterPeticion(), "\x15");
    EXPECT_EQ(dos.Timeout(), 32000);
    EXPECT_EQ(dos.MaxRetrys(), 32);
    EXPECT_EQ(dos.Checksum(), 2);
    EXPECT_EQ(dos.AutoCadaXSegs(), 32767);
    EXPECT_TRUE(dos.EjecutarMinimizado());
    EXPECT_EQ(dos.LibroExcel(), "");
    EXPECT_EQ(dos.ArchivoTexto(), "");
    dos.UsoExcel(true);
    dos.UsoTexto(true);
    EXPECT_EQ(dos.LibroExcel(), "C:\\Año 2024\\Báscula; €.xls");
    EXPECT_EQ(dos.HojaExcel(), "Hoja = 1");
    EXPECT_EQ(dos.ArchivoTexto(), "/x/ñ.txt");
    EXPECT_EQ(dos.ColumnaExcel(0), 702);
    EXPECT_EQ(dos.ColumnaExcel(1), 0);
    EXPECT_EQ(dos.Posicion(3), 0);
    EXPECT_EQ(dos.Largo(7), 80);
    EXPECT_EQ(dos.Formato(1), ">@@@@");
    EXPECT_EQ(dos.Formato(3), "");
}

TEST_F(SetupIni, ASecondObjectSeesWhatTheFirstWroteWithUpdateOnly) {
    bn::Setup uno(plataforma);
    uno.canal(5);
    EXPECT_EQ(bn::Setup(plataforma).canal(), 1);
    uno.Update();
    EXPECT_EQ(bn::Setup(plataforma).canal(), 5);
    uno.canal(6);
    uno.Update();
    EXPECT_EQ(bn::Setup(plataforma).canal(), 6);
}

TEST_F(SetupIni, MissingAndEmptyKeysKeepTheirDefaults) {
    prueba::escribirFichero(
        ini, "[General]\nCanal=\nParam= \nTimeOut=700\n[Excel]\nHoja=\nUso=\n[Texto]\nUso=\n");
    const bn::Setup setup(plataforma);
    EXPECT_EQ(setup.canal(), 1);
    EXPECT_EQ(setup.Params(), "9600,N,8,1");
    EXPECT_EQ(setup.Timeout(), 700);
    EXPECT_EQ(setup.MaxRetrys(), 4);
    EXPECT_EQ(setup.HojaExcel(), "Pesadas");
    EXPECT_TRUE(setup.UsoExcel());
    EXPECT_TRUE(setup.UsoTexto());
}

TEST_F(SetupIni, ShortListsSetTheirFirstFieldsOnly) {
    prueba::escribirFichero(ini,
                            "[General]\nCaracteres=5;4\nAutom=12\n[Excel]\nColumnas=9;10\n"
                            "[Texto]\nColumnas=3,4\nFormatos=a;b\n");
    const bn::Setup setup(plataforma);
    EXPECT_EQ(setup.CaracterInicial(), "\x05");
    EXPECT_EQ(setup.CaracterFinal(), "\x04");
    EXPECT_EQ(setup.CaracterPesada(), "T");
    EXPECT_EQ(setup.CaracterPeticion(), "\x06");
    EXPECT_EQ(setup.AutoCadaXSegs(), 12);
    EXPECT_FALSE(setup.EjecutarMinimizado());
    EXPECT_EQ(setup.ColumnaExcel(1), 10);
    EXPECT_EQ(setup.ColumnaExcel(2), 3);
    EXPECT_EQ(setup.Posicion(0), 3);
    EXPECT_EQ(setup.Largo(0), 4);
    EXPECT_EQ(setup.Posicion(1), 18);
    EXPECT_EQ(setup.Formato(1), "b");
    EXPECT_EQ(setup.Formato(2), "0000000");
}

TEST_F(SetupIni, ItemsBeyondTheLastFieldAreIgnoredWhateverTheyAre) {
    prueba::escribirFichero(
        ini,
        "[General]\nCaracteres=1;2;3;4;99999\nTimeOut=1;2;99999\nAutom=1;True;x\n"
        "[Excel]\nColumnas=8;7;6;5;4;3;2;1;99999\n"
        "[Texto]\nColumnas=1,1;2,1;3,1;4,1;5,1;6,1;7,1;8,1,5;no comma\n"
        "Formatos=1;2;3;4;5;6;7;8;9\n");
    const bn::Setup setup(plataforma);
    EXPECT_EQ(setup.CaracterPeticion(), "\x04");
    EXPECT_EQ(setup.MaxRetrys(), 2);
    EXPECT_TRUE(setup.EjecutarMinimizado());
    EXPECT_EQ(setup.ColumnaExcel(7), 1);
    EXPECT_EQ(setup.Posicion(7), 8);
    EXPECT_EQ(setup.Largo(7), 1);
    EXPECT_EQ(setup.Formato(7), "8");
}

TEST_F(SetupIni, AnEmptyItemKeepsItsPlace) {
    prueba::escribirFichero(ini, "[General]\nCaracteres=2;;84;\n[Texto]\nFormatos=;;;;;;;\n");
    const bn::Setup setup(plataforma);
    EXPECT_EQ(setup.CaracterFinal(), std::string(1, '\0'));
    EXPECT_EQ(setup.CaracterPeticion(), std::string(1, '\0'));
    for (int32_t i = 0; i < kCamposPesada; ++i) {
        EXPECT_EQ(setup.Formato(i), "");
    }
}

TEST_F(SetupIni, NumbersAreReadFromTheStartOfTheTextAndRoundedToEven) {
    prueba::escribirFichero(
        ini, "[General]\nCanal= 7abc\nTimeOut=1e3;2.5\nChecksum=abc\nAutom=3.5 s;x\n");
    const bn::Setup setup(plataforma);
    EXPECT_EQ(setup.canal(), 7);
    EXPECT_EQ(setup.Timeout(), 1000);
    EXPECT_EQ(setup.MaxRetrys(), 2);
    EXPECT_EQ(setup.Checksum(), 0);
    EXPECT_EQ(setup.AutoCadaXSegs(), 4);
}

TEST_F(SetupIni, LoadingChecksNothing) {
    prueba::escribirFichero(
        ini,
        "[General]\nCanal=99\nParam=14400,N,8,1,X\nTimeOut=-5;99\nAutom=-3\nChecksum=9\n"
        "[Excel]\nHoja=a.b*,c\nColumnas=-1;2;2;2\n[Texto]\nColumnas=0,99;500,-1;500,0\n");
    bn::Setup setup(plataforma);
    EXPECT_EQ(setup.canal(), 99);
    EXPECT_EQ(setup.Params(), "14400,N,8,1,X");
    EXPECT_EQ(setup.Timeout(), -5);
    EXPECT_EQ(setup.MaxRetrys(), 99);
    EXPECT_EQ(setup.AutoCadaXSegs(), -3);
    EXPECT_EQ(setup.Checksum(), 9);
    EXPECT_EQ(setup.HojaExcel(), "a.b*,c");
    EXPECT_EQ(setup.ColumnaExcel(0), -1);
    EXPECT_EQ(setup.ColumnaExcel(3), 2);
    EXPECT_EQ(setup.Posicion(0), 0);
    EXPECT_EQ(setup.Largo(0), 99);
    EXPECT_EQ(setup.Formato(0), "dd/mm/yyyy hh:nn");
    EXPECT_EQ(setup.Posicion(2), 500);
    EXPECT_EQ(setup.Formato(2), "0000000");
    setup.Update();
    EXPECT_THAT(prueba::leerFichero(ini),
                AllOf(HasSubstr("Canal=99\r\n"), HasSubstr("TimeOut=-5;99\r\n"),
                      HasSubstr("Columnas=-1;2;2;2;5;6;7;8\r\n")));
}

TEST_F(SetupIni, ACodeBeyondAByteIsKeptAndGivesItsLowByte) {
    prueba::escribirFichero(ini, "[General]\nCaracteres=321;-1;256;32767\n");
    bn::Setup setup(plataforma);
    EXPECT_EQ(setup.CaracterInicial(), "A");
    EXPECT_EQ(setup.CaracterFinal(), "\xFF");
    EXPECT_EQ(setup.CaracterPesada(), std::string(1, '\0'));
    EXPECT_EQ(setup.CaracterPeticion(), "\xFF");
    setup.Update();
    EXPECT_THAT(prueba::leerFichero(ini), HasSubstr("Caracteres=321;-1;256;32767\r\n"));
}

TEST_F(SetupIni, AChannelOf32BitsIsKeptButDoesNotFitItsGet) {
    prueba::escribirFichero(ini, "[General]\nCanal=40000\n");
    bn::Setup setup(plataforma);
    EXPECT_THROW(setup.canal(), std::overflow_error);
    setup.Update();
    EXPECT_THAT(prueba::leerFichero(ini), HasSubstr("Canal=40000\r\n"));
    setup.canal(3);
    EXPECT_EQ(setup.canal(), 3);
}

TEST_F(SetupIni, BooleansAreReadInEveryKnownForm) {
    for (const char* si : {"True", "Verdadero", "1", "-1", "Sí", "SÍ", "tRuE"}) {
        prueba::escribirFichero(
            ini, std::string("[General]\nAutom=5;") + si + "\n[Texto]\nUso=" + si + "\n");
        const bn::Setup setup(plataforma);
        EXPECT_TRUE(setup.EjecutarMinimizado()) << si;
        EXPECT_TRUE(setup.UsoTexto()) << si;
    }
    for (const char* no : {"False", "Falso", "0", "No", "quizás"}) {
        prueba::escribirFichero(ini,
                                std::string("[Excel]\nUso=") + no + "\n[Texto]\nUso=" + no + "\n");
        const bn::Setup setup(plataforma);
        EXPECT_FALSE(setup.UsoExcel()) << no;
        EXPECT_FALSE(setup.UsoTexto()) << no;
    }
}

TEST_F(SetupIni, ANumberTooLargeForItsFieldIsAnErrorThatNamesFileKeyAndValue) {
    const std::string ruta = ficheros::aTexto(ini);
    EXPECT_EQ(errorCon<std::overflow_error>("[General]\nTimeOut=600;32768\n"),
              ruta + ": [General] TimeOut: el número \"32768\" no cabe entre -32768 y 32767");
    EXPECT_EQ(errorCon<std::overflow_error>("[general]\nCANAL=2147483648x\n"),
              ruta +
                  ": [General] Canal: el número \"2147483648x\" no cabe entre -2147483648 y "
                  "2147483647");
    for (const char* malo :
         {"[General]\nCanal=-2147483649", "[General]\nCanal=1e999", "[General]\nCaracteres=32767.5",
          "[General]\nAutom=40000", "[General]\nChecksum=-32769", "[Excel]\nColumnas=1;2;3;99999",
          "[Texto]\nColumnas=1,99999", "[Texto]\nColumnas=99999,1"}) {
        EXPECT_NE(errorCon<std::overflow_error>(malo), "") << malo;
    }
    EXPECT_EQ(errorCon<std::overflow_error>("[General]\nCanal=2147483647\nChecksum=32767.4"), "");
    EXPECT_THAT(plataforma.mensajes, IsEmpty());
}

TEST_F(SetupIni, ATextColumnWithoutItsWidthIsAnErrorThatNamesFileKeyAndValue) {
    EXPECT_EQ(errorCon<std::runtime_error>("[Texto]\nColumnas=1,16;18;27,7\n"),
              ficheros::aTexto(ini) + ": [Texto] Columnas: a la columna \"18\" le falta su ancho");
    EXPECT_NE(errorCon<std::runtime_error>("[Texto]\nColumnas=1,16;\n"), "");
    EXPECT_NE(errorCon<std::runtime_error>("[Texto]\nColumnas=x\n"), "");
}

TEST_F(SetupIni, AnErrorQuotesOnlyTheBeginningOfAnOverlongValue) {
    const std::string error =
        errorCon<std::runtime_error>("[Texto]\nColumnas=" + std::string(1 << 20, 'x'));
    EXPECT_THAT(error, HasSubstr("\"" + std::string(60, 'x') + "...\""));
    EXPECT_LT(error.size(), 400U);
}

TEST_F(SetupIni, AFileThatCannotBeReadIsAnErrorToTheCreator) {
    std::filesystem::create_directory(ini);
    EXPECT_THROW(bn::Setup{plataforma}, ErrorFichero);
    EXPECT_THAT(plataforma.mensajes, IsEmpty());
}

TEST_F(SetupIni, UpdateThrowsWhatReleaseTellsTheUser) {
    const std::string esperado = ficheros::aTexto(ini) + ": es una carpeta";
    {
        bn::Setup setup(plataforma);
        std::filesystem::create_directory(ini);
        try {
            setup.Update();
            ADD_FAILURE() << "nothing thrown";
        } catch (const ErrorFichero& error) {
            EXPECT_EQ(error.what(), esperado);
        }
        EXPECT_THAT(plataforma.mensajes, IsEmpty());
    }
    EXPECT_THAT(plataforma.mensajes, ElementsAre(HasSubstr(esperado)));
    EXPECT_THAT(carpeta.nombres(), ElementsAre("bnDX5.ini"));
}

TEST_F(SetupIni, ForeignKeysCommentsAndBlankLinesStayAndTheFileIsReadAgainBeforeWriting) {
    prueba::escribirFichero(
        ini, "; mine\n\n[Puertos]\n1=/dev/ttyUSB0\n\n[Excel]\nMotor=interno\nhoja=Uno\n");
    {
        bn::Setup setup(plataforma);
        setup.HojaExcel("Dos");
        std::string texto = prueba::leerFichero(ini);
        prueba::escribirFichero(ini, texto.replace(texto.find("USB0"), 4, "USB7"));
    }
    EXPECT_EQ(prueba::leerFichero(ini),
              "; mine\r\n\r\n[Puertos]\r\n1=/dev/ttyUSB7\r\n\r\n[Excel]\r\nMotor=interno\r\n"
              "hoja=Dos\r\nUso=True\r\nLibro=Pesadas.xls\r\nColumnas=1;2;3;4;5;6;7;8\r\n"
              "[General]\r\nCanal=1\r\nParam=9600,N,8,1\r\nCaracteres=2;3;84;6\r\n"
              "TimeOut=600;4\r\nAutom=30;False\r\nChecksum=0\r\n"
              "[Texto]\r\nUso=True\r\nDestino=Pesadas.txt\r\n"
              "Columnas=1,16;18,8;27,7;35,8;44,8;53,8;62,7;70,7\r\n"
              "Formatos=dd/mm/yyyy hh:nn;;0000000;00000000;00000000;00000000;######0;######0\r\n");
}

TEST_F(SetupIni, AWindows1252FileIsReadAndStaysSo) {
    prueba::escribirFichero(ini, "[Excel]\r\nHoja=A\xF1o\r\nLibro=C:\\B\xE1scula.xls\r\n");
    {
        bn::Setup setup(plataforma);
        EXPECT_EQ(setup.HojaExcel(), "Año");
        EXPECT_EQ(setup.LibroExcel(), "C:\\Báscula.xls");
    }
    EXPECT_THAT(prueba::leerFichero(ini), HasSubstr("Hoja=A\xF1o\r\nLibro=C:\\B\xE1scula.xls\r\n"));
}

TEST_F(SetupIni, AFormatWithASemicolonSplitsAndShiftsTheLaterOnes) {
    {
        bn::Setup setup(plataforma);
        setup.Formato(0, "a;b");
    }
    const bn::Setup setup(plataforma);
    EXPECT_EQ(setup.Formato(0), "a");
    EXPECT_EQ(setup.Formato(1), "b");
    EXPECT_EQ(setup.Formato(2), "");
    EXPECT_EQ(setup.Formato(7), "######0");
}

TEST_F(SetupIni, AnyFormatsWithoutSemicolonsAndLineBreaksComeBackAsTheyWere) {
    constexpr std::u32string_view kLetras = U"  \t\"\"'=#0[],.@ad\\ñ€→😀";
    std::mt19937 azar(20240229);
    for (int vuelta = 0; vuelta < 200; ++vuelta) {
        std::array<std::string, kCamposPesada> formatos;
        {
            bn::Setup setup(plataforma);
            for (int32_t i = 0; i < kCamposPesada; ++i) {
                std::u32string formato(azar() % 5, U' ');
                for (char32_t& letra : formato) {
                    letra = kLetras[azar() % kLetras.size()];
                }
                formatos[static_cast<std::size_t>(i)] = u32AUtf8(formato);
                setup.Formato(i, formatos[static_cast<std::size_t>(i)]);
            }
        }
        const bn::Setup setup(plataforma);
        for (int32_t i = 0; i < kCamposPesada; ++i) {
            ASSERT_EQ(setup.Formato(i), formatos[static_cast<std::size_t>(i)]) << vuelta;
        }
    }
}

}  // namespace
}  // namespace bn
