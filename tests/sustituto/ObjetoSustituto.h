// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "destinations/excel/ObjectModel.h"
#include "destinations/excel/com/ComPtr.h"
#include "destinations/excel/com/VarianteCom.h"
#include "tests/sustituto/Diario.h"

namespace bn::sustituto {

using excel::com::ComPtr;
using excel::com::VarianteCom;

/// What the objects of one application share: the engine behind them and the log.
struct Mundo {
    Diario diario;
    std::unique_ptr<excel::Application> motor;
    // What the workbooks that are opened may do.
    bool conMacros = false;
    bool conSucesos = true;
    bool noAtiendeAOtros = false;
};

/// A call refused before it reached the engine.
struct Rechazo {
    HRESULT codigo;
};

/// How many objects of the server are alive.
int64_t objetosVivos();

/// An object of the model behind IDispatch. It has the members that its class declares and refuses
/// every other one, any other number, name or type of arguments, and any locale but 1033.
class ObjetoSustituto : public IDispatch {
 public:
    ObjetoSustituto(std::shared_ptr<Mundo> mundo, std::string clase, std::string detalle = {});
    ObjetoSustituto(const ObjetoSustituto&) = delete;
    ObjetoSustituto& operator=(const ObjetoSustituto&) = delete;
    virtual ~ObjetoSustituto();

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** objeto) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* cuantas) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT cual, LCID idioma, ITypeInfo** tipo) override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* nombres, UINT cuantos,
                                            LCID idioma, DISPID* identificadores) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID miembro, REFIID iid, LCID idioma, WORD forma,
                                     DISPPARAMS* parametros, VARIANT* resultado,
                                     EXCEPINFO* excepcion, UINT* argumentoErroneo) override;

    /// As the log names it: "Worksheet", "Range[A1:C3]".
    std::string etiqueta() const { return clase_ + detalle_; }

 protected:
    /// One VARIANT for each declared argument, those left out included.
    using Argumentos = std::vector<const VARIANT*>;
    using Accion = std::function<VarianteCom(const Argumentos&)>;

    // argumentos: one letter each, 'r' required, 'o' optional, 'm' always left out.
    void propiedad(const wchar_t* nombre, const char* argumentos, Accion accion);
    void asignable(const wchar_t* nombre, std::function<void(const VARIANT&)> accion);
    void metodo(const wchar_t* nombre, const char* argumentos, Accion accion);
    void metodoConNombres(const wchar_t* nombre, std::vector<std::wstring> argumentos,
                          Accion accion);
    /// The collection's objects, for "_NewEnum".
    void enumerable(std::function<std::vector<ObjetoSustituto*>()> elementos);

    const std::shared_ptr<Mundo>& mundo() const { return mundo_; }

 private:
    struct Miembro {
        std::wstring nombre;
        WORD forma;
        std::string argumentos;
        std::vector<std::wstring> nombres;
        Accion accion;
    };

    const Miembro* buscar(DISPID identificador, WORD forma) const;
    VarianteCom ejecutar(const Miembro& miembro, const DISPPARAMS& parametros) const;
    Argumentos ordenar(const Miembro& miembro, const DISPPARAMS& parametros) const;
    HRESULT fallar(HRESULT codigo, const std::string& descripcion, EXCEPINFO* excepcion) const;

    std::shared_ptr<Mundo> mundo_;
    std::string clase_;
    std::string detalle_;
    std::vector<Miembro> miembros_;
    LONG referencias_ = 1;
};

/// One of the server's objects in an argument. Throws Rechazo for anything else.
template <class T>
T& exigirObjeto(const VARIANT& argumento) {
    auto* objeto = V_VT(&argumento) == VT_DISPATCH ? V_DISPATCH(&argumento) : nullptr;
    // An object of the server that comes back to it comes without a proxy.
    auto* nuestro = dynamic_cast<T*>(objeto);
    if (!nuestro) throw Rechazo{DISP_E_TYPEMISMATCH};
    return *nuestro;
}

/// Argument of that type, or Rechazo.
std::string exigirTexto(const VARIANT& argumento);
int32_t exigirEntero(const VARIANT& argumento);
double exigirReal(const VARIANT& argumento);
bool exigirLogico(const VARIANT& argumento);

/// A new object as a result; its only reference goes with it.
VarianteCom comoResultado(ObjetoSustituto* nuevo);

/// A value as the log shows it: its type and itself.
std::string paraDiario(const VARIANT& valor);

}  // namespace bn::sustituto
