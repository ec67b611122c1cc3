// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>
#include <memory>

#include "platform/Plataforma.h"

namespace bn {

/// The main window: owns the settings and the download controller, starts downloads by its button
/// or by the automatic countdown, and shows how they go. Closing it ends the program.
class fDescarga : public QWidget {
 public:
    /// Reads the settings; throws when they cannot be understood.
    explicit fDescarga(Plataforma& plataforma, QWidget* padre = nullptr);
    ~fDescarga() override;

 private:
    struct Interior;

    void conectarControles();
    void crearControlador();
    void recogerRestos();
    void empezarDeNuevo();

    void mDes_PesadaRecibida();
    void mDes_CambioEstado(int32_t estado);
    void mostrarBotones(int32_t estado);
    void mostrarFase(int32_t fase);
    void mostrarResultado(int32_t estado);

    void mostrarCuenta();
    void pulsarCuenta();
    void cambiarDestinos();
    void refrescarRotulos();

    std::unique_ptr<Interior> interior_;
};

}  // namespace bn
