// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <functional>
#include <map>
#include <optional>
#include <sstream>
#include <thread>

#include "platform/Escritorio.h"
#include "platform/Ficheros.h"

namespace bn {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;

/// To the administrator no folder is closed: for a while an ordinary user instead.
class SinPrivilegios {
 public:
    SinPrivilegios() : propio_(::geteuid()) {
        constexpr uid_t kNadie = 65534;
        if (propio_ == 0) {
            EXPECT_EQ(::seteuid(kNadie), 0);
        }
    }
    SinPrivilegios(const SinPrivilegios&) = delete;
    SinPrivilegios& operator=(const SinPrivilegios&) = delete;
    ~SinPrivilegios() { EXPECT_EQ(::seteuid(propio_), 0); }

 private:
    uid_t propio_;
};

/// A user of the test's own: home folder and environment, put back afterwards.
class Escritorio : public testing::Test {
 protected:
    Escritorio() {
        std::string plantilla = (fs::temp_directory_path() / "bn-escritorio-XXXXXX").string();
        hogar_ = ::mkdtemp(plantilla.data());
        for (const char* variable :
             {"HOME", "XDG_DOCUMENTS_DIR", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "PATH", "TZ"}) {
            const char* valor = std::getenv(variable);
            anterior_[variable] = valor ? std::optional<std::string>(valor) : std::nullopt;
        }
        for (const char* variable : {"XDG_DOCUMENTS_DIR", "XDG_CONFIG_HOME", "XDG_DATA_HOME"}) {
            ::unsetenv(variable);
        }
        poner("HOME", hogar_.string());
    }

    ~Escritorio() override {
        for (const auto& [variable, valor] : anterior_) {
            if (valor) {
                ::setenv(variable.c_str(), valor->c_str(), 1);
            } else {
                ::unsetenv(variable.c_str());
            }
        }
        ::tzset();
        std::error_code error;
        fs::remove_all(hogar_, error);
    }

    static void poner(const char* variable, const std::string& valor) {
        ::setenv(variable, valor.c_str(), 1);
    }

    static void escribir(const fs::path& ruta, const std::string& contenido) {
        fs::create_directories(ruta.parent_path());
        std::ofstream(ruta) << contenido;
    }

    static std::string leer(const fs::path& ruta) {
        std::stringstream contenido;
        contenido << std::ifstream(ruta).rdbuf();
        return contenido.str();
    }

    static bool llegaASer(const std::function<bool()>& condicion) {
        const auto fin = std::chrono::steady_clock::now() + std::chrono::seconds(5);
        while (!condicion()) {
            if (std::chrono::steady_clock::now() > fin) {
                return false;
            }
            std::this_thread::yield();
        }
        return true;
    }

    /// An xdg-open of the test's own, the only program to be found.
    void ponerVisor(const std::string& guion) {
        const fs::path visor = hogar_ / "bin" / "xdg-open";
        escribir(visor, "#!/bin/sh\n" + guion);
        fs::permissions(visor, fs::perms::owner_all);
        poner("PATH", visor.parent_path().string());
    }

    std::string documentosCon(const std::string& lineas) {
        escribir(hogar_ / ".config" / "user-dirs.dirs", lineas);
        return escritorio::carpetaEspecial(5);
    }

    fs::path entrada() const { return hogar_ / ".config" / "autostart" / "bnDX5.desktop"; }

    fs::path hogar_;

