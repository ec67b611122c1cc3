// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "platform/Plataforma.h"

namespace bn {

/// A platform whose ports and timers deliver their notifications through a guard, and whose
/// messages go where its owner sends them; everything else it passes on.
class PlataformaVigilada : public Plataforma {
 public:
    using Atender = std::function<void(const std::function<void()>& aviso)>;

    using Mensaje = std::function<void(const std::string& texto)>;

    /// All must outlive it and the ports and timers it makes.
    PlataformaVigilada(Plataforma& plataforma, Atender atender, Mensaje mensaje);

    std::filesystem::path carpetaPrograma() const override;
    std::unique_ptr<MSComm> nuevoPuerto() override;
    std::unique_ptr<Temporizador> nuevoTemporizador() override;
    std::unique_ptr<excel::Application> nuevaAplicacionExcel(bool porIdentificador) override;
    bool esLibroSano(const std::filesystem::path& libro) const override;
    double ahora() const override;
    void mensajeCritico(const std::string& texto) override;
    void avisar(const std::string& texto) override;
    std::string carpetaEspecial(int32_t numero) const override;
    int32_t abrirDocumento(const std::string& rutaODireccion) override;
    Disco& disco() const override;
    bool enArranque() const override;
    void enArranque(bool activo) override;

 private:
    Plataforma& plataforma_;
    Atender atender_;
    Mensaje mensaje_;
};

}  // namespace bn
