// SPDX-License-Identifier: MIT
// Plates on their way into a worksheet.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "destinations/XCel.h"
#include "download/MatriculaEnHoja.h"
#include "platform/Ficheros.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/PlataformaDePrueba.h"

namespace bn {
namespace {

using Textos = std::vector<std::string>;

// Spanish plates new and old, tractors, trailers, military, diplomatic, foreign ones, and what
// people type where there is no plate: no notation makes anything else of them.
// clang-format off
const Textos kTextos = {
    "1234BCD", "0001BBB", "9999ZZZ", "1234-BCD", "1234 BCD", "0000 BBB", "4321-LMN", "7777LZX",
    "0100BBC", "1234bcd", "M-1234-AB", "M-1234-A", "M-1234-ZZ", "B-9876-XY", "B-123456",
    "M-123456", "BI-1234-CA", "SS-0001-A", "SE-9999-DZ", "GC-1234-BM", "TF-1234-BZ", "PM-1234-CT",
    "IB-1234-DN", "A-1234-DZ", "A-1234-P", "A-1234-E", "E-1234-E", "CR-1234-A", "TO-0007-AC",
    "J-1234-AF", "H-1234-AB", "O-1234-CD", "P-1234-L", "Z-1234-BZ", "SA-1234-U", "MA-1234-DF",
    "MU-1234-CK", "ML-1234-F", "CE-1234-J", "LE-1234-AL", "LU-1234-Z", "OR-1234-V", "OU-1234-Z",
    "AV-1234-J", "M 1234 AB", "M1234AB", "m-1234-ab", "E-1234-BBC", "E 1234 BBC", "E1234BBC",
    "R-1234-BBB", "R1234BBB", "R 1234 BCX", "VE-12345", "VE-1234-A", "BU-12345-VE", "BU-12345-R",
    "T-1234-BBB", "H-1234-BBB", "P-1234-BBB", "V-1234-BBB", "S-1234-BBB", "C-1234-BBB",
    "CD-123-456", "CC-12-345", "OI-1-23", "TA-12-345", "ET-12345", "ET-123456-A", "EA-1234",
    "FN-1234-V", "FAE 1234", "PGC-1234-A", "PGC1234Z", "CNP-1234-AA", "DGP-1234-B", "MF-1234-VH",
    "PME-1234", "MMA-12345", "GSH-1234-X", "MOP-1234", "ATE-1234", "UE-1234", "WD-123", "MOTO 7",
    "AB-123-CD", "AB123CD", "1234 AB 75", "123 ABC 75", "FR-123-FR", "12-AB-34", "AB-12-34",
    "12-34-AB", "00-AA-00", "AA-00-AA", "99-ZZ-01", "65-AM-12", "12-34-PM", "12-34-AM",
    "M-AB 1234", "B-XY 12E", "E-AB 123", "E 1234", "HH-A 1", "MAR-X 12", "DE-AB 12", "DE 1234",
    "AUG-B 17x", "LJ AB-123", "ZG 1234-AB", "W 12345 A", "AB12 CDE", "ABC 123", "GX-12-34",
    "BE 12 CD", "1-ABC-234", "KA 01 AB 1234", "12345-A-6", "12345 A 6", "WW-123456", "CB 1234 AB",
    "П123АБ77", "А123ВС99", "ΑΒΓ-1234", "Ñ-1234-Ñ", "ÇA-12", "1234Ñ", "€-X",
    "TRACTOR 3", "REMOLQUE", "SIN MATRICULA", "S/M", "N/A", "n.d.", "?", "??", "*", "**", "_",
    ".", "..", ",", ";", "!", "A", "E", "M", "P", "MAY", "MAYO", "ENERO", "JANUARY", "DIC", "AM",
    "PM", "E5", "E12", "A1", "R1C1", "RC", "C3", "B2:C4", "1234E", "1234 E", "1234-E", "1234-E56",
    "1234 E56", "12 E 34", "MAY-1234", "MAR 0123", "1234MAR", "SEP-1234-A", "DIC-123456",
    "MAYOR 5", "MARTA 12", "ENEKO 1", "VERDAD", "TRUEX", "FALSOS", "VERDADERO 1", "TRUE 1",
    "A 12", "P 5", "AM 5", "12-A", "12 A 34", "123 P", "12 M", "12h30", "0x1F", "1234D", "1234D5",
    "12F3", "1a2", "1E", "1E+", "E+5", "{=A1}", "\"1234\"", "^12X", "\\12X", "!12x", "&12x", "1_",
};
// clang-format on

// What English or Spanish entry would read as a number, amount, date, time, formula, error or
// logical value.
// clang-format off
const Textos kAjenos = {
    "0047", "1234", "1", "0", "007", "12345678", "1.5", "1,5", "1.234", "1,234", "1.234,56",
    "1,234.56", ".5", ",5", "5.", "5,", "12 345", "(12)", "50%", "%50", "5 %", "$12", "12€",
    "€12", "€ 12", "12 €", "£5", "12 EUR", "12 pts", "1234E56", "1234e5", "0E0", "1E5",
    "9E9", "1E+5", "1E-5", "1.5E3", "1,5E3", ".5E1", "5.E1", "12E345", "1E999", " 1E5 ", "1-2",
    "1/2", "1-2-3", "1/2/3", "12-34-56", "31/12/2020", "31-12-2020", "2020-12-31", "31.12.2020",
    "5/6", "5-2020", "1 1/2", "0 3/4", "12:30", "1:2:3", "12:", "12:30 PM", "12:30 p", "5 PM",
    "5 p", "12 a", "5 a.m.", "5 P. M.", "12A", "1/2/20 5 PM", "MAY5", "5MAY", "MAY-5", "MAY 5",
    "5 may", "may/5", "MAY2020", "MAY-20", "5MAY20", "5-MAY-2020", "MAY 5, 2020", "Sept 5",
    "SEP5", "JAN1", "1JAN", "ENE1", "1-ENE", "ENE-1", "ene. 5", "ABR-12", "12ABR", "AGO5",
    "AGO-2", "DIC1", "DIC-31", "AUG9", "APR1", "DEC2", "5 de mayo", "5 de mayo de 2020",
    "MARZO 3", "3 MARZO", "OCT12", "12-OCT-99", "NOV-2345", "MAR00", "0005MAY", "5 mayo 10:30",
    "JUNIO 7", "FEBRERO1", "SETIEMBRE 1", "=X12", "=", "=1+1", "=A1", "==", "+A", "+12", "+X-1",
    "-B", "-12", "-B-12", "-", "--", "@C", "@", "@SUM(A1)", " =X", " -B", "'X", "'", "''",
    "'1234", "#N/A", "#¡REF!", "#1", "#", "TRUE", "FALSE", "true", "False", "VERDADERO", "FALSO",
    "verdadero", "Falso", "TRUE ", " VERDADERO",
};
// clang-format on

TEST(MatriculaEnHoja, LeavesWhatIsATextInAnyCase) {
    for (const std::string& matricula : kTextos) EXPECT_EQ(matriculaEnHoja(matricula), matricula);
}

TEST(MatriculaEnHoja, PutsAnApostropheBeforeWhatEntryWouldChange) {
    for (const std::string& matricula : kAjenos) {
        EXPECT_EQ(matriculaEnHoja(matricula), "'" + matricula);
    }
}

TEST(MatriculaEnHoja, LeavesNothingAsNothing) {
    EXPECT_EQ(matriculaEnHoja(""), "");
    EXPECT_EQ(matriculaEnHoja("  "), "  ");
}

class MatriculasEnElLibro : public testing::Test {
 protected:
    void SetUp() override { plataforma.horaActual = 46000; }  // dates typed without a year need one

