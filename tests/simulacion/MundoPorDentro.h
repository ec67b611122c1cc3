// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/Puesto.h"
#include "tests/link/ObservadorLinea.h"
#include "tests/simulacion/Destinos.h"
#include "tests/simulacion/Mundo.h"
#include "tests/simulacion/Percances.h"
#include "tests/soporte/IndicadorSimulado.h"

namespace bn::prueba {

inline constexpr const char* kHoja = "Pesadas";
inline constexpr const char* kNotaAjena = "no tocar";
inline constexpr Micros kSegundo = 1000 * kMilisegundo;

/// One world, from the installation of the program to the last look at its files.
class Mundo {
 public:
    Mundo(uint64_t semilla, bool conTraza);
    ResultadoMundo vivir();

 private:
    Hechura sortearHechura();
    AveriasLinea sortearAverias();
    void instalar();
    void escribirIni();
    void ponerLibro();

    void arrancar();
    void muere(bool corte);
    void cerrar();
    void transcurrir(Micros cuanto);
    void alguien(const std::function<void(Puesto&)>& orden);
    void episodio();
    void pesar();
    bool hayParteEmpezada() const;
    void retirarTexto();
    std::string sinLoPrevio(const std::string& contenido);
    void acabar();
    bool otraCorrecta();

    void alAbrirPuerto();
    void alCambiarEstado(int32_t estado);
    void pesadaRecibida(const std::string& datos);
    void mirarDudosa();

    void juzgar();
    bool esRestoTolerable(const std::string& nombre) const;
    void juzgarRestos();
    void apuntar(const std::string& suceso);
    void falta(const std::string& que);

    ResultadoMundo resultado_;
    bool conTraza_;
    Azar azar_;
    TiempoVirtual tiempo_;
    DiscoSimulado disco_;
    Hechura hechura_;
    int64_t baudios_;
    Micros agrupa_;
    LineaSimulada linea_;
    IndicadorSimulado indicador_;
    ObservadorLinea observador_{linea_, indicador_};
    PlataformaDelMundo plataforma_;
    Percances percances_;
    std::unique_ptr<Puesto> puesto_;

    bool ruidosa_;
    int32_t periodo_;
    int32_t holgada_ = 500;
    std::string textoPrevio_;
    int16_t primeraFila_ = 1;
    int albaran_ = 0;
    int codigo_ = 0;
    std::size_t peticiones_ = 0;  // of persons: each may be answered by one message
    bool enDescarga_ = false;
    std::size_t enEsta_ = 0;  // weighings told in the download
    int enviados_ = 0;        // characters, in the download
    bool copiaReconocida_ = false;
    std::vector<Guardada> guardadas_;
    bool hayDudosa_ = false;  // the last of them
    std::string retirado_;    // what its reader has taken of the text file
    bool retiradoEnDuda_ = false;
    bool reiniciado_ = false;  // since the faults have ended
};

}  // namespace bn::prueba
