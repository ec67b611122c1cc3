// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>

#include "destinations/excel/ObjectModel.h"
#include "destinations/xls/MotorInterno.h"
#include "platform/Plataforma.h"

namespace bn::banco {

/// A port whose cost is next to nothing: what is measured is the program's own work.
class PuertoDeBanco : public MSComm {
 public:
    /// The bytes arrive in one burst.
    void recibir(const std::string& bytes) {
        recibido_ = bytes;
        OnComm();
    }
    /// The last thing the program sent.
    const std::string& ultimaRespuesta() const { return enviado_; }

    void CommPort(int16_t /*numero*/) override {}
    void Settings(const std::string& /*ajustes*/) override {}
    void PortOpen(bool abrir) override { abierto_ = abrir; }
    bool PortOpen() const override { return abierto_; }
    void Output(const std::string& bytes) override { enviado_ = bytes; }
    std::string Input() override { return std::exchange(recibido_, {}); }
    void InBufferCount(int16_t /*cero*/) override { recibido_.clear(); }
    int16_t CommEvent() const override { return kComEvReceive; }

 private:
    std::string recibido_;
    std::string enviado_;
    bool abierto_ = false;
};

/// A timer that never fires.
class RelojParado : public Temporizador {
 public:
    void Interval(int32_t /*milisegundos*/) override {}
    void Enabled(bool activo) override { activo_ = activo; }
    bool Enabled() const override { return activo_; }

 private:
    bool activo_ = false;
};

/// The outside as a benchmark wants it: a folder, a silent port, the embedded engine.
class PlataformaDeBanco : public Plataforma {
 public:
    explicit PlataformaDeBanco(std::filesystem::path carpeta) : carpeta_(std::move(carpeta)) {}

    /// The last port created.
    PuertoDeBanco& puerto() { return *puerto_; }

    std::filesystem::path carpetaPrograma() const override { return carpeta_; }
    std::unique_ptr<MSComm> nuevoPuerto() override {
        auto puerto = std::make_unique<PuertoDeBanco>();
        puerto_ = puerto.get();
        return puerto;
    }
    std::unique_ptr<Temporizador> nuevoTemporizador() override {
        return std::make_unique<RelojParado>();
    }
    std::unique_ptr<excel::Application> nuevaAplicacionExcel(bool /*porIdentificador*/) override {
        return xls::nuevaAplicacionInterna([] { return kAhora; }, disco());
    }
    double ahora() const override { return kAhora; }
    /// A benchmark that meets an error has measured nothing.
    void mensajeCritico(const std::string& texto) override { throw std::runtime_error(texto); }
    std::string carpetaEspecial(int32_t /*numero*/) const override { return carpeta_.string(); }
    int32_t abrirDocumento(const std::string& /*rutaODireccion*/) override { return 2; }

 private:
    static constexpr double kAhora = 45600.5;

    std::filesystem::path carpeta_;
    PuertoDeBanco* puerto_ = nullptr;
};

/// A folder that goes away with its object.
class CarpetaDeBanco {
 public:
    /// Made inside the folder given.
    explicit CarpetaDeBanco(const std::filesystem::path& padre)
        : ruta_(padre / ("bn-banco-" + std::to_string(std::random_device{}()))) {
        std::filesystem::create_directories(ruta_);
    }
    CarpetaDeBanco(const CarpetaDeBanco&) = delete;
    CarpetaDeBanco& operator=(const CarpetaDeBanco&) = delete;
    ~CarpetaDeBanco() {
        std::error_code sinImportancia;
        std::filesystem::remove_all(ruta_, sinImportancia);
    }

    const std::filesystem::path& ruta() const { return ruta_; }

 private:
    std::filesystem::path ruta_;
};

}  // namespace bn::banco
