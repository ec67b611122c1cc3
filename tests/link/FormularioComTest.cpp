// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>
#include <string>

#include "link/FormularioCom.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/PlataformaDePrueba.h"

namespace bn {
namespace {

constexpr const char* kMalCanal = "El canal indicado es incorrecto";
constexpr const char* kMalVelocidad = "La velocidad especificada es incorrecta";
constexpr const char* kMalParametro = "Alguno de los parámetros indicados es incorrecto";
constexpr const char* kMalCaracter = "Alguno de los  caracteres especificados es incorrecto";
constexpr const char* kMalTiempo = "El valor del 'time out' es incorrecto";
constexpr const char* kMalRetrys = "El número de 'retrys' es incorrecto";
constexpr const char* kMalPeriodo =
    "El valor de los segundos de descarga automátrica, es incorrecto";

class FormularioComTest : public testing::Test {
 protected:
    FormularioComTest() { f.cargar(cfg); }

    std::string alPoner(std::string FormularioCom::*campo, const std::string& texto) const {
        FormularioCom otro = f;
        otro.*campo = texto;
        return otro.validar();
    }

    prueba::CarpetaTemporal carpeta;
    PlataformaDePrueba plataforma{carpeta.ruta()};
    bn::Setup cfg{plataforma};
    FormularioCom f;
};

TEST_F(FormularioComTest, ShowsTheSettings) {
    EXPECT_EQ(f.txCan, "1");
    EXPECT_EQ(f.txParms, "9600,N,8,1");
    EXPECT_EQ(f.txCI, "2");
    EXPECT_EQ(f.txCF, "3");
    EXPECT_EQ(f.txPet, "6");
    EXPECT_EQ(f.txTmO, "600");
    EXPECT_EQ(f.txRet, "4");
    EXPECT_TRUE(f.ckAutom);
    EXPECT_EQ(f.txAutom, "30");
    EXPECT_EQ(f.validar(), "");
}

TEST_F(FormularioComTest, ShowsAPeriodOfZeroAsAnEmptyField) {
    cfg.AutoCadaXSegs(0);
    f.cargar(cfg);
    EXPECT_FALSE(f.ckAutom);
    EXPECT_EQ(f.txAutom, "");
}

TEST_F(FormularioComTest, ShowsCharactersAboveAsciiByTheirCode) {
    cfg.CaracterInicial("\xFE");
    cfg.CaracterFinal(std::string(1, '\0'));
    f.cargar(cfg);
    EXPECT_EQ(f.txCI, "254");
    EXPECT_EQ(f.txCF, "0");
}

TEST_F(FormularioComTest, TakesChannelsOneToSixteen) {
    for (const char* bueno : {"1", "16", " 7", "3 ", "5x", "0.5", "2.5"}) {
        EXPECT_EQ(alPoner(&FormularioCom::txCan, bueno), "") << bueno;
    }
    for (const char* malo : {"0", "17", "", "x", "-1", "16.1", "99999999999999999999", "1e400"}) {
        EXPECT_EQ(alPoner(&FormularioCom::txCan, malo), kMalCanal) << malo;
    }
}

TEST_F(FormularioComTest, TakesTheSevenSpeedsOnly) {
    for (const char* buena : {"300", "600", "1200", "2400", "4800", "9600", "19200"}) {
        EXPECT_EQ(alPoner(&FormularioCom::txParms, std::string(buena) + ",N,8,1"), "") << buena;
    }
    for (const char* mala : {"14400,N,8,1", "0,N,8,1", ",N,8,1", "", "38400,N,8,1", "N,8,1,9600"}) {
        EXPECT_EQ(alPoner(&FormularioCom::txParms, mala), kMalVelocidad) << mala;
    }
}

TEST_F(FormularioComTest, TakesTheListedParametersOnlyInCapitals) {
    for (const char paridad : std::string("NEO")) {
        for (const char bits : std::string("78")) {
            for (const char paradas : std::string("12")) {
                const std::string texto = {'9',     '6', '0',  '0', ',',
                                           paridad, ',', bits, ',', paradas};
                EXPECT_EQ(alPoner(&FormularioCom::txParms, texto), "") << texto;
            }
        }
    }
    for (const char* malo : {"9600,n,8,1", "9600,N,8", "9600,N,9,1", "9600,N,8,3", "9600", "9600,",
                             "9600,N,8,1,", "9600, N,8,1", "9600,M,8,1", "9600,N,8,1 "}) {
        EXPECT_EQ(alPoner(&FormularioCom::txParms, malo), kMalParametro) << malo;
    }
}

TEST_F(FormularioComTest, TakesCodesAndSingleCharacters) {
    for (const auto campo : {&FormularioCom::txCI, &FormularioCom::txCF, &FormularioCom::txPet}) {
        for (const char* bueno :
             {"0", "2", "255", "A", "ñ", "€", " ", "-", " 6 ", "255.4", "-0.4"}) {
            EXPECT_EQ(alPoner(campo, bueno), "") << bueno;
        }
        for (const char* malo : {"256", "-1", "AB", "", "2A", "255.5", "Ω", "ññ", "0x2"}) {
            EXPECT_EQ(alPoner(campo, malo), kMalCaracter) << malo;
        }
    }
}

TEST_F(FormularioComTest, StoresCodesAndSingleCharacters) {
    f.txCI = "A";
    f.txCF = "2";
    f.txPet = "€";
    f.guardar(cfg);
    EXPECT_EQ(cfg.CaracterInicial(), "A");
    EXPECT_EQ(cfg.CaracterFinal(), "\x02");
    EXPECT_EQ(cfg.CaracterPeticion(), "\x80");
    f.txCI = "0";
    f.txCF = "66,5";
    f.txPet = "7.5";
    f.guardar(cfg);
    EXPECT_EQ(cfg.CaracterInicial(), std::string(1, '\0'));
    EXPECT_EQ(cfg.CaracterFinal(), "B");
    EXPECT_EQ(cfg.CaracterPeticion(), "\x08");
}

TEST_F(FormularioComTest, TakesTimeoutsFrom1To32000) {
    for (const char* bueno : {"1", "32000", "600ms"}) {
        EXPECT_EQ(alPoner(&FormularioCom::txTmO, bueno), "") << bueno;
    }
    for (const char* malo : {"0", "32001", "", "-5", "0.9", "32000.4", "ms"}) {
        EXPECT_EQ(alPoner(&FormularioCom::txTmO, malo), kMalTiempo) << malo;
    }
}

TEST_F(FormularioComTest, TakesAttemptsFrom1To32) {
    for (const char* bueno : {"1", "32"}) EXPECT_EQ(alPoner(&FormularioCom::txRet, bueno), "");
    for (const char* malo : {"0", "33", "", "-1", "muchos"}) {
        EXPECT_EQ(alPoner(&FormularioCom::txRet, malo), kMalRetrys) << malo;
    }
}

TEST_F(FormularioComTest, AsksForAPeriodOnlyWhileAutomaticDownloadIsOn) {
    for (const char* malo : {"0", "", "-3", "x"}) {
        EXPECT_EQ(alPoner(&FormularioCom::txAutom, malo), kMalPeriodo) << malo;
    }
    for (const char* bueno : {"1", "0.1", "99999"}) {
        EXPECT_EQ(alPoner(&FormularioCom::txAutom, bueno), "") << bueno;
    }
    f.ckAutom = false;
    EXPECT_EQ(alPoner(&FormularioCom::txAutom, "x"), "");
}

TEST_F(FormularioComTest, TellsTheFirstFailureFirst) {
    f = FormularioCom{};
    f.ckAutom = true;
    EXPECT_EQ(f.validar(), kMalCanal);
    f.txCan = "1";
    EXPECT_EQ(f.validar(), kMalVelocidad);
    f.txParms = "9600,X";
    EXPECT_EQ(f.validar(), kMalParametro);
    f.txParms = "9600,N,8,1";
    f.txCI = f.txCF = "2";
    EXPECT_EQ(f.validar(), kMalCaracter);
    f.txPet = "6";
    EXPECT_EQ(f.validar(), kMalTiempo);
    f.txTmO = "600";
    EXPECT_EQ(f.validar(), kMalRetrys);
    f.txRet = "4";
    EXPECT_EQ(f.validar(), kMalPeriodo);
    f.txAutom = "30";
    EXPECT_EQ(f.validar(), "");
}

TEST_F(FormularioComTest, StoresEveryField) {
    f.txCan = "16";
    f.txParms = "19200,E,7,2";
    f.txTmO = "32000";
    f.txRet = "32";
    f.txAutom = "32767";
    f.guardar(cfg);
    EXPECT_EQ(cfg.canal(), 16);
    EXPECT_EQ(cfg.Params(), "19200,E,7,2");
    EXPECT_EQ(cfg.Timeout(), 32000);
    EXPECT_EQ(cfg.MaxRetrys(), 32);
    EXPECT_EQ(cfg.AutoCadaXSegs(), 32767);
}

TEST_F(FormularioComTest, RoundsHalvesToTheEvenNeighbour) {
    f.txCan = "2.5";
    f.txTmO = "601.5";
    f.txRet = "3.5";
    f.txAutom = "0.5";
    f.guardar(cfg);
    EXPECT_EQ(cfg.canal(), 2);
    EXPECT_EQ(cfg.Timeout(), 602);
    EXPECT_EQ(cfg.MaxRetrys(), 4);
    EXPECT_EQ(cfg.AutoCadaXSegs(), 0);
}

TEST_F(FormularioComTest, KeepsTheOldChannelWhenTheNewOneRoundsToZero) {
    cfg.canal(7);
    f.txCan = "0.5";
    EXPECT_EQ(f.validar(), "");
    f.guardar(cfg);
    EXPECT_EQ(cfg.canal(), 7);
}

TEST_F(FormularioComTest, StoresNoPeriodWhileAutomaticDownloadIsOff) {
    f.ckAutom = false;
    f.txAutom = "45";
    f.guardar(cfg);
    EXPECT_EQ(cfg.AutoCadaXSegs(), 0);
}

TEST_F(FormularioComTest, StoresTheOtherFieldsWhenThePeriodIsTooLong) {
    for (const char* largo : {"32768", "99999999999"}) {
        f.txCan = "9";
        f.txRet = "8";
        f.txAutom = largo;
        ASSERT_EQ(f.validar(), "");
        EXPECT_THROW(f.guardar(cfg), std::overflow_error);
        EXPECT_EQ(cfg.canal(), 9);
        EXPECT_EQ(cfg.MaxRetrys(), 8);
        EXPECT_EQ(cfg.AutoCadaXSegs(), 30);
    }
}

TEST_F(FormularioComTest, LeavesChecksumAndWeighingCharacterAlone) {
    cfg.Checksum(2);
    cfg.CaracterPesada("X");
    f.guardar(cfg);
    EXPECT_EQ(cfg.Checksum(), 2);
    EXPECT_EQ(cfg.CaracterPesada(), "X");
}

TEST_F(FormularioComTest, StoresWhatItLoadedUnchanged) {
    cfg.canal(3);
    cfg.CaracterInicial("\xF1");
    f.cargar(cfg);
    cfg.CaracterInicial("Z");
    f.guardar(cfg);
    EXPECT_EQ(cfg.canal(), 3);
    EXPECT_EQ(cfg.CaracterInicial(), "\xF1");
}

}  // namespace
}  // namespace bn
