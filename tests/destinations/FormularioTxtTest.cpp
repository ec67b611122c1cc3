// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>

#include "destinations/FormularioTxt.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/PlataformaDePrueba.h"

namespace bn {
namespace {

constexpr int kFormato = 2;
constexpr int kPosicion = 3;
constexpr int kLargo = 4;
constexpr int kApartado = 5;
constexpr const char* kMalCarpeta = "La carpeta especificada no existe";
constexpr const char* kMalFichero = "El nombre del Fichero es incorrecto";
constexpr const char* kRepetidas = "Hay posiciones de campo repetidas";

class FormularioTxtTest : public testing::Test {
 protected:
    FormularioTxtTest() {
        cfg.ArchivoTexto((carpeta / "Pesadas.txt").string());
        f.cargar(cfg);
    }

    void esperarCampo(int campo, const std::string& formato, const std::string& posicion,
                      const std::string& largo) const {
        EXPECT_EQ(f.celda(campo, kFormato), formato);
        EXPECT_EQ(f.celda(campo, kPosicion), posicion);
        EXPECT_EQ(f.celda(campo, kLargo), largo);
    }
    std::string conFichero(const std::string& ruta) const {
        FormularioTxt otro = f;
        otro.txLibro = ruta;
        return otro.validar();
    }

