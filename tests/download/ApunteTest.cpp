// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "download/Apunte.h"

namespace bn {
namespace {

// A plate may hold any byte.
const std::string kHostil = std::string("a\tb\rc\nd\\e\\te\xFF\x80ñ") + '\0' + "f\\";

Comienzo comienzoDeHoja() {
    Comienzo comienzo;
    comienzo.fichero = kHostil;
    comienzo.hoja = "Hoja\t1";
    comienzo.lugar = 32767;
    comienzo.columnas = {1, 0, 702, -1, 5, 6, 32767, 8};
    return comienzo;
}

Comienzo comienzoDeTexto() {
    Comienzo comienzo;
    comienzo.fichero = "C:\\Mis documentos\\tara.txt";
    comienzo.lugar = UINT64_MAX;
    for (std::size_t i = 0; i < comienzo.campos.size(); ++i) {
        comienzo.campos.at(i) = {static_cast<int16_t>(i), static_cast<int16_t>(80 - i), kHostil};
    }
    return comienzo;
}

bool vuelveIgual(const Apunte& apunte) {
    const std::string linea = textoDeApunte(apunte);
    EXPECT_EQ(linea.find_first_of("\r\n"), std::string::npos) << linea;
    const auto leido = apunteDeTexto(linea);
    return leido && leido->index() == apunte.index() && textoDeApunte(*leido) == linea;
}

TEST(Apunte, ComesBackFromItsLineWhateverItHolds) {
    EXPECT_TRUE(vuelveIgual(apunte::Copia{kHostil}));
    EXPECT_TRUE(vuelveIgual(apunte::Copia{""}));
    EXPECT_TRUE(vuelveIgual(apunte::Desconocida{}));
    EXPECT_TRUE(vuelveIgual(apunte::Fin{true}));
    EXPECT_TRUE(vuelveIgual(apunte::Fin{false}));
    EXPECT_TRUE(vuelveIgual(apunte::Pase{46000.1234567890123, true, false}));
    EXPECT_TRUE(vuelveIgual(apunte::Pase{-0.1, false, true}));
    EXPECT_TRUE(vuelveIgual(apunte::Empieza{Destino::kHoja, comienzoDeHoja()}));
    EXPECT_TRUE(vuelveIgual(apunte::Empieza{Destino::kTexto, comienzoDeTexto()}));
    EXPECT_TRUE(vuelveIgual(apunte::Llega{Destino::kHoja, *Tramos::deTexto("0-4,7")}));
    EXPECT_TRUE(vuelveIgual(apunte::Llega{Destino::kTexto, {}}));
    EXPECT_TRUE(vuelveIgual(apunte::Hecho{Destino::kTexto}));
    EXPECT_TRUE(vuelveIgual(apunte::Descarte{}));
}

TEST(Apunte, KeepsEveryValueOfAStep) {
    const auto copia = apunteDeTexto(textoDeApunte(apunte::Copia{kHostil}));
    EXPECT_EQ(std::get<apunte::Copia>(copia.value()).datos, kHostil);
    for (const auto& [destino, comienzo] :
         {std::pair{Destino::kHoja, comienzoDeHoja()}, {Destino::kTexto, comienzoDeTexto()}}) {
        const auto leido = apunteDeTexto(textoDeApunte(apunte::Empieza{destino, comienzo}));
        EXPECT_EQ(std::get<apunte::Empieza>(leido.value()).destino, destino);
        EXPECT_EQ(std::get<apunte::Empieza>(leido.value()).comienzo, comienzo);
    }
    const double reloj = 46000.0 + 1.0 / 3;
    const auto pase = apunteDeTexto(textoDeApunte(apunte::Pase{reloj, true, false}));
    EXPECT_EQ(std::get<apunte::Pase>(pase.value()).reloj, reloj) << "to the last bit";
    EXPECT_TRUE(std::get<apunte::Pase>(pase.value()).hoja);
    EXPECT_FALSE(std::get<apunte::Pase>(pase.value()).texto);
}

TEST(Apunte, IsNotReadFromALineThatWasCutAnywhere) {
    const std::vector<Apunte> todos = {apunte::Empieza{Destino::kHoja, comienzoDeHoja()},
                                       apunte::Desconocida{}, apunte::Hecho{Destino::kHoja},
                                       apunte::Descarte{}};
    for (const Apunte& uno : todos) {
        const std::string linea = textoDeApunte(uno);
        for (std::size_t largo = 0; largo + 1 < linea.size(); ++largo) {
            EXPECT_EQ(apunteDeTexto(linea.substr(0, largo)), std::nullopt)
                << linea.substr(0, largo);
        }
    }
}

TEST(Apunte, IsNotReadFromWhatIsNoStep) {
    for (const char* linea : {"",
                              "\t",
                              "otra",
                              "copia",
                              "fin",
                              "hecho",
                              "hecho\tnada",
                              "hecho\thoja\tmas",
                              "desconocida\tx",
                              "descarte\tx",
                              "llega\thoja",
                              "llega\thoja\tx",
                              "llega\thoja\t1\t2",
                              "pase\t1\thoja",
                              "pase\tnan\thoja\ttexto",
                              "pase\tinf\thoja\ttexto",
                              "pase\t\thoja\ttexto",
                              "pase\t1 \thoja\ttexto",
                              "pase\t1e999\thoja\ttexto",
                              "empieza\thoja\t1\tf\th",
                              "empieza\thoja\t-1\tf\th\t1\t2\t3\t4\t5\t6\t7\t8",
                              "empieza\thoja\t1\tf\th\t1\t2\t3\t4\t5\t6\t7\t99999",
                              "empieza\thoja\t1\tf\th\t1\t2\t3\t4\t5\t6\t7\t8\t9",
                              "copia\t\\",
                              "copia\t\\x",
                              "COPIA\tx",
                              "empieza\ttexto\t1\tf\t1"}) {
        EXPECT_EQ(apunteDeTexto(linea), std::nullopt) << linea;
    }
}

}  // namespace
}  // namespace bn
