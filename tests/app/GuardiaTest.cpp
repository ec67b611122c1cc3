// SPDX-License-Identifier: MIT
// What happens to an error that leaves a notification, and to the weighings in the store.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "app/Guardia.h"
#include "app/Rescate.h"
#include "platform/Ficheros.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/PlataformaDePrueba.h"

namespace bn {
namespace {

using prueba::escribirFichero;
using prueba::leerFichero;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using Textos = std::vector<std::string>;

const std::string kDosPesadas = "primera\xD1\r\nsegunda\r\n";
const std::string kCopia = "bnGuardo-20230315-120000.txt";

class RescatePrueba : public testing::Test {
 protected:
    void SetUp() override { plataforma.horaActual = 45000.5; }  // 15 March 2023, noon
    Textos copias() { return prueba::ficherosQueEmpiezan(carpeta.ruta(), "bnGuardo-"); }
    Textos todos() { return prueba::ficherosQueEmpiezan(carpeta.ruta(), ""); }

    prueba::CarpetaTemporal carpeta;
    PlataformaDePrueba plataforma{carpeta.ruta()};
    std::filesystem::path almacen = carpeta / "bnGuardo.txt";
    std::filesystem::path marca = carpeta / "bnGuardo.marca";
    Rescate rescate{plataforma};
};

TEST_F(RescatePrueba, CopiesTheStoreUnderTheDateAndTheHour) {
    escribirFichero(almacen, kDosPesadas);
    const auto copia = rescate.apartar();
    ASSERT_TRUE(copia);
    EXPECT_EQ(*copia, carpeta / kCopia);
    EXPECT_EQ(leerFichero(*copia), kDosPesadas);
    EXPECT_EQ(leerFichero(almacen), kDosPesadas);
    EXPECT_THAT(todos(), ElementsAre(kCopia, "bnGuardo.txt")) << "nothing temporary is left";
}

TEST_F(RescatePrueba, TwoCopiesOfOneSecondHaveTheirOwnNames) {
    for (const std::string contenido : {"una\r\n", "dos\r\n", "tres\r\n"}) {
        escribirFichero(almacen, contenido);
        const auto copia = rescate.apartar();
        ASSERT_TRUE(copia);
        EXPECT_EQ(leerFichero(*copia), contenido);
    }
    EXPECT_THAT(copias(), SizeIs(3));
    EXPECT_EQ(leerFichero(carpeta / kCopia), "una\r\n");
}

TEST_F(RescatePrueba, NamesTheSecondRightToTheEndOfTheDay) {
    escribirFichero(almacen, kDosPesadas);
    plataforma.horaActual = 36525 + 86399.0 / 86400;  // 31 December 1999, 23:59:59
    EXPECT_EQ(rescate.apartar()->filename(), "bnGuardo-19991231-235959.txt");
    plataforma.horaActual = 36526;
    EXPECT_EQ(rescate.apartar()->filename(), "bnGuardo-20000101-000000.txt");
}

TEST_F(RescatePrueba, AnEmptyOrMissingStoreHasNothingToSave) {
    EXPECT_EQ(rescate.apartar(), std::nullopt);
    escribirFichero(almacen, "");
    EXPECT_EQ(rescate.apartar(), std::nullopt);
    EXPECT_THAT(copias(), IsEmpty());
}

TEST_F(RescatePrueba, AStoreThatCannotBeCopiedIsMoved) {
    std::filesystem::create_directory(almacen);  // cannot be read as a file
    const auto copia = rescate.apartar();
    ASSERT_TRUE(copia);
    EXPECT_EQ(*copia, carpeta / kCopia);
    EXPECT_TRUE(std::filesystem::exists(*copia));
    EXPECT_FALSE(std::filesystem::exists(almacen));
}

TEST_F(RescatePrueba, TheMarkStandsFromTheFirstWeighingToTheEnd) {
    EXPECT_FALSE(std::filesystem::exists(marca));
    rescate.empezar();
    EXPECT_TRUE(std::filesystem::exists(marca));
    rescate.empezar();
    rescate.acabar();
    EXPECT_FALSE(std::filesystem::exists(marca));
    EXPECT_NO_THROW(rescate.acabar());
}

TEST_F(RescatePrueba, AMarkThatCannotBeMadeIsAnError) {
    std::filesystem::create_directory(marca);
    EXPECT_THROW(rescate.empezar(), ErrorFichero);
}

TEST_F(RescatePrueba, FindsNothingAfterADownloadThatEndedByItself) {
    escribirFichero(almacen, kDosPesadas);
    EXPECT_FALSE(rescate.recoger());
    rescate.empezar();
    rescate.acabar();
    EXPECT_FALSE(rescate.recoger());
    EXPECT_THAT(copias(), IsEmpty());
}

TEST_F(RescatePrueba, PutsAsideWhatAKilledProgramLeft) {
    rescate.empezar();
    escribirFichero(almacen, kDosPesadas);
    Rescate otraVez(plataforma);
    const auto restos = otraVez.recoger();
    ASSERT_TRUE(restos);
    EXPECT_EQ(restos->pesadas, 2U);
    EXPECT_EQ(leerFichero(restos->fichero), kDosPesadas);
    EXPECT_FALSE(std::filesystem::exists(marca));
    EXPECT_FALSE(otraVez.recoger()) << "once is enough";
    EXPECT_THAT(copias(), SizeIs(1));
}

TEST_F(RescatePrueba, CountsAWeighingWhoseLineEndNeverGotThere) {
    rescate.empezar();
    escribirFichero(almacen, kDosPesadas + "tercera");
    EXPECT_EQ(rescate.recoger()->pesadas, 3U);
}

TEST_F(RescatePrueba, AMarkBesideAnEmptyStoreIsForgotten) {
    rescate.empezar();
    escribirFichero(almacen, "");
    EXPECT_FALSE(rescate.recoger());
    EXPECT_FALSE(std::filesystem::exists(marca));
    EXPECT_THAT(copias(), IsEmpty());
}

TEST_F(RescatePrueba, AStoreThatCannotBeReadDoesNotKeepTheProgramFromStarting) {
    rescate.empezar();
    std::filesystem::create_directory(almacen);
    std::optional<Rescate::Pendientes> restos;
    ASSERT_NO_THROW(restos = rescate.recoger());
    ASSERT_TRUE(restos);
    EXPECT_TRUE(std::filesystem::exists(restos->fichero));
}

TEST_F(RescatePrueba, ClearsTheWayForADownloadOnlyWhenNothingUnsavedStandsInTheStore) {
    escribirFichero(almacen, kDosPesadas);
    EXPECT_TRUE(rescate.despejar()) << "without a mark the store has been saved";
    EXPECT_THAT(copias(), IsEmpty());
    rescate.empezar();
    EXPECT_TRUE(rescate.despejar());
    EXPECT_THAT(copias(), SizeIs(1));
    EXPECT_EQ(leerFichero(carpeta / kCopia), kDosPesadas);
    EXPECT_FALSE(std::filesystem::exists(marca));
}

class GuardiaPrueba : public RescatePrueba {
 protected:
    void SetUp() override {
        RescatePrueba::SetUp();
        escribirFichero(almacen, kDosPesadas);
        guardia.averia.conectar([this] {
            ++averias;
            mensajesAlAvisar = plataforma.mensajes.size();
        });
    }
    static void fallar() { throw std::runtime_error("la hoja está protegida"); }

