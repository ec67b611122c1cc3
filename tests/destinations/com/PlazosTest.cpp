// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <windows.h>
// After windows.h, which it needs.
#include <tlhelp32.h>

#include <algorithm>
#include <functional>
#include <future>
#include <set>

#include "destinations/excel/com/Despacho.h"
#include "destinations/excel/com/Proceso.h"
#include "destinations/excel/com/Sesion.h"
#include "destinations/excel/com/Vigilante.h"
#include "tests/destinations/com/ConSustituto.h"

// An application in a process of its own that does not answer, or is gone: what becomes of the
// call, of that process, and of all the others.

namespace bn::prueba {
namespace {

using namespace std::chrono_literals;
using excel::com::ComPtr;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr const wchar_t* kPrograma = L"bn_sustituto_proceso.exe";
constexpr DWORD kLimiteMs = 30'000;

struct Cerrar {
    void operator()(HANDLE asa) const { CloseHandle(asa); }
};
using Asa = std::unique_ptr<void, Cerrar>;

/// The applications that run.
std::set<DWORD> procesos() {
    std::set<DWORD> numeros;
    const Asa foto(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W uno{};
    uno.dwSize = sizeof uno;
    for (BOOL hay = Process32FirstW(foto.get(), &uno); hay;
         hay = Process32NextW(foto.get(), &uno)) {
        if (std::wstring_view(static_cast<const wchar_t*>(uno.szExeFile)) == kPrograma) {
            numeros.insert(uno.th32ProcessID);
        }
    }
    return numeros;
}

/// Waits for them to end by themselves; those that do not are ended, and told.
void esperarSinProcesos() {
    for (const DWORD numero : procesos()) {
        const Asa proceso(OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, numero));
        if (!proceso || WaitForSingleObject(proceso.get(), kLimiteMs) == WAIT_OBJECT_0) continue;
        TerminateProcess(proceso.get(), 1);
        ADD_FAILURE() << "a process has been left behind";
    }
}

void acabarlos(const std::set<DWORD>& numeros) {
    for (const DWORD numero : numeros) {
        const Asa proceso(OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, numero));
        TerminateProcess(proceso.get(), 1);
        WaitForSingleObject(proceso.get(), kLimiteMs);
    }
}

class PlazosDeExcel : public ConSustituto {
 protected:
    void SetUp() override {
        ConSustituto::SetUp();
        registrarElProceso();
        crearLibro("Pesadas.xls", {{std::string("x")}});
        plataforma_.paciencia.llamada = 1500ms;
        plataforma_.paciencia.libro = 20s;
    }
    void TearDown() override {
        ordenar("");
        soltarExcel();
        esperarSinProcesos();
        ConSustituto::TearDown();
    }

    void abrir() { excel().AbrirParaEscribir(ruta("Pesadas.xls"), "Pesadas", true); }
    bool leer() { return excel().AbrirParaLeer(ruta("Pesadas.xls"), "Pesadas"); }
    void leerBien() {
        ordenar("");
        ASSERT_TRUE(leer()) << "the next one works";
        EXPECT_EQ(excel().Celda(1, 1), Variante(std::string("x")));
        excel().Cerrar();
    }

    static std::string mensajeDe(const std::function<void()>& paso) {
        try {
            paso();
        } catch (const excel::ErrorExcel& e) {
            return e.what();
        }
        return "no ha fallado";
    }

