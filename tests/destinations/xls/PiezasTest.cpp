// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "destinations/excel/ObjectModel.h"
#include "destinations/xls/Bytes.h"
#include "destinations/xls/Cadenas.h"
#include "destinations/xls/Formatos.h"
#include "destinations/xls/Numeros.h"
#include "destinations/xls/Registros.h"
#include "destinations/xls/TextoBiff.h"
#include "tests/destinations/xls/Ayudas.h"

namespace bn::xls::prueba {
namespace {

TEST(Bytes, AreReadLittleEndianAndNeverBeyondTheirEnd) {
    const std::string bytes = deHex("01 02 03 04 05");
    const Vista vista(bytes);
    EXPECT_EQ(vista.u16(0), 0x0201);
    EXPECT_EQ(vista.u32(1), 0x05040302U);
    EXPECT_THROW(vista.u32(2), excel::ErrorExcel);
    EXPECT_THROW(vista.trozo(5, 1), excel::ErrorExcel);
    EXPECT_THROW(vista.trozo(SIZE_MAX, 2), excel::ErrorExcel);
    EXPECT_EQ(vista.desde(5), "");
}

TEST(TextoBiff, IsOneBytePerCharacterWhereAllAreLatin1) {
    const TextoBiff texto = aBiff("Añ");
    EXPECT_FALSE(texto.ancho);
    EXPECT_EQ(texto.unidades, 2U);
    EXPECT_EQ(hex(texto.bytes), "41 F1");
}

TEST(TextoBiff, IsUtf16WhereOneCharacterIsNotLatin1) {
    const TextoBiff texto = aBiff("A€😀");
    EXPECT_TRUE(texto.ancho);
    EXPECT_EQ(texto.unidades, 4U);
    EXPECT_EQ(hex(texto.bytes), "41 00 AC 20 3D D8 00 DE");
    EXPECT_EQ(deBiff(texto.bytes, true), "A€😀");
}

TEST(TextoBiff, ReplacesWhatIsNoText) {
    EXPECT_EQ(deBiff(deHex("3D D8 41 00"), true), "\uFFFDA");
    EXPECT_EQ(hex(aBiff("\xC3").bytes), "FD FF");
    EXPECT_EQ(hex(aBiff("\xED\xA0\x80").bytes), "FD FF FD FF FD FF");
    EXPECT_EQ(hex(aBiff("\xC0\x80").bytes), "FD FF FD FF");
}

TEST(TextoBiff, ComparesNamesWithoutRegardToLetterCase) {
    EXPECT_TRUE(mismoNombre("Pesadas AÑO", "pesadas año"));
    EXPECT_TRUE(mismoNombre("ČTYŘI", "čtyři"));
    EXPECT_FALSE(mismoNombre("Pesadas", "Pesada"));
    EXPECT_FALSE(mismoNombre("a", "b"));
    EXPECT_TRUE(menorNombre("a", "B"));
}

TEST(Numeros, TheShortFormHoldsIntegersHundredthsAndRoundDoubles) {
    EXPECT_EQ(aRk(1), 6U);
    EXPECT_EQ(aRk(-1), 0xFFFFFFFEU);
    EXPECT_EQ(aRk(1.5), 0x3FF80000U);
    EXPECT_EQ(aRk(12.34), (1234U << 2) | 3U);
    EXPECT_EQ(aRk(536870911), 0x7FFFFFFEU);
    EXPECT_FALSE(aRk(0.1234567));
    EXPECT_FALSE(aRk(-0.0));
    EXPECT_FALSE(aRk(std::numeric_limits<double>::quiet_NaN()));
}

TEST(Numeros, TheShortFormGivesBackWhatItTook) {
    for (const double numero : {0.0, 1.0, -1.0, 0.01, -123.45, 1e10, 536870912.0, -536870912.0,
                                4.2e-5, 5368709.11, 1e300}) {
        if (const auto rk = aRk(numero)) {
            EXPECT_EQ(deRk(*rk), numero);
        }
    }
}

TEST(Numeros, ASinglePrecisionNumberIsTheDecimalAPersonReads) {
    EXPECT_EQ(comoDecimal(12.35F), 12.35);
    EXPECT_EQ(comoDecimal(0.1F), 0.1);
    EXPECT_EQ(comoDecimal(16777216.0F), 16777216.0);
}

TEST(Formatos, RecognisesDateFormats) {
    EXPECT_TRUE(codigoEsFecha("dd/mm/yyyy"));
    EXPECT_TRUE(codigoEsFecha("[h]:mm"));
    EXPECT_TRUE(codigoEsFecha("[$-C0A]d mmm"));
    EXPECT_FALSE(codigoEsFecha("0.00"));
    EXPECT_FALSE(codigoEsFecha("0 \"días\""));
    EXPECT_FALSE(codigoEsFecha("0\\d"));
    EXPECT_FALSE(codigoEsFecha("[Red]0"));
    EXPECT_FALSE(codigoEsFecha("General"));
}

TEST(Formatos, ReuseAFormatThatIsAlreadyThere) {
    LibroDePrueba l;
    Formatos& formatos = l.libro->formatos();
    const uint16_t fecha = formatos.conFormato(15, "dd/mm/yyyy");
    EXPECT_EQ(fecha, 16);
    EXPECT_EQ(formatos.conFormato(15, "dd/mm/yyyy"), fecha);
    EXPECT_EQ(formatos.conFormato(fecha, "dd/mm/yyyy"), fecha);
    EXPECT_TRUE(formatos.esFecha(fecha));
    EXPECT_FALSE(formatos.esGeneral(fecha));
    EXPECT_TRUE(formatos.esTexto(formatos.conFormato(15, "@")));
    EXPECT_EQ(datosDe(l.globales(), id::kFormat).size(), 1U);
}

TEST(Formatos, StopBeforeTheWorkbookIsFullOfThem) {
    LibroDePrueba l;
    for (int i = 0; i < 4034; ++i) {
        l.libro->formatos().conFormato(15, "0\"" + std::to_string(i) + "\"");
    }
    EXPECT_THROW(l.libro->formatos().conFormato(15, "0.0"), excel::ErrorExcel);
    EXPECT_THROW(l.libro->formatos().conFormato(15, ""), excel::ErrorExcel);
    EXPECT_THROW(l.libro->formatos().exigir(4050), excel::ErrorExcel);
}

TEST(Formatos, TheChecksumOfTheFormatsIsTheOneExcelKeeps) {
    // XFCRC over one record of 20 zero bytes, and over one that is not all zeros.
    Registros globales{{id::kXf, std::string(20, '\0')}};
    const std::string vacia = Formatos(globales).suma(std::string(20, '\xEE'));
    EXPECT_EQ(hex(vacia.substr(14)), "01 00 00 00 00 00");
    globales[0].datos[19] = 1;
    const std::string uno = Formatos(globales).suma(std::string(20, '\0'));
    EXPECT_EQ(hex(uno.substr(14)), "01 00 AF 00 00 00");
}

TEST(Cadenas, DedupePlainTextsOnly) {
    const std::string rica = deHex("01000000 01000000 0200 08 0100 4142 0000 0000");
    Cadenas cadenas({rica});
    EXPECT_EQ(cadenas.texto(0), "AB");
    EXPECT_EQ(cadenas.agregar("AB"), 1U);
    EXPECT_EQ(cadenas.agregar("AB"), 1U);
    EXPECT_EQ(cadenas.cuantas(), 2U);
}

TEST(Cadenas, ALongTextGoesOnInTheNextRecordWithItsWidthAgain) {
    Cadenas cadenas;
    std::string largo;
    for (int i = 0; i < 10000; ++i) largo += "Ž";
    cadenas.agregar(largo);
    std::string flujo;
    cadenas.serializar(flujo);
    LectorRegistros lector(flujo);
    const auto primero = lector.siguiente();
    EXPECT_LE(primero->datos.size(), kMaximoDatos);
    EXPECT_GE(primero->datos.size(), kMaximoDatos - 1);
    const auto segundo = lector.siguiente();
    EXPECT_EQ(segundo->id, id::kContinue);
    EXPECT_EQ(segundo->datos[0], 1);
    EXPECT_EQ(segundo->datos.size() % 2, 1U);
    std::vector<std::string> trozos{std::string(primero->datos), std::string(segundo->datos)};
    trozos.emplace_back(lector.siguiente()->datos);
    EXPECT_EQ(Cadenas(trozos).texto(0), largo);
}

TEST(Cadenas, AHeadAndItsFirstCharacterStayInOneRecord) {
    Cadenas cadenas;
    cadenas.agregar(std::string(kMaximoDatos - 8 - 3 - 3, 'x'));
    cadenas.agregar("yz");
    std::string flujo;
    cadenas.serializar(flujo);
    LectorRegistros lector(flujo);
    EXPECT_EQ(lector.siguiente()->datos.size(), kMaximoDatos - 3);
    EXPECT_EQ(hex(lector.siguiente()->datos), "02 00 00 79 7A");
}

TEST(Cadenas, ATextCutInTheMiddleMayChangeItsWidth) {
    Cadenas cadenas({deHex("01000000 01000000 0400 00 4142"), deHex("01 7D01 4300")});
    EXPECT_EQ(cadenas.texto(0), "ABŽC");
}

TEST(Cadenas, RefuseATextThatIsTooLong) {
    Cadenas cadenas;
    EXPECT_NO_THROW(cadenas.agregar(std::string(32767, 'x')));
    EXPECT_THROW(cadenas.agregar(std::string(32768, 'x')), excel::ErrorExcel);
}

TEST(Cadenas, RefuseATableThatHoldsFewerTextsThanItSays) {
    EXPECT_THROW(Cadenas({deHex("01000000 02000000 0100 00 41")}), excel::ErrorExcel);
    EXPECT_THROW(Cadenas({deHex("01000000 FFFFFFFF 0100 00 41")}), excel::ErrorExcel);
    EXPECT_THROW(Cadenas({deHex("01000000 01000000 0500 00 41")}), excel::ErrorExcel);
    EXPECT_THROW(Cadenas({deHex("01000000 01000000 0100 04 FFFFFFFF 41")}), excel::ErrorExcel);
    EXPECT_THROW(Cadenas({deHex("0100")}), excel::ErrorExcel);
    EXPECT_THROW(Cadenas({deHex("01000000 00000000 0100 00 41")}), excel::ErrorExcel);
}

TEST(Registros, RefuseARecordThatRunsOverTheEnd) {
    const std::string flujo = deHex("0908 0400 0000");
    LectorRegistros lector(flujo);
    EXPECT_THROW(lector.siguiente(), excel::ErrorExcel);
}

TEST(Registros, SubstreamsEndAtThePaddingAndHoldTheirNestedOnes) {
    const std::string bof = deHex("0908 0400 0006 1000");
    const std::string eof = deHex("0A00 0000");
    const auto bordes = subflujos(bof + bof + eof + eof + bof + eof + std::string(20, '\0'));
    ASSERT_EQ(bordes.size(), 2U);
    EXPECT_EQ(bordes[0].fin, 24U);
    EXPECT_EQ(bordes[1].inicio, 24U);
    EXPECT_EQ(bordes[1].tipo, 0x10);
    EXPECT_THROW(subflujos(bof + bof + eof), excel::ErrorExcel);
}

}  // namespace
}  // namespace bn::xls::prueba
