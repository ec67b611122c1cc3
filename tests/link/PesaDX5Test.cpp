// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>

#include "link/pesaDX5.h"
#include "platform/Ficheros.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/PlataformaDePrueba.h"
#include "tests/soporte/TramasDePrueba.h"

namespace bn {
namespace {

using prueba::PesadaDePrueba;
using prueba::trama;
using prueba::xorDe;

class PesaDX5 : public testing::Test {
 protected:
    prueba::CarpetaTemporal carpeta;
    PlataformaDePrueba plataforma{carpeta.ruta()};
    pesaDX5 protocolo{plataforma};

    void modo(int16_t checksum) { protocolo.Caracteres("\x02", "\x03", "\x06", checksum); }
    std::string traza() const { return prueba::leerFichero(carpeta / "traza.txt"); }
};

TEST_F(PesaDX5, BeginsWithNothing) {
    EXPECT_EQ(protocolo.Tipo(), 0);
    EXPECT_EQ(protocolo.TramaPeticion(), "");
    EXPECT_EQ(protocolo.Datos(), "");
    EXPECT_EQ(protocolo.Contador(), 0);
    EXPECT_EQ(protocolo.FechaHora(), 0);
}

TEST_F(PesaDX5, SendsSingleCharacters) {
    EXPECT_EQ(protocolo.Terminador(), "\r");
    EXPECT_EQ(protocolo.ACK(), "\x06");
    EXPECT_EQ(protocolo.NAK(), "\x15");
    protocolo.Caracteres("\x02", "\x03", "P", 0);
    EXPECT_EQ(protocolo.TramaPeticion(), "P");
}

TEST_F(PesaDX5, TakesCharacterCodeZeroToo) {
    const std::string cero(1, '\0');
    protocolo.Caracteres(cero, "\x03", cero, 0);
    EXPECT_EQ(protocolo.TramaPeticion(), cero);
    EXPECT_EQ(protocolo.TramaValida(trama("0012", '\0')), 2);
}

TEST_F(PesaDX5, ChangesNothingUnlessAllThreeCharactersAreOneLong) {
    protocolo.Caracteres("(", ")", "P", 1);
    const std::string mala = "(0012)x\n\r";
    ASSERT_EQ(protocolo.TramaValida(mala), 2) << "mode 1 does not test the check character";
    protocolo.Caracteres("\x02\x02", "\x03", "Q", 0);
    protocolo.Caracteres("\x02", "", "Q", 0);
    protocolo.Caracteres("\x02", "\x03", "QQ", 0);
    protocolo.Caracteres("", "", "", 0);
    EXPECT_EQ(protocolo.TramaPeticion(), "P");
    EXPECT_EQ(protocolo.TramaValida(mala), 2) << "the mode has changed";
}

TEST_F(PesaDX5, ReadsACounterRecordOfFourOrFiveDigits) {
    EXPECT_EQ(protocolo.TramaValida(trama("0012")), 2);
    EXPECT_EQ(protocolo.Tipo(), 2);
    EXPECT_EQ(protocolo.Contador(), 12);
    EXPECT_EQ(protocolo.TramaValida(trama("00345")), 2);
    EXPECT_EQ(protocolo.Contador(), 345);
    EXPECT_EQ(protocolo.TramaValida(trama(" 12 ")), 2);
    EXPECT_EQ(protocolo.Contador(), 12);
}

TEST_F(PesaDX5, HidesTheWeighingBehindACounterRecord) {
    ASSERT_EQ(protocolo.TramaValida(trama(PesadaDePrueba().datos())), 1);
    ASSERT_EQ(protocolo.TramaValida(trama("0012")), 2);
    EXPECT_EQ(protocolo.Datos(), "");
    EXPECT_EQ(protocolo.FechaHora(), 0);
    EXPECT_EQ(protocolo.Matricula(), "");
    EXPECT_EQ(protocolo.Albaran(), 0);
    EXPECT_EQ(protocolo.Codigo(1), 0);
    EXPECT_EQ(protocolo.Tara(), 0.0F);
    EXPECT_EQ(protocolo.Neto(), 0.0F);
    EXPECT_EQ(protocolo.Bruto(), 0.0F);
}

TEST_F(PesaDX5, RefusesACounterThatIsNoNumber) {
    for (const char* datos :
         {"    ", "12a4", "1-23", "--12", "1 23", "1.2.3", "+   ", "....", "1e10"}) {
        EXPECT_EQ(protocolo.TramaValida(trama(datos)), 0) << datos;
        EXPECT_EQ(protocolo.Contador(), 0);
    }
}

TEST_F(PesaDX5, ReadsTheShortFormWithTheTimeOfArrival) {
    plataforma.horaActual = 46000.75;
    const std::string datos = PesadaDePrueba().datos();
    ASSERT_EQ(datos.size(), 59U);
    ASSERT_EQ(protocolo.TramaValida(trama(datos)), 1);
    EXPECT_EQ(protocolo.Tipo(), 1);
    EXPECT_EQ(protocolo.Datos(), datos);
    EXPECT_EQ(protocolo.FechaHora(), 46000.75);
    EXPECT_EQ(protocolo.Matricula(), "1234BCD");
    EXPECT_EQ(protocolo.Albaran(), 57);
    EXPECT_EQ(protocolo.Codigo(1), 11);
    EXPECT_EQ(protocolo.Codigo(2), 22);
    EXPECT_EQ(protocolo.Codigo(3), 33);
    EXPECT_EQ(protocolo.Tara(), 12.5F);
    EXPECT_EQ(protocolo.Neto(), 100.25F);
    EXPECT_EQ(protocolo.Bruto(), 112.75F);
    EXPECT_EQ(protocolo.Contador(), 0);
}

TEST_F(PesaDX5, ReadsTheLongFormWithItsOwnTime) {
    PesadaDePrueba pesada;
    pesada.fechaHora = "01/02/03 12:00";
    ASSERT_EQ(pesada.datos().size(), 74U);
    ASSERT_EQ(protocolo.TramaValida(trama(pesada.datos())), 1);
    EXPECT_EQ(protocolo.FechaHora(), 37653.5);
    EXPECT_EQ(protocolo.Datos(), pesada.datos());
}

TEST_F(PesaDX5, RefusesALongFormWithoutARecognisableDate) {
    for (const char* fecha : {"              ", "31/02/03 12:00", "01/02/03 25:00", "manana"}) {
        PesadaDePrueba pesada;
        pesada.fechaHora = fecha;
        EXPECT_EQ(protocolo.TramaValida(trama(pesada.datos())), 0) << fecha;
    }
}

TEST_F(PesaDX5, TakesBlankNumbersOfNoteAndCodesAsZero) {
    for (const char* fecha : {"", "01/02/03 12:00"}) {
        PesadaDePrueba pesada;
        pesada.albaran = pesada.codigoA = pesada.codigoB = pesada.codigoC = "";
        pesada.fechaHora = fecha;
        ASSERT_EQ(protocolo.TramaValida(trama(pesada.datos())), 1);
        EXPECT_EQ(protocolo.Albaran(), 0);
        EXPECT_EQ(protocolo.Codigo(1), 0);
        EXPECT_EQ(protocolo.Codigo(2), 0);
        EXPECT_EQ(protocolo.Codigo(3), 0);
    }
}

TEST_F(PesaDX5, RefusesABlankTareOrNet) {
    PesadaDePrueba sinTara;
    sinTara.tara = "";
    EXPECT_EQ(protocolo.TramaValida(trama(sinTara.datos())), 0);
    PesadaDePrueba sinNeto;
    sinNeto.neto = "";
    EXPECT_EQ(protocolo.TramaValida(trama(sinNeto.datos())), 0);
}

TEST_F(PesaDX5, RefusesAFieldThatIsNoNumber) {
    const auto conCampo = [](std::string PesadaDePrueba::*campo) {
        PesadaDePrueba pesada;
        pesada.*campo = "12x";
        return pesada.datos();
    };
    for (const auto campo :
         {&PesadaDePrueba::albaran, &PesadaDePrueba::codigoA, &PesadaDePrueba::codigoB,
          &PesadaDePrueba::codigoC, &PesadaDePrueba::tara, &PesadaDePrueba::neto}) {
        EXPECT_EQ(protocolo.TramaValida(trama(conCampo(campo))), 0);
        EXPECT_EQ(protocolo.Datos(), "");
    }
}

TEST_F(PesaDX5, ReadsWeightsWithPointOrComma) {
    PesadaDePrueba pesada;
    pesada.tara = "0012.50";
    pesada.neto = "-3,75";
    ASSERT_EQ(protocolo.TramaValida(trama(pesada.datos())), 1);
    EXPECT_EQ(protocolo.Tara(), 12.5F);
    EXPECT_EQ(protocolo.Neto(), -3.75F);
    pesada.tara = "+40000";
    pesada.neto = ".5";
    ASSERT_EQ(protocolo.TramaValida(trama(pesada.datos())), 1);
    EXPECT_EQ(protocolo.Tara(), 40000.0F);
    EXPECT_EQ(protocolo.Neto(), 0.5F);
}

TEST_F(PesaDX5, RefusesATabWhereANumberIsDue) {
    for (const char* peso : {"\t0012.5", " \t 12.5", "12.50\t", "\t+12.50"}) {
        PesadaDePrueba pesada;
        pesada.tara = peso;
        EXPECT_EQ(protocolo.TramaValida(trama(pesada.datos())), 0) << peso;
    }
    EXPECT_EQ(protocolo.TramaValida(trama("\t12 ")), 0);
}

TEST_F(PesaDX5, AddsTheGrossWeightInSinglePrecision) {
    PesadaDePrueba pesada;
    pesada.tara = "0.1";
    pesada.neto = "0.2";
    ASSERT_EQ(protocolo.TramaValida(trama(pesada.datos())), 1);
    EXPECT_EQ(protocolo.Bruto(), 0.1F + 0.2F);
}

TEST_F(PesaDX5, TrimsThePlateOnBothSides) {
    PesadaDePrueba pesada;
    pesada.matricula = "  AB 12 ";
    ASSERT_EQ(protocolo.TramaValida(trama(pesada.datos())), 1);
    EXPECT_EQ(protocolo.Matricula(), "AB 12");
    pesada.matricula = "";
    ASSERT_EQ(protocolo.TramaValida(trama(pesada.datos())), 1);
    EXPECT_EQ(protocolo.Matricula(), "");
}

TEST_F(PesaDX5, NeverLooksAtTheSeparators) {
    std::string datos = PesadaDePrueba().datos();
    for (const std::size_t separador : {8, 16, 25, 34, 43, 51}) datos[separador] = 'x';
    EXPECT_EQ(protocolo.TramaValida(trama(datos)), 1);
    EXPECT_EQ(protocolo.Neto(), 100.25F);
}

TEST_F(PesaDX5, KnowsFourLengthsOfDataOnly) {
    PesadaDePrueba pesada;
    pesada.fechaHora = "01/02/03 12:00";
    const std::string larga = pesada.datos() + std::string(40, '0');
    const std::string corta = PesadaDePrueba().datos() + std::string(60, '0');
    for (std::size_t largo = 0; largo < 110; ++largo) {
        const int16_t esperado = largo == 4 || largo == 5 ? 2 : largo == 59 || largo == 74 ? 1 : 0;
        const std::string cifras(largo, '0');
        const std::string datos = largo == 74   ? larga.substr(0, 74)
                                  : largo == 59 ? corta.substr(0, 59)
                                                : cifras;
        EXPECT_EQ(protocolo.TramaValida(trama(datos)), esperado) << largo;
        EXPECT_EQ(protocolo.DatosValidos(datos), esperado) << largo;
    }
}

TEST_F(PesaDX5, RefusesTheUsualOrderOfLineEnd) {
    const std::string datos = "0012";
    const std::string inicio = "\x02" + datos + "\x03" + xorDe(datos);
    EXPECT_EQ(protocolo.TramaValida(inicio + "\r\n"), 0);
    EXPECT_EQ(protocolo.TramaValida(inicio + "\n\r"), 2);
}

TEST_F(PesaDX5, RefusesShortFragmentsOfAFrame) {
    const std::string entera = trama("0012");
    for (std::size_t i = 0; i < entera.size(); ++i) {
        EXPECT_EQ(protocolo.TramaValida(entera.substr(0, i)), 0) << i;
        if (i > 0) {
            EXPECT_EQ(protocolo.TramaValida(entera.substr(i)), 0) << i;
        }
    }
}

TEST_F(PesaDX5, TestsTheCheckCharacterInModeZeroAlone) {
    std::string mala = trama(PesadaDePrueba().datos());
    mala[mala.size() - 3] = static_cast<char>(mala[mala.size() - 3] ^ 1);
    modo(0);
    EXPECT_EQ(protocolo.TramaValida(mala), 0);
    modo(1);
    EXPECT_EQ(protocolo.TramaValida(mala), 1);
    modo(2);
    EXPECT_EQ(protocolo.TramaValida(mala), 1);
}

TEST_F(PesaDX5, RefusesEverySingleByteCorruptionInModeZero) {
    PesadaDePrueba larga;
    larga.fechaHora = "01/02/03 12:00";
    for (const std::string& entera :
         {trama("0012"), trama(PesadaDePrueba().datos()), trama(larga.datos())}) {
        for (std::size_t i = 0; i < entera.size(); ++i) {
            for (int cambio = 1; cambio < 256; ++cambio) {
                std::string rota = entera;
                rota[i] = static_cast<char>(rota[i] ^ cambio);
                ASSERT_EQ(protocolo.TramaValida(rota), 0) << "byte " << i << " xor " << cambio;
            }
        }
    }
}

TEST_F(PesaDX5, TakesEndCharactersInsideTheData) {
    PesadaDePrueba pesada;
    pesada.matricula = "A\x03\x02Z";
    ASSERT_EQ(protocolo.TramaValida(trama(pesada.datos())), 1);
    EXPECT_EQ(protocolo.Matricula(), "A\x03\x02Z");
}

TEST_F(PesaDX5, GivesSpecialFramingCharactersTheirWildcardMeaning) {
    protocolo.Caracteres("*", "?", "P", 0);  // any run, and any one character at the end
    EXPECT_EQ(protocolo.TramaValida(trama("0012", 'X', 'Y')), 2);
    protocolo.Caracteres("#", "\x03", "P", 0);
    EXPECT_EQ(protocolo.TramaValida(trama("0012", '7')), 2);
    EXPECT_EQ(protocolo.TramaValida(trama("0012", '#')), 0);
    protocolo.Caracteres("[", "\x03", "P", 0);  // a list that never closes matches nothing
    EXPECT_EQ(protocolo.TramaValida(trama("0012", '[')), 0);
    protocolo.Caracteres("[", "]", "P", 0);  // the list of one asterisk
    EXPECT_EQ(protocolo.TramaValida(trama("0012", '[', ']')), 0);
    EXPECT_EQ(protocolo.TramaValida("*x\n\r"), 0) << "shorter than any frame";
    protocolo.Caracteres("*", "*", "P", 0);
    EXPECT_EQ(protocolo.TramaValida("x\n\r"), 0);
    EXPECT_EQ(protocolo.TramaValida("\n\r"), 0);
}

TEST_F(PesaDX5, ForgetsThePreviousRecordFirst) {
    ASSERT_EQ(protocolo.TramaValida(trama(PesadaDePrueba().datos())), 1);
    EXPECT_EQ(protocolo.TramaValida("basura"), 0);
    EXPECT_EQ(protocolo.Tipo(), 0);
    EXPECT_EQ(protocolo.Datos(), "");
    EXPECT_EQ(protocolo.Matricula(), "");
    EXPECT_EQ(protocolo.Neto(), 0.0F);
    ASSERT_EQ(protocolo.TramaValida(trama("0012")), 2);
    EXPECT_EQ(protocolo.DatosValidos("basura"), 0);
    EXPECT_EQ(protocolo.Contador(), 0);
}

TEST_F(PesaDX5, ParsesDataAloneByTheSameRules) {
    const std::string datos = PesadaDePrueba().datos();
    EXPECT_EQ(protocolo.DatosValidos(datos), 1);
    EXPECT_EQ(protocolo.Datos(), datos);
    EXPECT_EQ(protocolo.DatosValidos("0012"), 2);
    EXPECT_EQ(protocolo.DatosValidos(trama(datos)), 0);
}

TEST_F(PesaDX5, GivesCodesOneToThreeOnly) {
    ASSERT_EQ(protocolo.TramaValida(trama(PesadaDePrueba().datos())), 1);
    for (const int indice : {-1, 0, 4, 32767, -32768}) {
        EXPECT_EQ(protocolo.Codigo(static_cast<int16_t>(indice)), 0) << indice;
    }
}

TEST_F(PesaDX5, WritesATraceLineInModeTwo) {
    modo(2);
    std::string rota = trama("0012");
    rota[rota.size() - 3] = 'x';
    EXPECT_EQ(protocolo.TramaValida(rota), 2);
    EXPECT_EQ(traza(), "48 48 49 50  >3  >120\r\n");
    EXPECT_EQ(protocolo.TramaValida(trama("A\xD1")), 0) << "traced, then refused for its length";
    EXPECT_EQ(traza(), "48 48 49 50  >3  >120\r\n65 209  >144  >144\r\n");
}

TEST_F(PesaDX5, TracesNothingInOtherModesNorForTextsThatAreNoFrames) {
    modo(0);
    protocolo.TramaValida(trama("0012"));
    modo(1);
    protocolo.TramaValida(trama("0012"));
    modo(2);
    protocolo.TramaValida("basura\n\r");
    EXPECT_FALSE(std::filesystem::exists(carpeta / "traza.txt"));
}

TEST_F(PesaDX5, LetsTheErrorOfTheTraceFileReachTheCaller) {
    modo(2);
    std::filesystem::create_directory(carpeta / "traza.txt");
    EXPECT_THROW(protocolo.TramaValida(trama("0012")), ErrorFichero);
}

}  // namespace
}  // namespace bn
