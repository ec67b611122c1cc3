// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <deque>
#include <exception>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "config/Setup.h"
#include "download/Descarga.h"
#include "tests/soporte/DiscoSimulado.h"
#include "tests/soporte/PlataformaDePrueba.h"

namespace bn::prueba {

/// The indicator at the other end of the line: keeps its weighings until it hears each one's
/// acknowledge, whatever becomes of the computer.
class IndicadorDeCiclo {
 public:
    void pesar(const std::string& datos);
    /// Answers what the program sends until that falls silent.
    void conversar(PlataformaDePrueba& plataforma);
    /// The program is gone: what was on its way comes again, and may then stand twice when it has
    /// no number.
    void colgar();
    /// The line is cut once so many transmissions more of the program's have been heard.
    void cortarTras(int transmisiones) { hastaCorte_ = transmisiones; }

    const std::vector<std::string>& todas() const { return todas_; }
    std::size_t reconocidas() const { return todas_.size() - cola_.size(); }
    /// Ordinals of the records that were on their way when the program died.
    const std::multiset<std::size_t>& dudosas() const { return dudosas_; }

 private:
    void enviar(PlataformaDePrueba& plataforma);

    enum class Enviado { kNada, kPesada, kContador };
    std::vector<std::string> todas_;
    std::deque<std::string> cola_;
    std::multiset<std::size_t> dudosas_;
    Enviado enviado_ = Enviado::kNada;
    std::optional<int> hastaCorte_;
};

/// The program between a start and its end: settings and controller on the simulated disk.
class Vida {
 public:
    Vida(DiscoSimulado& disco, double reloj);

    PlataformaDePrueba plataforma;
    std::shared_ptr<Setup> cfg;
    std::optional<Descarga> des;

    /// One download from the request to the end of its save pass; false when it does not start.
    bool descargar(IndicadorDeCiclo& indicador);
    /// What the program does when an error has left a pass: another controller.
    void relevar();
};

/// A computer with its disk, an indicator, and both destinations in a folder of their own.
class Ciclo {
 public:
    explicit Ciclo(SistemaDeFicheros sistema = SistemaDeFicheros::kExt4);

    static inline const std::filesystem::path kPrograma = "/programa ñ";
    static inline const std::filesystem::path kTexto = "/textos/Pesadas.txt";
    static inline const std::filesystem::path kLibro = "/libros/Pesadas.xls";

    DiscoSimulado disco;
    IndicadorDeCiclo indicador;
    double reloj = 46000.123456;

    /// Numbered and not, equal ones in succession, long and short.
    void pesarUnas();
    /// Start, download, save, and the beginning of the next; an error of a pass is survived.
    void cicloEntero(Vida& vida);
    /// Runs the program from its start; true when it lived to the end.
    bool vivir(const std::function<void(Vida&)>& hechos);
    /// A start that saves what waits, and one clean download; then nothing may wait.
    void recuperar();
    /// What is wrong with the destinations and the program's folder; "" when all is well.
    std::string comprobar();

    std::vector<std::string> lineas() const;
    /// Each row as a text line without its date, and the dates apart.
    struct Filas {
        std::vector<std::string> textos;
        std::vector<std::string> fechas;
    };
    Filas filas();

 private:
    int pesadas_ = 0;
    std::string fallos_;
};

/// A record; without number for 0, of the short form when fechaHora is "".
std::string registro(int albaran, const std::string& neto, const std::string& fechaHora);

}  // namespace bn::prueba