 private:
    std::map<std::string, std::optional<std::string>> anterior_;
};

TEST_F(Escritorio, TheDocumentsFolderIsTheHomeFolderWhenNothingIsSaid) {
    EXPECT_EQ(escritorio::carpetaEspecial(5), hogar_.string());
}

TEST_F(Escritorio, TheDocumentsFolderIsTheOneTheEnvironmentNames) {
    documentosCon("XDG_DOCUMENTS_DIR=\"$HOME/Otra\"\n");
    poner("XDG_DOCUMENTS_DIR", "/srv/Años");
    EXPECT_EQ(escritorio::carpetaEspecial(5), "/srv/Años");
}

TEST_F(Escritorio, TheDocumentsFolderIsTheOneOfTheUsersFile) {
    EXPECT_EQ(documentosCon("# XDG_DOCUMENTS_DIR=\"/no\"\nXDG_DESKTOP_DIR=\"$HOME/Escritorio\"\n"
                            "XDG_DOCUMENTS_DIR=\"$HOME/Mis documentos\"\n"),
              (hogar_ / "Mis documentos").string());
    EXPECT_EQ(documentosCon("  XDG_DOCUMENTS_DIR=\"/srv/a\\\"b\\$c\"\n"), "/srv/a\"b$c");
    EXPECT_EQ(documentosCon("XDG_DOCUMENTS_DIR=\"$HOME/\"\n"), hogar_.string());
    EXPECT_EQ(documentosCon("XDG_DOCUMENTS_DIR=\"$HOME\""), hogar_.string());
    poner("XDG_CONFIG_HOME", (hogar_ / "ajustes").string());
    EXPECT_EQ(escritorio::carpetaEspecial(5), hogar_.string());
    escribir(hogar_ / "ajustes" / "user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"/srv/otra\"\n");
    EXPECT_EQ(escritorio::carpetaEspecial(5), "/srv/otra");
}

TEST_F(Escritorio, ADocumentsFolderThatIsNotWellWrittenDoesNotCount) {
    for (const std::string linea :
         {"XDG_DOCUMENTS_DIR=", "XDG_DOCUMENTS_DIR=\"", "XDG_DOCUMENTS_DIR=/sin/comillas",
          "XDG_DOCUMENTS_DIR=\"relativa\"", "XDG_DOCUMENTS_DIR=\"$HOMERO/x\"",
          "XDG_DOCUMENTS_DIR=\"/sin cerrar", "XDG_DOCUMENTS_DIR=\"\\", "XDG_DOCUMENTS_DIR=\"\""}) {
        EXPECT_EQ(documentosCon(linea), hogar_.string()) << linea;
    }
    poner("XDG_DOCUMENTS_DIR", "relativa");
    EXPECT_EQ(escritorio::carpetaEspecial(5), hogar_.string());
}

TEST_F(Escritorio, AnotherSpecialFolderIsNotKnown) {
    for (const int32_t numero : {-1, 0, 4, 6, 2147483647}) {
        EXPECT_EQ(escritorio::carpetaEspecial(numero), "") << numero;
    }
}

TEST_F(Escritorio, TheProgramsOwnFolderIsTheExecutablesWhenItCanBeWritten) {
    EXPECT_EQ(escritorio::carpetaPropia(hogar_), hogar_);
    EXPECT_EQ(escritorio::carpetaPropia(), escritorio::ejecutable().parent_path());
    EXPECT_EQ(escritorio::ejecutable().filename(), "prueba_escritorio");
}

TEST_F(Escritorio, TheProgramsOwnFolderIsTheUsersWhenTheExecutablesCannotBeWritten) {
    const fs::path cerrada = hogar_ / "sistema";
    fs::create_directory(cerrada);
    fs::permissions(cerrada, fs::perms(0555));
    fs::permissions(hogar_, fs::perms(0777));
    const SinPrivilegios yaNoAdministrador;
    const fs::path esperada = hogar_ / ".local" / "share" / "bnDX5";
    EXPECT_EQ(escritorio::carpetaPropia(cerrada), esperada);
    EXPECT_TRUE(fs::is_directory(esperada));
    poner("XDG_DATA_HOME", (hogar_ / "datos").string());
    EXPECT_EQ(escritorio::carpetaPropia(cerrada), hogar_ / "datos" / "bnDX5");
    EXPECT_TRUE(fs::is_directory(hogar_ / "datos" / "bnDX5"));
    poner("XDG_DATA_HOME", (cerrada / "datos").string());
    EXPECT_THROW(escritorio::carpetaPropia(cerrada), ErrorFichero);
}

TEST_F(Escritorio, OpeningAFileThatIsMissingAnswersTwo) {
    ponerVisor("exit 0\n");
    EXPECT_EQ(escritorio::abrirDocumento((hogar_ / "no hay.xls").string()), 2);
    EXPECT_EQ(escritorio::abrirDocumento(""), 2);
    EXPECT_EQ(escritorio::abrirDocumento(std::string("/tmp\0x", 6)), 2);
    EXPECT_EQ(escritorio::abrirDocumento("https:"), 2);
}

TEST_F(Escritorio, OpeningWithNothingToOpenItWithAnswers31) {
    poner("PATH", hogar_.string());
    escribir(hogar_ / "p.txt", "");
    EXPECT_EQ(escritorio::abrirDocumento((hogar_ / "p.txt").string()), 31);
    EXPECT_EQ(escritorio::abrirDocumento("https://www.balnor.example/"), 31);
}

TEST_F(Escritorio, OpensAFileByItsWholePathAsOneArgumentAndNoShellSeesIt) {
    ponerVisor("echo \"$#:$1:fin\" > \"$HOME/visto\"\n");
    const fs::path documento = hogar_ / "-pesadas $(touch mal) 'de' \"hoy\"; ñ%.xls";
    escribir(documento, "");
    const fs::path antes = fs::current_path();
    fs::current_path(hogar_);
    const int32_t respuesta = escritorio::abrirDocumento(documento.filename().string());
    fs::current_path(antes);
    EXPECT_EQ(respuesta, 33);
    ASSERT_TRUE(llegaASer([&] { return leer(hogar_ / "visto").ends_with(":fin\n"); }));
    EXPECT_EQ(leer(hogar_ / "visto"), "1:" + documento.string() + ":fin\n");
    EXPECT_FALSE(fs::exists(hogar_ / "mal"));
}

TEST_F(Escritorio, OpensAWebAddressAsItStands) {
    ponerVisor("echo \"$#:$1:fin\" > \"$HOME/visto\"\n");
    EXPECT_EQ(escritorio::abrirDocumento("HTTPS://www.balnor.example/a?b=c&d"), 33);
    ASSERT_TRUE(llegaASer([&] { return leer(hogar_ / "visto").ends_with(":fin\n"); }));
    EXPECT_EQ(leer(hogar_ / "visto"), "1:HTTPS://www.balnor.example/a?b=c&d:fin\n");
}

TEST_F(Escritorio, DoesNotWaitForTheViewerAndLeavesNoTraceOfItWhenItEnds) {
    ASSERT_EQ(::mkfifo((hogar_ / "puerta").c_str(), 0600), 0);
    ponerVisor("read x < \"$HOME/puerta\"\n");
    EXPECT_EQ(escritorio::abrirDocumento(hogar_.string()), 33);
    // The viewer waits at the door until this opens it, so the call above cannot have waited.
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), 0);
    std::ofstream(hogar_ / "puerta") << "ya\n";
    EXPECT_TRUE(llegaASer([] {
        siginfo_t fin{};
        return ::waitid(P_ALL, 0, &fin, WEXITED | WNOHANG | WNOWAIT) != 0 && errno == ECHILD;
    }));
}

