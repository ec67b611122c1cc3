// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "download/Pendientes.h"
#include "link/sacoTramas.h"
#include "tests/soporte/DiscoSimulado.h"
#include "tests/soporte/PlataformaDePrueba.h"

namespace bn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using Tipo = Operacion::Tipo;
using Textos = std::vector<std::string>;

const std::filesystem::path kCarpeta = "/p";

class LotesPrueba : public testing::Test {
 protected:
    void SetUp() override {
        disco.crearCarpeta(kCarpeta);
        plataforma.usarDisco(disco);
    }
    /// A download that has stored these, as far as the end of its exchange.
    void descargar(Pendientes& pendientes, const Textos& datos) {
        ASSERT_TRUE(pendientes.despejar()) << pendientes.atasco();
        sacoTramas saco(plataforma);
        ASSERT_TRUE(saco.iniGuardo());
        ASSERT_TRUE(pendientes.preparar()) << pendientes.atasco();
        for (const std::string& uno : datos) {
            ASSERT_TRUE(saco.Guardo(uno));
            pendientes.actual()->sumar();
        }
    }
    static void servir(Lote& lote) {
        lote.nota().apuntar({apunte::Pase{1, false, true}, apunte::Hecho{Destino::kTexto}});
    }
    static std::vector<std::uint32_t> numeros(const Pendientes& pendientes) {
        std::vector<std::uint32_t> todos;
        for (const Lote* lote : pendientes.porLlegar()) todos.push_back(lote->numero());
        return todos;
    }
    Textos nombres() { return disco.nombres(kCarpeta); }
    std::string contenido(const std::string& nombre) { return disco.contenido(kCarpeta / nombre); }

    DiscoSimulado disco;
    PlataformaDePrueba plataforma{kCarpeta};
};

TEST_F(LotesPrueba, AnEmptyFolderHoldsNone) {
    Pendientes pendientes(plataforma);
    EXPECT_EQ(pendientes.actual(), nullptr);
    EXPECT_EQ(pendientes.cuantas(), 0U);
    EXPECT_EQ(pendientes.copia(), "");
    EXPECT_THAT(nombres(), IsEmpty());
}

TEST_F(LotesPrueba, WhatHasNotArrivedGoesAsideUnderRunningNumbersTheOldestFirst) {
    Pendientes pendientes(plataforma);
    descargar(pendientes, {"a", "b"});
    descargar(pendientes, {"c"});
    descargar(pendientes, {"d"});
    EXPECT_THAT(nombres(),
                ElementsAre("bnGuardo-000001.nota", "bnGuardo-000001.txt", "bnGuardo-000002.nota",
                            "bnGuardo-000002.txt", "bnGuardo.nota", "bnGuardo.txt"));
    EXPECT_EQ(contenido("bnGuardo-000001.txt"), "a\r\nb\r\n");
    EXPECT_EQ(pendientes.cuantas(), 4U);
    EXPECT_THAT(numeros(pendientes), ElementsAre(1U, 2U, 0U));
    EXPECT_THAT(numeros(Pendientes(plataforma)), ElementsAre(1U, 2U, 0U)) << "after a start too";
}

TEST_F(LotesPrueba, TheNumberGoesOnBehindTheHighestWhateverHasArrivedMeanwhile) {
    Pendientes pendientes(plataforma);
    descargar(pendientes, {"a"});
    descargar(pendientes, {"b"});
    descargar(pendientes, {"c"});
    servir(*pendientes.porLlegar().front());
    pendientes.retirar();
    descargar(pendientes, {"d"});
    EXPECT_THAT(numeros(pendientes), ElementsAre(2U, 3U, 0U));
}

TEST_F(LotesPrueba, MovesTheNoteFirstAndTheStoreThenAndCopiesNothing) {
    Pendientes pendientes(plataforma);
    descargar(pendientes, {"a"});
    Textos cambios;
    disco.alOperar = [&](const Operacion& una) {
        if (una.tipo == Tipo::kRenombrar || una.tipo == Tipo::kBorrar || una.tipo == Tipo::kAnadir)
            cambios.push_back(una.ruta.filename().string());
    };
    EXPECT_TRUE(pendientes.despejar());
    EXPECT_THAT(cambios, ElementsAre("bnGuardo.nota", "bnGuardo.txt"));
}

