// SPDX-License-Identifier: MIT
#include "destinations/excel/com/ExcelCom.h"

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

class AplicacionCom final : public ObjetoCom<excel::Application> {
 public:
    using ObjetoCom::ObjetoCom;
    ~AplicacionCom() override { abandonar(); }

    void DisplayAlerts(bool mostrar) override {
        com().poner(miembro::kDisplayAlerts, argumento(mostrar));
    }
    std::unique_ptr<excel::Workbooks> Workbooks() override {
        return std::make_unique<LibrosCom>(com().objeto(miembro::kWorkbooks, clase::kLibros));
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
    void despedir() const {
        objeto().sesion()->antesDeDespedir();
        objeto().llamar(miembro::kQuit);
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
        intentar([this] { objeto().poner(miembro::kDisplayAlerts, argumento(false)); });
        intentar([this] { despedir(); });
        sesion->terminar();
    }
    template <class Paso>
    static void intentar(const Paso& paso) noexcept {
        try {
            paso();
        } catch (const std::exception&) {
            return;
        }
    }
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
    HRESULT codigo = sesion->insistir(crear);
    // The identifier may stand for a class of its own: what it says there is must open as well.
    if (codigo == REGDB_E_CLASSNOTREG && SUCCEEDED(com::claseDelIdentificador(clase))) {
        codigo = sesion->insistir(crear);
    }
    com::exigirExito(codigo);
    return std::make_unique<com::AplicacionCom>(
        com::Despacho(std::move(sesion), com::clase::kAplicacion, std::move(objeto)));
}

}  // namespace bn::excel
