// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include "destinations/excel/ObjectModel.h"
#include "destinations/xls/MotorInterno.h"
#include "destinations/xls/Nombres.h"
#include "tests/destinations/xls/Ayudas.h"

namespace bn::xls::prueba {
namespace {

class NombresDelModelo : public testing::Test {
 protected:
    std::map<std::string, std::string> todos() {
        std::map<std::string, std::string> lista;
        for (const auto& nombre : libro_->Names()->enumerar()) {
            lista[nombre->Name()] = nombre->RefersTo();
        }
        return lista;
    }

    std::unique_ptr<excel::Application> aplicacion_ =
        nuevaAplicacionInterna([] { return 45000; }, discoDelSistema());
    std::unique_ptr<excel::Workbook> libro_ = aplicacion_->Workbooks()->Add();
};

TEST_F(NombresDelModelo, AreReadBackAsTheyWereDefined) {
    const std::map<std::string, std::string> definidos = {
        {"bnUltima", "=25"},         {"Grande", "=70000"},  {"Menos", "=-3"},
        {"Decimal", "=12.5"},        {"Texto", "=\"Año\""}, {"Celda", "=Hoja1!$B$7"},
        {"Zona", "=Hoja1!$A$1:$C$9"}};
    for (const auto& [nombre, referencia] : definidos) libro_->Names()->Add(nombre, referencia);
    EXPECT_EQ(todos(), definidos);
    Carpeta carpeta;
    libro_->SaveAs((carpeta / "n.xls").string(), 1);
    libro_ = aplicacion_->Workbooks()->Open((carpeta / "n.xls").string());
    EXPECT_EQ(todos(), definidos);
}

TEST_F(NombresDelModelo, AddedTwiceAreChangedInTheirPlace) {
    libro_->Names()->Add("uno", "=1");
    libro_->Names()->Add("dos", "=2");
    libro_->Names()->Add("UNO", "=\"otra cosa\"");
    EXPECT_EQ(todos(),
              (std::map<std::string, std::string>{{"uno", "=\"otra cosa\""}, {"dos", "=2"}}));
}

TEST_F(NombresDelModelo, ChangeWhatTheyReferTo) {
    libro_->Names()->Add("uno", "=1");
    libro_->Names()->enumerar()[0]->RefersTo("=Hoja1!$A$1");
    EXPECT_EQ(todos().at("uno"), "=Hoja1!$A$1");
}

TEST_F(NombresDelModelo, ThatAreNoneAreRefused) {
    for (const char* nombre : {"", "a b", "1a", "A1", "IV65536", "R", "c", "a-b"}) {
        EXPECT_THROW(libro_->Names()->Add(nombre, "=1"), excel::ErrorExcel) << nombre;
    }
    EXPECT_THROW(libro_->Names()->Add("bien", "=1+"), excel::ErrorExcel);
    EXPECT_TRUE(todos().empty());
}

TEST_F(NombresDelModelo, OfOneSheetSayWhich) {
    Carpeta carpeta;
    escribirFichero(carpeta / "s5.xls", muestra("s5_poi"));
    libro_ = aplicacion_->Workbooks()->Open((carpeta / "s5.xls").string());
    const auto lista = libro_->Names()->enumerar();
    size_t locales = 0;
    for (const auto& nombre : lista) {
        locales += nombre->Name().find('!') != std::string::npos ? 1 : 0;
    }
    EXPECT_GT(locales, 0U);
    EXPECT_LT(locales, lista.size());
}

}  // namespace
}  // namespace bn::xls::prueba
