// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <limits>

#include "config/Setup.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/PlataformaDePrueba.h"

namespace bn {
namespace {

class PruebaSetup : public testing::Test {
 protected:
    prueba::CarpetaTemporal carpeta;
    PlataformaDePrueba plataforma{carpeta.ruta()};
    bn::Setup setup{plataforma};
};

TEST_F(PruebaSetup, FieldsHaveTheirNames) {
    EXPECT_THAT(nombresDeCampos(),
                testing::ElementsAre("Fecha Hora", "Matrícula", "Nº Albarán", "Código A",
                                     "Código B", "Código C", "Peso Tara", "Peso Neto"));
}

TEST_F(PruebaSetup, TheChannelIsKeptFrom1To16) {
    for (const int16_t malo : std::initializer_list<int16_t>{0, -1, 17, 32767, -32768}) {
        setup.canal(malo);
        EXPECT_EQ(setup.canal(), 1) << malo;
    }
    for (int16_t bueno = 1; bueno <= 16; ++bueno) {
        setup.canal(bueno);
        EXPECT_EQ(setup.canal(), bueno);
    }
}

TEST_F(PruebaSetup, ParamsAcceptsEverySpeedParityAndWidth) {
    for (const char* velocidad : {"300", "600", "1200", "2400", "4800", "9600", "19200"}) {
        for (const char* resto : {",N,8,1", ",E,7,2", ",O,8,2", ",n,7,1", ",e,8,1", ",o,7,2"}) {
            const std::string valor = std::string(velocidad) + resto;
            setup.Params(valor);
            EXPECT_EQ(setup.Params(), valor);
        }
    }
}

TEST_F(PruebaSetup, ParamsDropsEverythingElse) {
    for (const char* malo :
         {"", "9600", "9600,", "14400,N,8,1", "9600,N,8,1,", "9600,N,8,1,X", "9600,N,8",
          "9600,N,9,1", "9600,M,8,1", "9600,N,8,3", "9600,NN,8,1", " 9600,N,8,1", "9600 ,N,8,1",
          "9600,N,8,1 ", "9600,N,8,1.5", "09600,N,8,1", ",N,8,1", "9600;N;8;1", "9600,[,8,1"}) {
        setup.Params(malo);
        EXPECT_EQ(setup.Params(), "9600,N,8,1") << malo;
    }
}

TEST_F(PruebaSetup, ACharacterIsStoredOnlyWhenItIsExactlyOneByte) {
    setup.CaracterInicial("AB");
    setup.CaracterInicial("");
    setup.CaracterInicial("ñ");  // two bytes in UTF-8
    EXPECT_EQ(setup.CaracterInicial(), "\x02");
    setup.CaracterInicial("A");
    setup.CaracterFinal("\xF1");
    setup.CaracterPesada(std::string(1, '\0'));
    setup.CaracterPeticion("\xFF");
    EXPECT_EQ(setup.CaracterInicial(), "A");
    EXPECT_EQ(setup.CaracterFinal(), "\xF1");
    EXPECT_EQ(setup.CaracterPesada(), std::string(1, '\0'));
    EXPECT_EQ(setup.CaracterPeticion(), "\xFF");
}

TEST_F(PruebaSetup, TheLongFormsTakeTheFirstCharacterAndNothingFromAnEmptyText) {
    setup.cInicial("AB");
    setup.cFinal("\xFFxyz");
    setup.cPesada(std::string("\0x", 2));
    setup.cPeticion("a");
    EXPECT_EQ(setup.CaracterInicial(), "A");
    EXPECT_EQ(setup.CaracterFinal(), "\xFF");
    EXPECT_EQ(setup.CaracterPesada(), std::string(1, '\0'));
    EXPECT_EQ(setup.CaracterPeticion(), "a");
    setup.cInicial("ñu");
    EXPECT_EQ(setup.CaracterInicial(), "\xF1") << "a text's first character, not its first byte";
    setup.cInicial("A");
    setup.cInicial("");
    setup.cFinal("");
    setup.cPesada("");
    setup.cPeticion("");
    EXPECT_EQ(setup.CaracterInicial(), "A");
    EXPECT_EQ(setup.CaracterFinal(), "\xFF");
    EXPECT_EQ(setup.CaracterPesada(), std::string(1, '\0'));
    EXPECT_EQ(setup.CaracterPeticion(), "a");
}

TEST_F(PruebaSetup, TheRequestTakesANumberFrom0To255) {
    setup.cPeticion(21);
    EXPECT_EQ(setup.CaracterPeticion(), "\x15");
    for (const double malo :
         {300.0, -1.0, 255.1, -0.1, 1e30, std::nan(""), std::numeric_limits<double>::infinity()}) {
        setup.cPeticion(malo);
        EXPECT_EQ(setup.CaracterPeticion(), "\x15") << malo;
    }
    setup.cPeticion(0);
    EXPECT_EQ(setup.CaracterPeticion(), std::string(1, '\0'));
    setup.cPeticion(255);
    EXPECT_EQ(setup.CaracterPeticion(), "\xFF");
    setup.cPeticion(64.5);
    EXPECT_EQ(setup.CaracterPeticion(), "@");
    setup.cPeticion(65.5);
    EXPECT_EQ(setup.CaracterPeticion(), "B");
}

TEST_F(PruebaSetup, NumbersOutOfTheirRangeAreDropped) {
    for (const int32_t malo : {0, -1, 32001, std::numeric_limits<int32_t>::max()}) {
        setup.Timeout(malo);
        EXPECT_EQ(setup.Timeout(), 600);
    }
    for (const int16_t malo : std::initializer_list<int16_t>{0, -1, 33}) {
        setup.MaxRetrys(malo);
        EXPECT_EQ(setup.MaxRetrys(), 4);
    }
    for (const int16_t malo : std::initializer_list<int16_t>{-1, 3}) {
        setup.Checksum(malo);
        EXPECT_EQ(setup.Checksum(), 0);
    }
}

TEST_F(PruebaSetup, NumbersAtTheirLimitsAreKept) {
    for (const int32_t bueno : {1, 32000}) {
        setup.Timeout(bueno);
        EXPECT_EQ(setup.Timeout(), bueno);
    }
    for (const int16_t bueno : std::initializer_list<int16_t>{1, 32}) {
        setup.MaxRetrys(bueno);
        EXPECT_EQ(setup.MaxRetrys(), bueno);
    }
    for (const int16_t bueno : std::initializer_list<int16_t>{2, 1, 0}) {
        setup.Checksum(bueno);
        EXPECT_EQ(setup.Checksum(), bueno);
    }
}

TEST_F(PruebaSetup, ThePeriodIsAnythingFrom0ThatFits16Bits) {
    setup.AutoCadaXSegs(-1);
    EXPECT_EQ(setup.AutoCadaXSegs(), 30);
    EXPECT_THROW(setup.AutoCadaXSegs(32768), std::overflow_error);
    EXPECT_THROW(setup.AutoCadaXSegs(std::numeric_limits<int32_t>::max()), std::overflow_error);
    EXPECT_EQ(setup.AutoCadaXSegs(), 30);
    setup.AutoCadaXSegs(0);
    EXPECT_EQ(setup.AutoCadaXSegs(), 0);
    setup.AutoCadaXSegs(32767);
    EXPECT_EQ(setup.AutoCadaXSegs(), 32767);
}

TEST_F(PruebaSetup, BooleansAreKept) {
    for (const bool valor : {true, false, true}) {
        setup.EjecutarMinimizado(valor);
        setup.UsoExcel(valor);
        setup.UsoTexto(valor);
        EXPECT_EQ(setup.EjecutarMinimizado(), valor);
        EXPECT_EQ(setup.UsoExcel(), valor);
        EXPECT_EQ(setup.UsoTexto(), valor);
    }
}

TEST_F(PruebaSetup, AnEmptyWorkbookSwitchesExcelOffAndKeepsThePath) {
    setup.LibroExcel("/x/Báscula.xls");
    EXPECT_EQ(setup.LibroExcel(), "/x/Báscula.xls");
    setup.LibroExcel("");
    EXPECT_FALSE(setup.UsoExcel());
    EXPECT_EQ(setup.LibroExcel(), "");
    EXPECT_EQ(setup.HojaExcel(), "");
    setup.LibroExcel("/y.xls");
    EXPECT_FALSE(setup.UsoExcel());
    setup.UsoExcel(true);
    EXPECT_EQ(setup.LibroExcel(), "/y.xls");
    EXPECT_EQ(setup.HojaExcel(), "Pesadas");
}

TEST_F(PruebaSetup, AnEmptySheetSwitchesExcelOffAndKeepsTheName) {
    setup.HojaExcel("Año");
    setup.HojaExcel("");
    EXPECT_FALSE(setup.UsoExcel());
    EXPECT_EQ(setup.LibroExcel(), "");
    EXPECT_EQ(setup.HojaExcel(), "");
    setup.UsoExcel(true);
    EXPECT_EQ(setup.HojaExcel(), "Año");
}

TEST_F(PruebaSetup, ASheetNameWithAnAsteriskAFullStopOrACommaIsDropped) {
    for (const char* malo : {"a.b", ".", "a*", "*", ",b", "a,b"}) {
        setup.HojaExcel(malo);
        EXPECT_EQ(setup.HojaExcel(), "Pesadas");
        EXPECT_TRUE(setup.UsoExcel());
    }
    setup.HojaExcel("Hoja 1 (año); ?");
    EXPECT_EQ(setup.HojaExcel(), "Hoja 1 (año); ?");
}

TEST_F(PruebaSetup, AnEmptyTextFileSwitchesTextOffAndKeepsThePath) {
    setup.ArchivoTexto("/x/a.txt");
    setup.ArchivoTexto("");
    EXPECT_FALSE(setup.UsoTexto());
    EXPECT_EQ(setup.ArchivoTexto(), "");
    EXPECT_TRUE(setup.UsoExcel());
    setup.UsoTexto(true);
    EXPECT_EQ(setup.ArchivoTexto(), "/x/a.txt");
}

TEST_F(PruebaSetup, AColumnThatAnotherFieldHasIsDropped) {
    setup.ColumnaExcel(3, 2);
    EXPECT_EQ(setup.ColumnaExcel(3), 4);
    setup.ColumnaExcel(3, -1);
    EXPECT_EQ(setup.ColumnaExcel(3), 4);
    setup.ColumnaExcel(3, 4);
    EXPECT_EQ(setup.ColumnaExcel(3), 4);
    setup.ColumnaExcel(3, 702);
    EXPECT_EQ(setup.ColumnaExcel(3), 702);
    setup.ColumnaExcel(3, 0);
    setup.ColumnaExcel(1, 0);
    EXPECT_EQ(setup.ColumnaExcel(3), 0);
    EXPECT_EQ(setup.ColumnaExcel(1), 0);
    setup.ColumnaExcel(3, 2);
    EXPECT_EQ(setup.ColumnaExcel(3), 2);
    setup.ColumnaExcel(7, 2);
    EXPECT_EQ(setup.ColumnaExcel(7), 8);
}

TEST_F(PruebaSetup, APositionThatAnotherFieldHasOrOutOfRangeIsDropped) {
    for (const int16_t malo : std::initializer_list<int16_t>{1, 70, 81, -1, 32767}) {
        setup.Posicion(2, malo);
        EXPECT_EQ(setup.Posicion(2), 27) << malo;
    }
    for (const int16_t bueno : std::initializer_list<int16_t>{27, 2, 80}) {
        setup.Posicion(2, bueno);
        EXPECT_EQ(setup.Posicion(2), bueno);
    }
    EXPECT_EQ(setup.Largo(2), 7);
    EXPECT_EQ(setup.Formato(2), "0000000");
}

TEST_F(PruebaSetup, Position0TakesWidthAndFormatAway) {
    setup.Posicion(2, 0);
    EXPECT_EQ(setup.Posicion(2), 0);
    EXPECT_EQ(setup.Largo(2), 0);
    EXPECT_EQ(setup.Formato(2), "");
    setup.Posicion(3, 0);
    EXPECT_EQ(setup.Posicion(3), 0);
    EXPECT_EQ(setup.Posicion(4), 44);
    setup.Posicion(2, 35);
    EXPECT_EQ(setup.Posicion(2), 35);
    EXPECT_EQ(setup.Largo(2), 0);
}

TEST_F(PruebaSetup, Width0TakesPositionAndFormatAway) {
    setup.Largo(5, 0);
    EXPECT_EQ(setup.Posicion(5), 0);
    EXPECT_EQ(setup.Largo(5), 0);
    EXPECT_EQ(setup.Formato(5), "");
    EXPECT_EQ(setup.Posicion(4), 44);
}

TEST_F(PruebaSetup, AWidthIsKeptUpTo80EvenOverOtherFields) {
    for (const int16_t malo : std::initializer_list<int16_t>{81, -1}) {
        setup.Largo(5, malo);
        EXPECT_EQ(setup.Largo(5), 8);
    }
    setup.Largo(5, 80);
    setup.Largo(4, 1);
    EXPECT_EQ(setup.Largo(5), 80);
    EXPECT_EQ(setup.Largo(4), 1);
    EXPECT_EQ(setup.Posicion(5), 53);
    EXPECT_EQ(setup.Formato(5), "00000000");
}

TEST_F(PruebaSetup, AnyFormatIsKept) {
    setup.Formato(1, ">@@;ñ");
    EXPECT_EQ(setup.Formato(1), ">@@;ñ");
    setup.Formato(1, "");
    EXPECT_EQ(setup.Formato(1), "");
    EXPECT_EQ(setup.Posicion(1), 18);
}

TEST_F(PruebaSetup, FieldsThatDoNotExistGiveNothingAndTakeNothing) {
    for (const int32_t campo :
         {-1, 8, 100, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()}) {
        setup.ColumnaExcel(campo, 50);
        setup.Posicion(campo, 50);
        setup.Largo(campo, 50);
        setup.Formato(campo, "x");
        EXPECT_EQ(setup.ColumnaExcel(campo), 0);
        EXPECT_EQ(setup.Posicion(campo), 0);
        EXPECT_EQ(setup.Largo(campo), 0);
        EXPECT_EQ(setup.Formato(campo), "");
    }
}

}  // namespace
}  // namespace bn
