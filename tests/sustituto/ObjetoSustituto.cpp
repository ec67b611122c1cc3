// SPDX-License-Identifier: MIT
#include "tests/sustituto/ObjetoSustituto.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>

#include "tests/sustituto/Enumerador.h"

namespace bn::sustituto {

namespace {

constexpr LCID kIngles = 1033;
constexpr auto kErrorDeExcel = static_cast<HRESULT>(0x800A03EC);

std::atomic<int64_t> vivos{0};

std::string enHexadecimal(HRESULT codigo) {
    std::array<char, 16> cifras{};
    std::snprintf(cifras.data(), cifras.size(), "%08lX", static_cast<unsigned long>(codigo));
    return cifras.data();
}

bool omitido(const VARIANT& argumento) {
    return V_VT(&argumento) == VT_ERROR && V_ERROR(&argumento) == DISP_E_PARAMNOTFOUND;
}

const VARIANT& argumentoOmitido() {
    static const VarianteCom kOmitido = VarianteCom::omitido();
    return kOmitido.crudo();
}

/// Arguments travel from the last to the first.
std::string listaParaDiario(const DISPPARAMS& parametros,
                            const std::vector<std::wstring>& nombres) {
    std::string lista;
    for (UINT i = parametros.cArgs; i-- > 0;) {
        if (!lista.empty() || i + 1 < parametros.cArgs) lista += ", ";
        if (i < parametros.cNamedArgs) {
            const auto cual = static_cast<std::size_t>(parametros.rgdispidNamedArgs[i]);
            if (cual < nombres.size()) lista += excel::com::deAncho(nombres[cual]) + ":=";
        }
        if (!omitido(parametros.rgvarg[i])) lista += paraDiario(parametros.rgvarg[i]);
    }
    return lista;
}

}  // namespace

int64_t objetosVivos() { return vivos; }

ObjetoSustituto::ObjetoSustituto(std::shared_ptr<Mundo> mundo, std::string clase,
                                 std::string detalle)
    : mundo_(std::move(mundo)), clase_(std::move(clase)), detalle_(std::move(detalle)) {
    ++vivos;
}

ObjetoSustituto::~ObjetoSustituto() { --vivos; }

HRESULT ObjetoSustituto::QueryInterface(REFIID iid, void** objeto) {
    if (iid != IID_IUnknown && iid != IID_IDispatch) {
        *objeto = nullptr;
        return E_NOINTERFACE;
    }
    AddRef();
    *objeto = static_cast<IDispatch*>(this);
    return S_OK;
}

ULONG ObjetoSustituto::AddRef() { return static_cast<ULONG>(++referencias_); }

ULONG ObjetoSustituto::Release() {
    const LONG quedan = --referencias_;
    if (quedan == 0) delete this;
    return static_cast<ULONG>(quedan);
}

HRESULT ObjetoSustituto::GetTypeInfoCount(UINT* cuantas) {
    *cuantas = 0;
    return S_OK;
}

HRESULT ObjetoSustituto::GetTypeInfo(UINT /*cual*/, LCID /*idioma*/, ITypeInfo** tipo) {
    *tipo = nullptr;
    return E_NOTIMPL;
}

HRESULT ObjetoSustituto::GetIDsOfNames(REFIID iid, LPOLESTR* nombres, UINT cuantos, LCID idioma,
                                       DISPID* identificadores) {
    std::string linea = "? " + etiqueta();
    for (UINT i = 0; i < cuantos; ++i) {
        linea += (i == 0 ? "." : " ") + excel::com::deAncho(nombres[i]);
        identificadores[i] = DISPID_UNKNOWN;
    }
    mundo_->diario.anotar(linea);
    const HRESULT orden =
        mundo_->diario.llamada("?" + clase_ + "." + excel::com::deAncho(nombres[0]));
    if (orden != S_OK) return orden == DISP_E_EXCEPTION ? E_FAIL : orden;
    if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    if (idioma != kIngles) return DISP_E_UNKNOWNLCID;
    const auto miembro =
        std::find_if(miembros_.begin(), miembros_.end(),
                     [&](const Miembro& candidato) { return candidato.nombre == nombres[0]; });
    if (miembro == miembros_.end()) return DISP_E_UNKNOWNNAME;
    identificadores[0] = static_cast<DISPID>(miembro - miembros_.begin()) + 1;
    for (UINT i = 1; i < cuantos; ++i) {
        const auto nombre = std::find(miembro->nombres.begin(), miembro->nombres.end(), nombres[i]);
        if (nombre == miembro->nombres.end()) return DISP_E_UNKNOWNNAME;
        identificadores[i] = static_cast<DISPID>(nombre - miembro->nombres.begin());
    }
    return S_OK;
}

/// A property that can be read and set is two members with one name, and one identifier.
const ObjetoSustituto::Miembro* ObjetoSustituto::buscar(DISPID identificador, WORD forma) const {
    std::wstring nombre = L"_NewEnum";
    if (identificador != DISPID_NEWENUM) {
        const auto lugar = static_cast<std::size_t>(identificador) - 1;
        if (identificador < 1 || lugar >= miembros_.size()) return nullptr;
        nombre = miembros_[lugar].nombre;
    }
    for (const Miembro& miembro : miembros_) {
        if (miembro.nombre == nombre && (miembro.forma & forma) != 0) return &miembro;
    }
    return nullptr;
}

HRESULT ObjetoSustituto::Invoke(DISPID identificador, REFIID iid, LCID idioma, WORD forma,
                                DISPPARAMS* parametros, VARIANT* resultado, EXCEPINFO* excepcion,
                                UINT* /*argumentoErroneo*/) {
    const Miembro* miembro = buscar(identificador, forma);
    if (iid != IID_NULL || idioma != kIngles || !miembro) {
        mundo_->diario.anotar(etiqueta() + ": llamada sin sentido");
        if (idioma != kIngles) return DISP_E_UNKNOWNLCID;
        return miembro ? DISP_E_UNKNOWNINTERFACE : DISP_E_MEMBERNOTFOUND;
    }
    const std::string nombre = excel::com::deAncho(miembro->nombre);
    std::string linea = etiqueta() + "." + nombre;
    const bool asignacion = miembro->forma == DISPATCH_PROPERTYPUT;
    const std::string lista = listaParaDiario(*parametros, miembro->nombres);
    if (asignacion) {
        linea += " = " + lista;
    } else if (parametros->cArgs > 0) {
        linea += "(" + lista + ")";
    }
    HRESULT codigo = mundo_->diario.llamada(clase_ + "." + nombre + (asignacion ? "=" : ""));
    std::string descripcion = "Fallo pedido en " + clase_ + "." + nombre + " (ñ €)";
    if (codigo == S_OK) {
        try {
            VarianteCom valor = ejecutar(*miembro, *parametros);
            if (resultado) *resultado = valor.soltar();
        } catch (const Rechazo& rechazo) {
            codigo = rechazo.codigo;
        } catch (const std::exception& e) {
            codigo = DISP_E_EXCEPTION;
            descripcion = e.what();
        }
    }
    mundo_->diario.anotar(codigo == S_OK ? linea : linea + " ! " + enHexadecimal(codigo));
    return fallar(codigo, descripcion, excepcion);
}

HRESULT ObjetoSustituto::fallar(HRESULT codigo, const std::string& descripcion,
                                EXCEPINFO* excepcion) const {
    if (codigo == DISP_E_EXCEPTION && excepcion) {
        *excepcion = {};
        excepcion->scode = mundo_->diario.muda() ? E_ACCESSDENIED : kErrorDeExcel;
        if (!mundo_->diario.muda()) {
            const std::wstring ancho = excel::com::aAncho(descripcion);
            excepcion->bstrDescription =
                SysAllocStringLen(ancho.data(), static_cast<UINT>(ancho.size()));
            excepcion->bstrSource = SysAllocString(L"Microsoft Excel");
        }
    }
    return codigo;
}

VarianteCom ObjetoSustituto::ejecutar(const Miembro& miembro, const DISPPARAMS& parametros) const {
    if (miembro.forma == DISPATCH_PROPERTYPUT) {
        const bool esValor = parametros.cArgs == 1 && parametros.cNamedArgs == 1 &&
                             parametros.rgdispidNamedArgs[0] == DISPID_PROPERTYPUT;
        if (!esValor) throw Rechazo{DISP_E_BADPARAMCOUNT};
        return miembro.accion({parametros.rgvarg});
    }
    return miembro.accion(ordenar(miembro, parametros));
}

ObjetoSustituto::Argumentos ObjetoSustituto::ordenar(const Miembro& miembro,
                                                     const DISPPARAMS& parametros) const {
    const std::size_t declarados = miembro.argumentos.size();
    const bool porNombre = !miembro.nombres.empty();
    if (parametros.cArgs > declarados) throw Rechazo{DISP_E_BADPARAMCOUNT};
    if (parametros.cNamedArgs != (porNombre ? parametros.cArgs : 0)) {
        throw Rechazo{DISP_E_NONAMEDARGS};
    }
    Argumentos argumentos(declarados, &argumentoOmitido());
    for (UINT i = 0; i < parametros.cArgs; ++i) {
        const std::size_t lugar = porNombre
                                      ? static_cast<std::size_t>(parametros.rgdispidNamedArgs[i])
                                      : parametros.cArgs - 1 - i;
        if (lugar >= declarados) throw Rechazo{DISP_E_PARAMNOTFOUND};
        argumentos[lugar] = &parametros.rgvarg[i];
    }
    for (std::size_t i = 0; i < declarados; ++i) {
        const char regla = miembro.argumentos[i];
        if (regla == 'r' && omitido(*argumentos[i])) throw Rechazo{DISP_E_PARAMNOTOPTIONAL};
        if (regla == 'm' && !omitido(*argumentos[i])) throw Rechazo{DISP_E_BADPARAMCOUNT};
    }
    return argumentos;
}

void ObjetoSustituto::propiedad(const wchar_t* nombre, const char* argumentos, Accion accion) {
    miembros_.push_back({nombre, DISPATCH_PROPERTYGET, argumentos, {}, std::move(accion)});
}

void ObjetoSustituto::asignable(const wchar_t* nombre, std::function<void(const VARIANT&)> accion) {
    auto asignar = [accion = std::move(accion)](const Argumentos& argumentos) {
        accion(*argumentos.front());
        return VarianteCom();
    };
    miembros_.push_back({nombre, DISPATCH_PROPERTYPUT, "r", {}, std::move(asignar)});
}

void ObjetoSustituto::metodo(const wchar_t* nombre, const char* argumentos, Accion accion) {
    miembros_.push_back({nombre, DISPATCH_METHOD, argumentos, {}, std::move(accion)});
}

void ObjetoSustituto::metodoConNombres(const wchar_t* nombre, std::vector<std::wstring> argumentos,
                                       Accion accion) {
    const std::string todos(argumentos.size(), 'r');
    miembros_.push_back({nombre, DISPATCH_METHOD, todos, std::move(argumentos), std::move(accion)});
}

void ObjetoSustituto::enumerable(std::function<std::vector<ObjetoSustituto*>()> elementos) {
    propiedad(L"_NewEnum", "", [this, elementos = std::move(elementos)](const Argumentos&) {
        std::vector<VarianteCom> valores;
        for (ObjetoSustituto* elemento : elementos()) valores.push_back(comoResultado(elemento));
        return nuevoEnumerador(mundo_, clase_, std::move(valores));
    });
}

}  // namespace bn::sustituto