TEST_F(Escritorio, TheViewerInheritsNoneOfTheProgramsFiles) {
    std::ofstream abierto(hogar_ / "guardo.txt");
    const int copia = ::dup(STDOUT_FILENO);  // without the close-on-exec mark
    ponerVisor(
        "for f in /proc/$$/fd/*; do echo \"$f\"; done > \"$HOME/visto\"; "
        "echo fin >> \"$HOME/visto\"\n");
    EXPECT_EQ(escritorio::abrirDocumento(hogar_.string()), 33);
    ASSERT_TRUE(llegaASer([&] { return leer(hogar_ / "visto").ends_with("fin\n"); }));
    ::close(copia);
    EXPECT_THAT(leer(hogar_ / "visto"), Not(HasSubstr("/fd/" + std::to_string(copia) + "\n")));
    EXPECT_THAT(leer(hogar_ / "visto"), HasSubstr("/fd/0\n"));
}

TEST_F(Escritorio, StartAtLogonIsAnEntryThatComesAndGoes) {
    EXPECT_FALSE(escritorio::estaEnArranque());
    escritorio::ponerEnArranque(true, "/opt/bnDX5/bnDX5");
    EXPECT_TRUE(escritorio::estaEnArranque());
    EXPECT_THAT(leer(entrada()), testing::StartsWith("[Desktop Entry]\nType=Application\n"));
    EXPECT_THAT(leer(entrada()), HasSubstr("\nExec=\"/opt/bnDX5/bnDX5\"\n"));
    escritorio::ponerEnArranque(false, "/opt/bnDX5/bnDX5");
    EXPECT_FALSE(escritorio::estaEnArranque());
    EXPECT_FALSE(fs::exists(entrada()));
    EXPECT_NO_THROW(escritorio::ponerEnArranque(false, "/opt/bnDX5/bnDX5"));
}

TEST_F(Escritorio, StartAtLogonFollowsTheConfigurationFolderOfTheEnvironment) {
    poner("XDG_CONFIG_HOME", (hogar_ / "ajustes").string());
    escritorio::ponerEnArranque(true, "/opt/bnDX5/bnDX5");
    EXPECT_TRUE(fs::exists(hogar_ / "ajustes" / "autostart" / "bnDX5.desktop"));
    EXPECT_TRUE(escritorio::estaEnArranque());
}

