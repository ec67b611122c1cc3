// SPDX-License-Identifier: MIT
#include "tests/sustituto/LibroSustituto.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "tests/sustituto/HojaSustituto.h"

namespace bn::sustituto {

namespace {

constexpr int32_t kExcel8 = 56;
constexpr int kExcel2007 = 12;

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

/// A workbook, with the format in which it is saved when nothing else is said.
class LibroSustituto final : public ObjetoSustituto {
 public:
    LibroSustituto(std::shared_ptr<Mundo> mundoComun, std::unique_ptr<excel::Workbook> motor,
                   bool nuevo)
        : ObjetoSustituto(std::move(mundoComun), "Workbook"),
          motor_(std::move(motor)),
          enFormatoNuevo_(nuevo && version() >= kExcel2007),
          soloLectura_(!nuevo && mundo()->diario.orden("sololectura")) {
        propiedad(L"Worksheets", "", [this](const Argumentos&) {
            return comoResultado(new HojasSustituto(mundo(), motor_->Worksheets()));
        });
        propiedad(L"Names", "", [this](const Argumentos&) {
            return comoResultado(new NombresSustituto(mundo(), motor_->Names()));
        });
        propiedad(L"Name", "", [this](const Argumentos&) { return VarianteCom(motor_->Name()); });
        propiedad(L"ReadOnly", "", [this](const Argumentos&) { return VarianteCom(soloLectura_); });
        propiedad(L"WriteReservedBy", "", [this](const Argumentos&) {
            return VarianteCom(mundo()->diario.orden("sololectura").value_or(""));
        });
        if (version() >= kExcel2007) {
            asignable(L"CheckCompatibility",
                      [this](const VARIANT& valor) { preguntaAlGuardar_ = exigirLogico(valor); });
        }
        metodo(L"SaveAs", "rommmmrmmmmm", [this](const Argumentos& argumentos) {
            guardar(exigirTexto(*argumentos[0]), *argumentos[1], exigirEntero(*argumentos[6]));
            return VarianteCom();
        });
        metodo(L"Close", "mmm", [this](const Argumentos&) {
            motor_->Close();
            return VarianteCom();
        });
    }

 private:
    int version() const { return mundo()->diario.versionMayor(); }

    void guardar(const std::string& archivo, const VARIANT& formato, int32_t acceso) {
        if (soloLectura_) throw excel::ErrorExcel("El libro es de solo lectura");
        if (preguntaAlGuardar_ && version() >= kExcel2007) {
            throw excel::ErrorExcel("Comprobador de compatibilidad");
        }
        if (V_VT(&formato) != VT_ERROR) {
            const bool loTiene = exigirEntero(formato) == kExcel8 && version() >= kExcel2007;
            if (!loTiene) throw excel::ErrorExcel("No tiene ese formato");
            enFormatoNuevo_ = false;
        }
        motor_->SaveAs(archivo, acceso);
        if (!enFormatoNuevo_) return;
        // The engine has only the old one: this is what the newer one begins with.
        std::ofstream salida(std::filesystem::path(excel::com::aAncho(archivo)), std::ios::binary);
        salida << "PK\x03\x04";
    }

    std::unique_ptr<excel::Workbook> motor_;
    bool enFormatoNuevo_;
    bool soloLectura_;
    bool preguntaAlGuardar_ = true;
};

}  // namespace

LibrosSustituto::LibrosSustituto(std::shared_ptr<Mundo> mundoComun,
                                 std::unique_ptr<excel::Workbooks> motor)
    : ObjetoSustituto(std::move(mundoComun), "Workbooks"), motor_(std::move(motor)) {
    // File name, links, format, two passwords, read-only recommendation.
    metodo(L"Open", "rrmmrrrmmmmmmmm",
           [this](const Argumentos& argumentos) { return abrir(argumentos); });
    metodo(L"Add", "o", [this](const Argumentos& argumentos) {
        const bool conPlantilla = V_VT(argumentos[0]) != VT_ERROR;
        return comoResultado(new LibroSustituto(
            mundo(), conPlantilla ? motor_->Add(exigirTexto(*argumentos[0])) : motor_->Add(),
            true));
    });
    propiedad(L"Item", "r", [this](const Argumentos& argumentos) {
        return comoResultado(
            new LibroSustituto(mundo(), motor_->Item(exigirEntero(*argumentos[0])), false));
    });
}

VarianteCom LibrosSustituto::abrir(const Argumentos& argumentos) const {
    const std::string archivo = exigirTexto(*argumentos[0]);
    const bool pregunta = exigirEntero(*argumentos[1]) != 0 ||
                          exigirTexto(*argumentos[4]).empty() ||
                          exigirTexto(*argumentos[5]).empty() || !exigirLogico(*argumentos[6]);
    if (pregunta) throw excel::ErrorExcel("Una pregunta que nadie ve");
    const Mundo& estado = *mundo();
    if (estado.conMacros || estado.conSucesos || !estado.noAtiendeAOtros) {
        throw excel::ErrorExcel("Un libro que hace lo que quiere");
    }
    return comoResultado(new LibroSustituto(mundo(), motor_->Open(archivo), false));
}

}  // namespace bn::sustituto
