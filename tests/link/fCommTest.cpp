// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/link/FCommDePrueba.h"

namespace bn {
namespace {

TEST_F(FComm, OpensThePortWithItsSettingsAndAsks) {
    comm.Pedir(7, "4800,E,7,2");
    EXPECT_TRUE(plataforma.puerto().PortOpen());
    EXPECT_EQ(plataforma.puerto().numero, 7);
    EXPECT_EQ(plataforma.puerto().ajustes, "4800,E,7,2");
    EXPECT_EQ(enviado(), kPeticion);
    EXPECT_TRUE(finales.empty());
}

TEST_F(FComm, TellsAFailureToOpenAMomentLater) {
    plataforma.puerto().errorAlAbrir = "COM1: no existe";
    comm.Pedir(1, "9600,N,8,1");
    EXPECT_TRUE(finales.empty()) << "never from inside Pedir";
    plataforma.avanzar(9);
    EXPECT_TRUE(finales.empty());
    plataforma.avanzar(1);
    EXPECT_EQ(finales, (std::vector<Fin>{{0, "No se puede iniciar el canal:\nCOM1: no existe"}}));
    EXPECT_EQ(enviado(), "");
    plataforma.avanzar(60000);
    EXPECT_EQ(finales.size(), 1U);
}

TEST_F(FComm, TellsAFailureOfTheNumberOrTheSettingsLikewise) {
    plataforma.puerto().errorEnNumero = "canal 99";
    comm.Pedir(99, "9600,N,8,1");
    plataforma.avanzar(10);
    plataforma.puerto().errorEnNumero.clear();
    plataforma.puerto().errorEnAjustes = "ajustes malos";
    comm.Pedir(1, "x");
    plataforma.avanzar(10);
    EXPECT_EQ(finales, (std::vector<Fin>{{0, "No se puede iniciar el canal:\ncanal 99"},
                                         {0, "No se puede iniciar el canal:\najustes malos"}}));
    EXPECT_FALSE(plataforma.puerto().PortOpen());
}

TEST_F(FComm, CountsNothingWhenALaterCycleCannotOpen) {
    pedir();
    recibir(pesada());
    plataforma.puerto().errorAlAbrir = "en uso";
    comm.Pedir(1, "9600,N,8,1");
    plataforma.avanzar(10);
    ASSERT_EQ(finales.size(), 1U);
    EXPECT_EQ(finales[0].first, 0);
}

TEST_F(FComm, AsksFourTimesHalfASecondApartByDefault) {
    pedir();
    for (int vez = 0; vez < 3; ++vez) {
        plataforma.avanzar(499);
        EXPECT_EQ(enviado(), "");
        plataforma.avanzar(1);
        EXPECT_EQ(enviado(), kPeticion);
    }
    plataforma.avanzar(499);
    EXPECT_TRUE(finales.empty());
    plataforma.avanzar(1);
    EXPECT_EQ(enviado(), "");
    EXPECT_EQ(finales, (std::vector<Fin>{{0, kNoContesta}}));
    plataforma.avanzar(60000);
    EXPECT_EQ(finales.size(), 1U) << "it is over";
}

TEST_F(FComm, WaitsAndTriesAsItIsTold) {
    comm.TimeoutYRetrys(40, 2);
    pedir();
    plataforma.avanzar(39);
    EXPECT_EQ(enviado(), "");
    plataforma.avanzar(1);
    EXPECT_EQ(enviado(), kPeticion);
    plataforma.avanzar(40);
    EXPECT_EQ(finales, (std::vector<Fin>{{0, kNoContesta}}));
}

TEST_F(FComm, AcknowledgesEachWeighingAfterItsHandlerHasRun) {
    pedir();
    recibir(pesada("AAA"));
    EXPECT_EQ(enviadoAntesDeContestar, "");
    EXPECT_EQ(enviado(), kAck);
    recibir(pesada("BBB"));
    EXPECT_EQ(enviado(), kAck);
    EXPECT_EQ(ordinales, (std::vector<int32_t>{1, 2}));
    EXPECT_EQ(matriculas, (std::vector<std::string>{"AAA", "BBB"}));
    EXPECT_TRUE(finales.empty());
}

TEST_F(FComm, EndsWellAtTheCounterRecordAndAcknowledgesIt) {
    pedir();
    recibir(pesada());
    enviado();
    recibir(trama("0009"));
    EXPECT_EQ(finales, (std::vector<Fin>{{9, ""}})) << "the counter is the indicator's";
    EXPECT_EQ(enviado(), kAck);
    plataforma.avanzar(60000);
    EXPECT_EQ(finales.size(), 1U) << "the timer stays stopped";
    EXPECT_EQ(enviado(), "");
}

TEST_F(FComm, TellsOfTheEndBeforeItAcknowledgesTheCounter) {
    std::string enviadoAlTerminar = "?";
    comm.Resumen.conectar(
        [&](int32_t&, std::string&) { enviadoAlTerminar = plataforma.puerto().enviado; });
    pedir();
    recibir(trama("0001"));
    EXPECT_EQ(enviadoAlTerminar, "");
    EXPECT_EQ(enviado(), kAck);
}

TEST_F(FComm, TakesACounterAsTheVeryFirstFrame) {
    pedir();
    recibir(trama("0000"));
    EXPECT_EQ(finales, (std::vector<Fin>{{0, ""}}));
    EXPECT_TRUE(ordinales.empty());
}

TEST_F(FComm, EndsWithoutAnAnswerWhenTheHandlerRefuses) {
    pedir();
    recibir(pesada());
    enviado();
    aceptar = false;
    recibir(pesada());
    EXPECT_EQ(finales, (std::vector<Fin>{{1, kInterrumpida}}));
    EXPECT_EQ(enviado(), "");
    plataforma.avanzar(60000);
    EXPECT_EQ(enviado(), "");
    EXPECT_EQ(finales.size(), 1U);
}

TEST_F(FComm, LeavesTheTimeOutRunningWhileAFrameIsIncomplete) {
    pedir();
    plataforma.avanzar(400);
    recibir("\x02 medio");
    plataforma.avanzar(100);
    EXPECT_EQ(enviado(), kPeticion);
}

TEST_F(FComm, ForgetsHalfAFrameWhenItRepeatsItself) {
    pedir();
    const std::string entera = pesada();
    recibir(entera.substr(0, 20));
    plataforma.avanzar(500);
    EXPECT_EQ(enviado(), kPeticion);
    recibir(entera);
    EXPECT_EQ(ordinales.size(), 1U) << "the half frame did not spoil the whole one";
    EXPECT_EQ(enviado(), kAck);
}

TEST_F(FComm, RefusesAnUnreadableFrame) {
    pedir();
    recibir("basura\r");
    EXPECT_EQ(enviado(), kNak);
    recibir(pesada());
    EXPECT_EQ(enviado(), kAck);
    EXPECT_TRUE(finales.empty());
}

TEST_F(FComm, GivesUpAfterAsManyUnreadableFramesAsAttempts) {
    pedir();
    for (int vez = 0; vez < 4; ++vez) {
        recibir("basura\r");
        EXPECT_EQ(enviado(), kNak) << vez;
    }
    recibir("basura\r");
    EXPECT_EQ(enviado(), "");
    EXPECT_EQ(finales, (std::vector<Fin>{{0, kIrreconocibles}}));
    plataforma.avanzar(60000);
    EXPECT_EQ(finales.size(), 1U);
}

TEST_F(FComm, RepeatsTheNegativeAcknowledgeInSilence) {
    pedir();
    recibir(pesada());
    enviado();
    recibir("basura\r");
    EXPECT_EQ(enviado(), kNak);
    for (int vez = 0; vez < 3; ++vez) {
        plataforma.avanzar(500);
        EXPECT_EQ(enviado(), kNak);
    }
    plataforma.avanzar(500);
    EXPECT_EQ(finales, (std::vector<Fin>{{1, kNoContestaTras}}));
    EXPECT_EQ(enviado(), "");
}

TEST_F(FComm, CountsUnreadableFramesAndSilencesTogether) {
    pedir();
    recibir("basura\r");      // attempt 1
    plataforma.avanzar(500);  // 2
    recibir("basura\r");      // 3
    plataforma.avanzar(500);  // 4
    EXPECT_EQ(enviado(), kNak + kNak + kNak + kNak);
    recibir("basura\r");
    EXPECT_EQ(finales, (std::vector<Fin>{{0, kIrreconocibles}}));
}

TEST_F(FComm, CountsAgainFromOneAtTheFirstUnreadableFrameAfterAGoodOne) {
    pedir();
    for (int vez = 0; vez < 10; ++vez) {
        for (int mala = 0; mala < 4; ++mala) recibir("basura\r");
        recibir(pesada());
    }
    EXPECT_EQ(ordinales.size(), 10U);
    EXPECT_TRUE(finales.empty());
}

TEST_F(FComm, RepeatsTheAcknowledgeInSilence) {
    pedir();
    recibir(pesada());
    EXPECT_EQ(enviado(), kAck);
    for (int vez = 0; vez < 3; ++vez) {
        plataforma.avanzar(500);
        EXPECT_EQ(enviado(), kAck);
    }
    plataforma.avanzar(500);
    EXPECT_EQ(enviado(), "");
    EXPECT_EQ(finales, (std::vector<Fin>{{1, kHaDejado}}));
}

TEST_F(FComm, SharesOneAllowanceOfSilencesOverTheWholeCycle) {
    pedir();
    recibir(pesada());
    for (int silencio = 0; silencio < 3; ++silencio) {
        plataforma.avanzar(500);
        recibir(pesada());
    }
    EXPECT_EQ(ordinales.size(), 4U);
    plataforma.avanzar(500);
    EXPECT_EQ(finales, (std::vector<Fin>{{4, kHaDejado}})) << "good records give nothing back";
}

TEST_F(FComm, CountsSilencesBeforeTheFirstFrameIntoTheSameAllowance) {
    pedir();
    plataforma.avanzar(1000);
    recibir(pesada());
    plataforma.avanzar(500);
    EXPECT_TRUE(finales.empty());
    plataforma.avanzar(500);
    EXPECT_EQ(finales, (std::vector<Fin>{{1, kHaDejado}}));
}

TEST_F(FComm, TakesOneFrameOfABurstAndTheNextAtTheNextNotification) {
    pedir();
    recibir(pesada("AAA") + pesada("BBB"));
    EXPECT_EQ(matriculas, (std::vector<std::string>{"AAA"}));
    EXPECT_EQ(enviado(), kAck);
    recibir("");
    EXPECT_EQ(matriculas, (std::vector<std::string>{"AAA", "BBB"}));
    EXPECT_EQ(enviado(), kAck);
}

TEST_F(FComm, KeepsTheRestOfABurstWhenItAnswersButNotWhenItRepeats) {
    pedir();
    recibir(pesada("AAA") + pesada("BBB"));
    plataforma.avanzar(500);  // the repeated acknowledge empties the buffers
    recibir(pesada("CCC"));
    EXPECT_EQ(matriculas, (std::vector<std::string>{"AAA", "CCC"}));
}

TEST_F(FComm, CutsAFrameAtACarriageReturnInsideIt) {
    PesadaDePrueba rara;
    rara.matricula = "AB\rCD";
    pedir();
    recibir(trama(rara.datos()));
    EXPECT_EQ(enviado(), kNak);
    EXPECT_TRUE(ordinales.empty());
    recibir("");  // the rest of it is no frame either
    EXPECT_EQ(enviado(), kNak);
    recibir(pesada());
    EXPECT_EQ(ordinales.size(), 1U);
}

TEST_F(FComm, GivesTheSameEventsHoweverTheBytesAreSplit) {
    const std::string frames = pesada("AAA");
    for (std::size_t corte = 1; corte < frames.size(); ++corte) {
        pedir();
        recibir(frames.substr(0, corte));
        recibir(frames.substr(corte));
        ASSERT_EQ(ordinales.size(), corte) << "cut at " << corte;
        EXPECT_EQ(enviado(), kAck);
    }
    pedir();
    for (const char c : frames) recibir({c});
    EXPECT_EQ(ordinales.size(), frames.size());
    EXPECT_EQ(enviado(), kAck);
}

TEST_F(FComm, IgnoresOtherNotificationsOfThePort) {
    pedir();
    plataforma.puerto().evento = 3;
    recibir(pesada());
    EXPECT_TRUE(ordinales.empty());
    EXPECT_EQ(enviado(), "");
    plataforma.puerto().evento = 2;
    recibir("");
    EXPECT_EQ(ordinales.size(), 1U) << "the characters were still there";
}

TEST_F(FComm, DiscardsWhatArrivesBetweenCycles) {
    pedir();
    recibir(trama("0000"));
    enviado();
    recibir(pesada());
    EXPECT_TRUE(ordinales.empty());
    EXPECT_EQ(enviado(), "");
    EXPECT_EQ(plataforma.puerto().Input(), "");
    EXPECT_EQ(finales.size(), 1U);
}

TEST_F(FComm, KeepsThePortOpenBetweenCyclesAndOpensItAnew) {
    pedir();
    recibir(trama("0000"));
    EXPECT_TRUE(plataforma.puerto().PortOpen());
    enviado();
    comm.Pedir(2, "300,O,7,1");
    EXPECT_TRUE(plataforma.puerto().PortOpen());
    EXPECT_EQ(plataforma.puerto().numero, 2);
    EXPECT_EQ(enviado(), kPeticion);
}

TEST_F(FComm, StartsAnewInTheMiddleOfACycle) {
    pedir();
    recibir(pesada());
    enviado();
    pedir();
    recibir(pesada());
    EXPECT_EQ(ordinales, (std::vector<int32_t>{1, 1}));
    EXPECT_TRUE(finales.empty());
}

TEST_F(FComm, LetsTheHandlerOfTheEndStartTheNextCycle) {
    bool otra = true;
    comm.Resumen.conectar([&](int32_t&, std::string&) {
        if (std::exchange(otra, false)) comm.Pedir(1, "9600,N,8,1");
    });
    pedir();
    plataforma.avanzar(2000);
    ASSERT_EQ(finales.size(), 1U);
    recibir(pesada());
    EXPECT_EQ(ordinales.size(), 1U);
}

TEST_F(FComm, IgnoresFramingCharactersThatAreNotOneLong) {
    comm.Caracteres("\x02", "", "Q", 0);
    comm.Pedir(1, "9600,N,8,1");
    EXPECT_EQ(enviado(), kPeticion);
}

TEST_F(FComm, SurvivesNoiseWithoutEnd) {
    pedir();
    const std::string ruido(100000, 'x');
    for (int i = 0; i < 100; ++i) recibir(ruido);
    recibir("\r");
    EXPECT_EQ(enviado(), kNak);
    recibir(pesada());
    EXPECT_EQ(ordinales.size(), 1U);
}

TEST_F(FComm, ClosesThePortWhenItGoes) {
    PlataformaDePrueba otra(carpeta.ruta());
    {
        fComm efimera(otra);
        efimera.Caracteres("\x02", "\x03", kPeticion, 0);
        efimera.Pedir(1, "9600,N,8,1");
        ASSERT_TRUE(otra.puerto().PortOpen());
    }
    EXPECT_THROW(otra.puerto(), std::logic_error) << "the port has gone with it";
    otra.avanzar(60000);
}

}  // namespace
}  // namespace bn
