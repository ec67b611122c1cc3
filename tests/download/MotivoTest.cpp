// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "destinations/excel/ObjectModel.h"
#include "download/Motivo.h"
#include "download/SalidaHoja.h"
#include "platform/ErrorFichero.h"

namespace bn {
namespace {

using Causa = ErrorFichero::Causa;
using testing::HasSubstr;
using testing::Not;

TEST(Motivo, OfAFileNamesItTheCauseAndWhatToDo) {
    std::set<std::string> consejos;
    for (const Causa causa :
         {Causa::kNoExiste, Causa::kSinPermiso, Causa::kLleno, Causa::kEnUso, Causa::kEsCarpeta,
          Causa::kSoloLectura, Causa::kAveria, Causa::kOtra}) {
        const std::string texto =
            motivo::deFallo(Destino::kTexto, ErrorFichero("D:\\p.txt", "la causa", causa));
        EXPECT_THAT(texto, HasSubstr("fichero de texto"));
        EXPECT_THAT(texto, HasSubstr("D:\\p.txt"));
        EXPECT_THAT(texto, HasSubstr("la causa"));
        EXPECT_THAT(texto, HasSubstr("Se guardarán solas."));
        EXPECT_THAT(texto, Not(HasSubstr("..")));
        consejos.insert(texto);
    }
    EXPECT_EQ(consejos.size(), 8U) << "each cause has its own advice";
}

TEST(Motivo, OfAFullSheetSaysToBeginAnother) {
    EXPECT_THAT(motivo::deFallo(Destino::kHoja, HojaLlena("La hoja está llena")),
                HasSubstr("La hoja está llena. Empiece otra hoja u otro libro. "));
}

TEST(Motivo, OfAWorkbookKeepsTheApplicationsWordsAndEndsTheirSentence) {
    EXPECT_THAT(motivo::deFallo(Destino::kHoja, excel::ErrorExcel("hoja protegida \n")),
                HasSubstr("hoja de cálculo. hoja protegida. Compruebe el libro"));
    EXPECT_THAT(motivo::deFallo(Destino::kHoja, excel::ErrorExcel("")), HasSubstr("Compruebe"));
}

TEST(Motivo, OfADestinationSwitchedOffSaysWhichToTick) {
    EXPECT_THAT(motivo::deDesmarcado(Destino::kHoja), HasSubstr("«Hoja Excel»"));
    EXPECT_THAT(motivo::deDesmarcado(Destino::kTexto), HasSubstr("«Texto plano»"));
    EXPECT_THAT(motivo::deNingunDestino(), HasSubstr("marque"));
}

TEST(Motivo, OfAStandstillTellsTheCause) {
    EXPECT_THAT(motivo::deAtasco("el disco está lleno"), HasSubstr("el disco está lleno."));
    EXPECT_THAT(motivo::deFicherosPropios("error de lectura"), HasSubstr("error de lectura."));
}

}  // namespace
}  // namespace bn
