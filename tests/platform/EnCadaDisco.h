// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "platform/Ficheros.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/DiscoSimulado.h"

namespace bn::prueba {

/// A disk with an empty folder, and a way to its files that no code under test has a part in.
class DiscoConCarpeta {
 public:
    DiscoConCarpeta() = default;
    DiscoConCarpeta(const DiscoConCarpeta&) = delete;
    DiscoConCarpeta& operator=(const DiscoConCarpeta&) = delete;
    virtual ~DiscoConCarpeta() = default;

    virtual Disco& disco() = 0;
    virtual std::filesystem::path ruta() const = 0;
    virtual std::vector<std::string> nombres() const = 0;
    virtual std::string leer(const std::filesystem::path& ruta) const = 0;
    virtual void escribir(const std::filesystem::path& ruta, const std::string& bytes) = 0;
    virtual void crearCarpeta(const std::filesystem::path& ruta) = 0;
};

class DelSistema : public DiscoConCarpeta {
 public:
    Disco& disco() override { return discoDelSistema(); }
    std::filesystem::path ruta() const override { return carpeta_.ruta(); }
    std::vector<std::string> nombres() const override { return carpeta_.nombres(); }
    std::string leer(const std::filesystem::path& ruta) const override { return leerFichero(ruta); }
    void escribir(const std::filesystem::path& ruta, const std::string& bytes) override {
        escribirFichero(ruta, bytes);
    }
    void crearCarpeta(const std::filesystem::path& ruta) override {
        std::filesystem::create_directory(ruta);
    }

 private:
    CarpetaTemporal carpeta_;
};

class Simulado : public DiscoConCarpeta {
 public:
    Simulado() {
        disco_.crearCarpeta(".");
        disco_.crearCarpeta(ruta());
    }

    Disco& disco() override { return disco_; }
    std::filesystem::path ruta() const override { return std::filesystem::path(u8"/Báscula ñ"); }
    std::vector<std::string> nombres() const override { return disco_.nombres(ruta()); }
    std::string leer(const std::filesystem::path& ruta) const override {
        return disco_.contenido(ruta);
    }
    void escribir(const std::filesystem::path& ruta, const std::string& bytes) override {
        disco_.poner(ruta, bytes);
    }
    void crearCarpeta(const std::filesystem::path& ruta) override { disco_.crearCarpeta(ruta); }

 private:
    DiscoSimulado disco_;
};

/// Cases that hold on the system's disk and on the simulated one alike, which is what makes the
/// second one worth anything.
class EnCadaDisco : public testing::TestWithParam<std::string> {
 protected:
    /// The folder's own face, as the cases use it.
    struct Carpeta {
        DiscoConCarpeta& de;
        std::filesystem::path ruta() const { return de.ruta(); }
        std::filesystem::path operator/(const std::string& nombre) const {
            return de.ruta() / ficheros::aRuta(nombre);
        }
        std::vector<std::string> nombres() const { return de.nombres(); }
    };

    std::string leerFichero(const std::filesystem::path& ruta) const {
        return entorno_->leer(ruta);
    }
    void escribirFichero(const std::filesystem::path& ruta, const std::string& bytes) {
        entorno_->escribir(ruta, bytes);
    }
    void crearCarpeta(const std::filesystem::path& ruta) { entorno_->crearCarpeta(ruta); }

 private:
    static std::unique_ptr<DiscoConCarpeta> nuevo() {
        if (GetParam() == "simulado") return std::make_unique<Simulado>();
        return std::make_unique<DelSistema>();
    }

    std::unique_ptr<DiscoConCarpeta> entorno_ = nuevo();

 protected:
    Disco& disco = entorno_->disco();
    Carpeta carpeta{*entorno_};
};

}  // namespace bn::prueba
