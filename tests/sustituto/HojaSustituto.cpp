// SPDX-License-Identifier: MIT
#include "tests/sustituto/HojaSustituto.h"

#include <utility>
#include <vector>

#include "tests/sustituto/RangoSustituto.h"

namespace bn::sustituto {

namespace {

constexpr int32_t kFilas = 65536;
constexpr int32_t kColumnas = 256;

class SaltosSustituto final : public ObjetoSustituto {
 public:
    SaltosSustituto(std::shared_ptr<Mundo> mundoComun, std::unique_ptr<excel::HPageBreaks> motor)
        : ObjetoSustituto(std::move(mundoComun), "HPageBreaks"), motor_(std::move(motor)) {
        metodoConNombres(L"Add", {L"Before"}, [this](const Argumentos& argumentos) {
            motor_->Add(exigirObjeto<RangoSustituto>(*argumentos[0]).motor());
            return VarianteCom();
        });
    }

 private:
    std::unique_ptr<excel::HPageBreaks> motor_;
};

}  // namespace

HojaSustituto::HojaSustituto(std::shared_ptr<Mundo> mundoComun,
                             std::unique_ptr<excel::Worksheet> motor)
    : ObjetoSustituto(std::move(mundoComun), "Worksheet"), motor_(std::move(motor)) {
    propiedad(L"Name", "", [this](const Argumentos&) { return VarianteCom(motor_->Name()); });
    asignable(L"Name", [this](const VARIANT& valor) { motor_->Name(exigirTexto(valor)); });
    declararAreas();
    declararMetodos();
}

VarianteCom HojaSustituto::rango(const std::string& nombre,
                                 std::unique_ptr<excel::Range> rangoDelMotor,
                                 const excel::com::Area& area) const {
    return comoResultado(new RangoSustituto(mundo(), nombre, std::move(rangoDelMotor), area));
}

VarianteCom HojaSustituto::filas(const VARIANT& cuales) const {
    if (V_VT(&cuales) == VT_BSTR) {
        const std::string texto = exigirTexto(cuales);
        return rango(texto, motor_->Rows(texto), areaDeReferencia(texto));
    }
    const int32_t fila = exigirEntero(cuales);
    const std::string numero = std::to_string(fila);
    return rango(numero + ":" + numero, motor_->Rows(fila), {{fila, 1}, {fila, kColumnas}});
}

void HojaSustituto::declararAreas() {
    propiedad(L"Cells", "", [this](const Argumentos&) {
        return rango("todas", motor_->Cells(), {{1, 1}, {kFilas, kColumnas}});
    });
    propiedad(L"Columns", "r", [this](const Argumentos& argumentos) {
        const int32_t columna = exigirEntero(*argumentos[0]);
        return rango("columna " + std::to_string(columna), motor_->Columns(columna),
                     {{1, columna}, {kFilas, columna}});
    });
    propiedad(L"Rows", "r", [this](const Argumentos& argumentos) { return filas(*argumentos[0]); });
    propiedad(L"Range", "rm", [this](const Argumentos& argumentos) {
        const std::string texto = exigirTexto(*argumentos[0]);
        return rango(texto, motor_->Range(texto), areaDeReferencia(texto));
    });
    propiedad(L"HPageBreaks", "", [this](const Argumentos&) {
        return comoResultado(new SaltosSustituto(mundo(), motor_->HPageBreaks()));
    });
}

void HojaSustituto::declararMetodos() {
    metodo(L"Delete", "", [this](const Argumentos&) {
        motor_->Delete();
        return VarianteCom();
    });
    metodo(L"Paste", "mm", [this](const Argumentos&) {
        motor_->Paste();
        return VarianteCom();
    });
    // The engine has no printer; the log is all there is to see.
    metodo(L"PrintOut", "mmrmmmrm", [](const Argumentos& argumentos) {
        exigirEntero(*argumentos[2]);
        exigirLogico(*argumentos[6]);
        return VarianteCom();
    });
    metodo(L"PrintPreview", "m", [](const Argumentos&) { return VarianteCom(); });
}

HojasSustituto::HojasSustituto(std::shared_ptr<Mundo> mundoComun,
                               std::unique_ptr<excel::Sheets> motor)
    : ObjetoSustituto(std::move(mundoComun), "Sheets"), motor_(std::move(motor)) {
    propiedad(L"Count", "", [this](const Argumentos&) { return VarianteCom(motor_->Count()); });
    propiedad(L"Item", "r", [this](const Argumentos& argumentos) {
        return comoResultado(
            new HojaSustituto(mundo(), motor_->Item(exigirEntero(*argumentos[0]))));
    });
    metodo(L"Add", "mrmm", [this](const Argumentos& argumentos) {
        auto& detras = exigirObjeto<HojaSustituto>(*argumentos[1]);
        return comoResultado(new HojaSustituto(mundo(), motor_->Add(detras.motor())));
    });
    enumerable([this] {
        std::vector<ObjetoSustituto*> hojas;
        for (auto& hoja : motor_->enumerar()) {
            hojas.push_back(new HojaSustituto(mundo(), std::move(hoja)));
        }
        return hojas;
    });
}

}  // namespace bn::sustituto
