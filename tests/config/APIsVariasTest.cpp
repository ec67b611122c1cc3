// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "config/APIsVarias.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/PlataformaDePrueba.h"

namespace bn {
namespace {

TEST(APIsVarias, CarpetaEspecialGivesTheDocumentsFolder) {
    const prueba::CarpetaTemporal carpeta;
    PlataformaDePrueba plataforma(carpeta.ruta());
    plataforma.documentos = "/home/Begoña/Documentos";
    EXPECT_EQ(CarpetaEspecial(plataforma, 0, kCarpetaDocumentos), "/home/Begoña/Documentos");
    EXPECT_EQ(CarpetaEspecial(plataforma, 77, 5), "/home/Begoña/Documentos");
}

TEST(APIsVarias, CarpetaEspecialGivesNothingForANumberTheShellDoesNotKnow) {
    const prueba::CarpetaTemporal carpeta;
    PlataformaDePrueba plataforma(carpeta.ruta());
    plataforma.documentos = "/home/x";
    EXPECT_EQ(CarpetaEspecial(plataforma, 0, 4711), "");
    EXPECT_EQ(CarpetaEspecial(plataforma, 0, -1), "");
}

TEST(APIsVarias, CarpetaEspecialEndsAtTheFirstZero) {
    const prueba::CarpetaTemporal carpeta;
    PlataformaDePrueba plataforma(carpeta.ruta());
    plataforma.documentos = std::string("/home/x\0    ", 12);
    EXPECT_EQ(CarpetaEspecial(plataforma, 0, 5), "/home/x");
}

TEST(APIsVarias, AbrirDocumentoHandsTheShellsCodeBackAndShowsNothing) {
    const prueba::CarpetaTemporal carpeta;
    PlataformaDePrueba plataforma(carpeta.ruta());
    for (const int32_t codigo : {33, 42, 31, 2, 0}) {
        plataforma.respuestaAbrir = codigo;
        EXPECT_EQ(AbrirDocumento(plataforma, "/x/Báscula.xls"), codigo);
    }
    EXPECT_THAT(plataforma.abiertos, testing::SizeIs(5));
    EXPECT_THAT(plataforma.abiertos, testing::Each("/x/Báscula.xls"));
    EXPECT_THAT(plataforma.mensajes, testing::IsEmpty());
}

}  // namespace
}  // namespace bn
