// SPDX-License-Identifier: MIT
#include "tests/sustituto/Modelo.h"

#include <atomic>
#include <utility>
#include <vector>

#include "destinations/xls/MotorInterno.h"
#include "tests/sustituto/HojaSustituto.h"
#include "tests/sustituto/RangoSustituto.h"

namespace bn::sustituto {

namespace {

std::atomic<int64_t> cerradas{0};

class NombreSustituto final : public ObjetoSustituto {
 public:
    NombreSustituto(std::shared_ptr<Mundo> mundoComun, std::unique_ptr<excel::NombreDefinido> motor)
        : ObjetoSustituto(std::move(mundoComun), "Name"), motor_(std::move(motor)) {
        propiedad(L"Name", "", [this](const Argumentos&) { return VarianteCom(motor_->Name()); });
        propiedad(L"RefersTo", "",
                  [this](const Argumentos&) { return VarianteCom(motor_->RefersTo()); });
        asignable(L"RefersTo",
                  [this](const VARIANT& valor) { motor_->RefersTo(exigirTexto(valor)); });
    }

 private:
    std::unique_ptr<excel::NombreDefinido> motor_;
};

class NombresSustituto final : public ObjetoSustituto {
 public:
    NombresSustituto(std::shared_ptr<Mundo> mundoComun, std::unique_ptr<excel::Names> motor)
        : ObjetoSustituto(std::move(mundoComun), "Names"), motor_(std::move(motor)) {
        enumerable([this] {
            std::vector<ObjetoSustituto*> nombres;
            for (auto& nombre : motor_->enumerar()) {
                nombres.push_back(new NombreSustituto(mundo(), std::move(nombre)));
            }
            return nombres;
        });
        metodoConNombres(L"Add", {L"Name", L"RefersTo"}, [this](const Argumentos& argumentos) {
            motor_->Add(exigirTexto(*argumentos[0]), exigirTexto(*argumentos[1]));
            return VarianteCom();
        });
    }

 private:
    std::unique_ptr<excel::Names> motor_;
};

class LibroSustituto final : public ObjetoSustituto {
 public:
    LibroSustituto(std::shared_ptr<Mundo> mundoComun, std::unique_ptr<excel::Workbook> motor)
        : ObjetoSustituto(std::move(mundoComun), "Workbook"), motor_(std::move(motor)) {
        propiedad(L"Worksheets", "", [this](const Argumentos&) {
            return comoResultado(new HojasSustituto(mundo(), motor_->Worksheets()));
        });
        propiedad(L"Names", "", [this](const Argumentos&) {
            return comoResultado(new NombresSustituto(mundo(), motor_->Names()));
        });
        propiedad(L"Name", "", [this](const Argumentos&) { return VarianteCom(motor_->Name()); });
        metodo(L"SaveAs", "rmmmmmrmmmmm", [this](const Argumentos& argumentos) {
            motor_->SaveAs(exigirTexto(*argumentos[0]), exigirEntero(*argumentos[6]));
            return VarianteCom();
        });
        metodo(L"Close", "mmm", [this](const Argumentos&) {
            motor_->Close();
            return VarianteCom();
        });
    }

 private:
    std::unique_ptr<excel::Workbook> motor_;
};

class LibrosSustituto final : public ObjetoSustituto {
 public:
    LibrosSustituto(std::shared_ptr<Mundo> mundoComun, std::unique_ptr<excel::Workbooks> motor)
        : ObjetoSustituto(std::move(mundoComun), "Workbooks"), motor_(std::move(motor)) {
        metodo(L"Open", "rmmmmmmmmmmmmmm", [this](const Argumentos& argumentos) {
            return libro(motor_->Open(exigirTexto(*argumentos[0])));
        });
        metodo(L"Add", "o", [this](const Argumentos& argumentos) {
            const bool conPlantilla = V_VT(argumentos[0]) != VT_ERROR;
            return libro(conPlantilla ? motor_->Add(exigirTexto(*argumentos[0])) : motor_->Add());
        });
        propiedad(L"Item", "r", [this](const Argumentos& argumentos) {
            return libro(motor_->Item(exigirEntero(*argumentos[0])));
        });
    }

 private:
    VarianteCom libro(std::unique_ptr<excel::Workbook> libroDelMotor) const {
        return comoResultado(new LibroSustituto(mundo(), std::move(libroDelMotor)));
    }

    std::unique_ptr<excel::Workbooks> motor_;
};

class AplicacionSustituto final : public ObjetoSustituto {
 public:
    explicit AplicacionSustituto(std::shared_ptr<Mundo> mundoComun)
        : ObjetoSustituto(std::move(mundoComun), "Application") {
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
            motor().Quit();
            ++cerradas;
            return VarianteCom();
        });
    }
    AplicacionSustituto(const AplicacionSustituto&) = delete;
    AplicacionSustituto& operator=(const AplicacionSustituto&) = delete;
    ~AplicacionSustituto() override { mundo()->diario.anotar("Application: fin"); }

 private:
    excel::Application& motor() const { return *mundo()->motor; }
    VarianteCom rango(const char* nombre, std::unique_ptr<excel::Range> rangoDelMotor) const {
        return comoResultado(
            new RangoSustituto(mundo(), nombre, std::move(rangoDelMotor), {{1, 1}, {1, 1}}));
    }
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
    if (mundo->diario.ausente()) return nullptr;
    mundo->motor = xls::nuevaAplicacionInterna(ahora);
    return new AplicacionSustituto(std::move(mundo));
}

}  // namespace bn::sustituto
