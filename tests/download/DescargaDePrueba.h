// SPDX-License-Identifier: MIT
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "download/Descarga.h"
#include "platform/Ficheros.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/ExcelDePrueba.h"
#include "tests/soporte/TramasDePrueba.h"

namespace bn {

inline const char* const kNoContesta = "El indicador no contesta a las peticiones";
inline const char* const kHaDejado = "El indicador ha dejado de enviar tramas injustificadamente";
inline const char* const kInterrumpida =
    "La descarga de pesadas ha sido interrumpida desde el ordenador";

/// A controller with a scripted indicator, writing to a text file only, and all that it has told.
class DescargaPrueba : public testing::Test {
 protected:
    void SetUp() override {
        cfg->UsoExcel(false);
        cfg->ArchivoTexto(ficheros::aTexto(texto));
        des.DatosCfg(cfg);
        des.PesadaRecibida.conectar([this](pesaDX5& pesada) {
            sucesos.push_back("pesada " + std::to_string(pesada.Albaran()) + " van " +
                              std::to_string(des.numRecibidas()));
            enviadoAlAvisar = plataforma.puerto().enviado;
        });
        des.CambioEstado.conectar([this](int32_t& estado) {
            sucesos.push_back("estado " + std::to_string(estado));
            EXPECT_EQ(estado, des.Estado());
            if (alCambiar) alCambiar(estado);
        });
    }
    static std::string datos(int32_t albaran) {
        prueba::PesadaDePrueba pesada;
        pesada.albaran = std::to_string(albaran);
        pesada.fechaHora = "15/03/23 12:00";
        return pesada.datos();
    }
    static std::string linea(int32_t albaran) {
        return "15/03/2023 12:00 1234BCD  000000" + std::to_string(albaran) +
               " 00000011 00000022 00000033      13     100\r\n";
    }
    void empezar() {
        ASSERT_TRUE(des.iniciarProceso());
        enviado();
    }
    void llegaPesada(int32_t albaran) {
        plataforma.puerto().recibir(prueba::trama(datos(albaran)));
    }
    void llegaContador(const std::string& cuenta) {
        plataforma.puerto().recibir(prueba::trama(cuenta));
    }
    void silencio() { plataforma.avanzar(600 * 4); }
    std::string enviado() { return std::exchange(plataforma.puerto().enviado, {}); }
    std::vector<std::string> ocurrido() { return std::exchange(sucesos, {}); }

    prueba::CarpetaTemporal carpeta;
    PlataformaConExcel plataforma{carpeta.ruta()};
    std::filesystem::path texto = carpeta / "Pesadas.txt";
    std::filesystem::path almacen = carpeta / "bnGuardo.txt";
    std::shared_ptr<bn::Setup> cfg = std::make_shared<bn::Setup>(plataforma);
    Descarga des{plataforma};
    std::function<void(int32_t)> alCambiar;
    std::vector<std::string> sucesos;
    std::string enviadoAlAvisar;
};

}  // namespace bn
