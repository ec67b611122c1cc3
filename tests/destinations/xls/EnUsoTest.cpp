// SPDX-License-Identifier: MIT
// Workbooks that somebody else has open.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "destinations/excel/ObjectModel.h"
#include "destinations/xls/EnUso.h"
#include "destinations/xls/MotorInterno.h"
#include "platform/Ficheros.h"
#include "tests/soporte/CarpetaTemporal.h"

namespace bn::xls {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

// What Excel leaves: the name in one byte each, padded, then in two bytes each, padded.
std::string senalDeExcel(const std::string& cp1252, const std::u16string& ancho) {
    std::string bytes(165, ' ');
    bytes[0] = static_cast<char>(cp1252.size());
    bytes.replace(1, cp1252.size(), cp1252);
    bytes[55] = static_cast<char>(ancho.size());
    bytes[56] = 0;
    for (size_t i = 0; i < ancho.size(); ++i) {
        bytes[57 + 2 * i] = static_cast<char>(ancho[i] & 0xFF);
        bytes[58 + 2 * i] = static_cast<char>(ancho[i] >> 8);
    }
    return bytes;
}

TEST(OcupanteOdf, IsNamedByItsFullNameElseByItsLogin) {
    const Ocupante entero =
        ocupanteOdf("Ana Pérez,ana,pc-oficina,22.11.2026 10:00,file:///home/ana/;");
    EXPECT_EQ(entero.usuario, "Ana Pérez");
    EXPECT_EQ(entero.equipo, "pc-oficina");
    EXPECT_EQ(ocupanteOdf(",ana,pc,22.11.2026 10:00,file:///;").usuario, "ana");
}

TEST(OcupanteOdf, MayHaveAnySignInItsName) {
    const Ocupante raro = ocupanteOdf("P\\, \\;rez\\\\,login,p\\,c,f,u;otra,cosa,mas;");
    EXPECT_EQ(raro.usuario, "P, ;rez\\");
    EXPECT_EQ(raro.equipo, "p,c");
}

TEST(OcupanteOdf, IsUnknownWhenTheFileIsCutShort) {
    for (const std::string contenido : {"", ";", "Ana", "\\"}) {
        EXPECT_EQ(ocupanteOdf(contenido).usuario, "") << contenido;
        EXPECT_EQ(ocupanteOdf(contenido).equipo, "") << contenido;
    }
    EXPECT_EQ(ocupanteOdf("Ana,ana").equipo, "");
}

TEST(OcupanteExcel, IsNamedByTheWideNameElseByTheNarrowOne) {
    EXPECT_EQ(ocupanteExcel(senalDeExcel("Ana", u"Ána Ñ")).usuario, "Ána Ñ");
    EXPECT_EQ(ocupanteExcel(senalDeExcel("Mu\xF1oz", u"")).usuario, "Muñoz");
    EXPECT_EQ(ocupanteExcel(senalDeExcel("Ana", u"x").substr(0, 54)).usuario, "Ana");
    EXPECT_EQ(ocupanteExcel("\x09"
                            "Ana")
                  .usuario,
              "Ana");
    EXPECT_EQ(ocupanteExcel("").usuario, "");
}

class LibroEnUso : public testing::Test {
 protected:
    void SetUp() override {
        equipo.nombre = "vm";
        equipo.enMarcha = [this](const std::string& programa) {
            preguntados.push_back(programa);
            return enMarcha;
        };
        equipo.tenencia = [this](const std::filesystem::path& fichero) {
            return fichero == libro ? delLibro : deLaSenal;
        };
        prueba::escribirFichero(libro, "libro");
    }
    void senalar(const std::string& nombre, const std::string& contenido) {
        prueba::escribirFichero(carpeta / nombre, contenido);
    }
    std::string aviso() const { return avisoDeEnUso(discoDelSistema(), libro, equipo); }

