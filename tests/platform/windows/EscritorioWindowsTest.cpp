// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <string>
#include <thread>

#include "platform/Escritorio.h"
#include "platform/Ficheros.h"
#include "platform/Puertos.h"
#include "platform/windows/CarpetaDeUsuario.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/ErrorFicheroDe.h"
#include "tests/soporte/windows/CarpetaLarga.h"
#include "tests/soporte/windows/PuertosDeclarados.h"

namespace bn {
namespace {

Disco& sistema = discoDelSistema();

namespace fs = std::filesystem;

constexpr const wchar_t* kArranque = L"Software\\Microsoft\\Windows\\CurrentVersion\\Run";

std::wstring valorDeArranque() {
    std::array<wchar_t, 1024> texto{};
    auto bytes = static_cast<DWORD>(sizeof texto);
    const LSTATUS error = ::RegGetValueW(HKEY_CURRENT_USER, kArranque, L"bnDX5", RRF_RT_REG_SZ,
                                         nullptr, texto.data(), &bytes);
    return error == ERROR_SUCCESS ? texto.data() : L"";
}

bool poner(HKEY raiz, const std::wstring& clave, const std::wstring& nombre,
           const std::wstring& valor) {
    return ::RegSetKeyValueW(raiz, clave.c_str(), nombre.c_str(), REG_SZ, valor.c_str(),
                             static_cast<DWORD>((valor.size() + 1) * sizeof(wchar_t))) ==
           ERROR_SUCCESS;
}

/// A kind of document with a program for it. The machine's, too, where that is allowed: Wine does
/// not look among the user's.
class Asociacion {
 public:
    Asociacion(const std::wstring& extension, const std::wstring& orden) : extension_(extension) {
        for (const HKEY raiz : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
            const bool puesta = poner(raiz, kClases + extension_, L"", L"bnDX5.prueba");
            poner(raiz, kClases + L"bnDX5.prueba\\shell\\open\\command", L"", orden);
            EXPECT_TRUE(puesta || raiz == HKEY_LOCAL_MACHINE);
        }
    }
    Asociacion(const Asociacion&) = delete;
    Asociacion& operator=(const Asociacion&) = delete;
    ~Asociacion() {
        for (const HKEY raiz : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
            ::RegDeleteTreeW(raiz, (kClases + extension_).c_str());
            ::RegDeleteTreeW(raiz, (kClases + L"bnDX5.prueba").c_str());
        }
    }

 private:
    const std::wstring kClases = L"Software\\Classes\\";
    std::wstring extension_;
};

/// A variable of the environment with another value, "" for none, for a while.
class EnElEntorno {
 public:
    EnElEntorno(const wchar_t* variable, const std::wstring& valor) : variable_(variable) {
        const wchar_t* anterior = ::_wgetenv(variable);
        anterior_ = anterior != nullptr ? anterior : L"";
        EXPECT_EQ(::_wputenv_s(variable, valor.c_str()), 0);
    }
    EnElEntorno(const EnElEntorno&) = delete;
    EnElEntorno& operator=(const EnElEntorno&) = delete;
    ~EnElEntorno() { EXPECT_EQ(::_wputenv_s(variable_, anterior_.c_str()), 0); }

