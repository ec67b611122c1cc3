// SPDX-License-Identifier: MIT
// What only this system can be made to do: disks that fill, links, permissions, signals.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <thread>

#include "platform/Ficheros.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/ErrorFicheroDe.h"

namespace bn {
namespace {

Disco& sistema = discoDelSistema();

using prueba::causaDe;
using prueba::errorDe;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::UnorderedElementsAre;

/// While it lives no file can grow beyond a size: a disk that fills in the middle of a write.
class DiscoQueSeLlena {
 public:
    explicit DiscoQueSeLlena(rlim_t bytes) {
        ::getrlimit(RLIMIT_FSIZE, &viejo_);
        rlimit nuevo = viejo_;
        nuevo.rlim_cur = bytes;
        senal_ = std::signal(SIGXFSZ, SIG_IGN);
        EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &nuevo), 0);
    }
    DiscoQueSeLlena(const DiscoQueSeLlena&) = delete;
    DiscoQueSeLlena& operator=(const DiscoQueSeLlena&) = delete;
    ~DiscoQueSeLlena() {
        ::setrlimit(RLIMIT_FSIZE, &viejo_);
        std::signal(SIGXFSZ, senal_);
    }

 private:
    rlimit viejo_{};
    void (*senal_)(int) = nullptr;
};

/// While it lives the test is no superuser, whom no permission stops.
class UsuarioCorriente {
 public:
    UsuarioCorriente() {
        if (superusuario_) {
            EXPECT_EQ(::seteuid(65534), 0);
        }
    }
    UsuarioCorriente(const UsuarioCorriente&) = delete;
    UsuarioCorriente& operator=(const UsuarioCorriente&) = delete;
    ~UsuarioCorriente() {
        if (superusuario_) {
            EXPECT_EQ(::seteuid(0), 0);
        }
    }

 private:
    bool superusuario_ = ::geteuid() == 0;
};

mode_t permisos(const std::filesystem::path& ruta) {
    struct stat datos {};
    EXPECT_EQ(::stat(ruta.c_str(), &datos), 0);
    return datos.st_mode & 07777U;
}

int ficherosAbiertos() {
    int cuenta = 0;
    for ([[maybe_unused]] const auto& entrada :
         std::filesystem::directory_iterator("/proc/self/fd")) {
        ++cuenta;
    }
    return cuenta;
}

TEST(FicherosLinux, AnadirThatDoesNotFitLeavesTheFileAsItWas) {
    const prueba::CarpetaTemporal carpeta;
    const auto ruta = carpeta / "a.txt";
    prueba::escribirFichero(ruta, std::string(100, 'a'));
    {
        const DiscoQueSeLlena disco(150);
        EXPECT_EQ(errorDe([&] { ficheros::anadir(sistema, ruta, std::string(60, 'b')); }),
                  ficheros::aTexto(ruta) + ": demasiado grande");
        EXPECT_EQ(prueba::leerFichero(ruta), std::string(100, 'a'));
        EXPECT_EQ(errorDe([&] { ficheros::anadir(sistema, ruta, std::string(50, 'c')); }), "");
    }
    EXPECT_EQ(prueba::leerFichero(ruta), std::string(100, 'a') + std::string(50, 'c'));
}

TEST(FicherosLinux, AnAnexoThatFillsTheDiskLosesOnlyTheLineThatDoesNotFit) {
    const prueba::CarpetaTemporal carpeta;
    const auto ruta = carpeta / "a.txt";
    {
        const DiscoQueSeLlena disco(10);
        ficheros::Anexo anexo(sistema, ruta);
        anexo.escribir("123456\r\n");
        EXPECT_NE(errorDe([&] { anexo.escribir("789\r\n"); }), "");
        EXPECT_EQ(prueba::leerFichero(ruta), "123456\r\n");
        anexo.escribir("x");
        anexo.cerrar();
    }
    EXPECT_EQ(prueba::leerFichero(ruta), "123456\r\nx");
}