    bool enDescarga = true;
    int averias = 0;
    std::size_t mensajesAlAvisar = 0;
    Guardia guardia{plataforma, rescate, [this] { return enDescarga; }};
};

TEST_F(GuardiaPrueba, LetsNotificationsThrough) {
    int atendidas = 0;
    guardia.atender([&] { ++atendidas; });
    guardia.atender([&] { guardia.atender([&] { ++atendidas; }); });
    EXPECT_EQ(atendidas, 2);
    EXPECT_THAT(plataforma.mensajes, IsEmpty());
    EXPECT_THAT(copias(), IsEmpty());
    EXPECT_EQ(averias, 0);
}

TEST_F(GuardiaPrueba, AnErrorOfADownloadPutsTheWeighingsAsideAndTellsWhatAndWhere) {
    rescate.empezar();
    EXPECT_NO_THROW(guardia.atender(fallar));
    ASSERT_THAT(copias(), ElementsAre(kCopia));
    EXPECT_EQ(leerFichero(carpeta / kCopia), kDosPesadas);
    ASSERT_THAT(plataforma.mensajes, SizeIs(1));
    EXPECT_THAT(plataforma.mensajes[0], HasSubstr("la hoja está protegida"));
    EXPECT_THAT(plataforma.mensajes[0], HasSubstr(ficheros::aTexto(carpeta / kCopia)));
    EXPECT_EQ(averias, 1);
    EXPECT_EQ(mensajesAlAvisar, 1U) << "the user is told before all starts over";
    EXPECT_FALSE(std::filesystem::exists(marca)) << "the copy is not put aside a second time";
}

TEST_F(GuardiaPrueba, AnErrorOutsideADownloadCopiesNothing) {
    enDescarga = false;
    guardia.atender(fallar);
    EXPECT_THAT(copias(), IsEmpty());
    ASSERT_THAT(plataforma.mensajes, SizeIs(1));
    EXPECT_THAT(plataforma.mensajes[0], HasSubstr("la hoja está protegida"));
    EXPECT_THAT(plataforma.mensajes[0], Not(HasSubstr("bnGuardo")));
    EXPECT_EQ(averias, 1);
}

TEST_F(GuardiaPrueba, AnErrorWithNothingReceivedNamesNoFile) {
    escribirFichero(almacen, "");
    guardia.atender(fallar);
    EXPECT_THAT(copias(), IsEmpty());
    ASSERT_THAT(plataforma.mensajes, SizeIs(1));
    EXPECT_THAT(plataforma.mensajes[0], Not(HasSubstr("bnGuardo")));
}

TEST_F(GuardiaPrueba, WhatIsNoExceptionEndsHereToo) {
    EXPECT_NO_THROW(guardia.atender([] { throw 7; }));
    EXPECT_THAT(plataforma.mensajes, SizeIs(1));
    EXPECT_EQ(averias, 1);
}

TEST_F(GuardiaPrueba, AnErrorOfWhatTheUserAskedForLeavesTheDownloadAlone) {
    guardia.atenderUsuario([] { throw std::runtime_error("bnDX5.ini: acceso denegado"); });
    EXPECT_THAT(plataforma.mensajes,
                ElementsAre("Se ha producido un error:\nbnDX5.ini: acceso denegado"));
    EXPECT_EQ(averias, 0);
    EXPECT_THAT(copias(), IsEmpty());
    int hechas = 0;
    guardia.atenderUsuario([&] { ++hechas; });
    guardia.atender([&] { ++hechas; });
    EXPECT_EQ(hechas, 2);
}

TEST_F(GuardiaPrueba, DropsNotificationsUntilTheOwnerHasStartedOver) {
    int atendidas = 0;
    guardia.atender(fallar);
    guardia.atender([&] { ++atendidas; });
    guardia.atender(fallar);
    EXPECT_EQ(atendidas, 0);
    EXPECT_THAT(plataforma.mensajes, SizeIs(1));
    guardia.reanudar();
    guardia.atender([&] { ++atendidas; });
    EXPECT_EQ(atendidas, 1);
    guardia.atender(fallar);
    EXPECT_EQ(averias, 2);
}

TEST_F(GuardiaPrueba, AnErrorInsideANotificationInsideAnotherIsToldOnce) {
    guardia.atender([this] {
        guardia.atender(fallar);
        fallar();
    });
    EXPECT_THAT(plataforma.mensajes, SizeIs(1));
    EXPECT_EQ(averias, 1);
    EXPECT_THAT(copias(), SizeIs(1));
}

}  // namespace
}  // namespace bn