 private:
    const wchar_t* variable_;
    std::wstring anterior_;
};

using prueba::errorDe;

bool llegaASer(const std::function<bool()>& condicion) {
    const auto fin = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!condicion()) {
        if (std::chrono::steady_clock::now() > fin) {
            return false;
        }
        std::this_thread::yield();
    }
    return true;
}

TEST(EscritorioWindows, KnowsTheUsersDocumentsFolder) {
    const std::string carpeta = escritorio::carpetaEspecial(escritorio::kCarpetaDocumentos);
    EXPECT_TRUE(fs::is_directory(ficheros::aRuta(carpeta))) << carpeta;
}

TEST(EscritorioWindows, AFolderThatTheShellDoesNotKnowIsEmpty) {
    for (const int32_t numero : {-1, 9999, 2147483647}) {
        EXPECT_EQ(escritorio::carpetaEspecial(numero), "") << numero;
    }
}

TEST(EscritorioWindows, TheProgramsOwnFolderIsTheExecutablesWhenItCanBeWritten) {
    const prueba::CarpetaTemporal carpeta;
    EXPECT_EQ(escritorio::carpetaPropia(carpeta.ruta()), carpeta.ruta());
    EXPECT_TRUE(fs::is_empty(carpeta.ruta()));
    EXPECT_EQ(escritorio::carpetaPropia(), escritorio::ejecutable().parent_path());
    EXPECT_EQ(escritorio::ejecutable().filename(), "prueba_escritorio_windows.exe");
}

TEST(EscritorioWindows, TheProgramsOwnFolderIsTheUsersWhenTheExecutablesCannotBeWritten) {
    const prueba::CarpetaTemporal carpeta;
    const fs::path propia = escritorio::carpetaPropia(carpeta / "missing");
    EXPECT_EQ(propia, fs::path(::_wgetenv(L"LOCALAPPDATA")) / "bnDX5");
    EXPECT_TRUE(fs::is_directory(propia));
}

TEST(EscritorioWindows, TheProgramsOwnFolderMayHaveAnyLength) {
    const prueba::CarpetaLarga carpeta;
    EXPECT_EQ(escritorio::carpetaPropia(carpeta.ruta()), carpeta.ruta());
    EXPECT_TRUE(carpeta.nombres().empty());
}

TEST(EscritorioWindows, TheUsersFolderIsTheEnvironmentsWhereTheShellHasNone) {
    const prueba::CarpetaTemporal carpeta;
    const EnElEntorno local(L"LOCALAPPDATA", (carpeta / "local").native());
    const fs::path delSistema = carpeta / "sistema";
    EXPECT_EQ(windows::carpetaDeUsuario(delSistema), delSistema / "bnDX5");
    EXPECT_TRUE(fs::is_directory(delSistema / "bnDX5"));
    EXPECT_FALSE(fs::exists(carpeta / "local"));
    EXPECT_EQ(windows::carpetaDeUsuario({}), carpeta / "local" / "bnDX5");
    EXPECT_TRUE(fs::is_directory(carpeta / "local" / "bnDX5"));
}

TEST(EscritorioWindows, AUserWithoutAFolderIsToldInsteadOfUsingWhateverFolderIsCurrent) {
    for (const wchar_t* valor : {L"", L"relativa", L"\\sin disco", L"C:relativa"}) {
        const EnElEntorno local(L"LOCALAPPDATA", valor);
        EXPECT_EQ(errorDe([] { windows::carpetaDeUsuario({}); }),
                  "bnDX5: el sistema no tiene carpeta para los datos del usuario");
    }
    EXPECT_FALSE(fs::exists("bnDX5"));
}

TEST(EscritorioWindows, AUsersFolderThatCannotBeMadeIsAnErrorThatNamesIt) {
    const prueba::CarpetaTemporal carpeta;
    prueba::escribirFichero(carpeta / "fichero", "");
    EXPECT_EQ(errorDe([&] { windows::carpetaDeUsuario(carpeta / "fichero"); }),
              ficheros::aTexto(carpeta / "fichero" / "bnDX5") + ": no se puede crear la carpeta");
}

TEST(EscritorioWindows, StartAtLogonIsAValueThatComesAndGoes) {
    escritorio::ponerEnArranque(false, "C:\\bnDX5\\bnDX5.exe");
    EXPECT_FALSE(escritorio::estaEnArranque());
    escritorio::ponerEnArranque(true, "C:\\bnDX5\\bnDX5.exe");
    EXPECT_TRUE(escritorio::estaEnArranque());
    EXPECT_EQ(valorDeArranque(), L"C:\\bnDX5\\bnDX5.exe");
    escritorio::ponerEnArranque(false, "C:\\bnDX5\\bnDX5.exe");
    EXPECT_FALSE(escritorio::estaEnArranque());
    EXPECT_EQ(valorDeArranque(), L"");
    EXPECT_NO_THROW(escritorio::ponerEnArranque(false, "C:\\bnDX5\\bnDX5.exe"));
}

TEST(EscritorioWindows, StartAtLogonNamesAnyPath) {
    const fs::path ruta = ficheros::aRuta("C:\\Báscula ñ\\Вес\\bnDX5.exe");
    escritorio::ponerEnArranque(true, ruta);
    EXPECT_EQ(valorDeArranque(), L'"' + ruta.native() + L'"')
        << "with a blank and no quotes the system would try C:\\Báscula first";
    escritorio::ponerEnArranque(false, ruta);
}

TEST(EscritorioWindows, OpeningWhatIsMissingAnswersTwo) {
    const prueba::CarpetaTemporal carpeta;
    EXPECT_EQ(escritorio::abrirDocumento(ficheros::aTexto(carpeta / "no hay.txt")), 2);
    EXPECT_EQ(escritorio::abrirDocumento(ficheros::aTexto(carpeta / "no" / "hay.txt")), 2);
    EXPECT_EQ(escritorio::abrirDocumento(""), 2);
    EXPECT_EQ(escritorio::abrirDocumento(std::string("C:\\\0x", 5)), 2);
}

TEST(EscritorioWindows, OpeningWithNothingToOpenItWithAnswers31) {
    const prueba::CarpetaTemporal carpeta;
    prueba::escribirFichero(carpeta / "a.bnnadie", "x");
    EXPECT_EQ(escritorio::abrirDocumento(ficheros::aTexto(carpeta / "a.bnnadie")), 31);
}

TEST(EscritorioWindows, OpensADocumentWithTheProgramThatTheUserHasForIt) {
    const prueba::CarpetaTemporal carpeta;
    const fs::path visto = carpeta / "visto.txt";
    const std::wstring orden =
        L"cmd.exe /c copy \"%1\" \"" + fs::path(visto).make_preferred().native() + L"\"";
    const Asociacion asociacion(L".bnprueba", orden);
    const fs::path documento = carpeta.ruta() / ficheros::aRuta("Pesadas de ñ Вес.bnprueba");
    prueba::escribirFichero(documento, "pesadas");
    EXPECT_GT(escritorio::abrirDocumento(ficheros::aTexto(documento)), 32);
    EXPECT_TRUE(llegaASer([&] { return ficheros::leer(sistema, visto) == "pesadas"; }));
}

TEST(EscritorioWindows, GivesTheLocalWallClockInWholeSeconds) {
    // The C library would take another system's way of naming the zone for one of its own.
    ASSERT_EQ(::_putenv("TZ="), 0);
    ::_tzset();
    for (const std::time_t instante : {std::time_t{1705316400}, std::time_t{1721037600}}) {
        const std::tm local = *std::localtime(&instante);
        const double delDia = local.tm_hour * 3600 + local.tm_min * 60 + local.tm_sec;
        const double dia = instante == 1705316400 ? 45306 : 45488;  // 15-01 and 15-07 of 2024
        const auto exacto = std::chrono::system_clock::from_time_t(instante);
        EXPECT_DOUBLE_EQ(escritorio::fechaLocal(exacto + std::chrono::milliseconds(999)),
                         dia + delDia / 86400);
    }
}

TEST(EscritorioWindows, GivesTheTimeOfNow) {
    const double antes = escritorio::fechaLocal(std::chrono::system_clock::now());
    const double ahora = escritorio::ahora();
    EXPECT_GE(ahora, antes);
    EXPECT_LE(ahora, escritorio::fechaLocal(std::chrono::system_clock::now()));
}

TEST(PuertosWindows, ListsTheDeclaredPortsByTheirNumbers) {
    const prueba::PuertosDeclarados declarados({L"COM119", L"COM14", L"otro"});
    if (!declarados.sePuede()) GTEST_SKIP() << "only an administrator may declare a port";
    const auto puertos = puertosPresentes();
    ASSERT_GE(puertos.size(), 2U);
    const PuertoPresente& cerca = puertos[puertos.size() - 2];
    EXPECT_EQ(cerca.dispositivo, "COM14");
    EXPECT_EQ(cerca.descripcion, "Puerto serie");
    EXPECT_EQ(cerca.canal, 14);
    EXPECT_EQ(puertos.back().dispositivo, "COM119");
    EXPECT_EQ(puertos.back().canal, 0);
}

TEST(PuertosWindows, ADeclarationTooLongToBeAPortsDoesNotHideThoseBehindIt) {
    const prueba::PuertosDeclarados declarados(
        {L"COM118", L"COM" + std::wstring(2000, L'1'), L"COM119"});
    if (!declarados.sePuede()) GTEST_SKIP() << "only an administrator may declare a port";
    const auto puertos = puertosPresentes();
    ASSERT_GE(puertos.size(), 2U);
    EXPECT_EQ(puertos[puertos.size() - 2].dispositivo, "COM118");
    EXPECT_EQ(puertos.back().dispositivo, "COM119");
}

TEST(PuertosWindows, APortIsTheSameWithItsFullNameAndInAnyLetters) {
    EXPECT_TRUE(esElMismoPuerto("COM23", "COM23"));
    EXPECT_TRUE(esElMismoPuerto("com23", "COM23"));
    EXPECT_TRUE(esElMismoPuerto("\\\\.\\COM23", "COM23"));
    EXPECT_TRUE(esElMismoPuerto("\\\\.\\Com23", "\\\\.\\cOM23"));
    EXPECT_TRUE(esElMismoPuerto("cañón", "CAÑÓN")) << "a device may have any name";
    for (const char* otro : {"COM2", "COM230", "COM32", "", "\\\\.\\", "C:\\COM23", "NUL"}) {
        EXPECT_FALSE(esElMismoPuerto(otro, "COM23")) << otro;
    }
}

}  // namespace
}  // namespace bn
