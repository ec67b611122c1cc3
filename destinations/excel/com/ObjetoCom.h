// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <utility>

#include "destinations/excel/ObjectModel.h"
#include "destinations/excel/com/Despacho.h"
#include "destinations/excel/com/ErrorCom.h"

namespace bn::excel::com {

/// What every object of the model does through Automation.
template <class Interfaz>
class ObjetoCom : public Interfaz {
 public:
    explicit ObjetoCom(Despacho objeto) : objeto_(std::move(objeto)) {}

    VarianteCom comoArgumento() const { return objeto_.comoArgumento(); }

 protected:
    /// The object, for a call now: what was waiting to be written is written first.
    const Despacho& com() const {
        objeto_.sesion()->antesDeLlamar();
        return objeto_;
    }
    /// For calls that open or save.
    Plazo plazoDeLibro() const {
        return Plazo(*objeto_.sesion(), objeto_.sesion()->paciencia().libro);
    }
    /// The object as it stands, without a call.
    const Despacho& objeto() const { return objeto_; }

 private:
    Despacho objeto_;
};

/// A step that the work can do without: what the application refuses of it is passed over.
template <class Paso>
void intentar(const Paso& paso) {
    try {
        paso();
    } catch (const Negativa&) {
        return;  // the work itself will show whether it was needed
    }
}

/// A value as an argument.
inline VarianteCom argumento(const Variante& valor) { return VarianteCom(valor); }

/// A result that is a text; "" when it is anything else.
inline std::string comoTexto(const VarianteCom& resultado) {
    const Variante valor = resultado.valor();
    const auto* texto = std::get_if<std::string>(&valor);
    return texto ? *texto : std::string();
}

}  // namespace bn::excel::com
