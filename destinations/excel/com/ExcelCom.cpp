// SPDX-License-Identifier: MIT
#include "destinations/excel/com/ExcelCom.h"

#include <string>
#include <utility>

#include "destinations/excel/com/Despacho.h"
#include "destinations/excel/com/ErrorCom.h"
#include "destinations/excel/com/LibroCom.h"
#include "destinations/excel/com/Miembros.h"
#include "destinations/excel/com/RangoCom.h"
#include "destinations/excel/com/Sesion.h"

namespace bn::excel {

namespace com {

namespace {

/// The class of "Excel.Application", the same for every version.
constexpr CLSID kClsidExcel{0x00024500, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
constexpr const wchar_t* kIdentificadorExcel = L"Excel.Application";
/// msoAutomationSecurityForceDisable.
constexpr int32_t kSinMacros = 3;

class AplicacionCom final : public ObjetoCom<excel::Application> {
 public:
    using ObjetoCom::ObjetoCom;
    ~AplicacionCom() override { abandonar(); }

    /// Learns which process it runs in, to be able to end it. Throws ErrorExcel when it does not
    /// come back.
    void reconocerProceso() {
        try {
            if (!objeto().conoce(miembro::kHwnd)) return;
            const int32_t numero = objeto().leer(miembro::kHwnd).entero();
            objeto().sesion()->reconocer(static_cast<HWND>(LongToHandle(numero)));
        } catch (const ErrorExcel&) {
            // Unknown, it is never ended; all else works as well.
            objeto().sesion()->exigirViva();
        }
    }

    void DisplayAlerts(bool mostrar) override {
        try {
            com().poner(miembro::kDisplayAlerts, argumento(mostrar));
            errorDeAvisos_.clear();
        } catch (const ErrorExcel& e) {
            errorDeAvisos_ = e.what();
            throw;
        }
    }
    std::unique_ptr<excel::Workbooks> Workbooks() override {
        const Despacho& aplicacion = com();
        // An instance that may ask what nobody sees is not to be given a workbook, also when its
        // owner has passed over the failure.
        if (!errorDeAvisos_.empty()) throw ErrorExcel(errorDeAvisos_);
        if (!preparada_) preparar();
        return std::make_unique<LibrosCom>(aplicacion.objeto(miembro::kWorkbooks, clase::kLibros),
                                           aplicacion);
    }
    std::unique_ptr<excel::Range> Selection() override { return area(miembro::kSelection); }
    std::unique_ptr<excel::Range> ActiveCell() override { return area(miembro::kActiveCell); }
    void CutCopyMode(bool modo) override { com().poner(miembro::kCutCopyMode, argumento(modo)); }
    void Visible(bool visible) override { com().poner(miembro::kVisible, argumento(visible)); }

    void Quit() override {
        const auto& sesion = objeto().sesion();
        sesion->exigirViva();
        // What was not saved is dropped: what has not even been written is not written for it.
        despedir();
        sesion->terminar();
    }

 private:
    /// Nothing of a workbook that is opened may run or ask.
    void preparar() {
        objeto().ponerSiLaConoce(miembro::kAutomationSecurity, argumento(kSinMacros));
        com::intentar(
            [this] { objeto().ponerSiLaConoce(miembro::kEnableEvents, argumento(false)); });
        // A workbook that the user opens with a double click would open here, where it is not
        // seen, and stand in the way of the end.
        noAtiendeAOtros_ = true;
        com::intentar(
            [this] { objeto().ponerSiLaConoce(miembro::kIgnoreRemoteRequests, argumento(true)); });
        preparada_ = true;
    }

    void despedir() {
        objeto().sesion()->antesDeDespedir();
        if (noAtiendeAOtros_) volverAAtender();
        objeto().llamar(miembro::kQuit);
    }
    /// The application keeps this setting beyond its end, and then ignores every double click.
    void volverAAtender() {
        try {
            objeto().ponerSiLaConoce(miembro::kIgnoreRemoteRequests, argumento(false));
            noAtiendeAOtros_ = false;
        } catch (const ErrorExcel&) {
            // A process that stays would be worse.
            objeto().sesion()->exigirViva();
        }
    }

    std::unique_ptr<excel::Range> area(const wchar_t* miembro) const {
        return std::make_unique<AreaCom>(com().objeto(miembro, clase::kRango));
    }

    /// An invisible instance that nobody has quit would stay for ever, and so would its question
    /// whether to save.
    void abandonar() noexcept {
        const auto& sesion = objeto().sesion();
        try {
            sesion->exigirViva();
        } catch (const ErrorExcel&) {
            return;  // the usual road: it has been quit
        }
        // Nobody is left to tell a failure to, and the second step is worth trying without the
        // first.
        procurar([this] { objeto().poner(miembro::kDisplayAlerts, argumento(false)); });
        procurar([this] { despedir(); });
        sesion->terminar();
    }
    template <class Paso>
    static void procurar(const Paso& paso) noexcept {
        try {
            paso();
        } catch (const std::exception&) {
            return;
        }
    }

    std::string errorDeAvisos_;
    bool preparada_ = false;
    bool noAtiendeAOtros_ = false;
};

HRESULT claseDelIdentificador(CLSID& clase) { return CLSIDFromProgID(kIdentificadorExcel, &clase); }

}  // namespace

}  // namespace com

std::unique_ptr<Application> nuevaAplicacionCom(bool porIdentificador, const Paciencia& paciencia) {
    auto sesion = std::make_shared<com::Sesion>(paciencia);
    CLSID clase = com::kClsidExcel;
    if (porIdentificador) com::exigirExito(com::claseDelIdentificador(clase));
    com::ComPtr<IDispatch> objeto;
    const auto crear = [&] {
        return CoCreateInstance(clase, nullptr, CLSCTX_SERVER, IID_IDispatch,
                                reinterpret_cast<void**>(objeto.recibir()));
    };
    HRESULT codigo = S_OK;
    {
        const com::Plazo plazo(*sesion, paciencia.arranque);
        codigo = sesion->insistir(crear);
        // The identifier may stand for a class of its own: what it says there must open as well.
        if (codigo == REGDB_E_CLASSNOTREG && SUCCEEDED(com::claseDelIdentificador(clase))) {
            codigo = sesion->insistir(crear);
        }
    }
    com::exigirExito(codigo);
    auto aplicacion = std::make_unique<com::AplicacionCom>(
        com::Despacho(std::move(sesion), com::clase::kAplicacion, std::move(objeto)));
    aplicacion->reconocerProceso();
    return aplicacion;
}

}  // namespace bn::excel
