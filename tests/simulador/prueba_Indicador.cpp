// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "tools/simulador/Indicador.h"

namespace bn::simulador {
namespace {

using namespace std::chrono_literals;

const std::string kPeticion = "P";
const std::string kSi(1, kAck);
const std::string kNo(1, kNak);

class IndicadorSimulado : public ::testing::Test {
 protected:
    IndicadorSimulado() {
        ajustes_.pesadas = 3;
        ajustes_.caracteres.peticion = 'P';
        Pesadas mismas(1, Forma::kLarga);
        for (int i = 0; i < 12; ++i) pesadas_.push_back(trama(mismas.siguiente(), {}));
    }

    void crear() {
        indicador_.emplace(ajustes_, Pesadas(1, Forma::kLarga), Averias(1, averias_));
        indicador_->alSuceder([this](Suceso suceso, const std::string& datos) {
            if (suceso == Suceso::kReconocida) reconocidas_.push_back(trama(datos, {}));
        });
    }

    // The computer speaks; the answer is everything the indicator then sends.
    std::string decir(const std::string& bytes) {
        indicador_->oir(bytes, hora_);
        return enviado();
    }

    std::string enviado() {
        std::string bytes;
        if (const auto envio = indicador_->transmitir()) {
            for (const Tramo& tramo : *envio) bytes += tramo.bytes;
            indicador_->transmitido(hora_);
        }
        return bytes;
    }

    void pasar(std::chrono::milliseconds tiempo) {
        hora_ += tiempo;
        indicador_->tiempo(hora_);
    }

    void poner(Averia averia, uint32_t porMillon) {
        averias_.porMillon[static_cast<std::size_t>(averia)] = porMillon;
    }