    prueba::CarpetaTemporal carpeta;
    PlataformaDePrueba plataforma{carpeta.ruta()};
    bn::Setup cfg{plataforma};
    FormularioTxt f;
};

TEST_F(FormularioTxtTest, ShowsTheSettings) {
    EXPECT_EQ(f.txLibro, cfg.ArchivoTexto());
    for (int campo = 0; campo < 8; ++campo) EXPECT_TRUE(f.escrito(campo));
    esperarCampo(0, "dd/mm/yyyy hh:nn", "1", "16");
    esperarCampo(1, "", "18", "8");
    esperarCampo(7, "######0", "70", "7");
    EXPECT_EQ(f.validar(), "");
}

TEST_F(FormularioTxtTest, ShowsNoFileWhileTheDestinationIsOff) {
    cfg.UsoTexto(false);
    f.cargar(cfg);
    EXPECT_EQ(f.txLibro, "");
    EXPECT_EQ(f.validar(), kMalCarpeta);
}

TEST_F(FormularioTxtTest, OpensAFieldWithoutPositionUnmarkedAndEmpty) {
    cfg.Posicion(4, 0);
    f.cargar(cfg);
    EXPECT_FALSE(f.escrito(4));
    esperarCampo(4, "", "", "");
}

TEST_F(FormularioTxtTest, PutsAsideWhatTheFileHeldForAFieldWithoutPosition) {
    prueba::escribirFichero(carpeta / "bnDX5.ini", "[Texto]\r\nColumnas=0,5\r\nFormatos=000\r\n");
    const bn::Setup leida(plataforma);
    f.cargar(leida);
    EXPECT_FALSE(f.escrito(0));
    esperarCampo(0, "", "", "");
    f.alternar(0);
    esperarCampo(0, "000", "", "5");
}

TEST_F(FormularioTxtTest, BringsBackWhatUnmarkingPutAside) {
    f.alternar(0);
    EXPECT_FALSE(f.escrito(0));
    esperarCampo(0, "", "", "");
    EXPECT_EQ(f.celda(0, kApartado), "dd/mm/yyyy hh:nn|1|16");
    f.alternar(0);
    EXPECT_TRUE(f.escrito(0));
    esperarCampo(0, "dd/mm/yyyy hh:nn", "1", "16");
}

TEST_F(FormularioTxtTest, ForgetsWhatWasPutAsideWhenLoadedAgain) {
    f.alternar(2);
    cfg.Posicion(2, 0);
    f.cargar(cfg);
    f.alternar(2);
    EXPECT_TRUE(f.escrito(2));
    esperarCampo(2, "", "", "");
}

TEST_F(FormularioTxtTest, LosesWhatIsTypedIntoAnUnmarkedFieldWhenItIsMarked) {
    f.alternar(3);
    f.escribir(3, kFormato, "otro");
    EXPECT_EQ(f.celda(3, kFormato), "otro");
    f.alternar(3);
    esperarCampo(3, "00000000", "35", "8");
}

TEST_F(FormularioTxtTest, TakesTwoDigitsOfPositionAndWidth) {
    f.escribir(0, kPosicion, "123");
    f.escribir(0, kLargo, "9a9b9");
    EXPECT_EQ(f.celda(0, kPosicion), "12");
    EXPECT_EQ(f.celda(0, kLargo), "99");
    f.escribir(0, kPosicion, "");
    EXPECT_EQ(f.celda(0, kPosicion), "");
}

TEST_F(FormularioTxtTest, TakesEightyCharactersOfFormat) {
    std::string largo;
    for (int i = 0; i < 81; ++i) largo += "ñ";
    f.escribir(0, kFormato, largo);
    EXPECT_EQ(f.celda(0, kFormato), largo.substr(0, 160));
}

TEST_F(FormularioTxtTest, HasNoCellsOutsideTheGrid) {
    for (const int campo : {-1, 8, 99}) {
        f.alternar(campo);
        f.escribir(campo, kFormato, "x");
        EXPECT_FALSE(f.escrito(campo));
        EXPECT_EQ(f.celda(campo, kFormato), "");
    }
    for (const int columna : {-1, 0, 1, 5, 6}) f.escribir(0, columna, "x");
    EXPECT_TRUE(f.escrito(0));
    EXPECT_EQ(f.celda(0, 1), "Fecha Hora");
    EXPECT_EQ(f.celda(0, kApartado), "");
    EXPECT_EQ(f.celda(0, 6), "");
}

TEST_F(FormularioTxtTest, AsksForAnExistingFolderFirst) {
    EXPECT_EQ(conFichero(""), kMalCarpeta);
    EXPECT_EQ(conFichero("Pesadas.txt"), kMalCarpeta);
    EXPECT_EQ(conFichero((carpeta / "no/Pesadas.TXT").string()), kMalCarpeta);
    EXPECT_EQ(conFichero(carpeta.ruta().string() + "\\Pesadas.txt"), "");
}

TEST_F(FormularioTxtTest, AsksForAFileNameOfText) {
    f.escribir(0, kPosicion, "18");  // repeated: told only after the file name
    for (const char* malo : {"Pesadas.TXT", "Pesadas.txt2", "Pesadas", "", "a:b.txt", "a*.txt",
                             "a?.txt", "a\".txt", "a<.txt", "a>.txt", "a|.txt"}) {
        EXPECT_EQ(conFichero(carpeta.ruta().string() + "/" + malo), kMalFichero) << malo;
    }
    EXPECT_EQ(conFichero((carpeta / "Año 1.txt").string()), kRepetidas);
}

TEST_F(FormularioTxtTest, RefusesTheSamePositionTextInAnyTwoFields) {
    for (int uno = 0; uno < 8; ++uno) {
        for (int otro = uno + 1; otro < 8; ++otro) {
            FormularioTxt copia = f;
            copia.escribir(uno, kPosicion, "5");
            copia.escribir(otro, kPosicion, "5");
            EXPECT_EQ(copia.validar(), kRepetidas) << uno << ' ' << otro;
            copia.escribir(otro, kPosicion, "05");
            EXPECT_EQ(copia.validar(), "") << uno << ' ' << otro;
        }
    }
}

TEST_F(FormularioTxtTest, LooksAtPositionsTypedIntoUnmarkedFieldsToo) {
    f.alternar(6);
    f.escribir(6, kPosicion, "1");
    EXPECT_EQ(f.validar(), kRepetidas);
}

TEST_F(FormularioTxtTest, NeverCountsEmptyPositionsAsRepeated) {
    for (int campo = 0; campo < 8; ++campo) f.escribir(campo, kPosicion, "");
    EXPECT_EQ(f.validar(), "");
}

TEST_F(FormularioTxtTest, DoesNotLookAtOverlaps) {
    f.escribir(0, kLargo, "80");
    EXPECT_EQ(f.validar(), "");
}

TEST_F(FormularioTxtTest, StoresMarkedFieldsAndClearsTheOthers) {
    f.txLibro = (carpeta / "Otro.txt").string();
    f.escribir(0, kFormato, "hh:nn");
    f.escribir(0, kPosicion, "2");
    f.escribir(0, kLargo, "5");
    f.alternar(5);
    f.guardar(cfg);
    EXPECT_EQ(cfg.ArchivoTexto(), f.txLibro);
    EXPECT_EQ(cfg.Formato(0), "hh:nn");
    EXPECT_EQ(cfg.Posicion(0), 2);
    EXPECT_EQ(cfg.Largo(0), 5);
    EXPECT_EQ(cfg.Posicion(5), 0);
    EXPECT_EQ(cfg.Largo(5), 0);
    EXPECT_EQ(cfg.Formato(5), "");
}

TEST_F(FormularioTxtTest, LeavesTheFirstOfTwoExchangedPositionsWhereItWas) {
    f.escribir(2, kPosicion, "35");
    f.escribir(3, kPosicion, "27");
    ASSERT_EQ(f.validar(), "");
    f.guardar(cfg);
    EXPECT_EQ(cfg.Posicion(2), 27);
    EXPECT_EQ(cfg.Posicion(3), 35) << "27 is still field 2's when field 3 asks for it";
}

TEST_F(FormularioTxtTest, TakesAPositionThatAnEarlierFieldHasJustLeft) {
    f.escribir(2, kPosicion, "26");
    f.escribir(3, kPosicion, "27");
    f.guardar(cfg);
    EXPECT_EQ(cfg.Posicion(2), 26);
    EXPECT_EQ(cfg.Posicion(3), 27);
}

TEST_F(FormularioTxtTest, KeepsTheOldValueWhenTheNewOneIsAbove80) {
    f.escribir(0, kPosicion, "81");
    f.escribir(1, kLargo, "99");
    ASSERT_EQ(f.validar(), "");
    f.guardar(cfg);
    EXPECT_EQ(cfg.Posicion(0), 1);
    EXPECT_EQ(cfg.Largo(1), 8);
}

TEST_F(FormularioTxtTest, StoresNothingOfAMarkedFieldWithoutWidthOrPosition) {
    f.escribir(0, kLargo, "");
    f.escribir(1, kPosicion, "");
    f.escribir(1, kLargo, "0");
    f.guardar(cfg);
    EXPECT_EQ(cfg.Posicion(0), 0);
    EXPECT_EQ(cfg.Formato(0), "");
    EXPECT_EQ(cfg.Posicion(1), 0);
}

TEST_F(FormularioTxtTest, GivesTheLayoutAsItStands) {
    f.alternar(1);
    f.escribir(2, kPosicion, "81");
    f.escribir(3, kLargo, "0");
    f.escribir(4, kPosicion, "05");
    const auto campos = f.disposicion();
    EXPECT_EQ(campos[0].posicion, 1);
    EXPECT_EQ(campos[0].largo, 16);
    EXPECT_EQ(campos[0].formato, "dd/mm/yyyy hh:nn");
    EXPECT_EQ(campos[1].posicion, 0);
    EXPECT_EQ(campos[2].posicion, 0);
    EXPECT_EQ(campos[3].posicion, 0);
    EXPECT_EQ(campos[4].posicion, 5);
}

TEST_F(FormularioTxtTest, SplitsAPutAsideFormatAtItsBar) {
    f.escribir(0, kFormato, "dd|mm");
    f.alternar(0);
    f.alternar(0);
    esperarCampo(0, "dd", "mm", "1");
}

}  // namespace
}  // namespace bn