TEST_F(LotesPrueba, RemovesTheStoreFirstAndTheNoteThen) {
    Pendientes pendientes(plataforma);
    descargar(pendientes, {"a"});
    descargar(pendientes, {"b"});
    servir(*pendientes.porLlegar().front());
    Textos borrados;
    disco.alOperar = [&](const Operacion& una) {
        if (una.tipo == Tipo::kBorrar) borrados.push_back(una.ruta.filename().string());
    };
    pendientes.retirar();
    EXPECT_THAT(borrados, ElementsAre("bnGuardo-000001.txt", "bnGuardo-000001.nota"));
}

TEST_F(LotesPrueba, ANoteWithoutAStoreOfItsNumberOwnsTheOldName) {
    {
        Pendientes pendientes(plataforma);
        descargar(pendientes, {"a", "b"});
    }
    disco.renombrar(kCarpeta / "bnGuardo.nota", kCarpeta / "bnGuardo-000001.nota");
    Pendientes pendientes(plataforma);
    EXPECT_EQ(pendientes.cuantas(), 2U);
    EXPECT_THAT(numeros(pendientes), ElementsAre(1U));
    descargar(pendientes, {"c"});
    EXPECT_EQ(contenido("bnGuardo-000001.txt"), "a\r\nb\r\n");
    EXPECT_EQ(contenido("bnGuardo.txt"), "c\r\n");
}

TEST_F(LotesPrueba, WhereItCannotBePutAsideNothingStartsAndNothingIsEmptied) {
    Pendientes pendientes(plataforma);
    descargar(pendientes, {"a"});
    disco.fallar(ErrorFichero::Causa::kSinPermiso, Tipo::kRenombrar, DiscoSimulado::kSiempre);
    EXPECT_FALSE(pendientes.despejar());
    EXPECT_THAT(pendientes.atasco(), testing::HasSubstr("acceso denegado"));
    EXPECT_EQ(contenido("bnGuardo.txt"), "a\r\n");
    disco.sanar();
    EXPECT_TRUE(pendientes.despejar());
    EXPECT_EQ(pendientes.atasco(), "");
    EXPECT_EQ(contenido("bnGuardo-000001.txt"), "a\r\n");
}

TEST_F(LotesPrueba, AFolderThatCannotBeSeenIsNotTakenForEmpty) {
    Pendientes pendientes(plataforma);
    descargar(pendientes, {"a"});
    disco.fallar(ErrorFichero::Causa::kAveria, Tipo::kListar);
    EXPECT_FALSE(pendientes.releer());
    EXPECT_NE(pendientes.atasco(), "");
    EXPECT_EQ(pendientes.cuantas(), 1U);
    EXPECT_TRUE(pendientes.releer());
    EXPECT_EQ(pendientes.atasco(), "");
}

TEST_F(LotesPrueba, OtherNamesAreNobodysBusiness) {
    const Textos ajenos = {
        "bnGuardo-.txt",           "bnGuardo-000000.txt", "bnGuardo-12.txt",
        "bnGuardo-20230315-1.txt", "bnGuardo-00000a.txt", "bnGuardo-000001.bak",
        "bnGuardo-1234567890.txt", "bnGuardo-+00001.txt", "xbnGuardo-000001.txt"};
    for (const auto& nombre : ajenos) disco.poner(kCarpeta / nombre, "z\r\n");
    Pendientes pendientes(plataforma);
    EXPECT_EQ(pendientes.cuantas(), 0U);
    descargar(pendientes, {"a"});
    descargar(pendientes, {"b"});
    for (const auto& nombre : ajenos) EXPECT_EQ(contenido(nombre), "z\r\n") << nombre;
}

TEST_F(LotesPrueba, TemporariesOfAnotherLifeGo) {
    disco.poner(kCarpeta / ".bn-77-0.tmp", "z");
    const Pendientes pendientes(plataforma);
    EXPECT_THAT(nombres(), IsEmpty());
}

// The record whose acknowledge may not have been heard

TEST_F(LotesPrueba, TheLastRecordOfADownloadThatDidNotEndWellMayComeAgain) {
    Pendientes pendientes(plataforma);
    descargar(pendientes, {"a", "b"});
    EXPECT_EQ(Pendientes(plataforma).copia(), "b");
    EXPECT_TRUE(pendientes.despejar());
    EXPECT_EQ(pendientes.copia(), "b") << "of the batch aside";
}

