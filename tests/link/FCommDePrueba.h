// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "link/fComm.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/PlataformaDePrueba.h"
#include "tests/soporte/TramasDePrueba.h"

namespace bn {

using prueba::kAck;
using prueba::kNak;
using prueba::PesadaDePrueba;
using prueba::trama;

inline const std::string kPeticion = "P";
inline const char* const kNoContesta = "El indicador no contesta a las peticiones";
inline const char* const kHaDejado = "El indicador ha dejado de enviar tramas injustificadamente";
inline const char* const kNoContestaTras =
    "El indicador no contesta tras enviar tramas irreconocibles";
inline const char* const kIrreconocibles = "Las tramas recibidas no son reconocibles";
inline const char* const kInterrumpida =
    "La descarga de pesadas ha sido interrumpida desde el ordenador";

/// A channel on a scripted line, and what it has told.
class FComm : public testing::Test {
 protected:
    using Fin = std::pair<int32_t, std::string>;

    void SetUp() override {
        comm.Caracteres("\x02", "\x03", kPeticion, 0);
        comm.Pesada.conectar([this](int32_t& ordinal, bool& seguir, pesaDX5& pesada) {
            EXPECT_FALSE(seguir) << "the flag is false on entry";
            ordinales.push_back(ordinal);
            matriculas.push_back(pesada.Matricula());
            enviadoAntesDeContestar = plataforma.puerto().enviado;
            seguir = aceptar;
            ordinal = 999;  // what the handler does to it is ignored
        });
        comm.Resumen.conectar([this](int32_t& cuenta, std::string& mensaje) {
            finales.emplace_back(cuenta, mensaje);
        });
    }

    std::string pesada(const std::string& matricula = "1234BCD") {
        PesadaDePrueba p;
        p.matricula = matricula;
        return trama(p.datos());
    }
    void pedir() {
        comm.Pedir(1, "9600,N,8,1");
        ASSERT_EQ(enviado(), kPeticion);
    }
    /// What has been sent since the last call.
    std::string enviado() { return std::exchange(plataforma.puerto().enviado, {}); }
    void recibir(const std::string& bytes) { plataforma.puerto().recibir(bytes); }

    prueba::CarpetaTemporal carpeta;
    PlataformaDePrueba plataforma{carpeta.ruta()};
    fComm comm{plataforma};
    bool aceptar = true;
    std::vector<int32_t> ordinales;
    std::vector<std::string> matriculas;
    std::vector<Fin> finales;
    std::string enviadoAntesDeContestar;
};

}  // namespace bn