 private:
    static void registrarElProceso() {
        std::wstring orden = std::wstring(kPrograma) + L" /registrar";
        STARTUPINFOW inicio{};
        inicio.cb = sizeof inicio;
        PROCESS_INFORMATION nuevo{};
        ASSERT_TRUE(CreateProcessW(nullptr, orden.data(), nullptr, nullptr, FALSE, 0, nullptr,
                                   nullptr, &inicio, &nuevo));
        const Asa proceso(nuevo.hProcess);
        const Asa hilo(nuevo.hThread);
        ASSERT_EQ(WaitForSingleObject(proceso.get(), kLimiteMs), WAIT_OBJECT_0);
    }
};

TEST_F(PlazosDeExcel, AnApplicationThatAnswersIsLeftAlone) {
    abrir();
    EXPECT_EQ(procesos().size(), 1U);
    excel().Celda(2, 1, std::string("y"));
    excel().Guardar("");
    esperarSinProcesos();
    EXPECT_EQ(leerCelda("Pesadas.xls", 2, 1), Variante(std::string("y")));
}

TEST_F(PlazosDeExcel, ACallThatDoesNotComeBackEndsTheProcessThatWasStarted) {
    ordenar("cuelga=Workbook.Names");
    abrir();
    ASSERT_EQ(procesos().size(), 1U);
    const std::string mensaje = mensajeDe([this] { excel().ValorNombre("bnUltima"); });
    EXPECT_THAT(mensaje,
                AllOf(HasSubstr("no ha respondido en 2 segundos"),
                      HasSubstr("se ha cerrado el Excel que este programa había abierto")));
    EXPECT_THAT(procesos(), IsEmpty());
    EXPECT_EQ(mensajeDe([this] { excel().NombreHoja(); }), mensaje) << "the reason stays";
    EXPECT_EQ(mensajeDe([this] { excel().Guardar(""); }), mensaje);
    leerBien();
}

TEST_F(PlazosDeExcel, AQuestionAboutAMemberThatDoesNotComeBackIsNoDifferent) {
    ordenar("cuelga=?Workbook.Names");
    abrir();
    EXPECT_THAT(mensajeDe([this] { excel().ValorNombre("bnUltima"); }),
                HasSubstr("no ha respondido"));
    EXPECT_THAT(procesos(), IsEmpty());
}

TEST_F(PlazosDeExcel, CellsThatAreNotTakenAreNotSaved) {
    ordenar("cuelga=Range.FormulaR1C1=");
    abrir();
    excel().Celda(2, 1, std::string("a"));
    excel().Celda(2, 2, std::string("b"));
    EXPECT_THAT(mensajeDe([this] { excel().Guardar(""); }), HasSubstr("no ha respondido"));
    EXPECT_THAT(procesos(), IsEmpty());
    EXPECT_EQ(leerCelda("Pesadas.xls", 2, 1), Variante(std::string()));
}

TEST_F(PlazosDeExcel, AWorkbookThatIsNotOpenedInTimeIsToldWithTheReason) {
    plataforma_.paciencia.libro = 1500ms;
    ordenar("cuelga=Workbooks.Open");
    abrir();
    ASSERT_EQ(plataforma_.mensajes.size(), 1U);
    EXPECT_THAT(plataforma_.mensajes.front(), HasSubstr("no ha respondido"));
    EXPECT_THAT(procesos(), IsEmpty());
    leerBien();
}

TEST_F(PlazosDeExcel, ASaveThatDoesNotEndIsGivenUp) {
    plataforma_.paciencia.libro = 1500ms;
    ordenar("cuelga=Workbook.SaveAs");
    abrir();
    EXPECT_THAT(mensajeDe([this] { excel().Guardar(""); }), HasSubstr("no ha respondido"));
    EXPECT_THAT(procesos(), IsEmpty());
}

TEST_F(PlazosDeExcel, OpeningAndSavingMayTakeLongerThanOtherCalls) {
    plataforma_.paciencia.llamada = 1s;
    ordenar("tarda=Workbooks.Open,2000 tarda=Workbook.SaveAs,2000");
    abrir();
    EXPECT_NO_THROW(excel().Guardar(""));
}

TEST_F(PlazosDeExcel, APreviewLastsAsLongAsSomebodyLooksAtIt) {
    plataforma_.paciencia.llamada = 1s;
    ordenar("tarda=Worksheet.PrintPreview,2000");
    abrir();
    EXPECT_NO_THROW(excel().PrintPreview());
    excel().Cerrar();
}

TEST_F(PlazosDeExcel, AnApplicationThatDoesNotQuitIsEnded) {
    ordenar("cuelga=Application.Quit");
    excel().HayExcel();
    EXPECT_THAT(procesos(), IsEmpty());
    ordenar("cuelga=Application.IgnoreRemoteRequests=,2");
    ASSERT_TRUE(leer());
    EXPECT_THAT(mensajeDe([this] { excel().Cerrar(); }), HasSubstr("no ha respondido"));
    EXPECT_THAT(procesos(), IsEmpty());
}

TEST_F(PlazosDeExcel, AnInstanceOfSomebodyElseIsNeverEnded) {
    ComPtr<IDispatch> ajena;
    CLSID clase;
    ASSERT_TRUE(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)));
    ASSERT_EQ(CLSIDFromProgID(L"Excel.Application", &clase), S_OK);
    ASSERT_EQ(CoCreateInstance(clase, nullptr, CLSCTX_SERVER, IID_IDispatch,
                               reinterpret_cast<void**>(ajena.recibir())),
              S_OK);
    const std::set<DWORD> deOtro = procesos();
    ASSERT_EQ(deOtro.size(), 1U);
    {
        const auto sesion = std::make_shared<excel::com::Sesion>(plataforma_.paciencia);
        const excel::com::Despacho aplicacion(sesion, L"Application", ajena);
        const std::string ventana = std::to_string(aplicacion.leer(L"Hwnd").entero());
        // Whatever the reason why a window is not the application's own.
        ordenar("tarda=Workbook.Names,4000 ventana=" + ventana);
        abrir();
        EXPECT_THAT(mensajeDe([this] { excel().ValorNombre("bnUltima"); }),
                    AllOf(HasSubstr("no ha respondido"), HasSubstr("no se ha podido cerrar")));
        EXPECT_NO_THROW(aplicacion.leer(L"Version")) << "the other one goes on";
        aplicacion.llamar(L"Quit");
    }
    ajena = {};
    CoUninitialize();
    std::set<DWORD> restos = procesos();
    for (const DWORD numero : deOtro) restos.erase(numero);
    EXPECT_EQ(restos.size(), 1U) << "it could not be told from others";
    acabarlos(restos);
}

