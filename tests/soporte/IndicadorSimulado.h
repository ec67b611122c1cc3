// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tests/soporte/TiempoVirtual.h"

namespace bn::prueba {

/// What one make of indicator does differently from another.
struct Hechura {
    bool sorda = true;             ///< hears nothing while it sends; else keeps one answer
    bool guardaLaPrimera = false;  ///< which one it keeps of several
    bool empiezaDeNuevo = false;   ///< at a request in mid-exchange counts anew
    char peticion = 'P';
    int cuentaDesde = 0;  ///< what its counter begins with: 49 has a check character of code 13
    Micros espera = 0;    ///< gives up waiting for an answer; 0 never
    Micros reaccion = 2 * kMilisegundo;
};

/// An indicator with a memory, in virtual time: keeps its records until they are acknowledged,
/// sends one again on NAK and on a request, and closes with its counter.
class IndicadorSimulado {
 public:
    static constexpr std::size_t kContador = static_cast<std::size_t>(-1);

    /// A frame that has gone out, and the character heard (its number) that made it.
    struct Envio {
        std::size_t registro = kContador;  ///< or the counter record
        std::size_t causa = 0;
        char oido = 0;
        std::string datos;
    };
    /// A record that is forgotten, and the character that was heard for its acknowledge.
    struct Olvido {
        std::size_t registro = 0;
        std::size_t causa = 0;
    };
    /// Puts a frame on the line; the moment at which its last byte has left.
    using Emitir = std::function<Micros(const std::string& trama, std::size_t envio)>;
    using Testigo = std::function<void(const std::string& suceso)>;

    IndicadorSimulado(TiempoVirtual& tiempo, const Hechura& hechura, Emitir emitir);

    /// A weighing is made: its record goes into the memory. Numbered from 0.
    void pesar(const std::string& datos);
    /// A character arrives; causa is the number by which whoever looks on knows it.
    void oir(char c, std::size_t causa);
    /// Is told what happens, in words.
    void alSuceder(Testigo testigo) { testigo_ = std::move(testigo); }

    const std::vector<std::string>& registros() const { return registros_; }
    const std::vector<Envio>& envios() const { return envios_; }
    const std::vector<Olvido>& olvidos() const { return olvidos_; }
    std::size_t pendientes() const { return memoria_.size(); }

 private:
    enum class Estado { kReposo, kEnviando, kEsperando };
    struct Oido {
        char c = 0;
        std::size_t causa = 0;
    };

    void atender(Oido oido);
    void reconocido(Oido oido);
    void enviar(Oido oido);
    void transmitido();
    void esperarRespuesta();
    void avisar(const std::string& suceso) const;

    TiempoVirtual& tiempo_;
    Hechura hechura_;
    Emitir emitir_;
    Testigo testigo_;
    Estado estado_ = Estado::kReposo;
    std::vector<std::string> registros_;
    std::deque<std::size_t> memoria_;
    std::vector<Envio> envios_;
    std::vector<Olvido> olvidos_;
    std::optional<Oido> guardado_;
    bool esContador_ = false;
    int cuenta_ = 0;         // with those acknowledged since the request
    std::size_t turno_ = 0;  // of waiting: a give-up of an earlier one is none
};

}  // namespace bn::prueba