TEST_F(Escritorio, AnEntryThatTheDesktopHasSwitchedOffDoesNotCountAndIsSwitchedOnAgain) {
    for (const std::string apagada : {"Hidden=true", "X-GNOME-Autostart-enabled = false"}) {
        escribir(entrada(), "[Desktop Entry]\nExec=x\n" + apagada + "\n");
        EXPECT_FALSE(escritorio::estaEnArranque()) << apagada;
        escritorio::ponerEnArranque(true, "/opt/bnDX5/bnDX5");
        EXPECT_TRUE(escritorio::estaEnArranque()) << apagada;
    }
    escribir(entrada(), "[Desktop Entry]\nExec=x\nHidden=false\n");
    EXPECT_TRUE(escritorio::estaEnArranque());
}

/// An Exec key read as the desktops do: the escapes of a text, then the quotes, then the codes.
std::string programaDeExec(const std::string& fichero) {
    const std::size_t inicio = fichero.find("\nExec=") + 6;
    const std::string crudo = fichero.substr(inicio, fichero.find('\n', inicio) - inicio);
    const auto desescapar = [](const std::string& texto, const std::map<char, char>& escapes) {
        std::string claro;
        for (std::size_t i = 0; i < texto.size(); ++i) {
            if (texto[i] == '\\' && i + 1 < texto.size()) {
                claro += escapes.at(texto[++i]);
            } else {
                claro += texto[i];
            }
        }
        return claro;
    };
    const std::string texto =
        desescapar(crudo, {{'s', ' '}, {'n', '\n'}, {'t', '\t'}, {'r', '\r'}, {'\\', '\\'}});
    EXPECT_GE(texto.size(), 2U);
    EXPECT_EQ(texto.front(), '"');
    EXPECT_EQ(texto.back(), '"');
    const std::string argumento = desescapar(texto.substr(1, texto.size() - 2),
                                             {{'"', '"'}, {'`', '`'}, {'$', '$'}, {'\\', '\\'}});
    std::string programa;
    for (std::size_t i = 0; i < argumento.size(); ++i) {
        if (argumento[i] == '%') {
            EXPECT_EQ(argumento.at(++i), '%');
        }
        programa += argumento[i];
    }
    return programa;
}

TEST_F(Escritorio, StartAtLogonNamesAnyPathSoThatTheDesktopReadsItBack) {
    for (const std::string programa :
         {"/opt/bnDX5/bnDX5", "/home/José Núñez/mis programas/bnDX5", "/a/100%/%f/b",
          "/a/$HOME/`id`/b", "/a/\"comillas\"/'simples'/b", "/a/barra\\inversa\\\\doble\\n/b",
          "/a/línea\nnueva\ttab\rretorno/b", "/a/final\\"}) {
        escritorio::ponerEnArranque(true, programa);
        EXPECT_EQ(programaDeExec(leer(entrada())), programa);
    }
}

TEST_F(Escritorio, StartAtLogonThatCannotBeWrittenIsAnError) {
    escribir(hogar_ / ".config" / "autostart", "a file where the folder should be");
    EXPECT_THROW(escritorio::ponerEnArranque(true, "/opt/bnDX5/bnDX5"), ErrorFichero);
    EXPECT_FALSE(escritorio::estaEnArranque());
}

class Reloj : public Escritorio {
 protected:
    Reloj() {
        poner("TZ", "CET-1CEST,M3.5.0,M10.5.0/3");
        ::tzset();
    }
    static double en(std::time_t instante) {
        return escritorio::fechaLocal(std::chrono::system_clock::from_time_t(instante));
    }
};

TEST_F(Reloj, GivesTheLocalWallClockInWinterAndSummer) {
    EXPECT_DOUBLE_EQ(en(1705316400), 45306.5);          // 15-01-2024 11:00 UTC: 12:00
    EXPECT_DOUBLE_EQ(en(1721037600), 45488 + 0.5);      // 15-07-2024 10:00 UTC: 12:00
    EXPECT_DOUBLE_EQ(en(1711846800), 45382 + 3 / 24.);  // 31-03-2024 01:00 UTC: 03:00 at once
    EXPECT_DOUBLE_EQ(en(1711846799), 45382 + 7199 / 86400.);
    EXPECT_DOUBLE_EQ(en(0), 25569 + 1 / 24.);
}

TEST_F(Reloj, CountsWholeSecondsOnly) {
    const auto instante = std::chrono::system_clock::from_time_t(1705316400);
    EXPECT_DOUBLE_EQ(escritorio::fechaLocal(instante + std::chrono::milliseconds(999)), 45306.5);
}

TEST_F(Reloj, GivesTheTimeOfNow) {
    const double antes = en(std::time(nullptr));
    const double ahora = escritorio::ahora();
    EXPECT_GE(ahora, antes);
    EXPECT_LE(ahora, en(std::time(nullptr)));
}

}  // namespace
}  // namespace bn