TEST_F(PlazosDeExcel, AnApplicationThatDiesIsToldAndTheNextOneWorks) {
    for (const char* miembro : {"Workbook.Names", "Range.FormulaR1C1=", "Workbook.SaveAs"}) {
        ordenar(std::string("muere=") + miembro);
        abrir();
        excel().Celda(2, 1, std::string("y"));
        EXPECT_THAT(mensajeDe([this] {
                        excel().ValorNombre("bnUltima");
                        excel().Guardar("");
                    }),
                    HasSubstr("Excel se ha cerrado mientras se trabajaba con él"))
            << miembro;
        EXPECT_THAT(procesos(), IsEmpty()) << miembro;
        leerBien();
    }
}

TEST(ProcesoDeExcel, OurOwnProcessIsNoneThatHasBeenStarted) {
    excel::com::ProcesoPropio proceso;
    const HWND ventana =
        CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    ASSERT_NE(ventana, nullptr);
    proceso.reconocer(ventana);
    EXPECT_FALSE(proceso.acabar());
    DestroyWindow(ventana);
    proceso.reconocer(ventana);
    EXPECT_FALSE(proceso.acabar()) << "nobody's window";
}

TEST(VigilanteDeExcel, TellsOnceOfACallThatTakesTooLong) {
    std::promise<void> vencido;
    excel::com::Vigilante vigilante([&] { vencido.set_value(); });
    vigilante.armar(10ms);
    ASSERT_EQ(vencido.get_future().wait_for(30s), std::future_status::ready);
    EXPECT_TRUE(vigilante.desarmar());
    EXPECT_FALSE(vigilante.desarmar()) << "that was another call";
}

TEST(VigilanteDeExcel, SaysNothingOfCallsThatComeBack) {
    std::atomic<int> veces = 0;
    {
        excel::com::Vigilante vigilante([&] { ++veces; });
        for (int vez = 0; vez < 1000; ++vez) {
            vigilante.armar(1h);
            EXPECT_FALSE(vigilante.desarmar());
        }
        vigilante.armar(0ms);
        EXPECT_FALSE(vigilante.desarmar());
    }
    EXPECT_EQ(veces, 0);
}

}  // namespace
}  // namespace bn::prueba
