// SPDX-License-Identifier: MIT
// A simulated disk is worth what its power cuts are: every state a file system allows, and no
// other.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "platform/Ficheros.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/DiscoSimulado.h"
#include "tests/soporte/ErrorFicheroDe.h"
#include "tests/soporte/PlataformaDePrueba.h"

namespace bn {
namespace {

using prueba::causaDe;
using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAre;
using Causa = ErrorFichero::Causa;
using Tipo = Operacion::Tipo;

const std::filesystem::path kCarpeta = "/c";
const std::filesystem::path kRuta = "/c/a";
const std::filesystem::path kOtra = "/c/b";

/// What the folder holds, as one text: "a=..., b=...".
std::string estado(const DiscoSimulado& disco) {
    std::string texto;
    for (const std::string& nombre : disco.nombres(kCarpeta)) {
        std::string contenido = disco.contenido(kCarpeta / nombre);
        for (char& c : contenido) c = c == '\0' ? '0' : c;
        texto += (texto.empty() ? "" : ", ") + nombre + "=" + contenido;
    }
    return texto;
}

/// Every state that power cuts leave behind some actions.
template <class Accion>
std::set<std::string> estados(SistemaDeFicheros sistema, Accion accion) {
    std::set<std::string> vistos;
    for (std::uint64_t semilla = 0; semilla < 2000; ++semilla) {
        DiscoSimulado disco(sistema);
        disco.crearCarpeta(kCarpeta);
        accion(disco);
        disco.cortarCorriente(semilla);
        vistos.insert(estado(disco));
    }
    return vistos;
}

void escribir(DiscoSimulado& disco, const std::filesystem::path& ruta, const std::string& bytes) {
    EXPECT_EQ(disco.abrir(ruta, Disco::Modo::kAnadir)->anadir(bytes), bytes.size());
}

void sobrescribir(DiscoSimulado& disco, std::uint64_t desde, const std::string& bytes) {
    EXPECT_EQ(disco.abrir(kRuta, Disco::Modo::kEscribir)->escribir(desde, bytes), bytes.size());
}

TEST(DiscoSimulado, WhatWasFlushedSurvivesEveryPowerCutWhole) {
    for (const auto sistema :
         {SistemaDeFicheros::kExt4, SistemaDeFicheros::kNtfs, SistemaDeFicheros::kSinOrden}) {
        EXPECT_THAT(estados(sistema,
                            [](DiscoSimulado& disco) {
                                ficheros::crearVacio(disco, kRuta);
                                ficheros::anadir(disco, kRuta, "uno");
                                ficheros::anadir(disco, kRuta, "dos");
                                ficheros::reemplazar(disco, kOtra, "viejo");
                                ficheros::reemplazar(disco, kOtra, "nuevo");
                                EXPECT_TRUE(disco.todoVolcado());
                            }),
                    ElementsAre("a=unodos, b=nuevo"));
    }
}

TEST(DiscoSimulado, UnflushedBytesAreKeptDroppedOrTorn) {
    EXPECT_THAT(estados(SistemaDeFicheros::kExt4,
                        [](DiscoSimulado& disco) {
                            disco.poner(kRuta, "a");
                            escribir(disco, kRuta, "bcd");
                            EXPECT_FALSE(disco.todoVolcado());
                        }),
                UnorderedElementsAre("a=a", "a=ab", "a=abc", "a=abcd"));
}

TEST(DiscoSimulado, WithOrderedDataNoLaterAppendSurvivesWithoutTheEarlierOnes) {
    EXPECT_THAT(estados(SistemaDeFicheros::kExt4,
                        [](DiscoSimulado& disco) {
                            disco.poner(kRuta, "");
                            escribir(disco, kRuta, "bc");
                            escribir(disco, kRuta, "de");
                        }),
                UnorderedElementsAre("a=", "a=b", "a=bc", "a=bcd", "a=bcde"));
}

TEST(DiscoSimulado, AFileOfNtfsMayHaveGrownWithoutItsBytes) {
    EXPECT_THAT(estados(SistemaDeFicheros::kNtfs,
                        [](DiscoSimulado& disco) {
                            disco.poner(kRuta, "a");
                            escribir(disco, kRuta, "bc");
                        }),
                UnorderedElementsAre("a=a", "a=a00", "a=ab0", "a=abc"));
}

TEST(DiscoSimulado, BytesWrittenOverOldOnesSurviveInAnyOrder) {
    const auto vistos = estados(SistemaDeFicheros::kExt4, [](DiscoSimulado& disco) {
        disco.poner(kRuta, "....");
        sobrescribir(disco, 0, "12");
        sobrescribir(disco, 2, "34");
    });
    EXPECT_THAT(vistos, UnorderedElementsAre("a=....", "a=1...", "a=12..", "a=..3.", "a=1.3.",
                                             "a=123.", "a=..34", "a=1.34", "a=1234"));
}

TEST(DiscoSimulado, WhereNothingIsPromisedAnyPartMayBeMissing) {
    const auto vistos = estados(SistemaDeFicheros::kSinOrden, [](DiscoSimulado& disco) {
        disco.poner(kRuta, "");
        escribir(disco, kRuta, "bcd");
    });
    EXPECT_THAT(vistos, AllOf(Contains("a="), Contains("a=b"), Contains("a=000"), Contains("a=00d"),
                              Contains("a=b0d"), Contains("a=bcd")));
}

TEST(DiscoSimulado, ACutMayHaveHappenedOrNot) {
    for (const auto sistema :
         {SistemaDeFicheros::kExt4, SistemaDeFicheros::kNtfs, SistemaDeFicheros::kSinOrden}) {
        EXPECT_THAT(estados(sistema,
                            [](DiscoSimulado& disco) {
                                disco.poner(kRuta, "abc");
                                disco.abrir(kRuta, Disco::Modo::kEscribir)->cortar(1);
                            }),
                    UnorderedElementsAre("a=a", "a=abc"));
    }
}

TEST(DiscoSimulado, NamesLastOnlyWhenTheirFolderWasFlushed) {
    EXPECT_THAT(estados(SistemaDeFicheros::kExt4,
                        [](DiscoSimulado& disco) {
                            disco.nuevo(kRuta)->sincronizar();
                            disco.renombrar(kRuta, kOtra);
                        }),
                UnorderedElementsAre("", "a=", "b="));
    EXPECT_THAT(estados(SistemaDeFicheros::kExt4,
                        [](DiscoSimulado& disco) {
                            disco.poner(kRuta, "x");
                            disco.borrar(kRuta);
                        }),
                UnorderedElementsAre("", "a=x"));
    EXPECT_THAT(estados(SistemaDeFicheros::kExt4,
                        [](DiscoSimulado& disco) {
                            disco.poner(kRuta, "x");
                            disco.borrar(kRuta);
                            disco.sincronizarCarpeta(kCarpeta);
                        }),
                ElementsAre(""));
}

TEST(DiscoSimulado, AReplacementWithoutFlushingTheFileMayLeaveItEmpty) {
    const auto vistos = estados(SistemaDeFicheros::kExt4, [](DiscoSimulado& disco) {
        disco.poner(kRuta, "old");
        disco.nuevo(kOtra)->escribir(0, "new");
        disco.renombrar(kOtra, kRuta);
        disco.sincronizarCarpeta(kCarpeta);
    });
    EXPECT_THAT(vistos, UnorderedElementsAre("a=", "a=n", "a=ne", "a=new"));
}

TEST(DiscoSimulado, NamesKeepTheirOrderUnlessNothingIsPromised) {
    const auto accion = [](DiscoSimulado& disco) {
        disco.poner(kRuta, "1");
        disco.poner(kOtra, "2");
        disco.renombrar(kRuta, "/c/x");
        disco.renombrar(kOtra, "/c/y");
    };
    EXPECT_THAT(estados(SistemaDeFicheros::kNtfs, accion),
                UnorderedElementsAre("a=1, b=2", "b=2, x=1", "x=1, y=2"));
    EXPECT_THAT(estados(SistemaDeFicheros::kSinOrden, accion),
                UnorderedElementsAre("a=1, b=2", "b=2, x=1", "a=1, y=2", "x=1, y=2"));
}

TEST(DiscoSimulado, FlushingAFolderTakesWithItWhatItsNamesRestOn) {
    EXPECT_THAT(estados(SistemaDeFicheros::kSinOrden,
                        [](DiscoSimulado& disco) {
                            disco.crearCarpeta("/d");
                            disco.nuevo("/d/x")->sincronizar();
                            disco.nuevo("/d/y")->sincronizar();
                            disco.renombrar("/d/x", kRuta);
                            disco.sincronizarCarpeta(kCarpeta);
                        }),
                ElementsAre("a="));
}

TEST(DiscoSimulado, TheSameSeedLeavesTheSameState) {
    const auto resto = [](std::uint64_t semilla) {
        DiscoSimulado disco(SistemaDeFicheros::kSinOrden);
        disco.poner(kRuta, std::string(100, '.'));
        sobrescribir(disco, 10, std::string(50, 'x'));
        ficheros::reemplazar(disco, kOtra, "y");
        disco.borrar(kOtra);
        disco.cortarCorriente(semilla);
        return estado(disco);
    };
    for (std::uint64_t semilla = 0; semilla < 20; ++semilla) {
        EXPECT_EQ(resto(semilla), resto(semilla));
    }
}

TEST(DiscoSimulado, AKilledProcessLeavesEverythingAsItWasSeen) {
    DiscoSimulado disco;
    disco.poner(kRuta, "a");
    escribir(disco, kRuta, "b");
    disco.morir();
    EXPECT_FALSE(disco.vivo());
    EXPECT_EQ(disco.contenido(kRuta), "ab");
    EXPECT_THROW(ficheros::leer(disco, kRuta), MuerteSubita);
    EXPECT_THROW(ficheros::existe(disco, kRuta), MuerteSubita);
    EXPECT_THROW(ficheros::anadir(disco, kRuta, "c"), MuerteSubita);
    EXPECT_THROW(disco.esperar(std::chrono::milliseconds(1)), MuerteSubita);
    const auto proceso = disco.proceso();
    disco.revivir();
    EXPECT_NE(disco.proceso(), proceso);
    EXPECT_EQ(ficheros::leer(disco, kRuta), "ab");
}

TEST(DiscoSimulado, FilesOpenWhenTheProcessDiedStayDead) {
    DiscoSimulado disco;
    disco.crearCarpeta(kCarpeta);
    {
        ficheros::Anexo anexo(disco, kRuta);
        anexo.escribir("uno");
        disco.morir();
        EXPECT_THROW(anexo.escribir("dos"), MuerteSubita);
        disco.revivir();
        EXPECT_THROW(anexo.escribir("dos"), MuerteSubita);
    }
    EXPECT_EQ(disco.contenido(kRuta), "uno");
}

TEST(DiscoSimulado, KillsAtEveryOperationBeforeInAndAfterIt) {
    const std::string viejo = "old and longer";
    const std::string nuevo = "the new one";
    std::set<std::string> vistos;
    for (const Momento momento : {Momento::kAntes, Momento::kAMedias, Momento::kDespues}) {
        for (std::int64_t k = 1;; ++k) {
            DiscoSimulado disco;
            disco.poner(kRuta, viejo);
            disco.morirEn(k, momento);
            bool muerto = false;
            try {
                ficheros::reemplazar(disco, kRuta, nuevo);
            } catch (const MuerteSubita&) {
                muerto = true;
            }
            if (!muerto) {
                EXPECT_GT(k, 8);
                EXPECT_EQ(estado(disco), "a=" + nuevo);
                break;
            }
            EXPECT_EQ(disco.operaciones(), k);
            EXPECT_TRUE(disco.contenido(kRuta) == viejo || disco.contenido(kRuta) == nuevo);
            vistos.insert(estado(disco));
            disco.revivir();
            ficheros::borrarTemporales(disco, kCarpeta);
            EXPECT_THAT(disco.nombres(kCarpeta), ElementsAre("a"));
        }
    }
    EXPECT_THAT(vistos, UnorderedElementsAre(".bn-1001-0.tmp=, a=old and longer",
                                             ".bn-1001-0.tmp=the n, a=old and longer",
                                             ".bn-1001-0.tmp=the new one, a=old and longer",
                                             "a=old and longer", "a=the new one"));
}

TEST(DiscoSimulado, AnAppendThatReturnedSurvivesAPowerCutAtAnyLaterOperation) {
    for (std::int64_t k = 1; k < 40; ++k) {
        for (std::uint64_t semilla = 0; semilla < 20; ++semilla) {
            DiscoSimulado disco(SistemaDeFicheros::kSinOrden);
            disco.crearCarpeta(kCarpeta);
            disco.morirEn(k);
            std::string escrito;
            bool creado = false;
            try {
                ficheros::crearVacio(disco, kRuta);
                creado = true;
                for (const std::string linea : {"one\r\n", "two\r\n", "three\r\n"}) {
                    ficheros::anadir(disco, kRuta, linea);
                    escrito += linea;
                }
            } catch (const MuerteSubita&) {
                disco.cortarCorriente(semilla);
            }
            if (creado) {
                EXPECT_EQ(disco.contenido(kRuta).substr(0, escrito.size()), escrito);
            }
        }
    }
}

TEST(DiscoSimulado, FillsUpAndCutsAWriteShort) {
    DiscoSimulado disco;
    disco.poner(kRuta, "12345");
    disco.capacidad(8);
    EXPECT_EQ(disco.abrir(kRuta, Disco::Modo::kAnadir)->anadir("6789"), 3U);
    EXPECT_EQ(disco.contenido(kRuta), "12345678");
    EXPECT_EQ(causaDe([&] { ficheros::anadir(disco, kRuta, "9"); }), Causa::kLleno);
    EXPECT_EQ(causaDe([&] { ficheros::reemplazar(disco, kRuta, "x"); }), Causa::kLleno);
    sobrescribir(disco, 4, "abcd");
    EXPECT_EQ(estado(disco), "a=1234abcd");
    disco.capacidad(10);
    EXPECT_EQ(causaDe([&] { ficheros::anadir(disco, kRuta, "xyz"); }), Causa::kLleno);
    EXPECT_EQ(estado(disco), "a=1234abcd") << "all or nothing";
    disco.sanar();
    ficheros::anadir(disco, kRuta, "xyz");
    EXPECT_EQ(estado(disco), "a=1234abcdxyz");
}

TEST(DiscoSimulado, FailsTheOperationsThatItIsToldTo) {
    DiscoSimulado disco;
    disco.poner(kRuta, "");
    disco.fallar(Causa::kSinPermiso, Tipo::kAnadir, 2);
    EXPECT_EQ(causaDe([&] { ficheros::anadir(disco, kRuta, "x"); }), Causa::kSinPermiso);
    EXPECT_EQ(causaDe([&] { ficheros::anadir(disco, kRuta, "x"); }), Causa::kSinPermiso);
    EXPECT_EQ(causaDe([&] { ficheros::anadir(disco, kRuta, "x"); }), std::nullopt);
    disco.fallar(
        Causa::kAveria, [](const Operacion& o) { return o.ruta == kOtra; },
        DiscoSimulado::kSiempre);
    EXPECT_EQ(causaDe([&] { ficheros::crearVacio(disco, kOtra); }), Causa::kAveria);
    EXPECT_EQ(causaDe([&] { ficheros::crearVacio(disco, kOtra); }), Causa::kAveria);
    EXPECT_EQ(causaDe([&] { ficheros::anadir(disco, kRuta, "y"); }), std::nullopt);
    const std::int64_t proxima = disco.operaciones() + 1;
    disco.fallar(Causa::kOtra, [&](const Operacion& o) { return o.numero == proxima; });
    EXPECT_EQ(causaDe([&] { ficheros::leer(disco, kRuta); }), Causa::kOtra);
    EXPECT_EQ(ficheros::leer(disco, kRuta), "xy");
}

TEST(DiscoSimulado, AnOperationMayFailHalfDoneOrDone) {
    DiscoSimulado disco;
    disco.poner(kRuta, "");
    disco.fallar(Causa::kAveria, Tipo::kAnadir, 1, Momento::kAMedias);
    EXPECT_EQ(causaDe([&] { escribir(disco, kRuta, "1234"); }), Causa::kAveria);
    EXPECT_EQ(disco.contenido(kRuta), "12");
    disco.fallar(Causa::kAveria, Tipo::kRenombrar, 1, Momento::kDespues);
    EXPECT_EQ(causaDe([&] { disco.renombrar(kRuta, kOtra); }), Causa::kAveria);
    EXPECT_EQ(estado(disco), "b=12");
}

TEST(DiscoSimulado, AFlushThatFailedIsNotMadeGoodByALaterOne) {
    EXPECT_THAT(estados(SistemaDeFicheros::kExt4,
                        [](DiscoSimulado& disco) {
                            disco.poner(kRuta, "a");
                            disco.fallar(Causa::kAveria, Tipo::kVolcar);
                            const auto fichero = disco.abrir(kRuta, Disco::Modo::kAnadir);
                            fichero->anadir("bc");
                            EXPECT_EQ(causaDe([&] { fichero->sincronizar(); }), Causa::kAveria);
                            EXPECT_EQ(disco.contenido(kRuta), "abc");
                            fichero->sincronizar();
                        }),
                ElementsAre("a=a00"));
}

TEST(DiscoSimulado, AHeldFileIsWaitedForInEveryOperation) {
    DiscoSimulado disco;
    const std::vector<std::function<void()>> operaciones = {
        [&] { ficheros::leer(disco, kRuta); },
        [&] { ficheros::crearVacio(disco, kRuta); },
        [&] { ficheros::anadir(disco, kRuta, "x"); },
        [&] { ficheros::sobrescribir(disco, kRuta, 0, "x"); },
        [&] { ficheros::cortar(disco, kRuta, 1); },
        [&] { ficheros::reemplazar(disco, kRuta, "x"); },
        [&] { ficheros::Anexo anexo(disco, kRuta); },
        [&] { ficheros::Lineas lineas(disco, kRuta); },
        [&] { ficheros::mover(disco, kOtra, kRuta); },
        [&] { ficheros::mover(disco, kRuta, kOtra); },
        [&] { ficheros::borrar(disco, kRuta); }};
    for (std::size_t i = 0; i < operaciones.size(); ++i) {
        disco.poner(kRuta, "a");
        disco.poner(kOtra, "b");
        disco.retener(kRuta, std::chrono::milliseconds(150));
        EXPECT_EQ(causaDe(operaciones[i]), std::nullopt) << i;
        disco.poner(kRuta, "a");
        disco.poner(kOtra, "b");
        disco.retener(kRuta, std::chrono::seconds(10));
        EXPECT_EQ(causaDe(operaciones[i]), Causa::kEnUso) << i;
        EXPECT_EQ(estado(disco), "a=a, b=b") << i;
        disco.sanar();
    }
}

TEST(DiscoSimulado, ATemporaryThatCannotBeRemovedKeepsNoOtherFromGoing) {
    DiscoSimulado disco;
    for (const char* nombre : {".bn-1-0.tmp", ".bn-2-0.tmp", ".bn-3-0.tmp"}) {
        disco.poner(kCarpeta / nombre, "half");
    }
    disco.fallar(Causa::kSinPermiso, Tipo::kBorrar);
    ficheros::borrarTemporales(disco, kCarpeta);
    EXPECT_THAT(disco.nombres(kCarpeta), ElementsAre(".bn-1-0.tmp"));
}

TEST(DiscoSimulado, ARelativePathBeginsInTheFolderWithoutAName) {
    DiscoSimulado disco;
    EXPECT_EQ(causaDe([&] { ficheros::crearVacio(disco, "a"); }), Causa::kNoExiste);
    disco.crearCarpeta(".");
    ficheros::anadir(disco, "./a", "x");
    EXPECT_EQ(disco.contenido("a"), "x");
    EXPECT_THAT(disco.nombres(""), ElementsAre("a"));
    EXPECT_TRUE(disco.todoVolcado());
}

TEST(DiscoSimulado, WaitingLetsTheTestsTimePass) {
    DiscoSimulado disco;
    disco.poner(kRuta, "a");
    std::chrono::milliseconds pasado{0};
    disco.alEsperar = [&](std::chrono::milliseconds tiempo) { pasado += tiempo; };
    disco.retener(kRuta, std::chrono::milliseconds(50));
    EXPECT_EQ(ficheros::leer(disco, kRuta), "a");
    EXPECT_EQ(pasado, std::chrono::milliseconds(60));
    EXPECT_EQ(disco.esperado(), pasado);
}

TEST(DiscoSimulado, AFolderMayGoAndComeBack) {
    DiscoSimulado disco;
    disco.poner(kRuta, "a");
    const auto abierto = disco.abrir(kRuta, Disco::Modo::kAnadir);
    disco.esconder(kCarpeta);
    EXPECT_FALSE(ficheros::existe(disco, kRuta));
    EXPECT_FALSE(ficheros::esCarpeta(disco, kCarpeta));
    EXPECT_EQ(ficheros::leer(disco, kRuta), std::nullopt);
    EXPECT_EQ(causaDe([&] { ficheros::anadir(disco, kRuta, "b"); }), Causa::kNoExiste);
    EXPECT_EQ(causaDe([&] { ficheros::listar(disco, kCarpeta); }), Causa::kNoExiste);
    EXPECT_EQ(causaDe([&] { ficheros::sincronizarCarpeta(disco, kCarpeta); }), Causa::kNoExiste);
    EXPECT_EQ(causaDe([&] { abierto->anadir("b"); }), Causa::kAveria);
    disco.esconder(kCarpeta, false);
    EXPECT_EQ(ficheros::leer(disco, kRuta), "a");
}

TEST(DiscoSimulado, TellsEachOperationBeforeItHappens) {
    DiscoSimulado disco;
    disco.crearCarpeta(kCarpeta);
    std::vector<std::string> traza;
    disco.alOperar = [&](const Operacion& operacion) { traza.push_back(operacion.texto()); };
    ficheros::anadir(disco, kRuta, "abc");
    ficheros::mover(disco, kRuta, kOtra);
    EXPECT_THAT(traza,
                ElementsAre("1 abrir /c/a", "2 abrir /c/a", "3 medir /c/a", "4 anadir /c/a @0 +3",
                            "5 volcar /c/a", "6 resolver /c/a", "7 volcar carpeta /c",
                            "8 renombrar /c/a -> /c/b", "9 volcar carpeta /c"));
    disco.alOperar = [](const Operacion& operacion) {
        if (operacion.escribe()) throw MuerteSubita{};
    };
    EXPECT_THROW(ficheros::anadir(disco, kOtra, "x"), MuerteSubita);
    EXPECT_FALSE(disco.vivo());
    EXPECT_EQ(disco.contenido(kOtra), "abc");
}

TEST(DiscoSimulado, APlatformKeepsItsFilesThereOnceItIsToldTo) {
    const prueba::CarpetaTemporal carpeta;
    DiscoSimulado disco;
    PlataformaDePrueba plataforma(carpeta.ruta());
    EXPECT_EQ(&plataforma.disco(), &discoDelSistema());
    plataforma.usarDisco(disco);
    EXPECT_EQ(&plataforma.disco(), &disco);
}

}  // namespace
}  // namespace bn
