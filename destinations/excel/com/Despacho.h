// SPDX-License-Identifier: MIT
#pragma once

#include <initializer_list>
#include <memory>
#include <utility>
#include <vector>

#include "destinations/excel/com/ComPtr.h"
#include "destinations/excel/com/Sesion.h"
#include "destinations/excel/com/VarianteCom.h"

namespace bn::excel::com {

/// An argument by name.
using ConNombre = std::pair<const wchar_t*, VarianteCom>;

/// An object of the application, its members called by name. A busy application is asked again.
/// Every member throws ErrorExcel.
class Despacho {
 public:
    /// clase names the kind of object: objects of one kind share the identifiers of their members.
    Despacho(std::shared_ptr<Sesion> sesion, const wchar_t* clase, ComPtr<IDispatch> objeto)
        : sesion_(std::move(sesion)), clase_(clase), objeto_(std::move(objeto)) {}

    /// A property, or a method's result. Arguments after the last one given are left out.
    VarianteCom leer(const wchar_t* miembro,
                     std::initializer_list<VarianteCom> argumentos = {}) const;
    /// A property or method that gives an object.
    Despacho objeto(const wchar_t* miembro, const wchar_t* claseDelObjeto,
                    std::initializer_list<VarianteCom> argumentos = {}) const;
    void poner(const wchar_t* miembro, const VarianteCom& valor) const;
    /// True when the application's version has the member.
    bool conoce(const wchar_t* miembro) const;
    /// Sets a property that older versions lack: nothing is done there.
    void ponerSiLaConoce(const wchar_t* miembro, const VarianteCom& valor) const;
    void llamar(const wchar_t* miembro, std::initializer_list<VarianteCom> argumentos = {}) const;
    void llamarConNombres(const wchar_t* miembro,
                          std::initializer_list<ConNombre> argumentos) const;
    /// The objects of a collection.
    std::vector<Despacho> enumerar(const wchar_t* claseDelObjeto) const;

    VarianteCom comoArgumento() const { return VarianteCom::deObjeto(objeto_.get()); }
    const std::shared_ptr<Sesion>& sesion() const { return sesion_; }

 private:
    HRESULT buscar(const std::vector<const wchar_t*>& nombres,
                   const std::vector<DISPID>*& encontrados) const;
    const std::vector<DISPID>& identificadores(const std::vector<const wchar_t*>& nombres) const;
    VarianteCom invocar(DISPID miembro, WORD forma, DISPPARAMS parametros) const;
    VarianteCom invocar(const wchar_t* miembro, WORD forma,
                        std::initializer_list<VarianteCom> argumentos) const;

    // Released before the session, whose end closes the apartment.
    std::shared_ptr<Sesion> sesion_;
    const wchar_t* clase_;
    ComPtr<IDispatch> objeto_;
};

}  // namespace bn::excel::com
