// SPDX-License-Identifier: MIT
// Damaged workbooks: refused, or read whole; never a crash, never a hang.
#include <gtest/gtest.h>

#include <functional>

#include "destinations/excel/ObjectModel.h"
#include "destinations/xls/Bytes.h"
#include "destinations/xls/Compuesto.h"
#include "destinations/xls/Edicion.h"
#include "destinations/xls/Hojas.h"
#include "destinations/xls/Libro.h"
#include "tests/destinations/xls/Ayudas.h"

namespace bn::xls::prueba {
namespace {

enum class Resultado { kRechazado, kLeido };

void usar(Libro& libro) {
    for (const auto& hoja : libro.hojas()) {
        if (!hoja->esDeCalculo()) continue;
        const TablaDeCeldas& tabla = hoja->celdas->tabla();
        for (int32_t i = 0; i < tabla.cuantasFilas(); ++i) {
            for (const Celda& celda : tabla.fila(i)->celdas) leerCelda(*hoja, i, celda.columna);
        }
        if (hoja->celdas->protegida()) continue;
        escribirCelda(*hoja, 0, 0, std::string("texto"));
        escribirCelda(*hoja, 700, 3, FechaOle{45000});
    }
    Libro::abrir(libro.serializar(), 2024);
}

Resultado probar(const std::string& fichero) {
    try {
        usar(*Libro::abrir(fichero, 2024));
        return Resultado::kLeido;
    } catch (const excel::ErrorExcel&) {
        return Resultado::kRechazado;
    }
}

struct Lugar {
    size_t posicion = 0;
    size_t largo = 0;
};

// The n-th record of that number in a Workbook stream.
Lugar buscar(const std::string& flujo, uint16_t numero, int cual = 0) {
    LectorRegistros lector(flujo);
    while (const auto registro = lector.siguiente()) {
        if (registro->id == numero && cual-- == 0) {
            return {registro->posicion, registro->datos.size()};
        }
    }
    throw std::runtime_error("no such record in the sample");
}

std::string conFlujo(const std::string& nombre, const std::function<void(std::string&)>& danar) {
    Compuesto compuesto = Compuesto::abrir(muestra(nombre));
    const size_t numero = compuesto.buscar("Workbook").value();
    std::string flujo = compuesto.flujo(numero);
    danar(flujo);
    compuesto.flujo(numero, flujo);
    return compuesto.serializar();
}

std::string enPoi(const std::function<void(std::string&)>& danar) {
    return conFlujo("s5_poi", danar);
}

Resultado cambiando16(uint16_t numero, int cual, size_t pos, uint32_t valor) {
    return probar(enPoi(
        [&](std::string& f) { cambiar16(f, buscar(f, numero, cual).posicion + pos, valor); }));
}

TEST(LibroDanado, CutShortIsRefused) {
    const std::string bueno = muestra("s5_poi");
    EXPECT_EQ(probar(bueno), Resultado::kLeido);
    EXPECT_EQ(probar(bueno.substr(0, bueno.size() / 2)), Resultado::kRechazado);
    EXPECT_EQ(probar(bueno.substr(0, bueno.size() - 512)), Resultado::kRechazado);
}

TEST(LibroDanado, WithoutItsSignatureIsRefused) {
    std::string fichero = muestra("s5_poi");
    fichero[0] = 0;
    EXPECT_EQ(probar(fichero), Resultado::kRechazado);
}

TEST(LibroDanado, WithAChainThatLoopsOrLeavesTheFileIsRefused) {
    const std::string bueno = Libro::abrir(muestra("s5_poi"), 2024)->serializar();
    const Vista vista(bueno);
    const size_t fat = (vista.u32(76) + 1U) * 512;
    for (const uint32_t siguiente : {2U, 0x00FFFFFFU}) {
        std::string fichero = bueno;
        cambiar32(fichero, fat + 4 * 30, siguiente);
        EXPECT_EQ(probar(fichero), Resultado::kRechazado);
    }
}

TEST(LibroDanado, WithASheetThatIsNotWhereItSaysIsRefused) {
    EXPECT_EQ(probar(enPoi([](std::string& f) {
                  const size_t pos = buscar(f, id::kBoundSheet, 1).posicion + 4;
                  cambiar32(f, pos, Vista(f).u32(pos) + 7);
              })),
              Resultado::kRechazado);
}

TEST(LibroDanado, WithARecordOfTheWrongLengthIsRefused) {
    EXPECT_EQ(cambiando16(id::kNumber, 30, 2, 400), Resultado::kRechazado);
}

TEST(LibroDanado, WithACellThatAsksForATextThereIsNotIsRefused) {
    EXPECT_EQ(cambiando16(id::kLabelSst, 30, 10, 5000), Resultado::kRechazado);
}

TEST(LibroDanado, WithACellThatAsksForAFormatThereIsNotIsRefused) {
    EXPECT_EQ(cambiando16(id::kNumber, 30, 8, 999), Resultado::kRechazado);
}

TEST(LibroDanado, WithFewerTextsThanItSaysIsRefused) {
    EXPECT_EQ(probar(enPoi([](std::string& f) {
                  const size_t pos = buscar(f, id::kSst).posicion + 8;
                  cambiar32(f, pos, Vista(f).u32(pos) + 50);
              })),
              Resultado::kRechazado);
}

TEST(LibroDanado, WithTheWidthOfACutTextTurnedOverIsRefused) {
    EXPECT_EQ(probar(conFlujo("s2_xlwt_bigsst",
                              [](std::string& f) {
                                  for (int i = 0; i < 12; ++i) {
                                      const Lugar lugar = buscar(f, id::kContinue, i);
                                      char& ancho = f[lugar.posicion + 4];
                                      if (lugar.largo != kMaximoDatos || (ancho & ~1) != 0)
                                          continue;
                                      ancho = static_cast<char>(ancho ^ 1);
                                      return;
                                  }
                                  throw std::runtime_error("no text is cut in the sample");
                              })),
              Resultado::kRechazado);
}

TEST(LibroDanado, WithASheetThatDoesNotEndIsRefused) {
    EXPECT_EQ(probar(enPoi([](std::string& f) { f.erase(buscar(f, id::kEof, 1).posicion, 4); })),
              Resultado::kRechazado);
}

TEST(LibroDanado, WithANameOrAFormulaThatRunsOverItsRecordIsRefused) {
    EXPECT_EQ(cambiando16(id::kName, 0, 8, 400), Resultado::kRechazado);
    EXPECT_EQ(cambiando16(id::kFormula, 5, 24, 300), Resultado::kRechazado);
}

TEST(LibroDanado, WithAFontMissingAndThePositionsShiftedIsRefused) {
    EXPECT_EQ(probar(enPoi([](std::string& f) {
                  const Lugar fuente = buscar(f, id::kFont);
                  f.erase(fuente.posicion, 4 + fuente.largo);
              })),
              Resultado::kRechazado);
}

TEST(LibroDanado, WithANameBehindItsStringsAndThePositionsShiftedIsRefused) {
    EXPECT_EQ(probar(enPoi([](std::string& f) {
                  f.insert(
                      buscar(f, id::kEof).posicion,
                      deHex("1800 1800 0000 00 06 0300 0000 0000 00000000 00 626E4C617374 1E0100"));
              })),
              Resultado::kRechazado);
}

TEST(LibroDanado, WithARecordTooShortToBeEditedIsRefusedBeforeAnythingIsWritten) {
    for (const uint16_t numero : {id::kDimensions, id::kWindow1, id::kWindow2}) {
        EXPECT_EQ(probar(enPoi([&](std::string& f) {
                      const Lugar lugar = buscar(f, numero);
                      cambiar16(f, lugar.posicion + 2, 1);
                      f.erase(lugar.posicion + 5, lugar.largo - 1);
                      f.insert(lugar.posicion + 5, deHex("0F0F") + std::string(2, '\0'));
                      const size_t sobra = lugar.largo - 1 - 4;
                      cambiar16(f, lugar.posicion + 7, static_cast<uint32_t>(sobra));
                      f.insert(lugar.posicion + 9, std::string(sobra, '\0'));
                  })),
                  Resultado::kRechazado)
            << numero;
    }
}

// What does no harm to what is read and written: wrong sizes and indexes are made anew, the rest is
// carried along as it is.
TEST(LibroDanado, InWhatIsOnlyCarriedAlongIsRead) {
    EXPECT_EQ(cambiando16(id::kDimensions, 0, 8, 3), Resultado::kLeido);
    EXPECT_EQ(cambiando16(id::kIndex, 0, 20, 12345), Resultado::kLeido);
    EXPECT_EQ(cambiando16(id::kDbCell, 0, 4, 77), Resultado::kLeido);
    EXPECT_EQ(cambiando16(id::kExtSst, 0, 6, 3), Resultado::kLeido);
    EXPECT_EQ(cambiando16(id::kExternSheet, 0, 8, 9), Resultado::kLeido);
    EXPECT_EQ(cambiando16(id::kName, 7, 12, 9), Resultado::kLeido);
    EXPECT_EQ(cambiando16(id::kString, 0, 0, 0x0F0F), Resultado::kLeido);
    EXPECT_EQ(cambiando16(id::kTabId, 0, 4, 7), Resultado::kLeido);
    EXPECT_EQ(cambiando16(id::kXf, 22, 6, 190), Resultado::kLeido);
    EXPECT_EQ(cambiando16(id::kColInfo, 0, 4, 9), Resultado::kLeido);
    EXPECT_EQ(
        probar(enPoi([](std::string& f) { f[buscar(f, id::kBoundSheet).posicion + 12] = '?'; })),
        Resultado::kLeido);
}

TEST(LibroDanado, WithACellTwiceOrWithoutRowsIsRead) {
    EXPECT_EQ(probar(enPoi([](std::string& f) {
                  const std::string otra = f.substr(buscar(f, id::kNumber, 30).posicion + 4, 4);
                  f.replace(buscar(f, id::kNumber, 40).posicion + 4, 4, otra);
              })),
              Resultado::kLeido);
    EXPECT_EQ(probar(enPoi([](std::string& f) {
                  LectorRegistros lector(f);
                  std::vector<size_t> filas;
                  while (const auto registro = lector.siguiente()) {
                      if (registro->id == id::kRow) filas.push_back(registro->posicion);
                  }
                  for (const size_t fila : filas) cambiar16(f, fila, 0x0F0F);
              })),
              Resultado::kLeido);
}

TEST(LibroDanado, WithADirectoryInACircleIsRefusedOrReadRight) {
    const std::string fichero = Libro::abrir(muestra("s5_poi"), 2024)->serializar();
    const std::string flujo = flujoDe(fichero);
    const size_t directorio = (Vista(fichero).u32(48) + 1U) * 512;
    constexpr size_t kEntrada = 128;
    for (size_t i = 0; i < 4; ++i) {
        for (const size_t enlace : {68U, 72U, 76U}) {  // left, right, child
            for (uint32_t destino = 0; destino < 4; ++destino) {
                std::string danado = fichero;
                cambiar32(danado, directorio + kEntrada * i + enlace, destino);
                if (probar(danado) == Resultado::kRechazado) continue;
                EXPECT_EQ(flujoDe(danado), flujo) << i << ' ' << enlace << ' ' << destino;
            }
        }
    }
}

TEST(LibroDanado, WithTwoSheetsOfOneNameKeepsBothApart) {
    const auto libro = Libro::abrir(enPoi([](std::string& f) {
                                        const size_t otra = buscar(f, id::kBoundSheet, 1).posicion;
                                        f[otra + 10] = 3;
                                        f.replace(otra + 12, 3, "Log");
                                    }),
                                    2024);
    const auto bueno = Libro::abrir(muestra("s5_poi"), 2024);
    escribirCelda(*libro->hojas()[0], 500, 0, std::string("en la primera"));
    const auto leido = Libro::abrir(libro->serializar(), 2024);
    ASSERT_EQ(leido->hojas().size(), bueno->hojas().size());
    EXPECT_EQ(leido->hojas()[0]->nombre, "Log");
    EXPECT_EQ(leido->hojas()[1]->nombre, "Log");
    EXPECT_EQ(leerCelda(*leido->hojas()[0], 500, 0), Variante(std::string("en la primera")));
    EXPECT_EQ(leerCelda(*leido->hojas()[1], 500, 0), Variante(std::string()));
    for (int32_t fila = 0; fila < 10; ++fila) {
        EXPECT_EQ(leerCelda(*leido->hojas()[1], fila, 1), leerCelda(*bueno->hojas()[1], fila, 1));
    }
}

// The first sheet of a new workbook, many times over; each copy may be changed.
std::string conHojas(size_t cuantas, const std::function<void(Hoja&)>& preparar) {
    LibroDePrueba l;
    preparar(l.hoja);
    Compuesto compuesto = Compuesto::abrir(l.libro->serializar());
    const size_t numero = compuesto.buscar("Workbook").value();
    const std::string flujo = compuesto.flujo(numero);
    const std::vector<Subflujo> bordes = subflujos(flujo);
    const Lugar citada = buscar(flujo, id::kBoundSheet);
    const std::string cita = flujo.substr(citada.posicion, citada.largo + 4);
    const std::string hoja =
        flujo.substr(bordes.at(1).inicio, bordes.at(1).fin - bordes.at(1).inicio);
    const size_t finGlobales = bordes.at(0).fin + (cuantas - 1) * cita.size();
    std::string todo = flujo.substr(0, citada.posicion);
    std::string hojas;
    for (size_t i = 0; i < cuantas; ++i) {
        const size_t pos = todo.size() + 4;
        todo += cita;
        cambiar32(todo, pos, static_cast<uint32_t>(finGlobales + hojas.size()));
        hojas += hoja;
    }
    todo += flujo.substr(citada.posicion + cita.size(),
                         bordes.at(0).fin - citada.posicion - cita.size());
    compuesto.flujo(numero, todo + hojas);
    return compuesto.serializar();
}

TEST(LibroDanado, WithThousandsOfSheetsIsReadWithoutDelay) {
    constexpr size_t kHojas = 5000;
    const auto libro = Libro::abrir(conHojas(kHojas, [](Hoja&) {}), 2024);
    EXPECT_EQ(libro->hojas().size(), kHojas);
}

TEST(LibroDanado, WithOneFarRowInEachOfManySheetsIsSound) {
    const auto alFinal = [](Hoja& hoja) { escribirCelda(hoja, kFilas - 1, 0, 1.0); };
    const auto libro = Libro::abrir(conHojas(2000, alFinal), 2024);
    EXPECT_EQ(libro->hojas().size(), 2000U);
    escribirCelda(*libro->hojas()[7], 3, 3, 2.0);
    const auto leido = Libro::abrir(libro->serializar(), 2024);
    EXPECT_EQ(leerCelda(*leido->hojas()[7], 3, 3), Variante(2.0));
    EXPECT_EQ(leerCelda(*leido->hojas()[1999], kFilas - 1, 0), Variante(1.0));
}

// A row here and there, all the way down.
void sembrar(Hoja& hoja) {
    for (int32_t fila = 0; fila < kFilas; fila += 8) escribirCelda(hoja, fila, 0, 1.0);
}

TEST(LibroDanado, WhoseSheetsWouldFillTheMemoryIsRefused) {
    EXPECT_EQ(Libro::abrir(conHojas(20, sembrar), 2024)->hojas().size(), 20U);
    EXPECT_THROW(Libro::abrir(conHojas(60, sembrar), 2024), excel::ErrorExcel);
}

TEST(LibroDanado, ThatCouldNotBeReadAgainIsNotWritten) {
    const auto libro = Libro::abrir(conHojas(30, sembrar), 2024);
    std::string causa = "none";
    try {
        for (size_t i = 0; i < 10; ++i) sembrar(*anadirHoja(*libro, *libro->hojas().back()));
        libro->serializar();
    } catch (const excel::ErrorExcel& error) {
        causa = error.what();
    }
    EXPECT_NE(causa.find("demasiadas filas"), std::string::npos) << causa;
}

TEST(LibroDanado, CutAnywhereIsRefusedOrRead) {
    for (const std::string nombre : {"s4_gnumeric", "s6_handmade"}) {
        const std::string bueno = muestra(nombre);
        size_t rechazados = 0;
        for (size_t largo = 0; largo < bueno.size(); largo += 251) {
            rechazados += probar(bueno.substr(0, largo)) == Resultado::kRechazado ? 1 : 0;
        }
        EXPECT_GT(rechazados, bueno.size() / 251 / 2) << nombre;
    }
}

TEST(LibroDanado, WithOneByteTurnedOverIsRefusedOrRead) {
    uint32_t azar = 12345;
    for (const std::string nombre : {"s4_gnumeric", "s6_handmade", "s3_lo_chart"}) {
        const std::string bueno = muestra(nombre);
        for (int i = 0; i < 300; ++i) {
            azar = azar * 1664525 + 1013904223;
            std::string danado = bueno;
            danado[azar % danado.size()] = static_cast<char>(azar >> 24);
            probar(danado);
        }
    }
}

}  // namespace
}  // namespace bn::xls::prueba