TEST(FicherosLinux, ReemplazarThatDoesNotFitKeepsTheOldFileAndLeavesNoTemporary) {
    const prueba::CarpetaTemporal carpeta;
    const auto ruta = carpeta / "a.ini";
    prueba::escribirFichero(ruta, "old");
    {
        const DiscoQueSeLlena disco(1000);
        EXPECT_EQ(errorDe([&] { ficheros::reemplazar(sistema, ruta, std::string(1001, 'x')); }),
                  ficheros::aTexto(ruta) + ": demasiado grande");
    }
    EXPECT_EQ(prueba::leerFichero(ruta), "old");
    EXPECT_THAT(carpeta.nombres(), ElementsAre("a.ini"));
}

TEST(FicherosLinux, AFullDeviceIsAFullDisk) {
    EXPECT_EQ(errorDe([] { ficheros::anadir(sistema, "/dev/full", "x"); }),
              "/dev/full: el disco está lleno");
    ficheros::Anexo anexo(sistema, "/dev/full");
    EXPECT_EQ(errorDe([&] { anexo.escribir("x"); }), "/dev/full: el disco está lleno");
}

TEST(FicherosLinux, CausesAreToldApart) {
    using Causa = ErrorFichero::Causa;
    EXPECT_EQ(causaDe([] { ficheros::anadir(sistema, "/dev/full", "x"); }), Causa::kLleno);
    EXPECT_EQ(causaDe([] { ficheros::leer(sistema, "/proc/self/mem"); }), Causa::kAveria);
    EXPECT_EQ(causaDe([] { ficheros::anadir(sistema, "/proc/self/no/a.txt", "x"); }),
              Causa::kNoExiste);
    const prueba::CarpetaTemporal carpeta;
    prueba::escribirFichero(carpeta / "a.txt", "x");
    ASSERT_EQ(::chmod((carpeta / "a.txt").c_str(), 0), 0);
    ASSERT_EQ(::chmod(carpeta.ruta().c_str(), 0755), 0);
    const UsuarioCorriente usuario;
    EXPECT_EQ(causaDe([&] { ficheros::leer(sistema, carpeta / "a.txt"); }), Causa::kSinPermiso);
    EXPECT_EQ(causaDe([&] { ficheros::largo(sistema, carpeta / "a.txt"); }), Causa::kSinPermiso);
    EXPECT_EQ(causaDe([&] { ficheros::crearVacio(sistema, carpeta / "b.txt"); }),
              Causa::kSinPermiso);
}

