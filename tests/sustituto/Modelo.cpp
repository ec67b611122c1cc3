// SPDX-License-Identifier: MIT
#include "tests/sustituto/Modelo.h"

#include <atomic>
#include <memory>
#include <string>
#include <utility>

#include "destinations/xls/MotorInterno.h"
#include "tests/sustituto/LibroSustituto.h"
#include "tests/sustituto/RangoSustituto.h"

namespace bn::sustituto {

namespace {

std::atomic<int64_t> cerradas{0};
// Starts refused since the last one that was not.
std::atomic<int64_t> negadas{0};

class AplicacionSustituto final : public ObjetoSustituto {
 public:
    explicit AplicacionSustituto(std::shared_ptr<Mundo> mundoComun)
        : ObjetoSustituto(std::move(mundoComun), "Application") {
        declararAjustes();
        asignable(L"DisplayAlerts",
                  [this](const VARIANT& valor) { motor().DisplayAlerts(exigirLogico(valor)); });
        asignable(L"CutCopyMode",
                  [this](const VARIANT& valor) { motor().CutCopyMode(exigirLogico(valor)); });
        asignable(L"Visible",
                  [this](const VARIANT& valor) { motor().Visible(exigirLogico(valor)); });
        propiedad(L"Workbooks", "", [this](const Argumentos&) {
            return comoResultado(new LibrosSustituto(mundo(), motor().Workbooks()));
        });
        propiedad(L"Selection", "",
                  [this](const Argumentos&) { return rango("seleccion", motor().Selection()); });
        propiedad(L"ActiveCell", "", [this](const Argumentos&) {
            return rango("celda activa", motor().ActiveCell());
        });
        metodo(L"Quit", "", [this](const Argumentos&) {
            if (mundo()->noAtiendeAOtros) mundo()->diario.anotar("Application: deja de atender");
            motor().Quit();
            ++cerradas;
            return VarianteCom();
        });
    }
    AplicacionSustituto(const AplicacionSustituto&) = delete;
    AplicacionSustituto& operator=(const AplicacionSustituto&) = delete;
    ~AplicacionSustituto() override { mundo()->diario.anotar("Application: fin"); }

 private:
    /// What a workbook that is opened may do, and who the application is; by version.
    void declararAjustes() {
        const int version = mundo()->diario.versionMayor();
        propiedad(L"Version", "", [this](const Argumentos&) {
            return VarianteCom(mundo()->diario.orden("version").value_or("16.0"));
        });
        asignable(L"EnableEvents",
                  [this](const VARIANT& valor) { mundo()->conSucesos = exigirLogico(valor); });
        asignable(L"IgnoreRemoteRequests",
                  [this](const VARIANT& valor) { mundo()->noAtiendeAOtros = exigirLogico(valor); });
        if (version < 10) return;
        mundo()->conMacros = true;
        asignable(L"AutomationSecurity",
                  [this](const VARIANT& valor) { mundo()->conMacros = exigirEntero(valor) != 3; });
        propiedad(L"Hwnd", "", [this](const Argumentos&) { return VarianteCom(ventana()); });
    }

    int32_t ventana() {
        if (const auto ajena = mundo()->diario.orden("ventana")) return std::stoi(*ajena);
        if (!ventana_) {
            ventana_.reset(CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                           nullptr, nullptr));
        }
        return static_cast<int32_t>(reinterpret_cast<INT_PTR>(ventana_.get()));
    }

    struct Destruir {
        using pointer = HWND;
        void operator()(HWND ventana) const { DestroyWindow(ventana); }
    };

    excel::Application& motor() const { return *mundo()->motor; }
    VarianteCom rango(const char* nombre, std::unique_ptr<excel::Range> rangoDelMotor) const {
        return comoResultado(
            new RangoSustituto(mundo(), nombre, std::move(rangoDelMotor), {{1, 1}, {1, 1}}));
    }

    std::unique_ptr<HWND, Destruir> ventana_;
};

double ahora() {
    SYSTEMTIME hora{};
    double dias = 0;
    GetLocalTime(&hora);
    SystemTimeToVariantTime(&hora, &dias);
    return dias;
}

}  // namespace

int64_t aplicacionesCerradas() { return cerradas; }

IDispatch* nuevaAplicacion() {
    auto mundo = std::make_shared<Mundo>();
    if (mundo->diario.ausente(negadas)) {
        ++negadas;
        return nullptr;
    }
    negadas = 0;
    mundo->motor = xls::nuevaAplicacionInterna(ahora, discoDelSistema());
    return new AplicacionSustituto(std::move(mundo));
}

}  // namespace bn::sustituto
