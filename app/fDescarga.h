// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractButton>
#include <QWidget>
#include <functional>
#include <memory>
#include <string>

#include "platform/Plataforma.h"

namespace bn {

/// The main window: shows what the desk does and hands it what the user wants. Closing it ends the
/// program, but not while weighings arrive or are saved.
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
    /// The session ends: for a while closing is not refused, whatever is under way.
    void obedecer();

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
    void mostrarPendientes();
    void descartarPendientes();

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
