// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "destinations/excel/com/ComPtr.h"

namespace bn::sustituto {

/// Environment variables that the stand-in obeys: read anew for each application started.
///
/// The file to which every call is appended, one line each.
inline constexpr const wchar_t* kVariableDiario = L"BN_SUSTITUTO_DIARIO";
/// What is to go wrong, in words separated by blanks:
///   ausente          the application cannot be started; ausente=N only the first N times
///   ocupado=CALL,N   the application is busy for that call N times
///   falla=CALL       that call fails, with a description; falla=CALL,N only the N-th time
///   muda=CALL        that call fails without one
///   cuelga=CALL      that call does not come back; cuelga=CALL,N only the N-th time
///   tarda=CALL,MS    that call takes so long
///   muere=CALL       the process ends in that call
///   sinmatriz        the contents of more than one cell are given as nothing, not as an array
///   rechaza=TEXT     a cell that is set to that text is refused, alone and in an array
///   version=V        the version, "16.0" unless told; it has what that version has
///   sololectura      a workbook is opened to be read only; sololectura=WHO reserved by somebody
///   ventana=N        the number of the application's window, somebody else's
/// CALL is the call's number, from 1, or a member as "Workbooks.Open"; "Range.FormulaR1C1=" when
/// it is set, "?Workbooks.Open" when its identifier is asked for.
inline constexpr const wchar_t* kVariableOrdenes = L"BN_SUSTITUTO_ORDENES";

/// The log of the calls to one application, and what was ordered to go wrong.
class Diario {
 public:
    Diario();

    /// Whether this start is refused, when so many have been before.
    bool ausente(int64_t negadas) const;
    bool sinMatriz() const { return tiene("sinmatriz"); }
    /// The whole number of the version: 16.
    int versionMayor() const;
    /// What an order says behind its "="; nothing when it has not been given.
    std::optional<std::string> orden(const char* palabra) const;
    /// Numbers the next call. S_OK, or how it is to fail. miembro as "Workbooks.Open".
    HRESULT llamada(const std::string& miembro);
    /// True when the last failing call is to say nothing of why.
    bool muda() const { return muda_; }
    void anotar(const std::string& linea) const;

 private:
    struct Orden {
        std::string que;
        std::string llamada;
        std::optional<int64_t> veces;
        bool deLlamada = false;
    };

    bool tiene(const char* palabra) const { return orden(palabra).has_value(); }
    void estropear(Orden& orden, const std::string& miembro) const;

    std::wstring archivo_;
    std::vector<Orden> ordenes_;
    int64_t llamadas_ = 0;
    bool muda_ = false;
};

}  // namespace bn::sustituto
