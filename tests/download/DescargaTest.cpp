// SPDX-License-Identifier: MIT
#include "tests/download/DescargaDePrueba.h"

namespace bn {
namespace {

using prueba::kAck;
using prueba::leerFichero;
using prueba::trama;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(DescargaPrueba, IsIdleAndSilentWhenNew) {
    EXPECT_EQ(des.Estado(), 0);
    EXPECT_EQ(des.numRecibidas(), 0);
    EXPECT_EQ(des.Explicacion(), "");
    EXPECT_THAT(ocurrido(), IsEmpty());
    EXPECT_FALSE(std::filesystem::exists(almacen));
    EXPECT_EQ(enviado(), "");
}

TEST_F(DescargaPrueba, AsksWithTheSettings) {
    cfg->canal(7);
    cfg->Params("4800,E,7,2");
    cfg->CaracterPeticion("?");
    EXPECT_TRUE(des.iniciarProceso());
    EXPECT_EQ(plataforma.puerto().numero, 7);
    EXPECT_EQ(plataforma.puerto().ajustes, "4800,E,7,2");
    EXPECT_EQ(enviado(), "?");
    EXPECT_EQ(des.Estado(), 1);
    EXPECT_THAT(ocurrido(), ElementsAre("estado 1"));
    EXPECT_TRUE(std::filesystem::exists(almacen));
}

TEST_F(DescargaPrueba, HandsOnTheFramingCharactersTheChecksumModeAndTheTimes) {
    cfg->CaracterInicial("{");
    cfg->CaracterFinal("}");
    cfg->Checksum(1);
    cfg->Timeout(100);
    cfg->MaxRetrys(2);
    empezar();
    std::string recibida = trama(datos(1), '{', '}');
    recibida[recibida.size() - 3] ^= 1;  // a wrong check character, not tested
    plataforma.puerto().recibir(recibida);
    EXPECT_EQ(des.Estado(), 2);
    plataforma.avanzar(199);
    EXPECT_EQ(des.Estado(), 2);
    plataforma.avanzar(1);
    EXPECT_EQ(des.Estado(), 5);
    EXPECT_EQ(des.Explicacion(), kHaDejado);
}

TEST_F(DescargaPrueba, ReadsTheSettingsAnewForEveryDownload) {
    empezar();
    llegaContador("0000");
    cfg->CaracterPeticion("Q");
    cfg->canal(3);
    EXPECT_TRUE(des.iniciarProceso());
    EXPECT_EQ(plataforma.puerto().enviado.back(), 'Q');
    EXPECT_EQ(plataforma.puerto().numero, 3);
}

TEST_F(DescargaPrueba, MakesItsOwnSettingsWhenNoneAreGiven) {
    prueba::escribirFichero(carpeta / "bnDX5.ini", "[General]\r\nCanal=5\r\n");
    Descarga otra(plataforma);
    EXPECT_TRUE(otra.iniciarProceso());
    EXPECT_EQ(plataforma.puerto().numero, 5);
    EXPECT_EQ(plataforma.puerto().ajustes, "9600,N,8,1");
}

TEST_F(DescargaPrueba, RunsAWholeDownload) {
    empezar();
    EXPECT_THAT(ocurrido(), ElementsAre("estado 1"));
    llegaPesada(1);
    EXPECT_THAT(ocurrido(), ElementsAre("estado 2", "pesada 1 van 1"));
    llegaPesada(2);
    EXPECT_THAT(ocurrido(), ElementsAre("pesada 2 van 2"));
    EXPECT_EQ(leerFichero(almacen), datos(1) + "\r\n" + datos(2) + "\r\n");
    EXPECT_FALSE(std::filesystem::exists(texto)) << "no destination is touched meanwhile";
    llegaContador("0002");
    EXPECT_THAT(ocurrido(), ElementsAre("estado 3", "estado 4"));
    EXPECT_EQ(leerFichero(texto), linea(1) + linea(2));
    EXPECT_EQ(des.numRecibidas(), 2);
    EXPECT_EQ(des.Explicacion(), "");
    EXPECT_EQ(enviado(), kAck + kAck + kAck);
    EXPECT_THAT(plataforma.mensajes, IsEmpty());
}

TEST_F(DescargaPrueba, TheWeighingIsOnDiskAndToldBeforeItIsAcknowledged) {
    bool guardada = false;
    des.PesadaRecibida.conectar(
        [&](pesaDX5& pesada) { guardada = leerFichero(almacen) == pesada.Datos() + "\r\n"; });
    empezar();
    llegaPesada(1);
    EXPECT_TRUE(guardada);
    EXPECT_EQ(enviadoAlAvisar, "");
    EXPECT_EQ(enviado(), kAck);
}

TEST_F(DescargaPrueba, SavesInBothDestinationsWhileInState3) {
    cfg->UsoExcel(true);
    cfg->LibroExcel("Pesadas.xls");
    std::string alGuardar;
    plataforma.excel.alLlamar = [&](const std::string& llamada) {
        if (llamada.find("SaveAs") != std::string::npos) alGuardar = std::to_string(des.Estado());
    };
    empezar();
    llegaPesada(8);
    EXPECT_THAT(plataforma.excel.porIdentificador, IsEmpty());
    llegaContador("0001");
    EXPECT_EQ(alGuardar, "3");
    EXPECT_EQ(plataforma.excel.disco["Pesadas.xls"].hoja("Pesadas").celda(1, 3), Variante(8));
    EXPECT_EQ(plataforma.excel.objetosVivos, 0);
    EXPECT_EQ(leerFichero(texto), linea(8));
}

TEST_F(DescargaPrueba, AnEmptyDownloadGoesThroughAnEmptySavePass) {
    cfg->UsoExcel(true);
    empezar();
    ocurrido();
    llegaContador("0000");
    EXPECT_THAT(ocurrido(), ElementsAre("estado 3", "estado 4"));
    EXPECT_EQ(des.numRecibidas(), 0);
    EXPECT_FALSE(std::filesystem::exists(texto));
    EXPECT_THAT(plataforma.excel.porIdentificador, IsEmpty());
}

TEST_F(DescargaPrueba, TakesTheIndicatorsOwnCountAtTheEnd) {
    empezar();
    llegaPesada(1);
    llegaContador("0009");
    EXPECT_EQ(des.Estado(), 4);
    EXPECT_EQ(des.numRecibidas(), 9);
    EXPECT_EQ(leerFichero(texto), linea(1));
}

TEST_F(DescargaPrueba, AFailureWithNothingReceivedGoesStraightToState5) {
    empezar();
    ocurrido();
    silencio();
    EXPECT_THAT(ocurrido(), ElementsAre("estado 5"));
    EXPECT_EQ(des.Explicacion(), kNoContesta);
    EXPECT_EQ(des.numRecibidas(), 0);
    EXPECT_FALSE(std::filesystem::exists(texto));
}

TEST_F(DescargaPrueba, AFailureAfterSomeWeighingsSavesThemAndEndsInState5) {
    empezar();
    llegaPesada(1);
    llegaPesada(2);
    ocurrido();
    silencio();
    EXPECT_THAT(ocurrido(), ElementsAre("estado 3", "estado 5"));
    EXPECT_EQ(des.Explicacion(), kHaDejado);
    EXPECT_EQ(des.numRecibidas(), 2);
    EXPECT_EQ(leerFichero(texto), linea(1) + linea(2));
}

TEST_F(DescargaPrueba, APortThatDoesNotOpenStillStartsAndFailsAMomentLater) {
    plataforma.puerto().errorAlAbrir = "COM1: en uso";
    EXPECT_TRUE(des.iniciarProceso());
    EXPECT_EQ(des.Estado(), 1);
    plataforma.avanzar(10);
    EXPECT_THAT(ocurrido(), ElementsAre("estado 1", "estado 5"));
    EXPECT_EQ(des.Explicacion(), "No se puede iniciar el canal:\nCOM1: en uso");
    plataforma.puerto().errorAlAbrir.clear();
    EXPECT_TRUE(des.iniciarProceso()) << "and the next one finds a store that can be started";
}

// Starting while something runs

TEST_F(DescargaPrueba, DoesNotStartWhileOneIsRunning) {
    empezar();
    llegaPesada(1);
    ocurrido();
    EXPECT_FALSE(des.iniciarProceso());
    EXPECT_THAT(ocurrido(), IsEmpty());
    EXPECT_EQ(enviado(), kAck);
    EXPECT_EQ(leerFichero(almacen), datos(1) + "\r\n") << "the store is not emptied";
    bool arrancada = true;
    alCambiar = [&](int32_t estado) {
        if (estado == 3) arrancada = des.iniciarProceso();
    };
    llegaContador("0001");
    EXPECT_FALSE(arrancada);
    EXPECT_EQ(leerFichero(texto), linea(1));
}

TEST_F(DescargaPrueba, DoesNotStartInState1) {
    empezar();
    ocurrido();
    EXPECT_FALSE(des.iniciarProceso());
    EXPECT_THAT(ocurrido(), IsEmpty());
    EXPECT_EQ(enviado(), "");
}

TEST_F(DescargaPrueba, StartsAgainFromStates4And5WithEverythingCleared) {
    empezar();
    llegaPesada(1);
    llegaContador("0001");
    EXPECT_TRUE(des.iniciarProceso());
    EXPECT_EQ(des.Estado(), 1);
    EXPECT_EQ(des.numRecibidas(), 0);
    EXPECT_EQ(leerFichero(almacen), "");
    silencio();
    EXPECT_EQ(des.Estado(), 5);
    EXPECT_EQ(des.Explicacion(), kNoContesta);
    EXPECT_TRUE(des.iniciarProceso());
    EXPECT_EQ(des.Explicacion(), "");
    llegaPesada(2);
    llegaContador("0001");
    EXPECT_EQ(des.Estado(), 4);
    EXPECT_EQ(leerFichero(texto), linea(1) + linea(2));
}

TEST_F(DescargaPrueba, AStoreThatCannotBeStartedChangesNothing) {
    empezar();
    llegaPesada(1);
    silencio();
    ocurrido();
    enviado();
    std::filesystem::remove(almacen);
    std::filesystem::create_directory(almacen);
    EXPECT_FALSE(des.iniciarProceso());
    EXPECT_EQ(des.Estado(), 5);
    EXPECT_EQ(des.numRecibidas(), 1);
    EXPECT_EQ(des.Explicacion(), kHaDejado);
    EXPECT_THAT(ocurrido(), IsEmpty());
    EXPECT_EQ(enviado(), "");
    std::filesystem::remove(almacen);
    EXPECT_TRUE(des.iniciarProceso());
}

// Abortar

TEST_F(DescargaPrueba, AnAbortTakesEffectWhenTheNextWeighingArrives) {
    empezar();
    for (int32_t i = 1; i <= 7; ++i) llegaPesada(i);
    ocurrido();
    enviado();
    des.Abortar();
    EXPECT_THAT(ocurrido(), IsEmpty());
    EXPECT_EQ(des.Estado(), 2);
    llegaPesada(8);
    EXPECT_THAT(ocurrido(), ElementsAre("estado 3", "estado 5"));
    EXPECT_EQ(des.numRecibidas(), 7);
    EXPECT_EQ(des.Explicacion(), kInterrumpida);
    EXPECT_EQ(enviado(), "") << "the refused weighing is not acknowledged";
    EXPECT_EQ(leerFichero(texto).size(), 7 * linea(1).size());
}

TEST_F(DescargaPrueba, AnAbortInState1SavesNothing) {
    empezar();
    des.Abortar();
    llegaPesada(1);
    EXPECT_THAT(ocurrido(), ElementsAre("estado 1", "estado 5"));
    EXPECT_EQ(des.Explicacion(), kInterrumpida);
    EXPECT_EQ(leerFichero(almacen), "");
}

TEST_F(DescargaPrueba, AnAbortWithoutAnotherWeighingEndsByTheChannelsTimeOut) {
    empezar();
    des.Abortar();
    silencio();
    EXPECT_EQ(des.Explicacion(), kNoContesta);
}

TEST_F(DescargaPrueba, AnAbortDoesNotOutliveItsDownloadNorStopItsEnd) {
    empezar();
    llegaPesada(1);
    des.Abortar();
    llegaContador("0001");
    EXPECT_EQ(des.Estado(), 4) << "the counter record is no weighing";
    empezar();
    llegaPesada(2);
    EXPECT_EQ(des.Estado(), 2);
}

TEST_F(DescargaPrueba, AnAbortOutsideADownloadDoesNothing) {
    des.Abortar();
    alCambiar = [this](int32_t estado) {
        if (estado >= 3) des.Abortar();
    };
    for (int vez = 0; vez < 2; ++vez) {
        empezar();
        llegaPesada(1);
        EXPECT_EQ(des.Estado(), 2);
        llegaContador("0001");
        EXPECT_EQ(des.Estado(), 4);
        des.Abortar();
    }
    EXPECT_EQ(leerFichero(texto), linea(1) + linea(1));
}

// Reset

TEST_F(DescargaPrueba, ResetGoesBackToIdleFromStates4And5) {
    empezar();
    llegaPesada(1);
    llegaContador("0001");
    ocurrido();
    des.Reset();
    EXPECT_THAT(ocurrido(), ElementsAre("estado 0"));
    EXPECT_EQ(des.numRecibidas(), 0);
    empezar();
    silencio();
    ocurrido();
    des.Reset();
    EXPECT_THAT(ocurrido(), ElementsAre("estado 0"));
    EXPECT_EQ(des.Explicacion(), "");
    des.Reset();
    EXPECT_THAT(ocurrido(), IsEmpty());
}

TEST_F(DescargaPrueba, ResetDoesNothingDuringADownload) {
    empezar();
    ocurrido();
    des.Reset();
    EXPECT_EQ(des.Estado(), 1);
    llegaPesada(1);
    ocurrido();
    des.Reset();
    EXPECT_EQ(des.Estado(), 2);
    EXPECT_EQ(des.numRecibidas(), 1);
    alCambiar = [this](int32_t estado) {
        if (estado != 3) return;
        des.Reset();
        EXPECT_EQ(des.Estado(), 3);
    };
    llegaContador("0001");
    EXPECT_THAT(ocurrido(), ElementsAre("estado 3", "estado 4"));
}

TEST_F(DescargaPrueba, ResetLeavesAnAbortAsItIs) {
    empezar();
    des.Abortar();
    des.Reset();
    llegaPesada(1);
    EXPECT_EQ(des.Explicacion(), kInterrumpida);
}

}  // namespace
}  // namespace bn
