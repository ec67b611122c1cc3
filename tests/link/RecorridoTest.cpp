// SPDX-License-Identifier: MIT
// What the channel gives its user over random traffic: whole cycles with every kind of disturbance.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "link/fComm.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/PlataformaDePrueba.h"
#include "tests/soporte/TramasDePrueba.h"

namespace bn {
namespace {

using prueba::kAck;
using prueba::kNak;
using prueba::PesadaDePrueba;
using prueba::trama;

/// Sends a frame in random pieces, spoilt as often as chance wants, until it is acknowledged.
class IndicadorRevoltoso {
 public:
    IndicadorRevoltoso(PlataformaDePrueba& plataforma, unsigned semilla)
        : plataforma_(plataforma), azar_(semilla) {}

    /// False when the cycle has ended before the frame was acknowledged.
    bool entregar(const std::string& entera, const bool& terminado) {
        while (!terminado) {
            std::string bytes = entera;
            // Three spoilt ones in a row at most: the fourth attempt must find a good one.
            if (seguidas_ < 3 && uno(3) == 0) {
                ++seguidas_;
                bytes[uno(bytes.size())] ^= static_cast<char>(1 + uno(255));
            } else {
                seguidas_ = 0;
            }
            enTrozos(bytes);
            const std::string respuesta = std::exchange(plataforma_.puerto().enviado, {});
            if (respuesta == kAck) return true;
            if (respuesta.empty()) plataforma_.avanzar(500);  // its end was spoilt: silence
            if (respuesta.empty()) plataforma_.puerto().enviado.clear();
        }
        return false;
    }

 private:
    std::size_t uno(std::size_t hasta) {
        return std::uniform_int_distribution<std::size_t>(0, hasta - 1)(azar_);
    }

    void enTrozos(const std::string& bytes) {
        for (std::size_t desde = 0; desde < bytes.size();) {
            const std::size_t cuantos = 1 + uno(bytes.size() - desde);
            plataforma_.puerto().recibir(bytes.substr(desde, cuantos));
            desde += cuantos;
        }
        plataforma_.puerto().recibir("");  // what a spoilt byte cut in two waits for this
    }

    PlataformaDePrueba& plataforma_;
    std::mt19937 azar_;
    int seguidas_ = 0;
};

TEST(RecorridoDelCanal, AcceptsEveryWeighingOnceAndInOrderHoweverTheLineMisbehaves) {
    int completos = 0;
    for (unsigned semilla = 1; semilla <= 60; ++semilla) {
        prueba::CarpetaTemporal carpeta;
        PlataformaDePrueba plataforma(carpeta.ruta());
        fComm comm(plataforma);
        comm.Caracteres("\x02", "\x03", "P", 0);
        comm.TimeoutYRetrys(500, 32);
        std::vector<std::string> recibidas;
        bool terminado = false;
        std::string mensaje;
        comm.Pesada.conectar([&](int32_t&, bool& seguir, pesaDX5& pesada) {
            recibidas.push_back(pesada.Datos());
            seguir = true;
        });
        comm.Resumen.conectar([&](int32_t&, std::string& texto) {
            terminado = true;
            mensaje = texto;
        });
        comm.Pedir(1, "9600,N,8,1");
        plataforma.puerto().enviado.clear();

        IndicadorRevoltoso indicador(plataforma, semilla);
        std::vector<std::string> enviadas;
        for (int i = 0; i < 20; ++i) {
            PesadaDePrueba pesada;
            pesada.albaran = std::to_string(i);
            if (!indicador.entregar(trama(pesada.datos()), terminado)) break;
            enviadas.push_back(pesada.datos());
        }
        EXPECT_EQ(recibidas, enviadas) << "seed " << semilla;
        if (terminado) continue;
        indicador.entregar(trama("0020"), terminado);
        EXPECT_EQ(mensaje, "") << "seed " << semilla;
        ++completos;
    }
    EXPECT_GT(completos, 30) << "the disturbances leave most cycles their way to the end";
}

}  // namespace
}  // namespace bn
