// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "config/CamposSetup.h"
#include "platform/Plataforma.h"

namespace bn {

/// Every setting of the program, kept in "bnDX5.ini" in its own folder. Texts are UTF-8, but for
/// the framing characters, which are exactly one byte. Setters drop invalid values without a word.
class Setup {
 public:
    /// Defaults, then what the file holds, unchecked. Throws (with the file and the value) when a
    /// number does not fit its field (std::overflow_error) or a text column lacks its width
    /// (std::runtime_error).
    explicit Setup(Plataforma& plataforma);
    Setup(const Setup&) = delete;
    Setup& operator=(const Setup&) = delete;
    /// Writes the file; an error is told to the user, never thrown.
    ~Setup();

    /// Channel, 1 to 16. The get throws std::overflow_error when the file held more than 16 bits.
    int16_t canal() const;
    void canal(int16_t valor);
    /// Speed, parity, data bits and stop bits, as in "9600,N,8,1".
    const std::string& Params() const;
    void Params(const std::string& valor);

    /// The framing characters, one byte each; a set of any other length is dropped.
    std::string CaracterInicial() const;
    void CaracterInicial(const std::string& caracter);
    std::string CaracterFinal() const;
    void CaracterFinal(const std::string& caracter);
    std::string CaracterPesada() const;
    void CaracterPesada(const std::string& caracter);
    std::string CaracterPeticion() const;
    void CaracterPeticion(const std::string& caracter);

    /// The same by the first character of a text of any length, or by a code from 0 to 255.
    void cInicial(const std::string& texto);
    void cFinal(const std::string& texto);
    void cPesada(const std::string& texto);
    void cPeticion(const std::string& texto);
    void cPeticion(double codigo);

    /// Milliseconds, 1 to 32000.
    int32_t Timeout() const;
    void Timeout(int32_t valor);
    /// 1 to 32.
    int16_t MaxRetrys() const;
    void MaxRetrys(int16_t valor);
    /// 0 test, 1 don't test, 2 don't test and trace.
    int16_t Checksum() const;
    void Checksum(int16_t valor);
    /// Seconds between automatic downloads; 0 none. Above 32767 throws std::overflow_error.
    int32_t AutoCadaXSegs() const;
    void AutoCadaXSegs(int32_t valor);
    /// Whether the window starts hidden.
    bool EjecutarMinimizado() const;
    void EjecutarMinimizado(bool valor);

    /// Whether the worksheet destination is in use.
    bool UsoExcel() const;
    void UsoExcel(bool valor);
    /// Whether it is not because the program itself has switched it off, where no spreadsheet
    /// application could be started: weighings go there all the same, once one can.
    bool ExcelEnFalta() const;
    /// True switches the destination off, false on again; only what the program has switched off
    /// comes back.
    void ExcelEnFalta(bool falta);
    /// "" when the destination is not in use; setting "" switches it off. So the next two.
    std::string LibroExcel() const;
    void LibroExcel(const std::string& valor);
    std::string HojaExcel() const;
    void HojaExcel(const std::string& valor);
    /// Column of a field, 1-based; 0 not written.
    int16_t ColumnaExcel(int32_t campo) const;
    void ColumnaExcel(int32_t campo, int16_t valor);

    /// Whether the text destination is in use.
    bool UsoTexto() const;
    void UsoTexto(bool valor);
    std::string ArchivoTexto() const;
    void ArchivoTexto(const std::string& valor);
    /// First character of a field in the text line, 1-based, up to 80; 0 not written.
    int16_t Posicion(int32_t campo) const;
    void Posicion(int32_t campo, int16_t valor);
    /// Width of a field in characters, up to 80.
    int16_t Largo(int32_t campo) const;
    void Largo(int32_t campo, int16_t valor);
    /// Format picture of a field.
    std::string Formato(int32_t campo) const;
    void Formato(int32_t campo, const std::string& valor);

    /// Writes the file now. Throws ErrorFichero.
    void Update();
    /// Lets go of the settings: the destructor leaves the file as it is.
    void Abandonar();

 private:
    Plataforma& plataforma_;
    CamposSetup campos_;
    bool abandonado_ = false;
};

}  // namespace bn
