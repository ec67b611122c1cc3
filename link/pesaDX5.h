// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Plataforma.h"

namespace bn {

/// The indicator's frames: recognises them, cuts their data into a weighing or a counter record,
/// and holds the last one. Line texts: one byte a character, Windows-1252.
///
/// Bad input is never an error: it gives type 0. Only the trace file of checksum mode 2 can throw
/// (ErrorFichero).
class pesaDX5 {
 public:
    /// Holds nothing yet; the request character is still empty.
    explicit pesaDX5(Plataforma& plataforma);

    /// Start, end and request characters, one byte each, and the checksum mode: 0 test, 1 don't
    /// test, 2 don't test and trace. Changes nothing unless all three are exactly one byte long.
    void Caracteres(const std::string& inicial, const std::string& final,
                    const std::string& peticion, int16_t checksum);
    /// Tests a whole frame, terminator included, and takes its record. Returns Tipo().
    int16_t TramaValida(const std::string& trama);
    /// Takes the record of a frame's data alone. Returns Tipo().
    int16_t DatosValidos(const std::string& datos);
    /// The same; a record without a date gets that of another clock (days since 30 December
    /// 1899).
    int16_t DatosValidos(const std::string& datos, double reloj);

    /// Whether a frame could begin anywhere in the bytes: one of them is a start character.
    bool HayInicio(std::string_view bytes) const;
    /// Whether the frame lacks only its last two characters: cut where its check character has the
    /// terminator's code, and whole in all before. Takes no record.
    bool CortadaEnControl(const std::string& trama) const;

    /// The record's data as received, untrimmed; "" unless it is a weighing.
    std::string Datos() const;
    /// Days since 30 December 1899, the fraction the time of day; 0 unless it is a weighing.
    double FechaHora() const;
    /// Vehicle plate, without outer blanks; "" unless it is a weighing.
    std::string Matricula() const;
    /// Delivery note number; 0 when blank, or unless it is a weighing.
    int32_t Albaran() const;
    /// Code 1, 2 or 3; 0 for any other index.
    int32_t Codigo(int16_t indice) const;
    /// Weights in the indicator's display units.
    float Tara() const;
    float Neto() const;
    /// Tare plus net, in single precision.
    float Bruto() const;
    /// Weighings the indicator says it has sent; 0 unless it is a counter record.
    int32_t Contador() const;
    /// 0 nothing valid, 1 weighing record, 2 counter record.
    int16_t Tipo() const;

    /// The single characters sent and looked for: request, end of a frame, acknowledge and refusal.
    std::string TramaPeticion() const;
    std::string Terminador() const;
    std::string ACK() const;
    std::string NAK() const;

 private:
    struct Campos {
        double fechaHora = 0;
        std::string matricula;
        int32_t albaran = 0;
        std::array<int32_t, 3> codigo{};
        float tara = 0;
        float neto = 0;
    };

    int16_t analizar(std::string_view datos, std::optional<double> reloj);
    void analizarContador(std::string_view datos);
    void analizarPesada(std::string_view datos, std::optional<double> reloj);
    void componerPatron();
    bool esPesada() const;
    void trazar(std::string_view datos, unsigned char calculado, unsigned char recibido) const;

    Plataforma& plataforma_;
    std::string inicial_{"\x02"};
    std::string final_{"\x03"};
    std::string peticion_;
    std::string patron_;
    int16_t checksum_ = 0;
    int16_t tipo_ = 0;
    std::string datos_;
    Campos campos_;
    int32_t contador_ = 0;
};

}  // namespace bn
