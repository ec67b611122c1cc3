// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractButton>
#include <QWidget>
#include <functional>
#include <memory>
#include <string>

#include "platform/Plataforma.h"

namespace bn {

/// The main window: owns the settings and the download controller, starts downloads by its button
/// or by the automatic countdown, and shows how they go. Closing it ends the program.
class fDescarga : public QWidget {
 public:
    /// Reads the settings; throws when they cannot be understood.
    explicit fDescarga(Plataforma& plataforma, QWidget* padre = nullptr);
    ~fDescarga() override;

    /// Shown from the start, unless the settings want it hidden.
    void presentar();
    /// Brings the window back, from wherever it is.
    void volverAVer();
    /// Only the notification area keeps it; minimised where there is none.
    void ocultar();

 protected:
    void closeEvent(QCloseEvent* evento) override;
    void contextMenuEvent(QContextMenuEvent* evento) override;

 private:
    struct Interior;

    void mostrarDestinos(bool hayExcel);
    void conectarControles();
    void alPulsar(QAbstractButton* boton, std::function<void()> accion);
    void conectarBotones();
    void conectarDestinos();
    void conectarMenu();
    void crearControlador();
    void recogerRestos();
    void empezarDeNuevo();

    void mDes_PesadaRecibida();
    void mDes_CambioEstado(int32_t estado);
    void mostrarBotones(int32_t estado);
    void conservarFoco(const QWidget* antes, bool vuelveDesc);
    void mostrarFase(int32_t fase);
    void mostrarResultado(int32_t estado);

    void mostrarCuenta();
    void pulsarCuenta();
    void cambiarInicio();
    void cambiarDestinos();
    void refrescarRotulos();
    void ver(const std::string& documento);
    void editarComunicacion();
    void editarExcel();
    void editarTexto();

    void avisarDelFallo(int32_t estado);

    std::unique_ptr<Interior> interior_;
};

}  // namespace bn
