// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>

#include "tests/simulacion/PlataformaDelMundo.h"
#include "tests/soporte/DiscoSimulado.h"
#include "tests/soporte/TiempoVirtual.h"

namespace bn::prueba {

/// What goes wrong around the program while it runs, as chance has it: disk, folders, spreadsheet
/// application, and its own sudden end.
class Percances {
 public:
    using Apuntar = std::function<void(const std::string&)>;

    Percances(Azar& azar, DiscoSimulado& disco, PlataformaDelMundo& plataforma, Apuntar apuntar);

    std::filesystem::path programa = "/programa";
    std::filesystem::path oficina = "/oficina";
    std::string libro = "/oficina/Pesadas.xls";
    std::filesystem::path lineas = "/oficina/Pesadas.txt";

    /// New ones, instead of those there were.
    void sortear();
    /// None any more.
    void sanar();
    /// The program is to die before long, in one way or another.
    void sortearMuerte();
    /// Before every character that goes out: it may be the last thing that the program does.
    void alTransmitir();
    /// Whether the death that has come is the power's.
    bool corte() const { return corte_; }

    int64_t deDisco = 0;  ///< failures of the disk that the program has met
    int64_t deExcel = 0;

 private:
    void averiarDisco();
    void averiarExcel();
    void alLlamar(const std::string& llamada);
    void alGuardar(const std::string& guardado);
    bool toca(const Operacion& operacion) const;

    Azar& azar_;
    DiscoSimulado& disco_;
    PlataformaDelMundo& plataforma_;
    Apuntar apuntar_;
    bool escondida_ = false;
    double excelFalla_ = 0;
    double guardadoFalla_ = 0;
    int64_t llamadasHastaMorir_ = 0;  // of the application; 0: it does not
    int64_t envioFatal_ = 0;
    bool corte_ = false;
};

}  // namespace bn::prueba