    prueba::CarpetaTemporal carpeta;
    std::filesystem::path libro = carpeta / "Pesadas.xls";
    Equipo equipo;
    bool enMarcha = false;
    std::vector<std::string> preguntados;
    Tenencia delLibro = Tenencia::kNoSeSabe;
    Tenencia deLaSenal = Tenencia::kNoSeSabe;
};

TEST_F(LibroEnUso, ByNobodyGivesNoMessage) {
    EXPECT_EQ(aviso(), "");
    senalar(".~lock.Otro.xls#", ",ana,pc,f,u;");
    senalar("~$Otro.xls", senalDeExcel("Ana", u"Ana"));
    EXPECT_EQ(aviso(), "") << "the signs beside it are another workbook's";
}

TEST_F(LibroEnUso, OnAnotherComputerIsToldWithItsUserAndTheSignToRemove) {
    senalar(".~lock.Pesadas.xls#", "Ana Pérez,ana,pc-oficina,22.11.2026 10:00,file:///;");
    EXPECT_THAT(aviso(), AllOf(HasSubstr(ficheros::aTexto(libro)), HasSubstr("Ana Pérez"),
                               HasSubstr("pc-oficina"), HasSubstr(".~lock.Pesadas.xls#")));
    EXPECT_TRUE(preguntados.empty()) << "what runs here says nothing of there";
}

TEST_F(LibroEnUso, OnThisComputerCountsWhileTheProgramRuns) {
    for (const std::string contenido : {",root,VM,f,u;", ",root,vm.local,f,u;", ""}) {
        senalar(".~lock.Pesadas.xls#", contenido);
        enMarcha = true;
        EXPECT_THAT(aviso(), HasSubstr("está en uso")) << contenido;
        EXPECT_EQ(preguntados.back(), "soffice.bin");
        enMarcha = false;
        EXPECT_EQ(aviso(), "") << "left behind by one that was killed: " << contenido;
    }
}

TEST_F(LibroEnUso, ByExcelCountsUnlessItsSignIsSeenToBeNobodys) {
    senalar("~$Pesadas.xls", senalDeExcel("Ana", u"Ana Peña"));
    for (const Tenencia tenencia : {Tenencia::kTomado, Tenencia::kNoSeSabe}) {
        deLaSenal = tenencia;
        EXPECT_THAT(aviso(), AllOf(HasSubstr("Ana Peña"), HasSubstr("~$Pesadas.xls")));
    }
    deLaSenal = Tenencia::kLibre;
    EXPECT_EQ(aviso(), "");
}

TEST_F(LibroEnUso, ByALockNamesNobody) {
    delLibro = Tenencia::kTomado;
    EXPECT_THAT(aviso(), AllOf(HasSubstr("otro programa"), Not(HasSubstr("borre"))));
    delLibro = Tenencia::kLibre;
    EXPECT_EQ(aviso(), "");
}

TEST_F(LibroEnUso, IsToldThroughALinkAsWell) {
    const std::filesystem::path enlace = carpeta / "enlace.xls";
    std::error_code error;
    std::filesystem::create_symlink(libro, enlace, error);
    if (error) GTEST_SKIP() << "no links here: " << error.message();
    senalar(".~lock.Pesadas.xls#", ",ana,pc,f,u;");
    EXPECT_THAT(avisoDeEnUso(discoDelSistema(), enlace, equipo), HasSubstr("ana"));
}

TEST_F(LibroEnUso, IsReadByTheEngineButNotWritten) {
    const auto aplicacion = nuevaAplicacionInterna([] { return 46000.0; }, discoDelSistema());
    const std::string ruta = ficheros::aTexto(libro);
    aplicacion->Workbooks()->Add()->SaveAs(ruta, 1);
    const std::string antes = prueba::leerFichero(libro);
    const auto abierto = aplicacion->Workbooks()->Open(ruta);
    abierto->exigirLibre();
    senalar(".~lock.Pesadas.xls#", "Ana,ana,otro-equipo,f,u;");
    try {
        abierto->exigirLibre();
        FAIL() << "somebody else has it";
    } catch (const excel::ErrorDeApertura& error) {
        EXPECT_EQ(error.clase(), excel::ErrorDeApertura::Clase::kSano);
        EXPECT_THAT(error.what(), AllOf(HasSubstr(ruta), HasSubstr("Ana")));
    }
    EXPECT_EQ(aplicacion->Workbooks()->Open(ruta)->Worksheets()->Count(), 1) << "reading goes on";
    abierto->Worksheets()->Item(1)->Cells()->Item(1, 1)->FormulaR1C1(1.0);
    EXPECT_THROW(abierto->SaveAs(ruta, 1), excel::ErrorExcel);
    EXPECT_EQ(prueba::leerFichero(libro), antes);
    std::filesystem::remove(carpeta / ".~lock.Pesadas.xls#");
    abierto->SaveAs(ruta, 1);
    EXPECT_NE(prueba::leerFichero(libro), antes);
}

}  // namespace
}  // namespace bn::xls
