// SPDX-License-Identifier: MIT
#pragma once

#include <QMessageBox>
#include <QObject>
#include <QPointer>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/Entrega.h"
#include "platform/Plataforma.h"

namespace bn {

/// The platform of the running program: Asio's port, Qt's timers and message boxes, the system's
/// folders. Lives on the user-interface thread and outlives everything it makes.
class PlataformaQt : public Plataforma {
 public:
    /// Reads which spreadsheet backend the run is to use. Throws ErrorFichero.
    PlataformaQt();
    ~PlataformaQt() override;

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
    bool enArranque() const override;
    void enArranque(bool activo) override;

 private:
    class Puerto;

    std::string dispositivo(int16_t canal) const;
    void entregarLoLlegado();
    std::unique_ptr<excel::Application> decidirMotor(bool porIdentificador);

    std::filesystem::path carpeta_;
    Entrega entrega_;
    QObject receptor_;  // on the user-interface thread: what is posted to it runs there
    std::vector<Puerto*> puertos_;
    std::string motor_;
    QPointer<QMessageBox> aviso_;  // the one that is open; it deletes itself
};

}  // namespace bn
