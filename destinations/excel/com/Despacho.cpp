// SPDX-License-Identifier: MIT
#include "destinations/excel/com/Despacho.h"

#include <string>

#include "destinations/excel/com/ErrorCom.h"

namespace bn::excel::com {

namespace {

// Asked for together, as script languages do: which of the two a member is depends on its version.
constexpr WORD kLeer = DISPATCH_METHOD | DISPATCH_PROPERTYGET;

// What a call owns stays with the caller: these are only looked at.
std::vector<VARIANT> alReves(std::initializer_list<VarianteCom> argumentos) {
    std::vector<VARIANT> crudos;
    for (const VarianteCom* i = argumentos.end(); i != argumentos.begin();) {
        crudos.push_back((--i)->crudo());
    }
    return crudos;
}

}  // namespace

HRESULT Despacho::buscar(const std::vector<const wchar_t*>& nombres,
                         const std::vector<DISPID>*& encontrados) const {
    std::wstring clave = clase_;
    for (const wchar_t* nombre : nombres) clave.append(L".").append(nombre);
    auto& conocidos = sesion_->identificadores();
    if (const auto i = conocidos.find(clave); i != conocidos.end()) {
        encontrados = &i->second;
        return S_OK;
    }

    std::vector<LPOLESTR> textos;
    textos.reserve(nombres.size());
    for (const wchar_t* nombre : nombres) textos.push_back(const_cast<LPOLESTR>(nombre));
    std::vector<DISPID> nuevos(nombres.size());
    const HRESULT codigo = sesion_->insistir([&] {
        return objeto_->GetIDsOfNames(IID_NULL, textos.data(), static_cast<UINT>(textos.size()),
                                      kIngles, nuevos.data());
    });
    if (FAILED(codigo)) return codigo;
    encontrados = &conocidos.emplace(std::move(clave), std::move(nuevos)).first->second;
    return S_OK;
}

const std::vector<DISPID>& Despacho::identificadores(
    const std::vector<const wchar_t*>& nombres) const {
    const std::vector<DISPID>* encontrados = nullptr;
    exigirExito(buscar(nombres, encontrados));
    return *encontrados;
}

bool Despacho::conoce(const wchar_t* miembro) const {
    const std::vector<DISPID>* encontrados = nullptr;
    const HRESULT codigo = buscar({miembro}, encontrados);
    if (codigo == DISP_E_UNKNOWNNAME) return false;
    exigirExito(codigo);
    return true;
}

VarianteCom Despacho::invocar(DISPID miembro, WORD forma, DISPPARAMS parametros) const {
    VarianteCom resultado;
    Excepcion excepcion;
    HRESULT codigo = S_OK;
    sesion_->insistir([&] {
        UINT argumentoErroneo = 0;
        codigo = objeto_->Invoke(miembro, IID_NULL, kIngles, forma, &parametros,
                                 forma == DISPATCH_PROPERTYPUT ? nullptr : resultado.recibir(),
                                 excepcion.recibir(), &argumentoErroneo);
        return excepcion.causa(codigo);
    });
    // A refusal is an answer too.
    if (!estaOcupada(excepcion.causa(codigo))) sesion_->haAtendido();
    if (FAILED(codigo)) excepcion.lanzar(codigo);
    return resultado;
}

VarianteCom Despacho::invocar(const wchar_t* miembro, WORD forma,
                              std::initializer_list<VarianteCom> argumentos) const {
    std::vector<VARIANT> crudos = alReves(argumentos);
    DISPPARAMS parametros{crudos.data(), nullptr, static_cast<UINT>(crudos.size()), 0};
    return invocar(identificadores({miembro}).front(), forma, parametros);
}

VarianteCom Despacho::leer(const wchar_t* miembro,
                           std::initializer_list<VarianteCom> argumentos) const {
    return invocar(miembro, kLeer, argumentos);
}

Despacho Despacho::objeto(const wchar_t* miembro, const wchar_t* claseDelObjeto,
                          std::initializer_list<VarianteCom> argumentos) const {
    return {sesion_, claseDelObjeto, leer(miembro, argumentos).objeto()};
}

void Despacho::poner(const wchar_t* miembro, const VarianteCom& valor) const {
    VARIANT crudo = valor.crudo();
    DISPID comoValor = DISPID_PROPERTYPUT;
    invocar(identificadores({miembro}).front(), DISPATCH_PROPERTYPUT, {&crudo, &comoValor, 1, 1});
}

void Despacho::ponerSiLaConoce(const wchar_t* miembro, const VarianteCom& valor) const {
    if (conoce(miembro)) poner(miembro, valor);
}

void Despacho::llamar(const wchar_t* miembro, std::initializer_list<VarianteCom> argumentos) const {
    invocar(miembro, DISPATCH_METHOD, argumentos);
}

void Despacho::llamarConNombres(const wchar_t* miembro,
                                std::initializer_list<ConNombre> argumentos) const {
    std::vector<const wchar_t*> nombres{miembro};
    std::vector<VARIANT> crudos;
    for (const ConNombre& argumento : argumentos) {
        nombres.push_back(argumento.first);
        crudos.push_back(argumento.second.crudo());
    }
    std::vector<DISPID> ids = identificadores(nombres);
    const auto cuantos = static_cast<UINT>(crudos.size());
    invocar(ids.front(), DISPATCH_METHOD, {crudos.data(), ids.data() + 1, cuantos, cuantos});
}

std::vector<Despacho> Despacho::enumerar(const wchar_t* claseDelObjeto) const {
    const VarianteCom coleccion = invocar(DISPID_NEWENUM, kLeer, DISPPARAMS{});
    const bool esObjeto =
        V_VT(&coleccion.crudo()) == VT_UNKNOWN || V_VT(&coleccion.crudo()) == VT_DISPATCH;
    if (!esObjeto || !V_UNKNOWN(&coleccion.crudo())) lanzarError(E_NOINTERFACE);
    ComPtr<IEnumVARIANT> enumerador;
    exigirExito(sesion_->insistir([&] {
        return V_UNKNOWN(&coleccion.crudo())
            ->QueryInterface(IID_IEnumVARIANT, reinterpret_cast<void**>(enumerador.recibir()));
    }));
    std::vector<Despacho> objetos;
    for (;;) {
        VarianteCom elemento;
        ULONG dados = 0;
        const HRESULT codigo =
            sesion_->insistir([&] { return enumerador->Next(1, elemento.recibir(), &dados); });
        exigirExito(codigo);
        if (codigo != S_OK) return objetos;
        objetos.emplace_back(sesion_, claseDelObjeto, elemento.objeto());
    }
}

}  // namespace bn::excel::com
