// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "config/Setup.h"
#include "destinations/XCel.h"
#include "download/PasoDeGuardado.h"
#include "link/sacoTramas.h"
#include "platform/Ficheros.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/ExcelDePrueba.h"
#include "tests/soporte/TramasDePrueba.h"

namespace bn {
namespace {

using prueba::leerFichero;
using prueba::PesadaDePrueba;
using testing::ElementsAre;
using testing::IsEmpty;
using Textos = std::vector<std::string>;

const std::string kLibro = "Pesadas.xls";

class PasoDeGuardadoPrueba : public testing::Test {
 protected:
    void SetUp() override {
        cfg.LibroExcel(kLibro);
        cfg.HojaExcel("Pesadas");
        cfg.ArchivoTexto(ficheros::aTexto(texto));
        excel().disco[kLibro].hojas = {{"Pesadas", {}}};
        ASSERT_TRUE(saco.iniGuardo());
    }
    ExcelDePrueba& excel() { return plataforma.excel; }
    HojaSimulada& hoja() { return excel().disco[kLibro].hojas[0]; }
    Variante celda(int32_t fila, int32_t columna) { return hoja().celda(fila, columna); }
    void almacenar(const std::string& datos) { ASSERT_TRUE(saco.Guardo(datos)); }
    void almacenar(int32_t cuantas) {
        for (int32_t i = 1; i <= cuantas; ++i) {
            PesadaDePrueba pesada;
            pesada.albaran = std::to_string(i);
            pesada.fechaHora = "15/03/23 12:00";
            almacenar(pesada.datos());
        }
    }
    void ejecutar() {
        lote.emplace(plataforma, 0, carpeta / "bnGuardo.txt", carpeta / "bnGuardo.nota");
        lote->nota().crear({});
        lote->releer();
        XCel xcel(plataforma);
        PasoDeGuardado paso(plataforma, cfg, xcel);
        paso.ejecutar({&*lote}, PasoDeGuardado::Fallo::kDeTodo);
        avisos = paso.avisos();
    }
    /// A batch of one weighing, whatever was stored before.
    void ejecutarUna() {
        sacoTramas otro(plataforma);
        ASSERT_TRUE(otro.iniGuardo());
        ASSERT_TRUE(otro.Guardo(PesadaDePrueba().datos()));
        ejecutar();
    }
    /// The line of the n-th weighing that almacenar stores, with the default layout.
    static std::string linea(int32_t n) {
        return "15/03/2023 12:00 1234BCD  000000" + std::to_string(n) +
               " 00000011 00000022 00000033      13     100\r\n";
    }
    void sinTexto() { cfg.UsoTexto(false); }
    void sinExcel() { cfg.UsoExcel(false); }
    void soloColumnas(const std::vector<std::pair<int32_t, int16_t>>& columnas) {
        for (int32_t campo = 0; campo < kCamposPesada; ++campo) cfg.ColumnaExcel(campo, 0);
        for (const auto& [campo, columna] : columnas) cfg.ColumnaExcel(campo, columna);
    }
    void ultima(const std::string& referencia) {
        excel().disco[kLibro].nombres = {{"bnUltima", referencia}};
    }
    /// The rows written, in order.
    std::vector<int32_t> filas() {
        std::vector<int32_t> lista;
        for (const auto& orden : excel().ordenes()) {
            int fila = 0;
            int columna = 0;
            if (std::sscanf(orden.c_str(), "Range[%d,%d].FormulaR1C1=", &fila, &columna) == 2 &&
                (lista.empty() || lista.back() != fila)) {
                lista.push_back(fila);
            }
        }
        return lista;
    }