    /// What comes back from a saved workbook in the place of each entry.
    std::vector<Variante> idaYVuelta(const Textos& entradas) {
        const std::string ruta = ficheros::aTexto(carpeta / "m.xls");
        xcel.AbrirParaEscribir(ruta, "Pesadas", true);
        for (size_t i = 0; i < entradas.size(); ++i) xcel.Celda(fila(i), 1, entradas[i]);
        xcel.Guardar("");
        EXPECT_TRUE(xcel.AbrirParaLeer(ruta, "Pesadas"));
        std::vector<Variante> leidas;
        for (size_t i = 0; i < entradas.size(); ++i) leidas.push_back(xcel.Celda(fila(i), 1));
        xcel.Cerrar();
        return leidas;
    }
    static int16_t fila(size_t lugar) { return static_cast<int16_t>(lugar + 1); }

    prueba::CarpetaTemporal carpeta;
    PlataformaDePrueba plataforma{carpeta.ruta()};
    XCel xcel{plataforma};
};

TEST_F(MatriculasEnElLibro, ComeBackAsTheVeryText) {
    for (const Textos* lista : {&kTextos, &kAjenos}) {
        Textos entradas;
        for (const std::string& matricula : *lista) entradas.push_back(matriculaEnHoja(matricula));
        const std::vector<Variante> leidas = idaYVuelta(entradas);
        for (size_t i = 0; i < lista->size(); ++i) {
            EXPECT_EQ(leidas[i], Variante((*lista)[i])) << (*lista)[i];
        }
    }
}

TEST_F(MatriculasEnElLibro, WouldNotWithoutTheApostrophe) {
    const Textos cambiados = {"0047",       "1.5",   "1,234", "(12)",  "50%",  "$12",
                              "1234E56",    "1-2",   "1/2",   "12:30", "5 PM", "MAY5",
                              "5-MAY-2020", "1 1/2", "TRUE",  "'1234"};
    const std::vector<Variante> leidas = idaYVuelta(cambiados);
    for (size_t i = 0; i < cambiados.size(); ++i) {
        EXPECT_NE(leidas[i], Variante(cambiados[i])) << cambiados[i];
    }
}

}  // namespace
}  // namespace bn