TEST(FicherosLinux, WhatCannotBeFlushedIsNotAnError) {
    EXPECT_EQ(errorDe([] { ficheros::anadir(sistema, "/dev/null", "x"); }), "");
    const prueba::CarpetaTemporal carpeta;
    const auto ruta = carpeta / "tubo";
    ASSERT_EQ(::mkfifo(ruta.c_str(), 0600), 0);
    const int lector = ::open(ruta.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_NE(lector, -1);
    EXPECT_EQ(errorDe([&] { ficheros::anadir(sistema, ruta, "abc"); }), "");
    std::array<char, 8> leido{};
    EXPECT_EQ(::read(lector, leido.data(), leido.size()), 3);
    ::close(lector);
}

TEST(FicherosLinux, ReemplazarNeverPutsAFileInThePlaceOfADevice) {
    const prueba::CarpetaTemporal carpeta;
    const auto ruta = carpeta / "tubo";
    ASSERT_EQ(::mkfifo(ruta.c_str(), 0600), 0);
    EXPECT_THAT(errorDe([&] { ficheros::reemplazar(sistema, ruta, "x"); }), HasSubstr("tubo: "));
    EXPECT_TRUE(std::filesystem::is_fifo(ruta));
    EXPECT_THAT(carpeta.nombres(), ElementsAre("tubo"));
}

TEST(FicherosLinux, ReemplazarKeepsThePermissionsOfTheOldFile) {
    const prueba::CarpetaTemporal carpeta;
    for (const mode_t modo : {0600U, 0644U, 0666U, 0640U}) {
        prueba::escribirFichero(carpeta / "a.ini", "old");
        ASSERT_EQ(::chmod((carpeta / "a.ini").c_str(), modo), 0);
        ficheros::reemplazar(sistema, carpeta / "a.ini", "new");
        EXPECT_EQ(permisos(carpeta / "a.ini"), modo);
    }
}

TEST(FicherosLinux, ANewFileHasTheUsualPermissions) {
    const prueba::CarpetaTemporal carpeta;
    const mode_t mascara = ::umask(022);
    ficheros::reemplazar(sistema, carpeta / "a.ini", "new");
    ficheros::anadir(sistema, carpeta / "b.txt", "new");
    ::umask(mascara);
    EXPECT_EQ(permisos(carpeta / "a.ini"), 0644U);
    EXPECT_EQ(permisos(carpeta / "b.txt"), 0644U);
}

TEST(FicherosLinux, ReemplazarKeepsTheOwnerWhereItMay) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only the superuser can give a file away";
    }
    const prueba::CarpetaTemporal carpeta;
    const auto ruta = carpeta / "a.ini";
    prueba::escribirFichero(ruta, "old");
    ASSERT_EQ(::chown(ruta.c_str(), 12345, 23456), 0);
    ficheros::reemplazar(sistema, ruta, "new");
    struct stat datos {};
    ASSERT_EQ(::stat(ruta.c_str(), &datos), 0);
    EXPECT_EQ(datos.st_uid, 12345U);
    EXPECT_EQ(datos.st_gid, 23456U);
}

TEST(FicherosLinux, AFileProtectedAgainstWritingIsNeitherReplacedNorAppendedTo) {
    const prueba::CarpetaTemporal carpeta;
    const auto ruta = carpeta / "a.ini";
    prueba::escribirFichero(ruta, "old");
    ASSERT_EQ(::chmod(carpeta.ruta().c_str(), 0777), 0);
    ASSERT_EQ(::chmod(ruta.c_str(), 0444), 0);
    {
        const UsuarioCorriente usuario;
        const std::string esperado = ficheros::aTexto(ruta) + ": acceso denegado";
        EXPECT_EQ(errorDe([&] { ficheros::reemplazar(sistema, ruta, "new"); }), esperado);
        EXPECT_EQ(errorDe([&] { ficheros::anadir(sistema, ruta, "new"); }), esperado);
        EXPECT_EQ(errorDe([&] { ficheros::crearVacio(sistema, ruta); }), esperado);
        EXPECT_EQ(ficheros::leer(sistema, ruta), "old");
    }
    EXPECT_EQ(prueba::leerFichero(ruta), "old");
    EXPECT_THAT(carpeta.nombres(), ElementsAre("a.ini"));
}

TEST(FicherosLinux, AFolderThatOnlyLetsFilesInStillTakesThem) {
    const prueba::CarpetaTemporal carpeta;
    ASSERT_EQ(::chmod(carpeta.ruta().c_str(), 0333), 0);
    {
        const UsuarioCorriente usuario;
        EXPECT_EQ(errorDe([&] { ficheros::anadir(sistema, carpeta / "a.txt", "x"); }), "");
        EXPECT_EQ(errorDe([&] { ficheros::reemplazar(sistema, carpeta / "a.txt", "y"); }), "");
    }
    ASSERT_EQ(::chmod(carpeta.ruta().c_str(), 0700), 0);
    EXPECT_EQ(prueba::leerFichero(carpeta / "a.txt"), "y");
}

