// SPDX-License-Identifier: MIT
// Sheets and workbooks that their owners have protected.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "destinations/excel/ObjectModel.h"
#include "destinations/xls/Disposicion.h"
#include "destinations/xls/Edicion.h"
#include "destinations/xls/Hojas.h"
#include "tests/destinations/xls/Ayudas.h"

namespace bn::xls::prueba {
namespace {

using testing::AllOf;
using testing::HasSubstr;

constexpr Area kColumnaA{0, kFilas - 1, 0, 0};

std::string motivo(const std::function<void()>& accion) {
    try {
        accion();
    } catch (const excel::ErrorExcel& error) {
        return error.what();
    }
    return "done";
}

/// A1 locked, as every cell is at first; B1 and what is still empty are not.
std::shared_ptr<Libro> conHojaProtegida(const std::string& conmutador) {
    LibroDePrueba l;
    escribirCelda(l.hoja, 0, 0, 1.0);
    formatoNumerico(l.hoja, {0, 0, 0, 0}, "0.000");
    for (Registro& registro : l.libro->globales()) {
        const bool porDefecto = registro.id == id::kXf && (registro.datos[4] & 4) == 0 &&
                                registro.datos.substr(2, 2) == std::string(2, '\0');
        if (porDefecto) registro.datos[4] = static_cast<char>(registro.datos[4] & ~1);
    }
    escribirCelda(l.hoja, 0, 1, 2.0);
    l.hoja.celdas->cabeza().insert(l.hoja.celdas->cabeza().end() - 1,
                                   Registro{id::kProtect, conmutador});
    return Libro::abrir(l.libro->serializar(), 2024);
}

const std::string kPuesto("\1\0", 2);
const std::string kQuitado("\0\0", 2);

TEST(HojaProtegida, KeepsItsLockedCells) {
    const auto libro = conHojaProtegida(kPuesto);
    Hoja& hoja = *libro->hojas()[0];
    for (const Variante& valor : {Variante(5.0), Variante(std::string("x")), Variante()}) {
        EXPECT_THAT(motivo([&] { escribirCelda(hoja, 0, 0, valor); }),
                    AllOf(HasSubstr("protegida"), HasSubstr("\"Hoja1\"")));
    }
    EXPECT_THAT(motivo([&] { vaciar(hoja, kColumnaA); }), HasSubstr("protegida"));
    EXPECT_THAT(motivo([&] { copiar(hoja, {0, 0, 1, 1}, hoja, 0, 0); }), HasSubstr("protegida"));
    EXPECT_EQ(leerCelda(hoja, 0, 0), Variante(1.0));
}

TEST(HojaProtegida, LetsItsUnlockedCellsBeWritten) {
    const auto libro = conHojaProtegida(kPuesto);
    Hoja& hoja = *libro->hojas()[0];
    escribirCelda(hoja, 0, 1, 7.0);
    escribirCelda(hoja, 9, 4, std::string("nueva"));
    const auto leido = Libro::abrir(libro->serializar(), 2024);
    EXPECT_EQ(leerCelda(*leido->hojas()[0], 0, 1), Variante(7.0));
    EXPECT_EQ(leerCelda(*leido->hojas()[0], 9, 4), Variante(std::string("nueva")));
    EXPECT_TRUE(leido->hojas()[0]->celdas->protegida());
}

TEST(HojaProtegida, KeepsItsLook) {
    const auto libro = conHojaProtegida(kPuesto);
    Hoja& hoja = *libro->hojas()[0];
    EXPECT_THAT(motivo([&] { anchoDeColumnas(hoja, kColumnaA, 20); }), HasSubstr("protegida"));
    EXPECT_THAT(motivo([&] { formatoNumerico(hoja, kColumnaA, "0"); }), HasSubstr("protegida"));
    EXPECT_THAT(motivo([&] { alinear(hoja, kColumnaA, Alineacion::kCentro); }),
                HasSubstr("protegida"));
}

TEST(HojaProtegida, IsNoneWithoutTheSwitchOrWithItOff) {
    for (const std::string& conmutador : {kQuitado, std::string()}) {
        const auto libro = conHojaProtegida(conmutador);
        EXPECT_FALSE(libro->hojas()[0]->celdas->protegida());
        escribirCelda(*libro->hojas()[0], 0, 0, 5.0);
        EXPECT_EQ(leerCelda(*libro->hojas()[0], 0, 0), Variante(5.0));
    }
}

TEST(HojaProtegida, OfAnotherWriterIsKnown) {
    const auto libro = Libro::abrir(muestra("s5_poi"), 2024);
    int protegidas = 0;
    for (const auto& hoja : libro->hojas()) {
        if (!hoja->esDeCalculo() || !hoja->celdas->protegida()) continue;
        ++protegidas;
        EXPECT_THAT(motivo([&] { escribirCelda(*hoja, 500, 0, 1.0); }), HasSubstr("protegida"));
    }
    EXPECT_EQ(protegidas, 1);
}

TEST(EstructuraProtegida, KeepsItsSheets) {
    LibroDePrueba l;
    anadirHoja(*l.libro, l.hoja);
    l.libro->globales().insert(l.libro->globales().begin() + 1, Registro{id::kProtect, kPuesto});
    const auto libro = Libro::abrir(l.libro->serializar(), 2024);
    Hoja& hoja = *libro->hojas()[0];
    EXPECT_THAT(motivo([&] { anadirHoja(*libro, hoja); }), HasSubstr("protegida su estructura"));
    EXPECT_THAT(motivo([&] { renombrarHoja(hoja, "Otra"); }), HasSubstr("protegida su estructura"));
    EXPECT_THAT(motivo([&] { borrarHoja(hoja); }), HasSubstr("protegida su estructura"));
    EXPECT_EQ(libro->hojas().size(), 2U);
    escribirCelda(hoja, 0, 0, 1.0);
    EXPECT_EQ(leerCelda(hoja, 0, 0), Variante(1.0)) << "its cells are not protected";
}

}  // namespace
}  // namespace bn::xls::prueba
