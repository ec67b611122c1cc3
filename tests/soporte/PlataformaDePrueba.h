// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "platform/Entrega.h"
#include "platform/Plataforma.h"

namespace bn {

class PlataformaDePrueba;

/// A serial port without a line: what the program sends is kept, what it receives is scripted.
class PuertoDePrueba : public MSComm {
 public:
    explicit PuertoDePrueba(PlataformaDePrueba& plataforma);
    ~PuertoDePrueba() override;

    std::string enviado;  ///< every byte the program has sent
    std::string ajustes;
    int16_t numero = 0;
    /// Non-empty: that step fails with it.
    std::string errorAlAbrir, errorEnNumero, errorEnAjustes;
    int16_t evento = kComEvReceive;  ///< what CommEvent answers

    /// Bytes arrive in one burst: one OnComm.
    void recibir(const std::string& bytes);

    void CommPort(int16_t canal) override;
    void Settings(const std::string& parametros) override;
    void PortOpen(bool abrir) override;
    bool PortOpen() const override;
    void Output(const std::string& bytes) override;
    std::string Input() override;
    void InBufferCount(int16_t cero) override;
    int16_t CommEvent() const override;

 private:
    PlataformaDePrueba& plataforma_;
    std::shared_ptr<bool> vivo_ = std::make_shared<bool>(true);
    std::string recibido_;
    bool abierto_ = false;
};

/// The outside as a test wants it: virtual time, a scripted port, a folder of the test's own.
class PlataformaDePrueba : public Plataforma {
 public:
    explicit PlataformaDePrueba(std::filesystem::path carpeta);
    ~PlataformaDePrueba() override;

    /// The last port created.
    PuertoDePrueba& puerto();
    /// Has the program keep its files on this disk, which must outlive it; the system's until then.
    void usarDisco(Disco& disco) { disco_ = &disco; }
    /// Lets virtual time pass; the timers fire in order. horaActual stays as set.
    void avanzar(int32_t milisegundos);

    double horaActual = 0;              ///< what ahora() answers
    std::vector<std::string> mensajes;  ///< every mensajeCritico
    /// Which spreadsheet backend nuevaAplicacionExcel gives; "ninguno" throws.
    std::string motor = "interno";
    std::string documentos;             ///< what carpetaEspecial(5) answers
    std::vector<std::string> abiertos;  ///< every abrirDocumento
    int32_t respuestaAbrir = 33;        ///< what abrirDocumento answers
    bool arranque = false;              ///< whether the program starts at logon
    std::string errorEnArranque;        ///< non-empty: changing that fails with it

    std::filesystem::path carpetaPrograma() const override;
    std::unique_ptr<MSComm> nuevoPuerto() override;
    std::unique_ptr<Temporizador> nuevoTemporizador() override;
    std::unique_ptr<excel::Application> nuevaAplicacionExcel(bool porIdentificador) override;
    bool esLibroSano(const std::filesystem::path& libro) const override;
    double ahora() const override;
    void mensajeCritico(const std::string& texto) override;
    std::string carpetaEspecial(int32_t numero) const override;
    int32_t abrirDocumento(const std::string& rutaODireccion) override;
    Disco& disco() const override { return *disco_; }
    bool enArranque() const override { return arranque; }
    void enArranque(bool activo) override;

 private:
    friend class PuertoDePrueba;
    class Reloj;

    std::filesystem::path carpeta_;
    Disco* disco_ = &discoDelSistema();
    Entrega entrega_;
    PuertoDePrueba* puerto_ = nullptr;
    std::unique_ptr<Reloj> reloj_;
};

}  // namespace bn
