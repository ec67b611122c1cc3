// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "download/BusquedaEnTexto.h"

namespace bn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Textos = std::vector<std::string>;
using Trozo = HallazgoEnTexto::Trozo;

const Textos kLineas = {"uno 1\r\n", "dos 22\r\n", "dos 22\r\n", "tres 333\r\n"};
const std::string kTodas = "uno 1\r\ndos 22\r\ndos 22\r\ntres 333\r\n";

/// The bytes once what is to be mended has been mended.
std::string arreglado(std::string bytes, const HallazgoEnTexto& hallazgo) {
    for (const Trozo& trozo : hallazgo.trozos) {
        const std::size_t fin = trozo.lugar + trozo.bytes.size();
        if (bytes.size() < fin) bytes.resize(fin);
        bytes.replace(trozo.lugar, trozo.bytes.size(), trozo.bytes);
    }
    return bytes;
}

std::string primeras(std::size_t cuantas) {
    std::string texto;
    for (std::size_t i = 0; i < cuantas; ++i) texto += kLineas.at(i);
    return texto;
}

TEST(BusquedaEnTexto, FindsNothingBehindTheEnd) {
    const auto hallazgo = buscarEnTexto("", kLineas);
    EXPECT_TRUE(hallazgo.halladas.vacio());
    EXPECT_THAT(hallazgo.trozos, IsEmpty());
}

TEST(BusquedaEnTexto, CutAtAnyByteCompletesTheTornLineAndNoMore) {
    for (std::size_t corte = 1; corte <= kTodas.size(); ++corte) {
        const auto hallazgo = buscarEnTexto(kTodas.substr(0, corte), kLineas);
        const std::size_t cuantas = hallazgo.halladas.cuantos();
        EXPECT_GE(primeras(cuantas).size(), corte);
        EXPECT_LT(primeras(cuantas - 1).size(), corte);
        EXPECT_EQ(arreglado(kTodas.substr(0, corte), hallazgo), primeras(cuantas)) << corte;
    }
}

TEST(BusquedaEnTexto, FillsTheZerosThatAPowerCutHasLeftAnywhere) {
    for (std::size_t largo = 1; largo <= kTodas.size(); ++largo) {
        for (std::size_t desde = 0; desde < largo; ++desde) {
            std::string rotas = kTodas.substr(0, largo);
            rotas.replace(desde, largo - desde, largo - desde, '\0');
            const auto hallazgo = buscarEnTexto(rotas, kLineas);
            EXPECT_EQ(arreglado(rotas, hallazgo), primeras(hallazgo.halladas.cuantos()));
            EXPECT_GE(primeras(hallazgo.halladas.cuantos()).size(), largo);
        }
    }
}

TEST(BusquedaEnTexto, GivesBackWhatStandsThereTooToBeFlushed) {
    EXPECT_THAT(buscarEnTexto(primeras(2), kLineas).trozos, ElementsAre(Trozo{0, primeras(2)}));
    EXPECT_THAT(buscarEnTexto("otra\r\n" + kLineas[0] + "otra\r\n" + kLineas[1], kLineas).trozos,
                ElementsAre(Trozo{6, kLineas[0]}, Trozo{19, kLineas[1]}));
}

TEST(BusquedaEnTexto, EachLineThatStandsThereCountsOnce) {
    const std::string ajena = "de otro\r\n";
    const auto una = buscarEnTexto(ajena + kLineas[1] + ajena, kLineas);
    EXPECT_EQ(una.halladas.texto(), "1") << "one of the two that are equal";
    const auto dos = buscarEnTexto(ajena + kLineas[1] + ajena + kLineas[1] + kLineas[1], kLineas);
    EXPECT_EQ(dos.halladas.texto(), "1-2") << "the third one is somebody else's";
}

TEST(BusquedaEnTexto, FindsThemAmongStrangersLinesAndCompletesATornOneAtTheEnd) {
    const std::string hay = kLineas[0] + "de otro\r\n" + kLineas[1] + "tres";
    const auto hallazgo = buscarEnTexto(hay, kLineas);
    EXPECT_EQ(hallazgo.halladas.texto(), "0-1,3");
    EXPECT_EQ(arreglado(hay, hallazgo), kLineas[0] + "de otro\r\n" + kLineas[1] + kLineas[3]);
}

TEST(BusquedaEnTexto, LeavesStrangersBytesAlone) {
    for (const std::string hay : {"de otro", "de otro\r\n", "uno 1 y más\r\n", "x\r\nuno 2"}) {
        const auto hallazgo = buscarEnTexto(hay, kLineas);
        EXPECT_TRUE(hallazgo.halladas.vacio()) << hay;
        EXPECT_THAT(hallazgo.trozos, IsEmpty()) << hay;
    }
}

TEST(BusquedaEnTexto, LooksForNothingWhereNoLineWaits) {
    const auto hallazgo = buscarEnTexto(kTodas, {});
    EXPECT_TRUE(hallazgo.halladas.vacio());
    EXPECT_THAT(hallazgo.trozos, IsEmpty());
}

}  // namespace
}  // namespace bn
