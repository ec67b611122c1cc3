// SPDX-License-Identifier: MIT
// Copies of a record, which are told from records that are equal.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/link/FCommDePrueba.h"

namespace bn {
namespace {

class FCommConCopias : public FComm {
 protected:
    static std::string datos(const std::string& albaran) {
        PesadaDePrueba p;
        p.albaran = albaran;
        return p.datos();
    }
    static std::string numerada(const std::string& albaran) { return trama(datos(albaran)); }
    /// Each frame of a chunk gets its notification, as from the real port.
    void recibirJuntas(const std::string& bytes) {
        recibir(bytes);
        for (std::size_t i = 1;
             i < static_cast<std::size_t>(std::count(bytes.begin(), bytes.end(), '\r')); ++i)
            recibir("");
    }
    /// The same record again, and what that has brought.
    void esperarCopia(const std::string& copia) {
        const std::size_t antes = ordinales.size();
        enviado();
        recibir(copia);
        EXPECT_EQ(ordinales.size(), antes) << "not told again";
        EXPECT_EQ(enviado(), "") << "nor answered";
    }
    void esperarRegistro(const std::string& bytes) {
        const std::size_t antes = ordinales.size();
        enviado();
        recibir(bytes);
        EXPECT_EQ(ordinales.size(), antes + 1);
        EXPECT_EQ(enviado(), kAck);
    }
};

TEST_F(FCommConCopias, SwallowsTheCopyOfARefusalWithTheNextFrameAlreadyThere) {
    pedir();
    recibirJuntas("basura\r" + numerada("1"));
    EXPECT_EQ(enviado(), kNak + kAck);
    esperarCopia(numerada("1"));
    esperarRegistro(numerada("2"));
    EXPECT_EQ(ordinales, (std::vector<int32_t>{1, 2})) << "nor counted";
}

TEST_F(FCommConCopias, SwallowsTheCopyOfARefusalOfAScrap) {
    for (const std::string resto : {"\r", "\n\r", "abc\r"}) {
        pedir();
        recibir(resto);
        esperarRegistro(numerada("1"));
        esperarCopia(numerada("1"));
    }
    pedir();
    recibir("abcd\r");
    esperarRegistro(numerada("1"));
    esperarRegistro(numerada("1"));
}

TEST_F(FCommConCopias, SwallowsTheCopyAfterATransmissionHasCutAFrameInTwo) {
    const std::string entera = numerada("1");
    pedir();
    recibir(entera.substr(0, 40));
    plataforma.avanzar(500);
    recibir(entera.substr(40));
    EXPECT_EQ(enviado(), kPeticion + kNak);
    esperarRegistro(entera);
    esperarCopia(entera);

    const std::string otra = numerada("2");
    recibir(otra.substr(0, 40));
    plataforma.avanzar(500);
    recibir(otra.substr(40));
    EXPECT_EQ(enviado(), kNak + kNak);
    esperarRegistro(otra);
    esperarCopia(otra);
}

TEST_F(FCommConCopias, LetsTheTimeOutRunOnOverTheCopyAndRepeatsTheAcknowledge) {
    pedir();
    recibir("\r");
    recibir(numerada("1"));
    plataforma.avanzar(400);
    esperarCopia(numerada("1"));
    plataforma.avanzar(99);
    EXPECT_EQ(enviado(), "");
    plataforma.avanzar(1);
    EXPECT_EQ(enviado(), kAck);
}

TEST_F(FCommConCopias, RepeatsTheAcknowledgeAlsoAfterACopyThatTheLastLookFinds) {
    pedir();
    recibir("\r");
    recibir(numerada("1"));
    enviado();
    plataforma.puerto().evento = 3;
    recibir(numerada("1"));
    plataforma.puerto().evento = kComEvReceive;
    plataforma.avanzar(500);
    EXPECT_EQ(enviado(), "");
    plataforma.avanzar(500);
    EXPECT_EQ(enviado(), kAck);
    EXPECT_EQ(ordinales.size(), 1U);
}

TEST_F(FCommConCopias, AcknowledgesAfterACopyThatHadFirstComeDamaged) {
    pedir();
    recibir("\r");
    recibir(numerada("1"));
    recibir("copia mala\r");
    esperarCopia(numerada("1"));
    plataforma.avanzar(500);
    EXPECT_EQ(enviado(), kAck) << "a refusal would bring it once more";
}

TEST_F(FCommConCopias, SwallowsACopyOnlyOnce) {
    pedir();
    recibir("\r");
    recibir(numerada("1"));
    esperarCopia(numerada("1"));
    esperarRegistro(numerada("1"));
    esperarRegistro(numerada("1"));
}

TEST_F(FCommConCopias, TakesEqualRecordsWithoutANumberForRecords) {
    pedir();
    recibir("\r");
    recibir(numerada(""));
    esperarRegistro(numerada(""));
    recibir("\r");
    esperarRegistro(numerada("0"));
    esperarRegistro(numerada("0"));
}

TEST_F(FCommConCopias, TakesEqualRecordsForRecordsInEveryOtherCase) {
    pedir();
    recibir(numerada("1"));
    esperarRegistro(numerada("1"));  // nothing was refused
    recibir("ilegible\r");
    esperarRegistro(numerada("1"));  // a whole frame was refused: its NAK brought the first
    esperarRegistro(numerada("1"));
    recibir("ilegible\r");
    plataforma.avanzar(1000);  // repeated with nothing there
    esperarRegistro(numerada("1"));
    esperarRegistro(numerada("1"));
    recibir("\r");
    recibir(numerada("2"));
    recibir(numerada("3"));
    esperarRegistro(numerada("2"));  // not the last one accepted
}

TEST_F(FCommConCopias, ForgetsInTheNextCycleWhatItHasRefusedInThisOne) {
    pedir();
    recibir("\r");
    recibir(numerada("1"));
    enviado();
    pedir();
    esperarRegistro(numerada("1"));
    esperarRegistro(numerada("1"));
}

TEST_F(FCommConCopias, AcknowledgesTheExpectedCopyWithoutTellingOrCountingIt) {
    comm.CopiaEsperada(datos("1"));
    pedir();
    recibir(numerada("1"));
    EXPECT_EQ(enviado(), kAck);
    EXPECT_TRUE(ordinales.empty());
    plataforma.avanzar(500);
    EXPECT_EQ(enviado(), kAck) << "as after any record";
    esperarRegistro(numerada("2"));
    EXPECT_EQ(ordinales, std::vector<int32_t>{1});
    esperarRegistro(numerada("2"));
    plataforma.avanzar(1500);
    EXPECT_EQ(finales, (std::vector<Fin>{{2, kHaDejado}}));
}

TEST_F(FCommConCopias, FindsTheExpectedCopyAlsoBehindWhatIsNoRecord) {
    comm.CopiaEsperada(datos("1"));
    pedir();
    recibir("\r");
    recibir(numerada("1"));
    EXPECT_EQ(enviado(), kNak + kAck);
    EXPECT_TRUE(ordinales.empty());
    esperarCopia(numerada("1"));  // of the refused scrap
    esperarRegistro(numerada("2"));
}

TEST_F(FCommConCopias, ExpectsTheCopyOnlyAsTheFirstRecord) {
    comm.CopiaEsperada(datos("1"));
    pedir();
    esperarRegistro(numerada("2"));
    esperarRegistro(numerada("1"));
    comm.CopiaEsperada(datos("1"));
    pedir();
    recibir(numerada("1"));
    esperarRegistro(numerada("1"));
}

TEST_F(FCommConCopias, ExpectsNoCopyWithoutANumberNorAnEmptyOne) {
    comm.CopiaEsperada(datos(""));
    pedir();
    esperarRegistro(numerada(""));
    comm.CopiaEsperada("");
    pedir();
    esperarRegistro(numerada("1"));
}

TEST_F(FCommConCopias, ExpectsTheCopyInTheNextCycleAlone) {
    comm.CopiaEsperada(datos("1"));
    pedir();
    pedir();
    esperarRegistro(numerada("1"));

    comm.CopiaEsperada(datos("2"));
    plataforma.puerto().errorAlAbrir = "en uso";
    comm.Pedir(1, "9600,N,8,1");
    plataforma.puerto().errorAlAbrir.clear();
    pedir();
    esperarRegistro(numerada("2"));
}

TEST_F(FCommConCopias, ChangesNothingInTheCycleThatRunsWhenTheCopyIsNamed) {
    pedir();
    comm.CopiaEsperada(datos("1"));
    esperarRegistro(numerada("1"));
    pedir();
    recibir(numerada("1"));
    EXPECT_EQ(ordinales.size(), 1U);
}

}  // namespace
}  // namespace bn