TEST(FicherosLinux, ReemplazarFollowsALinkAndKeepsIt) {
    const prueba::CarpetaTemporal carpeta;
    std::filesystem::create_directory(carpeta / "real");
    prueba::escribirFichero(carpeta / "real" / "a.ini", "old");
    std::filesystem::create_symlink("real/a.ini", carpeta / "b.ini");
    std::filesystem::create_symlink(carpeta / "b.ini", carpeta / "c.ini");
    ficheros::reemplazar(sistema, carpeta / "c.ini", "new");
    EXPECT_TRUE(std::filesystem::is_symlink(carpeta / "b.ini"));
    EXPECT_TRUE(std::filesystem::is_symlink(carpeta / "c.ini"));
    EXPECT_EQ(prueba::leerFichero(carpeta / "real" / "a.ini"), "new");
    EXPECT_THAT(carpeta.nombres(), UnorderedElementsAre("real", "b.ini", "c.ini"));
}

TEST(FicherosLinux, ReemplazarFollowsALinkToNothingYet) {
    const prueba::CarpetaTemporal carpeta;
    std::filesystem::create_symlink("a.ini", carpeta / "b.ini");
    ficheros::reemplazar(sistema, carpeta / "b.ini", "new");
    EXPECT_EQ(prueba::leerFichero(carpeta / "a.ini"), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(carpeta / "b.ini"));
}

TEST(FicherosLinux, LinksInACircleAreAnError) {
    const prueba::CarpetaTemporal carpeta;
    std::filesystem::create_symlink("b", carpeta / "a");
    std::filesystem::create_symlink("a", carpeta / "b");
    EXPECT_THAT(errorDe([&] { ficheros::reemplazar(sistema, carpeta / "a", "x"); }),
                HasSubstr("demasiados enlaces"));
    EXPECT_THAT(errorDe([&] { ficheros::leer(sistema, carpeta / "a"); }),
                HasSubstr("demasiados enlaces"));
}

TEST(FicherosLinux, ANameAtTheSystemsLimitCanBeReplacedAndALongerOneIsAnError) {
    const prueba::CarpetaTemporal carpeta;
    ficheros::reemplazar(sistema, carpeta / std::string(255, 'a'), "x");
    EXPECT_EQ(prueba::leerFichero(carpeta / std::string(255, 'a')), "x");
    EXPECT_THAT(
        errorDe([&] { ficheros::reemplazar(sistema, carpeta / std::string(256, 'a'), "x"); }),
        HasSubstr("el nombre es demasiado largo"));
}

TEST(FicherosLinux, ALeftoverTemporaryDoesNotStandInTheWay) {
    const prueba::CarpetaTemporal carpeta;
    const std::string resto = ".bn-" + std::to_string(::getpid()) + "-0.tmp";
    prueba::escribirFichero(carpeta / resto, "of another life");
    ficheros::reemplazar(sistema, carpeta / "a.ini", "x");
    EXPECT_EQ(prueba::leerFichero(carpeta / "a.ini"), "x");
    EXPECT_EQ(prueba::leerFichero(carpeta / resto), "of another life");
}

TEST(FicherosLinux, AReaderNeverFindsPartOfAReplacedFile) {
    const prueba::CarpetaTemporal carpeta;
    const auto ruta = carpeta / "a.ini";
    const std::string uno(100000, '1');
    const std::string dos(50000, '2');
    ficheros::reemplazar(sistema, ruta, uno);
    std::thread escritor([&] {
        for (int i = 0; i < 20; ++i) {
            ficheros::reemplazar(sistema, ruta, i % 2 == 0 ? dos : uno);
        }
        ficheros::reemplazar(sistema, ruta, "end");
    });
    std::string visto;
    bool entero = true;
    while (visto != "end") {
        visto = ficheros::leer(sistema, ruta).value_or("missing");
        entero = entero && (visto == uno || visto == dos || visto == "end");
    }
    escritor.join();
    EXPECT_TRUE(entero);
}