    prueba::CarpetaTemporal carpeta;
    PlataformaConExcel plataforma{carpeta.ruta()};
    std::filesystem::path texto = carpeta / "Pesadas.txt";
    bn::Setup cfg{plataforma};
    sacoTramas saco{plataforma};
    std::optional<Lote> lote;
    Textos avisos;
};

TEST_F(PasoDeGuardadoPrueba, WithoutFramesNothingIsTouched) {
    ejecutar();
    EXPECT_THAT(excel().porIdentificador, IsEmpty());
    EXPECT_FALSE(std::filesystem::exists(texto));
}

TEST_F(PasoDeGuardadoPrueba, WithBothDestinationsOffNothingIsWritten) {
    sinExcel();
    sinTexto();
    almacenar(3);
    ejecutar();
    EXPECT_EQ(lote->porLlegar(), 3U) << "they wait for a destination";
    EXPECT_THAT(excel().porIdentificador, IsEmpty());
    EXPECT_FALSE(std::filesystem::exists(texto));
}

TEST_F(PasoDeGuardadoPrueba, WritesEachFieldInItsColumnWithItsType) {
    cfg.ColumnaExcel(kFechaHora, 702);
    PesadaDePrueba pesada;
    pesada.fechaHora = "15/03/23 12:00";
    pesada.matricula = "  X\xD1 1  ";  // Windows-1252
    almacenar(pesada.datos());
    ejecutar();
    EXPECT_EQ(celda(1, 702), Variante(FechaOle{45000.5}));
    EXPECT_EQ(celda(1, 2), Variante(std::string("XÑ 1")));
    EXPECT_EQ(celda(1, 3), Variante(57));
    EXPECT_EQ(celda(1, 4), Variante(11));
    EXPECT_EQ(celda(1, 5), Variante(22));
    EXPECT_EQ(celda(1, 6), Variante(33));
    EXPECT_EQ(celda(1, 7), Variante(12.5F));
    EXPECT_EQ(celda(1, 8), Variante(100.25F));
    EXPECT_EQ(hoja().celdas.size(), 8U);
}

TEST_F(PasoDeGuardadoPrueba, DoesItsWorkInOrderAndOnce) {
    soloColumnas({{kPesoNeto, 1}, {kAlbaran, 5}});
    almacenar(2);
    ejecutar();
    EXPECT_THAT(excel().ordenes(),
                ElementsAre("Application[1].DisplayAlerts=False", "Workbooks.Open " + kLibro,
                            "Range[1,5].FormulaR1C1=int 1", "Range[1,1].FormulaR1C1=float 100.25",
                            "Range[2,5].FormulaR1C1=int 2", "Range[2,1].FormulaR1C1=float 100.25",
                            "Workbook.SaveAs " + kLibro + " AccessMode 1", "Application[1].Quit"));
    EXPECT_EQ(excel().objetosVivos, 0);
}

TEST_F(PasoDeGuardadoPrueba, LeavesTheCellsOfOtherColumnsAsTheyAre) {
    soloColumnas({{kAlbaran, 2}});
    hoja().celdas[{1, 1}] = std::string("nota");
    almacenar(1);
    ejecutar();
    EXPECT_EQ(celda(1, 1), Variante(std::string("nota")));
    EXPECT_EQ(celda(1, 2), Variante(1));
}

// The first row

TEST_F(PasoDeGuardadoPrueba, StartsAtTheFirstRowThatIsEmptyInItsOwnColumns) {
    soloColumnas({{kPesoNeto, 1}, {kFechaHora, 2}});
    for (int32_t fila = 1; fila <= 4; ++fila) hoja().celdas[{fila, fila % 2 + 1}] = 1.0;
    hoja().celdas[{5, 3}] = std::string("otra columna");
    almacenar(3);
    ejecutar();
    EXPECT_THAT(filas(), ElementsAre(5, 6, 7));
}

TEST_F(PasoDeGuardadoPrueba, ARowWithOnlyAZeroOrABlankIsNotEmpty) {
    hoja().celdas[{1, 8}] = 0.0;
    hoja().celdas[{2, 1}] = std::string(" ");
    hoja().celdas[{3, 3}] = false;
    almacenar(1);
    ejecutar();
    EXPECT_THAT(filas(), ElementsAre(4));
}

TEST_F(PasoDeGuardadoPrueba, StopsAtTheFirstGap) {
    hoja().celdas[{1, 1}] = 1.0;
    hoja().celdas[{3, 1}] = std::string("se pisa");
    almacenar(2);
    ejecutar();
    EXPECT_THAT(filas(), ElementsAre(2, 3));
    EXPECT_EQ(celda(3, 1), Variante(FechaOle{45000.5}));
}

TEST_F(PasoDeGuardadoPrueba, WithoutAnyColumnNothingIsLookedAtAndTheWorkbookIsSaved) {
    soloColumnas({});
    hoja().celdas[{1, 1}] = 1.0;
    almacenar(2);
    ejecutar();
    EXPECT_THAT(filas(), IsEmpty());
    EXPECT_EQ(excel().ordenes().back(), "Application[1].Quit");
}

TEST_F(PasoDeGuardadoPrueba, ANamedRowIsUsedAsItStands) {
    ultima("=25");
    hoja().celdas[{25, 3}] = std::string("se pisa");
    almacenar(2);
    ejecutar();
    EXPECT_THAT(filas(), ElementsAre(25, 26));
    EXPECT_EQ(celda(25, 3), Variante(1));
    EXPECT_EQ(excel().disco[kLibro].nombres[0].second, "=25") << "the program only reads it";
}

TEST_F(PasoDeGuardadoPrueba, TheNamesLetterCaseDoesNotMatter) {
    excel().disco[kLibro].nombres = {{"BNULTIMA", "=7"}};
    almacenar(1);
    ejecutar();
    EXPECT_THAT(filas(), ElementsAre(7));
}

TEST_F(PasoDeGuardadoPrueba, ReadsTheNamedRowAsALeadingNumberRoundedToTheEvenNeighbour) {
    const std::vector<std::pair<std::string, int32_t>> casos = {
        {"=12abc", 12}, {"=2.5", 2}, {"=3.5", 4},    {"=2.51", 3}, {"=  9", 9},
        {"=+4", 4},     {"=7,9", 7}, {"=1.5e1", 15}, {"=0.6", 1},  {"=32767.4", 32767}};
    for (const auto& [referencia, fila] : casos) {
        excel().olvidar();
        ultima(referencia);
        ejecutarUna();
        EXPECT_THAT(filas(), ElementsAre(fila)) << referencia;
    }
}

TEST_F(PasoDeGuardadoPrueba, ANamedRowThatIsNoNumberIsRowZeroWhichTheSheetRefuses) {
    for (const std::string referencia : {"=abc", "=Pesadas!$A$25", "=", "=\"25\"", "=0", "=0.5"}) {
        ultima(referencia);
        EXPECT_THROW(ejecutarUna(), excel::ErrorExcel) << referencia;
    }
    EXPECT_THAT(filas(), IsEmpty());
}

TEST_F(PasoDeGuardadoPrueba, ANamedRowBeyond16BitsIsAnOverflow) {
    for (const std::string referencia :
         {"=32767.5", "=32768", "=65537", "=-32769", "=1e300", "=99999999999999999999999"}) {
        ultima(referencia);
        EXPECT_THROW(ejecutarUna(), std::overflow_error) << referencia;
    }
    EXPECT_THAT(filas(), IsEmpty());
}

TEST_F(PasoDeGuardadoPrueba, TheSmallest16BitRowIsTheSheetsToRefuse) {
    ultima("=-32768");
    almacenar(1);
    EXPECT_THROW(ejecutar(), excel::ErrorExcel);
}

TEST_F(PasoDeGuardadoPrueba, RowsUpTo32767AreWrittenAndSavedAndTheOverflowIsAnErrorOnlyThen) {
    ultima("=32766");
    almacenar(3);
    EXPECT_THROW(ejecutar(), HojaLlena);
    EXPECT_THAT(filas(), ElementsAre(32766, 32767));
    EXPECT_EQ(celda(32766, 3), Variante(1));
    EXPECT_EQ(celda(32767, 3), Variante(2));
    EXPECT_EQ(leerFichero(texto), linea(1) + linea(2)) << "the third one's row came first";
    EXPECT_EQ(lote->porLlegar(), 1U);
    EXPECT_EQ(lote->nota().parte(Destino::kHoja).llegadas.texto(), "0-1");
    EXPECT_EQ(lote->nota().parte(Destino::kTexto).llegadas.texto(), "0-1");
}

TEST_F(PasoDeGuardadoPrueba, RowsThatJustFitAreNoError) {
    ultima("=32766");
    almacenar(2);
    ejecutar();
    EXPECT_EQ(celda(32767, 3), Variante(2));
    EXPECT_TRUE(lote->llegado());
}

TEST_F(PasoDeGuardadoPrueba, SaysSoWhenFewerThan500RowsAreLeft) {
    ultima("=32267");  // the last row but 500
    almacenar(1);
    ejecutar();
    EXPECT_THAT(avisos, IsEmpty());
    ASSERT_TRUE(saco.Guardo(PesadaDePrueba().datos()));
    ejecutar();
    EXPECT_THAT(avisos, ElementsAre(testing::HasSubstr("quedan 499 filas libres")));
}

TEST_F(PasoDeGuardadoPrueba, LooksForAnEmptyRowDownToTheLastOneOnly) {
    soloColumnas({{kAlbaran, 1}});
    for (int32_t fila = 1; fila <= 32767; ++fila) hoja().celdas[{fila, 1}] = 1.0;
    almacenar(1);
    EXPECT_THROW(ejecutar(), std::overflow_error);
}

// What cannot be parsed

TEST_F(PasoDeGuardadoPrueba, AFrameThatDoesNotParseIsWrittenWithEmptyAndZeroValues) {
    soloColumnas({{kFechaHora, 1}, {kMatricula, 2}, {kAlbaran, 3}, {kPesoNeto, 4}});
    almacenar(1);
    almacenar(std::string("esto no es una pesada"));
    ejecutar();
    EXPECT_EQ(celda(2, 1), Variante(FechaOle{0}));
    EXPECT_EQ(celda(2, 2), Variante(std::string()));
    EXPECT_EQ(celda(2, 3), Variante(0));
    EXPECT_EQ(celda(2, 4), Variante(0.0F)) << "nothing is left over from the frame before";
    EXPECT_EQ(leerFichero(texto), linea(1) +
                                      "30/12/1899 00:00          0000000 00000000 00000000 00000000"
                                      "       0       0\r\n");
}

TEST_F(PasoDeGuardadoPrueba, ACounterRecordIsWrittenLikeAnyOtherFrame) {
    soloColumnas({{kAlbaran, 3}});
    sinTexto();
    almacenar(std::string("0012"));
    ejecutar();
    EXPECT_EQ(celda(1, 3), Variante(0));
}

// The text file

TEST_F(PasoDeGuardadoPrueba, WritesOneLineAWeighingEndedByCarriageReturnAndLineFeed) {
    sinExcel();
    almacenar(2);
    ejecutar();
    EXPECT_EQ(leerFichero(texto), linea(1) + linea(2));
    EXPECT_THAT(excel().porIdentificador, IsEmpty());
}

TEST_F(PasoDeGuardadoPrueba, AppendsToAFileThatExists) {
    prueba::escribirFichero(texto, "antes");
    almacenar(1);
    ejecutar();
    EXPECT_EQ(leerFichero(texto), "antes\r\n" + linea(1)) << "its last line had no end";
}

TEST_F(PasoDeGuardadoPrueba, KeepsThePlatesBytesInTheTextFile) {
    sinExcel();
    PesadaDePrueba pesada;
    pesada.matricula = "\xD1\x80\xE1";
    almacenar(pesada.datos());
    ejecutar();
    EXPECT_EQ(leerFichero(texto).substr(17, 9), "\xD1\x80\xE1      ");
}

TEST_F(PasoDeGuardadoPrueba, FindsATextFileWhoseNameIsNotAscii) {
    sinExcel();
    const auto conEnie = carpeta.ruta() / ficheros::aRuta("Añó €.txt");
    cfg.ArchivoTexto(ficheros::aTexto(conEnie));
    almacenar(1);
    ejecutar();
    EXPECT_EQ(leerFichero(conEnie), linea(1));
}

TEST_F(PasoDeGuardadoPrueba, WritesAnEmptyLineWhenNoFieldHasAPosition) {
    sinExcel();
    for (int32_t campo = 0; campo < kCamposPesada; ++campo) cfg.Posicion(campo, 0);
    almacenar(2);
    ejecutar();
    EXPECT_EQ(leerFichero(texto), "\r\n\r\n");
}

// Errors end the pass

TEST_F(PasoDeGuardadoPrueba, ARefusedCellEndsThePassAndTheLinesWrittenStay) {
    almacenar(3);
    excel().fallar("Range.FormulaR1C1=", "hoja protegida", 8 + 3);
    EXPECT_THROW(ejecutar(), excel::ErrorExcel);
    EXPECT_EQ(hoja().celdas.size(), 0U) << "the workbook is not saved";
    EXPECT_EQ(leerFichero(texto), linea(1));
    EXPECT_EQ(lote->porLlegar(), 3U);
    EXPECT_EQ(excel().instanciasAbiertas, 0) << "nothing keeps the workbook from others";
}

TEST_F(PasoDeGuardadoPrueba, AWorkbookThatCannotBeSavedLeavesTheLinesWritten) {
    almacenar(2);
    excel().fallar("Workbook.SaveAs", "disco lleno");
    EXPECT_THROW(ejecutar(), excel::ErrorExcel);
    EXPECT_EQ(leerFichero(texto), linea(1) + linea(2));
}

TEST_F(PasoDeGuardadoPrueba, AWorkbookThatDidNotOpenFailsAtItsFirstUse) {
    almacenar(1);
    excel().errorAlArrancar = "Error 429";
    EXPECT_THROW(ejecutar(), excel::ErrorExcel);
    EXPECT_THAT(plataforma.mensajes, ElementsAre("Error 429"));
    EXPECT_FALSE(std::filesystem::exists(texto)) << "the worksheet comes first";
}

TEST_F(PasoDeGuardadoPrueba, ATextFileThatCannotBeOpenedEndsThePassBeforeAnyRow) {
    cfg.ArchivoTexto(ficheros::aTexto(carpeta / "no existe" / "Pesadas.txt"));
    almacenar(1);
    EXPECT_THROW(ejecutar(), ErrorFichero);
    EXPECT_THAT(filas(), IsEmpty());
}

TEST_F(PasoDeGuardadoPrueba, AFullDiskEndsThePassAndTheWorkbookIsNotSaved) {
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no disk is full here";
    std::filesystem::create_symlink("/dev/full", texto);
    almacenar(2);
    EXPECT_THROW(ejecutar(), ErrorFichero);
    EXPECT_THAT(filas(), ElementsAre(1));
    EXPECT_EQ(hoja().celdas.size(), 0U);
}

TEST_F(PasoDeGuardadoPrueba, DoesNotLeaveTheTextFileOpen) {
    if (!std::filesystem::exists("/proc/self/fd")) GTEST_SKIP() << "nothing counts them here";
    const auto abiertos = [] {
        std::size_t cuantos = 0;
        for ([[maybe_unused]] const auto& uno :
             std::filesystem::directory_iterator("/proc/self/fd")) {
            ++cuantos;
        }
        return cuantos;
    };
    almacenar(2);
    const std::size_t antes = abiertos();
    excel().fallar("Range.FormulaR1C1=", "hoja protegida", 8 + 1);
    EXPECT_THROW(ejecutar(), excel::ErrorExcel);
    EXPECT_LE(abiertos(), antes);
}

TEST_F(PasoDeGuardadoPrueba, AWorkbookThatCannotBeReadIsReplacedAndKept) {
    plataforma.horaActual = 45000.5;
    const auto roto = carpeta / "roto.xls";
    prueba::escribirFichero(roto, "?");
    cfg.LibroExcel(ficheros::aTexto(roto));
    sinTexto();
    almacenar(1);
    ejecutar();
    EXPECT_EQ(excel().disco[ficheros::aTexto(roto)].hoja("Pesadas").celda(1, 3), Variante(1));
    EXPECT_EQ(leerFichero(carpeta / "roto.xls.20230315-120000.bak"), "?");
}

// The settings are read again for every frame.

TEST_F(PasoDeGuardadoPrueba, ReadsTheSettingsAgainForEveryFrame) {
    soloColumnas({{kAlbaran, 1}});
    almacenar(3);
    int32_t escritas = 0;
    excel().alLlamar = [&](const std::string& llamada) {
        if (llamada.find("FormulaR1C1=") == std::string::npos || ++escritas != 2) return;
        cfg.ColumnaExcel(kAlbaran, 4);
        cfg.Posicion(kAlbaran, 0);
    };
    ejecutar();
    EXPECT_EQ(celda(2, 1), Variante(2));
    EXPECT_EQ(celda(3, 4), Variante(3));
    EXPECT_EQ(celda(3, 1), Variante());
    const std::string sinAlbaran =
        "15/03/2023 12:00 1234BCD          00000011 00000022 00000033      13     100\r\n";
    EXPECT_EQ(leerFichero(texto), linea(1) + sinAlbaran + sinAlbaran);
}

TEST_F(PasoDeGuardadoPrueba, TheDestinationsAreThoseSwitchedOnWhenThePassBegins) {
    sinTexto();
    almacenar(2);
    excel().alLlamar = [&](const std::string& llamada) {
        if (llamada.find("Range[1,8].FormulaR1C1=") == 0) cfg.UsoTexto(true);
    };
    ejecutar();
    EXPECT_EQ(celda(2, 3), Variante(2));
    EXPECT_TRUE(lote->llegado());
    EXPECT_FALSE(std::filesystem::exists(texto));
}

TEST_F(PasoDeGuardadoPrueba, AWorksheetSwitchedOffMeanwhileIsNotSaved) {
    almacenar(2);
    excel().alLlamar = [&](const std::string& llamada) {
        if (llamada.find("Range[1,8].FormulaR1C1=") == 0) cfg.UsoExcel(false);
    };
    ejecutar();
    EXPECT_THAT(filas(), ElementsAre(1));
    EXPECT_EQ(hoja().celdas.size(), 0U);
    EXPECT_EQ(leerFichero(texto), linea(1) + linea(2));
    EXPECT_EQ(lote->porLlegar(), 2U) << "they wait for it";
    EXPECT_EQ(excel().instanciasAbiertas, 0);
}

}  // namespace
}  // namespace bn
