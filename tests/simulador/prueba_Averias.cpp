// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "tools/simulador/Averias.h"

namespace bn::simulador {
namespace {

constexpr int kVeces = 500;

std::string todo(const Envio& envio) {
    std::string bytes;
    for (const Tramo& tramo : envio) bytes += tramo.bytes;
    return bytes;
}

AjustesAverias siempre(Averia averia) {
    AjustesAverias ajustes;
    ajustes.porMillon[static_cast<std::size_t>(averia)] = 1'000'000;
    return ajustes;
}

class AveriasDeUnaTrama : public ::testing::Test {
 protected:
    const Caracteres caracteres_{};
    const std::string trama_ =
        trama("1234BCD  0000001 00000002          00000003 0012.50 0030000", caracteres_);
    Averias averias_{1, {}};

    std::string averiada(Averia averia) {
        return todo(averias_.aplicar(averia, trama_, caracteres_));
    }
};

TEST_F(AveriasDeUnaTrama, NoFaultLeavesTheFrameAsItIs) {
    EXPECT_EQ(averiada(Averia::kNinguna), trama_);
}

TEST_F(AveriasDeUnaTrama, BadCheckChangesOnlyTheCheckCharacter) {
    for (int i = 0; i < kVeces; ++i) {
        std::string bytes = averiada(Averia::kControl);
        const std::size_t donde = trama_.size() - 3;
        ASSERT_EQ(bytes.size(), trama_.size());
        EXPECT_NE(bytes[donde], trama_[donde]);
        EXPECT_NE(bytes[donde], '\r');
        bytes[donde] = trama_[donde];
        EXPECT_EQ(bytes, trama_);
    }
}

TEST_F(AveriasDeUnaTrama, NoiseStandsBeforeTheWholeFrameAndIsNoFrameItself) {
    for (int i = 0; i < kVeces; ++i) {
        const std::string bytes = averiada(Averia::kRuido);
        ASSERT_GT(bytes.size(), trama_.size());
        EXPECT_EQ(bytes.substr(bytes.size() - trama_.size()), trama_);
        const std::string ruido = bytes.substr(0, bytes.size() - trama_.size());
        EXPECT_EQ(ruido.find_first_of("\x02\r"), std::string::npos);
    }
}

TEST_F(AveriasDeUnaTrama, CutFrameIsABeginningWithoutTrailer) {
    for (int i = 0; i < kVeces; ++i) {
        const std::string bytes = averiada(Averia::kCorte);
        EXPECT_GT(bytes.size(), 0U);
        EXPECT_LT(bytes.size(), trama_.size() - 2);
        EXPECT_EQ(bytes, trama_.substr(0, bytes.size()));
    }
}

TEST_F(AveriasDeUnaTrama, CarriageReturnTakesThePlaceOfADataCharacterOfTheFirstHalf) {
    for (int i = 0; i < kVeces; ++i) {
        const Envio envio = averias_.aplicar(Averia::kRetorno, trama_, caracteres_);
        ASSERT_EQ(envio.size(), 2U);
        EXPECT_EQ(envio[0].bytes.back(), '\r');
        EXPECT_GE(envio[0].bytes.size(), 2U);
        EXPECT_LE(envio[0].bytes.size(), 32U);
        EXPECT_GT(envio[1].pausa.count(), 0);
        EXPECT_EQ(todo(envio).size(), trama_.size());
    }
}

TEST_F(AveriasDeUnaTrama, EvenACounterFrameCanHoldACarriageReturn) {
    const std::string contador = trama("0000", caracteres_);
    for (int i = 0; i < kVeces; ++i) {
        const std::string bytes = todo(averias_.aplicar(Averia::kRetorno, contador, caracteres_));
        const std::size_t donde = bytes.find('\r');
        EXPECT_TRUE(donde == 1 || donde == 2) << donde;
    }
}

TEST_F(AveriasDeUnaTrama, WrongTrailerIsCarriageReturnThenLineFeed) {
    EXPECT_EQ(averiada(Averia::kCola), trama_.substr(0, trama_.size() - 2) + "\r\n");
}

TEST_F(AveriasDeUnaTrama, DrippingAndPausesLoseNoByte) {
    const Envio goteo = averias_.aplicar(Averia::kGoteo, trama_, caracteres_);
    EXPECT_EQ(goteo.size(), trama_.size());
    EXPECT_EQ(todo(goteo), trama_);
    for (int i = 0; i < kVeces; ++i) {
        const Envio pausa = averias_.aplicar(Averia::kPausa, trama_, caracteres_);
        EXPECT_EQ(todo(pausa), trama_);
        EXPECT_TRUE(std::any_of(pausa.begin(), pausa.end(),
                                [](const Tramo& tramo) { return tramo.pausa.count() == 300; }));
    }
}

TEST(Averias, RatesAreKept) {
    AjustesAverias ajustes;
    ajustes.porMillon[static_cast<std::size_t>(Averia::kRuido)] = 250'000;
    Averias averias(9, ajustes);
    int cuantas = 0;
    for (int i = 0; i < 10'000; ++i) cuantas += averias.sortear(0) == Averia::kRuido;
    EXPECT_NEAR(cuantas, 2500, 200);
}

TEST(Averias, RateZeroNeverComes) {
    Averias averias(9, {});
    for (int i = 0; i < 10'000; ++i) {
        EXPECT_EQ(averias.sortear(0), Averia::kNinguna);
        EXPECT_FALSE(averias.pierdeRespuesta(0));
    }
}

TEST(Averias, ARecordIsSparedOnceItHasHadTheMostInARow) {
    AjustesAverias ajustes = siempre(Averia::kControl);
    ajustes.porMillon[0] = 999'999;
    Averias averias(9, ajustes);
    EXPECT_EQ(averias.sortear(1), Averia::kControl);
    EXPECT_EQ(averias.sortear(2), Averia::kNinguna);
}

TEST(Averias, ARateOfOneHundredPerCentKnowsNoLimit) {
    Averias averias(9, siempre(Averia::kCola));
    EXPECT_EQ(averias.sortear(50), Averia::kCola);
}

}  // namespace
}  // namespace bn::simulador
