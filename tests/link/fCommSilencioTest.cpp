// SPDX-License-Identifier: MIT
// What the channel does at a time-out with what has arrived, and with frames cut short.
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/Ficheros.h"
#include "tests/link/FCommDePrueba.h"

namespace bn {
namespace {

class FCommEnSilencio : public FComm {
 protected:
    /// Into the port, without its notification.
    void recibirSinAviso(const std::string& bytes) {
        plataforma.puerto().evento = 3;
        recibir(bytes);
        plataforma.puerto().evento = kComEvReceive;
    }
    /// A time-out with the default settings; what goes out at it.
    std::string silencio() {
        plataforma.avanzar(500);
        return enviado();
    }
    std::string numerada(const std::string& albaran) {
        PesadaDePrueba p;
        p.albaran = albaran;
        return trama(p.datos());
    }
    /// A weighing whose check character has code 13.
    static std::string conControl13() {
        PesadaDePrueba p;
        p.fechaHora = "19/07/99 12:30";
        for (char c = 'A'; c <= 'Z'; ++c) {
            p.matricula = std::string{'B', c};
            for (int n = 1; n < 100; ++n) {
                p.albaran = std::to_string(n);
                if (prueba::xorDe(p.datos()) == '\r') return trama(p.datos());
            }
        }
        return "none found";
    }
    /// Up to its check character, and what follows it: one notification each.
    void recibirCortada(const std::string& entera) {
        recibir(entera.substr(0, entera.size() - 2));
        recibir(entera.substr(entera.size() - 2));
    }
};

TEST_F(FCommEnSilencio, TakesAFrameThatTheLastLookCompletesAndSendsNothingElse) {
    pedir();
    recibirSinAviso(pesada("AAA"));
    EXPECT_EQ(silencio(), kAck);
    EXPECT_EQ(matriculas, std::vector<std::string>{"AAA"});
    const std::string otra = pesada("BBB");
    recibir(otra.substr(0, 30));
    recibirSinAviso(otra.substr(30));
    EXPECT_EQ(silencio(), kAck);
    EXPECT_EQ(ordinales, (std::vector<int32_t>{1, 2}));
}

TEST_F(FCommEnSilencio, TakesAFrameAtTheLastTimeOutToo) {
    comm.TimeoutYRetrys(500, 1);
    pedir();
    recibirSinAviso(pesada());
    EXPECT_EQ(silencio(), kAck);
    EXPECT_TRUE(finales.empty());
}

TEST_F(FCommEnSilencio, RefusesWhatTheLastLookCompletesButCannotRead) {
    pedir();
    recibirSinAviso("basura\r");
    EXPECT_EQ(silencio(), kNak);
    EXPECT_EQ(silencio(), kNak) << "the timer goes on";
}

TEST_F(FCommEnSilencio, EndsAtACounterThatTheLastLookFinds) {
    pedir();
    recibirSinAviso(trama("0007"));
    EXPECT_EQ(silencio(), kAck);
    EXPECT_EQ(finales, (std::vector<Fin>{{7, ""}}));
    EXPECT_EQ(silencio(), "");
}

/// A line so quick that the answer is there before the sending has returned.
class LineaInmediata : public PlataformaDePrueba {
 public:
    using PlataformaDePrueba::PlataformaDePrueba;
    std::unique_ptr<MSComm> nuevoPuerto() override {
        auto nuevo = std::make_unique<Puerto>(*this);
        puerto = nuevo.get();
        return nuevo;
    }
    class Puerto : public PuertoDePrueba {
     public:
        using PuertoDePrueba::PuertoDePrueba;
        std::string respuesta;
        void Output(const std::string& bytes) override {
            PuertoDePrueba::Output(bytes);
            if (!respuesta.empty()) recibir(std::exchange(respuesta, {}));
        }
    };
    Puerto* puerto = nullptr;
};

TEST(FCommInmediato, LosesNoAnswerThatArrivesWhileTheTransmissionGoesOut) {
    prueba::CarpetaTemporal carpeta;
    LineaInmediata plataforma(carpeta.ruta());
    fComm comm(plataforma);
    comm.Caracteres("\x02", "\x03", kPeticion, 0);
    int pesadas = 0;
    comm.Pesada.conectar([&](int32_t&, bool& seguir, pesaDX5&) {
        ++pesadas;
        seguir = true;
    });
    plataforma.puerto->respuesta = trama(PesadaDePrueba{}.datos());
    comm.Pedir(1, "9600,N,8,1");
    EXPECT_EQ(pesadas, 1) << "the answer to the request";
    PesadaDePrueba otra;
    otra.matricula = "B";
    plataforma.puerto->respuesta = trama(otra.datos());
    plataforma.avanzar(500);
    EXPECT_EQ(pesadas, 2) << "the answer to the repeated acknowledge";
}

TEST_F(FCommEnSilencio, ForgetsNothingThatArrivesAfterItsLook) {
    pedir();
    recibir(pesada("AAA"));
    enviado();
    EXPECT_EQ(silencio(), kAck);
    const std::string otra = pesada("BBB");
    recibir(otra.substr(0, 10));
    recibir(otra.substr(10));
    EXPECT_EQ(matriculas, (std::vector<std::string>{"AAA", "BBB"}));
}

TEST_F(FCommEnSilencio, RefusesAnUnfinishedFrameInsteadOfAcknowledgingOverIt) {
    pedir();
    recibir(pesada("AAA"));
    enviado();
    recibir(pesada("BBB").substr(0, 40));
    EXPECT_EQ(silencio(), kNak);
    EXPECT_EQ(silencio(), kNak) << "again until a terminator has come";
    EXPECT_EQ(silencio(), kNak);
    EXPECT_EQ(silencio(), "");
    EXPECT_EQ(finales, (std::vector<Fin>{{1, kHaDejado}})) << "state and attempts stay as they are";
}

TEST_F(FCommEnSilencio, AcknowledgesAgainOnceTheUnfinishedFrameHasBeenResent) {
    pedir();
    recibir(pesada("AAA"));
    recibir(pesada("BBB").substr(0, 40));
    enviado();
    EXPECT_EQ(silencio(), kNak);
    recibir(pesada("BBB"));
    EXPECT_EQ(enviado(), kAck);
    EXPECT_EQ(silencio(), kAck);
    EXPECT_EQ(matriculas, (std::vector<std::string>{"AAA", "BBB"}));
}

TEST_F(FCommEnSilencio, SeesTheUnfinishedFrameThatOnlyTheLastLookFinds) {
    pedir();
    recibir(pesada("AAA"));
    enviado();
    recibirSinAviso(
        "\x02"
        "1234");
    EXPECT_EQ(silencio(), kNak);
}

TEST_F(FCommEnSilencio, AcknowledgesOverNoiseThatBeginsNoFrame) {
    pedir();
    recibir(pesada("AAA"));
    enviado();
    recibir("ruido");
    EXPECT_EQ(silencio(), kAck);
    recibirSinAviso(std::string(5000, 'x'));
    EXPECT_EQ(silencio(), kAck);
}

TEST_F(FCommEnSilencio, RemembersABegunFrameThatNoiseWithoutEndHasBuried) {
    pedir();
    recibir(pesada("AAA"));
    enviado();
    recibir("\x02" + std::string(5000, 'x'));
    EXPECT_EQ(silencio(), kNak);
}

TEST_F(FCommEnSilencio, AsksAgainOverAnUnfinishedFrameUnlessAskingAcknowledges) {
    pedir();
    recibir(
        "\x02"
        "1234");
    EXPECT_EQ(silencio(), kPeticion);
    comm.Caracteres("\x02", "\x03", kAck, 0);
    comm.Pedir(1, "9600,N,8,1");
    EXPECT_EQ(enviado(), kAck);
    EXPECT_EQ(silencio(), kAck);
    recibir(
        "\x02"
        "1234");
    EXPECT_EQ(silencio(), kNak);
    recibir(pesada("AAA"));
    EXPECT_EQ(enviado(), kAck);
}

TEST_F(FCommEnSilencio, KnowsTheConfiguredStartCharacterAlsoAsAWildcard) {
    for (const std::string inicial : {"$", "?", "#"}) {
        comm.Caracteres(inicial, "\x03", kPeticion, 0);
        pedir();
        PesadaDePrueba p;
        const char primero = inicial == "$" ? '$' : '7';
        recibir(trama(p.datos(), primero));
        ASSERT_EQ(enviado(), kAck) << inicial;
        recibir(trama(p.datos(), primero).substr(0, 20));
        EXPECT_EQ(silencio(), kNak) << inicial;
    }
}

TEST_F(FCommEnSilencio, RefusesACutCheckCharacterOnceAndTakesItWholeWhenItComesAgain) {
    const std::string rara = conControl13();
    ASSERT_EQ(rara.substr(rara.size() - 3), "\r\n\r");
    pedir();
    recibirCortada(rara);
    EXPECT_EQ(enviado(), kNak + kNak) << "the cut frame and its rest";
    EXPECT_TRUE(ordinales.empty());
    recibirCortada(rara);
    EXPECT_EQ(enviado(), kAck);
    EXPECT_EQ(ordinales.size(), 1U);
    recibirCortada(trama("0001"));
    EXPECT_EQ(finales, (std::vector<Fin>{{1, ""}}));
}

TEST_F(FCommEnSilencio, TakesTheCutFrameInOnePieceLikewise) {
    const std::string rara = conControl13();
    pedir();
    recibir(rara);
    recibir("");  // the second carriage return's notification
    EXPECT_EQ(enviado(), kNak + kNak);
    recibir(rara);
    EXPECT_EQ(enviado(), kAck);
    recibir("");
    EXPECT_EQ(enviado(), "");
    EXPECT_EQ(ordinales.size(), 1U);
}

TEST_F(FCommEnSilencio, TakesACounterWithSuchACheckCharacter) {
    ASSERT_EQ(prueba::xorDe("0049"), '\r');
    pedir();
    recibirCortada(trama("0049"));
    EXPECT_EQ(enviado(), kNak + kNak);
    recibirCortada(trama("0049"));
    EXPECT_EQ(finales, (std::vector<Fin>{{49, ""}}));
    EXPECT_EQ(enviado(), kAck);
}

TEST_F(FCommEnSilencio, WaitsForTheEndingWhateverTheAttempts) {
    comm.TimeoutYRetrys(500, 2);
    const std::string rara = conControl13();
    pedir();
    recibirCortada(rara);
    EXPECT_EQ(enviado(), kNak + kNak) << "attempts used up";
    recibirCortada(rara);
    EXPECT_EQ(enviado(), kAck);
    EXPECT_TRUE(finales.empty());
}

TEST_F(FCommEnSilencio, WaitsForTheEndingByteByByteAndInEveryPiece) {
    const std::string rara = conControl13();
    for (std::size_t corte = 1; corte < rara.size(); ++corte) {
        pedir();
        recibirCortada(rara);
        enviado();
        recibir(rara.substr(0, corte));
        recibir(rara.substr(corte));
        ASSERT_EQ(enviado(), kAck) << corte;
    }
    pedir();
    recibirCortada(rara);
    enviado();
    for (const char c : rara) recibir({c});
    EXPECT_EQ(enviado(), kAck);
}

TEST_F(FCommEnSilencio, RefusesTheCutFrameWhenItsEndingDoesNotFollow) {
    const std::string rara = conControl13();
    pedir();
    recibirCortada(rara);
    enviado();
    recibir(rara.substr(0, rara.size() - 2));
    EXPECT_EQ(enviado(), "") << "it may still come";
    recibir(numerada("77"));
    EXPECT_EQ(enviado(), kNak + kAck) << "two frames, two notifications";
    EXPECT_EQ(ordinales.size(), 1U);
}

TEST_F(FCommEnSilencio, NeverAcknowledgesOverACutFrameThatWaitsForItsEnding) {
    const std::string rara = conControl13();
    pedir();
    recibirCortada(rara);
    recibir(numerada("77"));
    enviado();
    recibir(rara.substr(0, rara.size() - 2));
    EXPECT_EQ(silencio(), kNak);
}

TEST_F(FCommEnSilencio, HoldsBackNothingInTheNextCycleNorAfterADamagedFrame) {
    const std::string rara = conControl13();
    pedir();
    recibirCortada(rara);
    enviado();
    pedir();
    recibir(rara.substr(0, rara.size() - 2));
    EXPECT_EQ(enviado(), kNak) << "a cycle of its own";

    std::string mala = trama("0012");  // its check character altered to code 13
    mala[mala.size() - 3] = '\r';
    pedir();
    for (int vez = 0; vez < 2; ++vez) {
        recibir(mala.substr(0, mala.size() - 2));
        EXPECT_EQ(enviado(), kNak) << "not its own check character";
    }
}

TEST_F(FCommEnSilencio, HoldsACutFrameBackAlsoWhereCheckCharactersAreNotTested) {
    comm.Caracteres("\x02", "\x03", kPeticion, 1);
    std::string rara = trama("0012");
    rara[rara.size() - 3] = '\r';
    pedir();
    recibirCortada(rara);
    enviado();
    recibirCortada(rara);
    EXPECT_EQ(finales, (std::vector<Fin>{{12, ""}}));
}

TEST_F(FCommEnSilencio, RepeatsNothingOverAFrameThatCouldNotBeTraced) {
    comm.Caracteres("\x02", "\x03", kPeticion, 2);
    pedir();
    recibir(pesada());
    enviado();
    std::filesystem::remove(carpeta.ruta() / "traza.txt");
    std::filesystem::create_directory(carpeta.ruta() / "traza.txt");
    EXPECT_THROW(recibir(pesada()), ErrorFichero);
    plataforma.avanzar(60000);
    EXPECT_EQ(enviado(), "");
}

}  // namespace
}  // namespace bn