TEST(FicherosLinux, NoFileStaysOpenAfterAnySuccessOrFailure) {
    const prueba::CarpetaTemporal carpeta;
    const int antes = ficherosAbiertos();
    for (int i = 0; i < 3; ++i) {
        ficheros::crearVacio(sistema, carpeta / "a.txt");
        ficheros::anadir(sistema, carpeta / "a.txt", "x");
        ficheros::reemplazar(sistema, carpeta / "a.txt", "x");
        ficheros::leer(sistema, carpeta / "a.txt");
        ficheros::Anexo(sistema, carpeta / "a.txt").escribir("x");
        ficheros::Lineas(sistema, carpeta / "a.txt").siguiente();
        ficheros::mover(sistema, carpeta / "a.txt", carpeta / "b.txt");
        errorDe([&] { ficheros::leer(sistema, carpeta.ruta()); });
        errorDe([&] { ficheros::Lineas(sistema, carpeta.ruta()).siguiente(); });
        errorDe([&] { ficheros::anadir(sistema, "/dev/full", "x"); });
        errorDe([&] { ficheros::reemplazar(sistema, carpeta.ruta(), "x"); });
    }
    EXPECT_EQ(ficherosAbiertos(), antes);
}

TEST(FicherosLinux, AnOpenFileIsNotPassedOnToProgramsThatAreStarted) {
    const prueba::CarpetaTemporal carpeta;
    const ficheros::Anexo anexo(sistema, carpeta / "a.txt");
    int heredables = 0;
    for (const auto& entrada : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code error;
        const auto destino = std::filesystem::read_symlink(entrada.path(), error);
        if (!error && destino == carpeta / "a.txt") {
            const int numero = std::stoi(entrada.path().filename().string());
            EXPECT_NE(::fcntl(numero, F_GETFD) & FD_CLOEXEC, 0);
            ++heredables;
        }
    }
    EXPECT_EQ(heredables, 1);
}

TEST(FicherosLinux, ASignalDoesNotBreakAWriteOff) {
    const prueba::CarpetaTemporal carpeta;
    const auto ruta = carpeta / "tubo";
    ASSERT_EQ(::mkfifo(ruta.c_str(), 0600), 0);
    struct sigaction accion {};
    struct sigaction vieja {};
    static std::atomic<int> senales;
    senales = 0;
    accion.sa_handler = [](int) { ++senales; };  // without SA_RESTART: calls end with EINTR
    ASSERT_EQ(::sigaction(SIGALRM, &accion, &vieja), 0);
    const itimerval cadaMilisegundo{{0, 1000}, {0, 1000}};
    const itimerval nunca{};
    const int lector = ::open(ruta.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_NE(lector, -1);
    const std::string bytes(1 << 20, 'z');
    std::size_t leidos = 0;
    std::atomic<bool> escrito = false;
    std::thread leyendo([&] {
        sigset_t todas;
        ::sigfillset(&todas);
        ::pthread_sigmask(SIG_BLOCK, &todas, nullptr);
        std::array<char, 512> buffer{};
        // The pipe is full after one write; the signals after that one find nothing written.
        while (senales < 10 && !escrito) {
            std::this_thread::yield();
        }
        for (;;) {
            const bool ultima = escrito;
            const ssize_t n = ::read(lector, buffer.data(), buffer.size());
            if (n <= 0 && ultima) {
                return;
            }
            leidos += n > 0 ? static_cast<std::size_t>(n) : 0;
        }
    });
    ::setitimer(ITIMER_REAL, &cadaMilisegundo, nullptr);
    EXPECT_EQ(errorDe([&] { ficheros::anadir(sistema, ruta, bytes); }), "");
    escrito = true;
    ::setitimer(ITIMER_REAL, &nunca, nullptr);
    leyendo.join();
    ::close(lector);
    ::sigaction(SIGALRM, &vieja, nullptr);
    EXPECT_EQ(leidos, bytes.size());
}

}  // namespace
}  // namespace bn
