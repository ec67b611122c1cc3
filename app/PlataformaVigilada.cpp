// SPDX-License-Identifier: MIT
#include "app/PlataformaVigilada.h"

#include <utility>

#include "destinations/excel/ObjectModel.h"

namespace bn {

namespace {

class PuertoVigilado : public MSComm {
 public:
    PuertoVigilado(std::unique_ptr<MSComm> puerto, const PlataformaVigilada::Atender& atender)
        : puerto_(std::move(puerto)) {
        puerto_->OnComm.conectar([this, &atender] { atender([this] { OnComm(); }); });
    }

    void CommPort(int16_t numero) override { puerto_->CommPort(numero); }
    void Settings(const std::string& ajustes) override { puerto_->Settings(ajustes); }
    void PortOpen(bool abrir) override { puerto_->PortOpen(abrir); }
    bool PortOpen() const override { return puerto_->PortOpen(); }
    void Output(const std::string& bytes) override { puerto_->Output(bytes); }
    std::string Input() override { return puerto_->Input(); }
    void InBufferCount(int16_t cero) override { puerto_->InBufferCount(cero); }
    int16_t CommEvent() const override { return puerto_->CommEvent(); }

 private:
    std::unique_ptr<MSComm> puerto_;
};

class TemporizadorVigilado : public Temporizador {
 public:
    TemporizadorVigilado(std::unique_ptr<Temporizador> temporizador,
                         const PlataformaVigilada::Atender& atender)
        : temporizador_(std::move(temporizador)) {
        temporizador_->Timer.conectar([this, &atender] { atender([this] { Timer(); }); });
    }

    void Interval(int32_t milisegundos) override { temporizador_->Interval(milisegundos); }
    void Enabled(bool activo) override { temporizador_->Enabled(activo); }
    bool Enabled() const override { return temporizador_->Enabled(); }

 private:
    std::unique_ptr<Temporizador> temporizador_;
};

}  // namespace

PlataformaVigilada::PlataformaVigilada(Plataforma& plataforma, Atender atender, Mensaje mensaje)
    : plataforma_(plataforma), atender_(std::move(atender)), mensaje_(std::move(mensaje)) {}

std::filesystem::path PlataformaVigilada::carpetaPrograma() const {
    return plataforma_.carpetaPrograma();
}

std::unique_ptr<MSComm> PlataformaVigilada::nuevoPuerto() {
    return std::make_unique<PuertoVigilado>(plataforma_.nuevoPuerto(), atender_);
}

std::unique_ptr<Temporizador> PlataformaVigilada::nuevoTemporizador() {
    return std::make_unique<TemporizadorVigilado>(plataforma_.nuevoTemporizador(), atender_);
}

std::unique_ptr<excel::Application> PlataformaVigilada::nuevaAplicacionExcel(
    bool porIdentificador) {
    return plataforma_.nuevaAplicacionExcel(porIdentificador);
}

bool PlataformaVigilada::esLibroSano(const std::filesystem::path& libro) const {
    return plataforma_.esLibroSano(libro);
}

double PlataformaVigilada::ahora() const { return plataforma_.ahora(); }

void PlataformaVigilada::mensajeCritico(const std::string& texto) { mensaje_(texto); }

void PlataformaVigilada::avisar(const std::string& texto) { plataforma_.avisar(texto); }

std::string PlataformaVigilada::carpetaEspecial(int32_t numero) const {
    return plataforma_.carpetaEspecial(numero);
}

int32_t PlataformaVigilada::abrirDocumento(const std::string& rutaODireccion) {
    return plataforma_.abrirDocumento(rutaODireccion);
}

Disco& PlataformaVigilada::disco() const { return plataforma_.disco(); }

bool PlataformaVigilada::enArranque() const { return plataforma_.enArranque(); }

void PlataformaVigilada::enArranque(bool activo) { plataforma_.enArranque(activo); }

}  // namespace bn