    AjustesIndicador ajustes_;
    AjustesAverias averias_;
    std::optional<Indicador> indicador_;
    std::vector<std::string> pesadas_;
    std::vector<std::string> reconocidas_;
    Instante hora_ = 5s;
};

TEST_F(IndicadorSimulado, SaysNothingUntilItIsAsked) {
    crear();
    EXPECT_EQ(enviado(), "");
    EXPECT_EQ(decir("x" + kSi + kNo), "");
    EXPECT_EQ(decir(kPeticion), pesadas_[0]);
}

TEST_F(IndicadorSimulado, SendsEveryWeighingThenTheCounterThenRests) {
    crear();
    EXPECT_EQ(decir(kPeticion), pesadas_[0]);
    EXPECT_EQ(decir(kSi), pesadas_[1]);
    EXPECT_EQ(decir(kSi), pesadas_[2]);
    EXPECT_EQ(decir(kSi), trama("0003", {}));
    EXPECT_FALSE(indicador_->acabado());
    EXPECT_EQ(decir(kSi), "");
    EXPECT_TRUE(indicador_->acabado());
    EXPECT_EQ(reconocidas_, std::vector<std::string>(pesadas_.begin(), pesadas_.begin() + 3));
    EXPECT_EQ(indicador_->cuentas().descargas, 1);
}

TEST_F(IndicadorSimulado, AfterTheLastBatchOnlyTheCounterZeroIsLeft) {
    crear();
    decir(kPeticion + kSi);
    for (int i = 0; i < 4; ++i) decir(kSi);
    EXPECT_EQ(decir(kPeticion), trama("0000", {}));
}

TEST_F(IndicadorSimulado, EachRequestBringsABatchWhileThereAreAny) {
    ajustes_.pesadas = 1;
    ajustes_.tandas = 2;
    crear();
    EXPECT_EQ(decir(kPeticion), pesadas_[0]);
    EXPECT_EQ(decir(kSi), trama("0001", {}));
    decir(kSi);
    EXPECT_FALSE(indicador_->acabado());
    EXPECT_EQ(decir(kPeticion), pesadas_[1]);
    EXPECT_EQ(decir(kSi), trama("0001", {}));
    decir(kSi);
    EXPECT_TRUE(indicador_->acabado());
}

TEST_F(IndicadorSimulado, RefusedFrameIsSentAgainUntilItIsAcknowledged) {
    crear();
    decir(kPeticion);
    EXPECT_EQ(decir(kNo), pesadas_[0]);
    EXPECT_EQ(decir(kNo), pesadas_[0]);
    EXPECT_EQ(decir(kSi), pesadas_[1]);
    EXPECT_EQ(indicador_->cuentas().enviadas, 4);
    EXPECT_EQ(indicador_->cuentas().rechazadas, 2);
    EXPECT_EQ(indicador_->cuentas().reenviadas, 2);
    EXPECT_EQ(indicador_->cuentas().reconocidas, 1);
}

TEST_F(IndicadorSimulado, RefusedCounterIsSentAgain) {
    ajustes_.pesadas = 0;
    crear();
    EXPECT_EQ(decir(kPeticion), trama("0000", {}));
    EXPECT_EQ(decir(kNo), trama("0000", {}));
    EXPECT_EQ(decir(kSi), "");
    EXPECT_TRUE(indicador_->acabado());
}

TEST_F(IndicadorSimulado, AnswersThatComeBeforeTheFrameIsOutAreNotHeard) {
    crear();
    indicador_->oir(kPeticion, hora_);
    indicador_->oir(kSi, hora_);
    ASSERT_TRUE(indicador_->transmitir().has_value());
    indicador_->oir(kSi + kNo, hora_);
    indicador_->transmitido(hora_);
    EXPECT_EQ(enviado(), "");
    EXPECT_TRUE(reconocidas_.empty());
    EXPECT_EQ(decir(kSi + kSi), pesadas_[1]);
    EXPECT_EQ(reconocidas_.size(), 1U);
}

TEST_F(IndicadorSimulado, RequestInTheMiddleStartsAgainWithTheWeighingNotYetAcknowledged) {
    crear();
    decir(kPeticion);
    decir(kSi);
    EXPECT_EQ(decir(kPeticion), pesadas_[1]);
    EXPECT_EQ(decir(kSi), pesadas_[2]);
    EXPECT_EQ(decir(kSi), trama("0002", {}));
}

TEST_F(IndicadorSimulado, GivesUpWaitingAndKeepsTheWeighing) {
    ajustes_.caracteres.peticion = kAck;  // as usual: only time tells them apart
    crear();
    EXPECT_EQ(decir(kSi), pesadas_[0]);
    EXPECT_EQ(decir(kSi), pesadas_[1]);
    pasar(1999ms);
    EXPECT_TRUE(indicador_->plazo().has_value());
    pasar(1ms);
    EXPECT_FALSE(indicador_->plazo().has_value());
    EXPECT_EQ(decir(kSi), pesadas_[1]);
    EXPECT_EQ(decir(kSi), pesadas_[2]);
    EXPECT_EQ(reconocidas_.size(), 2U);
}

TEST_F(IndicadorSimulado, NeverGivesUpWhenToldSo) {
    ajustes_.espera = 0ms;
    crear();
    decir(kPeticion);
    EXPECT_FALSE(indicador_->plazo().has_value());
    pasar(1h);
    EXPECT_EQ(decir(kSi), pesadas_[1]);
}

TEST_F(IndicadorSimulado, WaitsForTheAcknowledgeOfTheCounterWhileTheComputerSaves) {
    ajustes_.caracteres.peticion = kAck;
    ajustes_.pesadas = 1;
    ajustes_.tandas = 2;
    crear();
    decir(kSi);
    EXPECT_EQ(decir(kSi), trama("0001", {}));
    pasar(1h);
    EXPECT_EQ(decir(kSi), "");
    EXPECT_EQ(indicador_->cuentas().descargas, 1);
    EXPECT_EQ(decir(kSi), pesadas_[1]);
}

TEST_F(IndicadorSimulado, CutFrameIsNotAcknowledgedByARepeatedAnswer) {
    ajustes_.caracteres.peticion = kAck;
    poner(Averia::kCorte, 999'999);
    crear();
    EXPECT_LT(decir(kSi).size(), pesadas_[0].size());
    EXPECT_LT(decir(kSi).size(), pesadas_[0].size());
    EXPECT_EQ(decir(kSi), pesadas_[0]);
    EXPECT_TRUE(reconocidas_.empty());
    EXPECT_EQ(indicador_->cuentas().averias[static_cast<std::size_t>(Averia::kCorte)], 2);
}

TEST_F(IndicadorSimulado, LostAnswersAreNotHeardAtMostTwiceInARow) {
    poner(Averia::kRespuesta, 999'999);
    crear();
    decir(kPeticion);
    EXPECT_EQ(decir(kSi), "");
    EXPECT_EQ(decir(kSi), "");
    EXPECT_EQ(decir(kSi), pesadas_[1]);
    EXPECT_EQ(indicador_->cuentas().averias[static_cast<std::size_t>(Averia::kRespuesta)], 2);
}

TEST_F(IndicadorSimulado, AcknowledgeOfTheCounterIsNeverLost) {
    ajustes_.pesadas = 0;
    poner(Averia::kRespuesta, 1'000'000);
    crear();
    decir(kPeticion);
    decir(kSi);
    EXPECT_TRUE(indicador_->acabado());
}

TEST_F(IndicadorSimulado, FallsSilentAfterTheWeighingToldAndWakesUp) {
    ajustes_.silencioTras = 1;
    ajustes_.silencio = 700ms;
    crear();
    decir(kPeticion);
    EXPECT_EQ(decir(kSi), "");
    EXPECT_EQ(decir(kSi + kPeticion), "");
    pasar(700ms);
    EXPECT_EQ(decir(kPeticion), pesadas_[1]);
    EXPECT_EQ(reconocidas_.size(), 1U);
}

TEST_F(IndicadorSimulado, SilenceWithoutEndHasNone) {
    ajustes_.silencioTras = 2;
    crear();
    decir(kPeticion);
    decir(kSi);
    decir(kSi);
    pasar(24h);
    EXPECT_EQ(decir(kPeticion), "");
}

TEST_F(IndicadorSimulado, GoesAwayAfterTheWeighingToldAndComesBackWithTheRest) {
    ajustes_.desapareceTras = 2;
    crear();
    decir(kPeticion);
    decir(kSi);
    EXPECT_FALSE(indicador_->desaparecido());
    EXPECT_EQ(decir(kSi), "");
    EXPECT_TRUE(indicador_->desaparecido());
    EXPECT_EQ(decir(kPeticion), "");
    indicador_->volver();
    EXPECT_FALSE(indicador_->desaparecido());
    EXPECT_EQ(decir(kPeticion), pesadas_[2]);
}

}  // namespace
}  // namespace bn::simulador