TEST_F(LotesPrueba, TheRecordIsHandedOnByDownloadsThatReceiveNothing) {
    Pendientes pendientes(plataforma);
    descargar(pendientes, {"a"});
    servir(*pendientes.actual());
    descargar(pendientes, {});
    descargar(pendientes, {});
    EXPECT_EQ(Pendientes(plataforma).copia(), "a");
}

TEST_F(LotesPrueba, ADownloadThatTheIndicatorHasClosedHasHeardEverything) {
    Pendientes pendientes(plataforma);
    descargar(pendientes, {"a"});
    pendientes.actual()->nota().aplazar(apunte::Fin{true});
    servir(*pendientes.actual());
    EXPECT_EQ(Pendientes(plataforma).copia(), "");
}

// One batch

TEST_F(LotesPrueba, AnUnendedLastLineIsNoWeighing) {
    disco.poner(kCarpeta / "s.txt", "a\r\nb\r\nc\r");
    Lote lote(plataforma, 1, kCarpeta / "s.txt", kCarpeta / "s.nota");
    lote.releer();
    EXPECT_THAT(lote.pesadas(), ElementsAre("a", "b"));
    EXPECT_EQ(lote.porLlegar(), 2U);
    EXPECT_EQ(lote.copia(), "b");
}

TEST_F(LotesPrueba, CountsEachWeighingThatLacksADestination) {
    disco.poner(kCarpeta / "s.txt", "a\r\nb\r\nc\r\n");
    Lote lote(plataforma, 1, kCarpeta / "s.txt", kCarpeta / "s.nota");
    lote.releer();
    lote.nota().apuntar({apunte::Pase{1, true, true}});
    lote.nota().apuntar({apunte::Llega{Destino::kTexto, *Tramos::deTexto("0-1")}});
    EXPECT_EQ(lote.porLlegar(), 3U);
    lote.nota().apuntar({apunte::Llega{Destino::kHoja, *Tramos::deTexto("1-2")}});
    EXPECT_EQ(lote.porLlegar(), 2U);
    EXPECT_FALSE(lote.falta(1));
    lote.nota().apuntar({apunte::Hecho{Destino::kHoja}});
    EXPECT_EQ(lote.porLlegar(), 1U);
    lote.nota().apuntar({apunte::Hecho{Destino::kTexto}});
    EXPECT_TRUE(lote.llegado());
}

TEST_F(LotesPrueba, AStoreOrNoteThatCannotBeReadNowWaitsAndSaysWhy) {
    disco.poner(kCarpeta / "s.txt", "a\r\n");
    Lote lote(plataforma, 1, kCarpeta / "s.txt", kCarpeta / "s.nota");
    for (const char* nombre : {"s.txt", "s.nota"}) {
        disco.fallar(
            ErrorFichero::Causa::kAveria,
            [nombre](const Operacion& una) { return una.ruta.filename() == nombre; },
            DiscoSimulado::kSiempre);
        lote.releer();
        EXPECT_TRUE(lote.ilegible()) << nombre;
        EXPECT_GE(lote.porLlegar(), 1U);
        EXPECT_FALSE(lote.llegado());
        disco.sanar();
        lote.releer();
        EXPECT_FALSE(lote.ilegible());
        EXPECT_EQ(lote.porLlegar(), 1U);
    }
}

TEST_F(LotesPrueba, WhatAnotherLifeStoredWithoutFlushingItIsFlushed) {
    const auto almacen = kCarpeta / "s.txt";
    disco.poner(almacen, "a\r\n");
    disco.abrir(almacen, Disco::Modo::kAnadir)->anadir("b\r\n");
    ASSERT_FALSE(disco.todoVolcado());
    Lote lote(plataforma, 1, almacen, kCarpeta / "s.nota");
    lote.releer();
    EXPECT_TRUE(disco.todoVolcado());
    EXPECT_EQ(disco.contenido(almacen), "a\r\nb\r\n");
}

TEST_F(LotesPrueba, AStoreThatHasLostWeighingsIsAnError) {
    disco.poner(kCarpeta / "s.txt", "a\r\nb\r\n");
    Lote lote(plataforma, 1, kCarpeta / "s.txt", kCarpeta / "s.nota");
    lote.releer();
    disco.poner(kCarpeta / "s.txt", "a\r\n");
    EXPECT_THROW(lote.pesadas(), ErrorFichero);
}

}  // namespace
}  // namespace bn
