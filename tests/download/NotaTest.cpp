// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "download/Nota.h"
#include "tests/soporte/DiscoSimulado.h"
#include "tests/soporte/ErrorFicheroDe.h"

namespace bn {
namespace {

using Causa = ErrorFichero::Causa;
using Tipo = Operacion::Tipo;
using prueba::causaDe;

const std::filesystem::path kFichero = "/p/bnGuardo.nota";

class NotaPrueba : public testing::Test {
 protected:
    void SetUp() override { disco.crearCarpeta("/p"); }

    static Comienzo comienzo(const std::string& fichero) {
        Comienzo uno;
        uno.fichero = fichero;
        uno.lugar = 7;
        return uno;
    }
    Nota leida() {
        Nota otra(disco, kFichero);
        otra.leer();
        return otra;
    }
    std::size_t largo() { return disco.contenido(kFichero).size(); }

    DiscoSimulado disco;
    Nota nota{disco, kFichero};
};

TEST_F(NotaPrueba, WithoutAFileSaysNothing) {
    EXPECT_FALSE(nota.leer());
    EXPECT_TRUE(nota.nueva());
    EXPECT_FALSE(nota.hayPase());
    EXPECT_FALSE(nota.acabada());
}

TEST_F(NotaPrueba, IsMadeDurablyAtItsFullSize) {
    nota.crear({});
    EXPECT_EQ(largo(), Nota::kTamano);
    EXPECT_TRUE(disco.todoVolcado());
    EXPECT_FALSE(leida().nueva());
}

TEST_F(NotaPrueba, SaysAfterAStartWhatItWasTold) {
    nota.crear({apunte::Copia{"datos"}});
    nota.apuntar({apunte::Pase{46000.5, true, true}});
    nota.apuntar({apunte::Empieza{Destino::kTexto, comienzo("/t.txt")}});
    nota.apuntar({apunte::Empieza{Destino::kHoja, comienzo("/l.xls")}});
    nota.apuntar({apunte::Llega{Destino::kTexto, *Tramos::deTexto("0-2")}});
    EXPECT_TRUE(disco.todoVolcado());
    const Nota otra = leida();
    EXPECT_EQ(otra.copia(), "datos");
    EXPECT_EQ(otra.reloj(), 46000.5);
    EXPECT_EQ(otra.parte(Destino::kTexto).llegadas.texto(), "0-2");
    EXPECT_EQ(otra.parte(Destino::kTexto).empezada, std::nullopt) << "that part is settled";
    EXPECT_EQ(otra.parte(Destino::kHoja).empezada, comienzo("/l.xls"));
    EXPECT_FALSE(otra.acabada());
}

TEST_F(NotaPrueba, IsOverWhenEveryDestinationOfTheBatchHasThemAll) {
    nota.crear({});
    nota.apuntar({apunte::Pase{1, true, true}});
    nota.apuntar({apunte::Hecho{Destino::kTexto}});
    EXPECT_FALSE(leida().acabada());
    nota.apuntar({apunte::Hecho{Destino::kHoja}});
    EXPECT_TRUE(leida().acabada());
}

TEST_F(NotaPrueba, OfABatchWithoutDestinationIsNotOver) {
    nota.crear({});
    nota.apuntar({apunte::Pase{1, false, false}});
    EXPECT_FALSE(leida().acabada());
    nota.apuntar({apunte::Descarte{}});
    EXPECT_TRUE(leida().acabada()) << "nobody wants them";
}

TEST_F(NotaPrueba, AGoodEndNeedsNoCopyAnyMore) {
    nota.crear({apunte::Copia{"datos"}});
    nota.aplazar(apunte::Fin{true});
    EXPECT_FALSE(leida().terminadaBien()) << "put off until something else is written";
    nota.apuntar({apunte::Pase{1, false, true}});
    EXPECT_TRUE(leida().terminadaBien());
    EXPECT_EQ(leida().copia(), "");
}

TEST_F(NotaPrueba, TornAtAnyByteItsLastLineDoesNotCountAndTheOthersDo) {
    nota.crear({});
    nota.apuntar({apunte::Pase{46000.25, true, true}});
    const std::string antes = disco.contenido(kFichero);
    nota.apuntar({apunte::Hecho{Destino::kHoja}});
    const std::string despues = disco.contenido(kFichero);
    const std::size_t desde = static_cast<std::size_t>(
        std::mismatch(antes.begin(), antes.end(), despues.begin()).first - antes.begin());
    const std::size_t fin = despues.find_last_not_of(' ') + 1;
    for (std::size_t corte = desde; corte <= fin; ++corte) {
        for (const bool cortada : {false, true}) {
            std::string rota = despues.substr(0, corte);
            if (!cortada) rota += antes.substr(corte);
            disco.poner(kFichero, rota);
            Nota otra = leida();
            EXPECT_EQ(otra.reloj(), 46000.25) << corte;
            EXPECT_EQ(otra.parte(Destino::kHoja).hecha, corte == fin) << corte;
            otra.apuntar({apunte::Hecho{Destino::kTexto}});
            EXPECT_TRUE(leida().parte(Destino::kTexto).hecha) << "and it goes on behind";
            EXPECT_EQ(leida().parte(Destino::kHoja).hecha, corte == fin) << corte;
        }
    }
}

TEST_F(NotaPrueba, AnyChangedByteEndsItThere) {
    nota.crear({});
    nota.apuntar({apunte::Pase{46000.25, true, true}});
    const std::size_t desde = disco.contenido(kFichero).find("\r\n") + 2;
    nota.apuntar({apunte::Hecho{Destino::kHoja}});
    const std::string buena = disco.contenido(kFichero);
    const std::size_t fin = buena.find_last_not_of(' ') + 1;
    for (std::size_t i = desde; i < fin; ++i) {
        std::string mala = buena;
        mala[i] = static_cast<char>(mala[i] ^ 1);
        disco.poner(kFichero, mala);
        const Nota otra = leida();
        EXPECT_FALSE(otra.parte(Destino::kHoja).hecha && otra.hayPase()) << i;
    }
}

TEST_F(NotaPrueba, LinesOfAnOlderNoteBehindItsEndDoNotCount) {
    nota.crear({});
    nota.apuntar({apunte::Pase{1, true, true}});
    nota.apuntar({apunte::Hecho{Destino::kTexto}});
    const std::string vieja = disco.contenido(kFichero);
    Nota nueva(disco, kFichero);
    nueva.crear({});
    EXPECT_FALSE(leida().hayPase());
    const std::string limpia = disco.contenido(kFichero);
    for (std::size_t corte = 0; corte < 200; ++corte) {  // the power failed while it was cleared
        disco.poner(kFichero, limpia.substr(0, corte) + vieja.substr(corte));
        const Nota otra = leida();
        EXPECT_TRUE(!otra.parte(Destino::kTexto).hecha || otra.hayPase()) << corte;
    }
}

TEST_F(NotaPrueba, ItsUsualLinesAskTheDiskForNoRoom) {
    nota.crear({});
    disco.capacidad(0);
    Comienzo largo = comienzo("/un/camino/" + std::string(200, 'x') + ".xls");
    for (auto& campo : largo.campos) campo.formato = "dd/mm/yyyy hh:nn";
    nota.apuntar({apunte::Fin{true}, apunte::Pase{1, true, true}});
    nota.apuntar({apunte::Empieza{Destino::kHoja, largo}});
    nota.apuntar({apunte::Empieza{Destino::kTexto, largo}});
    nota.apuntar({apunte::Llega{Destino::kTexto, *Tramos::deTexto("0-2")}});
    nota.apuntar({apunte::Hecho{Destino::kHoja}});
    nota.apuntar({apunte::Hecho{Destino::kTexto}});
    EXPECT_EQ(this->largo(), Nota::kTamano);
    EXPECT_TRUE(leida().acabada());
}

TEST_F(NotaPrueba, AFullOneIsWrittenAnewShorterAndSaysTheSame) {
    nota.crear({apunte::Copia{"datos"}});
    nota.apuntar({apunte::Desconocida{}, apunte::Pase{46000.5, true, true}});
    nota.apuntar({apunte::Llega{Destino::kTexto, *Tramos::deTexto("3")}});
    for (int i = 0; i < 500; ++i) {
        nota.apuntar({apunte::Empieza{Destino::kHoja, comienzo("/l" + std::to_string(i))}});
        ASSERT_LE(largo(), 4 * Nota::kTamano);
        const Nota otra = leida();
        ASSERT_EQ(otra.parte(Destino::kHoja).empezada, comienzo("/l" + std::to_string(i)));
    }
    const Nota otra = leida();
    EXPECT_EQ(otra.copia(), "datos");
    EXPECT_TRUE(otra.desconocida());
    EXPECT_EQ(otra.reloj(), 46000.5);
    EXPECT_EQ(otra.parte(Destino::kTexto).llegadas.texto(), "3");
    EXPECT_FALSE(otra.parte(Destino::kTexto).hecha);
}

TEST_F(NotaPrueba, AFullOneGrowsWhereThereIsNoRoomToWriteItAnew) {
    nota.crear({});
    nota.apuntar({apunte::Pase{1, true, true}});
    disco.fallar(Causa::kLleno, Tipo::kNuevo, DiscoSimulado::kSiempre);
    for (int i = 0; i < 60; ++i) {
        nota.apuntar({apunte::Empieza{Destino::kHoja, comienzo("/l" + std::to_string(i))}});
    }
    EXPECT_EQ(leida().parte(Destino::kHoja).empezada, comienzo("/l59"));
    EXPECT_TRUE(leida().hayPase());
}

TEST_F(NotaPrueba, TakenAwayItIsMadeAgainWhole) {
    nota.crear({});
    nota.apuntar({apunte::Pase{46000.5, true, true}});
    disco.borrar(kFichero);
    nota.apuntar({apunte::Hecho{Destino::kHoja}});
    EXPECT_EQ(leida().reloj(), 46000.5);
    EXPECT_TRUE(leida().parte(Destino::kHoja).hecha);
    EXPECT_TRUE(disco.todoVolcado());
}

TEST_F(NotaPrueba, AFailureAtAnyOperationChangesNothingAndIsOverTheNextTime) {
    for (int k = 1;; ++k) {
        DiscoSimulado otro;
        otro.crearCarpeta("/p");
        Nota una(otro, kFichero);
        una.crear({});
        una.apuntar({apunte::Pase{1, true, true}});
        const std::int64_t cual = otro.operaciones() + k;
        otro.fallar(Causa::kAveria, [cual](const Operacion& op) { return op.numero == cual; });
        const auto causa = causaDe([&] { una.apuntar({apunte::Hecho{Destino::kHoja}}); });
        if (otro.operaciones() < cual) break;
        EXPECT_EQ(una.parte(Destino::kHoja).hecha, !causa) << k;
        una.apuntar({apunte::Hecho{Destino::kTexto}});
        Nota leida(otro, kFichero);
        leida.leer();
        EXPECT_EQ(leida.parte(Destino::kHoja).hecha, !causa) << k;
        EXPECT_TRUE(leida.parte(Destino::kTexto).hecha) << k;
    }
}

TEST_F(NotaPrueba, OneThatCannotBeReadNowIsAnErrorAndNoEmptyNote) {
    nota.crear({});
    disco.fallar(Causa::kAveria, Tipo::kAbrir);
    EXPECT_EQ(causaDe([&] { nota.leer(); }), Causa::kAveria);
}

}  // namespace
}  // namespace bn
