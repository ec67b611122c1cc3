// SPDX-License-Identifier: MIT
#include "destinations/xls/MotorInterno.h"

#include <utility>

#include "destinations/xls/Errores.h"
#include "destinations/xls/LibroInterno.h"
#include "destinations/xls/RangoInterno.h"
#include "destinations/xls/Sesion.h"

namespace bn::xls {
namespace {

class AplicacionInterna final : public excel::Application {
 public:
    AplicacionInterna(std::function<double()> ahora, Disco& disco)
        : sesion_(std::make_shared<Sesion>(std::move(ahora), disco)) {}
    ~AplicacionInterna() override { sesion_->terminar(); }

    // It never asks anything, so there is nothing to keep quiet; nor has it a window to show.
    void DisplayAlerts(bool /*mostrar*/) override { sesion_->exigirViva(); }
    void Visible(bool /*visible*/) override { sesion_->exigirViva(); }

    std::unique_ptr<excel::Workbooks> Workbooks() override {
        sesion_->exigirViva();
        return std::make_unique<LibrosInternos>(sesion_);
    }

    std::unique_ptr<excel::Range> Selection() override { return rango(seleccion().area); }

    std::unique_ptr<excel::Range> ActiveCell() override {
        const Area area = seleccion().area;
        return rango({area.fila0, area.fila0, area.columna0, area.columna0});
    }

    void CutCopyMode(bool modo) override {
        sesion_->exigirViva();
        if (!modo) sesion_->copiado() = {};
    }

    void Quit() override { sesion_->terminar(); }

 private:
    const AreaDeHoja& seleccion() const {
        sesion_->exigirViva();
        exigirHoja(sesion_->seleccion().hoja);
        return sesion_->seleccion();
    }

    std::unique_ptr<excel::Range> rango(const Area& area) {
        return std::make_unique<RangoInterno>(sesion_, sesion_->seleccion().hoja, area);
    }

    std::shared_ptr<Sesion> sesion_;
};

}  // namespace

std::unique_ptr<excel::Application> nuevaAplicacionInterna(std::function<double()> ahora,
                                                           Disco& disco) {
    return std::make_unique<AplicacionInterna>(std::move(ahora), disco);
}

}  // namespace bn::xls
