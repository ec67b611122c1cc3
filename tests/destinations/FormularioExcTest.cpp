// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "destinations/FormularioExc.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/ExcelDePrueba.h"

namespace bn {
namespace {

constexpr const char* kMalCarpeta = "La carpeta especificada no existe";
constexpr const char* kMalFichero = "El nombre del Fichero es incorrecto";
constexpr const char* kMalHoja = "El nombre de la Hoja es incorrecto";
constexpr const char* kSinColumna = "Hay columnas de campo sin especificar";
constexpr const char* kRepetidas = "Hay columnas de campo repetidas";
constexpr char32_t kRetroceso = 8;
constexpr char32_t kIntro = 13;

class FormularioExcTest : public testing::Test {
 protected:
    FormularioExcTest() {
        cfg.LibroExcel((carpeta / "Pesadas.xls").string());
        f.cargar(cfg);
    }

    void teclear(const std::string& texto) {
        for (const char c : texto) f.tecla(static_cast<unsigned char>(c));
    }
    void borrarLetras(int fila) {
        f.irAFila(fila);
        f.teclaSuprimir();
    }
    std::string conLibro(const std::string& libro) const {
        FormularioExc otro = f;
        otro.txLibro = libro;
        return otro.validar();
    }
    std::string conHoja(const std::string& hoja) const {
        FormularioExc otro = f;
        otro.lstHoja = hoja;
        return otro.validar();
    }

    /// A saved workbook with these sheets stands where the form says.
    void ponerLibro(const std::vector<std::string>& hojas) {
        LibroSimulado& libro = plataforma.excel.disco[f.txLibro];
        libro.hojas.clear();
        for (const auto& nombre : hojas) libro.hojas.push_back({nombre, {}});
    }

