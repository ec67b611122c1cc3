// SPDX-License-Identifier: MIT
// Pending weighings with both destinations on the simulated disk.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "platform/Ficheros.h"
#include "tests/download/CicloDePrueba.h"

namespace bn {
namespace {

using prueba::Ciclo;
using prueba::Vida;
using testing::Contains;
using testing::HasSubstr;
using Causa = ErrorFichero::Causa;
using Tipo = Operacion::Tipo;

TEST(PendientesEnDisco, ATextFileThatItsReaderHasTakenAwayIsBegunAnewAndTheWindowSaysSo) {
    Ciclo ciclo;
    ciclo.indicador.pesar(prueba::registro(1, "0100.00", ""));
    ciclo.indicador.pesar(prueba::registro(2, "0200.00", ""));
    int volcados = 0;
    ciclo.disco.alOperar = [&](const Operacion& una) {  // written and flushed, but not noted
        if (una.tipo == Tipo::kVolcar && una.ruta == Ciclo::kTexto) ++volcados;
        if (volcados == 1 && una.tipo == Tipo::kAbrir && una.ruta.extension() == ".nota") {
            ciclo.disco.morirEn(una.numero);
        }
    };
    EXPECT_FALSE(ciclo.vivir([&](Vida& vida) { vida.descargar(ciclo.indicador); }));
    ciclo.disco.alOperar = nullptr;
    ASSERT_EQ(ciclo.lineas().size(), 2U);
    ciclo.disco.borrar(Ciclo::kTexto);
    ciclo.vivir([&](Vida& vida) {
        EXPECT_TRUE(vida.des->guardarPendientes());
        EXPECT_THAT(vida.des->avisos(), Contains(HasSubstr("se ha retirado")));
    });
    EXPECT_EQ(ciclo.lineas().size(), 2U);
    ciclo.recuperar();
    EXPECT_EQ(ciclo.comprobar(), "");
}

TEST(PendientesEnDisco, ADamagedWorkbookIsReplacedAndKeptAndTold) {
    Ciclo ciclo;
    ciclo.disco.poner(Ciclo::kLibro, "esto no es un libro");
    ciclo.pesarUnas();
    ciclo.vivir([&](Vida& vida) {
        vida.descargar(ciclo.indicador);
        EXPECT_EQ(vida.des->Estado(), kTerminada);
        EXPECT_THAT(vida.des->avisos(), Contains(HasSubstr("se conserva como")));
    });
    EXPECT_EQ(ciclo.filas().textos.size(), 7U);
    const auto nombres = ciclo.disco.nombres(Ciclo::kLibro.parent_path());
    ASSERT_EQ(nombres.size(), 2U);
    EXPECT_EQ(ciclo.disco.contenido(Ciclo::kLibro.parent_path() / nombres.at(1)),
              "esto no es un libro");
}

TEST(PendientesEnDisco, ASoundWorkbookThatCannotBeOpenedIsNotReplaced) {
    Ciclo ciclo;
    ciclo.pesarUnas();
    ciclo.vivir([&](Vida& vida) { vida.descargar(ciclo.indicador); });
    const std::string antes = ciclo.disco.contenido(Ciclo::kLibro);
    ciclo.disco.poner(Ciclo::kLibro.parent_path() / ".~lock.Pesadas.xls#",
                      ",Ana,otro-equipo,01.01.2025 10:00,;");
    ciclo.pesarUnas();
    ciclo.vivir([&](Vida& vida) {
        EXPECT_ANY_THROW(vida.descargar(ciclo.indicador));
        vida.relevar();
        EXPECT_FALSE(vida.des->guardarPendientes());
        EXPECT_THAT(vida.des->motivoPendientes(), HasSubstr("Ana"));
        EXPECT_EQ(vida.des->numPendientes(), 7);
    });
    EXPECT_EQ(ciclo.disco.contenido(Ciclo::kLibro), antes);
    ciclo.disco.borrar(Ciclo::kLibro.parent_path() / ".~lock.Pesadas.xls#");
    ciclo.indicador.colgar();
    ciclo.recuperar();
    EXPECT_EQ(ciclo.comprobar(), "");
}

TEST(PendientesEnDisco, AFolderInPlaceOfTheTextFileWaitsUntilItIsGone) {
    Ciclo ciclo;
    ciclo.disco.crearCarpeta(Ciclo::kTexto);
    ciclo.pesarUnas();
    ciclo.vivir([&](Vida& vida) {
        EXPECT_THROW(vida.descargar(ciclo.indicador), ErrorFichero);
        vida.relevar();
        EXPECT_FALSE(vida.des->guardarPendientes());
        EXPECT_THAT(vida.des->motivoPendientes(), HasSubstr("Cambie el nombre a esa carpeta"));
        vida.cfg->ArchivoTexto("/textos/Otro.txt");
        EXPECT_TRUE(vida.des->guardarPendientes());
    });
    EXPECT_EQ(ciclo.filas().textos.size(), 7U);
}

TEST(PendientesEnDisco, ANoteThatCannotBeReadForAMomentIsNotWrittenOver) {
    Ciclo ciclo;
    ciclo.pesarUnas();
    ciclo.disco.fallar(Causa::kSinPermiso, [](const Operacion& una) {
        return una.tipo == Tipo::kNuevo && una.ruta.parent_path() == Ciclo::kLibro.parent_path();
    });
    ciclo.vivir([&](Vida& vida) { EXPECT_ANY_THROW(vida.descargar(ciclo.indicador)); });
    ASSERT_EQ(ciclo.lineas().size(), 7U);
    ciclo.disco.fallar(
        Causa::kAveria,
        [](const Operacion& una) {
            return una.tipo == Tipo::kAbrir && una.ruta.filename() == "bnGuardo.nota";
        },
        2);  // when the program starts, and when it looks again
    ciclo.vivir([&](Vida& vida) {
        EXPECT_EQ(vida.des->numPendientes(), 1) << "at least";
        EXPECT_THAT(vida.des->motivoPendientes(),
                    HasSubstr("No se puede trabajar con los ficheros del programa"));
        vida.cfg->ArchivoTexto("/textos/Otro.txt");
        vida.des->guardarPendientes();
        EXPECT_TRUE(vida.des->guardarPendientes());
        vida.cfg->ArchivoTexto(ficheros::aTexto(Ciclo::kTexto));
    });
    EXPECT_FALSE(ciclo.disco.existe("/textos/Otro.txt")) << "they had arrived in the first one";
    ciclo.recuperar();
    EXPECT_EQ(ciclo.comprobar(), "");
}

TEST(PendientesEnDisco, ABatchThatCannotBeReadIsWaitedForByThoseBehindIt) {
    Ciclo ciclo;
    ciclo.vivir([&](Vida& vida) {
        vida.cfg->UsoExcel(false);
        vida.cfg->UsoTexto(false);
        for (const int albaran : {1, 2}) {
            ciclo.indicador.pesar(prueba::registro(albaran, "0100.00", ""));
            vida.descargar(ciclo.indicador);
        }
        vida.cfg->UsoTexto(true);
        vida.cfg->ArchivoTexto(ficheros::aTexto(Ciclo::kTexto));
        ciclo.disco.fallar(
            Causa::kAveria,
            [](const Operacion& una) { return una.ruta.filename() == "bnGuardo-000001.txt"; },
            DiscoSimulado::kSiempre);
        EXPECT_FALSE(vida.des->guardarPendientes());
        EXPECT_EQ(ciclo.lineas().size(), 0U) << "weighings arrive in their order";
        EXPECT_EQ(vida.des->numPendientes(), 2);
        EXPECT_THAT(vida.des->motivoPendientes(), HasSubstr("bnGuardo-000001.txt"));
        ciclo.disco.sanar();
        EXPECT_TRUE(vida.des->guardarPendientes());
        EXPECT_EQ(ciclo.lineas().size(), 2U);
    });
}

TEST(PendientesEnDisco, TheLastRecordWhoseAcknowledgeWasNotHeardStandsOnce) {
    for (const bool conFinal : {false, true}) {
        Ciclo ciclo;
        for (int albaran = 1; albaran <= 3; ++albaran) {
            ciclo.indicador.pesar(prueba::registro(albaran, "0100.00", ""));
        }
        ciclo.indicador.cortarTras(2);  // the second one's acknowledge is lost
        ciclo.vivir([&](Vida& vida) {
            vida.descargar(ciclo.indicador);
            if (conFinal) vida.plataforma.avanzar(600 * 4);
        });
        EXPECT_EQ(ciclo.indicador.reconocidas(), 1U);
        ciclo.vivir([&](Vida& vida) {  // a download that receives nothing hands it on
            EXPECT_TRUE(vida.des->guardarPendientes());
            vida.des->iniciarProceso();
            vida.plataforma.avanzar(600 * 4);
        });
        EXPECT_EQ(ciclo.lineas().size(), 2U);
        ciclo.recuperar();
        EXPECT_EQ(ciclo.comprobar(), "");
    }
}

TEST(PendientesEnDisco, AProgramsFolderThatIsFullStartsNoDownloadAndSaysWhy) {
    Ciclo ciclo;
    ciclo.disco.fallar(
        Causa::kLleno,
        [](const Operacion& una) {
            return una.escribe() && una.ruta.parent_path() == Ciclo::kPrograma;
        },
        DiscoSimulado::kSiempre);
    ciclo.vivir([&](Vida& vida) {
        EXPECT_FALSE(vida.descargar(ciclo.indicador));
        EXPECT_EQ(vida.des->Estado(), kEnReposo);
        EXPECT_THAT(vida.des->avisos(), Contains(HasSubstr("el disco está lleno")));
        EXPECT_TRUE(vida.des->hayFallo());
        ciclo.disco.sanar();
        EXPECT_TRUE(vida.descargar(ciclo.indicador));
        EXPECT_FALSE(vida.des->hayFallo());
    });
}

TEST(PendientesEnDisco, AFolderThatCannotBeSeenAnswersThatSomeMayWait) {
    Ciclo ciclo;
    ciclo.disco.fallar(Causa::kAveria, Tipo::kListar, DiscoSimulado::kSiempre);
    ciclo.vivir([&](Vida& vida) {
        EXPECT_FALSE(vida.des->guardarPendientes());
        EXPECT_THAT(vida.des->avisos(),
                    Contains(HasSubstr("No se puede trabajar con los ficheros del programa")));
        ciclo.disco.sanar();
        EXPECT_TRUE(vida.des->guardarPendientes());
    });
}

}  // namespace
}  // namespace bn
