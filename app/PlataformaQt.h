// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <filesystem>
#include <string>

#include "platform/Entrega.h"
#include "platform/Plataforma.h"

namespace bn {

/// The platform of the running program: Asio's port, Qt's timers and message boxes, the system's
/// folders. Lives on the user-interface thread and outlives everything it makes.
class PlataformaQt : public Plataforma {
 public:
    /// Decides once, here, which spreadsheet backend the run uses. Throws ErrorFichero.
    PlataformaQt();

    std::filesystem::path carpetaPrograma() const override;
    std::unique_ptr<MSComm> nuevoPuerto() override;
    std::unique_ptr<Temporizador> nuevoTemporizador() override;
    std::unique_ptr<excel::Application> nuevaAplicacionExcel(bool porIdentificador) override;
    double ahora() const override;
    void mensajeCritico(const std::string& texto) override;
    std::string carpetaEspecial(int32_t numero) const override;
    int32_t abrirDocumento(const std::string& rutaODireccion) override;
    bool enArranque() const override;
    void enArranque(bool activo) override;

 private:
    std::string dispositivo(int16_t canal) const;

    std::filesystem::path carpeta_;
    Entrega entrega_;
    QObject receptor_;  // on the user-interface thread: what is posted to it runs there
    std::string motor_;
};

}  // namespace bn