    prueba::CarpetaTemporal carpeta;
    PlataformaConExcel plataforma{carpeta.ruta()};
    bn::Setup cfg{plataforma};
    FormularioExc f;
};

TEST(ColumnaEnLetras, FollowsTheAlphabetTwice) {
    EXPECT_EQ(FormularioExc::columnaALetras(1), "A");
    EXPECT_EQ(FormularioExc::columnaALetras(26), "Z");
    EXPECT_EQ(FormularioExc::columnaALetras(27), "AA");
    EXPECT_EQ(FormularioExc::columnaALetras(52), "AZ");
    EXPECT_EQ(FormularioExc::columnaALetras(53), "BA");
    EXPECT_EQ(FormularioExc::columnaALetras(702), "ZZ");
}

TEST(ColumnaEnLetras, IsEmptyForWhatIsNoColumn) {
    for (const int fuera : {0, -1, -30000, 703, 32767, 2147483647, -2147483647 - 1}) {
        EXPECT_EQ(FormularioExc::columnaALetras(fuera), "") << fuera;
    }
}

TEST(ColumnaEnLetras, ComesBackAsTheSameNumber) {
    for (int columna = 0; columna <= 702; ++columna) {
        EXPECT_EQ(FormularioExc::letrasAColumna(FormularioExc::columnaALetras(columna)), columna);
    }
}

TEST(ColumnaEnLetras, TakesNothingElseForAColumn) {
    for (const char* texto : {"", "1", "A1", "AAA", "ñ", "Ñ", " A", "@", "["}) {
        EXPECT_EQ(FormularioExc::letrasAColumna(texto), 0) << texto;
    }
}

TEST_F(FormularioExcTest, ShowsTheSettings) {
    cfg.ColumnaExcel(2, 0);
    cfg.ColumnaExcel(7, 702);
    f.cargar(cfg);
    EXPECT_EQ(f.txLibro, cfg.LibroExcel());
    EXPECT_EQ(f.lstHoja, "Pesadas");
    EXPECT_TRUE(f.marcada(0));
    EXPECT_EQ(f.letras(0), "A");
    EXPECT_FALSE(f.marcada(2));
    EXPECT_EQ(f.letras(2), "");
    EXPECT_EQ(f.letras(7), "ZZ");
    EXPECT_EQ(f.filaActual(), 0);
    EXPECT_EQ(f.validar(), "");
}

TEST_F(FormularioExcTest, ShowsNoBookWhileTheDestinationIsOff) {
    cfg.UsoExcel(false);
    f.cargar(cfg);
    EXPECT_EQ(f.txLibro, "");
    EXPECT_EQ(f.lstHoja, "");
    EXPECT_EQ(f.validar(), kMalCarpeta);
}

TEST_F(FormularioExcTest, ForgetsWhatWasPutAsideWhenLoadedAgain) {
    f.alternar(3);
    cfg.ColumnaExcel(3, 0);
    f.cargar(cfg);
    f.alternar(3);
    EXPECT_TRUE(f.marcada(3));
    EXPECT_EQ(f.letras(3), "");
}

TEST_F(FormularioExcTest, PutsTheLettersAsideAndBringsThemBack) {
    f.alternar(4);
    EXPECT_FALSE(f.marcada(4));
    EXPECT_EQ(f.letras(4), "");
    f.alternar(4);
    EXPECT_TRUE(f.marcada(4));
    EXPECT_EQ(f.letras(4), "E");
    EXPECT_EQ(f.filaActual(), 0);
}

TEST_F(FormularioExcTest, HasNoRowsBeyondTheEight) {
    for (const int fuera : {-1, 8, 1000}) {
        f.alternar(fuera);
        f.irAFila(fuera);
        EXPECT_FALSE(f.marcada(fuera));
        EXPECT_EQ(f.letras(fuera), "");
        EXPECT_EQ(f.filaActual(), 0);
    }
}

TEST_F(FormularioExcTest, ReplacesThenAppendsThenIgnores) {
    teclear("abc");
    EXPECT_EQ(f.letras(0), "AB");
    f.irAFila(1);
    f.irAFila(0);
    teclear("C");
    EXPECT_EQ(f.letras(0), "C");
}

TEST_F(FormularioExcTest, BeginsAnewInAnotherColumnOfTheSameRow) {
    teclear("A");
    f.irACelda(0, 2);
    teclear("B");
    EXPECT_EQ(f.letras(0), "B");
    f.irACelda(0, 2);
    teclear("C");
    EXPECT_EQ(f.letras(0), "BC");
}

TEST_F(FormularioExcTest, TakesOneLetterBack) {
    teclear("XY");
    f.tecla(kRetroceso);
    EXPECT_EQ(f.letras(0), "X");
    teclear("Z");
    EXPECT_EQ(f.letras(0), "XZ");
    for (int i = 0; i < 3; ++i) f.tecla(kRetroceso);
    EXPECT_EQ(f.letras(0), "");
}

TEST_F(FormularioExcTest, EmptiesTheLettersWithDeleteAndSpace) {
    f.teclaSuprimir();
    EXPECT_EQ(f.letras(0), "");
    EXPECT_TRUE(f.marcada(0));
    f.irAFila(1);
    f.tecla(U' ');
    EXPECT_EQ(f.letras(1), "");
}

TEST_F(FormularioExcTest, GoesThroughAllColumnsWithPlusAndBackWithMinus) {
    f.teclaSuprimir();
    for (int columna = 1; columna <= 702; ++columna) {
        f.tecla(U'+');
        ASSERT_EQ(f.letras(0), FormularioExc::columnaALetras(columna));
    }
    f.tecla(U'+');
    EXPECT_EQ(f.letras(0), "");
    for (int columna = 702; columna >= 0; --columna) {
        f.tecla(U'-');
        ASSERT_EQ(f.letras(0), FormularioExc::columnaALetras(columna));
    }
}

TEST_F(FormularioExcTest, TurnsTheCornersOfTheAlphabet) {
    const auto tras = [this](const std::string& letras, char32_t signo) {
        f.irAFila(1);
        f.irAFila(0);
        teclear(letras);
        f.tecla(signo);
        return f.letras(0);
    };
    EXPECT_EQ(tras("Z", U'+'), "AA");
    EXPECT_EQ(tras("AZ", U'+'), "BA");
    EXPECT_EQ(tras("AB", U'+'), "AC");
    EXPECT_EQ(tras("A", U'-'), "");
    EXPECT_EQ(tras("BA", U'-'), "AZ");
    EXPECT_EQ(tras("AA", U'-'), "Z");
}

TEST_F(FormularioExcTest, CarriesTheLettersDownWithEnter) {
    f.irAFila(2);
    f.tecla(kIntro);
    EXPECT_EQ(f.filaActual(), 3);
    EXPECT_EQ(f.letras(2), "C");
    EXPECT_EQ(f.letras(3), "C");
    EXPECT_EQ(f.validar(), kRepetidas);
}

TEST_F(FormularioExcTest, CarriesTheLettersIntoAnUncheckedRowToo) {
    f.alternar(1);
    f.tecla(kIntro);
    EXPECT_EQ(f.filaActual(), 1);
    EXPECT_FALSE(f.marcada(1));
    EXPECT_EQ(f.letras(1), "A");
    EXPECT_EQ(f.validar(), kRepetidas);
}

TEST_F(FormularioExcTest, StoresTheLettersOfAnUncheckedRow) {
    f.alternar(1);
    f.tecla(kIntro);  // "A" stands in rows 0 and 1
    borrarLetras(0);
    f.alternar(0);
    ASSERT_EQ(f.validar(), "");
    f.guardar(cfg);
    EXPECT_EQ(cfg.ColumnaExcel(0), 0);
    EXPECT_EQ(cfg.ColumnaExcel(1), 1);
}

TEST_F(FormularioExcTest, GoesFromTheLastRowToTheFirstWithEnter) {
    f.irAFila(7);
    f.tecla(kIntro);
    EXPECT_EQ(f.filaActual(), 0);
    EXPECT_EQ(f.letras(0), "H");
}

TEST_F(FormularioExcTest, BeginsAnewInTheRowEnteredWithEnter) {
    teclear("Q");
    f.tecla(kIntro);
    teclear("R");
    EXPECT_EQ(f.letras(1), "R");
}

TEST_F(FormularioExcTest, IgnoresTheKeyboardOnAnUncheckedRow) {
    f.alternar(0);
    teclear("X+- ");
    f.tecla(kRetroceso);
    f.teclaSuprimir();
    f.tecla(kIntro);
    EXPECT_EQ(f.letras(0), "");
    EXPECT_EQ(f.filaActual(), 0);
    f.alternar(0);
    EXPECT_EQ(f.letras(0), "A");
}

TEST_F(FormularioExcTest, IgnoresAllOtherKeys) {
    for (const char32_t otra : {U'1', U'ñ', U'Á', U'*', U'@', U'[', U'`', U'{', char32_t{27},
                                char32_t{0}, char32_t{0x10FFFF}}) {
        f.tecla(otra);
    }
    EXPECT_EQ(f.letras(0), "A");
    EXPECT_EQ(f.filaActual(), 0);
}

TEST_F(FormularioExcTest, AsksForAnExistingFolderFirst) {
    f.lstHoja = "";
    EXPECT_EQ(conLibro(""), kMalCarpeta);
    EXPECT_EQ(conLibro("Pesadas.xls"), kMalCarpeta);
    EXPECT_EQ(conLibro((carpeta / "no/Pesadas.xls").string()), kMalCarpeta);
    EXPECT_EQ(conLibro((carpeta / "no/Pesadas.doc").string()), kMalCarpeta);
    EXPECT_EQ(conLibro("C:\\no\\hay\\Pesadas.xls"), kMalCarpeta);
}

TEST_F(FormularioExcTest, TakesBothSeparators) {
    EXPECT_EQ(conLibro(carpeta.ruta().string() + "\\Pesadas.xls"), "");
    std::string alReves = (carpeta / "Pesadas.xls").string();
    for (char& c : alReves) c = c == '/' ? '\\' : c;
    EXPECT_EQ(conLibro(alReves), "");
    EXPECT_EQ(conLibro("/Pesadas.xls"), "") << "the root is a folder";
}

TEST_F(FormularioExcTest, AsksForAFileNameOfAWorkbook) {
    for (const char* bueno : {"Pesadas.xls", ".xls", "a.b.xls", "Año 2024.xls", "x[1].xls"}) {
        EXPECT_EQ(conLibro((carpeta / bueno).string()), "") << bueno;
    }
    f.lstHoja = "";
    for (const char* malo : {"Pesadas.XLS", "Pesadas.xlsx", "Pesadas", "", "a:b.xls", "a*.xls",
                             "a?.xls", "a\".xls", "a<.xls", "a>.xls", "a|.xls", "a.xls "}) {
        EXPECT_EQ(conLibro(carpeta.ruta().string() + "/" + malo), kMalFichero) << malo;
    }
}

TEST_F(FormularioExcTest, AsksForASheetNameWithoutTheDigitOne) {
    for (const char* buena : {"Pesadas", "Hoja2", "a|b", "Año 2024", "'", "a.b"}) {
        EXPECT_EQ(conHoja(buena), "") << buena;
    }
    f.alternar(0);
    f.alternar(0);
    borrarLetras(0);
    for (const char* mala :
         {"", "Hoja1", "1", "a\\b", "a/b", "a:b", "a*b", "a?b", "a\"b", "a<b", "a>b", "2021"}) {
        EXPECT_EQ(conHoja(mala), kMalHoja) << mala;
    }
    EXPECT_EQ(f.validar(), kSinColumna);
}

TEST_F(FormularioExcTest, AsksEachCheckedRowButTheLastForLetters) {
    for (int fila = 0; fila < 7; ++fila) {
        FormularioExc otro = f;
        otro.irAFila(fila);
        otro.teclaSuprimir();
        EXPECT_EQ(otro.validar(), kSinColumna) << fila;
    }
    borrarLetras(7);
    EXPECT_TRUE(f.marcada(7));
    ASSERT_EQ(f.validar(), "");
    f.guardar(cfg);
    EXPECT_EQ(cfg.ColumnaExcel(7), 0);
}

TEST_F(FormularioExcTest, RefusesAColumnUsedTwice) {
    for (int fila = 1; fila < 8; ++fila) {
        FormularioExc otro = f;
        otro.irAFila(fila);
        otro.tecla(U'A');
        EXPECT_EQ(otro.validar(), kRepetidas) << fila;
    }
}

TEST_F(FormularioExcTest, TellsTheFailureOfTheFirstRowFirst) {
    borrarLetras(1);
    f.irAFila(2);
    teclear("A");
    EXPECT_EQ(f.validar(), kRepetidas);
    borrarLetras(0);
    EXPECT_EQ(f.validar(), kSinColumna);
}

TEST_F(FormularioExcTest, NeverCountsEmptyUncheckedRowsAsRepeated) {
    for (int fila = 0; fila < 8; ++fila) f.alternar(fila);
    EXPECT_EQ(f.validar(), "");
}

TEST_F(FormularioExcTest, StoresBookSheetAndColumns) {
    f.txLibro = (carpeta / "Otro.xls").string();
    f.lstHoja = "Otra";
    f.alternar(0);
    f.irAFila(1);
    teclear("AA");
    f.guardar(cfg);
    EXPECT_EQ(cfg.LibroExcel(), f.txLibro);
    EXPECT_EQ(cfg.HojaExcel(), "Otra");
    EXPECT_EQ(cfg.ColumnaExcel(0), 0);
    EXPECT_EQ(cfg.ColumnaExcel(1), 27);
    EXPECT_EQ(cfg.ColumnaExcel(2), 3);
}

TEST_F(FormularioExcTest, ListsTheSheetsOfTheBookAndKeepsTheChosenName) {
    ponerLibro({"Hoja2", "Pesadas", "ñ"});
    f.lstHoja = "nueva";
    XCel excel(plataforma);
    f.refrescarHojas(excel);
    EXPECT_EQ(f.hojas, (std::vector<std::string>{"Hoja2", "Pesadas", "ñ"}));
    EXPECT_EQ(f.lstHoja, "nueva");
    EXPECT_EQ(plataforma.excel.instanciasAbiertas, 0);
    EXPECT_TRUE(plataforma.mensajes.empty());
}

TEST_F(FormularioExcTest, LeavesTheListWhenItCannotBeRead) {
    f.hojas = {"antes"};
    const std::vector<std::string> antes = f.hojas;
    {
        XCel excel(plataforma);
        plataforma.excel.errorAlArrancar = "no";
        f.refrescarHojas(excel);
        EXPECT_EQ(f.hojas, antes);
        plataforma.excel.errorAlArrancar.clear();
        f.refrescarHojas(excel);  // no such workbook
        EXPECT_EQ(f.hojas, antes);
        ponerLibro({"a"});
        plataforma.excel.fallar("Sheets.enumerar", "no se puede");
        f.refrescarHojas(excel);
        EXPECT_EQ(f.hojas, antes);
    }
    EXPECT_EQ(plataforma.excel.instanciasAbiertas, 0);
    EXPECT_TRUE(plataforma.mensajes.empty());
}

}  // namespace
}  // namespace bn
